#include "review/ProposedMarks.h"

#include "engine/ContactsParser.h"
#include "tests/fakes/FakePlatform.h"
#include "tests/fakes/People.h"

#include <gtest/gtest.h>

#include <utility>

namespace dunmora::test {
namespace {

using Rows = std::vector<std::size_t>;

class ProposedMarksTest : public testing::Test {
protected:
    void searchIn(std::vector<FakePerson> people)
    {
        platform_.addressBook = FakeAddressBook(std::move(people));
        engine_.load();
        engine_.findDupes();
        proposal_.searched(engine_);
    }

    void toggle(const Rows& rows)
    {
        for (const auto row : rows) {
            auto& contact = *engine_.contacts().find(engine_.duplicates()[row]);
            contact.setObject(!contact.isChecked(), kContactCheck);
        }
        proposal_.rowsEdited(engine_, rows);
    }

    void remove(const std::vector<std::string>& uids)
    {
        engine_.deleteContacts(uids);
        proposal_.deleted(engine_);
    }

    /// One letter for each row: x for a checked one.
    std::string marks()
    {
        std::string marks;
        for (const auto& uid : engine_.duplicates()) {
            marks += engine_.contacts().find(uid)->isChecked() ? 'x' : '-';
        }
        return marks;
    }

    FakePlatform platform_;
    ContactsParser engine_;
    ProposedMarks proposal_;
};

TEST_F(ProposedMarksTest, CountTheMarksThatAreDifferentNow)
{
    searchIn({person("1"), person("2"), person("3")});
    EXPECT_EQ(proposal_.changed(), 0U);

    toggle({0, 1});
    EXPECT_EQ(proposal_.changed(), 2U);

    toggle({1, 2});
    EXPECT_EQ(proposal_.changed(), 2U);

    toggle({0, 2});
    EXPECT_EQ(proposal_.changed(), 0U);
}

TEST_F(ProposedMarksTest, AreRestored)
{
    searchIn({person("1"), person("2"), person("3")});
    toggle({0, 2});
    ASSERT_EQ(marks(), "xx-");

    const auto rows = proposal_.restore(engine_);
    proposal_.rowsEdited(engine_, rows);

    EXPECT_EQ(rows, (Rows{0, 2}));
    EXPECT_EQ(marks(), "-xx");
    EXPECT_EQ(proposal_.changed(), 0U);
}

TEST_F(ProposedMarksTest, StayWithTheirPeopleAfterADeletion)
{
    searchIn({person("1", "Ann"), person("2", "Ann"), person("3", "Ann"), person("4", "Ben"),
              person("5", "Ben"), person("6", "Cid"), person("7", "Dan"), person("8", "Dan")});
    toggle({1, 6});
    remove({"3", "5"});
    ASSERT_EQ(marks(), "-----") << "Ann, Ann, Ben, Dan, Dan";

    EXPECT_EQ(proposal_.changed(), 0U);
    EXPECT_EQ(proposal_.restore(engine_), (Rows{1, 4}));
    EXPECT_EQ(marks(), "-x--x");
}

TEST_F(ProposedMarksTest, StayWithTheirPeopleAfterSeveralDeletions)
{
    searchIn({person("1", "Ann"), person("2", "Ann"), person("3", "Ann"), person("4", "Ben"),
              person("5", "Ben"), person("6", "Ben")});
    toggle({1, 4});
    remove({"3"});
    remove({"6"});
    ASSERT_EQ(marks(), "----");

    EXPECT_EQ(proposal_.restore(engine_), (Rows{1, 3}));
}

TEST_F(ProposedMarksTest, NeverLoseThePersonWhoIsLeftAfterADeletion)
{
    searchIn({person("1"), person("2"), person("3")});
    toggle({0, 1, 2});
    remove({"1"});
    ASSERT_EQ(marks(), "--");

    EXPECT_EQ(proposal_.restore(engine_), Rows{1});
    EXPECT_EQ(marks(), "-x");
}

TEST_F(ProposedMarksTest, AreForgotten)
{
    searchIn({person("1"), person("2")});
    toggle({0});

    proposal_.clear();

    EXPECT_EQ(proposal_.changed(), 0U);
    EXPECT_EQ(proposal_.restore(engine_), Rows());
    EXPECT_EQ(marks(), "xx");
}

}  // namespace
}  // namespace dunmora::test
