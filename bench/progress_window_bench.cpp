#include "base/NotificationCenter.h"
#include "tests/fakes/QuietDesktop.h"
#include "ui/ProgressWindowController.h"

#include <benchmark/benchmark.h>

#include <memory>

namespace dunmora::bench {

namespace {

/// Posts progress while a fake progress window is open: measures everything from the job to the
/// setters of the bar.
void postProgressToWindow(benchmark::State& state)
{
    const auto desktop = std::make_unique<test::QuietDesktop>();
    const auto window = ProgressWindowController::init();
    const auto progress = std::make_shared<Progress>();

    while (state.KeepRunning()) {
        NotificationCenter::defaultCenter().postNotification(kMsgProgress, &state, progress);
    }

    benchmark::DoNotOptimize(desktop->interfaceLoader.bar.redrawsAsked);
}

BENCHMARK(postProgressToWindow);

}  // namespace

}  // namespace dunmora::bench
