#include "adapters/posix/FileChanges.h"
#include "adapters/posix/FileRemoval.h"
#include "adapters/posix/FileReplacement.h"
#include "adapters/posix/Leftover.h"
#include "tests/adapters/posix/FileTest.h"
#include "tests/fakes/ChildProcess.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <future>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace dunmora::test {
namespace {

namespace fs = std::filesystem;

/// What another program does to the file while it is changed.
enum class Act { Append, KeepOpen, Replace, Remove };

constexpr auto kActs = {Act::Append, Act::KeepOpen, Act::Replace, Act::Remove};

/// What the other programs write, which must never be lost.
constexpr std::string_view kEarly = "+written early";
constexpr std::string_view kLate = "+written late";

/// Another program that changes the file in place, like an editor, or as a whole. A lease can make
/// it wait in open(2), so it has a thread of its own.
class OtherProgram final {
public:
    OtherProgram(fs::path file, std::string_view text) : file_(std::move(file)), text_(text) {}

    /// Acts now, or as soon as a lease allows it.
    void act(Act act)
    {
        act_ = act;
        switch (act) {
        case Act::Append:
        case Act::KeepOpen:
            opening_ = std::async(std::launch::async, [this] { open(); });
            // Either it is open, or it waits for the end of the lease.
            opening_.wait_for(std::chrono::milliseconds(5));
            break;
        case Act::Replace:
            write(replacement(), text_);
            fs::rename(replacement(), file_);
            hasWritten_ = true;
            break;
        case Act::Remove:
            fs::remove(file_);
            break;
        }
    }

    /// Writes what a program that has the file open writes at its end. Returns whether it has
    /// written anything.
    bool end()
    {
        if (opening_.valid()) {
            opening_.get();
        }
        if (writer_.isOpen()) {
            hasWritten_ = writeAll(writer_, text_);
            writer_ = Descriptor();
        }
        return hasWritten_;
    }

    bool hasRemoved() const { return act_ == Act::Remove; }

private:
    fs::path replacement() const { return file_.parent_path() / "replacement"; }

    void open()
    {
        writer_ = Descriptor(::open(file_.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC));
        if (writer_.isOpen() && act_ == Act::Append) {
            hasWritten_ = writeAll(writer_, text_);
            writer_ = Descriptor();
        }
    }

    fs::path file_;
    std::string_view text_;
    Act act_ = Act::Append;
    bool hasWritten_ = false;
    Descriptor writer_;
    std::future<void> opening_;
};

/// Changes a file while other programs act at every moment of the change, one run for each.
class FileRaceTest : public FileTest {
protected:
    using Texts = std::vector<std::string_view>;

    struct Run {
        int calls = 0;
        bool canTrace = true;
    };

    fs::path file() const { return path("book"); }

    /// Runs the change in a child. The other program does `first`, if any, right before the first
    /// renaming, and `act` at the call with this number, counted from the first renaming.
    Run run(bool isRemoval, std::optional<Act> first, Act act, int atCall)
    {
        fs::remove_all(file());
        write(file(), "old");
        const TemporaryFolder elsewhere;
        const auto message = elsewhere.path() / "message";
        OtherProgram early(file(), kEarly);
        OtherProgram other(file(), kLate);
        bool isEarlyDone = false;
        bool isDone = false;
        Run result;
        const auto end = traceChild([&] { write(message, failureOf([&] { change(isRemoval); })); },
                                    [&](SystemCall call) {
                                        if (result.calls == 0 && call.number != SYS_renameat2) {
                                            return Fate::Continue;
                                        }
                                        if (first && !isEarlyDone) {
                                            early.act(*first);
                                            isEarlyDone = true;
                                        }
                                        if (result.calls++ == atCall) {
                                            other.act(act);
                                            isDone = true;
                                        }
                                        return Fate::Continue;
                                    });
        result.canTrace = end != End::CannotBeTraced;
        if (!result.canTrace) {
            return result;
        }
        Texts written;
        if (isEarlyDone && early.end()) {
            written.push_back(kEarly);
        }
        if (isDone && other.end()) {
            written.push_back(kLate);
        }
        look(isRemoval, contentOf(message), written,
             (isDone && other.hasRemoved()) || (isEarlyDone && early.hasRemoved()),
             isDone && act == Act::Replace);
        for (const auto& name : namesIn(folder())) {
            fs::remove_all(path(name));
        }
        return result;
    }

