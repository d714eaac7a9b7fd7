#include "engine/DuplicateGroups.h"

#include "app/Settings.h"
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
    EXPECT_FALSE(sharesOnlyEmptyFields("--"));
}

}  // namespace
}  // namespace dunmora::test
