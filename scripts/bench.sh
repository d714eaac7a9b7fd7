#!/usr/bin/env bash
# Builds the release and the benchmarks in build/bench and prints the measurements:
#     bench.sh                    everything: the small benchmarks, then the table
#     bench.sh --table [OPTION]   only the table, with the options of bench/table.py
# Options of the table for a comparison with an older build, and for the pages that show the figures:
#     --binary FOLDER   measure the programs in this folder, and their windows if qt_bench and event_loop_bench are there
#     --save FILE, --before FILE   store the measurements, and compare with stored ones
#     --pages           write the table and the plot into docs/performance.md, and the summary into README.md
# Other work on this computer makes the figures unreliable.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/install_packages.sh build bench >&2 || echo "bench: continuing without what is not installed" >&2
cmake --preset release -B build/bench -D DUNMORA_BENCH=ON -D DUNMORA_TESTS=OFF >/dev/null
cmake --build build/bench >&2

programs=$PWD/build/bench/bin
if [[ "${1:-}" == --table ]]; then
    shift
else
    "$programs/micro_bench"
    [[ ! -x "$programs/qt_bench" ]] || "$programs/qt_bench"
fi
exec /usr/bin/python3 -B bench/table.py "$programs" "$@"
