#include "adapters/macos/MacAddressBook.h"
#include "platform/PlatformError.h"
#include "tests/adapters/macos/AddressesBook.h"
#include "tests/fakes/FakeCard.h"
#include "tests/fakes/People.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace dunmora::test {
namespace {

using Lines = std::vector<std::string>;
using Mode = CardRestorer::Mode;

/// A vCard with a line end after it.
std::string card(const std::string& properties)
{
    return "BEGIN:VCARD\r\nVERSION:3.0\r\n" + properties + "\r\nEND:VCARD\r\n";
}

class MacRestorationTest : public testing::Test {
protected:
    MacRestorationTest() { addresses_.state().hasWholeCards = true; }

    void hold(const std::vector<FakePerson>& people) { addresses_.hold(people); }

    void remove(const Lines& uids)
    {
        for (const auto& person : book_.readPeople()) {
            if (std::find(uids.begin(), uids.end(), person.uid) != uids.end()) {
                book_.removeRecord(person);
            }
        }
        book_.save();
    }

    /// The first names of the people in the book, sorted.
    Lines firstNames()
    {
        Lines names;
        for (const auto& person : book_.readPeople()) {
            names.emplace_back(person.firstName.value_or(""));
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    std::string failureOfRestoring()
    {
        try {
            book_.restoreLast();
        } catch (const PlatformError& error) {
            return error.what();
        }
        return "";
    }

    AddressesBook addresses_;
    MacAddressBook::StrandedChanges stranded_ = false;
    MacAddressBook book_{stranded_};
};

TEST_F(MacRestorationTest, AddsNewPeopleWithEveryContactField)
{
    hold({person("a", "Ann"), person("b", "Bob")});
    remove({"b"});

    const auto result = book_.restoreLast();

    EXPECT_EQ(result.restored, 1U);
    EXPECT_EQ(result.failures, Lines());
    EXPECT_EQ(result.remarks, Lines());
    EXPECT_EQ(addresses_.uidsSeenByOthers(), (Lines{"a", "1"}));
    const auto people = book_.readPeople();
    ASSERT_EQ(people.size(), 2U);
    EXPECT_EQ(people[1].firstName, "Bob");
    EXPECT_EQ(people[1].lastName, person("b").lastName);
    EXPECT_EQ(people[1].nickname, person("b").nickname);
    ASSERT_EQ(people[1].phones->size(), 3U);
    EXPECT_EQ((*people[1].phones)[0].label, "_$!<Home>!$_");
    EXPECT_EQ((*people[1].phones)[0].value, "555-0100");
}

TEST_F(MacRestorationTest, PutsACopyBackAlthoughTheOtherStayed)
{
    hold({person("a"), person("b")});
    remove({"b"});

    const auto result = book_.restoreLast();

    EXPECT_EQ(result.restored, 1U);
    EXPECT_EQ(result.present, 0U);
    EXPECT_EQ(book_.readPeople().size(), 2U);
}

TEST_F(MacRestorationTest, PutsCopiesOfTwoDeletionsBack)
{
    hold({person("a"), person("b"), person("c")});
    remove({"b"});
    remove({"c"});

    EXPECT_EQ(book_.restoreLast().restored, 1U);
    EXPECT_EQ(book_.restoreLast().restored, 1U);

    EXPECT_EQ(book_.readPeople().size(), 3U);
}

TEST_F(MacRestorationTest, LeavesPeopleAloneWhoAreBackUnderAnotherUid)
{
    hold({person("a"), person("b"), person("c")});
    remove({"b", "c"});
    addresses_.add(person("x"));

    const auto result = book_.restoreLast();

    EXPECT_EQ(result.present, 1U);
    EXPECT_EQ(result.restored, 1U);
    EXPECT_EQ(book_.readPeople().size(), 3U);
    EXPECT_EQ(book_.lastRemoved(), 0U);
}

TEST_F(MacRestorationTest, NamesSomebodyWhoseUidBelongsToAnotherCard)
{
    hold({person("a", "Ann"), person("b", "Bob")});
    remove({"b"});
    addresses_.add(person("b", "Robert"));

    const auto result = book_.restoreLast();

    EXPECT_EQ(result.failures, Lines{"“Bob Lee” was not restored: its UID belongs to another card "
                                     "in the address book."});
    EXPECT_EQ(firstNames(), (Lines{"Ann", "Robert"}));
    EXPECT_EQ(book_.lastRemoved(), 1U);
}

TEST_F(MacRestorationTest, PutsTheOthersBackWhenTheFrameworkRefusesOne)
{
    hold({person("a", "Ann"), person("b", "Bob"), person("c", "Carol")});
    remove({"a", "b", "c"});
    addresses_.state().add = Fault::Refuse;
    addresses_.state().additionsBefore = 1;

    const auto result = book_.restoreLast();

    EXPECT_EQ(result.restored, 2U);
    EXPECT_EQ(result.failures,
              Lines{"“Bob Lee” was not restored: macOS does not accept the card."});
    EXPECT_EQ(firstNames(), (Lines{"Ann", "Carol"}));
    EXPECT_EQ(book_.lastRemoved(), 1U);
    EXPECT_EQ(book_.restoreLast().restored, 1U);
    EXPECT_EQ(firstNames(), (Lines{"Ann", "Bob", "Carol"}));
}

TEST_F(MacRestorationTest, PutsTheOthersBackWhenTheFrameworkThrowsForOne)
{
    hold({person("a", "Ann"), person("b", "Bob")});
    remove({"a", "b"});
    addresses_.state().add = Fault::Raise;

    const auto result = book_.restoreLast();

    EXPECT_EQ(result.restored, 1U);
    EXPECT_EQ(result.failures, Lines{"“Ann Lee” was not restored: The address book of this Mac "
                                     "reported an error: The database is damaged."});
    EXPECT_EQ(firstNames(), (Lines{"Bob"}));
    EXPECT_EQ(book_.lastRemoved(), 1U);
}

TEST_F(MacRestorationTest, ChangesNothingWhenTheFrameworkRefusesEverybody)
{
    hold({person("a")});
    remove({"a"});
    addresses_.state().add = Fault::Refuse;
    addresses_.state().save = Fault::Raise;

    EXPECT_EQ(book_.restoreLast().failures.size(), 1U);

    EXPECT_FALSE(stranded_);
    EXPECT_EQ(book_.lastRemoved(), 1U);
}

TEST_F(MacRestorationTest, TakesAdditionsBackThatCouldNotBeSaved)
{
    hold({person("a", "Ann"), person("b", "Bob"), person("c", "Carol")});
    remove({"b"});
    addresses_.state().save = Fault::Raise;

    EXPECT_EQ(failureOfRestoring(), "The address book of this Mac reported an error: The database "
                                    "is damaged. Nobody was restored.");

    addresses_.state().save = Fault::None;
    EXPECT_EQ(firstNames(), (Lines{"Ann", "Carol"}));
    remove({"c"});
    EXPECT_EQ(firstNames(), (Lines{"Ann"}));
    EXPECT_EQ(book_.restoreLast().restored, 1U);
    EXPECT_EQ(book_.restoreLast().restored, 1U);
    EXPECT_EQ(firstNames(), (Lines{"Ann", "Bob", "Carol"}));
}

TEST_F(MacRestorationTest, ChangesNothingMoreWhenAdditionsCannotBeTakenBack)
{
    hold({person("a"), person("b")});
    remove({"b"});
    addresses_.state().save = Fault::Refuse;
    addresses_.state().remove = Fault::Refuse;

    EXPECT_EQ(failureOfRestoring(),
              "The address book of this Mac could not be saved. Nobody was restored. The change "
              "cannot be undone, so Dunmora changes nothing more. Restart Dunmora.");

    addresses_.state().save = Fault::None;
    addresses_.state().remove = Fault::None;
    EXPECT_EQ(failureOfRestoring(),
              "An earlier change could not be saved. The change cannot be undone, so Dunmora "
              "changes nothing more. Restart Dunmora.");
    EXPECT_THROW(remove({"a"}), PlatformError);
    EXPECT_EQ(addresses_.uidsSeenByOthers(), Lines{"a"});
    EXPECT_EQ(book_.lastRemoved(), 1U);
}

TEST_F(MacRestorationTest, RestoresNobodyAfterADeletionThatCouldNotBeSaved)
{
    hold({person("a"), person("b")});
    const auto backup = cardOf(person("x", "Xenia"));
    remove({"b"});
    addresses_.breakSaving();
    EXPECT_THROW(remove({"a"}), PlatformError);
    addresses_.mendSaving();

    EXPECT_THROW(book_.restoreLast(), PlatformError);
    EXPECT_THROW(book_.restore(backup, Mode::Write), PlatformError);

    EXPECT_EQ(addresses_.uidsSeenByOthers(), Lines{"a"});
    EXPECT_EQ(book_.lastRemoved(), 1U);
}

TEST_F(MacRestorationTest, SaysInWhichGroupsPeopleWere)
{
    hold({person("a")});
    addresses_.addGroup("Choir", "a");
    remove({"a"});

    EXPECT_EQ(book_.restoreLast().remarks,
              Lines{"“Ann Lee” was restored, but is not in the group “Choir” any more."});
}

TEST_F(MacRestorationTest, SaysWhoseCardTheFrameworkChanged)
{
    addresses_.state().hasWholeCards = false;
    hold({person("a")});
    remove({"a"});

    const auto result = book_.restoreLast();

    // The vCards of Addresses lose the labels of telephone numbers.
    EXPECT_EQ(result.restored, 1U);
    EXPECT_EQ(result.remarks, Lines{"macOS changed the card of “Ann Lee” when it was restored."});
    const auto people = book_.readPeople();
    ASSERT_EQ(people.size(), 1U);
    EXPECT_EQ(people[0].firstName, "Ann");
    EXPECT_EQ((*people[0].phones)[2].value, "555-0102");
}

TEST_F(MacRestorationTest, RestoresABackupOnceAlthoughEveryoneGetsANewUid)
{
    const auto backup = cardOf(person("x")) + cardOf(person("y")) + cardOf(person("z", "Zoe"));
    hold({person("a", "Adam")});

    EXPECT_EQ(book_.restore(backup, Mode::Write).restored, 3U);
    const auto again = book_.restore(backup, Mode::Write);

    EXPECT_EQ(again.restored, 0U);
    EXPECT_EQ(again.present, 3U);
    EXPECT_EQ(firstNames(), (Lines{"Adam", "Ann", "Ann", "Zoe"}));
}

TEST_F(MacRestorationTest, AddsCardsWithoutAUidOnce)
{
    const auto backup = card("N:Lee;Ann") + card("N:Lee;Ann") + card("N:Lee;Bob");

    const auto result = book_.restore(backup, Mode::Write);

    EXPECT_EQ(result.restored, 2U);
    EXPECT_EQ(result.present, 1U);
    EXPECT_EQ(book_.restore(backup, Mode::Write).present, 3U);
    EXPECT_EQ(firstNames(), (Lines{"Ann", "Bob"}));
}

TEST_F(MacRestorationTest, RecognizesTheUidsThatTheFrameworkWrites)
{
    auto ann = named("1F-2E:ABPerson", "Ann");
    auto bob = named("3D-4C:ABPerson", "Bob");
    hold({ann, bob});

    const auto result =
        book_.restore(card("X-ABUID:1F-2E\\:ABPerson\r\nN:Lee;Ann") +
                          card("UID:3D-4C\r\nN:Lee;Bob") + card("UID:3D-4C\r\nN:Lee;Robert"),
                      Mode::Write);

    EXPECT_EQ(result.present, 2U);
    EXPECT_EQ(result.failures, Lines{"“Robert Lee” was not restored: its UID belongs to another "
                                     "card in the address book."});
}

TEST_F(MacRestorationTest, NamesWhatABackupContainsBesidesReadablePeople)
{
    const auto backup = card("N:Lee;Ann") + card("N:L\xE9\x65;Bob") +
                        card("X-ADDRESSBOOKSERVER-KIND:group\r\nFN:Choir") +
                        "BEGIN:VCARD\r\nFN:Cut\r\n";

    const auto result = book_.restore(backup, Mode::DryRun);

    EXPECT_EQ(result.restored, 1U);
    ASSERT_EQ(result.failures.size(), 2U);
    EXPECT_NE(result.failures[0].find("was not restored: its card is not UTF-8."),
              std::string::npos);
    EXPECT_EQ(result.failures[1],
              "1 card of the backup was not restored because it breaks off or has no properties.");
    EXPECT_EQ(result.remarks, Lines{"1 list of the backup was not restored: only people are."});
    EXPECT_TRUE(book_.readPeople().empty());
}

}  // namespace
}  // namespace dunmora::test
