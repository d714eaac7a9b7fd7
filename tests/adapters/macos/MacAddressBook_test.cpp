#include "adapters/macos/MacAddressBook.h"

#include "engine/PhoneNumber.h"
#include "platform/PlatformError.h"
#include "tests/adapters/macos/AddressesBook.h"
#include "tests/fakes/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

namespace dunmora::test {
namespace {

class MacAddressBookTest : public testing::Test {
protected:
    using Uids = std::vector<std::string>;

    void hold(const Uids& uids)
    {
        std::vector<FakePerson> people;
        for (const auto& uid : uids) {
            FakePerson person;
            person.uid = uid;
            people.push_back(person);
        }
        addresses_.hold(people);
    }

    void remove(const Uids& uids)
    {
        const auto people = book_.people();
        for (const auto& person : people) {
            if (std::find(uids.begin(), uids.end(), person.uid) != uids.end()) {
                book_.removeRecord(person);
            }
        }
    }

    /// Returns the deletion's error; empty when it succeeds.
    std::string failureOfDeleting(const Uids& uids)
    {
        try {
            remove(uids);
            book_.save();
        } catch (const PlatformError& error) {
            return error.what();
        }
        return "";
    }

    std::string failureOfReading()
    {
        try {
            book_.readPeople();
        } catch (const PlatformError& error) {
            return error.what();
        }
        return "";
    }

    /// Expects further deletions to be refused with a message, even when the framework works again.
    void expectRefusalForGood()
    {
        addresses_.state().save = Fault::None;
        addresses_.state().remove = Fault::None;
        addresses_.mendSaving();
        const auto before = addresses_.uidsSeenByOthers();
        EXPECT_EQ(failureOfDeleting({before.back()}),
                  "An earlier change could not be saved. The change cannot be undone, so "
                  "Dunmora changes nothing more. Restart Dunmora.");
        MacAddressBook another(stranded_);
        EXPECT_THROW(another.removeRecord(another.readPeople().back()), PlatformError);
        book_.save();
        another.save();
        EXPECT_EQ(addresses_.uidsSeenByOthers(), before);
        book_.readPeople();
        ASSERT_EQ(book_.notes().remarks.size(), 1U);
        EXPECT_EQ(book_.notes().cardsSkipped, 0U);
    }

