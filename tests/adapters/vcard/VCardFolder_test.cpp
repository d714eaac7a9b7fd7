#include "tests/adapters/vcard/BookTest.h"
#include "tests/fakes/ChildProcess.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/syscall.h>

#include <set>
#include <string>
#include <vector>

namespace dunmora::test {
namespace {

using Uids = std::vector<std::string>;
using Names = std::set<std::string>;
namespace fs = std::filesystem;

class VCardFolderTest : public BookTest {
protected:
    fs::path in(const std::string& name) const { return folder() / name; }
};

TEST_F(VCardFolderTest, IsReadInFileNameOrder)
{
    write(in("b.vcf"), card("3"));
    write(in("a.vcf"), card("1") + card("2"));
    write(in("\xC3\xA4.vcf"), card("5"));
    write(in("c.vcf"), card("4"));
    write(in("B.vcf"), card("0"));

    EXPECT_EQ(uidsIn(folder()), (Uids{"0", "1", "2", "3", "4", "5"}));
}

TEST_F(VCardFolderTest, ContainsOnlyVisibleVcfAndVcardFiles)
{
    write(in("a.vcf"), card("a"));
    write(in(".hidden.vcf"), card("hidden"));
    write(in(".vcf"), card("hidden too"));
    write(in("b.vcf.bak"), card("backup"));
    write(in("c.VCF"), card("capitals"));
    write(in("d.vCard"), card("long"));
    write(in("vcf"), card("no dot"));
    fs::create_directory(in("deeper"));
    write(in("deeper") / "d.vcf", card("deeper"));

    EXPECT_EQ(uidsIn(folder()), (Uids{"a", "capitals", "long"}));
}

TEST_F(VCardFolderTest, TouchesOnlyTheFilesOfRemovedPeople)
{
    write(in("a.vcf"), card("a1") + card("a2"));
    write(in("b.vcf"), card("b"));
    write(in("note.txt"), "note");
    const auto traceOfB = traceOf(in("b.vcf"));
    const auto traceOfNote = traceOf(in("note.txt"));

    removeFrom(folder(), {"a1"});

    EXPECT_EQ(contentOf(in("a.vcf")), card("a2"));
    EXPECT_EQ(traceOf(in("b.vcf")), traceOfB);
    EXPECT_EQ(traceOf(in("note.txt")), traceOfNote);
    EXPECT_EQ(namesIn(folder()), (Names{"a.vcf", "b.vcf", "note.txt"}));
}

TEST_F(VCardFolderTest, LosesAFileThatWouldBeBlank)
{
    write(in("bare.vcf"), card("1"));
    write(in("blank.vcf"), "\xEF\xBB\xBF\r\n" + card("2") + " \t\r\n\n" + card("3"));
    write(in("utf16.vcf"), "\xFF\xFE" + utf16Little(card("4") + "\r\n"));
    write(in("other.vcf"), card("5"));

    removeFrom(folder(), {"1", "2", "3", "4"});

    EXPECT_EQ(namesIn(folder()), (Names{"other.vcf"}));
}

TEST_F(VCardFolderTest, KeepsAFileThatWouldNotBeBlank)
{
    using namespace std::string_literals;
    const std::string open = "BEGIN:VCARD\r\nFN:No end\r\n";
    write(in("junk.vcf"), card("1") + "-");
    write(in("open.vcf"), card("2") + open);
    write(in("odd.vcf"), utf16Little(card("3")) + "x");
    write(in("zero.vcf"), card("4") + "\0"s);

    removeFrom(folder(), {"1", "2", "3", "4"});

    EXPECT_EQ(namesIn(folder()), (Names{"junk.vcf", "odd.vcf", "open.vcf", "zero.vcf"}));
    EXPECT_EQ(contentOf(in("junk.vcf")), "-");
    EXPECT_EQ(contentOf(in("open.vcf")), open);
    EXPECT_EQ(contentOf(in("odd.vcf")), "x");
    EXPECT_EQ(contentOf(in("zero.vcf")), "\0"s);
}

TEST_F(VCardFolderTest, KeepsAnEmptyFileThatWasThereBefore)
{
    write(in("a.vcf"), card("a"));
    write(in("empty.vcf"), "");

    removeFrom(folder(), {"a"});

    EXPECT_EQ(namesIn(folder()), (Names{"empty.vcf"}));
}

TEST_F(VCardFolderTest, ReadsAFileWithSeveralNamesOnce)
{
    write(in("a.vcf"), card("a1") + card("a2"));
    fs::create_symlink("a.vcf", in("link.vcf"));
    fs::create_hard_link(in("a.vcf"), in("same.vcf"));

    EXPECT_EQ(uidsIn(folder()), (Uids{"a1", "a2"}));
}

TEST_F(VCardFolderTest, ChangesAFileUnderAllOfItsNames)
{
    write(in("a.vcf"), card("a1") + card("a2"));
    fs::create_symlink("a.vcf", in("link.vcf"));
    fs::create_hard_link(in("a.vcf"), in("same.vcf"));

    removeFrom(folder(), {"a1"});

    EXPECT_EQ(contentOf(in("a.vcf")), card("a2"));
    EXPECT_EQ(contentOf(in("same.vcf")), card("a2"));
    EXPECT_TRUE(fs::equivalent(in("a.vcf"), in("same.vcf")));
    EXPECT_EQ(fs::read_symlink(in("link.vcf")), "a.vcf");
    EXPECT_EQ(namesIn(folder()), (Names{"a.vcf", "link.vcf", "same.vcf"}));
    EXPECT_EQ(uidsIn(folder()), (Uids{"a2"}));
}

TEST_F(VCardFolderTest, RemovesAFileUnderAllOfItsNames)
{
    write(in("a.vcf"), card("a1") + card("a2"));
    fs::create_symlink("a.vcf", in("link.vcf"));
    fs::create_hard_link(in("a.vcf"), in("same.vcf"));
    write(in("b.vcf"), card("b"));

    removeFrom(folder(), {"a1", "a2"});

    EXPECT_EQ(namesIn(folder()), (Names{"b.vcf"}));
}

TEST_F(VCardFolderTest, ChangesTheTargetOfALinkInAnotherFolder)
{
    const TemporaryFolder elsewhere;
    write(elsewhere.path() / "real.vcf", card("a1") + card("a2"));
    fs::create_symlink(elsewhere.path() / "real.vcf", in("link.vcf"));

    removeFrom(folder(), {"a1"});

    EXPECT_EQ(contentOf(elsewhere.path() / "real.vcf"), card("a2"));
    EXPECT_TRUE(fs::is_symlink(in("link.vcf")));
    EXPECT_EQ(namesIn(elsewhere.path()), (Names{"real.vcf"}));
    EXPECT_EQ(namesIn(folder()), (Names{"link.vcf"}));
}

TEST_F(VCardFolderTest, CanBeALinkAndHaveATrailingSlash)
{
    fs::create_directory(in("real"));
    write(in("real") / "a.vcf", card("a") + card("b"));
    fs::create_directory_symlink("real", in("link"));

    removeFrom(in("link"), {"a"});
    EXPECT_EQ(contentOf(in("real") / "a.vcf"), card("b"));

    removeFrom(in("link/"), {"b"});
    EXPECT_EQ(namesIn(in("real")), Names());
    EXPECT_TRUE(fs::is_symlink(in("link")));
}

TEST_F(VCardFolderTest, AcceptsFileNamesOfAnyLengthAndBytes)
{
    const auto longName = std::string(251, 'n') + ".vcf";
    const std::string strangeName = "\xFF\n\xE9.vcf";
    write(in(longName), card("1") + card("2"));
    write(in(strangeName), card("3") + card("4"));

    removeFrom(folder(), {"1", "3"});

    EXPECT_EQ(contentOf(in(longName)), card("2"));
    EXPECT_EQ(contentOf(in(strangeName)), card("4"));
    EXPECT_EQ(namesIn(folder()), (Names{longName, strangeName}));
}

TEST_F(VCardFolderTest, AcceptsASecondDeletionWithoutReadingAgain)
{
    write(in("a.vcf"), card("a1") + card("a2"));
    write(in("b.vcf"), card("b1") + card("b2"));
    VCardAddressBook book(folder());
    ask(book, {"a1", "b1", "b2"});
    book.save();

    ask(book, {"a2"});
    book.save();

    EXPECT_EQ(namesIn(folder()), Names());
}

TEST_F(VCardFolderTest, WritesNothingWhenOneAffectedFileHasChanged)
{
    for (const std::string name : {"a.vcf", "b.vcf", "c.vcf"}) {
        write(in(name), card(name + "1") + card(name + "2"));
    }
    VCardAddressBook book(folder());
    ask(book, {"a.vcf1", "b.vcf1", "c.vcf1"});
    write(in("c.vcf"), card("c.vcf1") + card("C.vcf2"));
    const auto traces = traceOf(in("a.vcf")) + traceOf(in("b.vcf")) + traceOf(in("c.vcf"));

    EXPECT_EQ(failureOf([&] { book.save(); }),
              about(in("c.vcf"), "has changed since it was read. Reload it and try again."));

    EXPECT_EQ(traceOf(in("a.vcf")) + traceOf(in("b.vcf")) + traceOf(in("c.vcf")), traces);
    EXPECT_EQ(namesIn(folder()), (Names{"a.vcf", "b.vcf", "c.vcf"}));
}

TEST_F(VCardFolderTest, WritesNothingWhenOneAffectedFileIsGone)
{
    write(in("a.vcf"), card("a1") + card("a2"));
    write(in("b.vcf"), card("b"));
    VCardAddressBook book(folder());
    ask(book, {"a1", "b"});
    fs::remove(in("b.vcf"));

    EXPECT_EQ(failureOf([&] { book.save(); }),
              about(in("b.vcf"), "cannot be changed: No such file or directory."));

    EXPECT_EQ(contentOf(in("a.vcf")), card("a1") + card("a2"));
    EXPECT_EQ(namesIn(folder()), (Names{"a.vcf"}));
}

TEST_F(VCardFolderTest, IgnoresChangesOfUnaffectedFiles)
{
    write(in("a.vcf"), card("a1") + card("a2"));
    write(in("b.vcf"), card("b"));
    VCardAddressBook book(folder());
    ask(book, {"a1"});
    write(in("b.vcf"), card("other"));
    write(in("new.vcf"), card("new"));

    book.save();

    EXPECT_EQ(uidsIn(folder()), (Uids{"a2", "other", "new"}));
}

/// Changes the folder right after the deletion has exchanged the first file.
class VCardFolderHalfDoneTest : public VCardFolderTest {
protected:
    void SetUp() override
    {
        write(in("a.vcf"), card("a1") + card("a2"));
        write(in("b.vcf"), card("b1") + card("b2"));
        write(in("c.vcf"), card("c1") + card("c2"));
    }

