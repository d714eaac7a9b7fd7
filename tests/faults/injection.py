"""Runs of the terminal program with faults in its system calls, by inject_faults."""

import dataclasses
import pathlib
import subprocess

from shared import environment_at

SECONDS = 60
SKIPPED = 77


class CannotTrace(Exception):
    """Processes cannot be traced here, or their system calls cannot be changed."""


@dataclasses.dataclass(frozen=True)
class Call:
    """A recorded system call."""

    name: str
    occurrence: int
    result: int
    target: str

    def __str__(self):
        return f"{self.name} number {self.occurrence} ({self.target})"

    @property
    def concerns_home(self):
        """Whether it is about a file in the run's folder, whose path is then relative."""
        return self.target != "" and not self.target.startswith("/") and "[" not in self.target


@dataclasses.dataclass
class Result:
    """What a run did."""

    end: str
    out: str
    err: str
    calls: list
    # The indices of the faults that happened, in their order, and whether another program could do its part.
    happened: list

    @property
    def was_killed(self):
        return self.end == "signal 9"


class Injector:
    """The program under test and the program that injects the faults."""

    def __init__(self, injector, program):
        self.injector = pathlib.Path(injector).resolve()
        self.program = pathlib.Path(program).resolve()

    def run(self, home, arguments, faults=(), record=False):
        """Runs the program in the folder `home`. A fault is a sequence: call, occurrence, kind, values."""
        log = home / "log"
        command = [self.injector, log, "record" if record else "quiet"]
        for fault in faults:
            command += ["--fault", *(value if isinstance(value, bytes) else str(value) for value in fault)]
        command += ["--", self.program, *arguments]
        process = subprocess.run(command, cwd=home, env=environment_at(home), stdin=subprocess.DEVNULL, capture_output=True,
                                 timeout=SECONDS, check=False)
        if process.returncode == SKIPPED:
            raise CannotTrace
        if process.returncode != 0:
            raise RuntimeError(process.stderr.decode())
        result = Result("", process.stdout.decode(errors="replace"), process.stderr.decode(errors="replace"), [], [])
        for line in log.read_text(errors="replace").splitlines():
            kind, *fields = line.split("\t")
            if kind == "call":
                result.calls.append(Call(fields[0], int(fields[1]), int(fields[2]), fields[3].replace(f"{home}/", "")))
            elif kind == "fault":
                result.happened.append((int(fields[0]), fields[1] == "done"))
            else:
                result.end = fields[0]
        log.unlink()
        return result

    def run_plainly(self, home, arguments):
        """Runs the program without a tracer. Returns its exit status, its output and its errors."""
        process = subprocess.run([self.program, *arguments], cwd=home, env=environment_at(home), stdin=subprocess.DEVNULL,
                                 capture_output=True, timeout=SECONDS, check=False)
        return process.returncode, process.stdout.decode(errors="replace"), process.stderr.decode(errors="replace")
