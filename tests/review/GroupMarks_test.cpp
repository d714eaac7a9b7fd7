#include "review/GroupMarks.h"

#include "engine/ContactsParser.h"
#include "review/GroupWarnings.h"
#include "tests/fakes/FakePlatform.h"
#include "tests/fakes/People.h"

#include <gtest/gtest.h>

namespace dunmora::test {
namespace {

using Rows = std::vector<std::size_t>;

class GroupMarksTest : public testing::Test {
protected:
    void reviewShows(std::vector<FakePerson> people)
    {
        platform_.addressBook = FakeAddressBook(std::move(people));
        engine_.load();
        engine_.findDupes();
        warnings_.update(engine_);
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
    GroupWarnings warnings_;
};

TEST_F(GroupMarksTest, KeepOnlyOneCopyOfAGroup)
{
    reviewShows({person("1", "Ann"), person("2", "Ann"), person("3", "Ben"), person("4", "Ben"),
                 person("5", "Ben"), person("6", "Cid"), person("7", "Cid")});
    ASSERT_EQ(marks(), "-x-xx-x");

    EXPECT_EQ(keepOnly(engine_, warnings_, 4), (Rows{2, 4}));

    EXPECT_EQ(marks(), "-xxx--x");
    EXPECT_EQ(keepOnly(engine_, warnings_, 4), Rows());
}

TEST_F(GroupMarksTest, KeepAllCopiesOfAGroup)
{
    reviewShows({person("1", "Ann"), person("2", "Ann"), person("3", "Ben"), person("4", "Ben"),
                 person("5", "Ben")});

    EXPECT_EQ(keepAll(engine_, warnings_, 2), (Rows{3, 4}));

    EXPECT_EQ(marks(), "-x---");
}

TEST_F(GroupMarksTest, LeaveRowsAloneThatDoNotExist)
{
    reviewShows({person("1", "Ann"), person("2", "Ann")});

    EXPECT_EQ(keepOnly(engine_, warnings_, 2), Rows());
    EXPECT_EQ(keepAll(engine_, warnings_, 2), Rows());
    EXPECT_EQ(marks(), "-x");
}

TEST_F(GroupMarksTest, UncheckOnlyPeopleWhoShareOnlyEmptyFields)
{
    reviewShows({person("1", "Ann"), named("2", "", ""), person("3", "Ann"), named("4", "", ""),
                 named("5", "", "")});
    ASSERT_EQ(marks(), "-xxxx");

    EXPECT_EQ(uncheckSharingOnlyEmptyFields(engine_, warnings_), (Rows{2, 3, 4}));

    EXPECT_EQ(marks(), "-x---");
}

}  // namespace
}  // namespace dunmora::test
