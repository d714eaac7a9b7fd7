#include "bench/BenchPlatform.h"
#include "engine/ContactsParser.h"
#include "engine/DuplicateGroups.h"

#include <benchmark/benchmark.h>

#include <memory>

namespace dunmora::bench {

namespace {

/// What the main thread does with the groups of a review in which everyone stands twice.
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

BENCHMARK(findGroups)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace dunmora::bench
