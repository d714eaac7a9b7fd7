#!/usr/bin/env bash
# Runs clang-tidy on our sources: check_tidy.sh [FILE...], all of them when none is given.
# It compiles them the way build/dev does, so `cmake --preset dev` comes first.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# How many warnings it found in others' headers says nothing.
# shellcheck disable=SC2016 # expanded by the inner shell
tidy='set -o pipefail
clang-tidy-14 -p build/dev --quiet "$1" 2>&1 | sed "/^[0-9]* warnings\? generated\.$/d"'

if [[ $# -gt 0 ]]; then
    printf '%s\0' "$@"
else
    # What only a Mac can compile, mac_syntax_test.py reads with stand-ins for a Mac's headers.
    git ls-files -z '*.cpp' ':!adapters/posix/MacFileCopy.cpp'
fi | xargs -0 -n 1 -P "$(nproc)" bash -c "$tidy" tidy
echo "tidy: clang-tidy has nothing to say"
