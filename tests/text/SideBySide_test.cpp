#include "text/SideBySide.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <functional>
#include <latch>
#include <mutex>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <sys/resource.h>
#include <unistd.h>

namespace dunmora::test {
namespace {

std::string failureOf(std::size_t count, std::size_t threads,
                      const std::function<void(std::size_t)>& task)
{
    try {
        runSideBySide(count, threads, task);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "";
}

/// Which threads ran the tasks.
std::set<std::thread::id> threadsOf(std::size_t count, std::size_t threads)
{
    std::mutex mutex;
    std::set<std::thread::id> seen;
    runSideBySide(count, threads, [&](std::size_t) {
        const std::lock_guard lock(mutex);
        seen.insert(std::this_thread::get_id());
    });
    return seen;
}

TEST(SideBySide, RunsEveryTaskOnce)
{
    for (const std::size_t threads : {1, 2, 7}) {
        std::vector<int> runs(100);

        runSideBySide(runs.size(), threads, [&](std::size_t i) { ++runs[i]; });

        EXPECT_EQ(runs, std::vector<int>(100, 1)) << threads;
    }
}

TEST(SideBySide, RunsTasksAtTheSameTime)
{
    std::latch both(2);

    runSideBySide(2, 2, [&](std::size_t) { both.arrive_and_wait(); });

    EXPECT_TRUE(both.try_wait());
}

TEST(SideBySide, UsesOnlyTheCallersThreadWhenOneIsEnough)
{
    const std::set caller{std::this_thread::get_id()};

    EXPECT_EQ(threadsOf(20, 1), caller);
    EXPECT_EQ(threadsOf(20, 0), caller);
    EXPECT_EQ(threadsOf(1, 4), caller);
    EXPECT_TRUE(threadsOf(0, 4).empty());
}

TEST(SideBySide, TakesNoMoreThreadsThanItIsGiven)
{
    EXPECT_LE(threadsOf(1000, 3).size(), 3U);
}

TEST(SideBySide, StartsTasksInTheirOrder)
{
    std::vector<std::size_t> order;

    runSideBySide(5, 1, [&](std::size_t i) { order.push_back(i); });

    EXPECT_EQ(order, (std::vector<std::size_t>{0, 1, 2, 3, 4}));
}

TEST(SideBySide, StartsNothingAfterATaskFails)
{
    std::vector<int> runs(4);

    const auto failure = failureOf(runs.size(), 1, [&](std::size_t i) {
        ++runs[i];
        if (i == 1) {
            throw std::runtime_error("one");
        }
    });

    EXPECT_EQ(failure, "one");
    EXPECT_EQ(runs, (std::vector{1, 1, 0, 0}));
}

TEST(SideBySide, ThrowsWhatTheLowestNumberThrew)
{
    std::latch secondFails(1);

    const auto failure = failureOf(2, 2, [&](std::size_t i) {
        if (i == 0) {
            secondFails.wait();
            throw std::runtime_error("first");
        }
        secondFails.count_down();
        throw std::runtime_error("second");
    });

    EXPECT_EQ(failure, "first");
}

TEST(SideBySide, KeepsTheLowestFailureWhenAHigherOneFollows)
{
    std::latch firstFails(1);

    const auto failure = failureOf(2, 2, [&](std::size_t i) {
        if (i == 1) {
            firstFails.wait();
            throw std::runtime_error("second");
        }
        firstFails.count_down();
        throw std::runtime_error("first");
    });

    EXPECT_EQ(failure, "first");
}

TEST(SideBySide, DoesWithoutThreadsThatTheSystemRefuses)
{
    const auto runWithoutThreads = [] {
        // The limit does not count for root.
        constexpr uid_t kNobody = 65534;
        const rlimit none{0, 0};
        if ((getuid() == 0 && setuid(kNobody) != 0) || setrlimit(RLIMIT_NPROC, &none) != 0) {
            _exit(2);
        }
        std::vector<int> runs(10);
        runSideBySide(runs.size(), 3, [&](std::size_t i) { ++runs[i]; });
        _exit(runs == std::vector<int>(10, 1) ? EXIT_SUCCESS : EXIT_FAILURE);
    };

    EXPECT_EXIT(runWithoutThreads(), testing::ExitedWithCode(EXIT_SUCCESS), "");
}

TEST(SideBySide, KnowsAtLeastOneProcessor)
{
    EXPECT_GE(processors(), 1U);
}

}  // namespace
}  // namespace dunmora::test
