#!/usr/bin/env python3
"""Checks that what is compiled on a Mac alone is well-formed there, on a machine that is none.

    python3 tests/macos/mac_syntax_test.py [NAME=DEFINITION...]

Every file of the Mac's own is read by clang for an Apple target, with the standard library at hand and, in place of
Apple's frameworks and system headers, the declarations in tests/macos/stubs. Nothing is linked or run. NAME=DEFINITION
is a macro that the build gives those files.
"""

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


def mac_sources():
    found = [path for path in sorted((TOP / "adapters/macos").iterdir()) if path.suffix in LANGUAGES]
    found += sorted((TOP / "adapters").glob("*/Mac*.cpp")) + sorted((TOP / "programs").glob("*/Mac*.cpp"))
    return sorted(set(found))


def compiler():
    return next((found for found in map(shutil.which, ("clang++-14", "clang++")) if found), None)


def system_includes(clang):
    """Where clang looks for headers here, in its order, which it would not do for an Apple target."""
    told = subprocess.run([clang, "-E", "-v", "-x", "c++", "/dev/null"], capture_output=True, text=True, check=True)
    listed = re.search(r"search starts here:\n(.*?)End of search list", told.stderr, re.S).group(1)
    return [f"-isystem{line.strip()}" for line in listed.splitlines() if line.startswith(" ")]


def check(clang, source, definitions):
    """The complaints about a file, none of a good one."""
    suffix = pathlib.Path(source).suffix
    standard = ["-std=gnu11"] if suffix == ".m" else ["-std=c++20", "-nostdinc++", *CXX_WARNINGS]
    # The C library at hand has a macro of a name that is a word of the language for Apple, and
    # shows the standard library what it wants only to those who ask for all.
    at_hand = ["-U__nonnull", "-D_GNU_SOURCE", "-nostdinc", f"-isystem{TOP / 'tests/macos/stubs'}", *system_includes(clang)]
    run = subprocess.run(
        [clang, "-target", TARGET, "-fsyntax-only", "-fno-objc-arc", "-x", LANGUAGES[suffix], *standard, *WARNINGS,
         *at_hand, f"-I{TOP}", *(f"-D{definition}" for definition in definitions), str(source)],
        capture_output=True, text=True, check=False)
    return run.stderr if run.returncode else ""


def misses_faults(clang):
    """What the check gets wrong: it has to see these faults, and nothing in the file without them."""
    faults = {
        "": "",
        "[[ABAddressBook sharedAddressBook] saveNow];": "not found",
        "[person valueForProperty:kABMobileProperty];": "undeclared identifier",
        "NSString* const text = [person vCardRepresentation];": "cannot initialize",
    }
    with tempfile.TemporaryDirectory() as folder:
        for statement, complaint in faults.items():
            source = pathlib.Path(folder) / "fault.mm"
            source.write_text(f"#import <AddressBook/AddressBook.h>\nvoid f(ABPerson* person);\n"
                              f"void f(ABPerson* person) {{ {statement} static_cast<void>(person); }}\n")
            found = check(clang, source, [])
            if bool(found) != bool(complaint) or complaint not in found:
                yield f"The check says of {statement!r}: {found!r}"


def main():
    clang = compiler()
    if clang is None:
        sys.exit("mac_syntax_test: no clang; scripts/packages/test names it")
    complaints = list(misses_faults(clang))
    sources = mac_sources()
    for source in sources:
        complaints += filter(None, [check(clang, source, sys.argv[1:])])
    print("\n".join(complaints) or f"mac_syntax: {len(sources)} files are well-formed for {TARGET}")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
