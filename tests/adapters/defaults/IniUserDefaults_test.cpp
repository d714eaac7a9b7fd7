#include "adapters/defaults/IniUserDefaults.h"

#include "adapters/posix/Descriptor.h"
#include "adapters/posix/Leftover.h"
#include "tests/fakes/ChildProcess.h"
#include "tests/fakes/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace dunmora::test {
namespace {

using Names = std::set<std::string>;

const std::string kNotSaved =
    "dunmora: The preferences were not saved and last until the program ends. ";

class IniUserDefaultsTest : public testing::Test {
protected:
    std::string quotedFile() const { return "“" + file_.string() + "”"; }

    TemporaryFolder folder_;
    std::filesystem::path settings_ = folder_.path() / "dunmora";
    std::filesystem::path file_ = settings_ / "dunmora.conf";
};

/// The folder exists already.
class IniUserDefaultsFileTest : public IniUserDefaultsTest {
protected:
    IniUserDefaultsFileTest() { std::filesystem::create_directory(settings_); }

    /// Lets the file be read but not replaced, also by root, while the result exists.
    Descriptor blockReplacement() const { return openFile(file_, O_WRONLY); }
};

/// Sets the value and stores it; returns whether it was stored.
bool store(UserDefaults& defaults, const std::string& key, bool value)
{
    defaults.setBool(key, value);
    return defaults.synchronize();
}

/// The same for the first value of a newly started program.
bool store(IniUserDefaults&& defaults, const std::string& key, bool value)
{
    return store(static_cast<UserDefaults&>(defaults), key, value);
}

/// What the action writes to standard error.
std::string standardErrorOf(const std::function<void()>& action)
{
    testing::internal::CaptureStderr();
    action();
    return testing::internal::GetCapturedStderr();
}

/// Runs the action in a child process and returns its id.
pid_t startProcess(const std::function<void()>& action)
{
    const pid_t process = ::fork();
    if (process == 0) {
        action();
        ::_exit(0);
    }
    return process;
}

/// Discards the standard error of this process.
void silence()
{
    EXPECT_NE(std::freopen("/dev/null", "w", stderr), nullptr);
}

/// The status of the process as waitpid returns it.
int endOf(pid_t process)
{
    int status = -1;
    EXPECT_EQ(::waitpid(process, &status, 0), process);
    return status;
}

TEST_F(IniUserDefaultsTest, WriteNothingWhenNothingWasSet)
{
    const auto messages = standardErrorOf([&] {
        IniUserDefaults defaults(file_);
        EXPECT_FALSE(defaults.hasValue("filterHome"));
        EXPECT_TRUE(defaults.synchronize());
    });

    EXPECT_EQ(messages, "");
    EXPECT_EQ(namesIn(folder_.path()), Names());
}

TEST_F(IniUserDefaultsTest, CreateTheFoldersForTheUserAloneAndLeaveOnlyTheFile)
{
    const auto file = settings_ / "deeper" / "dunmora.conf";

    store(IniUserDefaults(file), "filterHome", true);

    EXPECT_EQ(contentOf(file), "[General]\nfilterHome=true\n");
    EXPECT_EQ(namesIn(settings_ / "deeper"), Names{"dunmora.conf"});
    for (const auto& folder : {settings_, settings_ / "deeper"}) {
        EXPECT_EQ(std::filesystem::status(folder).permissions(), std::filesystem::perms::owner_all);
    }
}

TEST_F(IniUserDefaultsTest, AreStoredWhenTheyAreSynchronized)
{
    IniUserDefaults defaults(file_);
    defaults.setBool("filterHome", true);
    defaults.setBool("filterWork", false);
    EXPECT_TRUE(defaults.boolForKey("filterHome"));
    EXPECT_EQ(namesIn(folder_.path()), Names());

    EXPECT_TRUE(defaults.synchronize());

    EXPECT_EQ(contentOf(file_), "[General]\nfilterHome=true\nfilterWork=false\n");
    EXPECT_TRUE(IniUserDefaults(file_).boolForKey("filterHome"));
}

TEST_F(IniUserDefaultsFileTest, ReadAnEmptyFileAsNoValues)
{
    write(file_, "");

    const auto messages =
        standardErrorOf([&] { EXPECT_FALSE(IniUserDefaults(file_).hasValue("filterHome")); });

    EXPECT_EQ(messages, "");
    EXPECT_EQ(namesIn(settings_), Names{"dunmora.conf"});
}

TEST_F(IniUserDefaultsFileTest, KeepWhatOtherProgramsHaveWritten)
{
    IniUserDefaults defaults(file_);
    write(file_, "; mine, not yours\nfilterWork=1\ncolour=red\n\n[Window]\nfilterHome=@Rect(1)\n");

    store(defaults, "filterHome", false);

    EXPECT_EQ(contentOf(file_), "; mine, not yours\nfilterWork=1\ncolour=red\nfilterHome=false\n\n"
                                "[Window]\nfilterHome=@Rect(1)\n");
    EXPECT_TRUE(defaults.boolForKey("filterWork"));
    EXPECT_TRUE(defaults.hasValue("colour"));
    EXPECT_FALSE(defaults.boolForKey("colour"));
}

TEST_F(IniUserDefaultsFileTest, ForgetAKeyThatTheUserRemovedFromTheFile)
{
    write(file_, "filterHome=true\n");
    IniUserDefaults defaults(file_);

    std::filesystem::remove(file_);
    EXPECT_TRUE(defaults.synchronize());

    EXPECT_FALSE(defaults.hasValue("filterHome"));
}

TEST_F(IniUserDefaultsFileTest, WriteNothingWhenTheFileHasTheValueAlready)
{
    write(file_, "filterHome=true\n");
    struct stat before = {};
    ::stat(file_.c_str(), &before);

    store(IniUserDefaults(file_), "filterHome", true);

    struct stat after = {};
    ::stat(file_.c_str(), &after);
    EXPECT_EQ(after.st_ino, before.st_ino);
}

TEST_F(IniUserDefaultsFileTest, KeepTheModeOfTheFile)
{
    write(file_, "filterHome=true\n");
    ::chmod(file_.c_str(), 0640);

    store(IniUserDefaults(file_), "filterHome", false);

    EXPECT_EQ(static_cast<unsigned>(std::filesystem::status(file_).permissions()), 0640U);
    EXPECT_EQ(contentOf(file_), "filterHome=false\n");
}

TEST_F(IniUserDefaultsFileTest, WriteToTheTargetOfALink)
{
    const auto target = folder_.path() / "dotfiles.conf";
    const auto middle = folder_.path() / "middle";
    write(target, "filterHome=true\n");
    std::filesystem::create_symlink("dotfiles.conf", middle);
    std::filesystem::create_symlink("../middle", file_);

    store(IniUserDefaults(file_), "filterHome", false);

    EXPECT_TRUE(std::filesystem::is_symlink(file_));
    EXPECT_TRUE(std::filesystem::is_symlink(middle));
    EXPECT_EQ(contentOf(target), "filterHome=false\n");
}

TEST_F(IniUserDefaultsFileTest, CreateTheMissingTargetOfALink)
{
    const auto target = folder_.path() / "dotfiles" / "dunmora.conf";
    std::filesystem::create_symlink(target, file_);

    store(IniUserDefaults(file_), "filterHome", true);

    EXPECT_TRUE(std::filesystem::is_symlink(file_));
    EXPECT_EQ(contentOf(target), "[General]\nfilterHome=true\n");
}

TEST_F(IniUserDefaultsFileTest, ReportALinkToItself)
{
    std::filesystem::create_symlink(file_, file_);

    const auto messages = standardErrorOf([&] {
        IniUserDefaults defaults(file_);
        store(defaults, "filterHome", true);
        EXPECT_TRUE(defaults.boolForKey("filterHome"));
    });

    EXPECT_EQ(messages, "dunmora: The preferences were not loaded. " + quotedFile() +
                            " cannot be read: Too many levels of symbolic links.\n" + kNotSaved +
                            quotedFile() +
                            " cannot be changed: Too many levels of symbolic links.\n");
}

TEST_F(IniUserDefaultsTest, ReportOnceThatTheyCannotBeSaved)
{
    write(settings_, "a file where the folder should be");

    const auto messages = standardErrorOf([&] {
        IniUserDefaults defaults(file_);
        store(defaults, "filterHome", true);
        store(defaults, "filterWork", true);
        EXPECT_FALSE(defaults.synchronize());
    });

    EXPECT_EQ(messages, kNotSaved + quotedFile() + " cannot be changed: Not a directory.\n");
    EXPECT_EQ(contentOf(settings_), "a file where the folder should be");
}

TEST_F(IniUserDefaultsTest, SaveEveryUnsavedValueWithTheNextOne)
{
    write(settings_, "");
    standardErrorOf([&] {
        IniUserDefaults defaults(file_);
        store(defaults, "filterHome", true);
        std::filesystem::remove(settings_);

        store(defaults, "filterWork", false);
    });

    EXPECT_EQ(contentOf(file_), "[General]\nfilterHome=true\nfilterWork=false\n");
}

TEST_F(IniUserDefaultsFileTest, LoadChangesOfOthersEvenWhenTheyCannotBeSaved)
{
    write(file_, "filterWork=false\nfilterHome=false\n");
    const auto writer = blockReplacement();
    standardErrorOf([&] {
        IniUserDefaults defaults(file_);
        store(defaults, "filterHome", true);
        write(file_, "filterWork=true\nfilterHome=false\n");

        EXPECT_FALSE(defaults.synchronize());

        EXPECT_TRUE(defaults.boolForKey("filterWork"));
        EXPECT_TRUE(defaults.boolForKey("filterHome"));
    });
}

TEST_F(IniUserDefaultsFileTest, KeepTheOldFileWhenTheDiskIsFull)
{
    write(file_, "filterWork=true\n");

    // In a child process, a file size limit fails the write as a full disk does.
    const auto process = startProcess([&] {
        std::signal(SIGXFSZ, SIG_IGN);
        const struct rlimit nothing = {5, 5};
        ::setrlimit(RLIMIT_FSIZE, &nothing);
        IniUserDefaults defaults(file_);
        silence();
        store(defaults, "filterHome", true);
        ::_exit(defaults.boolForKey("filterHome") && defaults.boolForKey("filterWork") ? 3 : 4);
    });

    EXPECT_EQ(WEXITSTATUS(endOf(process)), 3);
    EXPECT_EQ(contentOf(file_), "filterWork=true\n");
    EXPECT_EQ(namesIn(settings_), Names{"dunmora.conf"});
}

TEST_F(IniUserDefaultsFileTest, LeaveADamagedFileUntouchedAndReportIt)
{
    write(file_, "filterHome=true\njunk\n");

    const auto messages = standardErrorOf([&] {
        IniUserDefaults defaults(file_);
        EXPECT_FALSE(defaults.hasValue("filterHome"));
        EXPECT_TRUE(defaults.synchronize());
        store(defaults, "filterWork", true);
        store(defaults, "filterMobile", true);
        EXPECT_TRUE(defaults.boolForKey("filterWork"));
        EXPECT_FALSE(defaults.synchronize());
    });

    const auto reason =
        quotedFile() + " is not a valid preferences file. Correct it or delete it.\n";
    EXPECT_EQ(messages, "dunmora: The preferences were not loaded. " + reason + kNotSaved + reason);
    EXPECT_EQ(contentOf(file_), "filterHome=true\njunk\n");
    EXPECT_EQ(namesIn(settings_), Names{"dunmora.conf"});
}

TEST_F(IniUserDefaultsFileTest, AreSavedOnceADamagedFileIsCorrected)
{
    write(file_, "filterHome=true\njunk\n");
    standardErrorOf([&] {
        IniUserDefaults defaults(file_);
        store(defaults, "filterWork", true);
        write(file_, "filterHome=true\n");

        EXPECT_TRUE(defaults.synchronize());

        EXPECT_TRUE(defaults.boolForKey("filterHome"));
    });

    EXPECT_EQ(contentOf(file_), "filterHome=true\nfilterWork=true\n");
}

TEST_F(IniUserDefaultsFileTest, KeepTheirValuesWhenTheFileIsDamagedWhileInUse)
{
    const auto damage = std::string("\0\0\0\0", 4);
    IniUserDefaults defaults(file_);
    store(defaults, "filterHome", true);
    write(file_, damage);

    standardErrorOf([&] { store(defaults, "filterWork", true); });

    EXPECT_EQ(contentOf(file_), damage);
    EXPECT_TRUE(defaults.boolForKey("filterHome"));
    EXPECT_TRUE(defaults.boolForKey("filterWork"));
}

TEST_F(IniUserDefaultsFileTest, ReportOnceThatTheyCannotBeRead)
{
    std::filesystem::create_directory(file_);

    const auto messages = standardErrorOf([&] {
        IniUserDefaults defaults(file_);
        EXPECT_FALSE(defaults.hasValue("filterHome"));
        EXPECT_TRUE(defaults.synchronize());
    });

    EXPECT_EQ(messages, "dunmora: The preferences were not loaded. " + quotedFile() +
                            " cannot be read: Is a directory.\n");
    EXPECT_EQ(namesIn(settings_), Names{"dunmora.conf"});
}

TEST_F(IniUserDefaultsTest, NeverSendAControlCharacterOfAPathToTheTerminal)
{
    const auto file = folder_.path() / "a\x1B[2J\tb\x7Fü";
    std::filesystem::create_directory(file);

    const auto messages = standardErrorOf([&] { IniUserDefaults{file}; });

    EXPECT_EQ(messages, "dunmora: The preferences were not loaded. “" +
                            (folder_.path() / "a␛[2J␉b␡ü").string() +
                            "” cannot be read: Is a directory.\n");
}

TEST_F(IniUserDefaultsTest, ReportEachFailureToTheProgramToo)
{
    write(settings_, "a file where the folder should be");
    std::vector<std::string> reported;

    standardErrorOf([&] {
        IniUserDefaults defaults(file_,
                                 [&](const std::string& message) { reported.push_back(message); });
        store(defaults, "filterHome", true);
        EXPECT_EQ(reported.size(), 1U);
        std::filesystem::remove(settings_);
        std::filesystem::create_directories(file_);
        store(defaults, "filterHome", false);
    });

    EXPECT_EQ(reported, (std::vector<std::string>{
                            "The preferences were not saved and last until the program ends. " +
                                quotedFile() + " cannot be changed: Not a directory.",
                            "The preferences were not loaded. " + quotedFile() +
                                " cannot be read: Is a directory."}));
}

TEST_F(IniUserDefaultsFileTest, ReportToTheProgramAtOnceThatTheyCannotBeRead)
{
    write(file_, "junk\n");
    std::vector<std::string> reported;

    standardErrorOf([&] {
        const IniUserDefaults defaults(
            file_, [&](const std::string& message) { reported.push_back(message); });
    });

    EXPECT_EQ(reported,
              std::vector<std::string>{"The preferences were not loaded. " + quotedFile() +
                                       " is not a valid preferences file. Correct it or delete "
                                       "it."});
}

TEST_F(IniUserDefaultsTest, MayBeUsedWhileAFailureIsReported)
{
    write(settings_, "a file where the folder should be");
    int reports = 0;

    standardErrorOf([&] {
        UserDefaults* used = nullptr;
        IniUserDefaults defaults(file_, [&](const std::string& /*message*/) {
            ++reports;
            // As another thread does: a lock that is held would block it.
            std::jthread([&] {
                EXPECT_TRUE(used->boolForKey("filterHome"));
                EXPECT_FALSE(store(*used, "filterWork", true));
            });
        });
        used = &defaults;
        store(defaults, "filterHome", true);
    });

    EXPECT_EQ(reports, 1);
}

TEST_F(IniUserDefaultsFileTest, NeverWaitForAPipe)
{
    ASSERT_EQ(::mkfifo(file_.c_str(), 0600), 0);

    standardErrorOf([&] {
        IniUserDefaults defaults(file_);
        store(defaults, "filterHome", true);
        EXPECT_TRUE(defaults.boolForKey("filterHome"));
        EXPECT_FALSE(defaults.synchronize());
    });

    EXPECT_TRUE(std::filesystem::is_fifo(file_));
}

TEST_F(IniUserDefaultsFileTest, GiveUpWhenAnotherProgramKeepsTheFileLocked)
{
    write(file_, "filterWork=true\n");
    const int other = ::open(file_.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(::flock(other, LOCK_EX), 0);
    IniUserDefaults defaults(file_, {}, std::chrono::milliseconds(10));

    const auto messages = standardErrorOf([&] {
        EXPECT_FALSE(store(defaults, "filterHome", true));
        EXPECT_FALSE(defaults.synchronize());
    });
    EXPECT_TRUE(defaults.boolForKey("filterHome"));
    EXPECT_TRUE(defaults.boolForKey("filterWork"));
    ::close(other);
    EXPECT_TRUE(defaults.synchronize());

    EXPECT_EQ(messages,
              kNotSaved + quotedFile() +
                  " cannot be changed: another program has locked it. Try again later.\n");
    EXPECT_EQ(contentOf(file_), "filterWork=true\nfilterHome=true\n");
}

/// Stores a value in a child process. Another program writes the file whenever this one is about to
/// flush its new content. Returns what the child writes to standard error; nullopt where processes
/// cannot be traced.
std::optional<std::string> storeDuring(const std::function<void(int)>& writeOfOther,
                                       const std::filesystem::path& file,
                                       const std::filesystem::path& messages)
{
    int writes = 0;
    const auto end = traceChild(
        [&] {
            EXPECT_NE(std::freopen(messages.c_str(), "w", stderr), nullptr);
            IniUserDefaults defaults(file);
            store(defaults, "filterHome", true);
            std::fflush(stderr);
        },
        [&](SystemCall call) {
            if (call.number == SYS_fsync && call.moment == SystemCall::Moment::Before) {
                writeOfOther(writes++);
            }
            return Fate::Continue;
        });
    return end == End::CannotBeTraced ? std::nullopt : std::optional(contentOf(messages));
}

TEST_F(IniUserDefaultsFileTest, AreSavedIntoWhatAnotherProgramWritesMeanwhile)
{
    write(file_, "filterWork=false\n");

    const auto messages = storeDuring(
        [&](int writes) {
            if (writes == 0) {
                write(file_, "filterWork=true\n");
            }
        },
        file_, folder_.path() / "messages");

    if (!messages) {
        GTEST_SKIP() << "Processes cannot be traced here.";
    }
    EXPECT_EQ(*messages, "");
    EXPECT_EQ(contentOf(file_), "filterWork=true\nfilterHome=true\n");
}

TEST_F(IniUserDefaultsFileTest, ReportThatAnotherProgramKeepsWriting)
{
    write(file_, "");

    const auto messages = storeDuring(
        [&](int writes) { write(file_, "filterWork=true\n" + std::string(writes, '\n')); }, file_,
        folder_.path() / "messages");

    if (!messages) {
        GTEST_SKIP() << "Processes cannot be traced here.";
    }
    EXPECT_EQ(*messages, kNotSaved + quotedFile() +
                             " is being changed by another program. Try again later.\n");
    EXPECT_EQ(contentOf(file_), "filterWork=true\n\n\n");
}

TEST_F(IniUserDefaultsTest, LoseNoKeyWhenTwoProcessesSetAtOnce)
{
    constexpr int kKeys = 200;
    const auto setAll = [&](const std::string& prefix) {
        IniUserDefaults defaults(file_);
        for (int i = 0; i < kKeys; ++i) {
            store(defaults, prefix + std::to_string(i), true);
        }
    };

    const auto ann = startProcess([&] { setAll("ann"); });
    const auto ben = startProcess([&] { setAll("ben"); });

    EXPECT_EQ(endOf(ann), 0);
    EXPECT_EQ(endOf(ben), 0);
    const IniUserDefaults defaults(file_);
    for (int i = 0; i < kKeys; ++i) {
        EXPECT_TRUE(defaults.boolForKey("ann" + std::to_string(i))) << i;
        EXPECT_TRUE(defaults.boolForKey("ben" + std::to_string(i))) << i;
    }
    EXPECT_EQ(namesIn(settings_), Names{"dunmora.conf"});
}

TEST_F(IniUserDefaultsTest, KeepTheValuesOfOneOfTwoProcessesThatStoreSeveralAtOnce)
{
    const auto keys = {"filterFirstname", "filterLastname", "filterNickname",
                       "filterHome",      "filterWork",     "filterMobile"};
    const auto storeAll = [&](bool value) {
        IniUserDefaults defaults(file_);
        for (int round = 0; round < 100; ++round) {
            for (const auto* const key : keys) {
                defaults.setBool(key, value);
            }
            defaults.synchronize();
        }
    };
    const auto on = startProcess([&] { storeAll(true); });
    const auto off = startProcess([&] { storeAll(false); });

    IniUserDefaults defaults(file_);
    while (::waitpid(on, nullptr, WNOHANG) == 0) {
        defaults.synchronize();
        const bool first = defaults.boolForKey("filterFirstname");
        for (const auto* const key : keys) {
            EXPECT_EQ(defaults.boolForKey(key), first) << key;
        }
    }

    EXPECT_EQ(endOf(off), 0);
    EXPECT_TRUE(defaults.hasValue("filterMobile"));
}

/// A process that keeps setting keys and reports each set through a pipe.
class EndlessWriter final {
public:
    explicit EndlessWriter(const std::filesystem::path& file)
    {
        EXPECT_EQ(::pipe(pipe_.data()), 0);
        process_ = startProcess([&] {
            // With the last reading end closed, the write below fails and ends the process.
            ::close(pipe_[0]);
            IniUserDefaults defaults(file);
            for (int i = 0;; ++i) {
                store(defaults, "moving" + std::to_string(i % 10), i % 20 < 10);
                if (::write(pipe_[1], ".", 1) != 1) {
                    ::_exit(1);
                }
            }
        });
        ::close(pipe_[1]);
    }
    ~EndlessWriter() { ::close(pipe_[0]); }
    EndlessWriter(const EndlessWriter&) = delete;
    EndlessWriter& operator=(const EndlessWriter&) = delete;

    /// Kills the process during the set after this many.
    int killAfter(int sets) const
    {
        char report = 0;
        for (int i = 0; i < sets; ++i) {
            EXPECT_EQ(::read(pipe_[0], &report, 1), 1);
        }
        ::kill(process_, SIGKILL);
        return endOf(process_);
    }

private:
    std::array<int, 2> pipe_{};
    pid_t process_ = -1;
};

TEST_F(IniUserDefaultsTest, AreCompleteAfterAKillBetweenWrites)
{
    constexpr int kSteady = 50;
    {
        IniUserDefaults defaults(file_);
        for (int i = 0; i < kSteady; ++i) {
            store(defaults, "steady" + std::to_string(i), true);
        }
    }
    for (int round = 1; round <= 20; ++round) {
        EXPECT_TRUE(WIFSIGNALED(EndlessWriter(file_).killAfter(round)));

        IniUserDefaults defaults(file_);
        for (int i = 0; i < kSteady; ++i) {
            ASSERT_TRUE(defaults.boolForKey("steady" + std::to_string(i))) << i;
        }
        for (int i = 0; i < std::min(round, 10); ++i) {
            ASSERT_TRUE(defaults.hasValue("moving" + std::to_string(i))) << i;
        }
        store(defaults, "after", round % 2 == 0);
        ASSERT_TRUE(defaults.synchronize());
        // Only a kill right after an exchange leaves the old file for good.
        for (const auto& leftover : leftoversIn(settings_)) {
            EXPECT_EQ(leftover.kind, Leftover::Kind::Replaced);
            std::filesystem::remove(leftover.path);
        }
        ASSERT_EQ(namesIn(settings_), Names{"dunmora.conf"});
    }
}

/// Sets or unsets an environment variable, and restores it when destroyed.
class ChangedVariable final {
public:
    ChangedVariable(const char* name, const char* value) : name_(name)
    {
        // NOLINTNEXTLINE(concurrency-mt-unsafe): these tests have one thread
        if (const char* before = std::getenv(name)) {
            before_ = before;
        }
        assign(value);
    }
    ~ChangedVariable() { assign(before_ ? before_->c_str() : nullptr); }
    ChangedVariable(const ChangedVariable&) = delete;
    ChangedVariable& operator=(const ChangedVariable&) = delete;

private:
    void assign(const char* value) const
    {
        // NOLINTNEXTLINE(concurrency-mt-unsafe): these tests have one thread
        value != nullptr ? ::setenv(name_, value, 1) : ::unsetenv(name_);
    }

    const char* name_;
    std::optional<std::string> before_;
};

TEST(IniUserDefaultsPlace, IsTheFolderInXdgConfigHome)
{
    const ChangedVariable folder("XDG_CONFIG_HOME", "/settings");

    EXPECT_EQ(IniUserDefaults::perUserFile(), "/settings/dunmora/dunmora.conf");
}

TEST(IniUserDefaultsPlace, IsInTheHomeFolderWhenXdgConfigHomeIsUnsetEmptyOrRelative)
{
    const ChangedVariable home("HOME", "/home/ann");
    for (const char* value : {static_cast<const char*>(nullptr), "", "settings", "./settings"}) {
        const ChangedVariable folder("XDG_CONFIG_HOME", value);

        EXPECT_EQ(IniUserDefaults::perUserFile(), "/home/ann/.config/dunmora/dunmora.conf");
    }
}

TEST(IniUserDefaultsPlace, IsFoundWithoutAHomeVariable)
{
    const ChangedVariable folder("XDG_CONFIG_HOME", nullptr);
    const ChangedVariable home("HOME", nullptr);

    const auto file = IniUserDefaults::perUserFile();

    EXPECT_TRUE(file.is_absolute());
    EXPECT_TRUE(file.string().ends_with("/.config/dunmora/dunmora.conf"));
}

}  // namespace
}  // namespace dunmora::test
