#include "tests/adapters/vcard/BookTest.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace dunmora::test {
namespace {

using Names = std::set<std::string>;
using Uids = std::vector<std::string>;

class VCardBackupTest : public BookTest {
protected:
    std::filesystem::path backup() const { return elsewhere_.path() / "backup.vcf"; }
    const std::filesystem::path& elsewhere() const { return elsewhere_.path(); }

    /// Backs up the people at these positions of the book's listing.
    void backUp(AddressBook& book, const std::vector<std::size_t>& positions)
    {
        const auto people = book.people();
        std::vector<const Person*> chosen;
        chosen.reserve(positions.size());
        for (const auto position : positions) {
            chosen.push_back(&people[position]);
        }
        book.backUp(chosen, backup());
    }

    /// The backup of these people of a file with this content.
    std::string backupOf(const std::vector<std::size_t>& positions, const std::string& content)
    {
        write(file(), content);
        std::filesystem::remove(backup());
        VCardAddressBook book(file());
        backUp(book, positions);
        EXPECT_EQ(contentOf(file()), content);
        EXPECT_EQ(namesIn(elsewhere()), (Names{"backup.vcf"}));
        return contentOf(backup());
    }

private:
    TemporaryFolder elsewhere_;
};

TEST_F(VCardBackupTest, HoldsTheCardsByteForByteInTheOrderGiven)
{
    const std::string odd = "  begin:vcard\rUID:b\n\xE9\xFF: x\r\nEND:VCARD \n";

    EXPECT_EQ(backupOf({0, 1, 2}, "junk\n" + card("a", "\n") + odd + "junk\n" + card("c")),
              card("a", "\n") + odd + card("c"));
    EXPECT_EQ(backupOf({2, 0}, card("a") + card("b") + card("c")), card("c") + card("a"));
}

TEST_F(VCardBackupTest, PutsALineEndAfterACardThatHasNone)
{
    auto last = card("b");
    last.resize(last.size() - 2);

    EXPECT_EQ(backupOf({1, 0}, card("a") + last), last + "\r\n" + card("a"));
    EXPECT_EQ(backupOf({1}, utf16Big(card("a") + last)), "\xFE\xFF" + utf16Big(last + "\r\n"));
}

TEST_F(VCardBackupTest, LeavesTheMarkOfAFileOfBytesAway)
{
    EXPECT_EQ(backupOf({0}, "\xEF\xBB\xBF" + card("a")), card("a"));
}

TEST_F(VCardBackupTest, OfUtf16BeginsWithAByteOrderMark)
{
    const auto little = utf16Little(card("a") + card("b"));
    const auto big = utf16Big(card("a") + card("b"));

    EXPECT_EQ(backupOf({1}, little), "\xFF\xFE" + utf16Little(card("b")));
    EXPECT_EQ(backupOf({0}, "\xFF\xFE" + little), "\xFF\xFE" + utf16Little(card("a")));
    EXPECT_EQ(backupOf({1}, big), "\xFE\xFF" + utf16Big(card("b")));
    EXPECT_EQ(uidsIn(backup()), (Uids{"b"}));
}

TEST_F(VCardBackupTest, ShowsExactlyThePeopleWhoAreRemoved)
{
    write(file(), card("a") + "x\n" + card("b") + card("c"));
    VCardAddressBook book(file());
    backUp(book, {0, 2});
    ask(book, {"a", "c"});
    book.save();

    EXPECT_EQ(uidsIn(backup()), (Uids{"a", "c"}));
    EXPECT_EQ(uidsIn(file()), (Uids{"b"}));
}

TEST_F(VCardBackupTest, OfCardsOfDifferentEncodingsIsRefusedBeforeAnythingIsWritten)
{
    write(folder() / "a.vcf", card("a"));
    write(folder() / "b.vcf", utf16Little(card("b")));
    write(folder() / "c.vcf", utf16Big(card("c")));
    VCardAddressBook book(folder());

    const std::string refusal =
        "The people cannot stand in one backup: some of the cards are UTF-16 and others are not. "
        "Delete them in separate runs.";
    EXPECT_EQ(failureOf([&] { backUp(book, {0, 1}); }), refusal);
    EXPECT_NE(failureOf([&] { backUp(book, {1, 2}); }), "nothing was thrown");

    EXPECT_EQ(namesIn(elsewhere()), Names());
}

TEST_F(VCardBackupTest, OfNobodyIsAnEmptyFile)
{
    EXPECT_EQ(backupOf({}, card("a")), "");
}

TEST_F(VCardBackupTest, IsForItsOwnerOnly)
{
    backupOf({0}, card("a"));

    EXPECT_EQ(std::filesystem::status(backup()).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST_F(VCardBackupTest, LeavesAnExistingFileAloneAndALinkToNowhere)
{
    write(file(), card("a"));
    VCardAddressBook book(file());
    write(backup(), "precious");
    EXPECT_EQ(failureOf([&] { backUp(book, {0}); }),
              about(backup(), "cannot be made: File exists."));
    EXPECT_EQ(contentOf(backup()), "precious");

    std::filesystem::remove(backup());
    std::filesystem::create_symlink(elsewhere() / "nowhere", backup());
    EXPECT_EQ(failureOf([&] { backUp(book, {0}); }),
              about(backup(), "cannot be made: File exists."));
    EXPECT_EQ(namesIn(elsewhere()), (Names{"backup.vcf"}));
}

TEST_F(VCardBackupTest, TellsWhereItCannotBeMade)
{
    write(file(), card("a"));
    VCardAddressBook book(file());
    const auto people = book.readPeople();
    const std::vector<const Person*> chosen = {people.data()};
    const auto nowhere = elsewhere() / "none" / "backup.vcf";

    EXPECT_EQ(failureOf([&] { book.backUp(chosen, nowhere); }),
              about(nowhere, "cannot be made: No such file or directory."));
    EXPECT_EQ(failureOf([&] { book.backUp(chosen, ""); }),
              about("", "cannot be made: No such file or directory."));
}

TEST_F(VCardBackupTest, OfAStrangerIsRefused)
{
    write(file(), card("a"));
    VCardAddressBook book(file());
    const Person stranger{"a", {}, {}, {}, {}, {}};
    const std::vector<const Person*> chosen = {&stranger};
    EXPECT_EQ(failureOf([&] { book.backUp(chosen, backup()); }),
              "That person is not in the address book.");
    book.readPeople();

    EXPECT_EQ(failureOf([&] { book.backUp(chosen, backup()); }),
              "That person is not in the address book.");

    EXPECT_EQ(namesIn(elsewhere()), Names());
}

}  // namespace
}  // namespace dunmora::test
