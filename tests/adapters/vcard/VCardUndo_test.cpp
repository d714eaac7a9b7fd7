#include "adapters/posix/LockedFolder.h"
#include "tests/adapters/posix/FailingCalls.h"
#include "tests/adapters/vcard/BookTest.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace dunmora::test {
namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;
using Texts = std::vector<std::string>;

std::string utf16File(std::string_view ascii)
{
    return "\xFF\xFE" + utf16Little(ascii);
}

/// Undoes deletions from a file.
class VCardUndoTest : public BookTest {
protected:
    void deletes(const Texts& uids)
    {
        book_.readPeople();
        ask(book_, uids);
        book_.save();
    }
    Restoration undo() { return book_.restoreLast(); }

    VCardAddressBook& book() { return book_; }

private:
    VCardAddressBook book_{file()};
};

TEST_F(VCardUndoTest, PutsTheBytesBackWhereTheyWere)
{
    const auto content = "\xEF\xBB\xBF" + card("a") + "\r\n; between\n" + card("b", "\n") +
                         card("c", "\r") + "\n\n" + card("d") + "BEGIN:VCARD\r\nbreaks off\r\n" +
                         card("e") + "the end";
    for (const Texts& uids : {Texts{"a"},
                              {"b"},
                              {"a", "b"},
                              {"b", "c"},
                              {"e"},
                              {"a", "d", "e"},
                              {"b", "c", "d"},
                              {"a", "b", "c", "d", "e"}}) {
        write(file(), content);
        deletes(uids);
        ASSERT_NE(contentOf(file()), content);

        EXPECT_EQ(undo().restored, uids.size());

        EXPECT_EQ(contentOf(file()), content) << uids.front();
        EXPECT_EQ(namesIn(folder()), Names{"book.vcf"});
    }
}

TEST_F(VCardUndoTest, PutsTheBytesOfAUtf16FileBack)
{
    const auto content = utf16File(card("a") + card("b") + card("c"));
    write(file(), content);
    deletes({"a", "c"});

    undo();

    EXPECT_EQ(contentOf(file()), content);
}

TEST_F(VCardUndoTest, PutsBackALastCardWithoutALineEnd)
{
    auto content = card("a") + card("b");
    content.resize(content.size() - 2);
    write(file(), content);
    deletes({"b"});

    EXPECT_EQ(book().lastRemovedCards(), card("b"));
    undo();

    EXPECT_EQ(contentOf(file()), content);
}

TEST_F(VCardUndoTest, UndoesDeletionsOfOneReadingLastFirst)
{
    const auto content = card("a") + card("b") + "text\r\n" + card("c") + card("d") + card("e");
    write(file(), content);
    deletes({"b", "d"});
    const auto between = contentOf(file());
    ask(book(), {"a", "c"});
    book().save();
    EXPECT_EQ(book().lastRemovedCards(), card("a") + card("c"));

    undo();
    EXPECT_EQ(contentOf(file()), between);
    undo();

    EXPECT_EQ(contentOf(file()), content);
    EXPECT_EQ(book().lastRemoved(), 0U);
}

TEST_F(VCardUndoTest, UndoesDeletionsAfterAnotherReading)
{
    const auto content = card("a") + card("b") + "text\r\n" + card("c") + card("d") + card("e");
    write(file(), content);
    deletes({"b"});
    ask(book(), {"a", "d"});
    book().save();

    EXPECT_EQ(uidsOf(book().readPeople()), (Texts{"c", "e"}));
    EXPECT_EQ(book().lastRemovedCards(), card("a") + card("d"));
    EXPECT_EQ(undo().restored, 2U);
    EXPECT_EQ(uidsOf(book().readPeople()), (Texts{"a", "c", "d", "e"}));
    EXPECT_EQ(undo().restored, 1U);

    EXPECT_EQ(contentOf(file()), content);
}

TEST_F(VCardUndoTest, KeepsTheFilesMetadata)
{
    write(file(), card("a") + card("b"));
    fs::permissions(file(), fs::perms(0640));
    deletes({"a"});

    undo();

    EXPECT_EQ(fs::status(file()).permissions(), fs::perms(0640));
}

