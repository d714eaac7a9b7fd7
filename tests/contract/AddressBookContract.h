#pragma once

#include "platform/AddressBook.h"
#include "platform/PlatformError.h"
#include "tests/fakes/FakeAddressBook.h"
#include "tests/fakes/People.h"

#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {

/// What every AddressBook must do. Instantiate it with a type that has these members:
///
///     AddressBook& book();
///     void hold(const std::vector<FakePerson>& people);  // replaces everyone
///     std::vector<std::string> uidsSeenByOthers();       // in the book's order
///     std::string trace();                               // differs after each write
///     void breakSaving();
///     void mendSaving();
///
/// If its book does not support a property, also this, which returns the reason:
///
///     static std::optional<std::string> whyNot(std::string_view property);
template <typename BookUnderTest>
class AddressBookContract : public testing::Test {
protected:
    void SetUp() override
    {
        if constexpr (requires { BookUnderTest::whyNot(""); }) {
            const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
            if (const auto reason = BookUnderTest::whyNot(test->name())) {
                GTEST_SKIP() << *reason;
            }
        }
    }

    using Uids = std::vector<std::string>;

    AddressBook& book() { return underTest_.book(); }
    BookUnderTest& underTest() { return underTest_; }

    void holds(const Uids& uids)
    {
        std::vector<FakePerson> people;
        for (const auto& uid : uids) {
            people.push_back(person(uid));
        }
        underTest_.hold(people);
    }

    static Uids uidsOf(std::span<const Person> people)
    {
        Uids uids;
        for (const auto& each : people) {
            uids.emplace_back(each.uid);
        }
        return uids;
    }

    bool saveFails()
    {
        try {
            book().save();
        } catch (const PlatformError&) {
            return true;
        }
        return false;
    }

private:
    BookUnderTest underTest_;
};

TYPED_TEST_SUITE_P(AddressBookContract);

TYPED_TEST_P(AddressBookContract, ListsPeopleInTheBooksOrder)
{
    this->holds({"m", "a", "z", "b"});

    EXPECT_EQ(this->uidsOf(this->book().readPeople()),
              (std::vector<std::string>{"m", "a", "z", "b"}));
    EXPECT_EQ(this->uidsOf(this->book().people()), (std::vector<std::string>{"m", "a", "z", "b"}));
}

TYPED_TEST_P(AddressBookContract, ListsEveryPropertyOfAPerson)
{
    const FakePerson ann;
    this->underTest().hold({ann});

    const auto people = this->book().readPeople();

    ASSERT_EQ(people.size(), 1U);
    const auto& person = people.front();
    EXPECT_EQ(person.uid, ann.uid);
    EXPECT_EQ(person.firstName, *ann.firstName);
    EXPECT_EQ(person.lastName, *ann.lastName);
    EXPECT_EQ(person.nickname, *ann.nickname);
    EXPECT_EQ(person.modified, ann.modified);
    ASSERT_TRUE(person.phones.has_value());
    ASSERT_EQ(person.phones->size(), ann.phones->size());
    for (std::size_t i = 0; i < ann.phones->size(); ++i) {
        EXPECT_EQ((*person.phones)[i].label, *(*ann.phones)[i].label);
        EXPECT_EQ((*person.phones)[i].value, (*ann.phones)[i].value);
    }
}

TYPED_TEST_P(AddressBookContract, LeavesMissingPropertiesEmpty)
{
    this->underTest().hold({FakePerson{"bare", {}, {}, {}, {}, {}}});

    const auto people = this->book().readPeople();

    ASSERT_EQ(people.size(), 1U);
    const auto& person = people.front();
    EXPECT_EQ(person.uid, "bare");
    EXPECT_EQ(person.firstName, std::nullopt);
    EXPECT_EQ(person.lastName, std::nullopt);
    EXPECT_EQ(person.nickname, std::nullopt);
    EXPECT_EQ(person.modified, std::nullopt);
    EXPECT_FALSE(person.phones.has_value());
}

TYPED_TEST_P(AddressBookContract, ListsAPhoneWithoutALabel)
{
    auto ann = person("ann");
    ann.phones = {{std::nullopt, "555-0100"}};
    this->underTest().hold({ann});

    const auto people = this->book().readPeople();

    ASSERT_EQ(people.size(), 1U);
    ASSERT_TRUE(people[0].phones.has_value());
    ASSERT_EQ(people[0].phones->size(), 1U);
    EXPECT_EQ(people[0].phones->front().label, std::nullopt);
    EXPECT_EQ(people[0].phones->front().value, "555-0100");
}

