#!/usr/bin/env bash
# Builds the release and the benchmarks in build/bench and prints the measurements.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

cmake --preset release -B build/bench -D DUNMORA_BENCH=ON -D DUNMORA_TESTS=OFF >/dev/null
cmake --build build/bench --target bench
