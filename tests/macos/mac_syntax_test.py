#!/usr/bin/env python3
"""Checks on Linux that the files which a Mac compiles are well-formed there.

    python3 tests/macos/mac_syntax_test.py

clang parses every file that a Mac compiles, for an Apple target, with the standard library of the oldest Xcode that
docs/macos.md names and with the declarations in tests/macos/stubs in place of Apple's frameworks and system headers.
Files that include Qt are omitted. Nothing is linked or run.
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
sys.path.insert(0, str(TOP / "scripts"))

import check_layers  # noqa: E402

TARGET = "x86_64-apple-macosx14.0"
WARNINGS = ["-Wall", "-Wextra", "-Wpedantic", "-Wshadow", "-Wconversion", "-Wundef", "-Werror"]
CXX_WARNINGS = ["-Wnon-virtual-dtor", "-Wold-style-cast", "-Woverloaded-virtual"]
LANGUAGES = {".m": "objective-c", ".mm": "objective-c++", ".cpp": "c++"}

# The first Xcode 15 had that of LLVM 16. Its headers must not include others that they do not need, because later
# releases stop including them.
STANDARD_LIBRARY = pathlib.Path("/usr/lib/llvm-16/include/c++/v1")
STRICTNESS = "-D_LIBCPP_REMOVE_TRANSITIVE_INCLUDES"
# Included by nearly every file, so these are precompiled: parsing them takes most of the time.
PRECOMPILED = ["functional", "memory", "optional", "string", "string_view", "vector"]

# The preferences and address books of other systems, and what includes Qt.
NOT_READ = ["adapters/defaults/", "adapters/eds/module/", "adapters/qt/", "programs/dunmora/RunDunmora.cpp"]
GIVEN_BY_THE_BUILD = ["DUNMORA_APP_ID", "DUNMORA_MODULE_PATH", "DUNMORA_SUPPORT", "DUNMORA_UPDATE_HOST",
                      "DUNMORA_VERSION", "DUNMORA_WEBSITE"]


def mac_sources():
    architecture = check_layers.Architecture((TOP / check_layers.DOCUMENT).read_text(encoding="utf-8"))
    found = sorted({path for module in architecture.modules for path in (TOP / module).rglob("*")
                    if path.suffix in LANGUAGES})
    return [path for path in found
            if not path.name.startswith("Linux")
            and not path.relative_to(TOP).as_posix().startswith(tuple(NOT_READ))]


def compiler():
    return next((found for found in map(shutil.which, ("clang++-14", "clang++")) if found), None)


def system_includes(clang):
    """Returns clang's search path for the C headers of this system, which it would not use for an Apple target."""
    output = subprocess.run([clang, "-E", "-v", "-x", "c", "/dev/null"], capture_output=True, text=True, check=True)
    listed = re.search(r"search starts here:\n(.*?)End of search list", output.stderr, re.S).group(1)
    return [f"-isystem{line.strip()}" for line in listed.splitlines() if line.startswith(" ")]


class Parser:
    """Parses files as a Mac's compiler would. Keeps its precompiled headers in the folder."""

    def __init__(self, clang, folder):
        self.clang = clang
        self.includes = [f"-isystem{TOP / 'tests/macos/stubs'}", *system_includes(clang)]
        header = pathlib.Path(folder, "precompiled.h")
        header.write_text("".join(f"#include <{name}>\n" for name in PRECOMPILED))
        self.precompiled = header.with_suffix(".pch")
        subprocess.run([clang, *self.options(".cpp"), "-x", "c++-header", header, "-o", self.precompiled],
                       check=True)

    def options(self, suffix):
        standard = ["-std=gnu11"]
        if suffix != ".m":
            standard = ["-std=c++20", "-nostdinc++", *CXX_WARNINGS, STRICTNESS, f"-isystem{STANDARD_LIBRARY}"]
        # The GNU C library defines __nonnull, a keyword for Apple, as a macro, and declares some functions that the
        # standard library uses only for _GNU_SOURCE.
        c_library = ["-U__nonnull", "-D_GNU_SOURCE", "-nostdinc"]
        return ["-target", TARGET, "-fno-objc-arc", *WARNINGS, *c_library, *standard, *self.includes, f"-I{TOP}",
                *(f'-D{name}=""' for name in GIVEN_BY_THE_BUILD)]

    def complaints(self, source):
        """Returns the compiler's errors for a file; empty if there are none."""
        suffix = source.suffix
        precompiled = ["-include-pch", self.precompiled] if suffix == ".cpp" else []
        run = subprocess.run(
            [self.clang, *self.options(suffix), "-fsyntax-only", "-x", LANGUAGES[suffix], *precompiled, source],
            capture_output=True, text=True, check=False)
        return run.stderr if run.returncode else ""


def wrong_verdicts(parser, folder):
    """Yields the faults that the check misses and those that it reports although there are none."""
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
        found = parser.complaints(source)
        if bool(found) != bool(complaint) or complaint not in found:
            yield f"The check reports for {statement!r}: {found!r}"


def main():
    clang = compiler()
    if clang is None or not STANDARD_LIBRARY.is_dir():
        sys.exit("mac_syntax_test: clang or libc++ 16 is not installed. Run scripts/install_packages.sh ci.")
    with tempfile.TemporaryDirectory() as folder:
        parser = Parser(clang, folder)
        complaints = list(wrong_verdicts(parser, folder))
        sources = mac_sources()
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            complaints += filter(None, pool.map(parser.complaints, sources))
    print("\n".join(complaints) or f"mac_syntax: {len(sources)} files are well-formed for {TARGET}")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