TEST_F(VCardUndoTest, AddsPeopleAtTheEndOfAChangedFile)
{
    write(file(), card("a") + card("b") + card("c"));
    deletes({"a", "b"});
    write(file(), card("c") + card("x"));

    const auto result = undo();

    EXPECT_EQ(result.restored, 2U);
    EXPECT_EQ(contentOf(file()), card("c") + card("x") + card("a") + card("b"));
}

TEST_F(VCardUndoTest, AddsALineEndToAChangedFileThatHasNone)
{
    write(file(), card("a") + card("b"));
    deletes({"a"});
    const auto unended = card("x", "\n").substr(0, card("x", "\n").size() - 1);
    write(file(), unended);

    undo();

    EXPECT_EQ(contentOf(file()), unended + "\n" + card("a"));
}

TEST_F(VCardUndoTest, AddsPeopleInTheEncodingThatTheFileHasNow)
{
    write(file(), card("a") + card("b"));
    deletes({"a"});
    write(file(), utf16File(card("b")));
    EXPECT_EQ(undo().restored, 1U);
    EXPECT_EQ(contentOf(file()), utf16File(card("b") + card("a")));

    deletes({"a"});
    write(file(), card("x"));
    EXPECT_EQ(undo().restored, 1U);
    EXPECT_EQ(contentOf(file()), card("x") + card("a"));
}

TEST_F(VCardUndoTest, ReportsNoLinkThatIsStillThere)
{
    write(path("target.vcf"), card("a") + card("b"));
    fs::create_symlink("target.vcf", file());
    deletes({"b"});
    fs::remove(path("target.vcf"));

    const auto result = undo();

    EXPECT_EQ(contentOf(file()), card("b"));
    EXPECT_EQ(result.remarks.size(), 1U);
}

TEST_F(VCardUndoTest, ChangesNothingWhenTheEncodingCannotHoldACard)
{
    auto latin = card("a");
    latin.insert(latin.find("END"), "NOTE;CHARSET=ISO-8859-1:Ren\xE9\r\n");
    write(file(), latin + card("b"));
    deletes({"a"});
    const auto now = utf16File(card("b"));
    write(file(), now);

    EXPECT_NE(failureOf([&] { undo(); }).find("encoding"), std::string::npos);

    EXPECT_EQ(contentOf(file()), now);
    EXPECT_EQ(book().lastRemovedCards(), latin);
}

TEST_F(VCardUndoTest, AddsNobodyTwiceWhateverTheLineEndsAre)
{
    write(file(), card("a") + card("b") + card("c"));
    deletes({"a", "b"});
    write(file(), card("b", "\n") + card("c", "\n"));

    const auto result = undo();

    EXPECT_EQ(result.restored, 1U);
    EXPECT_EQ(result.present, 1U);
    EXPECT_EQ(contentOf(file()), card("b", "\n") + card("c", "\n") + card("a"));
}

TEST_F(VCardUndoTest, KeepsAnEditedCardAndAddsTheRemovedOne)
{
    write(file(), card("a") + card("b"));
    deletes({"a"});
    auto edited = card("a");
    edited.insert(edited.find("END"), "NOTE:edited\r\n");
    write(file(), card("b") + edited);

    EXPECT_EQ(undo().restored, 1U);

    EXPECT_EQ(contentOf(file()), card("b") + edited + card("a"));
}

TEST_F(VCardUndoTest, WritesNothingWhenTheEndOfTheFileWouldHideThePeople)
{
    write(file(), card("a") + card("b"));
    deletes({"a"});
    const auto open = card("b") + "BEGIN:VCARD\r\nVERSION:2.1\r\nN:Open\r\nAGENT:\r\n";
    write(file(), open);

    EXPECT_NE(failureOf([&] { undo(); }).find("was not changed"), std::string::npos);

    EXPECT_EQ(contentOf(file()), open);
    EXPECT_EQ(book().lastRemoved(), 1U);
}

