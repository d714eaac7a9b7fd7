#!/usr/bin/env bash
# Builds the fuzz targets and runs each for SECONDS, by default 60: fuzz_smoke.sh [SECONDS]
# Saves an input that makes a target fail in build/fuzz/findings.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
seconds=${1-60}

cmake --preset fuzz
cmake --build --preset fuzz
shopt -s nullglob
targets=(build/fuzz/bin/*_fuzz)
if [[ ${#targets[@]} -eq 0 ]]; then
    echo "fuzz_smoke: no fuzz targets were built" >&2
    exit 1
fi

mkdir -p build/fuzz/findings
for target in "${targets[@]}"; do
    name=$(basename "$target" _fuzz)
    options=(-max_total_time="$seconds" -max_len=16384 -timeout=10 -rss_limit_mb=2048
        -artifact_prefix=build/fuzz/findings/ -verbosity=0 -print_final_stats=1)
    [[ ! -f "tests/fuzz/$name.dict" ]] || options+=(-dict="tests/fuzz/$name.dict")
    # libFuzzer adds new inputs to the first folder; it only reads the others.
    corpus=("build/fuzz/corpus/$name")
    mkdir -p "${corpus[0]}"
    for seeds in "tests/fuzz/corpus/$name" samples "${DUNMORA_VCARDS-../shared/vcards}"; do
        [[ ! -d "$seeds" ]] || corpus+=("$seeds")
    done
    echo "fuzz: $name for $seconds s, starting with ${corpus[*]}"
    "$target" "${options[@]}" "${corpus[@]}"
done
