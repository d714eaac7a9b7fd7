#!/usr/bin/env bash
# Runs commands in a clone of HEAD on a minimal Debian 12, to check that the lists in scripts/packages
# are complete. Requires root, git and debootstrap.
#
#     scripts/check_on_fresh_debian.sh [--mirror URL] [--share FOLDER] [COMMAND...]
#
# Each COMMAND is a shell command line; the default is ./run and ./test. The default mirror is the one
# that this system uses. The commands find a shared FOLDER of this system at /mnt.
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
share=
while [[ "${1-}" == --mirror || "${1-}" == --share ]]; do
    [[ $# -gt 1 ]] || fail "$1 requires a URL or a folder"
    if [[ "$1" == --mirror ]]; then mirror=$2; else share=$(realpath -- "$2"); fi
    shift 2
done
commands=("$@")
[[ $# -gt 0 ]] || commands=(./run ./test)

[[ $EUID -eq 0 ]] || fail "must be run as root"
command -v debootstrap >/dev/null || fail "debootstrap is not installed. Run apt-get install debootstrap."
[[ -n "$mirror" ]] || mirror=$(own_mirror)
[[ -n "$mirror" ]] || fail "apt has no mirror for Debian 12. Specify one with --mirror."

debian=$(mktemp -d "${TMPDIR:-/tmp}/fresh-debian.XXXXXX")
chmod 755 "$debian"
# The mounts below are in a private namespace and gone by then. Should one remain, --one-file-system
# protects the files of this system.
trap 'rm -rf --one-file-system "$debian"' EXIT

echo "Installing a fresh Debian 12 in $debian"
debootstrap --variant=minbase bookworm "$debian" "$mirror" >"$debian.log" ||
    fail "debootstrap failed. See $debian.log."
rm "$debian.log"
cp /etc/resolv.conf /etc/hosts "$debian/etc/"

# Every script must work in a path with a space.
folder="fresh clone"
clone=/opt/$folder
git clone --quiet --no-hardlinks . "$debian$clone"

# Of the environment only the proxy settings are kept.
environment=(PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LANG=C.UTF-8)
for name in http_proxy https_proxy no_proxy; do
    [[ -z "${!name-}" ]] || environment+=("$name=${!name}")
done
for command in "${commands[@]}"; do
    echo "== $command"
    # shellcheck disable=SC2016 # expanded by the inner shell
    unshare --mount --pid --fork bash -c \
        'mount -t proc proc "$1/proc" && mount -t devpts -o newinstance,ptmxmode=666 devpts "$1/dev/pts" &&
            { [[ -z "$2" ]] || mount --bind "$2" "$1/mnt"; } && exec chroot "$1" "${@:3}"' _ "$debian" "$share" \
        env -i "${environment[@]}" bash -c 'cd "$1" && eval "$2"' _ "$clone" "$command" </dev/null
done
echo "These commands succeed on a fresh Debian 12: ${commands[*]}"