TEST_F(VCardUndoTest, AddsNobodyToAFileThatIsNoVCardFileAnyMore)
{
    write(file(), card("a") + card("b"));
    deletes({"a"});
    write(file(), "first,last\nAnn,Lee\n");

    EXPECT_EQ(failureOf([&] { undo(); }),
              about(file(), "was not changed: it is a CSV file, not a vCard file."));
    EXPECT_EQ(contentOf(file()), "first,last\nAnn,Lee\n");
    EXPECT_EQ(book().lastRemoved(), 1U);
}

TEST_F(VCardUndoTest, CreatesAFileThatIsGone)
{
    write(file(), card("a") + card("b"));
    fs::permissions(file(), fs::perms(0640));
    deletes({"a"});
    fs::remove(file());

    const auto result = undo();

    EXPECT_EQ(contentOf(file()), card("a"));
    EXPECT_EQ(fs::status(file()).permissions(), fs::perms(0640));
    EXPECT_EQ(result.remarks, Texts{about(file(), "no longer existed. It now contains only the "
                                                  "people put back.")});
}

TEST_F(VCardUndoTest, FollowsASymbolicLinkToTheFile)
{
    fs::create_directory(path("elsewhere"));
    const auto real = path("elsewhere") / "real.vcf";
    write(real, card("a") + card("b"));
    fs::create_symlink(real, file());
    deletes({"a"});

    undo();

    EXPECT_TRUE(fs::is_symlink(file()));
    EXPECT_EQ(contentOf(real), card("a") + card("b"));
}

TEST_F(VCardUndoTest, RefusesAListingFromBeforeTheUndoForASave)
{
    write(file(), card("a") + card("b") + card("c"));
    deletes({"a"});
    const auto& ben = book().people()[0];
    undo();

    book().removeRecord(ben);

    EXPECT_THROW(book().save(), PlatformError);
    EXPECT_EQ(contentOf(file()), card("a") + card("b") + card("c"));
    EXPECT_EQ(uidsOf(book().people()), (Texts{"a", "b", "c"}));
}

TEST_F(VCardUndoTest, RemembersPeopleWhoWereDeletedDespiteAFailure)
{
    const auto content = card("a") + card("b");
    write(file(), content);
    // The new file and its folder have been flushed by then.
    constexpr int kEarlierFlushes = 2;
    {
        const FailingCalls calls(Call::Sync, EIO, 1, kEarlierFlushes);
        ASSERT_THROW(deletes({"a"}), PlatformError);
    }
    ASSERT_EQ(contentOf(file()), card("b"));

    EXPECT_EQ(book().lastRemoved(), 1U);
    EXPECT_EQ(undo().restored, 1U);

    EXPECT_EQ(contentOf(file()), content);
}

TEST_F(VCardUndoTest, RestoresPeopleDespiteAFailureAtTheEnd)
{
    const auto content = card("a") + card("b");
    write(file(), content);
    deletes({"a"});
    constexpr int kEarlierFlushes = 2;
    const FailingCalls calls(Call::Sync, EIO, 1, kEarlierFlushes);

    const auto result = undo();

    EXPECT_EQ(calls.failed(), 1);
    EXPECT_EQ(result.restored, 1U);
    EXPECT_EQ(result.failures, Texts());
    ASSERT_EQ(result.remarks.size(), 1U);
    EXPECT_NE(result.remarks[0].find("could not be flushed"), std::string::npos);
    EXPECT_EQ(contentOf(file()), content);
    EXPECT_EQ(book().lastRemoved(), 0U);
}

TEST_F(VCardUndoTest, ChangesNothingWhenTheNewFileCannotBeFlushed)
{
    write(file(), card("a") + card("b"));
    deletes({"a"});
    {
        const FailingCalls calls(Call::Sync, EIO);
        EXPECT_EQ(failureOf([&] { undo(); }),
                  about(file(), "cannot be changed: Input/output error."));
    }
    EXPECT_EQ(contentOf(file()), card("b"));
    EXPECT_EQ(namesIn(folder()), Names{"book.vcf"});

    EXPECT_EQ(undo().restored, 1U);
    EXPECT_EQ(contentOf(file()), card("a") + card("b"));
}

