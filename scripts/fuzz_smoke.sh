#!/usr/bin/env bash
# Builds the fuzz targets and runs each for a while: fuzz_smoke.sh [SECONDS], 60 when none is given.
# An input that breaks one is left in build/fuzz/findings.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
seconds=${1-60}

cmake --preset fuzz
cmake --build --preset fuzz
shopt -s nullglob
targets=(build/fuzz/bin/*_fuzz)
if [[ ${#targets[@]} -eq 0 ]]; then
    echo "fuzz_smoke: there is no fuzz target" >&2
    exit 1
fi

mkdir -p build/fuzz/findings
for target in "${targets[@]}"; do
    name=$(basename "$target" _fuzz)
    options=(-max_total_time="$seconds" -max_len=16384 -timeout=10 -rss_limit_mb=2048
        -artifact_prefix=build/fuzz/findings/ -verbosity=0 -print_final_stats=1)
    [[ ! -f "tests/fuzz/$name.dict" ]] || options+=(-dict="tests/fuzz/$name.dict")
    # What it learns goes to the first folder; the others are only read.
    corpus=("build/fuzz/corpus/$name")
    mkdir -p "${corpus[0]}"
    for seeds in "tests/fuzz/corpus/$name" samples "${DUNMORA_VCARDS-../shared/vcards}"; do
        [[ ! -d "$seeds" ]] || corpus+=("$seeds")
    done
    echo "fuzz: $name for $seconds s, beginning with ${corpus[*]}"
    "$target" "${options[@]}" "${corpus[@]}"
done
