#!/usr/bin/env bash
# Makes the packages for Debian and checks them: with lintian; that the same source makes the same packages in another
# folder; and on a fresh Debian 12 that they can be installed, used and removed. Requires root.
#     check_package.sh [CMAKE-OPTION...]
# The packages, and pictures of the windows on that Debian, are in build/packages. The options are those of package_deb.sh.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

[[ $EUID -eq 0 ]] || { echo "check_package: must be run as root" >&2; exit 1; }
scripts/install_packages.sh package_check
packages=$PWD/build/packages

step() {
    printf -- '-- %s (%d s so far)\n' "$*" "$SECONDS"
}

step "Making the packages"
mkdir -p build
scripts/package_deb.sh --output "$packages" "$@" >build/package.log || { tail -n 40 build/package.log >&2; exit 1; }
ls -l "$packages"/*.deb
tests/packaging/package_files_test.py "$packages" build/package

step "lintian"
lintian --allow-root --fail-on error,warning --tag-display-limit 0 "$packages"/*.deb
echo "lintian: no errors or warnings"

step "Making them again"
again=$(mktemp -d "${TMPDIR:-/tmp}/another folder.XXXXXX")
trap 'rm -rf "$again"' EXIT
# The files have other dates there, and nothing comes from the compiler's cache.
git ls-files -z --cached --others --exclude-standard | tar -c --null --files-from=- | tar -x -m -C "$again"
(umask 002 && CCACHE_DISABLE=1 TZ=Asia/Tokyo LC_ALL=C "$again/scripts/package_deb.sh" --output "$again/packages" "$@") \
    >"$again/log" || { tail -n 40 "$again/log" >&2; exit 1; }
for package in "$packages"/*.deb; do
    cmp "$package" "$again/packages/$(basename "$package")"
done
echo "The same source makes the same packages."
rm -rf "$again"

step "Using them on a fresh Debian"
app_id=$(sed -n 's/^DUNMORA_APP_ID:STRING=//p' build/package/CMakeCache.txt)
scripts/check_on_fresh_debian.sh --share "$packages" \
    'scripts/install_packages.sh package_use' \
    "/usr/bin/python3 -B tests/packaging/packages_test.py /mnt $app_id"
step "Done"
