#include "base/NotificationCenter.h"
#include "bench/QtDesktop.h"
#include "tests/fakes/QuietDesktop.h"
#include "ui/ProgressWindowController.h"

#include <benchmark/benchmark.h>

#include <QEventLoop>

#include <chrono>
#include <memory>
#include <thread>

namespace dunmora::bench {

namespace {

/// As many posts as a job makes in one pass over a big address book.
constexpr std::int32_t kPosts = 100'000;

using Seconds = std::chrono::duration<double>;

/// Returns the time that a worker needs for all posts of a pass while the main thread handles
/// events.
template <typename Post>
Seconds timeOfPass(Post post)
{
    QEventLoop mainLoop;
    Seconds time{};
    std::jthread worker([&] {
        const auto begin = std::chrono::steady_clock::now();
        for (std::int32_t i = 0; i < kPosts; ++i) {
            post(i);
        }
        time = std::chrono::steady_clock::now() - begin;
        QMetaObject::invokeMethod(&mainLoop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    mainLoop.exec();
    worker.join();
    return time;
}

/// Uses one object for all posts, as a job does.
Seconds timeOfProgress()
{
    const auto progress = std::make_shared<Progress>(Progress{.total = kPosts, .current = 0});
    return timeOfPass([&progress](std::int32_t i) {
        progress->current = i;
        NotificationCenter::defaultCenter().postNotification(kMsgProgress, &progress, progress);
    });
}

Seconds timeOfMessages()
{
    return timeOfPass([](std::int32_t i) {
        NotificationCenter::defaultCenter().postText(
            kMsgShowMessage, nullptr, i % 2 == 0 ? "Sorting contacts..." : "Loading Contacts...");
    });
}

/// Compares a pass with an open Qt window with a pass with a fake window and one without observers.
/// All are in the same iteration, so that other work on the computer affects them equally.
void compare(benchmark::State& state, Seconds (*timeOfPosts)())
{
    Seconds unheard{};
    Seconds quiet{};
    Seconds drawn{};
    while (state.KeepRunningBatch(kPosts)) {
        unheard += timeOfPosts();
        {
            const test::QuietDesktop desktop;
            const auto window = ProgressWindowController::init();
            quiet += timeOfPosts();
        }
        const QtDesktop desktop;
        const auto window = ProgressWindowController::init();
        window->showWindow(nullptr);
        QtDesktop::handleEvents();
        const auto time = timeOfPosts();
        window->close();
        drawn += time;
        state.SetIterationTime(time.count());
    }
    const auto posts = static_cast<double>(state.iterations());
    // Printed in seconds with a prefix, such as 35n.
    state.counters["unheard"] = unheard.count() / posts;
    state.counters["quiet_window"] = quiet.count() / posts;
    state.counters["x_unheard"] = drawn / unheard;
    state.counters["x_quiet_window"] = drawn / quiet;
}

/// Posts progress from a worker while the main thread draws the real progress window.
void postProgressToQtWindow(benchmark::State& state)
{
    compare(state, timeOfProgress);
}

/// Posts a text in the same way.
void postMessageToQtWindow(benchmark::State& state)
{
    compare(state, timeOfMessages);
}

BENCHMARK(postProgressToQtWindow)->UseManualTime();
BENCHMARK(postMessageToQtWindow)->UseManualTime();

}  // namespace

}  // namespace dunmora::bench
