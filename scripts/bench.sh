#!/usr/bin/env bash
# Builds what is shipped and the benchmarks in build/bench, and prints what they measure.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

cmake --preset release -B build/bench -D DUNMORA_BENCH=ON -D DUNMORA_TESTS=OFF >/dev/null
cmake --build build/bench --target bench
