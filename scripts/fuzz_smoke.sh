#!/usr/bin/env bash
# Builds the fuzz targets and runs each for SECONDS, by default 60, as many at once as there are
# processors: fuzz_smoke.sh [SECONDS]
# Saves an input that makes a target fail, and what each target prints, in build/fuzz/findings.
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

findings=build/fuzz/findings
mkdir -p "$findings"
# In memory where possible, because a target writes thousands of files a second.
scratch=$(mktemp -d -p "$([[ -w /dev/shm ]] && echo /dev/shm || echo "${TMPDIR-/tmp}")" dunmora-fuzz-XXXXXX)
trap 'rm -rf "$scratch"' EXIT

export seconds findings scratch
export vcards=${DUNMORA_VCARDS-../shared/vcards}

run() {
    local target=$1 name format log corpus
    name=$(basename "$target" _fuzz)
    format=${name%%_*}
    log=$findings/$name.log
    # Most mutations of a long input change nothing that matters, and it takes long to run.
    local options=(-max_total_time="$seconds" -max_len=4096 -timeout=10 -rss_limit_mb=2048
        -artifact_prefix="$findings/$name-" -verbosity=0 -print_final_stats=1)
    [[ ! -f "tests/fuzz/$format.dict" ]] || options+=(-dict="tests/fuzz/$format.dict")
    # libFuzzer adds new inputs to the first folder; it only reads the others.
    corpus=("build/fuzz/corpus/$name")
    mkdir -p "${corpus[0]}" "$scratch/$name"
    [[ ! -d "tests/fuzz/corpus/$format" ]] || corpus+=("tests/fuzz/corpus/$format")
    if [[ $format == vcard ]]; then
        corpus+=(samples)
        [[ ! -d "$vcards" ]] || corpus+=("$vcards")
    fi
    echo "fuzz: $name for $seconds s, starting with ${corpus[*]}"
    if ! TMPDIR=$scratch/$name "$target" "${options[@]}" "${corpus[@]}" >"$log" 2>&1; then
        printf 'fuzz: %s FAILED; %s ends with\n%s\n' "$name" "$log" "$(tail -n 40 "$log")" >&2
        return 1
    fi
    echo "fuzz: $name found nothing in$(sed -n 's/^stat::number_of_executed_units://p' "$log") runs"
}
export -f run

# A target that fails does not end the others.
printf '%s\0' "${targets[@]}" | xargs -0 -P "$(nproc)" -I '{}' bash -c 'run {}'
