#include "base/NotificationCenter.h"

#include <benchmark/benchmark.h>

#include <memory>

namespace dunmora::bench {

namespace {

/// Posts progress, as a job does for every person. The argument is the number of observers.
void postProgress(benchmark::State& state)
{
    NotificationCenter center;
    const auto progress = std::make_shared<Progress>();
    std::int64_t handled = 0;
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        center.addObserver(&handled, kMsgProgress, [&](const Notification&) { ++handled; });
    }

    while (state.KeepRunning()) {
        center.postNotification(kMsgProgress, &center, progress);
    }

    benchmark::DoNotOptimize(handled);
}

BENCHMARK(postProgress)->Arg(0)->Arg(1);

}  // namespace

}  // namespace dunmora::bench
