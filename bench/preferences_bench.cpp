#include "adapters/defaults/IniUserDefaults.h"
#include "tests/fakes/TemporaryFolder.h"

#include <benchmark/benchmark.h>

namespace dunmora::bench {

namespace {

/// Reads a preference, as the engine does six times for every person.
void readPreference(benchmark::State& state)
{
    const auto folder =
        std::filesystem::temp_directory_path() / ("dunmora-bench-" + std::to_string(::getpid()));
    IniUserDefaults defaults(folder / "preferences.conf");
    defaults.setBool("filterFirstname", true);

    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(defaults.boolForKey("filterFirstname"));
    }
}

BENCHMARK(readPreference);

}  // namespace

}  // namespace dunmora::bench
