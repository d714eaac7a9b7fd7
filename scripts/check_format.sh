#!/usr/bin/env bash
# Checks that the sources are formatted as clang-format would format them: check_format.sh [--fix]
# With --fix it formats them instead.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

case "${1-}" in
    "") options=(--dry-run -Werror) ;;
    --fix) options=(-i) ;;
    *)
        echo "Usage: check_format.sh [--fix]" >&2
        exit 2
        ;;
esac
git ls-files -z --cached --others --exclude-standard '*.h' '*.cpp' '*.m' '*.mm' |
    xargs -0 clang-format-14 "${options[@]}"
echo "format: all sources are formatted"