TYPED_TEST_P(AddressBookContract, GivesEveryoneAUniqueUid)
{
    this->holds({"a", "b", "c", "d"});

    const auto uids = this->uidsOf(this->book().readPeople());

    const std::set<std::string> different(uids.begin(), uids.end());
    EXPECT_EQ(different.size(), 4U);
    EXPECT_FALSE(different.contains(""));
}

TYPED_TEST_P(AddressBookContract, CanBeEmpty)
{
    this->holds({});

    EXPECT_TRUE(this->book().readPeople().empty());
    EXPECT_TRUE(this->book().people().empty());
}

TYPED_TEST_P(AddressBookContract, ListsTheChangesOfOthersWhenReadAgain)
{
    this->holds({"a", "b"});
    this->book().readPeople();

    this->holds({"b", "c", "d"});

    EXPECT_EQ(this->uidsOf(this->book().readPeople()), (std::vector<std::string>{"b", "c", "d"}));
}

TYPED_TEST_P(AddressBookContract, WritesNothingBeforeItIsSaved)
{
    this->holds({"a", "b"});
    const auto before = this->underTest().trace();

    this->book().removeRecord(this->book().readPeople()[0]);

    EXPECT_EQ(this->underTest().trace(), before);
    EXPECT_EQ(this->underTest().uidsSeenByOthers(), (std::vector<std::string>{"a", "b"}));
}

TYPED_TEST_P(AddressBookContract, SavesAllRemovalsAtOnce)
{
    this->holds({"a", "b", "c", "d"});
    const auto people = this->book().readPeople();
    this->book().removeRecord(people[3]);
    this->book().removeRecord(people[1]);

    this->book().save();

    EXPECT_EQ(this->underTest().uidsSeenByOthers(), (std::vector<std::string>{"a", "c"}));
}

TYPED_TEST_P(AddressBookContract, ListsTheRestWithTheSameUidsAfterASave)
{
    this->holds({"a", "b", "c"});
    this->book().removeRecord(this->book().readPeople()[1]);
    this->book().save();

    EXPECT_EQ(this->uidsOf(this->book().people()), (std::vector<std::string>{"a", "c"}));
    EXPECT_EQ(this->uidsOf(this->book().readPeople()), (std::vector<std::string>{"a", "c"}));
}

TYPED_TEST_P(AddressBookContract, RemovesAPersonOnceDespiteRepeatedRequests)
{
    this->holds({"a", "b", "c"});
    const auto people = this->book().readPeople();
    this->book().removeRecord(people[1]);
    this->book().removeRecord(people[1]);

    this->book().save();

    EXPECT_EQ(this->underTest().uidsSeenByOthers(), (std::vector<std::string>{"a", "c"}));
}

TYPED_TEST_P(AddressBookContract, CanLoseEveryone)
{
    this->holds({"a", "b", "c"});
    for (const auto& person : this->book().readPeople()) {
        this->book().removeRecord(person);
    }

    this->book().save();

    EXPECT_TRUE(this->underTest().uidsSeenByOthers().empty());
    EXPECT_TRUE(this->book().people().empty());
    EXPECT_TRUE(this->book().readPeople().empty());
}

TYPED_TEST_P(AddressBookContract, WritesNothingWhenNobodyIsRemoved)
{
    this->holds({"a", "b"});
    this->book().save();
    this->book().readPeople();
    const auto before = this->underTest().trace();

    this->book().save();

    EXPECT_EQ(this->underTest().trace(), before);
}

TYPED_TEST_P(AddressBookContract, SavesARemovalOnlyOnce)
{
    this->holds({"a", "b"});
    this->book().removeRecord(this->book().readPeople()[0]);
    this->book().save();
    const auto before = this->underTest().trace();

    this->book().save();

    EXPECT_EQ(this->underTest().trace(), before);
}

TYPED_TEST_P(AddressBookContract, DiscardsRemovalsWhenSavingFails)
{
    this->holds({"a", "b", "c"});
    this->book().removeRecord(this->book().readPeople()[0]);
    this->underTest().breakSaving();
    EXPECT_TRUE(this->saveFails());
    this->underTest().mendSaving();

    this->book().save();
    EXPECT_EQ(this->underTest().uidsSeenByOthers(), (std::vector<std::string>{"a", "b", "c"}));

    // A later save removes only the people requested since then.
    this->book().removeRecord(this->book().people()[2]);
    this->book().save();
    EXPECT_EQ(this->underTest().uidsSeenByOthers(), (std::vector<std::string>{"a", "b"}));
}

