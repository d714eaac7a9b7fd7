#!/usr/bin/env python3
"""Deletes people with a fault in every system call: faults_test.py INJECT-FAULTS DUNMORA-CLI [OPTION]...

After every fault each card is in the book or in a file that the program names, no file is half written, nobody is
deleted without the backup that was asked for, and status and messages are true. The moments come from a recorded
deletion, so that every system call has its turn; other programs act while the deletion is stopped there.
"""

import argparse
import collections
import concurrent.futures
import dataclasses
import errno
import pathlib
import random
import subprocess
import sys
import tempfile

import books
import verdict
from injection import CannotTrace, Injector

SKIPPED = 77

# Errors that a call may fail with; EIO for any other. EINTR has its own runs.
ERRORS = {
    "openat": ("EACCES", "EMFILE", "EIO"), "openat-nameless": ("EOPNOTSUPP", "ENOSPC", "EIO"), "open": ("EACCES", "EIO"),
    "read": ("EIO",), "write": ("ENOSPC", "EIO"), "pread64": ("EIO",), "pwrite64": ("ENOSPC",), "fsync": ("EIO", "ENOSPC"),
    "access": ("EACCES",), "faccessat": ("EACCES",), "faccessat2": ("EACCES",),
    "newfstatat": ("EACCES", "EIO"), "fstat": ("EIO",), "stat": ("EACCES",), "lstat": ("EACCES",), "statx": ("EIO",),
    "flock": ("EWOULDBLOCK", "ENOLCK"), "fchmod": ("EPERM",), "fchown": ("EPERM",),
    "flistxattr": ("EIO", "ENOMEM"), "fgetxattr": ("EIO",), "fsetxattr": ("ENOSPC", "EPERM"),
    "rename": ("EACCES", "ENOSPC"), "renameat2-exchange": ("EINVAL", "EACCES", "EIO"),
    "renameat2-noreplace": ("EINVAL", "EEXIST", "EACCES"), "link": ("EEXIST",), "linkat": ("EEXIST", "EMLINK", "EIO"),
    "unlink": ("EACCES", "EIO"), "unlinkat": ("EACCES", "EIO"), "fcntl-setlease": ("EAGAIN", "EACCES", "EINVAL"),
    "mmap": ("ENOMEM",), "mremap": ("ENOMEM",), "mprotect": ("ENOMEM",),
    "clone": ("EAGAIN",), "clone3": ("EAGAIN",), "readlink": ("EACCES",), "getcwd": ("ENOENT",),
}
# Calls that cannot fail, whose failure the C library takes for an error in the program, or, brk, that report it in
# another way.
WITHOUT_ERRORS = {"exit_group", "futex", "munmap", "rt_sigaction", "rt_sigprocmask", "madvise", "getuid", "geteuid", "getpid",
                  "brk"}
# Calls that a signal can interrupt on a local file system.
INTERRUPTIBLE = {"openat", "openat-nameless", "read", "write", "pread64", "pwrite64", "fsync", "flock"}
TRANSFERS = {"read", "write", "pread64", "pwrite64"}
# Calls that do their work although they report an error.
LATE = {"close": "EIO", "fsync": "EIO"}

# Errors by which the file system says that it cannot do this: another program's last write is then not noticed.
NOT_SUPPORTED = {"renameat2-exchange": {"EINVAL"}, "fcntl-setlease": {"EACCES", "EINVAL"}}

RANDOM_CUTS, PAIRS = 20, 150

SHOWN_FAILURES = 30


@dataclasses.dataclass(frozen=True)
class Trial:
    """One run: a scenario and its faults."""

    scenario: books.Scenario
    kind: str
    # Where the fault happens, in words.
    place: str
    faults: tuple
    attribute: bytes | None = None

    def __str__(self):
        faults = "; ".join(" ".join(describe(value) for value in fault) for fault in self.faults)
        return f"{self.scenario.name}: {self.kind} at {self.place}: {faults}"


def describe(value):
    return "+".join(books.texts_of(value) or ["a note"]) if isinstance(value, bytes) else str(value)


def at(call, *rest):
    return (call.name, call.occurrence, *rest)


def attribute_here(home):
    path = home / "attribute"
    path.touch()
    books.set_attribute(path)
    return books.attribute_of(path)


