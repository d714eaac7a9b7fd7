#include "review/DuplicateGroups.h"

#include "base/Settings.h"
#include "engine/ContactsParser.h"
#include "tests/fakes/FakePlatform.h"

#include <gtest/gtest.h>

namespace dunmora::test {
namespace {

class DuplicateGroupsTest : public testing::Test {
protected:
    void bookHolds(const std::vector<std::pair<std::string, std::string>>& uidsAndFirstNames)
    {
        std::vector<FakePerson> people;
        for (const auto& [uid, firstName] : uidsAndFirstNames) {
            FakePerson person;
            person.uid = uid;
            person.firstName = firstName;
            people.push_back(person);
        }
        bookHoldsPeople(std::move(people));
    }

    void bookHoldsPeople(std::vector<FakePerson> people)
    {
        platform_.addressBook = FakeAddressBook(std::move(people));
        engine_.load();
        engine_.findDupes();
    }

    FakePlatform platform_;
    ContactsParser engine_;
};

TEST_F(DuplicateGroupsTest, AreTheRunsOfEqualKeysAmongTheRows)
{
    bookHolds({{"1", "Ann"}, {"2", "Ben"}, {"3", "Ann"}, {"4", "Ben"}, {"5", "Ann"}, {"6", "Cid"}});

    const auto groups = duplicateGroups(engine_);

    ASSERT_EQ(groups.size(), 2U);
    EXPECT_EQ(groups[0].key, "Ann-Lee-");
    EXPECT_EQ(std::vector(groups[0].uids.begin(), groups[0].uids.end()),
              (std::vector<std::string>{"1", "3", "5"}));
    EXPECT_EQ(groups[1].key, "Ben-Lee-");
    EXPECT_EQ(std::vector(groups[1].uids.begin(), groups[1].uids.end()),
              (std::vector<std::string>{"2", "4"}));
}

TEST_F(DuplicateGroupsTest, AreOneWhereDifferentTextsMakeTheSameKey)
{
    FakePerson first;
    first.uid = "1";
    first.firstName = "Ann-";
    first.lastName = "Lee";
    FakePerson second = first;
    second.uid = "2";
    second.firstName = "Ann";
    second.lastName = "-Lee";
    FakePerson third = first;
    third.uid = "3";
    bookHoldsPeople({first, second, third});

    const auto groups = duplicateGroups(engine_);

    ASSERT_EQ(groups.size(), 1U);
    EXPECT_EQ(groups[0].key, "Ann--Lee-");
    EXPECT_EQ(groups[0].uids.size(), 3U);
}

TEST_F(DuplicateGroupsTest, GoByTheFieldsChosenNow)
{
    bookHolds({{"1", "Ann"}, {"2", "Ann"}, {"3", "Ben"}, {"4", "Ben"}});

    Settings::settings().setFilterFirstname(false);

    const auto groups = duplicateGroups(engine_);
    ASSERT_EQ(groups.size(), 1U);
    EXPECT_EQ(groups[0].key, "Lee-");
    EXPECT_EQ(groups[0].uids.size(), 4U);
}

TEST_F(DuplicateGroupsTest, AreOneWithoutAKeyWhenNoFieldIsChosen)
{
    bookHolds({{"1", "Ann"}, {"2", "Ann"}, {"3", "Ben"}, {"4", "Ben"}});

    Settings::settings().setFilterFirstname(false);
    Settings::settings().setFilterLastname(false);

    const auto groups = duplicateGroups(engine_);
    ASSERT_EQ(groups.size(), 1U);
    EXPECT_EQ(groups[0].key, "");
    EXPECT_EQ(groups[0].uids.size(), 4U);
}

TEST_F(DuplicateGroupsTest, GiveWhomTheEngineDoesNotKnowTheEmptyKey)
{
    bookHolds({{"1", "Ann"}, {"2", "Ann"}, {"3", "Ben"}, {"4", "Ben"}});

    engine_.contacts().erase("2");
    engine_.contacts().erase("3");

    const auto groups = duplicateGroups(engine_);
    ASSERT_EQ(groups.size(), 3U);
    EXPECT_EQ(groups[0].key, "Ann-Lee-");
    EXPECT_EQ(groups[1].key, "");
    EXPECT_EQ(groups[1].uids.size(), 2U);
    EXPECT_EQ(groups[2].key, "Ben-Lee-");
}

TEST_F(DuplicateGroupsTest, AskThePreferencesOnceForAllRows)
{
    bookHolds({{"1", "Ann"}, {"2", "Ann"}, {"3", "Ben"}, {"4", "Ben"}});
    const auto before = platform_.userDefaults.reads();

    duplicateGroups(engine_);

    EXPECT_EQ(platform_.userDefaults.reads() - before, 6);
}

TEST_F(DuplicateGroupsTest, AreNoneWithoutRows)
{
    bookHolds({{"1", "Ann"}});

    EXPECT_TRUE(duplicateGroups(engine_).empty());
}

TEST_F(DuplicateGroupsTest, LoseEveryCopyOnlyWhenAllAreChecked)
{
    bookHolds({{"1", "Ann"}, {"2", "Ann"}});
    const auto group = duplicateGroups(engine_).front();
    EXPECT_FALSE(losesEveryCopy(engine_, group));

    engine_.contacts().find("1")->setObject(true, "check");

    EXPECT_TRUE(losesEveryCopy(engine_, group));
}

TEST_F(DuplicateGroupsTest, ShareOnlyEmptyFieldsWhenTheKeyIsOneSeparatorAField)
{
    EXPECT_TRUE(sharesOnlyEmptyFields("--"));
    EXPECT_FALSE(sharesOnlyEmptyFields("Ann--"));
    EXPECT_FALSE(sharesOnlyEmptyFields("-"));

    // Two fields, one of which holds a dash: a text is shared after all.
    EXPECT_FALSE(sharesOnlyEmptyFields("---"));

    Settings::settings().setFilterNickname(true);
    EXPECT_TRUE(sharesOnlyEmptyFields("---"));
    EXPECT_EQ(keyOfEmptyFields(), "---");
    EXPECT_FALSE(sharesOnlyEmptyFields("--"));
}

}  // namespace
}  // namespace dunmora::test
