#include "adapters/posix/TemporaryName.h"
#include "tests/adapters/vcard/BookTest.h"

#include <gtest/gtest.h>
#include <sys/xattr.h>

#include <string>
#include <vector>

namespace dunmora::test {
namespace {

using namespace std::string_literals;
using Remarks = std::vector<std::string>;
using Uids = std::vector<std::string>;

class BookNotesTest : public BookTest {
protected:
    static ReadingNotes notesOf(const std::filesystem::path& path)
    {
        VCardAddressBook book(path);
        book.readPeople();
        return book.notes();
    }

    ReadingNotes notesOfFile(const std::string& content) const
    {
        write(file(), content);
        return notesOf(file());
    }

    const std::string open_ = "BEGIN:VCARD\r\nFN:No end\r\n";
    const std::string hollow_ = "BEGIN:VCARD\r\n\r\nno property\r\nEND:VCARD\r\n";
    const std::string group_ = "BEGIN:VCARD\r\nKIND:group\r\nFN:Us\r\nEND:VCARD\r\n";
};

TEST_F(BookNotesTest, AreEmptyBeforeTheFirstReading)
{
    write(file(), open_);
    const VCardAddressBook book(file());

    EXPECT_EQ(book.notes().cardsSkipped, 0U);
    EXPECT_EQ(book.notes().remarks, Remarks());
}

TEST_F(BookNotesTest, AreEmptyWhenEveryCardWasRead)
{
    const auto notes = notesOfFile("junk\r\n" + card("a") + "junk");

    EXPECT_EQ(notes.cardsSkipped, 0U);
    EXPECT_EQ(notes.remarks, Remarks());
}

TEST_F(BookNotesTest, NameTheLineOfASkippedCard)
{
    const auto notes = notesOfFile(card("a") + "\r\n" + hollow_ + card("b"));

    EXPECT_EQ(notes.cardsSkipped, 1U);
    EXPECT_EQ(notes.remarks, (Remarks{"1 card in “" + file().string() +
                                      "” (line 7) was skipped because it breaks off or has no "
                                      "properties. It stays in the file unchanged."}));
}

TEST_F(BookNotesTest, CountACardWhoseTextBreaksOffBeforeItsEnd)
{
    const auto notes = notesOfFile("BEGIN:VCARD\r\nN;ENCODING=QUOTED-PRINTABLE:Lee;Ann=\r\n"
                                   "END:VCARD\r\n" +
                                   card("a"));

    EXPECT_EQ(notes.cardsSkipped, 1U);
    EXPECT_EQ(notes.remarks, (Remarks{"1 card in “" + file().string() +
                                      "” (line 1) was skipped because it breaks off or has no "
                                      "properties. It stays in the file unchanged."}));
}

TEST_F(BookNotesTest, CountSkippedCardsAndNameTheLineOfTheFirst)
{
    const auto notes = notesOfFile(card("a", "\r") + open_ + hollow_ + card("b", "\n") + open_);

    EXPECT_EQ(notes.cardsSkipped, 3U);
    EXPECT_EQ(notes.remarks,
              (Remarks{"3 cards in “" + file().string() +
                       "” (the first in line 6) were skipped because they break off or have no "
                       "properties. They stay in the file unchanged."}));
}

TEST_F(BookNotesTest, DoNotCountGroups)
{
    const auto notes = notesOfFile(group_);

    EXPECT_EQ(notes.cardsSkipped, 0U);
    EXPECT_EQ(notes.remarks, Remarks());
}

TEST_F(BookNotesTest, AreEmptyForAnEmptyFile)
{
    EXPECT_EQ(notesOfFile("").remarks, Remarks());
    EXPECT_EQ(notesOfFile("\xEF\xBB\xBF\r\n \t\r\n").remarks, Remarks());
    EXPECT_EQ(notesOf(folder()).remarks, Remarks());
}

TEST_F(BookNotesTest, NameTheFilesOfAFolderThatAreNoVCardFiles)
{
    write(folder() / "a.vcf", "first,last\nAnn,Lee\n");
    write(folder() / "b.vcf", card("b"));
    write(folder() / "c.vcf", "Hello");
    write(folder() / "d.vcf", "\r\n");

    EXPECT_EQ(
        notesOf(folder()).remarks,
        (Remarks{about(folder() / "a.vcf", "was skipped: it is a CSV file, not a vCard file."),
                 about(folder() / "c.vcf", "was skipped: it is not a vCard file.")}));
    EXPECT_EQ(uidsIn(folder()), Uids{"b"});
}

TEST_F(BookNotesTest, ReportAFileWhosePeopleHaveBeenDeleted)
{
    write(file(), "; my friends, and others\r\n" + card("a") + card("b"));
    VCardAddressBook book(file());
    book.readPeople();
    ask(book, {"a", "b"});
    book.save();
    removeMark(file());

    EXPECT_EQ(uidsOf(book.readPeople()), Uids());
    EXPECT_EQ(book.notes().remarks, Remarks{about(file(), "contains no vCards.")});
}

TEST_F(BookNotesTest, ReportAFileWhosePeopleWereDeletedInAnEarlierRun)
{
    const auto text = "; my friends, and others\r\n"s;
    write(file(), text + card("a"));
    removeFrom(file(), {"a"});
    if (setxattr(folder().c_str(), "user.probe", "1", 1, 0) != 0) {
        GTEST_SKIP() << "The file system keeps no attributes.";
    }

    EXPECT_EQ(notesOf(file()).remarks, Remarks{about(file(), "contains no vCards.")});
    EXPECT_EQ(notesOf(folder()).remarks, Remarks{about(file(), "contains no vCards.")});

    // In place, so that the attribute stays.
    write(file(), "first,last\nAnn,Lee\n");
    EXPECT_EQ(failureOf([&] { notesOf(file()); }),
              about(file(), "is a CSV file, not a vCard file. Export as vCard (.vcf)."));
}

TEST_F(BookNotesTest, LeaveNoMarkWhereAnythingOfACardRemains)
{
    for (const auto& rest : {""s, "\r\n"s, card("b"), open_, group_}) {
        write(file(), card("a") + rest);
        removeFrom(file(), {"a"});

        EXPECT_LT(getxattr(file().c_str(), "user.dunmora.remainder", nullptr, 0), 0) << rest;
    }
}

/// A file that is opened by itself.
class ForeignBookTest : public BookNotesTest {
protected:
    std::string failureWith(const std::string& content) const
    {
        return failureOf([&] { notesOfFile(content); });
    }
};

TEST_F(ForeignBookTest, IsRefusedByItsKind)
{
    EXPECT_EQ(failureWith("first,last\nAnn,Lee\n"),
              about(file(), "is a CSV file, not a vCard file. Export as vCard (.vcf)."));
    EXPECT_EQ(failureWith("version: 1\ndn: cn=Ann\n"),
              about(file(), "is an LDIF file, not a vCard file. Export as vCard (.vcf)."));
    EXPECT_EQ(failureWith("PK\3\4"),
              about(file(), "is a zip archive, not a vCard file. Export as vCard (.vcf)."));
    const auto unknown = about(file(), "is not a vCard file. Export as vCard (.vcf).");
    EXPECT_EQ(failureWith("Hello"), unknown);
    EXPECT_EQ(failureWith(std::string(1, '\0')), unknown);
    EXPECT_EQ(failureWith("\xFF\xFE" + utf16Little("Ann Lee\r\n")), unknown);
}

TEST_F(ForeignBookTest, IsRefusedWhenItTakesThePlaceOfTheBook)
{
    write(file(), "text\r\n" + card("a"));
    VCardAddressBook book(file());
    book.readPeople();
    ask(book, {"a"});
    book.save();
    write(file(), "first,last\nAnn,Lee\n");

    EXPECT_EQ(failureOf([&] { book.readPeople(); }),
              about(file(), "is a CSV file, not a vCard file. Export as vCard (.vcf)."));
}

TEST_F(BookNotesTest, AddUpTheFilesOfAFolder)
{
    write(folder() / "a.vcf", open_);
    write(folder() / "b.vcf", card("b"));
    write(folder() / "c.vcf", hollow_ + card("c") + open_);
    write(folder() / "d.vcf", "nothing");

    const auto notes = notesOf(folder());

    EXPECT_EQ(notes.cardsSkipped, 3U);
    EXPECT_EQ(notes.remarks.size(), 3U);
}

TEST_F(BookNotesTest, ReportAFolderWithoutCardFiles)
{
    write(folder() / "note.txt", card("a"));
    write(folder() / ".hidden.vcf", card("a"));

    EXPECT_EQ(notesOf(folder()).remarks,
              Remarks{about(folder(), "contains no .vcf or .vcard files.")});
}

TEST_F(BookNotesTest, NameSubfoldersWithCardFiles)
{
    const auto none = about(folder(), "contains no .vcf or .vcard files.");
    const auto add = [&](const std::string& subfolder, const std::string& name) {
        std::filesystem::create_directories(folder() / subfolder);
        write(folder() / subfolder / name, card("a"));
    };
    add("empty", "note.txt");
    add(".hidden", "a.vcf");
    add("one/two/three", "a.vcf");
    std::filesystem::create_directories(folder() / "links" / "a.vcf");
    std::filesystem::create_directory_symlink("..", folder() / "links" / "circle");
    EXPECT_EQ(notesOf(folder()).remarks, Remarks{none});

    add("work/old", "a.VCF");
    EXPECT_EQ(notesOf(folder()).remarks, Remarks{none + " Its subfolder “work/old” has some."});

    add("family", "a.vcard");
    EXPECT_EQ(notesOf(folder()).remarks,
              Remarks{none + " Its subfolders “family” and “work/old” have some."});

    add("choir", "a.vcf");
    EXPECT_EQ(notesOf(folder()).remarks,
              Remarks{none + " Its subfolders “choir”, “family” and “work/old” have some."});

    add("band", "a.vcf");
    add("dance", "a.vcf");
    EXPECT_EQ(notesOf(folder()).remarks,
              Remarks{none + " Its subfolders “band”, “choir”, “dance” and 2 more have some."});

    write(folder() / "a.vcf", card("a"));
    EXPECT_EQ(notesOf(folder()).remarks, Remarks());
}

TEST_F(BookNotesTest, DoNotSearchThousandsOfSubfolders)
{
    for (int i = 0; i < 200; ++i) {
        std::filesystem::create_directory(folder() / std::to_string(1000 + i));
    }
    write(folder() / "1001" / "a.vcf", card("a"));
    write(folder() / "1199" / "a.vcf", card("a"));

    EXPECT_EQ(notesOf(folder()).remarks,
              Remarks{about(folder(), "contains no .vcf or .vcard files. Its subfolder “1001” has "
                                      "some.")});
}

TEST_F(BookNotesTest, NameWhatWasSkippedInAFolder)
{
    std::filesystem::create_directory(folder() / "a.vcf");
    std::filesystem::create_symlink("nowhere", folder() / "b.vcf");
    write(folder() / "c.vcf", card("c"));

    EXPECT_EQ(notesOf(folder()).remarks,
              (Remarks{about(folder() / "a.vcf", "was skipped: it is not a file."),
                       about(folder() / "b.vcf", "was skipped: it is a broken link.")}));
    EXPECT_EQ(uidsIn(folder()), (std::vector<std::string>{"c"}));
}

TEST_F(BookNotesTest, NameAFileWithHardLinksOutsideTheBook)
{
    write(file(), card("a"));
    std::filesystem::create_hard_link(file(), folder() / "copy");
    EXPECT_EQ(notesOf(file()).remarks,
              Remarks{about(file(), "has another hard link outside this address book. People "
                                    "deleted here stay in it.")});

    std::filesystem::create_hard_link(file(), folder() / "copy.vcf");
    EXPECT_EQ(notesOf(file()).remarks,
              Remarks{about(file(), "has 2 other hard links outside this address book. People "
                                    "deleted here stay in them.")});
    // In the folder, two of the three names are the book's.
    EXPECT_EQ(notesOf(folder()).remarks,
              Remarks{about(file(), "has another hard link outside this address book. People "
                                    "deleted here stay in it.")});
}

TEST_F(BookNotesTest, AreEmptyWhenEveryHardLinkIsTheBooks)
{
    write(file(), card("a"));
    std::filesystem::create_hard_link(file(), folder() / "copy.vcf");

    EXPECT_EQ(notesOf(folder()).remarks, Remarks());
}

TEST_F(BookNotesTest, DoNotCountSymbolicLinks)
{
    const TemporaryFolder elsewhere;
    write(elsewhere.path() / "target", card("a"));
    std::filesystem::create_symlink(elsewhere.path() / "target", folder() / "a.vcf");
    std::filesystem::create_symlink(elsewhere.path() / "target", folder() / "b.vcf");
    EXPECT_EQ(notesOf(folder()).remarks, Remarks());

    // Two symbolic links are no second hard link.
    std::filesystem::create_hard_link(elsewhere.path() / "target", elsewhere.path() / "other");
    EXPECT_EQ(notesOf(folder()).remarks,
              Remarks{about(folder() / "a.vcf", "has another hard link outside this address book. "
                                                "People deleted here stay in it.")});
}

TEST_F(BookNotesTest, DescribeTheLastReadingOnly)
{
    write(file(), open_);
    VCardAddressBook book(file());
    book.readPeople();
    write(file(), card("a"));

    book.readPeople();

    EXPECT_EQ(book.notes().cardsSkipped, 0U);
    EXPECT_EQ(book.notes().remarks, Remarks());
}

class InterruptedDeletionTest : public BookNotesTest {
protected:
    /// Where a killed deletion has left the file as it was before.
    static std::filesystem::path leftover(const std::filesystem::path& file)
    {
        auto place = temporaryPath(file, {1, 0}, 1);
        write(place, card("old"));
        return place;
    }