TEST_F(VCardUndoTest, ChangesNothingWhileAnotherDeletionChangesTheFolder)
{
    write(file(), card("a") + card("b"));
    deletes({"a"});
    {
        const LockedFolder other(folder());
        EXPECT_EQ(failureOf([&] { undo(); }),
                  about(folder(), "is being changed by another program. Try again later."));
    }
    EXPECT_EQ(contentOf(file()), card("b"));
    EXPECT_EQ(undo().restored, 1U);
}

/// Undoes deletions from a folder.
class VCardFolderUndoTest : public BookTest {
protected:
    void deletes(const Texts& uids)
    {
        book_.readPeople();
        ask(book_, uids);
        book_.save();
    }
    Restoration undo() { return book_.restoreLast(); }
    VCardAddressBook& book() { return book_; }

private:
    VCardAddressBook book_{folder()};
};

TEST_F(VCardFolderUndoTest, PutsFilesBackAsTheyWere)
{
    const auto content = "\r\n" + card("a") + "\r\n";
    write(path("a.vcf"), content);
    write(path("b.vcf"), card("b") + card("c"));
    fs::permissions(path("a.vcf"), fs::perms(0640));
    const bool hasAttributes = setxattr(path("a.vcf").c_str(), "user.note", "red", 3, 0) == 0;
    deletes({"a", "b"});
    ASSERT_EQ(namesIn(folder()), Names{"b.vcf"});

    const auto result = undo();

    EXPECT_EQ(result.restored, 2U);
    EXPECT_EQ(result.remarks, Texts());
    EXPECT_EQ(namesIn(folder()), (Names{"a.vcf", "b.vcf"}));
    EXPECT_EQ(contentOf(path("a.vcf")), content);
    EXPECT_EQ(contentOf(path("b.vcf")), card("b") + card("c"));
    EXPECT_EQ(fs::status(path("a.vcf")).permissions(), fs::perms(0640));
    if (hasAttributes) {
        std::array<char, 3> value{};
        EXPECT_EQ(getxattr(path("a.vcf").c_str(), "user.note", value.data(), value.size()), 3);
        EXPECT_EQ(std::string(value.data(), value.size()), "red");
    }
}

