#include "adapters/eds/EdsAddressBook.h"
#include "adapters/eds/EdsBooks.h"
#include "adapters/eds/EdsDeletion.h"
#include "tests/adapters/eds/Deleting.h"
#include "tests/adapters/eds/FakeContactService.h"
#include "tests/fakes/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace dunmora::test {
namespace {

using Lines = std::vector<std::string>;
using Outcome = RemovalResult::Outcome;

class EdsAddressBookTest : public testing::Test {
protected:
    EdsAddressBook& all() { return open(std::nullopt); }
    EdsAddressBook& one(const std::string& uid) { return open(uid); }

    static std::string deletionOf(EdsAddressBook& book, const Lines& uids)
    {
        askFor(book, uids);
        return failureOf([&] { book.save(); });
    }

    /// A removal for each of them, with its current card.
    static std::vector<EdsRemoval> removalsOf(const std::vector<ContactText>& people)
    {
        std::vector<EdsRemoval> removals;
        removals.reserve(people.size());
        for (const auto& person : people) {
            removals.push_back({person.uid, person.card});
        }
        return removals;
    }

    /// All books, after the first reading; the pictures of local ones are in a folder.
    std::unique_ptr<EdsAddressBook> bookWithPictures()
    {
        auto book = std::make_unique<EdsAddressBook>(std::make_unique<FakeContactService>(desktop_),
                                                     std::nullopt, "/pictures");
        book->readPeople();
        return book;
    }

    static bool compare(const EdsAddressBook& book, const Lines& uids, CardDifferences& differences)
    {
        return book.compareStored(uids, differences);
    }

    FakeDesktopBooks desktop_;

private:
    EdsAddressBook& open(std::optional<std::string> uid)
    {
        book_ = std::make_unique<EdsAddressBook>(std::make_unique<FakeContactService>(desktop_),
                                                 std::move(uid));
        return *book_;
    }

