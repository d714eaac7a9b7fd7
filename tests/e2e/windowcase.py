"""Shared by the tests of programs with windows."""

import os
import pathlib
import shutil
import signal
import sys
import tempfile
import unittest

from desktop import Desktop, missing_tool
from program import Program

# The status that CTest counts as skipped.
EXIT_SKIPPED = 77


def save_evidence(program, name):
    """Saves the program's screen and output and returns the folder."""
    top = pathlib.Path(os.environ.get("DUNMORA_EVIDENCE") or tempfile.gettempdir())
    folder = top / f"{name}-{os.getpid()}"
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    program.save_evidence(folder)
    return folder


class WindowCase(unittest.TestCase):
    """A test with a desktop shared by its class, and with its own home and program."""

    executable = ""
    kind_of_desktop = Desktop

    @classmethod
    def setUpClass(cls):
        cls.desktop = cls.enterClassContext(cls.kind_of_desktop())

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="dunmora-home-")
        self.addCleanup(folder.cleanup)
        self.home = pathlib.Path(folder.name)
        self.program = None

    def start(self, *arguments, kind=Program):
        """Starts the program; a previous run must have ended."""
        self.program = kind(self.desktop, [self.executable, *arguments], self.home)
        self.addCleanup(self.program.kill)
        return self.program


class EvidenceResult(unittest.TextTestResult):
    """Saves evidence as soon as a test has failed, while its program is still running."""

    def addFailure(self, test, err):
        self.keep_evidence(test, err)
        super().addFailure(test, err)

    def addError(self, test, err):
        self.keep_evidence(test, err)
        super().addError(test, err)

    def keep_evidence(self, test, err):
        if getattr(test, "program", None) is not None:
            try:
                err[1].add_note(f"Screen and output: {save_evidence(test.program, test.id())}")
            except Exception as error:  # This must not hide the test's own failure.
                err[1].add_note(f"The screen could not be saved: {error!r}")


def prepare():
    """Checks that a desktop can be started. Every script that starts one calls this first."""
    if not shutil.which("Xvfb"):
        print("SKIPPED: Xvfb is not installed, so no window was tested", file=sys.stderr)
        sys.exit(EXIT_SKIPPED)
    missing = missing_tool()
    if missing:
        sys.exit(f"{missing} is not installed. Run scripts/install_packages.sh test.")
    # Exit normally on SIGTERM, so that the desktop is stopped too.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(128 + signal.SIGTERM))


def main():
    """Runs the tests of the script: SCRIPT PATH-OF-PROGRAM [UNITTEST-OPTION]..."""
    prepare()
    WindowCase.executable = os.path.abspath(sys.argv.pop(1))
    run_tests()


def run_tests():
    """Runs the tests of the script, whose only arguments are options of unittest by now."""
    unittest.main(testRunner=unittest.TextTestRunner(resultclass=EvidenceResult, verbosity=2))
