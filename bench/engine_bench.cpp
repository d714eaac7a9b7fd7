#include "bench/BenchPlatform.h"
#include "engine/ContactsParser.h"

#include <benchmark/benchmark.h>

#include <memory>

namespace dunmora::bench {

namespace {

/// Loads everyone and finds the duplicates.
void loadAndFindDupes(benchmark::State& state)
{
    const auto people = static_cast<std::size_t>(state.range(0));
    const auto platform = std::make_unique<BenchPlatform>(people);

    while (state.KeepRunning()) {
        ContactsParser engine;
        engine.load();
        engine.findDupes();
        benchmark::DoNotOptimize(engine.duplicates().size());
    }

    // Printed in seconds with a prefix, such as 350n.
    state.counters["per_person"] = benchmark::Counter(
        static_cast<double>(people),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

BENCHMARK(loadAndFindDupes)
    ->Arg(10'000)
    ->Arg(100'000)
    ->Arg(1'000'000)
    ->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace dunmora::bench