    std::unique_ptr<EdsAddressBook> book_;
};

TEST_F(EdsAddressBookTest, NamesTheBookOfAPersonAmongSeveral)
{
    desktop_.add("home", {"ann"});
    desktop_.add("work", {"ann"});
    auto& book = all();
    const auto people = book.readPeople();

    ASSERT_EQ(people.size(), 2U);
    EXPECT_EQ(*people[0].source, (PersonSource{"eds:home", "Book home"}));
    EXPECT_EQ(*people[1].source, (PersonSource{"eds:work", "Book work"}));
    EXPECT_EQ(book.card(people[1].uid)->source, *people[1].source);
}

TEST_F(EdsAddressBookTest, KeepsTheReviewedCardsWhenOthersChangeThem)
{
    desktop_.add("home", {"ann"});
    auto& book = one("home");
    book.readPeople();
    const auto reviewed = book.card("ann").value().properties;

    desktop_.edit("home", "ann");
    book.people();

    EXPECT_EQ(book.card("ann").value().properties, reviewed);
    book.readPeople();
    EXPECT_NE(book.card("ann").value().properties, reviewed);
}

TEST_F(EdsAddressBookTest, ComparesCardsWithoutReadingThem)
{
    desktop_.add("home", {"ann", "ben"}).content.people[1].card = cardNamed("ben", "ann");
    desktop_.add("work", {"ann"}).content.people[0].card = cardNamed("ann", "Somebody Else");
    auto& book = all();
    book.readPeople();

    CardDifferences differences;

    ASSERT_TRUE(compare(book, {"home/ann", "home/ben"}, differences));
    EXPECT_EQ(differences.names, Lines{"UID"});
    ASSERT_TRUE(compare(book, {"home/ann", "work/ann"}, differences));
    EXPECT_EQ(differences.names, Lines{"N"});
    ASSERT_EQ(differences.sources.size(), 2U);
    EXPECT_EQ(*differences.sources[0], (PersonSource{"eds:home", "Book home"}));
    EXPECT_EQ(*differences.sources[1], (PersonSource{"eds:work", "Book work"}));
    EXPECT_FALSE(compare(book, {"home/ann", "home/carl"}, differences));

    const auto properties = book.propertiesNamed("work/ann", Lines{"N"}).value();
    ASSERT_EQ(properties.size(), 1U);
    EXPECT_EQ(properties[0].components[0], "Somebody Else");
    EXPECT_FALSE(book.propertiesNamed("home/carl", Lines{"N"}));
}

TEST_F(EdsAddressBookTest, ComparesTheReviewedCardsWhenOthersChangeThem)
{
    desktop_.add("home", {"ann", "ben"}).content.people[1].card = cardNamed("ben", "ann");
    auto& book = one("home");
    CardDifferences differences;
    EXPECT_FALSE(compare(book, {"ann"}, differences));
    book.readPeople();

    desktop_.edit("home", "ann");
    book.people();

    ASSERT_TRUE(compare(book, {"ann", "ben"}, differences));
    EXPECT_EQ(differences.names, Lines{"UID"});
}

TEST_F(EdsAddressBookTest, ReadsCardsThatMayHavePicturesToCompareThem)
{
    const auto card = [](const std::string& property) {
        return "BEGIN:VCARD\r\nUID:ann\r\nFN:Ann\r\n" + property + "\r\nEND:VCARD";
    };
    desktop_.add("home", {"ann", "ben"}).content.people = {{"ann", card("photo:file:///a")},
                                                           {"ben", card("X.LOGO:file:///a")}};
    desktop_.add("server", {"ann"}).content.people[0].card = card("PHOTO:file:///a");
    desktop_.book("server").description.kind = "carddav";
    const auto book = bookWithPictures();

    CardDifferences differences;

    EXPECT_FALSE(compare(*book, {"home/ann"}, differences));
    EXPECT_FALSE(compare(*book, {"home/ben"}, differences));
    EXPECT_TRUE(compare(*book, {"server/ann"}, differences));
    EXPECT_FALSE(book->propertiesNamed("home/ann", Lines{"N"}));
    EXPECT_TRUE(book->propertiesNamed("server/ann", Lines{"N"}));
}

TEST_F(EdsAddressBookTest, DistinguishesPeopleOfDifferentBooks)
{
    desktop_.add("home", {"ann", "ben"});
    desktop_.add("work", {"ann"});

    EXPECT_EQ(uidsOf(all().readPeople()), (Lines{"home/ann", "home/ben", "work/ann"}));
    EXPECT_EQ(uidsOf(one("work").readPeople()), Lines{"ann"});
}

TEST_F(EdsAddressBookTest, ReportsAnUnknownBook)
{
    desktop_.add("home", {"ann"});

    EXPECT_EQ(failureOf([&] { one("work").readPeople(); }),
              "The desktop has no enabled address book with the id “work”. Run “dunmora-cli books” "
              "to list the address books.");
}

TEST_F(EdsAddressBookTest, ReadsPeopleLikeAVCardFile)
{
    desktop_.add("home", {});
    desktop_.book("home").content.people = {
        {"ann",
         "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:ann\r\nN:Lee;Ann;;;\r\nNICKNAME:Annie\r\n"
         "item1.TEL;X-EVOLUTION-E164=555,:555-0100\r\nitem1.X-ABLabel:Boat\r\n"
         "TEL;TYPE=\"HOME,VOICE\":555-0101\r\nTEL:tel:555-0102\r\nREV:2024-05-01T10:00:00Z\r\n"
         "END:VCARD"}};

    const auto people = one("home").readPeople();

    ASSERT_EQ(people.size(), 1U);
    EXPECT_EQ(people[0].firstName, "Ann");
    EXPECT_EQ(people[0].lastName, "Lee");
    EXPECT_EQ(people[0].nickname, "Annie");
    EXPECT_EQ(people[0].modified, std::chrono::sys_seconds(std::chrono::seconds(1714557600)));
    ASSERT_EQ(people[0].phones->size(), 3U);
    const auto& phones = *people[0].phones;
    EXPECT_EQ(phones[0].label, "Boat");
    EXPECT_EQ(phones[0].value, "555-0100");
    EXPECT_EQ(phones[1].label, "_$!<Home>!$_");
    EXPECT_EQ(phones[1].value, "555-0101");
    EXPECT_EQ(phones[2].label, std::nullopt);
    EXPECT_EQ(phones[2].value, "555-0102");
}

TEST_F(EdsAddressBookTest, OmitsGroupsSilently)
{
    desktop_.add("home", {"ann"});
    desktop_.book("home").content.people.push_back(
        {"family", "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:family\r\nKIND:group\r\nEND:VCARD"});
    auto& book = one("home");

    EXPECT_EQ(uidsOf(book.readPeople()), Lines{"ann"});
    EXPECT_EQ(book.notes().cardsSkipped, 0U);
    EXPECT_TRUE(book.notes().remarks.empty());
}

TEST_F(EdsAddressBookTest, SkipsPeopleWithoutAUniqueId)
{
    desktop_.add("home", {"ann", "ann", "", "ben"});
    desktop_.book("home").content.people.push_back({"cut", "BEGIN:VCARD\r\nN:Cut\r\n"});
    auto& book = all();

    EXPECT_EQ(uidsOf(book.readPeople()), (Lines{"home/ann", "home/ben"}));
    EXPECT_EQ(book.notes().cardsSkipped, 3U);
    EXPECT_EQ(book.notes().remarks,
              Lines{"3 cards in “Book home” were skipped because they have no unique id or no "
                    "properties. They stay in the address book unchanged."});
}

TEST_F(EdsAddressBookTest, NamesTheBooksThatItReads)
{
    desktop_.add("home", {});
    desktop_.add("company", {"boss"}).content.isWritable = false;
    desktop_.add("work", {"ann"});
    auto& book = all();
    EXPECT_EQ(book.notes().books, Lines());

    book.readPeople();

    EXPECT_EQ(book.notes().books, (Lines{"Book home", "Book work"}));
    auto& readOnly = one("company");
    readOnly.readPeople();
    EXPECT_EQ(readOnly.notes().books, Lines{"Book company"});
}

TEST_F(EdsAddressBookTest, OmitsReadOnlyBooksAndNamesThem)
{
    desktop_.add("home", {"ann"});
    desktop_.add("company", {"boss"}).content.isWritable = false;
    auto& book = all();

    EXPECT_EQ(uidsOf(book.readPeople()), Lines{"home/ann"});
    EXPECT_EQ(book.notes().remarks, Lines{"“Book company” was left out: it is read-only."});
    EXPECT_EQ(deletionOf(book, {"home/ann"}), "");
    EXPECT_EQ(desktop_.uidsIn("home"), Lines());
}

TEST_F(EdsAddressBookTest, ShowsARequestedReadOnlyBookButDeletesNobodyFromIt)
{
    desktop_.add("company", {"boss"}).content.isWritable = false;
    auto& book = one("company");

    const auto people = book.readPeople();

    EXPECT_EQ(uidsOf(people), Lines{"boss"});
    EXPECT_EQ(book.notes().remarks,
              Lines{"“Book company” is read-only: nobody can be deleted from it."});
    const Lines uids{"boss"};
    EXPECT_EQ(failureOf([&] { book.checkWritable(uids); }),
              "“Book company” is read-only: nobody can be deleted from it.");
    EXPECT_EQ(failureOf([&] { book.removeRecord(people[0]); }),
              "“Book company” is read-only: nobody can be deleted from it.");
    book.save();
    EXPECT_TRUE(desktop_.removals.empty());
}

TEST_F(EdsAddressBookTest, NamesBooksThatCannotBeReachedAndReadsTheOthers)
{
    desktop_.add("server", {"sue"}).content.failure = "The server is away.";
    desktop_.add("home", {"ann"});
    auto& book = all();

    EXPECT_EQ(uidsOf(book.readPeople()), Lines{"home/ann"});
    EXPECT_EQ(book.notes().remarks, Lines{"“Book server” could not be read: The server is away."});
    EXPECT_EQ(deletionOf(book, {"home/ann"}), "");
    EXPECT_EQ(desktop_.uidsIn("home"), Lines());
}

TEST_F(EdsAddressBookTest, DoesNotTreatAnUnreachableBookAsEmpty)
{
    desktop_.add("server", {"sue"}).content.failure = "The server is away.";

    const std::string said = "“Book server” could not be read: The server is away.";
    EXPECT_EQ(failureOf([&] { all().readPeople(); }), said);
    EXPECT_EQ(failureOf([&] { one("server").readPeople(); }), said);
}

TEST_F(EdsAddressBookTest, DeletesNobodyWhenAReviewedBookCannotBeReadAnyMore)
{
    desktop_.add("home", {"ann"});
    desktop_.add("server", {"sue"});
    auto& book = all();
    book.readPeople();
    desktop_.book("server").content.failure = "The server is away.";

    EXPECT_EQ(failureOf([&] { book.people(); }),
              "“Book server” could not be read: The server is away.");

    desktop_.book("server").content.failure = "";
    desktop_.book("server").content.isWritable = false;
    EXPECT_EQ(failureOf([&] { book.people(); }),
              "“Book server” was removed, disabled or made read-only after the address book was "
              "read. Reload it and try again.");
    book.save();
    EXPECT_TRUE(desktop_.removals.empty());
}

TEST_F(EdsAddressBookTest, DiscardsRemovalsWhenItCannotBeListedAgain)
{
    desktop_.add("home", {"ann"});
    auto& book = one("home");

    book.removeRecord(book.readPeople()[0]);
    desktop_.book("home").content.failure = "No such file.";
    EXPECT_THROW(book.people(), PlatformError);
    EXPECT_NO_THROW(book.save());

    desktop_.book("home").content.failure = "";
    book.removeRecord(book.people()[0]);
    desktop_.book("home").content.failure = "No such file.";
    EXPECT_THROW(book.readPeople(), PlatformError);
    EXPECT_NO_THROW(book.save());

    EXPECT_TRUE(desktop_.removals.empty());
}

TEST_F(EdsAddressBookTest, DeletesBookByBookInBatches)
{
    desktop_.add("home", {"a", "b", "c", "d", "e"}, 2);
    desktop_.add("work", {"a", "b"}, 2);
    desktop_.add("server", {"a", "b"}, 1);
    auto& book = all();
    book.readPeople();

    EXPECT_EQ(deletionOf(book, {"home/a", "home/c", "home/e", "work/b", "server/a", "server/b"}),
              "");

    EXPECT_EQ(desktop_.removals, (std::vector<Lines>{{"a", "c"}, {"e"}, {"b"}, {"a"}, {"b"}}));
    EXPECT_EQ(desktop_.uidsIn("home"), (Lines{"b", "d"}));
    EXPECT_EQ(desktop_.uidsIn("work"), Lines{"a"});
    EXPECT_EQ(desktop_.uidsIn("server"), Lines());
}

TEST_F(EdsAddressBookTest, LeavesPeopleAloneWhoChangedSinceTheyWereReviewed)
{
    desktop_.add("home", {"a", "b", "c", "d"});
    auto& book = one("home");
    book.readPeople();
    desktop_.edit("home", "a");
    askFor(book, {"a", "b", "c"});
    desktop_.edit("home", "c");

    EXPECT_EQ(failureOf([&] { book.save(); }),
              "Not everybody was deleted. Of 3 people, 1 was deleted, 2 have changed and were not "
              "deleted. Reload the address book before you delete more.");
    EXPECT_EQ(desktop_.uidsIn("home"), (Lines{"a", "c", "d"}));
}

TEST_F(EdsAddressBookTest, ReportsNothingWhenSomebodyIsGoneAlready)
{
    desktop_.add("home", {"a", "b", "c"});
    auto& book = one("home");
    book.readPeople();
    askFor(book, {"a", "b"});
    desktop_.take("home", {"a"});

    EXPECT_EQ(failureOf([&] { book.save(); }), "");
    EXPECT_EQ(desktop_.uidsIn("home"), Lines{"c"});
}

TEST_F(EdsAddressBookTest, ContinuesWithTheOthersWhenABatchFails)
{
    desktop_.add("home", {"a", "b", "c", "d"});
    auto& book = one("home");
    book.readPeople();
    askFor(book, {"a", "b", "c"});
    // Between the last comparison and the removal.
    desktop_.onRemove = [&, isFirst = true](const Lines& /*people*/) mutable {
        if (std::exchange(isFirst, false)) {
            desktop_.take("home", {"b"});
            desktop_.edit("home", "c");
        }
        return std::nullopt;
    };

    EXPECT_EQ(failureOf([&] { book.save(); }),
              "Not everybody was deleted. Of 3 people, 1 was deleted, 1 was already gone, 1 has "
              "changed and was not deleted. Reload the address book before you delete more.");
    EXPECT_EQ(desktop_.removals, (std::vector<Lines>{{"a", "b", "c"}, {"a"}}));
    EXPECT_EQ(desktop_.uidsIn("home"), (Lines{"c", "d"}));
}

TEST_F(EdsAddressBookTest, ReportsWhyAServerRefusesSomePeople)
{
    desktop_.add("server", {"a", "b", "c", "d"}, 1);
    auto& book = one("server");
    book.readPeople();
    desktop_.onRemove = [](const Lines& people) -> std::optional<RemovalResult> {
        if (people == Lines{"b"}) {
            return RemovalResult{Outcome::Refused, "That one is locked."};
        }
        return std::nullopt;
    };

    EXPECT_EQ(deletionOf(book, {"a", "b", "c"}),
              "Not everybody was deleted. Of 3 people, 2 were deleted, 1 is still there. “Book "
              "server”: That one is locked. Reload the address book before you delete more.");
    EXPECT_EQ(desktop_.uidsIn("server"), (Lines{"b", "d"}));
}

TEST_F(EdsAddressBookTest, CountsPeopleAsDeletedWhenOnlyTheReplyWasLost)
{
    desktop_.add("home", {"a", "b", "c"});
    auto& book = one("home");
    book.readPeople();
    desktop_.onRemove = [&](const Lines& people) {
        desktop_.take("home", people);
        return RemovalResult{Outcome::Refused, "The service has ended."};
    };

    EXPECT_EQ(deletionOf(book, {"a", "b"}), "");
    EXPECT_EQ(desktop_.uidsIn("home"), Lines{"c"});
}

TEST_F(EdsAddressBookTest, TriesNothingMoreAfterATimeout)
{
    desktop_.add("home", {"a", "b", "c"}, 2);
    desktop_.add("work", {"a"}, 2);
    auto& book = all();
    book.readPeople();
    desktop_.onRemove = [](const Lines& /*people*/) {
        return RemovalResult{Outcome::NoReply, "Nobody answers."};
    };

    EXPECT_EQ(deletionOf(book, {"home/a", "home/b", "home/c", "work/a"}),
              "Not everybody was deleted. Of 4 people, 2 were not tried, 2 may or may not have "
              "been deleted. “Book home”: Nobody answers. “Book work”: The deletion stopped before "
              "this book. Reload the address book before you delete more.");
    EXPECT_EQ(desktop_.removals.size(), 1U);
}

TEST_F(EdsAddressBookTest, TriesNothingMoreAfterASearchTimedOut)
{
    desktop_.add("home", {"a", "b", "c"}, 2);
    desktop_.add("work", {"a"}, 2);
    auto& book = all();
    book.readPeople();
    desktop_.onFind = [](const std::string& /*uid*/, BookContent& found) {
        found.failure = "Nobody answers.";
        found.hasTimedOut = true;
    };

    EXPECT_EQ(deletionOf(book, {"home/a", "home/b", "home/c", "work/a"}),
              "Not everybody was deleted. Of 4 people, 4 were not tried. “Book home”: Nobody "
              "answers. “Book work”: The deletion stopped before this book. Reload the address "
              "book before you delete more.");
    EXPECT_TRUE(desktop_.removals.empty());
}

TEST_F(EdsAddressBookTest, ContinuesWithTheOtherBooksWhenOneCannotBeRead)
{
    desktop_.add("home", {"a", "b", "c"}, 2);
    desktop_.add("work", {"a", "b"}, 2);
    auto& book = all();
    book.readPeople();
    desktop_.onFind = [](const std::string& uid, BookContent& found) {
        found.failure = uid == "home" ? "No such file." : "";
    };

    EXPECT_EQ(deletionOf(book, {"home/a", "home/b", "home/c", "work/a"}),
              "Not everybody was deleted. Of 4 people, 1 was deleted, 3 were not tried. “Book "
              "home”: No such file. Reload the address book before you delete more.");
    EXPECT_EQ(desktop_.uidsIn("work"), Lines{"b"});
}

TEST_F(EdsAddressBookTest, LeavesPeopleAloneWhoChangedOnTheServer)
{
    desktop_.add("server", {"a", "b", "c"}, 1);
    auto& book = one("server");
    book.readPeople();
    desktop_.onRemove = [](const Lines& people) -> std::optional<RemovalResult> {
        if (people == Lines{"a"}) {
            return RemovalResult{Outcome::Changed, "The server has another version."};
        }
        return std::nullopt;
    };

    EXPECT_EQ(deletionOf(book, {"a", "b"}),
              "Not everybody was deleted. Of 2 people, 1 was deleted, 1 has changed and was not "
              "deleted. Reload the address book before you delete more.");
    EXPECT_EQ(desktop_.uidsIn("server"), (Lines{"a", "c"}));
}

TEST_F(EdsAddressBookTest, FindsOutWhichPeopleOfABatchChangedOnTheServer)
{
    desktop_.add("server", {"a", "b"}, 2);
    auto& book = one("server");
    book.readPeople();
    desktop_.onRemove = [](const Lines& people) -> std::optional<RemovalResult> {
        if (std::find(people.begin(), people.end(), "a") != people.end()) {
            return RemovalResult{Outcome::Changed, "The server has another version."};
        }
        return std::nullopt;
    };

    EXPECT_EQ(deletionOf(book, {"a", "b"}),
              "Not everybody was deleted. Of 2 people, 1 was deleted, 1 has changed and was not "
              "deleted. Reload the address book before you delete more.");
    EXPECT_EQ(desktop_.uidsIn("server"), Lines{"a"});
}

TEST_F(EdsAddressBookTest, ReportsUnknownOutcomes)
{
    desktop_.add("home", {"a", "b", "c"}, 2);
    auto& book = one("home");
    book.readPeople();
    desktop_.onRemove = [&](const Lines& /*people*/) {
        desktop_.onFind = [](const std::string& /*uid*/, BookContent& found) {
            found.failure = "Nobody answers.";
            found.hasTimedOut = true;
        };
        return RemovalResult{Outcome::NoReply, "Nobody answers."};
    };

    EXPECT_EQ(
        deletionOf(book, {"a", "b", "c"}),
        "Not everybody was deleted. Of 3 people, 1 was not tried, 2 may or may not have been "
        "deleted. “Book home”: Nobody answers. Reload the address book before you delete more.");
}

TEST_F(EdsAddressBookTest, GivesUpOnAServerThatRefusesEverything)
{
    Lines many;
    for (int i = 0; i < 50; ++i) {
        many.push_back("p" + std::to_string(i));
    }
    desktop_.add("server", many, 1);
    auto& book = one("server");
    book.readPeople();
    desktop_.onRemove = [](const Lines& /*people*/) {
        return RemovalResult{Outcome::Refused, "No."};
    };

    EXPECT_EQ(deletionOf(book, many),
              "Not everybody was deleted. Of 50 people, 10 are still there, 40 were not tried. "
              "“Book server”: No. Reload the address book before you delete more.");
    EXPECT_EQ(desktop_.removals.size(), 10U);
}

TEST_F(EdsAddressBookTest, GivesUpOnAServerThatRefusesSlowly)
{
    desktop_.add("server", {"a", "b", "c", "d", "e"}, 1);
    const auto reviewed = desktop_.book("server").content.people;
    FakeContactService service(desktop_);
    EdsDeletion::Time now;
    EdsDeletion deletion(service, {}, [&] { return now; });
    desktop_.onRemove = [&](const Lines& people) -> std::optional<RemovalResult> {
        now += std::chrono::seconds(5);
        if (people == Lines{"a"}) {
            return std::nullopt;
        }
        return RemovalResult{Outcome::Refused, "No."};
    };

    deletion.remove({"server", "Book server", "carddav"}, 1, removalsOf(reviewed));

    EXPECT_EQ(deletion.failure(),
              "Not everybody was deleted. Of 5 people, 1 was deleted, 2 are still there, 2 were "
              "not tried. “Book server”: No. Reload the address book before you delete more.");
}

TEST_F(EdsAddressBookTest, ReturnsTheCardsAsTheServiceGivesThem)
{
    desktop_.add("home", {"a", "b"});
    desktop_.add("work", {"a"});
    auto& book = all();
    book.readPeople();
    const auto people = book.people();
    const std::vector<const Person*> chosen{&people.back(), &people.front()};

    EXPECT_EQ(book.cards(chosen), cardNamed("a", "a") + "\r\n" + cardNamed("a", "a") + "\r\n");
}

TEST_F(EdsAddressBookTest, KeepsTheReviewedPeopleWhenItIsListedAgain)
{
    desktop_.add("home", {"a", "b"});
    auto& book = one("home");
    const auto reviewed = book.readPeople();
    desktop_.take("home", {"a"});

    EXPECT_EQ(uidsOf(book.people()), Lines{"b"});
    EXPECT_EQ(uidsOf(reviewed), (Lines{"a", "b"}));
    EXPECT_NE(failureOf([&] { book.removeRecord(reviewed[0]); }), "");
}

TEST_F(EdsAddressBookTest, SummarizesEveryBook)
{
    desktop_.add("home", {"a", "b"});
    desktop_.add("company", {"boss"}).content.isWritable = false;
    desktop_.add("server", {}).content.failure = "The server is away.";
    FakeContactService service(desktop_);

    const auto books = listEdsBooks(service);

    ASSERT_EQ(books.size(), 3U);
    EXPECT_EQ(books[0].uid, "home");
    EXPECT_EQ(books[0].name, "Book home");
    EXPECT_EQ(books[0].kind, "local");
    EXPECT_EQ(books[0].isWritable, true);
    EXPECT_EQ(books[0].people, 2U);
    EXPECT_EQ(books[1].isWritable, false);
    EXPECT_EQ(books[1].people, 1U);
    EXPECT_EQ(books[2].isWritable, std::nullopt);
    EXPECT_EQ(books[2].people, std::nullopt);
    EXPECT_EQ(books[2].failure, "The server is away.");
}

TEST_F(EdsAddressBookTest, ListsTheNamesOfTheBooksWithoutReadingThem)
{
    desktop_.add("home", {"a"});
    desktop_.add("server", {}).content.failure = "The server is away.";
    FakeContactService service(desktop_);

    const auto books = listEdsBookNames(service);

    EXPECT_EQ(desktop_.readings, 0U);
    ASSERT_EQ(books.size(), 2U);
    EXPECT_EQ(books[0].uid, "home");
    EXPECT_EQ(books[0].name, "Book home");
    EXPECT_EQ(books[1].uid, "server");
    EXPECT_EQ(books[1].failure, "");
}

TEST(EdsName, IsOneBooksOrAll)
{
    EXPECT_TRUE(isEdsName("eds:"));
    EXPECT_TRUE(isEdsName("eds:system-address-book"));
    EXPECT_FALSE(isEdsName("eds"));
    EXPECT_FALSE(isEdsName("./eds:"));
}

}  // namespace
}  // namespace dunmora::test
