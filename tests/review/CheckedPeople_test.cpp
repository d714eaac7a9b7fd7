#include "review/CheckedPeople.h"

#include "engine/ContactsParser.h"
#include "review/GroupWarnings.h"
#include "tests/fakes/FakePlatform.h"
#include "tests/fakes/People.h"
#include "tests/review/Cards.h"

#include <gtest/gtest.h>

namespace dunmora::test {
namespace {

using Names = std::vector<std::string>;

class CheckedPeopleTest : public testing::Test {
protected:
    /// Each person has the first name of its uid without the last character. Nobody has a phone
    /// number, so that a search checks everyone in a group.
    void reviewShows(const std::vector<std::string>& uids)
    {
        std::vector<FakePerson> people;
        people.reserve(uids.size());
        for (const auto& uid : uids) {
            people.push_back(named(uid, uid.substr(0, uid.size() - 1)));
        }
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

    /// The uids of those who are checked among people with these uids.
    Names foundAmong(const Names& uids) const
    {
        std::vector<Person> people;
        people.reserve(uids.size());
        for (const auto& uid : uids) {
            people.push_back({uid, {}, {}, {}, {}, {}});
        }
        Names found;
        for (const auto* person : checkedAmong(people, engine_)) {
            found.emplace_back(person->uid);
        }
        return found;
    }

    FakePlatform platform_;
    ContactsParser engine_;
    GroupWarnings warnings_;
};

TEST_F(CheckedPeopleTest, AreListedInTheOrderOfTheBookWhetherDuplicatesOrNot)
{
    reviewShows({"Cid1", "Ann1", "Ben1", "Ann2"});
    check("Cid1", true);

    EXPECT_EQ(checkedUids(engine_), (Names{"Cid1", "Ann1", "Ann2"}));
    EXPECT_EQ(checkedWithoutDuplicates(engine_), Names{"Cid1"});
}

TEST_F(CheckedPeopleTest, AreFoundInAListingOfEverybody)
{
    reviewShows({"Cid1", "Ann1", "Ben1", "Ann2"});

    EXPECT_EQ(foundAmong({"Cid1", "Ann1", "Ben1", "Ann2"}), (Names{"Ann1", "Ann2"}));
}

TEST_F(CheckedPeopleTest, AreFoundInAListingThatIsNotTheOneOfTheReview)
{
    reviewShows({"Cid1", "Ann1", "Ben1", "Ann2"});

    EXPECT_EQ(foundAmong({"Ann2", "Cid1", "Ann1"}), (Names{"Ann2", "Ann1"}));
    EXPECT_EQ(foundAmong({"Dan1", "Cid1", "Ann1", "Ben1", "Ann2"}), (Names{"Ann1", "Ann2"}));
    EXPECT_EQ(foundAmong({"Ann2"}), Names{"Ann2"});
    EXPECT_EQ(foundAmong({"Dan1", "Ben1"}), Names());
    EXPECT_EQ(foundAmong({}), Names());
}

TEST_F(CheckedPeopleTest, AreFoundAsOftenAsTheyAreListed)
{
    reviewShows({"Ann1", "Ann2"});

    EXPECT_EQ(foundAmong({"Ann1", "Ann1", "Ann2", "Ann1"}),
              (Names{"Ann1", "Ann1", "Ann2", "Ann1"}));
}

TEST_F(CheckedPeopleTest, KeepTheFirstOfEveryGroupThatWouldLoseEveryCopy)
{
    reviewShows({"Ann1", "Ann2", "Ben1", "Ben2", "Cid1", "Cid2"});
    check("Ben2", false);

    EXPECT_EQ(keepOneOfEach(engine_, warnings_), (std::vector<std::size_t>{0, 4}));

    EXPECT_EQ(checkedUids(engine_), (Names{"Ann2", "Ben1", "Cid2"}));
}

TEST_F(CheckedPeopleTest, AreLastCopiesWhereAllOfAGroupOrOneWithoutAGroupIsChecked)
{
    reviewShows({"Ann1", "Ann2", "Ben1", "Ben2", "Cid1", "Dan1"});
    check("Ben1", false);
    check("Dan1", true);

    EXPECT_EQ(lastCopies(engine_, warnings_, nullptr), (Names{"Ann Lee", "Dan Lee"}));
}

TEST_F(CheckedPeopleTest, AreNamedByTheUidWhenNothingElseIsKnown)
{
    platform_.addressBook = FakeAddressBook({named("7", "", "")});
    engine_.load();
    engine_.findDupes();
    check("7", true);

    EXPECT_EQ(lastCopies(engine_, warnings_, nullptr), Names{"(no name, uid 7)"});
    FakeCards cards;
    EXPECT_EQ(lastCopies(engine_, warnings_, &cards), Names{"(no name, uid 7)"});
    cards.byUid["7"] = card({text("FN", "Acme")});
    EXPECT_EQ(lastCopies(engine_, warnings_, &cards), Names{"Acme"});
}

}  // namespace
}  // namespace dunmora::test
