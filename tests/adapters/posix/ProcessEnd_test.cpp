#include "adapters/posix/ProcessEnd.h"

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

class ProcessEndDeathTest : public testing::Test {
protected:
    std::filesystem::path file(std::string_view name) const { return folder_.path() / name; }

    /// Runs the work on a thread of its own; returns when it has called its argument.
    static void startWork(const std::function<void(const std::function<void()>&)>& body)
    {
        std::atomic<bool> hasBegun = false;
        std::thread([&hasBegun, body] { body([&hasBegun] { hasBegun = true; }); }).detach();
        while (!hasBegun) {
            std::this_thread::yield();
        }
    }

    /// Another thread ends the process.
    static void waitForEnd() { std::this_thread::sleep_for(1min); }

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

TEST_F(ProcessEndDeathTest, EndsWithTheStatus)
{
    EXPECT_EXIT(endProcess(kStatus), ExitedWithCode(kStatus), "");
}

TEST_F(ProcessEndDeathTest, WaitsForUnbrokenWork)
{
    EXPECT_EXIT(
        {
            startWork([&](const auto& begun) {
                const UnbrokenWork unbroken;
                begun();
                std::this_thread::sleep_for(100ms);
                write(file("done"), "");
            });
            endProcess(kStatus);
        },
        ExitedWithCode(kStatus), "");

    EXPECT_TRUE(std::filesystem::exists(file("done")));
}

TEST_F(ProcessEndDeathTest, WaitsForAllOfWorkThatNests)
{
    EXPECT_EXIT(
        {
            startWork([&](const auto& begun) {
                const UnbrokenWork outer;
                begun();
                // The end has come by then.
                std::this_thread::sleep_for(100ms);
                {
                    const UnbrokenWork inner;
                }
                write(file("done"), "");
            });
            endProcess(kStatus);
        },
        ExitedWithCode(kStatus), "");

    EXPECT_TRUE(std::filesystem::exists(file("done")));
}

TEST_F(ProcessEndDeathTest, FindsAllOfUnbrokenWorkDoneOrNothing)
{
    constexpr int kEnds = 50;
    for (int end = 0; end < kEnds; ++end) {
        write(file("here"), "");

        EXPECT_EXIT(
            {
                startWork([&](const auto& begun) {
                    begun();
                    while (true) {
                        const UnbrokenWork unbroken;
                        std::filesystem::rename(file("here"), file("elsewhere"));
                        std::filesystem::rename(file("elsewhere"), file("here"));
                    }
                });
                std::this_thread::sleep_for(end * 37us);
                endProcess(kStatus);
            },
            ExitedWithCode(kStatus), "");

        ASSERT_TRUE(std::filesystem::exists(file("here")));
        ASSERT_FALSE(std::filesystem::exists(file("elsewhere")));
    }
}

TEST_F(ProcessEndDeathTest, DoesNotWaitForWorkThatHangs)
{
    const auto started = std::chrono::steady_clock::now();

    EXPECT_EXIT(
        {
            startWork([](const auto& begun) {
                const UnbrokenWork unbroken;
                begun();
                std::this_thread::sleep_for(1min);
            });
            endProcess(kStatus);
        },
        ExitedWithCode(kStatus), "");

    EXPECT_LT(std::chrono::steady_clock::now() - started, 30s);
}

TEST_F(ProcessEndDeathTest, TakesUnfinishedFilesAway)
{
    EXPECT_EXIT(
        {
            const UnfinishedFile first(file("first"), O_WRONLY, S_IRUSR);
            const UnfinishedFile second(file("second"), O_WRONLY, S_IRUSR);
            UnfinishedFile kept(file("kept"), O_WRONLY, S_IRUSR);
            UnfinishedFile moved(file("beside"), O_WRONLY, S_IRUSR);
            kept.finish();
            moved.finishAs(file("moved"));
            endProcess(kStatus);
        },
        ExitedWithCode(kStatus), "");

    EXPECT_EQ(namesIn(file("")), (std::set<std::string>{"kept", "moved"}));
}

TEST_F(ProcessEndDeathTest, TakesUnfinishedFilesOfOtherThreadsAway)
{
    EXPECT_EXIT(
        {
            startWork([&](const auto& begun) {
                const UnfinishedFile unfinished(file("unfinished"), O_WRONLY, S_IRUSR);
                begun();
                std::this_thread::sleep_for(1min);
            });
            endProcess(kStatus);
        },
        ExitedWithCode(kStatus), "");

    EXPECT_FALSE(std::filesystem::exists(file("unfinished")));
}

TEST_F(ProcessEndDeathTest, EndsBySignalsInOrder)
{
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        for (const auto status : {std::optional(kStatus), std::optional<int>()}) {
            const auto end = [&] {
                std::signal(signal, SIG_DFL);
                endOnSignals(status);
                const UnfinishedFile unfinished(file("unfinished"), O_WRONLY, S_IRUSR);
                std::raise(signal);
                waitForEnd();
            };

            if (status) {
                EXPECT_EXIT(end(), ExitedWithCode(kStatus), "");
            } else {
                EXPECT_EXIT(end(), KilledBySignal(signal), "");
            }

            EXPECT_FALSE(std::filesystem::exists(file("unfinished")));
        }
    }
}

TEST_F(ProcessEndDeathTest, IgnoresASignalThatItWasStartedToIgnore)
{
    EXPECT_EXIT(
        {
            std::signal(SIGHUP, SIG_IGN);
            endOnSignals(EXIT_SUCCESS);
            std::raise(SIGHUP);
            std::_Exit(kStatus);
        },
        ExitedWithCode(kStatus), "");
}

TEST_F(ProcessEndDeathTest, FinishesUnbrokenWorkOfTheThreadThatASignalInterrupts)
{
    EXPECT_EXIT(
        {
            endOnSignals(kStatus);
            {
                const UnbrokenWork unbroken;
                std::raise(SIGTERM);
                std::this_thread::sleep_for(100ms);
                write(file("done"), "");
            }
            waitForEnd();
        },
        ExitedWithCode(kStatus), "");

    EXPECT_TRUE(std::filesystem::exists(file("done")));
}

/// A signal may interrupt a thread that holds the lock of the memory, which the work needs too.
TEST_F(ProcessEndDeathTest, FinishesUnbrokenWorkThatNeedsMemoryWhateverASignalInterrupts)
{
    constexpr int kEnds = 10;
    for (int end = 0; end < kEnds; ++end) {
        EXPECT_EXIT(
            {
                endOnSignals(kStatus);
                startWork([&](const auto& begun) {
                    const UnbrokenWork unbroken;
                    begun();
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

TEST_F(ProcessEndDeathTest, WaitsForUnbrokenWorkOfAnotherThreadAtASignal)
{
    EXPECT_EXIT(
        {
            endOnSignals(kStatus);
            startWork([&](const auto& begun) {
                const UnbrokenWork unbroken;
                begun();
                std::this_thread::sleep_for(100ms);
                write(file("done"), "");
            });
            kill(getpid(), SIGTERM);
            waitForEnd();
        },
        ExitedWithCode(kStatus), "");

    EXPECT_TRUE(std::filesystem::exists(file("done")));
}

}  // namespace
}  // namespace dunmora::test