    /// The message of a deletion that `disturb` interrupts; empty where it cannot be interrupted.
    std::string failureOfDeletion(const std::function<void()>& disturb)
    {
        const TemporaryFolder elsewhere;
        const auto message = elsewhere.path() / "message";
        bool isDisturbed = false;
        const auto end = traceChild(
            [&] {
                write(message, failureOf([&] { removeFrom(folder(), {"a1", "b1", "c1"}); }));
            },
            [&](SystemCall call) {
                const bool isExchange =
                    call.number == SYS_renameat2 && call.moment == SystemCall::Moment::After;
                if (isExchange && !isDisturbed) {
                    isDisturbed = true;
                    EXPECT_EQ(contentOf(in("a.vcf")), card("a2"));
                    disturb();
                }
                return Fate::Continue;
            });
        EXPECT_EQ(isDisturbed, end != End::CannotBeTraced);
        return isDisturbed ? contentOf(message) : "";
    }
};

TEST_F(VCardFolderHalfDoneTest, IsRestoredWhenALaterFileHasChanged)
{
    const auto failure = failureOfDeletion([&] { write(in("b.vcf"), "changed"); });
    if (failure.empty()) {
        GTEST_SKIP() << "Processes cannot be traced here.";
    }

    EXPECT_EQ(failure,
              about(in("b.vcf"), "has changed since it was read. Reload it and try again."));
    EXPECT_EQ(contentOf(in("a.vcf")), card("a1") + card("a2"));
    EXPECT_EQ(contentOf(in("b.vcf")), "changed");
    EXPECT_EQ(contentOf(in("c.vcf")), card("c1") + card("c2"));
    EXPECT_EQ(namesIn(folder()), (Names{"a.vcf", "b.vcf", "c.vcf"}));
}

TEST_F(VCardFolderHalfDoneTest, IsRestoredWhenAFolderHasReplacedALaterFile)
{
    const auto failure = failureOfDeletion([&] {
        fs::remove(in("c.vcf"));
        fs::create_directory(in("c.vcf"));
    });
    if (failure.empty()) {
        GTEST_SKIP() << "Processes cannot be traced here.";
    }

    EXPECT_EQ(failure,
              about(in("c.vcf"), "has changed since it was read. Reload it and try again."));
    EXPECT_EQ(contentOf(in("a.vcf")), card("a1") + card("a2"));
    EXPECT_EQ(contentOf(in("b.vcf")), card("b1") + card("b2"));
    EXPECT_EQ(namesIn(folder()), (Names{"a.vcf", "b.vcf", "c.vcf"}));
}

TEST_F(VCardFolderHalfDoneTest, IsRestoredWhenAFolderHasReplacedAnotherNameOfTheFile)
{
    fs::remove(in("b.vcf"));
    fs::remove(in("c.vcf"));
    fs::create_hard_link(in("a.vcf"), in("b.vcf"));
    const auto failure = failureOfDeletion([&] {
        fs::remove(in("b.vcf"));
        fs::create_directory(in("b.vcf"));
    });
    if (failure.empty()) {
        GTEST_SKIP() << "Processes cannot be traced here.";
    }

    EXPECT_EQ(failure,
              about(in("a.vcf"), "has changed since it was read. Reload it and try again."));
    EXPECT_EQ(contentOf(in("a.vcf")), card("a1") + card("a2"));
    EXPECT_TRUE(fs::is_directory(in("b.vcf")));
    EXPECT_EQ(namesIn(folder()), (Names{"a.vcf", "b.vcf"}));
}

TEST_F(VCardFolderHalfDoneTest, NamesWhatCannotBeRestored)
{
    const auto failure = failureOfDeletion([&] {
        fs::remove(in("a.vcf"));
        write(in("b.vcf"), "changed");
    });
    if (failure.empty()) {
        GTEST_SKIP() << "Processes cannot be traced here.";
    }
    auto names = namesIn(folder());
    EXPECT_EQ(names.size(), 3U);
    const auto old = in(*names.begin());

    EXPECT_EQ(failure,
              about(in("b.vcf"), "has changed since it was read. Reload it and try again. ") +
                  about(in("a.vcf"), "could not be restored: No such file or directory. What was "
                                     "in its place before is in “") +
                  old.string() +
                  "”. Files changed despite the error: a.vcf. Files not changed: b.vcf, c.vcf.");
    EXPECT_EQ(contentOf(old), card("a1") + card("a2"));
}

TEST_F(VCardFolderTest, WritesNothingWhenAFileChangesWhileTheNewOnesAreWritten)
{
    write(in("a.vcf"), card("a1") + card("a2"));
    write(in("b.vcf"), card("b1") + card("b2"));
    const TemporaryFolder elsewhere;
    const auto message = elsewhere.path() / "message";
    const auto end =
        traceChild([&] { write(message, failureOf([&] {
                                   removeFrom(folder(), {"a1", "b1"});
                               })); },
                   [&](SystemCall call) {
                       if (call.number == SYS_fsync && call.moment == SystemCall::Moment::After) {
                           writeLater(in("b.vcf"), card("b1") + card("B2"));
                       }
                       return Fate::Continue;
                   });
    if (end == End::CannotBeTraced) {
        GTEST_SKIP() << "Processes cannot be traced here.";
    }

    EXPECT_EQ(contentOf(message),
              about(in("b.vcf"), "has changed since it was read. Reload it and try again."));
    EXPECT_EQ(contentOf(in("a.vcf")), card("a1") + card("a2"));
    EXPECT_EQ(contentOf(in("b.vcf")), card("b1") + card("B2"));
    EXPECT_EQ(namesIn(folder()), (Names{"a.vcf", "b.vcf"}));
}

TEST_F(VCardFolderTest, RaisesTheLimitOfOpenFilesWhenNeeded)
{
    constexpr int kFiles = 500;
    for (int i = 0; i < kFiles; ++i) {
        const auto number = std::to_string(i);
        write(in(number + ".vcf"), card("gone-" + number) + card("kept-" + number));
    }

    const auto outcome = inChild([&]() -> std::string {
        rlimit limit{};
        getrlimit(RLIMIT_NOFILE, &limit);
        if (limit.rlim_max < 2 * kFiles + 64) {
            return "too few";
        }
        limit.rlim_cur = 64;
        setrlimit(RLIMIT_NOFILE, &limit);
        VCardAddressBook book(folder());
        const auto people = book.readPeople();
        for (std::size_t i = 0; i < people.size(); i += 2) {
            book.removeRecord(people[i]);
        }
        book.save();
        return "done";
    });
    if (outcome == "too few") {
        GTEST_SKIP() << "The system allows too few open files here.";
    }

    EXPECT_EQ(outcome, "done");
    EXPECT_EQ(namesIn(folder()).size(), std::size_t(kFiles));
    for (int i = 0; i < kFiles; ++i) {
        const auto number = std::to_string(i);
        ASSERT_EQ(contentOf(in(number + ".vcf")), card("kept-" + number));
    }
}

TEST_F(VCardFolderTest, NeedsFewerOpenFilesThanItHasFiles)
{
    constexpr int kFiles = 60;
    for (int i = 0; i < kFiles; ++i) {
        const auto number = std::to_string(i);
        write(in(number + ".vcf"),
              card("gone-" + number) + (i % 2 == 0 ? card("kept-" + number) : ""));
    }

    const auto outcome = inChild([&]() -> std::string {
        VCardAddressBook book(folder());
        for (const auto& person : book.readPeople()) {
            if (person.uid.starts_with("gone")) {
                book.removeRecord(person);
            }
        }
        const rlimit limit{32, 32};
        setrlimit(RLIMIT_NOFILE, &limit);
        return failureOf([&] { book.save(); });
    });

    EXPECT_EQ(outcome, "nothing was thrown");
    EXPECT_EQ(namesIn(folder()).size(), std::size_t(kFiles) / 2);
    for (const auto& uid : uidsIn(folder())) {
        EXPECT_TRUE(uid.starts_with("kept")) << uid;
    }
}

TEST_F(VCardFolderTest, IsNotChangedWhenNoFileCanBeOpened)
{
    write(in("a.vcf"), card("a1") + card("a2"));

    const auto outcome = inChild([&]() -> std::string {
        VCardAddressBook book(folder());
        ask(book, {"a1"});
        const rlimit limit{0, 0};
        setrlimit(RLIMIT_NOFILE, &limit);
        return failureOf([&] { book.save(); });
    });

    EXPECT_EQ(outcome, about(in("a.vcf"), "cannot be changed: Too many open files."));
    EXPECT_EQ(contentOf(in("a.vcf")), card("a1") + card("a2"));
    EXPECT_EQ(namesIn(folder()), Names{"a.vcf"});
}

}  // namespace
}  // namespace dunmora::test
