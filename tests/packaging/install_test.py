#!/usr/bin/env python3
"""Installs what has been built into a folder of its own, uses it there and uninstalls it.

    install_test.py PATH-OF-CMAKE BUILD-FOLDER APP-ID --bindir DIR --libdir DIR --datadir DIR --docdir DIR --mandir DIR
                    --zshdir DIR [--built TARGET]... [UNITTEST-OPTION]...

The options say into which folders of the prefix the files go, and which of the optional targets have been built.
"""

import argparse
import os
import pathlib
import re
import shutil
import stat
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
SAMPLE = ROOT / "samples/address-book.vcf"
MODULE = "dunmora-eds.so"
PICTURES = (16, 22, 24, 32, 48, 64, 128, 256, 512)
PREFIX = "/opt/a prefix"


def settings():
    parser = argparse.ArgumentParser(add_help=False)
    for name in ("cmake", "build", "app_id"):
        parser.add_argument(name)
    for name in ("bindir", "libdir", "datadir", "docdir", "mandir", "zshdir"):
        parser.add_argument(f"--{name}", required=True)
    parser.add_argument("--built", action="append", default=[],
                        choices=["dunmora", "dunmora-eds", "dunmora_icons", "guide"])
    return parser.parse_known_args()


def files_of_program(given, name):
    """Returns the program, its manual page, and its completions where bash, zsh and fish look for them."""
    return {f"{given.bindir}/{name}", f"{given.mandir}/man1/{name}.1", f"{given.zshdir}/_{name}",
            f"{given.datadir}/bash-completion/completions/{name}",
            f"{given.datadir}/fish/vendor_completions.d/{name}.fish"}


def files_of_guide():
    """Returns what is made of the user guide, relative to its folder: the pages and the pictures in them."""
    files = {"style.css"}
    for page in (ROOT / "docs/guide").glob("*.md"):
        files.add(f"{page.stem}.html")
        for picture in re.findall(r"/([\w-]+)-light\.png\)", page.read_text(encoding="utf-8")):
            files |= {f"pictures/{picture}-{scheme}.png" for scheme in ("light", "dark")}
    return files


def files_of_components(given):
    """Returns what has to be installed: {component: {path in the prefix}}."""
    files = {"dunmora-cli": files_of_program(given, "dunmora-cli"), "dunmora-doc": {f"{given.docdir}/CHANGELOG.md"}}
    if "dunmora-eds" in given.built:
        files["dunmora-eds"] = {f"{given.libdir}/dunmora/{MODULE}"}
    if "dunmora" in given.built:
        icons = f"{given.datadir}/icons/hicolor"
        files["dunmora"] = files_of_program(given, "dunmora")
        files["dunmora"] |= {f"{given.datadir}/applications/{given.app_id}.desktop",
                             f"{given.datadir}/metainfo/{given.app_id}.metainfo.xml",
                             f"{icons}/scalable/apps/{given.app_id}.svg",
                             f"{icons}/symbolic/apps/{given.app_id}-symbolic.svg"}
        if "dunmora_icons" in given.built:
            files["dunmora"] |= {f"{icons}/{size}x{size}/apps/{given.app_id}.png" for size in PICTURES}
        if "guide" in given.built:
            files["dunmora"] |= {f"{given.docdir}/guide/{file}" for file in files_of_guide()}
    return files


class InstallCase(unittest.TestCase):
    given: argparse.Namespace

    def setUp(self):
        self.records = self.installation_records()
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory(prefix="dunmora install ")))
        self.stage = self.folder / "stage"
        self.prefix = pathlib.Path(f"{self.stage}{PREFIX}")
        self.addCleanup(self.uninstall)

    def installation_records(self):
        """Returns what installations have recorded in the build folder; each place has records of its own."""
        return set(pathlib.Path(self.given.build).glob("installed_*.txt"))

    def run_cmake(self, *arguments):
        run = subprocess.run([self.given.cmake, *arguments], env={**os.environ, "DESTDIR": str(self.stage)},
                             cwd=self.folder, capture_output=True, text=True, check=False, umask=0o002)
        return run.returncode, run.stdout + run.stderr

    def install(self, *components):
        """Installs these components, all without any."""
        for options in [["--component", component] for component in components] or [[]]:
            status, output = self.run_cmake("--install", self.given.build, "--prefix", PREFIX, *options)
            self.assertEqual(status, 0, output)

    def uninstall(self):
        return self.run_cmake("--build", self.given.build, "--target", "uninstall")

    def installed(self):
        """Returns the paths of the installed files in the prefix."""
        return {path.relative_to(self.prefix).as_posix() for path in self.prefix.rglob("*") if not path.is_dir()}

    def run_cli(self, *arguments, prefix=None):
        environment = {"PATH": os.environ["PATH"], "HOME": str(self.folder), "LANG": "C.UTF-8",
                       "DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent"}
        environment.update({name: value for name, value in os.environ.items() if name.endswith("SAN_OPTIONS")})
        return subprocess.run([(prefix or self.prefix) / self.given.bindir / "dunmora-cli", *arguments],
                              env=environment, capture_output=True, text=True, timeout=60, check=False,
                              stdin=subprocess.DEVNULL)


