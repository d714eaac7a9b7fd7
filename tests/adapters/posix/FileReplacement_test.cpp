#include "adapters/posix/FileReplacement.h"

#include "adapters/posix/FileChanges.h"
#include "adapters/posix/FileRemoval.h"
#include "adapters/posix/Leftover.h"
#include "adapters/posix/ProcessShutdown.h"
#include "adapters/posix/TemporaryName.h"
#include "tests/adapters/posix/FailingCalls.h"
#include "tests/adapters/posix/FileTest.h"
#include "tests/fakes/ChildProcess.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <type_traits>
#include <utility>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace dunmora::test {
namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;

// A removal has no content, and a replacement cannot be prepared without one.
static_assert(!std::is_constructible_v<FileRemoval, LockedFile, Pieces>);
static_assert(!std::is_constructible_v<FileReplacement, LockedFile>);

class FileReplacementTest : public FileTest {
protected:
    FileReplacementTest() { write(path("book"), "old"); }

    static LockedFile locked(LockedFile::Paths names)
    {
        auto file = LockedFile::open(std::move(names));
        file.expectContent({"old"});
        return file;
    }
    LockedFile locked() const { return locked({path("book")}); }

    /// Commits the replacement of a file with these names.
    static void replace(LockedFile::Paths names)
    {
        commit(std::make_unique<FileReplacement>(locked(std::move(names)), Pieces{"new"}));
    }
    static void remove(LockedFile::Paths names)
    {
        commit(std::make_unique<FileRemoval>(locked(std::move(names))));
    }

    /// Runs the action in a child process that gets SIGTERM after the first such system call.
    /// Returns false where processes cannot be traced.
    static bool runAndTerminateAfter(long systemCall, const std::function<void()>& action)
    {
        bool isTerminated = false;
        const auto end = traceChild(
            [&] {
                exitOnSignals(EXIT_SUCCESS);
                action();
            },
            [&](SystemCall call) {
                if (isTerminated || call.number != systemCall ||
                    call.moment != SystemCall::Moment::After) {
                    return Fate::Continue;
                }
                isTerminated = true;
                return Fate::Terminate;
            });
        EXPECT_EQ(isTerminated, end != End::CannotBeTraced);
        return isTerminated;
    }

private:
    static void commit(std::unique_ptr<FileChange> change)
    {
        FileChanges changes;
        changes.add(std::move(change), "book");
        changes.commit([](std::size_t) {});
    }
};

TEST_F(FileReplacementTest, ReplacesTheFileWhenItIsApplied)
{
    FileReplacement replacement(locked(), {"n", "ew"});
    EXPECT_EQ(contentOf(path("book")), "old");
    EXPECT_TRUE(replacement.changedPaths().empty());

    replacement.apply();

    EXPECT_EQ(contentOf(path("book")), "new");
    EXPECT_EQ(replacement.changedPaths(), LockedFile::Paths{path("book")});
}

TEST_F(FileReplacementTest, KeepsTheOldFileUntilItIsFinished)
{
    const auto inode = inodeOf(path("book"));
    FileReplacement replacement(locked(), {"new"});

    replacement.apply();
    replacement.checkOldFile();
    replacement.checkOldFileAgain();

    auto names = namesIn(folder());
    EXPECT_EQ(names.size(), 2U);
    names.erase("book");
    EXPECT_EQ(inodeOf(path(*names.begin())), inode);

    EXPECT_EQ(replacement.finish(), "");

    EXPECT_EQ(namesIn(folder()), Names{"book"});
}

TEST_F(FileReplacementTest, CanBeReverted)
{
    fs::create_hard_link(path("book"), path("same"));
    const auto inode = inodeOf(path("book"));
    FileReplacement replacement(locked({path("book"), path("same")}), {"new"});
    replacement.apply();

    EXPECT_EQ(replacement.revert(), "");

    EXPECT_EQ(inodeOf(path("book")), inode);
    EXPECT_EQ(inodeOf(path("same")), inode);
    EXPECT_EQ(contentOf(path("book")), "old");
    EXPECT_TRUE(replacement.changedPaths().empty());
    EXPECT_EQ(namesIn(folder()), (Names{"book", "same"}));
}

