#include "adapters/posix/FileReplacement.h"

#include "adapters/posix/FileRemoval.h"
#include "adapters/posix/ProcessShutdown.h"
#include "tests/adapters/posix/FileTest.h"
#include "tests/fakes/ChildProcess.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <type_traits>

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

    /// Where a killed process may leave a file.
    fs::path leftover(const std::string& suffix) const
    {
        struct stat status {};
        EXPECT_EQ(::stat(path("book").c_str(), &status), 0);
        return path(".dunmora-" + std::to_string(status.st_dev) + "-" +
                    std::to_string(status.st_ino) + suffix);
    }

    LockedFile locked() const { return LockedFile::open({path("book")}); }

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
};

TEST_F(FileReplacementTest, ReplacesTheFileAtTheCommit)
{
    FileReplacement replacement(locked(), {"n", "ew"});
    EXPECT_EQ(contentOf(path("book")), "old");
    EXPECT_TRUE(replacement.done().empty());

    replacement.commit();

    EXPECT_EQ(contentOf(path("book")), "new");
    EXPECT_EQ(replacement.done(), LockedFile::Paths{path("book")});
    EXPECT_EQ(namesIn(folder()), Names{"book"});
}

TEST_F(FileReplacementTest, LeavesTheFileAloneWhenItIsNotCommitted)
{
    {
        const FileReplacement replacement(locked(), {"new"});
    }

    EXPECT_EQ(contentOf(path("book")), "old");
    EXPECT_EQ(namesIn(folder()), Names{"book"});
}

TEST_F(FileReplacementTest, ReplacesTheFileUnderAllOfItsNames)
{
    fs::create_hard_link(path("book"), path("same"));
    fs::create_directory(path("sub"));
    fs::create_hard_link(path("book"), path("sub") / "third");
    fs::create_symlink("book", path("link"));

    FileReplacement(LockedFile::open({path("link"), path("same"), path("sub") / "third"}), {"new"})
        .commit();

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

    EXPECT_EQ(failureOf([&] { replacement.commit(); }), changed(path("book")));

    EXPECT_EQ(contentOf(path("book")), "edited");
    EXPECT_TRUE(replacement.done().empty());
}

TEST_F(FileReplacementTest, IsCompletedBeforeTheProcessExits)
{
    fs::create_hard_link(path("book"), path("same"));

    if (!runAndTerminateAfter(SYS_rename, [&] {
            FileReplacement(LockedFile::open({path("book"), path("same")}), {"new"}).commit();
        })) {
        GTEST_SKIP() << "Processes cannot be traced here.";
    }

    EXPECT_EQ(contentOf(path("book")), "new");
    EXPECT_EQ(contentOf(path("same")), "new");
    EXPECT_EQ(namesIn(folder()), (Names{"book", "same"}));
}

TEST_F(FileReplacementTest, RemovesWhatAKilledProcessLeftBehind)
{
    write(leftover(".link"), "left behind");

    FileReplacement(locked(), {"new"}).commit();

    EXPECT_EQ(contentOf(path("book")), "new");
    EXPECT_EQ(namesIn(folder()), Names{"book"});
}

TEST_F(FileReplacementTest, NeedsNoNamelessFile)
{
    fs::create_hard_link(path("book"), path("same"));
    write(leftover(".new"), "left behind");
    write(leftover(".link"), "left behind");

    // Without /proc a nameless file cannot be given a name.
    const auto outcome = inChild([&]() -> std::string {
        if (unshare(CLONE_NEWNS) != 0 ||
            mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            mount("none", "/proc", "tmpfs", 0, nullptr) != 0) {
            return "no mounts";
        }
        FileReplacement replacement(LockedFile::open({path("book"), path("same")}), {"new"});
        const bool hasNewFile = contentOf(leftover(".new")) == "new";
        replacement.commit();
        return hasNewFile ? "done" : "the new file had no name";
    });
    if (outcome == "no mounts") {
        GTEST_SKIP() << "Only root can hide /proc, and not everywhere.";
    }

    EXPECT_EQ(outcome, "done");
    EXPECT_EQ(contentOf(path("book")), "new");
    EXPECT_TRUE(fs::equivalent(path("book"), path("same")));
    EXPECT_EQ(namesIn(folder()), (Names{"book", "same"}));
}

TEST_F(FileReplacementTest, ReportsTheNamesThatAreReplacedAlready)
{
    fs::create_directory(path("sub"));
    fs::create_hard_link(path("book"), path("sub") / "same");
    FileReplacement replacement(LockedFile::open({path("book"), path("sub") / "same"}), {"new"});
    const auto name = leftover(".link").filename();
    fs::create_directories(path("sub") / name / "in the way");

    EXPECT_EQ(failureOf([&] { replacement.commit(); }),
              about(path("sub") / "same", "cannot be changed: File exists. Already done for the "
                                          "same file under: “") +
                  path("book").string() + "”.");

    EXPECT_EQ(replacement.done(), LockedFile::Paths{path("book")});
    EXPECT_EQ(contentOf(path("book")), "new");
    EXPECT_EQ(contentOf(path("sub") / "same"), "old");
}

using FileRemovalTest = FileReplacementTest;

TEST_F(FileRemovalTest, RemovesTheFileWithAllOfItsNamesAtTheCommit)
{
    fs::create_hard_link(path("book"), path("same"));
    fs::create_symlink("book", path("link"));
    FileRemoval removal(LockedFile::open({path("book"), path("link"), path("same")}));
    EXPECT_EQ(namesIn(folder()), (Names{"book", "link", "same"}));

    removal.commit();

    EXPECT_EQ(namesIn(folder()), Names());
    EXPECT_EQ(removal.done(), (LockedFile::Paths{path("link"), path("book"), path("same")}));
}

TEST_F(FileRemovalTest, RemovesNothingThatHasChangedMeanwhile)
{
    FileRemoval removal(locked());
    write(path("book"), "edited");

    EXPECT_EQ(failureOf([&] { removal.commit(); }), changed(path("book")));

    EXPECT_EQ(contentOf(path("book")), "edited");
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
                   ? failureOf([&] { FileRemoval(LockedFile::open({link})); })
                   : "no setuid";
    });
    chmod(path("links").c_str(), 0755);

    EXPECT_EQ(failure, about(link, "cannot be removed because its folder is not writable: "
                                   "Permission denied."));
}

TEST_F(FileRemovalTest, IsCompletedBeforeTheProcessExits)
{
    fs::create_hard_link(path("book"), path("same"));

    if (!runAndTerminateAfter(SYS_unlink, [&] {
            FileRemoval(LockedFile::open({path("book"), path("same")})).commit();
        })) {
        GTEST_SKIP() << "Processes cannot be traced here.";
    }

    EXPECT_EQ(namesIn(folder()), Names());
}

}  // namespace
}  // namespace dunmora::test
