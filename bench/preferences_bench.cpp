#include "adapters/defaults/IniUserDefaults.h"
#include "tests/fakes/TemporaryFolder.h"

#include <benchmark/benchmark.h>

namespace dunmora::bench {

namespace {

/// Reads a preference, as the engine does for every match field of every person.
void readPreference(benchmark::State& state)
{
    const test::TemporaryFolder folder;
    IniUserDefaults defaults(folder.path() / "preferences.conf");
    defaults.setBool("filterFirstname", true);
    defaults.synchronize();

    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(defaults.boolForKey("filterFirstname"));
    }
}

BENCHMARK(readPreference);

}  // namespace

}  // namespace dunmora::bench
