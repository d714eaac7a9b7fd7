#include "platform/PlatformError.h"
#include "tests/adapters/posix/FailingCalls.h"
#include "tests/adapters/vcard/BookTest.h"
#include "tests/fakes/ChildProcess.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <set>
#include <string>

namespace dunmora::test {
namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;

constexpr uid_t kNobody = 65534;

std::size_t openDescriptors()
{
    return namesIn("/proc/self/fd").size();
}

/// A book of two people, "a" and "b"; the tests try to delete "a".
class BookFailureTest : public BookTest {
protected:
    BookFailureTest() { write(file(), content_); }

    static std::string failureOfReading(const fs::path& path)
    {
        return failureOf([&] { VCardAddressBook(path).readPeople(); });
    }

    /// Reads the book, calls `happening`, then deletes. Returns the message of the failed deletion.
    std::string failureOfDeletionAfter(const std::function<void()>& happening)
    {
        VCardAddressBook book(file());
        ask(book, {"a"});
        happening();
        return failureOf([&] { book.save(); });
    }

    void expectBookAsItWas() const
    {
        EXPECT_EQ(contentOf(file()), content_);
        EXPECT_EQ(namesIn(folder()), (Names{"book.vcf"}));
    }

    const std::string content_ = card("a") + card("b");
};

TEST_F(BookFailureTest, ReportsABookThatDoesNotExist)
{
    EXPECT_EQ(failureOfReading(folder() / "none.vcf"),
              about(folder() / "none.vcf", "does not exist."));
    EXPECT_EQ(failureOfReading(folder() / "none" / "book.vcf"),
              about(folder() / "none" / "book.vcf", "does not exist."));
    EXPECT_EQ(failureOfReading(""), about("", "does not exist."));
}

TEST_F(BookFailureTest, ReportsABookThatIsNeitherFileNorFolder)
{
    const auto pipe = folder() / "pipe.vcf";
    ASSERT_EQ(mkfifo(pipe.c_str(), S_IRUSR | S_IWUSR), 0);
    const auto socketPath = folder() / "s.vcf";
    const int socketNumber = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    socketPath.string().copy(address.sun_path, sizeof address.sun_path - 1);
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): required by bind(2)
    ASSERT_EQ(bind(socketNumber, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);

    EXPECT_EQ(failureOfReading(pipe), about(pipe, "is neither a file nor a folder."));
    EXPECT_EQ(failureOfReading(socketPath), about(socketPath, "is neither a file nor a folder."));
    EXPECT_EQ(failureOfReading("/dev/null"), about("/dev/null", "is neither a file nor a folder."));
    close(socketNumber);
}

TEST_F(BookFailureTest, ReportsALinkThatLeadsToItself)
{
    fs::create_symlink("loop.vcf", folder() / "loop.vcf");

    EXPECT_EQ(failureOfReading(folder() / "loop.vcf"),
              about(folder() / "loop.vcf", "cannot be read: Too many levels of symbolic links."));
}

TEST_F(BookFailureTest, ReportsAnyFileNameAsOneLineOfText)
{
    EXPECT_EQ(failureOfReading(folder() / "caf\xE9\n\x1B[31m.vcf"),
              about(folder() / "caf\uFFFD␊␛[31m.vcf", "does not exist."));
}

TEST_F(BookFailureTest, ReportsMissingPermissionToRead)
{
    if (geteuid() == 0) {
        fs::permissions(folder(), fs::perms::all);
        chmod(file().c_str(), 0);
        EXPECT_EQ(inChild([&]() -> std::string {
                      return setuid(kNobody) == 0 ? failureOfReading(file()) : "no setuid";
                  }),
                  about(file(), "cannot be read: Permission denied."));
        return;
    }
    chmod(file().c_str(), 0);
    EXPECT_EQ(failureOfReading(file()), about(file(), "cannot be read: Permission denied."));
}

TEST_F(BookFailureTest, ReportsMissingPermissionToReadAFolder)
{
    const auto inner = folder() / "inner";
    fs::create_directory(inner);
    chmod(inner.c_str(), 0);
    const auto read = [&]() -> std::string {
        return geteuid() != 0 || setuid(kNobody) == 0 ? failureOfReading(inner) : "no setuid";
    };
    chmod(folder().c_str(), 0755);

    EXPECT_EQ(inChild(read), about(inner, "cannot be read: Permission denied."));
}

TEST_F(BookFailureTest, RefusesAReadOnlyFile)
{
    // Also when root runs the program: somebody removed the permission on purpose.
    chmod(file().c_str(), 0444);

    EXPECT_EQ(failureOfDeletionAfter([] {}), about(file(), "cannot be changed: it is read-only."));

    expectBookAsItWas();
}

TEST_F(BookFailureTest, KnowsThatAFileIsReadOnlyBeforeAnybodyIsRemoved)
{
    const auto other = folder() / "other.vcf";
    write(other, card("c"));
    VCardAddressBook book(folder());
    book.readPeople();
    const std::vector<std::string> uids{"a", "b", "nobody"};
    const std::vector<std::string> others{"c"};
    EXPECT_NO_THROW(book.checkWritable(uids));

    chmod(file().c_str(), 0444);

    EXPECT_EQ(failureOf([&] { book.checkWritable(uids); }),
              about(file(), "cannot be changed: it is read-only."));
    EXPECT_NO_THROW(book.checkWritable(others)) << "another file";
}

TEST_F(BookFailureTest, ReportsMissingPermissionToWriteTheFile)
{
    if (geteuid() != 0) {
        GTEST_SKIP() << "Only root can create another user's file.";
    }
    chmod(file().c_str(), 0644);
    chmod(folder().c_str(), 0777);

    EXPECT_EQ(inChild([&]() -> std::string {
                  return setuid(kNobody) == 0 ? failureOfDeletionAfter([] {}) : "no setuid";
              }),
              about(file(), "cannot be changed: Permission denied."));

    expectBookAsItWas();
}

TEST_F(BookFailureTest, ReportsAFolderThatIsNotWritable)
{
    chmod(folder().c_str(), 0555);
    chmod(file().c_str(), 0666);

    const auto failure = inChild([&]() -> std::string {
        return geteuid() != 0 || setuid(kNobody) == 0 ? failureOfDeletionAfter([] {}) : "no setuid";
    });
    chmod(folder().c_str(), 0755);

    EXPECT_EQ(failure, about(file(), "cannot be changed because its folder is not writable: "
                                     "Permission denied."));
    expectBookAsItWas();
}

TEST_F(BookFailureTest, RefusesAFileThatItWouldHaveToChangeTheOwnerOf)
{
    if (geteuid() != 0) {
        GTEST_SKIP() << "Only root can create another user's file.";
    }
    chmod(file().c_str(), 0666);
    chmod(folder().c_str(), 0777);

    EXPECT_EQ(inChild([&]() -> std::string {
                  return setuid(kNobody) == 0 ? failureOfDeletionAfter([] {}) : "no setuid";
              }),
              about(file(), "cannot be changed without changing its owner: "
                            "Operation not permitted."));

    expectBookAsItWas();
}

TEST_F(BookFailureTest, RemovesNothingWhenTheFolderOfALinkedFileIsNotWritable)
{
    // Removing the second file writes no content, but its folder must be writable. That is checked
    // before the first file changes.
    const TemporaryFolder elsewhere;
    write(elsewhere.path() / "real.vcf", card("c"));
    fs::create_symlink(elsewhere.path() / "real.vcf", folder() / "z.vcf");
    chmod(folder().c_str(), 0777);
    chmod(elsewhere.path().c_str(), 0555);
    chmod((elsewhere.path() / "real.vcf").c_str(), 0666);
    if (geteuid() == 0 && chown(file().c_str(), kNobody, kNobody) != 0) {
        GTEST_SKIP() << "No other user can own a file here.";
    }

    const auto failure = inChild([&]() -> std::string {
        if (geteuid() == 0 && (setgid(kNobody) != 0 || setuid(kNobody) != 0)) {
            return "no setuid";
        }
        return failureOf([&] { removeFrom(folder(), {"a", "c"}); });
    });
    chmod(elsewhere.path().c_str(), 0755);

    EXPECT_EQ(failure,
              about(folder() / "z.vcf", "cannot be removed because its folder is not writable: "
                                        "Permission denied."));
    EXPECT_EQ(contentOf(file()), content_);
    EXPECT_EQ(namesIn(folder()), (Names{"book.vcf", "z.vcf"}));
    EXPECT_EQ(contentOf(folder() / "z.vcf"), card("c"));
}

TEST_F(BookFailureTest, RefusesAFileThatHasChangedSinceItWasRead)
{
    const auto other = card("a") + card("B");
    ASSERT_EQ(other.size(), content_.size());

    EXPECT_EQ(failureOfDeletionAfter([&] { write(file(), other); }),
              about(file(), "has changed since it was read. Reload it and try again."));

    EXPECT_EQ(contentOf(file()), other);
    EXPECT_EQ(namesIn(folder()), (Names{"book.vcf"}));
}

TEST_F(BookFailureTest, RefusesAFileThatHasGrownOrShrunk)
{
    EXPECT_EQ(failureOfDeletionAfter([&] { write(file(), content_ + "\n"); }),
              about(file(), "has changed since it was read. Reload it and try again."));
    EXPECT_EQ(contentOf(file()), content_ + "\n");

    write(file(), content_);
    EXPECT_EQ(failureOfDeletionAfter([&] { write(file(), card("a")); }),
              about(file(), "has changed since it was read. Reload it and try again."));
    EXPECT_EQ(contentOf(file()), card("a"));
}

TEST_F(BookFailureTest, RefusesAFileThatHasBeenReplaced)
{
    EXPECT_EQ(failureOfDeletionAfter([&] {
                  write(folder() / "new", card("a") + card("B"));
                  fs::rename(folder() / "new", file());
              }),
              about(file(), "has changed since it was read. Reload it and try again."));

    EXPECT_EQ(contentOf(file()), card("a") + card("B"));
}

TEST_F(BookFailureTest, AcceptsAFileReplacedByOneWithTheSameContent)
{
    EXPECT_EQ(failureOfDeletionAfter([&] {
                  write(folder() / "new", content_);
                  fs::rename(folder() / "new", file());
              }),
              "nothing was thrown");

    EXPECT_EQ(contentOf(file()), card("b"));
}

TEST_F(BookFailureTest, RefusesAFileThatIsGone)
{
    EXPECT_EQ(failureOfDeletionAfter([&] { fs::remove(file()); }),
              about(file(), "cannot be changed: No such file or directory."));

    EXPECT_EQ(namesIn(folder()), Names());
}

TEST_F(BookFailureTest, RefusesAFileThatAFolderOrAPipeHasReplaced)
{
    EXPECT_NE(failureOfDeletionAfter([&] {
                  fs::remove(file());
                  fs::create_directory(file());
              }),
              "nothing was thrown");
    EXPECT_TRUE(fs::is_directory(file()));

    fs::remove(file());
    write(file(), content_);
    EXPECT_EQ(failureOfDeletionAfter([&] {
                  fs::remove(file());
                  mkfifo(file().c_str(), 0600);
              }),
              about(file(), "has changed since it was read. Reload it and try again."));
    EXPECT_TRUE(fs::is_fifo(file()));
}

TEST_F(BookFailureTest, RefusesAFileThatChangesWhileTheNewOneIsWritten)
{
    const auto other = card("a") + card("B");
    const TemporaryFolder elsewhere;
    const auto message = elsewhere.path() / "message";
    const auto end =
        traceChild([&] { write(message, failureOfDeletionAfter([] {})); },
                   [&](SystemCall call) {
                       if (call.number == SYS_fsync && call.moment == SystemCall::Moment::Before) {
                           writeLater(file(), other);
                       }
                       return Fate::Continue;
                   });
    if (end == End::CannotBeTraced) {
        GTEST_SKIP() << "Processes cannot be traced here.";
    }

    EXPECT_EQ(contentOf(message),
              about(file(), "has changed since it was read. Reload it and try again."));
    EXPECT_EQ(contentOf(file()), other);
    EXPECT_EQ(namesIn(folder()), (Names{"book.vcf"}));
}

TEST_F(BookFailureTest, DetectsAChangeWhoseTimeWasSetBack)
{
    const auto other = card("a") + card("B");
    const TemporaryFolder elsewhere;
    const auto message = elsewhere.path() / "message";
    const auto time = fs::last_write_time(file());
    const auto end =
        traceChild([&] { write(message, failureOfDeletionAfter([] {})); },
                   [&](SystemCall call) {
                       if (call.number == SYS_fsync && call.moment == SystemCall::Moment::Before) {
                           writeLater(file(), other);
                           fs::last_write_time(file(), time);
                       }
                       return Fate::Continue;
                   });
    if (end == End::CannotBeTraced) {
        GTEST_SKIP() << "Processes cannot be traced here.";
    }

    EXPECT_EQ(contentOf(message),
              about(file(), "has changed since it was read. Reload it and try again."));
    EXPECT_EQ(contentOf(file()), other);
}

TEST_F(BookFailureTest, RefusesAFileThatAnotherProgramHasLocked)
{
    const int other = open(file().c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(other, LOCK_EX), 0);

    const auto failure = inChild([&] { return failureOfDeletionAfter([] {}); });

    close(other);
    EXPECT_EQ(failure,
              about(file(), "cannot be changed: another program has locked it. Try again later."));
    expectBookAsItWas();
    EXPECT_EQ(failureOfDeletionAfter([] {}), "nothing was thrown");
}

TEST_F(BookFailureTest, ReportsAFileThatExceedsTheSizeLimit)
{
    EXPECT_EQ(inChild([&] {
                  return failureOfDeletionAfter([] {
                      std::signal(SIGXFSZ, SIG_IGN);
                      const rlimit limit{10, 10};
                      setrlimit(RLIMIT_FSIZE, &limit);
                  });
              }),
              about(file(), "cannot be changed: File too large."));

    expectBookAsItWas();
}

TEST_F(BookFailureTest, ReportsAFullDisk)
{
    const auto outcome = inChild([&]() -> std::string {
        const auto small = folder().string();
        if (unshare(CLONE_NEWNS) != 0 ||
            mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            mount("none", small.c_str(), "tmpfs", 0, "size=64k") != 0) {
            return "no small disk";
        }
        const auto large = card("a") + card("b") + std::string(40000, ' ');
        write(file(), large);
        const auto failure = failureOfDeletionAfter([] {});
        return failure + (contentOf(file()) == large && namesIn(folder()) == Names{"book.vcf"}
                              ? " As it was."
                              : " Changed!");
    });
    if (outcome == "no small disk") {
        GTEST_SKIP() << "Only root can mount a small disk.";
    }

    EXPECT_EQ(outcome, about(file(), "cannot be changed: No space left on device. As it was."));
}

TEST_F(BookFailureTest, SaysThatPeopleWereDeletedDespiteAFailure)
{
    // The new file and its folder have been flushed by then.
    constexpr int kEarlierFlushes = 2;
    const FailingCalls calls(Call::Sync, EIO, 1, kEarlierFlushes);

    const auto failure = failureOfDeletionAfter([] {});

    EXPECT_EQ(failure,
              about(folder(), "could not be flushed to disk: Input/output error. A power failure "
                              "now could bring back the old file, which is hidden. The people were "
                              "deleted all the same."));
    EXPECT_EQ(contentOf(file()), card("b"));
}

TEST_F(BookFailureTest, LeavesNoFileOpen)
{
    const auto before = openDescriptors();

    failureOfReading(folder() / "none.vcf");
    failureOfReading("/dev/null");
    failureOfDeletionAfter([&] { write(file(), "changed"); });
    write(file(), content_);
    failureOfDeletionAfter([&] { chmod(file().c_str(), 0444); });
    chmod(file().c_str(), 0644);
    EXPECT_EQ(failureOfDeletionAfter([] {}), "nothing was thrown");

    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(BookFailureTest, RemovesNobodyAfterAFailedListing)
{
    VCardAddressBook book(file());
    const auto people = book.readPeople();
    const auto& ann = people[0];
    fs::rename(file(), folder() / "away.vcf");
    EXPECT_THROW(book.readPeople(), PlatformError);
    fs::rename(folder() / "away.vcf", file());

    // The listing is gone; people from it must not be looked up in a new one.
    EXPECT_EQ(failureOf([&] { book.removeRecord(ann); }),
              "That person is not in the address book.");
    book.save();

    expectBookAsItWas();
}

}  // namespace
}  // namespace dunmora::test