TYPED_TEST_P(AddressBookContract, DiscardsRemovalsWhenARemovalThrows)
{
    this->holds({"a", "b"});
    this->book().removeRecord(this->book().readPeople()[0]);
    const Person stranger{"a", {}, {}, {}, {}, {}};

    EXPECT_THROW(this->book().removeRecord(stranger), PlatformError);

    this->book().save();
    EXPECT_EQ(this->underTest().uidsSeenByOthers(), (std::vector<std::string>{"a", "b"}));
    this->book().removeRecord(this->book().people()[1]);
    this->book().save();
    EXPECT_EQ(this->underTest().uidsSeenByOthers(), (std::vector<std::string>{"a"}));
}

TYPED_TEST_P(AddressBookContract, DiscardsRemovalsWhenPeopleAreListedAgain)
{
    this->holds({"a", "b", "c"});
    this->book().removeRecord(this->book().readPeople()[0]);
    this->book().people();

    this->book().save();
    EXPECT_EQ(this->underTest().uidsSeenByOthers(), (std::vector<std::string>{"a", "b", "c"}));

    this->book().removeRecord(this->book().people()[1]);
    this->book().save();
    EXPECT_EQ(this->underTest().uidsSeenByOthers(), (std::vector<std::string>{"a", "c"}));
}

TYPED_TEST_P(AddressBookContract, DiscardsRemovalsWhenTheBookIsReadAgain)
{
    this->holds({"a", "b", "c"});
    this->book().removeRecord(this->book().readPeople()[0]);
    this->book().readPeople();

    this->book().save();
    EXPECT_EQ(this->underTest().uidsSeenByOthers(), (std::vector<std::string>{"a", "b", "c"}));
}

TYPED_TEST_P(AddressBookContract, RefusesARemovalBeforeAnyListing)
{
    this->holds({"a"});
    const Person stranger{"a", {}, {}, {}, {}, {}};

    EXPECT_THROW(this->book().removeRecord(stranger), PlatformError);
}

TYPED_TEST_P(AddressBookContract, KeepsAListingUnchangedUntilTheNextOne)
{
    this->holds({"a", "b", "c"});
    const auto people = this->book().readPeople();
    this->book().removeRecord(people[0]);

    this->book().save();

    EXPECT_EQ(this->uidsOf(people), (std::vector<std::string>{"a", "b", "c"}));
}

TYPED_TEST_P(AddressBookContract, RefusesAPersonOfAnEarlierListing)
{
    this->holds({"a", "b", "c"});
    const auto before = this->book().readPeople();
    const auto* const ben = &before[1];
    this->book().removeRecord(before[0]);
    this->book().save();
    this->book().people();

    EXPECT_THROW(this->book().removeRecord(*ben), PlatformError);

    this->book().save();
    EXPECT_EQ(this->underTest().uidsSeenByOthers(), (std::vector<std::string>{"b", "c"}));
}

REGISTER_TYPED_TEST_SUITE_P(AddressBookContract, ListsPeopleInTheBooksOrder,
                            ListsEveryPropertyOfAPerson, LeavesMissingPropertiesEmpty,
                            ListsAPhoneWithoutALabel, GivesEveryoneAUniqueUid, CanBeEmpty,
                            ListsTheChangesOfOthersWhenReadAgain, WritesNothingBeforeItIsSaved,
                            SavesAllRemovalsAtOnce, ListsTheRestWithTheSameUidsAfterASave,
                            RemovesAPersonOnceDespiteRepeatedRequests, CanLoseEveryone,
                            WritesNothingWhenNobodyIsRemoved, SavesARemovalOnlyOnce,
                            DiscardsRemovalsWhenSavingFails, DiscardsRemovalsWhenARemovalThrows,
                            DiscardsRemovalsWhenPeopleAreListedAgain,
                            DiscardsRemovalsWhenTheBookIsReadAgain, RefusesARemovalBeforeAnyListing,
                            KeepsAListingUnchangedUntilTheNextOne,
                            RefusesAPersonOfAnEarlierListing);

}  // namespace dunmora::test
