#!/usr/bin/env bash
# Runs clang-tidy: check_tidy.sh [--all | FILE...]
# Without arguments it checks the sources that differ from the merge base with main, committed or not,
# and the sources beside changed headers. --all checks every source.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

all_sources() {
    # Only a Mac can compile these; mac_syntax_test.py checks them with stubs of Apple's headers.
    git ls-files '*.cpp' ':!adapters/posix/Mac*.cpp'
}

changed_sources() {
    local base main=main
    git rev-parse --verify --quiet "$main" >/dev/null || main=origin/main
    base=$(git merge-base HEAD "$main") || base=HEAD
    # The sources that are not ignored, of changed files and beside changed headers.
    {
        git diff --name-only --diff-filter=d "$base" -- '*.cpp' '*.h'
        git ls-files --others --exclude-standard -- '*.cpp' '*.h'
    } | sed 's/\.h$/.cpp/' | sort -u | while read -r file; do
        [[ ! -f "$file" || "$file" == adapters/posix/Mac*.cpp ]] || printf '%s\n' "$file"
    done
}

if [[ "${1-}" == --all ]]; then
    mapfile -t files < <(all_sources)
elif [[ $# -gt 0 ]]; then
    files=("$@")
else
    mapfile -t files < <(changed_sources)
fi
if [[ ${#files[@]} -eq 0 ]]; then
    echo "tidy: no changed sources"
    exit 0
fi

cmake --preset tidy >/dev/null

# The filter drops the number of warnings in other projects' headers.
# shellcheck disable=SC2016 # expanded by the inner shell
tidy='set -o pipefail
clang-tidy-14 -p build/tidy --quiet "$1" 2>&1 | sed "/^[0-9]* warnings\? generated\.$/d"'

printf '%s\0' "${files[@]}" | xargs -0 -n 1 -P "$(nproc)" bash -c "$tidy" tidy
echo "tidy: no warnings in ${#files[@]} files"
