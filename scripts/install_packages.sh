#!/usr/bin/env bash
# Installs missing Debian packages: install_packages.sh LIST...
# A LIST is a file in scripts/packages. Prints nothing if all packages are installed.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/packages"

fail() {
    printf 'install_packages: %s\n' "$*" >&2
    exit 1
}

is_installed() {
    [[ "$(dpkg-query --show --showformat='${db:Status-Status}' "$1" 2>/dev/null)" == installed* ]]
}

[[ $# -gt 0 ]] || fail "specify a list: $(echo *)"
missing=()
for list in "$@"; do
    [[ -f "$list" ]] || fail "there is no list named $list"
    while read -r package _; do
        [[ -z "$package" || "$package" == \#* ]] || is_installed "$package" || missing+=("$package")
    done <"$list"
done
[[ ${#missing[@]} -gt 0 ]] || exit 0

install=(apt-get install --yes --no-install-recommends "${missing[@]}")
command -v apt-get >/dev/null || fail "packages are missing and there is no apt-get. Install the equivalents of Debian's ${missing[*]}"
as_root=()
if [[ $EUID -ne 0 ]]; then
    command -v sudo >/dev/null || fail "packages are missing. Run as root: ${install[*]}"
    as_root=(sudo)
fi

# Continue after a failed update (no network, a broken third-party archive): the package lists may be
# recent enough, and the installation reports what it cannot find.
quiet=(-qq -o Dpkg::Use-Pty=0 -o DPkg::Lock::Timeout=300)
printf 'Installing %s\n' "${missing[*]}" >&2
"${as_root[@]}" apt-get update "${quiet[@]}" >/dev/null ||
    printf 'install_packages: apt-get update failed; continuing with the existing package lists\n' >&2
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive "${install[@]}" "${quiet[@]}" </dev/null >/dev/null ||
    fail "packages could not be installed. Run as root: ${install[*]}"