TEST_F(FileReplacementTest, NoticesThatAnotherNameHasBecomeAnotherFile)
{
    fs::create_hard_link(path("book"), path("same"));
    FileReplacement replacement(locked({path("book"), path("same")}), {"new"});
    replacement.apply();
    // As if another program had replaced it right before the exchange.
    const auto inode = inodeOf(path("same"));
    for (const auto& name : namesIn(folder())) {
        if (name.ends_with("-same")) {
            write(path("another"), "old");
            fs::rename(path("another"), path(name));
        }
    }

    EXPECT_EQ(failureOf([&] { replacement.checkOldFile(); }), changed(path("book")));
    EXPECT_EQ(inodeOf(path("same")), inode);
}

TEST_F(FileReplacementTest, LeavesTheFileAloneWhenItIsNotApplied)
{
    {
        const FileReplacement replacement(locked(), {"new"});
    }

    EXPECT_EQ(contentOf(path("book")), "old");
    EXPECT_EQ(namesIn(folder()), Names{"book"});
}

TEST_F(FileReplacementTest, ReadsBackTheNewContent)
{
    const FileReplacement replacement(locked(), {"n", "ew"});

    EXPECT_EQ(replacement.newFile().content().view(), "new");
}

TEST_F(FileReplacementTest, ReplacesTheFileUnderAllOfItsNames)
{
    fs::create_hard_link(path("book"), path("same"));
    fs::create_directory(path("sub"));
    fs::create_hard_link(path("book"), path("sub") / "third");
    fs::create_symlink("book", path("link"));

    replace({path("link"), path("same"), path("sub") / "third"});

    for (const auto& name : {path("book"), path("same"), path("sub") / "third"}) {
        EXPECT_EQ(contentOf(name), "new");
        EXPECT_TRUE(fs::equivalent(name, path("book")));
    }
    EXPECT_TRUE(fs::is_symlink(path("link")));
    EXPECT_EQ(namesIn(folder()), (Names{"book", "link", "same", "sub"}));
    EXPECT_EQ(namesIn(path("sub")), Names{"third"});
}

TEST_F(FileReplacementTest, ReplacesNothingThatHasChangedMeanwhile)
{
    FileReplacement replacement(locked(), {"new"});
    write(path("book"), "edited");

    EXPECT_EQ(failureOf([&] { replacement.apply(); }), changed(path("book")));

    EXPECT_EQ(contentOf(path("book")), "edited");
    EXPECT_TRUE(replacement.changedPaths().empty());
}

TEST_F(FileReplacementTest, IsRefusedWhileAnotherProgramHasTheFileOpenForWriting)
{
    FileReplacement replacement(locked(), {"new"});
    const auto writer = openFile(path("book"), O_WRONLY | O_APPEND);
    replacement.apply();

    EXPECT_EQ(
        failureOf([&] { replacement.checkOldFile(); }),
        about(path("book"),
              "cannot be changed: another program has it open for writing. Try again later."));

    EXPECT_EQ(replacement.revert(), "");
    writeAll(writer, "+");
    EXPECT_EQ(contentOf(path("book")), "old+");
    EXPECT_EQ(namesIn(folder()), Names{"book"});
}

TEST_F(FileReplacementTest, NoticesAWriterAfterTheCheck)
{
    FileReplacement replacement(locked(), {"new"});
    replacement.apply();
    replacement.checkOldFile();
    auto names = namesIn(folder());
    names.erase("book");
    const auto old = path(*names.begin());

    // The lease makes a writer wait.
    EXPECT_FALSE(openFile(old, O_WRONLY | O_APPEND).isOpen());

    EXPECT_EQ(
        failureOf([&] { replacement.checkOldFileAgain(); }),
        about(path("book"),
              "cannot be changed: another program has it open for writing. Try again later."));
}

TEST_F(FileReplacementTest, NoticesAWriterAfterTheCheckWithClosedFiles)
{
    FileReplacement replacement(locked(), {"new"});
    replacement.closeFiles();
    replacement.apply();
    replacement.checkOldFile();
    replacement.checkOldFileAgain();
    auto names = namesIn(folder());
    names.erase("book");
    const auto old = path(*names.begin());

    {
        const auto writer = openFile(old, O_WRONLY | O_APPEND);
        EXPECT_NE(failureOf([&] { replacement.checkOldFileAgain(); }), kNothingThrown);
        writeAll(writer, "+");
    }
    EXPECT_EQ(failureOf([&] { replacement.checkOldFileAgain(); }), changed(path("book")));
}

