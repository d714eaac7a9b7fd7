#!/usr/bin/env bash
# Checks the shell scripts with shellcheck.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

git grep -lz -E '^#!.*[/ ](ba)?sh$|^# shellcheck shell=bash$' -- run test .ci packaging scripts tests samples |
    xargs -0 shellcheck
echo "shell: no warnings from shellcheck"
