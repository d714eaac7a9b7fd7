#!/usr/bin/env python3
"""Adds to the files of a package what Debian's policy wants there and other installations do not have.

    complete.py PACKAGE FOLDER COPYRIGHT MAINTAINER

FOLDER holds the package's files as they are to be installed in /. It gets the copyright file, the changelog in Debian's
format, the reasons for what lintian is not to report, and compressed manual pages. The debug symbols of its programs go
into FOLDER-symbols, the files of the package PACKAGE-dbgsym.
"""

import gzip
import pathlib
import re
import shutil
import subprocess
import sys

from changelog import debian_changelog

HERE = pathlib.Path(__file__).resolve().parent
CHANGELOG = HERE.parents[1] / "CHANGELOG.md"


def compress(file, content):
    """Writes a file as `gzip -9n` does: without the name and date, which would differ from build to build."""
    with open(file, "wb") as raw, gzip.GzipFile("", "wb", 9, raw, mtime=0) as packed:
        packed.write(content)


def split_symbols(program, debug_folder):
    """Moves the debug symbols of a program into a file where debuggers look for them: by the program's build id."""
    notes = subprocess.run(["readelf", "--notes", program], capture_output=True, text=True, check=True).stdout
    build_id = re.search(r"Build ID: ([0-9a-f]{2})([0-9a-f]+)", notes)
    symbols = debug_folder / "usr/lib/debug/.build-id" / build_id[1] / f"{build_id[2]}.debug"
    symbols.parent.mkdir(parents=True, exist_ok=True)
    subprocess.run(["objcopy", "--only-keep-debug", "--compress-debug-sections", program, symbols], check=True)
    symbols.chmod(0o644)
    subprocess.run(["strip", "--strip-unneeded", "--remove-section=.comment", program], check=True)


def complete(package, folder, copyright_file, maintainer):
    share = folder / "usr/share"
    documents = share / "doc" / package
    documents.mkdir(parents=True, exist_ok=True)
    shutil.copyfile(copyright_file, documents / "copyright")
    compress(documents / "changelog.gz",
             debian_changelog(CHANGELOG.read_text(encoding="utf-8"), package, maintainer).encode())

    overrides = HERE / f"{package}.lintian-overrides"
    if overrides.exists():
        (share / "lintian/overrides").mkdir(parents=True)
        shutil.copyfile(overrides, share / "lintian/overrides" / package)

    for page in share.glob("man/man*/*[0-9]"):
        compress(page.with_name(page.name + ".gz"), page.read_bytes())
        page.unlink()

    debug_folder = folder.with_name(f"{folder.name}-symbols")
    for program in [*folder.glob("usr/bin/*"), *folder.rglob("*.so")]:
        split_symbols(program, debug_folder)
    (debug_folder / "usr/share/doc").mkdir(parents=True)
    # It depends on the package.
    (debug_folder / f"usr/share/doc/{package}-dbgsym").symlink_to(package)

    # Whatever the umask.
    for path in [folder, *folder.rglob("*"), debug_folder, *debug_folder.rglob("*")]:
        if not path.is_symlink():
            path.chmod(0o755 if path.is_dir() or path.stat().st_mode & 0o100 else 0o644)


if __name__ == "__main__":
    complete(sys.argv[1], pathlib.Path(sys.argv[2]), *sys.argv[3:])
