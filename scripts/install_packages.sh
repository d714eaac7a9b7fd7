#!/usr/bin/env bash
# Installs the Debian packages of the named lists that are missing: install_packages.sh LIST...
# The lists are the files in scripts/packages. Says nothing when nothing is missing.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/packages"

fail() {
    printf 'install_packages: %s\n' "$*" >&2
    exit 1
}

is_installed() {
    [[ "$(dpkg-query --show --showformat='${db:Status-Status}' "$1" 2>/dev/null)" == installed* ]]
}

[[ $# -gt 0 ]] || fail "name a list: $(echo *)"
missing=()
for list in "$@"; do
    [[ -f "$list" ]] || fail "no list is named $list"
    while read -r package _; do
        [[ -z "$package" || "$package" == \#* ]] || is_installed "$package" || missing+=("$package")
    done <"$list"
done
[[ ${#missing[@]} -gt 0 ]] || exit 0

install=(apt-get install --yes --no-install-recommends "${missing[@]}")
command -v apt-get >/dev/null || fail "this machine has no apt-get; Debian calls what is missing: ${missing[*]}"
as_root=()
if [[ $EUID -ne 0 ]]; then
    command -v sudo >/dev/null || fail "packages are missing; run as root: ${install[*]}"
    as_root=(sudo)
fi

# An update that fails (no network, somebody else's archive) is no reason to stop: what is wanted
# may well be known, and the installation says what it lacks.
quiet=(-qq -o Dpkg::Use-Pty=0 -o DPkg::Lock::Timeout=300)
printf 'Installing %s\n' "${missing[*]}" >&2
"${as_root[@]}" apt-get update "${quiet[@]}" >/dev/null ||
    printf 'install_packages: apt-get update failed, going on with the lists there are\n' >&2
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive "${install[@]}" "${quiet[@]}" </dev/null >/dev/null ||
    fail "packages could not be installed; run as root: ${install[*]}"
