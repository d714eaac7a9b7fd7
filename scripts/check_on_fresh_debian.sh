#!/usr/bin/env bash
# Runs commands in a clone of HEAD on a Debian 12 with nothing installed, to see that the lists in
# scripts/packages are enough. Wants root, git and debootstrap.
#
#     scripts/check_on_fresh_debian.sh [--mirror URL] [COMMAND...]
#
# Each COMMAND is a line for the shell; ./run and ./test when none is given. The mirror is this
# machine's own unless told.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

fail() {
    printf 'check_on_fresh_debian: %s\n' "$*" >&2
    exit 1
}

own_mirror() {
    # shellcheck disable=SC2016 # expanded by apt-get
    apt-get indextargets --format '$(SITE)' 'Codename: bookworm' 'Created-By: Packages' |
        head -n 1
}

mirror=
if [[ "${1-}" == --mirror ]]; then
    [[ $# -gt 1 ]] || fail "--mirror wants a URL"
    mirror=$2
    shift 2
fi
commands=("$@")
[[ $# -gt 0 ]] || commands=(./run ./test)

[[ $EUID -eq 0 ]] || fail "only root can do this"
command -v debootstrap >/dev/null || fail "debootstrap is missing: apt-get install debootstrap"
[[ -n "$mirror" ]] || mirror=$(own_mirror)
[[ -n "$mirror" ]] || fail "apt knows no mirror of Debian 12; give one with --mirror"

debian=$(mktemp -d "${TMPDIR:-/tmp}/fresh-debian.XXXXXX")
chmod 755 "$debian"
# What is mounted below lives in a mount namespace of its own and is gone by then; should anything
# still be mounted, --one-file-system keeps the machine's own files.
trap 'rm -rf --one-file-system "$debian"' EXIT

echo "Installing a fresh Debian 12 in $debian"
debootstrap --variant=minbase bookworm "$debian" "$mirror" >"$debian.log" ||
    fail "debootstrap failed, see $debian.log"
rm "$debian.log"
cp /etc/resolv.conf /etc/hosts "$debian/etc/"

# A path with a blank, for every script to stand.
folder="fresh clone"
clone=/opt/$folder
git clone --quiet --no-hardlinks . "$debian$clone"

# Nothing of this machine's environment but the way to the network.
environment=(PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LANG=C.UTF-8)
for name in http_proxy https_proxy no_proxy; do
    [[ -z "${!name-}" ]] || environment+=("$name=${!name}")
done
for command in "${commands[@]}"; do
    echo "== $command"
    # shellcheck disable=SC2016 # expanded by the inner shell
    unshare --mount --pid --fork bash -c \
        'mount -t proc proc "$1/proc" && mount -t devpts -o newinstance,ptmxmode=666 devpts "$1/dev/pts" &&
            exec chroot "$1" "${@:2}"' _ "$debian" \
        env -i "${environment[@]}" bash -c 'cd "$1" && eval "$2"' _ "$clone" "$command" </dev/null
done
echo "A fresh Debian 12 runs: ${commands[*]}"
