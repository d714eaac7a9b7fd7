#include "adapters/posix/ProcessShutdown.h"

#include "adapters/posix/UnfinishedFile.h"
#include "tests/fakes/TemporaryFolder.h"

#include <fcntl.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

namespace dunmora::test {
namespace {

using namespace std::chrono_literals;
using testing::ExitedWithCode;
using testing::KilledBySignal;

constexpr int kStatus = 3;

class ProcessShutdownDeathTest : public testing::Test {
protected:
    std::filesystem::path file(std::string_view name) const { return folder_.path() / name; }

    /// Runs the body on another thread; returns when the body has called its argument.
    static void startWork(const std::function<void(const std::function<void()>&)>& body)
    {
        std::atomic<bool> hasStarted = false;
        std::thread([&hasStarted, body] { body([&hasStarted] { hasStarted = true; }); }).detach();
        while (!hasStarted) {
            std::this_thread::yield();
        }
    }

    /// Waits until another thread exits the process.
    static void waitForExit() { std::this_thread::sleep_for(1min); }

    static void useMemoryFor(std::chrono::steady_clock::duration time)
    {
        const auto end = std::chrono::steady_clock::now() + time;
        while (std::chrono::steady_clock::now() < end) {
            const std::vector<std::string> pieces(100, std::string(100, 'x'));
            EXPECT_EQ(pieces.size(), 100U);
        }
    }

private:
    TemporaryFolder folder_;
};

TEST_F(ProcessShutdownDeathTest, ExitsWithTheStatus)
{
    EXPECT_EXIT(exitProcess(kStatus), ExitedWithCode(kStatus), "");
}

TEST_F(ProcessShutdownDeathTest, WaitsForAnInhibitor)
{
    EXPECT_EXIT(
        {
            startWork([&](const auto& started) {
                const ShutdownInhibitor inhibitor;
                started();
                std::this_thread::sleep_for(100ms);
                write(file("done"), "");
            });
            exitProcess(kStatus);
        },
        ExitedWithCode(kStatus), "");

    EXPECT_TRUE(std::filesystem::exists(file("done")));
}

TEST_F(ProcessShutdownDeathTest, WaitsForTheOuterOfNestedInhibitors)
{
    EXPECT_EXIT(
        {
            startWork([&](const auto& started) {
                const ShutdownInhibitor outer;
                started();
                // By then the exit has started.
                std::this_thread::sleep_for(100ms);
                {
                    const ShutdownInhibitor inner;
                }
                write(file("done"), "");
            });
            exitProcess(kStatus);
        },
        ExitedWithCode(kStatus), "");

    EXPECT_TRUE(std::filesystem::exists(file("done")));
}

TEST_F(ProcessShutdownDeathTest, NeverExitsInTheMiddleOfAnInhibitedChange)
{
    constexpr int kRuns = 50;
    for (int run = 0; run < kRuns; ++run) {
        write(file("here"), "");

        EXPECT_EXIT(
            {
                startWork([&](const auto& started) {
                    started();
                    while (true) {
                        const ShutdownInhibitor inhibitor;
                        std::filesystem::rename(file("here"), file("elsewhere"));
                        std::filesystem::rename(file("elsewhere"), file("here"));
                    }
                });
                std::this_thread::sleep_for(run * 37us);
                exitProcess(kStatus);
            },
            ExitedWithCode(kStatus), "");

        ASSERT_TRUE(std::filesystem::exists(file("here")));
        ASSERT_FALSE(std::filesystem::exists(file("elsewhere")));
    }
}

TEST_F(ProcessShutdownDeathTest, DoesNotWaitForAHungInhibitor)
{
    const auto before = std::chrono::steady_clock::now();

    EXPECT_EXIT(
        {
            startWork([](const auto& started) {
                const ShutdownInhibitor inhibitor;
                started();
                std::this_thread::sleep_for(1min);
            });
            exitProcess(kStatus);
        },
        ExitedWithCode(kStatus), "");

    EXPECT_LT(std::chrono::steady_clock::now() - before, 30s);
}

TEST_F(ProcessShutdownDeathTest, DeletesUnfinishedFiles)
{
    EXPECT_EXIT(
        {
            const UnfinishedFile first(file("first"), O_WRONLY, S_IRUSR);
            const UnfinishedFile second(file("second"), O_WRONLY, S_IRUSR);
            UnfinishedFile kept(file("kept"), O_WRONLY, S_IRUSR);
            UnfinishedFile moved(file("third"), O_WRONLY, S_IRUSR);
            kept.finish();
            moved.renameTo(file("moved"));
            exitProcess(kStatus);
        },
        ExitedWithCode(kStatus), "");

    EXPECT_EQ(namesIn(file("")), (std::set<std::string>{"kept"}));
}

TEST_F(ProcessShutdownDeathTest, DeletesUnfinishedFilesOfOtherThreads)
{
    EXPECT_EXIT(
        {
            startWork([&](const auto& started) {
                const UnfinishedFile unfinished(file("unfinished"), O_WRONLY, S_IRUSR);
                started();
                std::this_thread::sleep_for(1min);
            });
            exitProcess(kStatus);
        },
        ExitedWithCode(kStatus), "");

    EXPECT_FALSE(std::filesystem::exists(file("unfinished")));
}

TEST_F(ProcessShutdownDeathTest, ExitsCleanlyOnSignals)
{
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        for (const auto status : {std::optional(kStatus), std::optional<int>()}) {
            const auto raiseSignal = [&] {
                std::signal(signal, SIG_DFL);
                exitOnSignals(status);
                const UnfinishedFile unfinished(file("unfinished"), O_WRONLY, S_IRUSR);
                std::raise(signal);
                waitForExit();
            };

            if (status) {
                EXPECT_EXIT(raiseSignal(), ExitedWithCode(kStatus), "");
            } else {
                EXPECT_EXIT(raiseSignal(), KilledBySignal(signal), "");
            }

            EXPECT_FALSE(std::filesystem::exists(file("unfinished")));
        }
    }
}

TEST_F(ProcessShutdownDeathTest, IgnoresASignalThatWasIgnoredAtTheStart)
{
    EXPECT_EXIT(
        {
            std::signal(SIGHUP, SIG_IGN);
            exitOnSignals(EXIT_SUCCESS);
            std::raise(SIGHUP);
            std::_Exit(kStatus);
        },
        ExitedWithCode(kStatus), "");
}

TEST_F(ProcessShutdownDeathTest, WaitsForTheInhibitorOfTheInterruptedThread)
{
    EXPECT_EXIT(
        {
            exitOnSignals(kStatus);
            {
                const ShutdownInhibitor inhibitor;
                std::raise(SIGTERM);
                std::this_thread::sleep_for(100ms);
                write(file("done"), "");
            }
            waitForExit();
        },
        ExitedWithCode(kStatus), "");

    EXPECT_TRUE(std::filesystem::exists(file("done")));
}

/// The interrupted thread may hold the allocator's lock, which the inhibited work needs too.
TEST_F(ProcessShutdownDeathTest, WaitsForAnInhibitorThatAllocatesWhateverASignalInterrupts)
{
    constexpr int kRuns = 10;
    for (int run = 0; run < kRuns; ++run) {
        EXPECT_EXIT(
            {
                exitOnSignals(kStatus);
                startWork([&](const auto& started) {
                    const ShutdownInhibitor inhibitor;
                    started();
                    useMemoryFor(50ms);
                    write(file("done"), "");
                });
                kill(getpid(), SIGTERM);
                useMemoryFor(1min);
            },
            ExitedWithCode(kStatus), "");

        ASSERT_TRUE(std::filesystem::remove(file("done")));
    }
}

TEST_F(ProcessShutdownDeathTest, WaitsForAnInhibitorOfAnotherThreadAtASignal)
{
    EXPECT_EXIT(
        {
            exitOnSignals(kStatus);
            startWork([&](const auto& started) {
                const ShutdownInhibitor inhibitor;
                started();
                std::this_thread::sleep_for(100ms);
                write(file("done"), "");
            });
            kill(getpid(), SIGTERM);
            waitForExit();
        },
        ExitedWithCode(kStatus), "");

    EXPECT_TRUE(std::filesystem::exists(file("done")));
}

}  // namespace
}  // namespace dunmora::test
