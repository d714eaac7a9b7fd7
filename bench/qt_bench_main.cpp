#include "bench/OffscreenApplication.h"

#include <benchmark/benchmark.h>

/// Runs the benchmarks that need Qt's application, without a display.
int main(int argc, char** argv)
{
    const dunmora::bench::OffscreenApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