TEST_F(FileReplacementTest, KeepsNoFileOpenWhenTheyAreClosed)
{
    const auto before = namesIn("/proc/self/fd").size();
    FileReplacement replacement(locked(), {"new"});
    replacement.closeFiles();
    EXPECT_EQ(namesIn("/proc/self/fd").size(), before);

    replacement.apply();
    replacement.checkOldFile();
    replacement.checkOldFileAgain();

    EXPECT_EQ(namesIn("/proc/self/fd").size(), before);
    EXPECT_EQ(replacement.finish(), "");
    EXPECT_EQ(contentOf(path("book")), "new");
    EXPECT_EQ(namesIn(folder()), Names{"book"});
}

TEST_F(FileReplacementTest, LeavesNothingWhenItIsDiscardedWithClosedFiles)
{
    {
        FileReplacement replacement(locked(), {"new"});
        replacement.closeFiles();
        EXPECT_EQ(namesIn(folder()).size(), 2U);
    }

    EXPECT_EQ(namesIn(folder()), Names{"book"});
}

TEST_F(FileReplacementTest, RetriesTheLockOfTheNewFileWhenInterrupted)
{
    auto file = locked();
    const FailingCalls calls(Call::Lock, EINTR);

    FileReplacement replacement(std::move(file), {"new"});
    replacement.apply();

    EXPECT_EQ(calls.failed(), 1);
    EXPECT_EQ(contentOf(path("book")), "new");
}

TEST_F(FileReplacementTest, IsCompletedBeforeTheProcessExits)
{
    fs::create_hard_link(path("book"), path("same"));

    if (!runAndTerminateAfter(SYS_renameat2, [&] { replace({path("book"), path("same")}); })) {
        GTEST_SKIP() << "Processes cannot be traced here.";
    }

    EXPECT_EQ(contentOf(path("book")), "new");
    EXPECT_EQ(contentOf(path("same")), "new");
    EXPECT_EQ(namesIn(folder()), (Names{"book", "same"}));
}

TEST_F(FileReplacementTest, AvoidsTheNamesOfLeftovers)
{
    // The kernel soon gives a new file the inode of a deleted one.
    FileReplacement replacement(locked(), {"new"});
    const auto leftover = [&] {
        replacement.closeFiles();
        auto names = namesIn(folder());
        names.erase("book");
        return path(*names.begin());
    }();
    const auto parsed = TemporaryName::parsed(leftover.filename().string());
    ASSERT_TRUE(parsed);

    EXPECT_EQ(leftover, temporaryPath(path("book"), parsed->newFile, 1));
    EXPECT_EQ(parsed->newFile.inode, inodeOf(leftover));
    EXPECT_TRUE(parsed->belongsTo("book"));
}

TEST_F(FileReplacementTest, NeedsNoNamelessFile)
{
    fs::create_hard_link(path("book"), path("same"));

    // Without /proc a nameless file cannot be given a name.
    const auto outcome = inChild([&]() -> std::string {
        if (unshare(CLONE_NEWNS) != 0 ||
            mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            mount("none", "/proc", "tmpfs", 0, nullptr) != 0) {
            return "no mounts";
        }
        {
            const FileReplacement discarded(locked(), {"new"});
            if (namesIn(folder()).size() != 3) {
                return "the new file had no name";
            }
            removeUnusedFiles(folder());
            if (namesIn(folder()).size() != 3) {
                return "the new file was not locked";
            }
        }
        replace({path("book"), path("same")});
        return "done";
    });
    if (outcome == "no mounts") {
        GTEST_SKIP() << "Only root can hide /proc, and not everywhere.";
    }

    EXPECT_EQ(outcome, "done");
    EXPECT_EQ(contentOf(path("book")), "new");
    EXPECT_TRUE(fs::equivalent(path("book"), path("same")));
    EXPECT_EQ(namesIn(folder()), (Names{"book", "same"}));
}

TEST_F(FileReplacementTest, RestoresTheNamesThatWereReplacedBeforeAFailure)
{
    fs::create_directory(path("sub"));
    fs::create_hard_link(path("book"), path("sub") / "same");
    const auto inode = inodeOf(path("book"));
    FileReplacement replacement(locked({path("book"), path("sub") / "same"}), {"new"});
    replacement.closeFiles();
    // The second exchange fails, because one of its files is gone.
    auto names = namesIn(path("sub"));
    names.erase("same");
    fs::remove(path("sub") / *names.begin());

    EXPECT_EQ(failureOf([&] { replacement.apply(); }),
              about(path("book"), "cannot be changed: No such file or directory."));
    EXPECT_EQ(contentOf(path("book")), "new");
    EXPECT_EQ(replacement.revert(), "");

    EXPECT_EQ(inodeOf(path("book")), inode);
    EXPECT_EQ(contentOf(path("sub") / "same"), "old");
}

