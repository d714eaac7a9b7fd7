#!/usr/bin/env bash
# Checks that clang-format would change nothing in our sources.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

git ls-files -z '*.h' '*.cpp' '*.m' '*.mm' | xargs -0 clang-format-14 --dry-run -Werror
echo "format: every source is as clang-format writes it"