    static std::string sentence(const std::filesystem::path& file)
    {
        return "The last change was interrupted. “" + file.filename().string() +
               "” as it was before is in “" + temporaryPath(file, {1, 0}, 1).string() + "”.";
    }
};

TEST_F(InterruptedDeletionTest, IsReportedForTheFile)
{
    write(file(), card("a"));
    leftover(file());
    leftover(path("other.vcf"));

    EXPECT_EQ(notesOf(file()).remarks, Remarks{sentence(file())});
}

TEST_F(InterruptedDeletionTest, IsReportedForEveryFileOfAFolder)
{
    write(file(), card("a"));
    leftover(file());
    leftover(path("gone.vcf"));

    EXPECT_EQ(notesOf(folder()).remarks, (Remarks{sentence(file()), sentence(path("gone.vcf"))}));
}

TEST_F(InterruptedDeletionTest, IsReportedBesideTheTargetOfALink)
{
    const TemporaryFolder elsewhere;
    const auto target = elsewhere.path() / "real.vcf";
    write(target, card("a"));
    leftover(target);
    std::filesystem::create_symlink(target, file());

    EXPECT_EQ(notesOf(file()).remarks, Remarks{sentence(target)});
    EXPECT_EQ(notesOf(folder()).remarks, Remarks{sentence(target)});
}

TEST_F(InterruptedDeletionTest, IsReportedWithAMissingFile)
{
    leftover(file());

    EXPECT_EQ(failureOf([&] { notesOf(file()); }),
              about(file(), "does not exist. ") + sentence(file()));
}

TEST_F(InterruptedDeletionTest, IsReportedWithAFileThatIsRefused)
{
    const TemporaryFolder elsewhere;
    const auto target = elsewhere.path() / "real.vcf";
    write(target, "Hello");
    leftover(target);
    std::filesystem::create_symlink(target, file());

    EXPECT_EQ(failureOf([&] { notesOf(file()); }),
              about(file(), "is not a vCard file. Export as vCard (.vcf). ") + sentence(target));
}

}  // namespace
}  // namespace dunmora::test