class Plan:
    """All trials, always in the same order: the number of a trial identifies it."""

    def __init__(self, injector, parent, seed, pairs):
        self.injector, self.parent = injector, parent
        self.chance = random.Random(seed)
        self.trials = []
        with tempfile.TemporaryDirectory(dir=parent) as home:
            self.attribute = attribute_here(pathlib.Path(home))
        for scenario in books.SCENARIOS:
            calls = self.record(scenario)
            self.add_single_faults(scenario, calls)
            self.add_random_faults(scenario, calls, pairs)

    def record(self, scenario):
        """Returns the calls of an undisturbed deletion, from the first one that concerns the book."""
        with tempfile.TemporaryDirectory(dir=self.parent) as folder:
            home = pathlib.Path(folder)
            scenario.write(home)
            trial = Trial(scenario, "none", "", scenario.lacks, self.attribute)
            result = self.injector.run(home, scenario.arguments, trial.faults, record=True)
            outcome = verdict.Verdict(trial, home, self.injector, result).check()
            verdict.require(outcome == "deleted", f"{scenario.name}: the undisturbed deletion ended with: {outcome}")
        first = next(index for index, call in enumerate(result.calls)
                     if call.name != "execve" and scenario.book.partition("/")[0] in call.target.rpartition("/")[2])
        return result.calls[first:]

    def add(self, scenario, kind, place, *faults):
        self.trials.append(Trial(scenario, kind, str(place), (*faults, *scenario.lacks), self.attribute))

    def add_single_faults(self, scenario, calls):
        for call in calls:
            for name in () if call.name in WITHOUT_ERRORS else ERRORS.get(call.name, ("EIO",)):
                if call.name not in LATE or call.name != "close":
                    self.add(scenario, "fails", call, at(call, "fail", getattr(errno, name)))
            if call.name in LATE:
                self.add(scenario, "fails late", call, at(call, "fail-after", getattr(errno, LATE[call.name])))
            # The standard library does not repeat what it writes to a pipe.
            if call.name in INTERRUPTIBLE and "pipe:" not in call.target:
                self.add(scenario, "interrupted", call, at(call, "fail", errno.EINTR))
            if call.name in TRANSFERS and call.result > 1:
                for size in {1, call.result // 2, call.result - 1}:
                    self.add(scenario, "cut short", call, at(call, "cut", size))
            self.add(scenario, "killed", call, at(call, "kill"))
            if call.concerns_home or call.name == "exit_group":
                for kind, path, values in self.writers(scenario, "written-1"):
                    self.add(scenario, f"others {kind}", call, at(call, kind, path, *values))

    def writers(self, scenario, text):
        """Returns what other programs may do: the kind, the path and the remaining values."""
        # Without an exchange their last write before a rename cannot be noticed.
        if scenario.lacks == books.NO_EXCHANGE:
            return
        file_names = [file for file in scenario.files if file in ("a.vcf", "b.vcf", "book.vcf")]
        content = books.TEXTS[text]
        for file in file_names:
            path = f"book/{file}"
            old = books.content_of(scenario.files[file])
            yield "append", path, (content,)
            yield "replace", path, (old + content,)
            yield "remove", path, ()
            # Without leases nothing shows that a program keeps a file open.
            if scenario.lacks != books.NO_LEASES:
                yield "hold", path, (content,)
            if old.startswith(books.KEPT):
                yield "overwrite", path, (books.NOTE, b"1111111111")

    def add_random_faults(self, scenario, calls, pairs):
        """Adds runs in which every transfer is cut, and runs with two faults, at random calls."""
        first = {name: next((call for call in calls if call.name == name), None) for name in sorted(TRANSFERS)}
        for _ in range(RANDOM_CUTS):
            seed = self.chance.randrange(10 ** 6)
            self.add(scenario, "all cut randomly", f"seed {seed}",
                     *((call.name, f"{call.occurrence}+", "cut-randomly", seed) for call in first.values() if call))
        for _ in range(pairs):
            one, other = (calls[index] for index in sorted(self.chance.choices(range(len(calls)), k=2)))
            self.add(scenario, "two faults", f"{one} and {other}", self.random_fault(scenario, one, "written-1"),
                     self.random_fault(scenario, other, "written-2"))

    def random_fault(self, scenario, call, text):
        faults = [at(call, kind, path, *values) for kind, path, values in self.writers(scenario, text)]
        faults += [at(call, "release")] * 2
        # Behind another fault, a failing write may be the one of the error's message.
        if call.name not in WITHOUT_ERRORS | {"close", "write"}:
            faults += [at(call, "fail", getattr(errno, name)) for name in ERRORS.get(call.name, ("EIO",))
                       if name not in NOT_SUPPORTED.get(call.name, ())] * 2
        faults += [at(call, "kill")] * (1 if text == "written-1" else 2)
        return self.chance.choice(faults)


class Runs:
    """The runs of trials, several at a time."""

    def __init__(self, plan, injector, parent):
        self.plan, self.injector, self.parent = plan, injector, parent
        self.outcomes = collections.defaultdict(collections.Counter)
        self.failures = []

    def try_one(self, number, show=False):
        trial = self.plan.trials[number]
        with tempfile.TemporaryDirectory(dir=self.parent) as folder:
            home = pathlib.Path(folder)
            trial.scenario.write(home)
            try:
                result = self.injector.run(home, trial.scenario.arguments, trial.faults, record=show)
                if show:
                    show_run(trial, home, result)
                outcome = verdict.Verdict(trial, home, self.injector, result).check()
            except verdict.Violation as violation:
                return f"run {number}, {trial}: {violation}\n    it reported {result.err!r}", None
            except subprocess.TimeoutExpired:
                return f"run {number}, {trial}: it hangs", None
            own = range(len(trial.faults) - len(trial.scenario.lacks))
            if not {index for index, _ in result.happened} & set(own):
                return f"run {number}, {trial}: the fault did not happen", None
            return None, outcome

    def try_all(self, numbers, workers):
        with concurrent.futures.ThreadPoolExecutor(workers) as pool:
            for number, (failure, outcome) in zip(numbers, pool.map(self.try_one, numbers)):
                if failure:
                    self.failures.append(failure)
                self.outcomes[self.plan.trials[number].kind][outcome or "FAILED"] += 1

    def table(self):
        rows = [("fault", "runs", "outcomes")]
        for kind, counts in self.outcomes.items():
            outcomes = ", ".join(f"{count} × {outcome}" for outcome, count in counts.most_common())
            rows.append((kind, str(counts.total()), outcomes))
        total = sum((counts for counts in self.outcomes.values()), collections.Counter()).total()
        rows.append(("all", str(total), ""))
        widths = [max(len(row[column]) for row in rows) for column in range(2)]
        return "\n".join(f"{kind:{widths[0]}}  {runs:>{widths[1]}}  {outcomes}".rstrip() for kind, runs, outcomes in rows)


def show_run(trial, home, result):
    print(trial)
    for call in result.calls:
        print(f"  {call} = {call.result}")
    print(f"{result.end}\n{result.out}{result.err}happened: {result.happened}")
    for path in sorted((home / "book").iterdir()):
        print(f"  {path.name}: {books.texts_of(path.read_bytes())}")


def sample_of(plan, count, seed):
    """Returns the numbers of some trials, of every kind about as many."""
    by_kind = collections.defaultdict(list)
    for number, trial in enumerate(plan.trials):
        by_kind[trial.kind].append(number)
    chance = random.Random(seed)
    for numbers in by_kind.values():
        chance.shuffle(numbers)
    sample = []
    while len(sample) < min(count, len(plan.trials)):
        sample += [numbers.pop() for numbers in by_kind.values() if numbers]
    return sorted(sample[:count])


def parsed_arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("injector")
    parser.add_argument("program")
    parser.add_argument("--seed", type=int, help="chooses the sample and the random faults; random by default")
    parser.add_argument("--sample", type=int, help="tries only so many, of every kind about as many")
    parser.add_argument("--run", type=int, help="tries only this one, with the seed it had, and shows its calls")
    parser.add_argument("--kind", help="tries only faults of this kind")
    parser.add_argument("--pairs", type=int, default=PAIRS, help="runs with two faults for each kind of book")
    parser.add_argument("--workers", type=int, default=2, help="how many runs at a time")
    return parser.parse_args()


def main():
    arguments = parsed_arguments()
    seed = arguments.seed if arguments.seed is not None else random.SystemRandom().randrange(10 ** 6)
    injector = Injector(arguments.injector, arguments.program)
    with tempfile.TemporaryDirectory(prefix="dunmora-faults-") as folder:
        parent = pathlib.Path(folder)
        try:
            plan = Plan(injector, parent, seed, arguments.pairs)
        except CannotTrace:
            print("Processes cannot be traced here.")
            return SKIPPED
        runs = Runs(plan, injector, parent)
        if arguments.run is not None:
            failure, outcome = runs.try_one(arguments.run, show=True)
            print(failure or outcome)
            return 1 if failure else 0
        numbers = range(len(plan.trials))
        if arguments.kind:
            numbers = [number for number in numbers if plan.trials[number].kind == arguments.kind]
        elif arguments.sample:
            numbers = sample_of(plan, arguments.sample, seed)
        print(f"{len(numbers)} of {len(plan.trials)} runs, seed {seed}; repeat one with "
              f"--seed {seed} --pairs {arguments.pairs} --run NUMBER", flush=True)
        runs.try_all(numbers, arguments.workers)
    print("\n".join(runs.failures[:SHOWN_FAILURES]))
    print(runs.table())
    return 1 if runs.failures else 0


if __name__ == "__main__":
    sys.exit(main())