class FileRemovalTest : public FileReplacementTest {};

TEST_F(FileRemovalTest, RemovesTheFileWithAllOfItsNames)
{
    fs::create_hard_link(path("book"), path("same"));
    fs::create_symlink("book", path("link"));
    FileRemoval removal(locked({path("book"), path("link"), path("same")}));
    EXPECT_EQ(namesIn(folder()), (Names{"book", "link", "same"}));

    removal.apply();
    EXPECT_EQ(removal.changedPaths(),
              (LockedFile::Paths{path("link"), path("book"), path("same")}));
    EXPECT_EQ(namesIn(folder()).size(), 3U);
    removal.checkOldFile();
    removal.checkOldFileAgain();
    EXPECT_EQ(removal.finish(), "");

    EXPECT_EQ(namesIn(folder()), Names());
}

TEST_F(FileRemovalTest, CanBeReverted)
{
    fs::create_hard_link(path("book"), path("same"));
    fs::create_symlink("book", path("link"));
    FileRemoval removal(locked({path("book"), path("link"), path("same")}));
    removal.apply();

    EXPECT_EQ(removal.revert(), "");

    EXPECT_EQ(namesIn(folder()), (Names{"book", "link", "same"}));
    EXPECT_TRUE(fs::is_symlink(path("link")));
    EXPECT_EQ(contentOf(path("link")), "old");
    EXPECT_TRUE(removal.changedPaths().empty());
}

TEST_F(FileRemovalTest, DoesNotPutTheFileInThePlaceOfANewOne)
{
    FileRemoval removal(locked());
    removal.apply();
    const auto temporary = path(*namesIn(folder()).begin());
    write(path("book"), "of another program");

    EXPECT_EQ(removal.revert(),
              about(path("book"),
                    "could not be restored: File exists. What was in its place before is in ") +
                  "“" + temporary.string() + "”.");

    EXPECT_EQ(contentOf(path("book")), "of another program");
    EXPECT_EQ(contentOf(temporary), "old");
}

TEST_F(FileRemovalTest, IsRefusedWhileAnotherProgramHasTheFileOpenForWriting)
{
    FileRemoval removal(locked());
    const auto writer = openFile(path("book"), O_WRONLY | O_APPEND);
    removal.apply();

    EXPECT_NE(failureOf([&] { removal.checkOldFile(); }), kNothingThrown);

    EXPECT_EQ(removal.revert(), "");
    EXPECT_EQ(contentOf(path("book")), "old");
}

TEST_F(FileRemovalTest, RemovesNothingThatHasChangedMeanwhile)
{
    FileRemoval removal(locked());
    write(path("book"), "edited");

    EXPECT_EQ(failureOf([&] { removal.apply(); }), changed(path("book")));

    EXPECT_EQ(contentOf(path("book")), "edited");
}

TEST_F(FileRemovalTest, CanCloseItsFile)
{
    const auto before = namesIn("/proc/self/fd").size();
    FileRemoval removal(locked());
    removal.closeFiles();
    EXPECT_EQ(namesIn("/proc/self/fd").size(), before);

    removal.apply();
    removal.checkOldFile();
    removal.checkOldFileAgain();
    EXPECT_EQ(removal.finish(), "");

    EXPECT_EQ(namesIn(folder()), Names());
}

TEST_F(FileRemovalTest, IsRefusedWhenTheFolderOfALinkIsNotWritable)
{
    constexpr uid_t kNobody = 65534;
    const auto link = path("links") / "link";
    fs::create_directory(path("links"));
    fs::create_symlink(path("book"), link);
    chmod(folder().c_str(), 0777);
    chmod(path("book").c_str(), 0666);
    chmod(path("links").c_str(), 0555);

    const auto failure = inChild([&]() -> std::string {
        return geteuid() != 0 || setuid(kNobody) == 0
                   ? failureOf([&] { FileRemoval(locked({link})); })
                   : "no setuid";
    });
    chmod(path("links").c_str(), 0755);

    EXPECT_EQ(failure, about(link, "cannot be removed because its folder is not writable: "
                                   "Permission denied."));
}

TEST_F(FileRemovalTest, IsCompletedBeforeTheProcessExits)
{
    fs::create_hard_link(path("book"), path("same"));

    if (!runAndTerminateAfter(SYS_renameat2, [&] { remove({path("book"), path("same")}); })) {
        GTEST_SKIP() << "Processes cannot be traced here.";
    }

    EXPECT_EQ(namesIn(folder()), Names());
}

}  // namespace
}  // namespace dunmora::test