TEST_F(VCardFolderUndoTest, PutsTheOwnerBack)
{
    if (geteuid() != 0) {
        GTEST_SKIP() << "Only root can give files away.";
    }
    write(path("a.vcf"), card("a"));
    ASSERT_EQ(chown(path("a.vcf").c_str(), 1234, 2345), 0);
    deletes({"a"});

    undo();

    struct stat status {};
    ASSERT_EQ(stat(path("a.vcf").c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, 1234U);
    EXPECT_EQ(status.st_gid, 2345U);
}

TEST_F(VCardFolderUndoTest, PutsTheOtherNamesOfAFileBack)
{
    write(path("a.vcf"), card("a"));
    fs::create_hard_link(path("a.vcf"), path("hard.vcf"));
    fs::create_symlink("a.vcf", path("soft.vcf"));
    deletes({"a"});
    ASSERT_EQ(namesIn(folder()), Names());

    undo();

    EXPECT_EQ(namesIn(folder()), (Names{"a.vcf", "hard.vcf", "soft.vcf"}));
    EXPECT_EQ(inodeOf(path("hard.vcf")), inodeOf(path("a.vcf")));
    EXPECT_EQ(fs::read_symlink(path("soft.vcf")), "a.vcf");
    EXPECT_EQ(contentOf(path("soft.vcf")), card("a"));
}

TEST_F(VCardFolderUndoTest, PutsAFileBackUnderAnotherNameWhenItsOwnIsTaken)
{
    write(path("a.vcf"), card("a"));
    deletes({"a"});
    write(path("a.vcf"), card("x"));
    write(path("a-2.vcf"), card("y"));

    const auto result = undo();

    EXPECT_EQ(result.restored, 1U);
    EXPECT_EQ(result.remarks,
              Texts{about(path("a.vcf"), "is another file now. Its people are back in “" +
                                             path("a-3.vcf").string() + "”.")});
    EXPECT_EQ(contentOf(path("a.vcf")), card("x"));
    EXPECT_EQ(contentOf(path("a-2.vcf")), card("y"));
    EXPECT_EQ(contentOf(path("a-3.vcf")), card("a"));
}

TEST_F(VCardFolderUndoTest, ShortensALongNameToMakeAnotherOne)
{
    constexpr std::size_t kLongest = 255;
    const auto ending = std::string("\u00e9.vcf");
    const auto start = std::string(kLongest - ending.size(), 'a');
    write(path(start + ending), card("a"));
    deletes({"a"});
    write(path(start + ending), card("x"));

    undo();

    EXPECT_EQ(contentOf(path(start + ending)), card("x"));
    EXPECT_EQ(contentOf(path(start + "-2.vcf")), card("a"));
}

TEST_F(VCardFolderUndoTest, NeverTakesTheNameOfAnythingElse)
{
    write(path("a.vcf"), card("a"));
    deletes({"a"});
    fs::create_symlink("missing", path("a.vcf"));
    fs::create_directory(path("a-2.vcf"));

    undo();

    EXPECT_EQ(fs::read_symlink(path("a.vcf")), "missing");
    EXPECT_TRUE(fs::is_directory(path("a-2.vcf")));
    EXPECT_EQ(contentOf(path("a-3.vcf")), card("a"));
}

TEST_F(VCardFolderUndoTest, AddsOnlyThoseWhomTheFileInItsPlaceLacks)
{
    write(path("a.vcf"), card("a") + card("b"));
    deletes({"a", "b"});
    write(path("a.vcf"), card("b"));

    const auto result = undo();

    EXPECT_EQ(result.restored, 1U);
    EXPECT_EQ(result.present, 1U);
    EXPECT_EQ(contentOf(path("a.vcf")), card("b"));
    EXPECT_EQ(contentOf(path("a-2.vcf")), card("a"));
}

TEST_F(VCardFolderUndoTest, CreatesNoLinkThatWouldLeadToAnotherFile)
{
    write(path("a.vcf"), card("a"));
    fs::create_hard_link(path("a.vcf"), path("hard.vcf"));
    fs::create_symlink("a.vcf", path("soft.vcf"));
    deletes({"a"});
    write(path("a.vcf"), card("x"));

    const auto result = undo();

    EXPECT_EQ(namesIn(folder()), (Names{"a.vcf", "hard.vcf"}));
    EXPECT_EQ(contentOf(path("a.vcf")), card("x"));
    EXPECT_EQ(contentOf(path("hard.vcf")), card("a"));
    EXPECT_EQ(result.remarks.size(), 2U);
}

TEST_F(VCardFolderUndoTest, ChangesNoFileWhenOneCannotBeChanged)
{
    write(path("a.vcf"), card("a"));
    write(path("b.vcf"), card("b") + card("c"));
    write(path("d.vcf"), card("d") + card("e"));
    deletes({"a", "b", "d"});
    const auto before = contentOf(path("b.vcf"));
    fs::permissions(path("d.vcf"), fs::perms::owner_read);

    EXPECT_EQ(failureOf([&] { undo(); }),
              about(path("d.vcf"), "cannot be changed: it is read-only."));

    EXPECT_EQ(namesIn(folder()), (Names{"b.vcf", "d.vcf"}));
    EXPECT_EQ(contentOf(path("b.vcf")), before);
    EXPECT_EQ(book().lastRemoved(), 3U);
    EXPECT_EQ(book().lastRemovedCards(), card("a") + card("b") + card("d"));
}

TEST_F(VCardFolderUndoTest, CreatesNothingWhileAnotherDeletionChangesTheFolder)
{
    write(path("a.vcf"), card("a"));
    deletes({"a"});
    {
        const LockedFolder other(folder());
        EXPECT_EQ(failureOf([&] { undo(); }),
                  about(folder(), "is being changed by another program. Try again later."));
    }
    EXPECT_EQ(namesIn(folder()), Names());
    EXPECT_EQ(undo().restored, 1U);
}

TEST_F(VCardFolderUndoTest, TakesEverythingBackWhenTheFolderCannotBeFlushed)
{
    write(path("a.vcf"), card("a"));
    write(path("b.vcf"), card("b") + card("c"));
    deletes({"a", "b"});
    {
        // Both new files have been flushed by then.
        constexpr int kEarlierFlushes = 2;
        const FailingCalls calls(Call::Sync, EIO, 1, kEarlierFlushes);
        EXPECT_EQ(failureOf([&] { undo(); }),
                  about(folder(), "could not be flushed to disk: Input/output error."));
    }
    EXPECT_EQ(namesIn(folder()), Names{"b.vcf"});
    EXPECT_EQ(contentOf(path("b.vcf")), card("c"));
    EXPECT_EQ(book().lastRemoved(), 2U);

    EXPECT_EQ(undo().restored, 2U);
    EXPECT_EQ(namesIn(folder()), (Names{"a.vcf", "b.vcf"}));
}

TEST_F(VCardFolderUndoTest, NamesAFolderThatIsGone)
{
    fs::create_directory(path("book"));
    write(path("book") / "a.vcf", card("a"));
    VCardAddressBook inFolder(path("book"));
    inFolder.readPeople();
    ask(inFolder, {"a"});
    inFolder.save();
    fs::remove(path("book"));

    EXPECT_NE(failureOf([&] { inFolder.restoreLast(); }).find("a.vcf"), std::string::npos);

    EXPECT_EQ(inFolder.lastRemoved(), 1U);
}

TEST_F(VCardFolderUndoTest, UndoesTwoDeletionsOfOneFile)
{
    const auto content = card("a") + card("b") + "\r\n";
    write(path("a.vcf"), content);
    deletes({"a"});
    ask(book(), {"b"});
    book().save();
    ASSERT_EQ(namesIn(folder()), Names());
    ASSERT_EQ(uidsOf(book().readPeople()), Texts());

    EXPECT_EQ(undo().restored, 1U);
    EXPECT_EQ(contentOf(path("a.vcf")), card("b") + "\r\n");
    EXPECT_EQ(undo().restored, 1U);

    EXPECT_EQ(contentOf(path("a.vcf")), content);
}

TEST_F(VCardFolderUndoTest, FitsNoTextWithUtf16AndOtherCards)
{
    write(path("a.vcf"), card("a"));
    write(path("b.vcf"), utf16File(card("b")));
    deletes({"a", "b"});

    EXPECT_THROW(book().lastRemovedCards(), PlatformError);
    EXPECT_EQ(undo().restored, 2U);

    EXPECT_EQ(contentOf(path("b.vcf")), utf16File(card("b")));
}

/// Puts the people of a backup into a file.
class VCardRestoreTest : public BookTest {
protected:
    using Mode = CardRestorer::Mode;

    Restoration restore(const std::string& backup, Mode mode = Mode::Write)
    {
        VCardAddressBook book(file());
        return book.restore(backup, mode);
    }
};

TEST_F(VCardRestoreTest, AddsThePeopleAtTheEndOfTheFile)
{
    const auto unended = card("a").substr(0, card("a").size() - 2);
    write(file(), unended);

    const auto result = restore(card("b") + "between\r\n" + card("c", "\n"));

    EXPECT_EQ(result.restored, 2U);
    EXPECT_EQ(contentOf(file()), unended + "\r\n" + card("b") + card("c", "\n"));
}

TEST_F(VCardRestoreTest, AddsPeopleToAnEmptyFile)
{
    write(file(), "");

    EXPECT_EQ(restore(card("b")).restored, 1U);

    EXPECT_EQ(contentOf(file()), card("b"));
}

TEST_F(VCardRestoreTest, ConvertsBetweenEncodings)
{
    write(file(), utf16File(card("a")));
    EXPECT_EQ(restore(card("René")).restored, 1U);
    EXPECT_EQ(uidsIn(file()), (Texts{"a", "René"}));

    write(file(), card("a"));
    EXPECT_EQ(restore(utf16File(card("b"))).restored, 1U);
    EXPECT_EQ(contentOf(file()), card("a") + card("b"));
}

TEST_F(VCardRestoreTest, NamesThoseWhomTheEncodingCannotHold)
{
    auto latin = card("b");
    latin.insert(latin.find("END"), "NOTE;CHARSET=ISO-8859-1:Ren\xE9\r\n");
    write(file(), utf16File(card("a")));

    const auto result = restore(latin + card("c"));

    EXPECT_EQ(result.restored, 1U);
    EXPECT_EQ(result.failures, Texts{"“b Lee” was not restored: the encoding of the address book "
                                     "cannot hold its card."});
}

TEST_F(VCardRestoreTest, ComparesTheTextsOfCardsWithoutAUid)
{
    const std::string bare = "BEGIN:VCARD\r\nVERSION:3.0\r\nN:Lee;Ann\r\nEND:VCARD\r\n";
    const std::string other = "BEGIN:VCARD\r\nVERSION:3.0\r\nN:Lee;Ben\r\nEND:VCARD\r\n";
    write(file(), bare);

    const auto result = restore(bare + other);

    EXPECT_EQ(result.restored, 1U);
    EXPECT_EQ(result.present, 1U);
    EXPECT_EQ(contentOf(file()), bare + other);
}

TEST_F(VCardRestoreTest, AddsNothingThatIsBetweenThePeopleOfTheBackup)
{
    write(file(), card("a"));

    EXPECT_EQ(restore(card("b") + "between\r\n" + card("c") + card("a") + card("d")).restored, 3U);

    EXPECT_EQ(contentOf(file()), card("a") + card("b") + card("c") + card("d"));
}

TEST_F(VCardRestoreTest, AddsOnceWhatTheBackupRepeats)
{
    const auto other = card("b", "\n");
    write(file(), card("a"));

    const auto result = restore(card("b") + other + card("b") + other + card("a"));

    EXPECT_EQ(result.restored, 2U);
    EXPECT_EQ(result.present, 3U);
    EXPECT_EQ(contentOf(file()), card("a") + card("b") + other);
}

TEST_F(VCardRestoreTest, RestoresCopiesThatShareAUid)
{
    auto copy = card("b");
    copy.insert(copy.find("END"), "NOTE:copy\r\n");
    write(file(), card("a"));

    EXPECT_EQ(restore(card("b") + copy).restored, 2U);

    EXPECT_EQ(contentOf(file()), card("a") + card("b") + copy);
}

TEST_F(VCardRestoreTest, NamesWhatTheBackupContainsBesidesPeople)
{
    write(file(), card("a"));

    const auto result = restore(
        card("b") + "BEGIN:VCARD\r\nVERSION:4.0\r\nKIND:group\r\nFN:Choir\r\nEND:VCARD\r\n" +
        "BEGIN:VCARD\r\nFN:breaks off\r\n");

    EXPECT_EQ(result.restored, 1U);
    EXPECT_EQ(result.remarks, Texts{"1 list of the backup was not restored: only people are."});
    EXPECT_EQ(result.failures, Texts{"1 card of the backup was not restored because it breaks off "
                                     "or has no properties."});
}

TEST_F(VCardRestoreTest, RefusesABookThatDoesNotExist)
{
    EXPECT_EQ(failureOf([&] { restore(card("a")); }), about(file(), "does not exist."));

    EXPECT_EQ(namesIn(folder()), Names());
}

TEST_F(VCardRestoreTest, RefusesAFileThatIsNoVCardFile)
{
    write(file(), "first,last\nAnn,Lee\n");

    for (const auto mode : {Mode::Write, Mode::DryRun}) {
        EXPECT_EQ(failureOf([&] { restore(card("a"), mode); }),
                  about(file(), "was not changed: it is a CSV file, not a vCard file."));
    }
    EXPECT_EQ(contentOf(file()), "first,last\nAnn,Lee\n");
}

TEST_F(VCardRestoreTest, AddsPeopleWhereAnEarlierRunHasDeletedAll)
{
    write(file(), "text\r\n" + card("a"));
    removeFrom(file(), {"a"});
    if (setxattr(folder().c_str(), "user.probe", "1", 1, 0) != 0) {
        GTEST_SKIP() << "The file system keeps no attributes.";
    }

    EXPECT_EQ(restore(card("a")).restored, 1U);
    EXPECT_EQ(contentOf(file()), "text\r\n" + card("a"));
}

TEST_F(VCardRestoreTest, AddsPeopleWhereTheBookHasDeletedAll)
{
    write(file(), "text\r\n" + card("a"));
    VCardAddressBook book(file());
    book.readPeople();
    ask(book, {"a"});
    book.save();
    removeMark(file());

    EXPECT_EQ(book.restore(card("a"), Mode::Write).restored, 1U);
    EXPECT_EQ(contentOf(file()), "text\r\n" + card("a"));
}

TEST_F(VCardRestoreTest, RefusesAReadOnlyFile)
{
    write(file(), card("a"));
    fs::permissions(file(), fs::perms::owner_read);

    EXPECT_EQ(failureOf([&] { restore(card("b")); }),
              about(file(), "cannot be changed: it is read-only."));
    EXPECT_EQ(restore(card("b"), Mode::DryRun).restored, 1U);

    EXPECT_EQ(contentOf(file()), card("a"));
}

/// Puts the people of a backup into a folder.
class VCardFolderRestoreTest : public BookTest {
protected:
    Restoration restore(const std::string& backup)
    {
        VCardAddressBook book(folder());
        return book.restore(backup, CardRestorer::Mode::Write);
    }
};

TEST_F(VCardFolderRestoreTest, CreatesOneFileForEachCard)
{
    write(path("a.vcf"), card("a"));
    fs::permissions(path("a.vcf"), fs::perms(0644));

    const auto result = restore(card("b") + card("a") + card("c", "\n"));

    EXPECT_EQ(result.restored, 2U);
    EXPECT_EQ(result.present, 1U);
    EXPECT_EQ(namesIn(folder()), (Names{"a.vcf", "b.vcf", "c.vcf"}));
    EXPECT_EQ(contentOf(path("b.vcf")), card("b"));
    EXPECT_EQ(contentOf(path("c.vcf")), card("c", "\n"));
    EXPECT_EQ(fs::status(path("b.vcf")).permissions(), fs::perms(0644));
}

TEST_F(VCardFolderRestoreTest, OverwritesNothing)
{
    write(path("b.vcf"), card("x"));
    fs::create_symlink("missing", path("c.vcf"));

    EXPECT_EQ(restore(card("b") + card("c")).restored, 2U);

    EXPECT_EQ(contentOf(path("b.vcf")), card("x"));
    EXPECT_EQ(contentOf(path("b-2.vcf")), card("b"));
    EXPECT_EQ(fs::read_symlink(path("c.vcf")), "missing");
    EXPECT_EQ(contentOf(path("c-2.vcf")), card("c"));
}

TEST_F(VCardFolderRestoreTest, MakesNoFileNameOfADangerousUid)
{
    restore(card("../up") + card(".hidden") + card(std::string(300, 'u')));

    EXPECT_EQ(namesIn(folder()), (Names{"restored-2.vcf", "restored-3.vcf", "restored.vcf"}));
    EXPECT_EQ(uidsIn(folder()).size(), 3U);
}

TEST_F(VCardFolderRestoreTest, ComparesManyEqualCardsInTime)
{
    // One by one, this would take minutes.
    constexpr int kMany = 50'000;
    std::string many;
    for (int i = 0; i < kMany; ++i) {
        many += card("a");
    }
    write(path("a.vcf"), many);

    EXPECT_EQ(restore(many).present, static_cast<std::size_t>(kMany));
}

TEST_F(VCardFolderRestoreTest, KeepsAUtf16CardReadable)
{
    restore(utf16File(card("b") + card("c")));

    EXPECT_EQ(contentOf(path("b.vcf")), utf16File(card("b")));
    EXPECT_EQ(contentOf(path("c.vcf")), utf16File(card("c")));
}

TEST_F(VCardFolderRestoreTest, KeepsNewFilesPrivateInAnEmptyFolder)
{
    restore(card("b"));

    EXPECT_EQ(fs::status(path("b.vcf")).permissions(), fs::perms(0600));
}

}  // namespace
}  // namespace dunmora::test
