"""Processor time and memory of runs of the terminal program, compared with each other."""

import dataclasses
import os
import pathlib
import resource
import subprocess
import tempfile

from shared import environment_at

# A test must not fail because the machine is busy: far from this, a cost has another order.
TOLERANCE = 8


@dataclasses.dataclass
class Cost:
    """One run."""

    code: int
    out: bytes
    err: str
    seconds: float
    kilobytes: int

    def __str__(self):
        return f"{self.seconds:.2f} s of processor time, {self.kilobytes / 1024:.0f} MiB of memory, status {self.code}"


def run(program, home, arguments, open_files=None):
    """Runs the program in the folder `home`, which also is the user's, and returns what that cost."""
    def limit():
        resource.setrlimit(resource.RLIMIT_NOFILE, (open_files, open_files))

    with tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as err:
        process = subprocess.Popen([pathlib.Path(program).resolve(), *arguments], cwd=home, env=environment_at(home),
                                   stdin=subprocess.DEVNULL, stdout=out, stderr=err,
                                   preexec_fn=limit if open_files else None)
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        out.seek(0)
        err.seek(0)
        # A table of a million people is of no interest.
        return Cost(process.returncode, out.read(10 ** 6), err.read(10 ** 5).decode(errors="replace"),
                    usage.ru_utime + usage.ru_stime, usage.ru_maxrss)


def fast_folder():
    """Where a hundred thousand files can be flushed one by one within a minute: in memory, if the system offers that."""
    memory = pathlib.Path("/dev/shm")
    return memory if os.access(memory, os.W_OK) else None
