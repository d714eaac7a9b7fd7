"""Runs programs and takes down what they cost."""

import dataclasses
import os
import pathlib
import subprocess

# A run is repeated until this often, or until its repetitions have taken this long together.
REPETITIONS = 5
ENOUGH_SECONDS = 2.5


class Failed(Exception):
    """A measured program did not do what it should; the text says which. `status` is its exit status, if it ran."""

    def __init__(self, text, status=None):
        super().__init__(text)
        self.status = status


@dataclasses.dataclass(frozen=True)
class Cost:
    """What one run took: seconds, seconds of processor time, and the most memory it had, in bytes."""

    wall: float
    processor: float
    peak: int

    @staticmethod
    def of(line):
        """Reads a line that the program `measure` has printed."""
        wall, processor, peak = line.split()
        return Cost(float(wall), float(processor), int(peak))


class Meter:
    """Measures programs with the help of `measure`, in an environment without the user's preferences."""

    def __init__(self, programs, folder, repetitions=REPETITIONS):
        self.programs = pathlib.Path(programs)
        self.folder = pathlib.Path(folder)
        self.repetitions = repetitions
        self.environment = {**os.environ, "XDG_CONFIG_HOME": str(self.folder / "config"), "LC_ALL": "C.UTF-8"}

    def program(self, name):
        """The path of one of the benchmarks' programs, or None if it is not built."""
        path = self.programs / name
        return path if path.exists() else None

    def run(self, command):
        """Runs a command and returns its standard output. What it complains about is shown only if it fails."""
        command = [str(part) for part in command]
        complaints = self.folder / "complaints"
        with complaints.open("wb") as errors:
            done = subprocess.run(command, env=self.environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                  stderr=errors, check=False)
        if done.returncode != 0:
            raise Failed(f"{' '.join(command)}\n{complaints.read_text(errors='replace')[-2000:]}", done.returncode)
        return done.stdout.decode()

    def once(self, command):
        return Cost.of(self.run([self.programs / "measure", *command]))

    def best(self, command, prepare=lambda: None):
        """The cost of the quickest of several runs, each after `prepare`."""
        costs = []
        while not costs or (len(costs) < self.repetitions and sum(cost.wall for cost in costs) < ENOUGH_SECONDS):
            prepare()
            costs.append(self.once(command))
        return min(costs, key=lambda cost: cost.wall)
