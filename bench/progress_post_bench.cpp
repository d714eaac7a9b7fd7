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

/// As many as a job over a big address book posts in one pass.
constexpr std::int32_t kPosts = 100'000;

using Seconds = std::chrono::duration<double>;

/// The time that a worker takes for all posts of a pass while the main thread handles events.
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

/// As a job does: one object for all posts.
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

/// Sets what a pass takes with a window open in Qt beside the same with the fakes' window and
/// without anybody who listens, all in the same iteration, so that a busy machine is busy for all.
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
    // Shown in seconds with a prefix, such as 35n.
    state.counters["unheard"] = unheard.count() / posts;
    state.counters["quiet_window"] = quiet.count() / posts;
    state.counters["x_unheard"] = drawn / unheard;
    state.counters["x_quiet_window"] = drawn / quiet;
}

/// One post of progress from a worker while the main thread draws the real progress window.
void postProgressToQtWindow(benchmark::State& state)
{
    compare(state, timeOfProgress);
}

/// One post of a text to show, on the same way.
void postMessageToQtWindow(benchmark::State& state)
{
    compare(state, timeOfMessages);
}

BENCHMARK(postProgressToQtWindow)->UseManualTime();
BENCHMARK(postMessageToQtWindow)->UseManualTime();

}  // namespace

}  // namespace dunmora::bench
