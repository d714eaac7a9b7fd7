#include "adapters/eds/EdsAddressBook.h"
#include "adapters/eds/EdsCards.h"
#include "adapters/eds/EdsRestoration.h"
#include "tests/adapters/eds/Deleting.h"
#include "tests/adapters/eds/FakeContactService.h"
#include "tests/fakes/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace dunmora::test {
namespace {

using Lines = std::vector<std::string>;
using Mode = CardRestorer::Mode;
using Outcome = AdditionResult::Outcome;

class EdsRestorationTest : public testing::Test {
protected:
    EdsAddressBook& open(std::optional<std::string> uid)
    {
        book_ = std::make_unique<EdsAddressBook>(std::make_unique<FakeContactService>(desktop_),
                                                 std::move(uid), folder_.path());
        return *book_;
    }

    /// Opens all books and deletes these people.
    EdsAddressBook& deleting(const Lines& uids)
    {
        auto& book = open(std::nullopt);
        book.readPeople();
        askFor(book, uids);
        book.save();
        return book;
    }

    static std::string notRestored(const std::string& name, const std::string& reason)
    {
        return "“" + name + "” was not restored: " + reason;
    }

    TemporaryFolder folder_;
    FakeDesktopBooks desktop_;

private:
    std::unique_ptr<EdsAddressBook> book_;
};

TEST_F(EdsRestorationTest, ReturnsEveryoneToTheirBook)
{
    desktop_.add("home", {"ann", "ben"});
    desktop_.add("work", {"ann", "cid"});
    const auto home = desktop_.book("home").content.people[0].card;
    auto& book = deleting({"home/ann", "work/cid"});

    const auto result = book.restoreLast();

    EXPECT_EQ(result.restored, 2U);
    EXPECT_EQ(desktop_.uidsIn("home"), (Lines{"ben", "ann"}));
    EXPECT_EQ(desktop_.uidsIn("work"), (Lines{"ann", "cid"}));
    EXPECT_EQ(desktop_.book("home").content.people[1].card, home);
}

TEST_F(EdsRestorationTest, RemembersPeopleWhoMayHaveBeenRemoved)
{
    desktop_.add("home", {"ann", "ben"});
    auto& book = open("home");
    book.readPeople();
    desktop_.onRemove = [&](const auto& people) {
        desktop_.take("home", people);
        return RemovalResult{RemovalResult::Outcome::NoReply, "No reply."};
    };
    desktop_.onFind = [](const auto& /*book*/, BookContent& found) {
        if (found.people.empty()) {
            found.failure = "Unknown.";
        }
    };
    askFor(book, {"ann"});
    EXPECT_NE(failureOf([&] { book.save(); }), "");

    EXPECT_EQ(book.lastRemoved(), 1U);
    EXPECT_EQ(book.restoreLast().restored, 1U);
    EXPECT_EQ(desktop_.uidsIn("home"), (Lines{"ben", "ann"}));
}

TEST_F(EdsRestorationTest, RemembersOnlyThoseWhoWereRemoved)
{
    desktop_.add("home", {"ann", "ben", "cid"});
    auto& book = open("home");
    book.readPeople();
    askFor(book, {"ann", "ben", "cid"});
    desktop_.edit("home", "ann");
    desktop_.take("home", {"cid"});

    EXPECT_NE(failureOf([&] { book.save(); }), "");

    EXPECT_EQ(book.lastRemoved(), 1U);
    EXPECT_EQ(book.lastRemovedCards(), cardNamed("ben", "ben") + "\r\n");
}

TEST_F(EdsRestorationTest, NamesPeopleWhoseBookCannotBeUsed)
{
    desktop_.add("home", {"ann"});
    desktop_.add("work", {"ben"});
    desktop_.add("club", {"cid"});
    desktop_.add("team", {"dan"});
    auto& book = deleting({"home/ann", "work/ben", "club/cid", "team/dan"});
    desktop_.book("work").content.failure = "Its server cannot be reached.";
    desktop_.book("club").content.isWritable = false;
    desktop_.books.pop_back();

    const auto result = book.restoreLast();

    EXPECT_EQ(result.restored, 1U);
    EXPECT_EQ(
        result.failures,
        (Lines{notRestored("ben", "“Book work” could not be read: Its server cannot be reached."),
               notRestored("cid", "“Book club” is read-only."),
               notRestored("dan", "“Book team” is no longer enabled.")}));
    EXPECT_EQ(book.lastRemoved(), 3U);
}

TEST_F(EdsRestorationTest, TriesPeopleOneByOneAfterABatchFails)
{
    desktop_.add("home", {"ann", "ben", "cid", "dan"});
    auto& book = deleting({"home/ann", "home/ben", "home/cid"});
    desktop_.onAdd = [&, calls = 0](const auto& /*cards*/) mutable {
        if (++calls == 1) {
            // Another program is faster.
            auto& people = desktop_.book("home").content.people;
            people.push_back({"ann", cardNamed("ann", "ann")});
            people.push_back({"ben", cardNamed("ben", "Somebody Else")});
        }
        return std::nullopt;
    };

    const auto result = book.restoreLast();

    EXPECT_EQ(result.restored, 1U);
    EXPECT_EQ(result.present, 1U);
    EXPECT_EQ(result.failures, Lines{notRestored("ben", "its UID belongs to another card in “Book "
                                                        "home”.")});
    EXPECT_EQ(desktop_.uidsIn("home"), (Lines{"dan", "ann", "ben", "cid"}));
}

TEST_F(EdsRestorationTest, CountsPeopleAsRestoredWhenOnlyTheReplyIsLost)
{
    desktop_.add("home", {"ann", "ben"});
    auto& book = deleting({"home/ann"});
    desktop_.onAdd = [&](const auto& /*cards*/) {
        desktop_.book("home").content.people.push_back({"ann", cardNamed("ann", "ann")});
        return AdditionResult{Outcome::NoReply, "No reply."};
    };

    const auto result = book.restoreLast();

    EXPECT_EQ(result.restored, 1U);
    EXPECT_EQ(result.failures, Lines());
    EXPECT_EQ(book.lastRemoved(), 0U);
}

TEST_F(EdsRestorationTest, StopsAfterATimeout)
{
    desktop_.add("home", {"ann"});
    desktop_.add("work", {"ben"}, 1);
    auto& book = deleting({"home/ann", "work/ben"});
    desktop_.onAdd = [](const auto& /*cards*/) {
        return AdditionResult{Outcome::NoReply, "No reply."};
    };

    const auto result = book.restoreLast();

    EXPECT_EQ(desktop_.additions.size(), 1U);
    EXPECT_EQ(result.failures,
              (Lines{"“ann” may or may not have been restored: “Book home”: No reply.",
                     notRestored("ben", "“Book work”: The restoration stopped before.")}));
    EXPECT_EQ(book.lastRemoved(), 2U);
}

TEST_F(EdsRestorationTest, GivesUpOnABookThatKeepsRefusing)
{
    Lines uids;
    Lines checked;
    for (int i = 0; i < 30; ++i) {
        uids.push_back("p" + std::to_string(i));
        checked.push_back("home/" + uids.back());
    }
    desktop_.add("home", uids, 1);
    auto& book = deleting(checked);
    desktop_.onAdd = [](const auto& /*cards*/) {
        return AdditionResult{Outcome::Refused, "It is full."};
    };

    const auto result = book.restoreLast();

    EXPECT_EQ(desktop_.additions.size(), 10U);
    EXPECT_EQ(result.failures.size(), 30U);
    EXPECT_EQ(result.failures.front(), notRestored("p0", "“Book home”: It is full."));
    EXPECT_EQ(book.lastRemoved(), 30U);
}

TEST_F(EdsRestorationTest, RestoresPeopleWithoutPicturesThatAreGone)
{
    desktop_.add("home", {});
    std::filesystem::create_directories(folder_.path() / "home/photos");
    const auto backup = "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:ann\r\nN:Lee;Ann;;;\r\n"
                        "PHOTO;VALUE=uri:file://" +
                        (folder_.path() / "home/photos/gone").string() + "\r\nEND:VCARD\r\n";

    const auto result = open("home").restore(backup, Mode::Write);

    EXPECT_EQ(result.restored, 1U);
    EXPECT_EQ(result.remarks,
              Lines{"“Ann Lee” was restored without a picture: its file no longer exists."});
    EXPECT_EQ(desktop_.additions.at(0).at(0).find("PHOTO"), std::string::npos);
}

TEST_F(EdsRestorationTest, RestoresABackupOnlyIntoOneBook)
{
    desktop_.add("home", {});

    EXPECT_EQ(failureOf([&] {
                  open(std::nullopt).restore(cardNamed("ann", "Ann") + "\r\n", Mode::Write);
              }),
              "Several address books are open. Choose one of them, such as "
              "eds:system-address-book, to restore a backup into. Run “dunmora-cli books” to list "
              "the address books.");
}

TEST_F(EdsRestorationTest, ComparesCardsWithoutAUidByTheirTexts)
{
    desktop_.add("home", {});
    const std::string backup = "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Ann\r\nEND:VCARD\r\n"
                               "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Ben\r\nEND:VCARD\r\n"
                               "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Ann\r\nEND:VCARD\r\n";
    auto& book = open("home");

    const auto first = book.restore(backup, Mode::Write);
    const auto second = book.restore(backup, Mode::Write);

    EXPECT_EQ(first.restored, 2U);
    EXPECT_EQ(first.present, 1U);
    EXPECT_EQ(second.present, 3U);
    const auto uids = desktop_.uidsIn("home");
    ASSERT_EQ(uids.size(), 2U);
    EXPECT_NE(uids[0], "");
    EXPECT_NE(uids[0], uids[1]);
}

TEST_F(EdsRestorationTest, ReadsABackupInUtf16)
{
    desktop_.add("home", {});
    const auto card = cardNamed("ann", "Ann") + "\r\n";
    std::string backup = "\xFF\xFE";
    for (const char c : card) {
        backup += c;
        backup += '\0';
    }

    EXPECT_EQ(open("home").restore(backup, Mode::Write).restored, 1U);
    EXPECT_EQ(desktop_.book("home").content.people.at(0).card, cardNamed("ann", "Ann"));
}

TEST_F(EdsRestorationTest, ReportsWhatABackupContainsBesidesReadablePeople)
{
    desktop_.add("home", {});
    const auto backup = cardNamed("ann", "Ann") + "\r\n" + cardNamed("ben", "B\xE9n") +
                        "\r\nBEGIN:VCARD\r\nVERSION:4.0\r\nUID:choir\r\nKIND:group\r\n"
                        "FN:Choir\r\nEND:VCARD\r\nBEGIN:VCARD\r\nFN:Cut\r\n";

    const auto result = open("home").restore(backup, Mode::Write);

    EXPECT_EQ(result.restored, 1U);
    EXPECT_EQ(result.failures,
              (Lines{"1 card of the backup was not restored because it breaks off or has no "
                     "properties.",
                     "1 card of the backup was not restored because it is not UTF-8."}));
    EXPECT_EQ(result.remarks, Lines{"1 list of the backup was not restored: only people are."});
}

TEST(EdsCards, NamesAPersonByWhatTheCardHas)
{
    EXPECT_EQ(nameIn({"a", "BEGIN:VCARD\nN:Lee;Ann\nEND:VCARD\n"}), "Ann Lee");
    EXPECT_EQ(nameIn({"a", "BEGIN:VCARD\nNICKNAME:Annie\nEND:VCARD\n"}), "Annie");
    EXPECT_EQ(nameIn({"a", "BEGIN:VCARD\nTEL:555\nEND:VCARD\n"}), "555");
    EXPECT_EQ(nameIn({"a", "BEGIN:VCARD\nNOTE:x\nEND:VCARD\n"}), "a");
}

}  // namespace
}  // namespace dunmora::test
