#!/usr/bin/env python3
"""Tests what is in the packages for Debian that have been built.

    package_files_test.py FOLDER BUILD-FOLDER [UNITTEST-OPTION]...

FOLDER has the packages, BUILD-FOLDER is where they were built.
"""

import gzip
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
PROGRAMS = {"dunmora": "usr/bin/dunmora", "dunmora-cli": "usr/bin/dunmora-cli",
            "dunmora-eds": "usr/lib/*/dunmora/dunmora-eds.so"}


def sections(program):
    listing = subprocess.run(["readelf", "--wide", "--sections", program], capture_output=True, text=True, check=True)
    return set(re.findall(r"\] (\.\S+)", listing.stdout))


def build_id(program):
    notes = subprocess.run(["readelf", "--notes", program], capture_output=True, text=True, check=True)
    return re.search(r"Build ID: ([0-9a-f]+)", notes.stdout)[1]


class PackageFiles(unittest.TestCase):
    folder: pathlib.Path
    build: pathlib.Path

    @classmethod
    def setUpClass(cls):
        cls.extracted = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        for package in [*PROGRAMS, *(f"{name}-dbgsym" for name in PROGRAMS)]:
            file, = cls.folder.glob(f"{package}_*.deb")
            subprocess.run(["dpkg-deb", "--raw-extract", file, cls.extracted / package], check=True)

    def program(self, package):
        found, = (self.extracted / package).glob(PROGRAMS[package])
        return found

    def test_have_programs_without_symbols(self):
        for package in PROGRAMS:
            names = sections(self.program(package))

            self.assertEqual({name for name in names if name.startswith(".debug")} | names & {".symtab", ".comment"}, set())

    def test_have_the_symbols_apart_where_a_debugger_finds_them(self):
        for package in PROGRAMS:
            number = build_id(self.program(package))
            symbols = (self.extracted / f"{package}-dbgsym/usr/lib/debug/.build-id" / number[:2]) / f"{number[2:]}.debug"

            self.assertLessEqual({".debug_info", ".debug_line", ".symtab"}, sections(symbols))

    def test_do_not_name_the_folders_from_which_they_were_built(self):
        folders = {str(ROOT).encode(), str(self.build).encode()}
        for path in self.extracted.rglob("*"):
            if path.is_file() and path.suffix != ".debug":
                self.assertEqual({folder for folder in folders if folder in path.read_bytes()}, set(), path)
        for path in self.extracted.rglob("*.debug"):
            texts = subprocess.run(["readelf", "--string-dump=.debug_str", "--string-dump=.debug_line_str",
                                    "--decompress", path], capture_output=True, check=True).stdout
            self.assertIn(b".cpp", texts)
            self.assertEqual({folder for folder in folders if folder in texts}, set(), path)

    def test_are_no_installation_for_uninstall(self):
        self.assertEqual(list(self.build.glob("installed_*.txt")), [])

    def test_have_their_changes_in_debians_format(self):
        for package in PROGRAMS:
            control = (self.extracted / package / "DEBIAN/control").read_text(encoding="utf-8")
            version = re.search(r"^Version: (.*)$", control, re.M)[1]
            maintainer = re.search(r"^Maintainer: (.*)$", control, re.M)[1]
            packed = self.extracted / package / f"usr/share/doc/{package}/changelog.gz"

            text = gzip.decompress(packed.read_bytes()).decode()

            self.assertTrue(text.startswith(f"{package} ({version}) "), text)
            self.assertIn(f" -- {maintainer}  ", text)

    def test_have_a_compressed_manual_page_and_no_other(self):
        for package in ("dunmora", "dunmora-cli"):
            pages = [path.name for path in (self.extracted / package / "usr/share/man").rglob("*.*")]

            self.assertEqual(pages, [f"{package}.1.gz"])

    def test_have_the_notice_of_what_is_compiled_into_the_programs(self):
        for package in PROGRAMS:
            text = (self.extracted / package / f"usr/share/doc/{package}/copyright").read_text(encoding="utf-8")

            self.assertIn("University of Cincinnati", text)
            self.assertNotIn("@", re.sub(r"<\S+@\S+>", "", text))


if __name__ == "__main__":
    PackageFiles.folder = pathlib.Path(sys.argv.pop(1)).resolve()
    PackageFiles.build = pathlib.Path(sys.argv.pop(1)).resolve()
    unittest.main()
