#!/usr/bin/env bash
# Builds the release in build/package and makes packages for Debian of it:
#     package_deb.sh [--output FOLDER] [CMAKE-OPTION...]
# The folder for the packages is build/packages by default; other packages of Dunmora in it are removed. The options are the
# packager's settings, such as -DDUNMORA_MAINTAINER="Ann Lee <ann@example.com>". The same source and settings make the same
# packages: the preset keeps ccache from putting relative paths into the debug symbols, and all dates are SOURCE_DATE_EPOCH,
# by default the day of the newest release in the changelog.
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

output=$top/build/packages
if [[ "${1-}" == --output ]]; then
    [[ $# -gt 1 ]] || { echo "package_deb: --output requires a folder" >&2; exit 1; }
    output=$(realpath -m -- "$2")
    shift 2
fi

# Packages have the permissions with which CPack creates its files.
umask 022
"$top/scripts/install_packages.sh" build package
cd "$top"
# Settings of an earlier run do not count.
rm -f build/package/CMakeCache.txt
cmake --preset package "$@"
cmake --build --preset package
rm -rf build/package/packages
cpack --preset package

mkdir -p "$output"
rm -f "$output"/dunmora{,-cli,-eds}{,-dbgsym}_*.deb
mv build/package/packages/*.deb "$output/"
ls -l "$output"/dunmora*.deb
