#include "tests/adapters/vcard/BookTest.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace dunmora::test {
namespace {

using Uids = std::vector<std::string>;

class VCardBackupTest : public BookTest {
protected:
    /// The backup of the people at these positions of the book's listing.
    static std::string backupOf(VCardAddressBook& book, const std::vector<std::size_t>& positions)
    {
        const auto people = book.people();
        std::vector<const Person*> chosen;
        chosen.reserve(positions.size());
        for (const auto position : positions) {
            chosen.push_back(&people[position]);
        }
        return book.cards(chosen);
    }

    /// The backup of these people of a file with this content.
    std::string backupOf(const std::vector<std::size_t>& positions, const std::string& content)
    {
        write(file(), content);
        VCardAddressBook book(file());
        auto backup = backupOf(book, positions);
        EXPECT_EQ(contentOf(file()), content);
        return backup;
    }

    /// The uids of the people in a backup.
    Uids uidsInBackup(const std::string& backup) const
    {
        const auto path = elsewhere_.path() / "backup.vcf";
        write(path, backup);
        return uidsIn(path);
    }

private:
    TemporaryFolder elsewhere_;
};

TEST_F(VCardBackupTest, ContainsTheCardsByteForByteInTheGivenOrder)
{
    const std::string odd = "  begin:vcard\rUID:b\n\xE9\xFF: x\r\nEND:VCARD \n";

    EXPECT_EQ(backupOf({0, 1, 2}, "junk\n" + card("a", "\n") + odd + "junk\n" + card("c")),
              card("a", "\n") + odd + card("c"));
    EXPECT_EQ(backupOf({2, 0}, card("a") + card("b") + card("c")), card("c") + card("a"));
}

TEST_F(VCardBackupTest, AddsALineEndToACardThatHasNone)
{
    auto last = card("b");
    last.resize(last.size() - 2);

    EXPECT_EQ(backupOf({1, 0}, card("a") + last), last + "\r\n" + card("a"));
    EXPECT_EQ(backupOf({1}, utf16Big(card("a") + last)), "\xFE\xFF" + utf16Big(last + "\r\n"));
}

TEST_F(VCardBackupTest, OmitsTheUtf8ByteOrderMark)
{
    EXPECT_EQ(backupOf({0}, "\xEF\xBB\xBF" + card("a")), card("a"));
}

TEST_F(VCardBackupTest, OfUtf16BeginsWithAByteOrderMark)
{
    const auto little = utf16Little(card("a") + card("b"));
    const auto big = utf16Big(card("a") + card("b"));

    EXPECT_EQ(backupOf({1}, little), "\xFF\xFE" + utf16Little(card("b")));
    EXPECT_EQ(backupOf({0}, "\xFF\xFE" + little), "\xFF\xFE" + utf16Little(card("a")));
    const auto backup = backupOf({1}, big);
    EXPECT_EQ(backup, "\xFE\xFF" + utf16Big(card("b")));
    EXPECT_EQ(uidsInBackup(backup), (Uids{"b"}));
}

TEST_F(VCardBackupTest, ContainsExactlyTheRemovedPeople)
{
    write(file(), card("a") + "x\n" + card("b") + card("c"));
    VCardAddressBook book(file());
    const auto backup = backupOf(book, {0, 2});
    ask(book, {"a", "c"});
    book.save();

    EXPECT_EQ(uidsInBackup(backup), (Uids{"a", "c"}));
    EXPECT_EQ(uidsIn(file()), (Uids{"b"}));
}

TEST_F(VCardBackupTest, OfCardsOfDifferentEncodingsIsRefused)
{
    write(folder() / "a.vcf", card("a"));
    write(folder() / "b.vcf", utf16Little(card("b")));
    write(folder() / "c.vcf", utf16Big(card("c")));
    VCardAddressBook book(folder());

    const std::string refusal =
        "One backup cannot hold these people: some of their cards are UTF-16 and others are not. "
        "Delete them in separate runs.";
    EXPECT_EQ(failureOf([&] { backupOf(book, {0, 1}); }), refusal);
    EXPECT_NE(failureOf([&] { backupOf(book, {1, 2}); }), "nothing was thrown");
}

TEST_F(VCardBackupTest, OfNobodyIsEmpty)
{
    EXPECT_EQ(backupOf({}, card("a")), "");
}

TEST_F(VCardBackupTest, OfAStrangerIsRefused)
{
    write(file(), card("a"));
    VCardAddressBook book(file());
    const Person stranger{"a", {}, {}, {}, {}, {}};
    const std::vector<const Person*> chosen = {&stranger};
    EXPECT_EQ(failureOf([&] { book.cards(chosen); }), "That person is not in the address book.");
    book.readPeople();

    EXPECT_EQ(failureOf([&] { book.cards(chosen); }), "That person is not in the address book.");
}

}  // namespace
}  // namespace dunmora::test
