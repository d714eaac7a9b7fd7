#!/usr/bin/env bash
# Runs clang-tidy: check_tidy.sh [--all | FILE...]
# Without arguments it checks the sources that differ from the merge base with main, committed or not,
# and the sources beside changed headers. --all checks every source.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

plugin_source=scripts/tidy/OwnCode.cpp

all_sources() {
    # Only a Mac can compile these; mac_syntax_test.py checks them with stubs of Apple's headers.
    git ls-files '*.cpp' ':!adapters/posix/Mac*.cpp' ":!$plugin_source"
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
        [[ ! -f "$file" || "$file" == adapters/posix/Mac*.cpp || "$file" == "$plugin_source" ]] || printf '%s\n' "$file"
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

export plugin=build/tidy/own_code.so
if [[ ! "$plugin" -nt "$plugin_source" ]]; then
    clang++-14 -std=c++20 -O1 -fPIC -shared -fno-rtti -Wall -Wextra -Werror -isystem "$(llvm-config-14 --includedir)" \
        -o "$plugin" "$plugin_source"
fi

# The filter drops the number of warnings in other projects' headers.
# shellcheck disable=SC2016 # expanded by the inner shell
tidy='set -o pipefail
clang-tidy-14 --load="$plugin" -p build/tidy --quiet "$1" 2>&1 | sed "/^[0-9]* warnings\? generated\.$/d"'

printf '%s\0' "${files[@]}" | xargs -0 -n 1 -P "$(nproc)" bash -c "$tidy" tidy
echo "tidy: no warnings in ${#files[@]} files"
