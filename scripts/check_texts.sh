#!/usr/bin/env bash
# Checks that no file names this machine and that none has conflict marks or blanks at a line's end.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# What only this machine knows: the folder of this clone, the hosts that its packages come from.
names() {
    printf '%s\n' "$PWD"
    grep -rhoE '^[^#]*https?://[^/ ]+' /etc/apt/sources.list /etc/apt/sources.list.d 2>/dev/null |
        sed 's|.*://||' || true
}

# shellcheck disable=SC2016 # a regular expression
pattern=$(names | sort -u | sed 's/[.+*?^$(){}|[]/\\&/g' | paste -sd '|')
if git grep --line-number -E "(^|[^[:alnum:]_./-]|//)($pattern)"; then
    echo "texts: these lines name this machine" >&2
    exit 1
fi

git diff --check "$(git hash-object -t tree --stdin </dev/null)" HEAD
echo "texts: no machine's name, no conflict marks, no blanks at a line's end"
