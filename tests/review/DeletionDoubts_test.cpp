#include "review/DeletionDoubts.h"

#include "engine/ContactsParser.h"
#include "review/CheckedPeople.h"
#include "review/GroupWarnings.h"
#include "tests/fakes/FakePlatform.h"
#include "tests/fakes/People.h"

#include <gtest/gtest.h>

namespace dunmora::test {
namespace {

using Names = std::vector<std::string>;
using Rows = std::vector<std::size_t>;

class DeletionDoubtsTest : public testing::Test {
protected:
    void reviewShows(std::vector<FakePerson> people)
    {
        platform_.addressBook = FakeAddressBook(std::move(people));
        engine_.load();
        engine_.findDupes();
        warnings_.update(engine_);
    }

    void check(const std::string& uid, bool on)
    {
        engine_.contacts().find(uid)->setObject(on, kContactCheck);
        warnings_.update(engine_);
    }

    FakePlatform platform_;
    ContactsParser engine_;
    GroupWarnings warnings_;
};

/// A person whose compared fields are empty.
FakePerson nobody(const std::string& uid)
{
    return named(uid, "", "");
}

TEST_F(DeletionDoubtsTest, AreNoneWhileEveryGroupKeepsACopy)
{
    reviewShows({person("1", "Ann"), person("2", "Ann"), person("3", "Ben")});

    EXPECT_FALSE(deletionDoubts(engine_, warnings_).areAny());
}

TEST_F(DeletionDoubtsTest, NameNobodyInSeveralLines)
{
    reviewShows({named("1", "Ann\n\nNobody would be lost.", "Lee"), named("2", "Ben")});
    check("1", true);

    EXPECT_EQ(deletionDoubts(engine_, warnings_).lostNames,
              (Names{"Ann  Nobody would be lost. Lee"}));
}

TEST_F(DeletionDoubtsTest, NameTheFirstFivePeopleWhoWouldBeLost)
{
    std::vector<FakePerson> people;
    for (const auto* const name : {"Ann", "Ben", "Cid", "Dan", "Eve", "Fay"}) {
        people.push_back(named(std::string(name) + "1", name));
        people.push_back(named(std::string(name) + "2", name));
    }
    people.push_back(named("Gus1", "Gus"));
    reviewShows(people);
    check("Gus1", true);

    const auto doubts = deletionDoubts(engine_, warnings_);

    EXPECT_EQ(doubts.lost, 7U);
    EXPECT_EQ(doubts.lostNames, (Names{"Ann Lee", "Ben Lee", "Cid Lee", "Dan Lee", "Eve Lee"}));
    EXPECT_EQ(doubts.sharingOnlyEmptyFields, 0U);
    const auto question = doubtQuestion(doubts);
    EXPECT_EQ(question.messageText, "7 people would be deleted completely");
    EXPECT_EQ(question.informativeText,
              "Ann Lee, Ben Lee, Cid Lee, Dan Lee, Eve Lee and 2 more.\n\n"
              "Leave Them Out keeps one copy of each person.");
}

TEST_F(DeletionDoubtsTest, CountOnlyThoseWithEmptyFieldsWhoAreChecked)
{
    reviewShows({withMobile(nobody("1")), nobody("2"), nobody("3")});

    const auto doubts = deletionDoubts(engine_, warnings_);

    EXPECT_EQ(doubts.lost, 0U);
    EXPECT_EQ(doubts.sharingOnlyEmptyFields, 2U);
    const auto question = doubtQuestion(doubts);
    EXPECT_EQ(question.messageText, "2 people match only because their fields are empty");
    EXPECT_EQ(question.informativeText,
              "They may be different people. Leave Them Out unchecks them.");
    EXPECT_EQ(question.defaultButton, "Leave Them Out");
    EXPECT_EQ(question.alternateButton, "Cancel");
    EXPECT_EQ(question.otherButton, "Delete Them Too");
}

TEST_F(DeletionDoubtsTest, AreBothInOneQuestion)
{
    reviewShows({nobody("1"), nobody("2"), named("3", "Ann"), named("4", "Ann")});

    const auto doubts = deletionDoubts(engine_, warnings_);

    EXPECT_EQ(doubts.lostNames, (Names{"no name", "Ann Lee"}));
    const auto question = doubtQuestion(doubts);
    EXPECT_EQ(question.messageText, "2 people would be deleted completely");
    EXPECT_EQ(question.informativeText,
              "no name, Ann Lee.\n\n2 people match only because their fields are empty.\n\n"
              "Leave Them Out keeps one copy of each person and unchecks those who match only "
              "because their fields are empty.");
}

TEST_F(DeletionDoubtsTest, NamePeopleWithoutANameByTheirCards)
{
    auto firm = nobody("1");
    firm.properties = {{"ORG", "", {"Acme"}, {}}};
    reviewShows({firm, nobody("2")});

    EXPECT_EQ(deletionDoubts(engine_, warnings_, &platform_.addressBook).lostNames, Names{"Acme"});
}

TEST_F(DeletionDoubtsTest, LeaveOneOfEachAndEveryBlankMatch)
{
    reviewShows({named("1", "Ann"), named("2", "Ann"), nobody("3"), nobody("4"), person("5", "Ben"),
                 person("6", "Ben"), named("7", "Cid")});
    check("7", true);

    EXPECT_EQ(leaveDoubtsOut(engine_, warnings_), (Rows{0, 2, 3}));

    EXPECT_EQ(checkedUids(engine_), (Names{"2", "6"}));
    EXPECT_FALSE(deletionDoubts(engine_, warnings_).areAny());
}

}  // namespace
}  // namespace dunmora::test
