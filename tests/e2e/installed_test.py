#!/usr/bin/python3
"""Uses the program where it is installed: installed_test.py CMAKE BUILD-FOLDER BINDIR DOCDIR [UNITTEST-OPTION]...

BINDIR and DOCDIR are the folders of the programs and of the documentation in the prefix.
"""

import os
import pathlib
import subprocess
import sys
import tempfile

import windowcase
from dunmoracase import DunmoraCase
from updateservice import Browser

PREFIX = "/opt/a prefix"


class InstalledTest(DunmoraCase):
    cmake = build = bindir = docdir = ""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        stage = cls.enterClassContext(tempfile.TemporaryDirectory(prefix="dunmora-installed-"))
        cls.run_cmake(stage, "--install", cls.build, "--prefix", PREFIX, "--component", "dunmora")
        cls.addClassCleanup(cls.run_cmake, stage, "--build", cls.build, "--target", "uninstall")
        cls.prefix = pathlib.Path(f"{stage}{PREFIX}").resolve()
        cls.executable = str(cls.prefix / cls.bindir / "dunmora")

    @classmethod
    def run_cmake(cls, stage, *arguments):
        subprocess.run([cls.cmake, *arguments], env={**os.environ, "DESTDIR": stage}, stdout=subprocess.DEVNULL,
                       check=True)

    def test_opens_the_installed_guide(self):
        browser = self.enterContext(Browser(self.home))
        dunmora = self.start(self.book)
        dunmora.search()

        dunmora.choose("Help", "Dunmora Help")

        page = self.prefix / self.docdir / "guide/index.html"
        self.assertTrue(page.is_file())
        dunmora.wait_for(lambda: browser.opened == [page.as_uri()], "guide in the browser")


if __name__ == "__main__":
    windowcase.prepare()
    InstalledTest.cmake, InstalledTest.build, InstalledTest.bindir, InstalledTest.docdir = (
        sys.argv.pop(1) for _ in range(4))
    windowcase.run_tests()
