"""A program that the desktop starts: from a menu entry, or for a file that it opens."""

import os
import pathlib
import select
import signal
import subprocess

from desktop import tied
from waiting import wait_for


def processes_of(executable):
    """Returns the ids of the processes that run this program."""
    found = set()
    for process in pathlib.Path("/proc").glob("[0-9]*"):
        try:
            if os.readlink(process / "exe") == executable:
                found.add(int(process.name))
        except OSError:  # Another user's, or it has just ended.
            pass
    return found


class LaunchedProcess:
    """A process that another one has started, with the methods of Popen that a Program needs."""

    def __init__(self, launcher, executable, **options):
        before = processes_of(executable)
        # Some launchers end at once, others with the program.
        self.launcher = subprocess.Popen(tied(launcher), **options)
        self.pid = wait_for(lambda: processes_of(executable) - before, f"{executable} after {launcher}").pop()
        self.handle = os.pidfd_open(self.pid)
        self.returncode = None

    def poll(self):
        """Returns None while the process is running. Its status is known to its parent only."""
        if self.returncode is None and select.select([self.handle], [], [], 0)[0]:
            self.returncode = "an unknown status"
        return self.returncode

    def send_signal(self, number):
        if self.poll() is None:
            signal.pidfd_send_signal(self.handle, number)

    def kill(self):
        self.send_signal(signal.SIGKILL)

    def wait(self, timeout=None):
        if not select.select([self.handle], [], [], timeout)[0]:
            raise subprocess.TimeoutExpired(self.launcher.args, timeout)
        self.launcher.wait(timeout)
