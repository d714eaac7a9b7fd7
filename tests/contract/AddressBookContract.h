#pragma once

#include "platform/AddressBook.h"
#include "platform/PlatformError.h"
#include "tests/fakes/FakeAddressBook.h"
#include "tests/fakes/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {

/// What every AddressBook does, whatever holds its people. It runs for a type with these members:
///
///     AddressBook& book();
///     void hold(const std::vector<FakePerson>& people);  // others put them in, in place of all
///     std::vector<std::string> uidsSeenByOthers();       // in the book's order
///     std::string trace();                               // another one after each write
///     void breakSaving();
///     void mendSaving();
///
/// A type whose book cannot have a property names it and says why not, and may otherwise lack this:
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

    static FakePerson person(const std::string& uid)
    {
        FakePerson person;
        person.uid = uid;
        return person;
    }

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

TYPED_TEST_P(AddressBookContract, TellsAllThatItKnowsAboutAPerson)
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

TYPED_TEST_P(AddressBookContract, TellsWhatIsMissing)
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

TYPED_TEST_P(AddressBookContract, TellsThatAPhoneHasNoLabel)
{
    auto ann = this->person("ann");
    ann.phones = {{std::nullopt, "555-0100"}};
    this->underTest().hold({ann});

    const auto people = this->book().readPeople();

    ASSERT_EQ(people.size(), 1U);
    ASSERT_TRUE(people[0].phones.has_value());
    ASSERT_EQ(people[0].phones->size(), 1U);
    EXPECT_EQ(people[0].phones->front().label, std::nullopt);
    EXPECT_EQ(people[0].phones->front().value, "555-0100");
}

TYPED_TEST_P(AddressBookContract, GivesEveryoneAUidOfTheirOwn)
{
    this->holds({"a", "b", "c", "d"});

    const auto uids = this->uidsOf(this->book().readPeople());

    const std::set<std::string> different(uids.begin(), uids.end());
    EXPECT_EQ(different.size(), 4U);
    EXPECT_FALSE(different.contains(""));
}

TYPED_TEST_P(AddressBookContract, MayHoldNobody)
{
    this->holds({});

    EXPECT_TRUE(this->book().readPeople().empty());
    EXPECT_TRUE(this->book().people().empty());
}

TYPED_TEST_P(AddressBookContract, SeesTheChangesOfOthersWhenItIsReadAnew)
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

TYPED_TEST_P(AddressBookContract, RemovesAPersonOnceHoweverOftenAsked)
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

TYPED_TEST_P(AddressBookContract, ForgetsRemovalsWhenSavingFails)
{
    this->holds({"a", "b", "c"});
    this->book().removeRecord(this->book().readPeople()[0]);
    this->underTest().breakSaving();
    EXPECT_TRUE(this->saveFails());
    this->underTest().mendSaving();

    this->book().save();
    EXPECT_EQ(this->underTest().uidsSeenByOthers(), (std::vector<std::string>{"a", "b", "c"}));

    // A later save removes only what was asked for since.
    this->book().removeRecord(this->book().people()[2]);
    this->book().save();
    EXPECT_EQ(this->underTest().uidsSeenByOthers(), (std::vector<std::string>{"a", "b"}));
}

TYPED_TEST_P(AddressBookContract, ForgetsRemovalsWhenARemovalThrows)
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

TYPED_TEST_P(AddressBookContract, ForgetsRemovalsWhenPeopleAreListedAgain)
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

TYPED_TEST_P(AddressBookContract, ForgetsRemovalsWhenTheBookIsReadAnew)
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

TYPED_TEST_P(AddressBookContract, BacksUpPeopleToANewFile)
{
    const TemporaryFolder folder;
    this->holds({"a", "b", "c"});
    const auto people = this->book().readPeople();
    const std::vector<const Person*> chosen = {&people[0], &people[2]};

    this->book().backUp(chosen, folder.path() / "backup.vcf");

    const auto backup = contentOf(folder.path() / "backup.vcf");
    EXPECT_LT(backup.find("UID:a"), backup.find("UID:c"));
    EXPECT_NE(backup.find("UID:c"), std::string::npos);
    EXPECT_EQ(backup.find("UID:b"), std::string::npos);
    EXPECT_EQ(namesIn(folder.path()), (std::set<std::string>{"backup.vcf"}));
}

TYPED_TEST_P(AddressBookContract, LeavesAFileAloneThatABackupWouldOverwrite)
{
    const TemporaryFolder folder;
    write(folder.path() / "backup.vcf", "precious");
    this->holds({"a"});
    const auto people = this->book().readPeople();
    const std::vector<const Person*> chosen = {people.data()};

    EXPECT_THROW(this->book().backUp(chosen, folder.path() / "backup.vcf"), PlatformError);

    EXPECT_EQ(contentOf(folder.path() / "backup.vcf"), "precious");
}

REGISTER_TYPED_TEST_SUITE_P(AddressBookContract, ListsPeopleInTheBooksOrder,
                            TellsAllThatItKnowsAboutAPerson, TellsWhatIsMissing,
                            TellsThatAPhoneHasNoLabel, GivesEveryoneAUidOfTheirOwn, MayHoldNobody,
                            SeesTheChangesOfOthersWhenItIsReadAnew, WritesNothingBeforeItIsSaved,
                            SavesAllRemovalsAtOnce, ListsTheRestWithTheSameUidsAfterASave,
                            RemovesAPersonOnceHoweverOftenAsked, CanLoseEveryone,
                            WritesNothingWhenNobodyIsRemoved, SavesARemovalOnlyOnce,
                            ForgetsRemovalsWhenSavingFails, ForgetsRemovalsWhenARemovalThrows,
                            ForgetsRemovalsWhenPeopleAreListedAgain,
                            ForgetsRemovalsWhenTheBookIsReadAnew, RefusesARemovalBeforeAnyListing,
                            BacksUpPeopleToANewFile, LeavesAFileAloneThatABackupWouldOverwrite);

}  // namespace dunmora::test
