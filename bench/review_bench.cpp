#include "bench/BenchPlatform.h"
#include "engine/ContactsParser.h"
#include "review/DuplicateGroups.h"
#include "review/GroupWarnings.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <numeric>
#include <vector>

namespace dunmora::bench {

namespace {

/// The main thread's work with the groups of a review in which everyone has a copy.
class EveryoneTwice {
public:
    explicit EveryoneTwice(const benchmark::State& state)
        : platform_(static_cast<std::size_t>(state.range(0)), Twice::Everyone)
    {
        engine.load();
        engine.findDupes();
    }

private:
    BenchPlatform platform_;

public:
    ContactsParser engine;
};

void findGroups(benchmark::State& state)
{
    const auto review = std::make_unique<EveryoneTwice>(state);

    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(duplicateGroups(review->engine).size());
    }
}

void countWarnings(benchmark::State& state)
{
    const auto review = std::make_unique<EveryoneTwice>(state);
    GroupWarnings warnings;

    while (state.KeepRunning()) {
        warnings.update(review->engine);
    }
}

/// Edits all rows in one operation.
void followEdits(benchmark::State& state)
{
    const auto review = std::make_unique<EveryoneTwice>(state);
    GroupWarnings warnings;
    warnings.update(review->engine);
    std::vector<std::size_t> rows(review->engine.duplicates().size());
    std::iota(rows.begin(), rows.end(), 0U);
    bool on = false;

    while (state.KeepRunning()) {
        state.PauseTiming();
        for (const auto& uid : review->engine.duplicates()) {
            review->engine.contacts().find(uid)->setObject(on, kContactCheck);
        }
        on = !on;
        state.ResumeTiming();
        warnings.rowsEdited(review->engine, rows);
    }
}

BENCHMARK(findGroups)->Arg(1'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(countWarnings)->Arg(1'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(followEdits)->Arg(1'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace dunmora::bench