class Installation(InstallCase):
    def test_has_every_file_and_no_other(self):
        self.install()

        self.assertEqual(self.installed(), set().union(*files_of_components(self.given).values()))

    def test_of_a_component_has_only_its_files(self):
        for component, files in files_of_components(self.given).items():
            with self.subTest(component):
                self.install(component)

                self.assertEqual(self.installed(), files)
                self.assertEqual(self.uninstall()[0], 0)

    def test_can_be_changed_by_its_owner_only(self):
        self.install()

        for path in (self.prefix, *self.prefix.rglob("*")):
            self.assertFalse(path.stat().st_mode & (stat.S_IWGRP | stat.S_IWOTH), path)

    def test_is_refused_where_its_record_would_name_other_paths(self):
        whole = self.stage
        for stage, prefix in (("stage", "/opt/a;b"), ("stage", "/opt/[a"), ("stage;2", "/opt"), ("stage]", "/opt")):
            self.stage = whole.with_name(stage)
            status, output = self.run_cmake("--install", self.given.build, "--prefix", prefix)

            self.assertNotEqual(status, 0, (stage, prefix))
            self.assertIn("must not have a semicolon or a bracket in its path", " ".join(output.split()))
            self.assertEqual(list(self.folder.iterdir()), [])
            self.assertEqual(self.installation_records(), self.records)

    def test_of_the_terminal_program_alone_can_be_used(self):
        self.install("dunmora-cli")

        run = self.run_cli("list", "--quiet", SAMPLE)

        self.assertEqual((run.returncode, run.stderr), (0, ""))
        self.assertIn("duplicates of", run.stdout)

    def test_finds_its_module_wherever_it_has_been_moved(self):
        if "dunmora-eds" not in self.given.built:
            self.skipTest("The module for the desktop's address books is not built.")
        self.install("dunmora-cli", "dunmora-eds")
        moved = self.folder / "moved"
        shutil.move(self.prefix, moved)

        self.assertNotIn("module", self.run_cli("books", prefix=moved).stderr)
        shutil.rmtree(moved / self.given.libdir / "dunmora")
        self.assertIn(f"{MODULE}, is not installed", self.run_cli("books", prefix=moved).stderr)


class Uninstallation(InstallCase):
    def test_leaves_no_trace(self):
        self.install()
        self.install()

        status, output = self.uninstall()

        self.assertEqual(status, 0, output)
        self.assertEqual(list(self.folder.iterdir()), [])
        self.assertEqual(self.installation_records(), self.records)

    def test_leaves_what_others_have_put_there(self):
        theirs = self.prefix / "share/applications/another.desktop"
        theirs.parent.mkdir(parents=True)
        theirs.touch()
        empty = self.prefix / "share/icons"
        empty.mkdir()
        self.install()
        later = self.prefix / self.given.docdir / "NOTES"
        later.touch()

        status, output = self.uninstall()

        self.assertEqual(status, 0, output)
        self.assertEqual(self.installed(), {path.relative_to(self.prefix).as_posix() for path in (theirs, later)})
        self.assertTrue(empty.is_dir())
        self.assertFalse((self.prefix / self.given.bindir).exists())

    def test_removes_only_what_has_been_installed_in_the_same_place(self):
        self.install("dunmora-doc")
        first, self.stage = self.stage, self.folder / "another stage"
        self.install("dunmora-doc")

        status, output = self.uninstall()

        self.assertEqual(status, 0, output)
        self.assertEqual(list(self.folder.iterdir()), [first])
        self.assertEqual(self.installed(), files_of_components(self.given)["dunmora-doc"])
        self.stage = first

    def test_knows_where_a_relative_stage_was(self):
        whole, self.stage = self.stage, pathlib.Path(self.stage.name)
        self.install("dunmora-doc")
        self.stage = whole
        self.assertEqual(self.installed(), files_of_components(self.given)["dunmora-doc"])

        status, output = self.uninstall()

        self.assertEqual(status, 0, output)
        self.assertEqual(list(self.folder.iterdir()), [])

    def test_removes_the_folders_of_a_relative_prefix(self):
        status, output = self.run_cmake("--install", self.given.build, "--prefix", "a prefix", "--component",
                                        "dunmora-doc")
        self.assertEqual(status, 0, output)

        status, output = self.uninstall()

        self.assertEqual(status, 0, output)
        self.assertEqual(list(self.folder.iterdir()), [])

    def test_says_so_where_nothing_has_been_installed(self):
        status, output = self.uninstall()

        self.assertNotEqual(status, 0)
        self.assertIn("Nothing has been installed from", " ".join(output.split()))


if __name__ == "__main__":
    InstallCase.given, rest = settings()
    unittest.main(argv=[sys.argv[0], *rest])