    AddressesBook addresses_;
    MacAddressBook::StrandedChanges stranded_ = false;
    MacAddressBook book_{stranded_};
};

TEST_F(MacAddressBookTest, HasNoCardOfSomebodyWhoHasChangedSinceTheReading)
{
    hold({"ann", "ben"});
    book_.readPeople();

    addresses_.rename("ann", "Anna");

    EXPECT_FALSE(book_.card("ann"));
    EXPECT_TRUE(book_.card("ben"));
}

TEST_F(MacAddressBookTest, ReturnsTheSixPropertiesOfAPerson)
{
    const auto before = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    const FakePerson ann;
    addresses_.hold({ann});

    const auto people = book_.readPeople();

    ASSERT_EQ(people.size(), 1U);
    EXPECT_EQ(people[0].uid, ann.uid);
    EXPECT_EQ(people[0].firstName, *ann.firstName);
    EXPECT_EQ(people[0].lastName, *ann.lastName);
    EXPECT_EQ(people[0].nickname, *ann.nickname);
    // Addresses reports the time of reading.
    EXPECT_GE(*people[0].modified, before);
    EXPECT_LE(*people[0].modified,
              std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()));
    ASSERT_EQ(people[0].phones->size(), 3U);
    EXPECT_EQ((*people[0].phones)[0].label, "_$!<Home>!$_");
    EXPECT_EQ((*people[0].phones)[0].value, "555-0100");
    EXPECT_EQ((*people[0].phones)[2].label, "_$!<Mobile>!$_");
    EXPECT_EQ((*people[0].phones)[2].value, "555-0102");
    EXPECT_TRUE(book_.notes().remarks.empty());
}

TEST_F(MacAddressBookTest, LeavesMissingPropertiesEmpty)
{
    addresses_.hold({FakePerson{"bare", {}, {}, {}, {}, {}}});

    const auto people = book_.readPeople();

    ASSERT_EQ(people.size(), 1U);
    EXPECT_EQ(people[0].firstName, std::nullopt);
    EXPECT_EQ(people[0].lastName, std::nullopt);
    EXPECT_EQ(people[0].nickname, std::nullopt);
    // Addresses returns an empty list instead of none.
    EXPECT_TRUE(people[0].phones.value_or(PhoneList()).empty());
}

TEST_F(MacAddressBookTest, ReturnsLabelsAsTheFrameworkStoresThem)
{
    FakePerson ann;
    ann.phones = {{{"_$!<HomeFAX>!$_", "1"}, {"WorkPhone", "2"}, {"iPhone Mobile", "3"}}};
    addresses_.hold({ann});

    const auto phones = book_.readPeople()[0].phones;

    EXPECT_EQ(PhoneNumber(phones, "home"), "1");
    EXPECT_EQ(PhoneNumber(phones, "work"), "2");
    EXPECT_EQ(PhoneNumber(phones, "mobile"), "3");
}

TEST_F(MacAddressBookTest, ReturnsTextsAsUtf8)
{
    hold({"a"});
    addresses_.rename("a", "Zoë 李 🙂");

    EXPECT_EQ(book_.readPeople()[0].firstName, "Zoë 李 🙂");
}

TEST_F(MacAddressBookTest, ReadsMorePeopleThanOnePoolHolds)
{
    Uids uids;
    for (int i = 0; i < 1000; ++i) {
        uids.push_back(std::to_string(i));
    }
    hold(uids);

    const auto people = book_.readPeople();

    ASSERT_EQ(people.size(), uids.size());
    for (std::size_t i = 0; i < uids.size(); ++i) {
        ASSERT_EQ(people[i].uid, uids[i]);
    }
}

TEST_F(MacAddressBookTest, ExplainsHowToAllowAccessWhenThereIsNoAddressBook)
{
    addresses_.state().isMissing = true;

    EXPECT_EQ(
        failureOfReading(),
        "macOS does not allow Dunmora to use the address book. Allow access for Dunmora, or for "
        "its terminal, in System Settings > Privacy & Security > Contacts, and restart Dunmora.");
    EXPECT_THROW(book_.people(), PlatformError);
}

TEST_F(MacAddressBookTest, DoesNotMistakeAMissingListForAnEmptyBook)
{
    addresses_.state().people = Fault::Refuse;

    EXPECT_NE(failureOfReading(), "");
}

TEST_F(MacAddressBookTest, DeletesNobodyWhenPermissionWasRevoked)
{
    hold({"a", "b"});
    book_.removeRecord(book_.readPeople()[0]);
    addresses_.state().isMissing = true;

    EXPECT_THROW(book_.save(), PlatformError);

    EXPECT_EQ(addresses_.uidsSeenByOthers(), (Uids{"a", "b"}));
    addresses_.state().isMissing = false;
    EXPECT_EQ(failureOfDeleting({"b"}), "");
    EXPECT_EQ(addresses_.uidsSeenByOthers(), (Uids{"a"}));
}

TEST_F(MacAddressBookTest, TurnsFrameworkExceptionsIntoPlatformErrors)
{
    hold({"a"});
    addresses_.state().people = Fault::Raise;

    EXPECT_EQ(failureOfReading(),
              "The address book of this Mac reported an error: The database is damaged.");

    addresses_.state().people = Fault::None;
    EXPECT_EQ(book_.readPeople().size(), 1U);
}

TEST_F(MacAddressBookTest, KeepsTheReadingWhenALaterOneFails)
{
    hold({"a", "b"});
    const auto people = book_.readPeople();
    addresses_.state().people = Fault::Raise;
    EXPECT_NE(failureOfReading(), "");
    addresses_.state().people = Fault::None;

    book_.removeRecord(people[0]);
    book_.save();

    EXPECT_EQ(addresses_.uidsSeenByOthers(), (Uids{"b"}));
}

TEST_F(MacAddressBookTest, ReportsAPersonWhoCannotBeRead)
{
    hold({"a", "b"});
    addresses_.damage("b");

    EXPECT_NE(failureOfReading().find("The address book of this Mac reported an error: "),
              std::string::npos);
}

TEST_F(MacAddressBookTest, IsReadOnOneThreadAndChangedOnAnother)
{
    hold({"a", "b", "c"});
    std::thread([&] { book_.readPeople(); }).join();

    std::thread([&] { EXPECT_EQ(failureOfDeleting({"a", "c"}), ""); }).join();

    EXPECT_EQ(addresses_.uidsSeenByOthers(), (Uids{"b"}));
}

TEST_F(MacAddressBookTest, RefusesAllDeletionsAfterASaveThatFailed)
{
    hold({"a", "b", "c"});
    book_.readPeople();
    addresses_.breakSaving();

    EXPECT_EQ(failureOfDeleting({"a"}),
              "The address book of this Mac could not be saved. The change cannot be undone, so "
              "Dunmora changes nothing more. Restart Dunmora.");

    EXPECT_EQ(addresses_.uidsSeenByOthers(), (Uids{"a", "b", "c"}));
    expectRefusalForGood();
}

TEST_F(MacAddressBookTest, RefusesAllDeletionsAfterASaveThatThrew)
{
    hold({"a", "b", "c"});
    addresses_.state().save = Fault::Raise;

    EXPECT_EQ(failureOfDeleting({"a"}),
              "The address book of this Mac reported an error: The database is damaged. The "
              "change cannot be undone, so Dunmora changes nothing more. Restart Dunmora.");

    expectRefusalForGood();
}

TEST_F(MacAddressBookTest, RefusesAllDeletionsWhenARemovalInTheMiddleIsRefused)
{
    hold({"a", "b", "c"});
    addresses_.state().remove = Fault::Refuse;
    addresses_.state().removalsBefore = 1;

    EXPECT_EQ(failureOfDeleting({"a", "b"}),
              "macOS did not remove “Ann Lee” from the address book. Nobody was deleted. The "
              "change cannot be undone, so Dunmora changes nothing more. Restart Dunmora.");

    EXPECT_EQ(addresses_.uidsSeenByOthers(), (Uids{"a", "b", "c"}));
    expectRefusalForGood();
}

TEST_F(MacAddressBookTest, RefusesAllDeletionsWhenARemovalInTheMiddleThrows)
{
    hold({"a", "b", "c"});
    addresses_.state().remove = Fault::Raise;
    addresses_.state().removalsBefore = 1;

    EXPECT_NE(failureOfDeleting({"a", "b"}).find("Restart Dunmora"), std::string::npos);

    EXPECT_EQ(addresses_.uidsSeenByOthers(), (Uids{"a", "b", "c"}));
    expectRefusalForGood();
}

TEST_F(MacAddressBookTest, ContinuesAfterAFailureThatLeftNoRemovals)
{
    hold({"a", "b"});
    book_.readPeople();
    book_.removeRecord(book_.people()[0]);
    addresses_.state().people = Fault::Raise;
    EXPECT_THROW(book_.save(), PlatformError);
    addresses_.state().people = Fault::None;

    EXPECT_EQ(failureOfDeleting({"b"}), "");

    EXPECT_EQ(addresses_.uidsSeenByOthers(), (Uids{"a"}));
    EXPECT_TRUE(book_.notes().remarks.empty());
}

TEST_F(MacAddressBookTest, DeletesNobodyWhenOneOfThemHasChangedSinceTheyWereRead)
{
    hold({"a", "b", "c"});
    book_.readPeople();
    addresses_.rename("b", "Bob");

    EXPECT_EQ(failureOfDeleting({"a", "b"}), "Nobody was deleted: “Ann Lee” has changed since the "
                                             "address book was read. Reload it and try again.");

    EXPECT_EQ(addresses_.uidsSeenByOthers(), (Uids{"a", "b", "c"}));
    book_.readPeople();
    EXPECT_EQ(failureOfDeleting({"a", "b"}), "");
    EXPECT_EQ(addresses_.uidsSeenByOthers(), (Uids{"c"}));
}

TEST_F(MacAddressBookTest, IgnoresChangesToPeopleWhoStay)
{
    hold({"a", "b"});
    book_.readPeople();
    addresses_.rename("b", "Bob");

    EXPECT_EQ(failureOfDeleting({"a"}), "");

    EXPECT_EQ(addresses_.uidsSeenByOthers(), (Uids{"b"}));
}

TEST_F(MacAddressBookTest, RemovesTheRestWhenOneOfThemHasGoneMeanwhile)
{
    hold({"a", "b", "c"});
    const auto people = book_.readPeople();
    book_.removeRecord(people[0]);
    book_.removeRecord(people[1]);
    addresses_.take("a");

    book_.save();

    EXPECT_EQ(addresses_.uidsSeenByOthers(), (Uids{"c"}));
}

TEST_F(MacAddressBookTest, ReturnsTheFrameworksCardsInTheGivenOrder)
{
    hold({"a", "b", "c"});
    addresses_.rename("a", "Alice");
    addresses_.rename("c", "Carol");
    const auto people = book_.readPeople();
    const std::vector<const Person*> chosen = {&people[2], &people.front()};

    const auto cards = book_.cards(chosen);

    EXPECT_TRUE(cards.starts_with("BEGIN:VCARD"));
    EXPECT_LT(cards.find("Carol"), cards.find("Alice"));
    EXPECT_NE(cards.find("Alice"), std::string::npos);
    EXPECT_EQ(cards.find("Ann"), std::string::npos);
    EXPECT_TRUE(cards.ends_with("\n"));
}

TEST_F(MacAddressBookTest, ReturnsNoCardOfAPersonWhoHasChangedOrIsGone)
{
    hold({"a", "b"});
    const auto people = book_.readPeople();
    const std::vector<const Person*> ann = {&people.front()};
    const std::vector<const Person*> bob = {&people[1]};
    addresses_.rename("a", "Alice");
    addresses_.take("b");

    EXPECT_THROW(book_.cards(ann), PlatformError);
    EXPECT_THROW(book_.cards(bob), PlatformError);
}

TEST(MacAddressBookOfTheFramework, IsTheOneThatTheFrameworkShares)
{
    // Not a test's book, but the framework's own, in the folder that `main` has set.
    MacAddressBook book;

    EXPECT_TRUE(book.readPeople().empty());
    book.save();
}

}  // namespace
}  // namespace dunmora::test
