#include "review/DuplicateGroups.h"

#include "base/Settings.h"
#include "engine/ContactsParser.h"
#include "tests/fakes/FakePlatform.h"
#include "tests/fakes/People.h"

#include <gtest/gtest.h>

#include <utility>

namespace dunmora::test {
namespace {

using Uids = ContactsParser::Uids;

class DuplicateGroupsTest : public testing::Test {
protected:
    void bookHolds(const std::vector<std::pair<std::string, std::string>>& uidsAndFirstNames)
    {
        std::vector<FakePerson> people;
        people.reserve(uidsAndFirstNames.size());
        for (const auto& [uid, firstName] : uidsAndFirstNames) {
            people.push_back(person(uid, firstName));
        }
        bookHoldsPeople(std::move(people));
    }

    void bookHoldsPeople(std::vector<FakePerson> people)
    {
        platform_.addressBook = FakeAddressBook(std::move(people));
        engine_.load();
        engine_.findDupes();
    }

    static Uids uidsOf(const DuplicateGroup& group)
    {
        return {group.uids.begin(), group.uids.end()};
    }

    static FakePerson nobody(const std::string& uid)
    {
        auto result = person(uid);
        result.firstName.reset();
        result.lastName.reset();
        return result;
    }

    FakePlatform platform_;
    ContactsParser engine_;
};

TEST_F(DuplicateGroupsTest, AreTheRunsOfEqualKeysAmongTheRows)
{
    bookHolds({{"1", "Ann"}, {"2", "Ben"}, {"3", "Ann"}, {"4", "Ben"}, {"5", "Ann"}, {"6", "Cid"}});

    const auto groups = duplicateGroups(engine_);

    ASSERT_EQ(groups.size(), 2U);
    EXPECT_EQ(groups[0].key(), "Ann-Lee-");
    EXPECT_EQ(uidsOf(groups[0]), (Uids{"1", "3", "5"}));
    EXPECT_EQ(groups[1].key(), "Ben-Lee-");
    EXPECT_EQ(uidsOf(groups[1]), (Uids{"2", "4"}));
}

TEST_F(DuplicateGroupsTest, AreOneWhereDifferentTextsMakeTheSameKey)
{
    bookHoldsPeople(
        {named("1", "Ann-", "Lee"), named("2", "Ann", "-Lee"), named("3", "Ann-", "Lee")});

    const auto groups = duplicateGroups(engine_);

    ASSERT_EQ(groups.size(), 1U);
    EXPECT_EQ(groups[0].key(), "Ann--Lee-");
    EXPECT_EQ(groups[0].uids.size(), 3U);
}

TEST_F(DuplicateGroupsTest, AreThoseOfTheSearchWhateverThePreferencesAreNow)
{
    bookHolds({{"1", "Ann"}, {"2", "Ann"}, {"3", "Ben"}, {"4", "Ben"}});

    Settings::settings().setFilterFirstname(false);

    const auto groups = duplicateGroups(engine_);
    ASSERT_EQ(groups.size(), 2U);
    EXPECT_EQ(groups[0].key(), "Ann-Lee-");
    EXPECT_EQ(groups[1].key(), "Ben-Lee-");
}

TEST_F(DuplicateGroupsTest, AreOneWithoutAKeyWhenNoFieldIsCompared)
{
    Settings::settings().setFilterFirstname(false);
    Settings::settings().setFilterLastname(false);

    bookHolds({{"1", "Ann"}, {"2", "Ann"}, {"3", "Ben"}, {"4", "Ben"}});

    const auto groups = duplicateGroups(engine_);
    ASSERT_EQ(groups.size(), 1U);
    EXPECT_EQ(groups[0].key(), "");
    EXPECT_EQ(groups[0].uids.size(), 4U);
    EXPECT_TRUE(groups[0].sharesOnlyEmptyFields);
}

TEST_F(DuplicateGroupsTest, OmitThePeopleWhomADeletionRemoved)
{
    bookHolds({{"1", "Ann"}, {"2", "Ann"}, {"3", "Ben"}, {"4", "Ben"}, {"5", "Cid"}, {"6", "Cid"}});

    engine_.deleteContacts({"1", "3", "4", "6"});

    const auto groups = duplicateGroups(engine_);
    ASSERT_EQ(groups.size(), 2U);
    EXPECT_EQ(groups[0].key(), "Ann-Lee-");
    EXPECT_EQ(uidsOf(groups[0]), Uids{"2"});
    EXPECT_EQ(groups[0].firstRow, 0U);
    EXPECT_EQ(groups[1].key(), "Cid-Lee-");
    EXPECT_EQ(uidsOf(groups[1]), Uids{"5"});
    EXPECT_EQ(groups[1].firstRow, 1U);
}

TEST_F(DuplicateGroupsTest, StayWhenTheEngineNoLongerKnowsAPerson)
{
    bookHolds({{"1", "Ann"}, {"2", "Ann"}});

    engine_.contacts().erase("2");

    const auto groups = duplicateGroups(engine_);
    ASSERT_EQ(groups.size(), 1U);
    EXPECT_EQ(uidsOf(groups[0]), (Uids{"1", "2"}));
}

TEST_F(DuplicateGroupsTest, DoNotReadThePreferences)
{
    bookHolds({{"1", "Ann"}, {"2", "Ann"}, {"3", "Ben"}, {"4", "Ben"}});
    const auto before = platform_.userDefaults.reads();

    duplicateGroups(engine_);

    EXPECT_EQ(platform_.userDefaults.reads(), before);
}

TEST_F(DuplicateGroupsTest, AreNoneWithoutRows)
{
    bookHolds({{"1", "Ann"}});

    EXPECT_TRUE(duplicateGroups(engine_).empty());
}

TEST_F(DuplicateGroupsTest, ShareOnlyEmptyFieldsWhenEveryFieldComparedIsEmpty)
{
    // A dash is a first name like any other: "---" is not the key of two empty fields.
    bookHoldsPeople({named("1", "", ""), named("2", "", ""), named("3", "-", ""),
                     named("4", "-", ""), named("5", "Ann", ""), named("6", "Ann", "")});

    const auto groups = duplicateGroups(engine_);

    ASSERT_EQ(groups.size(), 3U);
    EXPECT_EQ(groups[0].key(), "--");
    EXPECT_TRUE(groups[0].sharesOnlyEmptyFields);
    EXPECT_EQ(groups[1].key(), "---");
    EXPECT_FALSE(groups[1].sharesOnlyEmptyFields);
    EXPECT_EQ(groups[2].key(), "Ann--");
    EXPECT_FALSE(groups[2].sharesOnlyEmptyFields);
}

TEST_F(DuplicateGroupsTest, ShareOnlyEmptyFieldsWhenEveryFieldComparedIsBlank)
{
    std::vector<FakePerson> people;
    for (const std::string blank :
         {" ", "\t", "\u00A0", "\u3000", "\u2003", "\u200B", "- ", "\u3000-", "."}) {
        people.push_back(named(std::to_string(people.size()), blank, ""));
        people.push_back(named(std::to_string(people.size()), blank, ""));
    }
    people.push_back(named("last name 1", "", " "));
    people.push_back(named("last name 2", "", " "));
    bookHoldsPeople(std::move(people));

    const auto groups = duplicateGroups(engine_);

    ASSERT_EQ(groups.size(), 10U);
    for (const auto& group : groups) {
        const auto shows =
            group.key() == "- --" || group.key() == "\u3000---" || group.key() == ".--";
        EXPECT_EQ(group.sharesOnlyEmptyFields, !shows) << group.key();
    }
}

TEST_F(DuplicateGroupsTest, ShareNothingWhenOnePersonIsLeft)
{
    bookHoldsPeople({nobody("1"), nobody("2")});
    ASSERT_TRUE(duplicateGroups(engine_).front().sharesOnlyEmptyFields);

    engine_.deleteContacts({"2"});

    EXPECT_FALSE(duplicateGroups(engine_).front().sharesOnlyEmptyFields);
}

}  // namespace
}  // namespace dunmora::test