    /// Calls `run` with every moment. Returns the number of runs; 0 where nothing can be traced.
    int runAtEveryCall(bool isRemoval, std::optional<Act> first)
    {
        int runs = 0;
        for (const auto act : kActs) {
            for (int atCall = 0;; ++atCall, ++runs) {
                SCOPED_TRACE("act " + std::to_string(static_cast<int>(act)) + " at call " +
                             std::to_string(atCall));
                const auto [calls, canTrace] = run(isRemoval, first, act, atCall);
                if (!canTrace || HasFailure()) {
                    return 0;
                }
                if (calls <= atCall) {
                    break;
                }
            }
        }
        return runs;
    }

private:
    void change(bool isRemoval)
    {
        auto locked = LockedFile::open({file()});
        locked.expectContent({"old"});
        FileChanges changes;
        if (isRemoval) {
            changes.add(std::make_unique<FileRemoval>(std::move(locked)), file());
        } else {
            changes.add(std::make_unique<FileReplacement>(std::move(locked), Pieces{"new"}),
                        file());
        }
        changes.commit([](std::size_t) {});
    }

    /// Everything that somebody has written is in the file, or in one that the message names. Only
    /// another program that removes or replaces the file takes it away.
    void look(bool isRemoval, const std::string& message, const Texts& written, bool hasRemoved,
              bool hasReplaced)
    {
        // As the next deletion does first.
        removeUnusedFiles(folder());
        std::string findable = fs::exists(file()) ? contentOf(file()) : "";
        for (const auto& name : namesIn(folder())) {
            if (name == "book") {
                continue;
            }
            EXPECT_NE(message.find(path(name).string()), std::string::npos)
                << name << " is not named: " << message;
            findable += contentOf(path(name));
        }
        const auto isFindable = [&](std::string_view text) {
            return findable.find(text) != std::string::npos;
        };
        for (const auto text : written) {
            EXPECT_TRUE(isFindable(text) || hasRemoved || (hasReplaced && text != kLate))
                << text << " is lost: " << findable << ", " << message;
        }
        if (message == kNothingThrown) {
            EXPECT_FALSE(isFindable("old")) << findable;
            EXPECT_TRUE(isRemoval || hasRemoved || !written.empty() || findable == "new")
                << findable;
        } else {
            EXPECT_TRUE(isFindable("old") || hasRemoved || hasReplaced) << findable << message;
        }
    }
};

TEST_F(FileRaceTest, LosesNothingThatIsWrittenDuringAReplacement)
{
    const auto runs = runAtEveryCall(false, std::nullopt);
    if (runs == 0 && !HasFailure()) {
        GTEST_SKIP() << "Processes cannot be traced here.";
    }

    EXPECT_GT(runs, 50);
    std::cout << runs << " runs\n";
}

TEST_F(FileRaceTest, LosesNothingThatIsWrittenDuringARemoval)
{
    const auto runs = runAtEveryCall(true, std::nullopt);
    if (runs == 0 && !HasFailure()) {
        GTEST_SKIP() << "Processes cannot be traced here.";
    }

    EXPECT_GT(runs, 50);
    std::cout << runs << " runs\n";
}

TEST_F(FileRaceTest, LosesNothingThatIsWrittenBeforeTheWayBack)
{
    int runs = 0;
    for (const bool isRemoval : {false, true}) {
        SCOPED_TRACE(isRemoval ? "removal" : "replacement");
        runs += runAtEveryCall(isRemoval, Act::Append);
    }
    if (runs == 0 && !HasFailure()) {
        GTEST_SKIP() << "Processes cannot be traced here.";
    }

    EXPECT_GT(runs, 200);
    std::cout << runs << " runs\n";
}

}  // namespace
}  // namespace dunmora::test
