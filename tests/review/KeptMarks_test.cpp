#include "review/KeptMarks.h"

#include "engine/ContactsParser.h"
#include "review/GroupWarnings.h"
#include "review/ProposedMarks.h"
#include "tests/fakes/FakePlatform.h"
#include "tests/fakes/People.h"

#include <gtest/gtest.h>

#include <map>
#include <utility>

namespace dunmora::test {
namespace {

using Rows = std::vector<std::size_t>;

class KeptMarksTest : public testing::Test {
protected:
    void searchIn(std::vector<FakePerson> people)
    {
        platform_.addressBook = FakeAddressBook(std::move(people));
        engine_.load();
        engine_.findDupes();
        groups_.update(engine_);
        proposal_.searched(engine_);
    }

    void toggle(const Rows& rows)
    {
        for (const auto row : rows) {
            auto& contact = *engine_.contacts().find(engine_.duplicates()[row]);
            contact.setObject(!contact.isChecked(), kContactCheck);
        }
    }

    KeptMarks keep() { return {engine_, groups_, proposal_, cardHash_}; }

    KeptMarks::Restored restore(const KeptMarks& kept)
    {
        return kept.restore(engine_, groups_, cardHash_);
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
    GroupWarnings groups_;
    ProposedMarks proposal_;
    /// By uid; 1 for everyone else.
    std::map<std::string, std::optional<std::uint64_t>> cards_;
    KeptMarks::CardHash cardHash_ = [this](std::size_t row) {
        const auto found = cards_.find(engine_.duplicates()[row]);
        return found == cards_.end() ? std::optional<std::uint64_t>(1) : found->second;
    };
};

TEST_F(KeptMarksTest, AreNoneWhenTheProposalWasNotChanged)
{
    searchIn({person("1", "Ann"), person("2", "Ann")});

    EXPECT_EQ(keep().count(), 0U);
    EXPECT_EQ(KeptMarks().count(), 0U);
    EXPECT_EQ(restore(KeptMarks()).rows, Rows());
}

TEST_F(KeptMarksTest, AreRestoredInGroupsThatAreTheSame)
{
    searchIn({person("1", "Ann"), person("2", "Ann"), person("3", "Ann"), person("4", "Ben"),
              person("5", "Ben")});
    toggle({0, 2});
    const auto kept = keep();
    EXPECT_EQ(kept.count(), 2U);

    searchIn({person("4", "Ben"), person("5", "Ben"), person("1", "Ann"), person("2", "Ann"),
              person("3", "Ann")});
    const auto restored = restore(kept);

    EXPECT_EQ(marks(), "-xxx-");
    EXPECT_EQ(restored.rows, (Rows{2, 4}));
    EXPECT_EQ(restored.kept, 2U);
    EXPECT_EQ(restored.lost, 0U);
}

TEST_F(KeptMarksTest, FollowTheirPeopleWhenAGroupIsListedInAnotherOrder)
{
    searchIn({person("1"), person("2"), person("3")});
    toggle({0, 2});
    const auto kept = keep();

    searchIn({person("3"), person("1"), person("2")});
    const auto restored = restore(kept);

    EXPECT_EQ(marks(), "-xx");
    EXPECT_EQ(restored.kept, 2U);
    EXPECT_EQ(restored.rows, Rows());
}

TEST_F(KeptMarksTest, FollowTheirGroupsWhenTheseAreListedInAnotherOrder)
{
    const auto twice = [](const std::vector<std::string>& names) {
        std::vector<FakePerson> people;
        for (const auto& name : names) {
            people.push_back(person(name + "1", name));
            people.push_back(person(name + "2", name));
        }
        return people;
    };
    searchIn(twice({"Ann", "Ben", "Cid", "Dan", "Eve"}));
    toggle({0, 2, 6, 8});
    const auto kept = keep();

    searchIn(twice({"Eve", "Ann", "Zoe", "Cid", "Dan"}));
    const auto restored = restore(kept);

    EXPECT_EQ(marks(), "xxxx-x-xxx");
    EXPECT_EQ(restored.rows, (Rows{0, 2, 8}));
    EXPECT_EQ(restored.kept, 3U);
    EXPECT_EQ(restored.lost, 1U);
}

TEST_F(KeptMarksTest, AreLostInAGroupWithANewMember)
{
    searchIn({person("1"), person("2")});
    toggle({1});
    const auto kept = keep();

    searchIn({person("1"), person("2"), person("3")});
    const auto restored = restore(kept);

    EXPECT_EQ(marks(), "-xx");
    EXPECT_EQ(restored.rows, Rows());
    EXPECT_EQ(restored.kept, 0U);
    EXPECT_EQ(restored.lost, 1U);
}

TEST_F(KeptMarksTest, AreLostInAGroupWithAnotherMemberInsteadOfOne)
{
    searchIn({person("1"), person("2"), person("3")});
    toggle({1});
    const auto kept = keep();

    searchIn({person("1"), person("4"), person("3")});

    EXPECT_EQ(restore(kept).lost, 1U);
    EXPECT_EQ(marks(), "-xx");
}

TEST_F(KeptMarksTest, AreLostInAGroupInWhichACardHasChanged)
{
    searchIn({person("1", "Ann"), person("2", "Ann"), person("3", "Ben"), person("4", "Ben")});
    toggle({1, 3});
    const auto kept = keep();

    cards_["1"] = 2;
    searchIn({person("1", "Ann"), person("2", "Ann"), person("3", "Ben"), person("4", "Ben")});
    const auto restored = restore(kept);

    EXPECT_EQ(marks(), "-x--");
    EXPECT_EQ(restored.kept, 1U);
    EXPECT_EQ(restored.lost, 1U);
}

TEST_F(KeptMarksTest, AreLostWhereACardCannotBeRead)
{
    cards_["2"] = std::nullopt;
    searchIn({person("1"), person("2")});
    toggle({1});

    EXPECT_EQ(restore(keep()).lost, 1U);
}

TEST_F(KeptMarksTest, CheckNobodyOutsideTheRows)
{
    searchIn({person("1"), person("2")});
    toggle({0});
    const auto kept = keep();

    searchIn({person("1", "Ann"), person("2", "Ben")});
    const auto restored = restore(kept);

    EXPECT_EQ(restored.lost, 1U);
    EXPECT_FALSE(engine_.contacts().find("1")->isChecked());
    EXPECT_FALSE(engine_.contacts().find("2")->isChecked());
}

}  // namespace
}  // namespace dunmora::test
