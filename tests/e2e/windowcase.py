"""What the tests of programs with windows have in common."""

import os
import pathlib
import shutil
import signal
import sys
import tempfile
import unittest

from desktop import Desktop, missing_tool
from program import Program

# What CTest takes for a test that could not be run.
EXIT_SKIPPED = 77


def save_evidence(program, name):
    """Keeps what a program shows at this moment; returns the folder."""
    top = pathlib.Path(os.environ.get("DUNMORA_EVIDENCE") or tempfile.gettempdir())
    folder = top / f"{name}-{os.getpid()}"
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    program.save_evidence(folder)
    return folder


class WindowCase(unittest.TestCase):
    """A desktop a class; a home of its own and a fresh program a test."""

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
        """Starts the program; the run before, if any, has to have ended."""
        self.program = kind(self.desktop, [self.executable, *arguments], self.home)
        self.addCleanup(self.program.kill)
        return self.program



class EvidenceResult(unittest.TextTestResult):
    """Asks a test for evidence as soon as it has failed, while its program still runs."""

    def addFailure(self, test, err):
        self.keep_evidence(test, err)
        super().addFailure(test, err)

    def addError(self, test, err):
        self.keep_evidence(test, err)
        super().addError(test, err)

    def keep_evidence(self, test, err):
        if getattr(test, "program", None) is not None:
            try:
                err[1].add_note(f"What it showed then: {save_evidence(test.program, test.id())}")
            except Exception as error:  # The test's own failure must be told whatever happens.
                err[1].add_note(f"Nothing could be kept of what it showed: {error!r}")


def prepare():
    """To be called first by every script that starts a desktop."""
    if not shutil.which("Xvfb"):
        print("SKIPPED: there is no Xvfb on this machine, so no window was tested", file=sys.stderr)
        sys.exit(EXIT_SKIPPED)
    missing = missing_tool()
    if missing:
        sys.exit(f"{missing} is missing: scripts/install_packages.sh test")
    # Told to end, it takes its desktop with it.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(128 + signal.SIGTERM))


def main():
    """Runs the tests of the script: SCRIPT PATH-OF-PROGRAM [UNITTEST-OPTION]..."""
    prepare()
    WindowCase.executable = os.path.abspath(sys.argv.pop(1))
    unittest.main(testRunner=unittest.TextTestRunner(resultclass=EvidenceResult, verbosity=2))
