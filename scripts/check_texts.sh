#!/usr/bin/env bash
# Checks that no file contains local paths or package mirrors, conflict markers or trailing whitespace.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# The folder of this clone and the hosts that packages are installed from.
local_names() {
    printf '%s\n' "$PWD"
    grep -rhoE '^[^#]*https?://[^/ ]+' /etc/apt/sources.list /etc/apt/sources.list.d 2>/dev/null |
        sed 's|.*://||' || true
}

# shellcheck disable=SC2016 # a regular expression
pattern=$(local_names | sort -u | sed 's/[.+*?^$(){}|[]/\\&/g' | paste -sd '|')
if git grep --line-number -E "(^|[^[:alnum:]_./-]|//)($pattern)"; then
    echo "texts: these lines contain a local path or package mirror" >&2
    exit 1
fi

git diff --check "$(git hash-object -t tree --stdin </dev/null)" HEAD
echo "texts: no local names, conflict markers or trailing whitespace"
