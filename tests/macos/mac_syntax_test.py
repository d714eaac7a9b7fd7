#!/usr/bin/env python3
"""Checks that what a Mac compiles is well-formed there, on a machine that is none.

    python3 tests/macos/mac_syntax_test.py

Every file that a Mac compiles is read by clang for an Apple target, with the standard library of the oldest Xcode that
docs/macos.md promises and, in place of Apple's frameworks and system headers, the declarations in tests/macos/stubs.
Left out is what includes Qt. Nothing is linked or run.
"""

import concurrent.futures
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

TOP = pathlib.Path(__file__).resolve().parents[2]
TARGET = "x86_64-apple-macosx14.0"
WARNINGS = ["-Wall", "-Wextra", "-Wpedantic", "-Wshadow", "-Wconversion", "-Wundef", "-Werror"]
CXX_WARNINGS = ["-Wnon-virtual-dtor", "-Wold-style-cast", "-Woverloaded-virtual"]
LANGUAGES = {".m": "objective-c", ".mm": "objective-c++", ".cpp": "c++"}

# Xcode 15 began with that of LLVM 16. Its headers are kept from bringing along others that they do not need: they stop
# it, one after the other, in the releases that follow.
STANDARD_LIBRARY = pathlib.Path("/usr/lib/llvm-16/include/c++/v1")
STRICTNESS = "-D_LIBCPP_REMOVE_TRANSITIVE_INCLUDES"
# What nearly every file includes anyway, read once for all: it takes most of the time.
INCLUDED_ANYWAY = ["functional", "memory", "optional", "string", "string_view", "vector"]

FOLDERS = ["adapters", "app", "engine", "platform", "programs", "ui", "update"]
# The preferences and the books that are not a Mac's, and what includes Qt.
NOT_READ = ["adapters/defaults/", "adapters/eds/module/", "adapters/qt/", "programs/dunmora/RunDunmora.cpp"]
GIVEN_BY_THE_BUILD = ["DUNMORA_SUPPORT", "DUNMORA_UPDATE_HOST", "DUNMORA_VERSION", "DUNMORA_WEBSITE"]


def mac_sources():
    found = [path for folder in FOLDERS for path in sorted((TOP / folder).rglob("*")) if path.suffix in LANGUAGES]
    return [path for path in found
            if not path.name.startswith("Linux")
            and not path.relative_to(TOP).as_posix().startswith(tuple(NOT_READ))]


def compiler():
    return next((found for found in map(shutil.which, ("clang++-14", "clang++")) if found), None)


def system_includes(clang):
    """Where clang looks for C's headers here, in its order, which it would not do for an Apple target."""
    told = subprocess.run([clang, "-E", "-v", "-x", "c", "/dev/null"], capture_output=True, text=True, check=True)
    listed = re.search(r"search starts here:\n(.*?)End of search list", told.stderr, re.S).group(1)
    return [f"-isystem{line.strip()}" for line in listed.splitlines() if line.startswith(" ")]


class Reader:
    """Reads files as a Mac's compiler would, but for what it keeps in the folder."""

    def __init__(self, clang, folder):
        self.clang = clang
        self.includes = [f"-isystem{TOP / 'tests/macos/stubs'}", *system_includes(clang)]
        header = pathlib.Path(folder, "included_anyway.h")
        header.write_text("".join(f"#include <{name}>\n" for name in INCLUDED_ANYWAY))
        self.included_anyway = header.with_suffix(".pch")
        subprocess.run([clang, *self.options(".cpp"), "-x", "c++-header", header, "-o", self.included_anyway],
                       check=True)

    def options(self, suffix):
        standard = ["-std=gnu11"]
        if suffix != ".m":
            standard = ["-std=c++20", "-nostdinc++", *CXX_WARNINGS, STRICTNESS, f"-isystem{STANDARD_LIBRARY}"]
        # The C library at hand has a macro of a name that is a word of the language for Apple, and
        # shows the standard library what it wants only to those who ask for all.
        at_hand = ["-U__nonnull", "-D_GNU_SOURCE", "-nostdinc"]
        return ["-target", TARGET, "-fno-objc-arc", *WARNINGS, *at_hand, *standard, *self.includes, f"-I{TOP}",
                *(f'-D{name}=""' for name in GIVEN_BY_THE_BUILD)]

    def complaints(self, source):
        """What there is to say about a file, nothing of a good one."""
        suffix = source.suffix
        read_before = ["-include-pch", self.included_anyway] if suffix == ".cpp" else []
        run = subprocess.run(
            [self.clang, *self.options(suffix), "-fsyntax-only", "-x", LANGUAGES[suffix], *read_before, source],
            capture_output=True, text=True, check=False)
        return run.stderr if run.returncode else ""


def missed_faults(reader, folder):
    """What the check gets wrong: it has to see these faults, and nothing in the files without them."""
    framework = ("fault.mm", "#import <AddressBook/AddressBook.h>",
                 "void f(ABPerson* person) { %s static_cast<void>(person); }")
    library = ("fault.cpp", "#include <charconv>", "int main(int, char** text) { %s return **text; }")
    faults = [
        (framework, "", ""),
        (framework, "[[ABAddressBook sharedAddressBook] saveNow];", "not found"),
        (framework, "[person valueForProperty:kABMobileProperty];", "undeclared identifier"),
        (framework, "NSString* const text = [person vCardRepresentation];", "cannot initialize"),
        (library, "int n = 0; std::from_chars(*text, *text + 1, n);", ""),
        (library, "double d = 0; std::from_chars(*text, *text + 1, d);", "deleted function"),
        (library, "std::sort(text, text + 1);", "no member named 'sort'"),
    ]
    for (name, include, function), statement, complaint in faults:
        source = pathlib.Path(folder, name)
        source.write_text(f"{include}\n{function % statement}\n")
        found = reader.complaints(source)
        if bool(found) != bool(complaint) or complaint not in found:
            yield f"The check says of {statement!r}: {found!r}"


def main():
    clang = compiler()
    if clang is None or not STANDARD_LIBRARY.is_dir():
        sys.exit("mac_syntax_test: no clang or no standard library for it; scripts/packages/test names them")
    with tempfile.TemporaryDirectory() as folder:
        reader = Reader(clang, folder)
        complaints = list(missed_faults(reader, folder))
        sources = mac_sources()
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            complaints += filter(None, pool.map(reader.complaints, sources))
    print("\n".join(complaints) or f"mac_syntax: {len(sources)} files are well-formed for {TARGET}")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
