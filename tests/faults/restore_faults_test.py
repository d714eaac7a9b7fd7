#!/usr/bin/env python3
"""Restores a backup with a fault in every system call: restore_faults_test.py INJECT-FAULTS DUNMORA-CLI [SAMPLE]

After every fault each card that was in the book, or that another program wrote meanwhile, is in the book or in a file
that the program names, no file is half written or overwritten, and everybody has been restored or nobody, except that a
program which is killed may have created a part of the new files of a folder. SAMPLE limits the number of runs.
"""

import concurrent.futures
import collections
import dataclasses
import errno
import pathlib
import random
import sys
import tempfile

import books
from faults_test import ERRORS, INTERRUPTIBLE, LATE, TRANSFERS, WITHOUT_ERRORS, at
from injection import CannotTrace, Injector
from verdict import DESTROYERS, State, Violation, require

SKIPPED = 77

BACKUP = ["kept", "ann-2", "cy-1"]


@dataclasses.dataclass(frozen=True)
class Restoring:
    """A restoration: the files before, and those that are different afterwards."""

    book: str
    files: dict
    changed: dict

    def write(self, home):
        (home / "book").mkdir()
        for file, texts in self.files.items():
            (home / "book" / file).write_bytes(books.content_of(texts))
        (home / "backup.vcf").write_bytes(books.content_of(BACKUP))

    @property
    def arguments(self):
        return ["restore", "backup.vcf", self.book, "--yes"]


ONE_FILE = ["kept", "text", "ben"]
SCENARIOS = (
    Restoring("book/book.vcf", {"book.vcf": ONE_FILE}, {"book.vcf": [*ONE_FILE, "ann-2", "cy-1"]}),
    Restoring("book", {"a.vcf": ["kept", "ann-1"], "d.vcf": ["ben"]}, {"ann-2.vcf": ["ann-2"], "cy-1.vcf": ["cy-1"]}),
)


def writers(scenario):
    """Returns what other programs may do to the files that change: the kind, the path and the remaining values."""
    written = books.TEXTS["written-1"]
    for file in scenario.changed:
        old = scenario.files.get(file, [])
        path = f"book/{file}"
        yield "replace", path, (books.content_of(old) + written,)
        if old:
            yield "append", path, (written,)
            yield "remove", path, ()
            yield "hold", path, (written,)


def trials_of(injector, parent, scenario):
    """Records an undisturbed restoration and returns the kinds of faults with the faults themselves."""
    with tempfile.TemporaryDirectory(dir=parent) as folder:
        home = pathlib.Path(folder)
        scenario.write(home)
        result = injector.run(home, scenario.arguments, record=True)
        require(check(scenario, home, injector, result, []) == "restored", f"the undisturbed run reported {result.err}")
    first = next(index for index, call in enumerate(result.calls)
                 if call.name != "execve" and scenario.book.partition("/")[0] in call.target.rpartition("/")[2])
    for call in result.calls[first:]:
        if call.name not in WITHOUT_ERRORS and call.name != "close":
            for name in ERRORS.get(call.name, ("EIO",)):
                yield "fails", at(call, "fail", getattr(errno, name))
        if call.name in LATE:
            yield "fails late", at(call, "fail-after", getattr(errno, LATE[call.name]))
        if call.name in INTERRUPTIBLE and "pipe:" not in call.target:
            yield "interrupted", at(call, "fail", errno.EINTR)
        if call.name in TRANSFERS and call.result > 1:
            yield "cut short", at(call, "cut", call.result // 2)
        yield "killed", at(call, "kill")
        if call.concerns_home or call.name == "exit_group":
            for kind, path, values in writers(scenario):
                yield f"others {kind}", at(call, kind, path, *values)


def needed_after(scenario, others):
    """Returns the texts that must still be there."""
    needed = {text for texts in scenario.files.values() for text in texts}
    for fault in others:
        kind, path = fault[2], fault[3]
        if kind == "remove":
            needed -= set(scenario.files[path.rpartition("/")[2]])
        else:
            needed.add("written-1")
    return needed


def check(scenario, home, injector, result, others):
    """Returns the outcome in a few words. Errors: Violation."""
    state = State(home / "book")
    reading = injector.run_plainly(home, ["list", scenario.book])[2] if state.leftovers else ""
    for file, texts in state.book.items():
        require(texts is not None, f"{file} is half written")
        require(len(texts) == len(set(texts)), f"{file} holds a text twice: {texts}")
    needed = needed_after(scenario, others)
    lost = needed - state.texts_named_in(result.err + reading)
    require(not lost, f"lost: {', '.join(sorted(lost))}")
    if not result.was_killed:
        for file, texts in state.leftovers.items():
            require(file in result.err + reading or set(texts or ()) <= state.texts, f"it left {file} without a word")
    is_old = state.book == scenario.files
    # A name that cannot be looked up is taken: the file then gets another one.
    new = {**scenario.files, **scenario.changed}
    is_new = sorted(state.book.values()) == sorted(new.values()) and all(
        state.book.get(file) == new[file] for file in scenario.files)
    is_complete = set(BACKUP) <= state.texts
    is_destroyed = any(fault[2] in DESTROYERS for fault in others)
    if result.was_killed:
        return check_killed(scenario, home, injector, state)
    if result.end == "exit 0":
        require(is_complete or is_destroyed, f"it reported success, but the book is {state.book}")
        require(is_new or others, f"the book is not the new one: {state.book}")
        return "restored"
    require(result.end == "exit 1", f"it ended with {result.end}")
    require("dunmora-cli: " in result.err, f"no message, but {result.err!r}")
    if not is_complete:
        require(is_old or others, f"it changed the book: {state.book}")
        return "error, nothing restored"
    return "restored, and an error"


def check_killed(scenario, home, injector, state):
    new = {**scenario.files, **scenario.changed}
    for file, texts in state.book.items():
        require(texts in (scenario.files.get(file), new[file]), f"{file} is neither old nor new: {texts}")
    require(scenario.files.keys() <= state.book.keys(), f"a file is missing: {state.book}")
    status, _, err = injector.run_plainly(home, scenario.arguments)
    require(status == 0, f"the next restoration failed: {err}")
    now = State(home / "book")
    require(now.book == new, f"the next restoration did not complete this one: {now.book}")
    if state.book == new:
        return "killed, new"
    return "killed, old" if state.book == scenario.files else "killed, part of the folder"


def try_one(injector, parent, scenario, kind, fault):
    with tempfile.TemporaryDirectory(dir=parent) as folder:
        home = pathlib.Path(folder)
        scenario.write(home)
        result = injector.run(home, scenario.arguments, (fault,))
        others = [fault for _, is_done in result.happened if is_done and kind.startswith("others")]
        try:
            outcome = check(scenario, home, injector, result, others)
            require(kind not in ("interrupted", "cut short") or outcome == "restored", f"it did not try again: {outcome}")
        except Violation as violation:
            return f"{scenario.book}: {kind}: {fault}: {violation}\n    it reported {result.err!r}", "FAILED"
    return None, outcome


def main():
    injector = Injector(sys.argv[1], sys.argv[2])
    outcomes = collections.defaultdict(collections.Counter)
    failures = []
    with tempfile.TemporaryDirectory(prefix="dunmora-faults-") as folder:
        parent = pathlib.Path(folder)
        try:
            trials = [(scenario, *trial) for scenario in SCENARIOS for trial in trials_of(injector, parent, scenario)]
        except CannotTrace:
            print("Processes cannot be traced here.")
            return SKIPPED
        if len(sys.argv) > 3:
            trials = random.Random(1).sample(trials, min(int(sys.argv[3]), len(trials)))
        with concurrent.futures.ThreadPoolExecutor(2) as pool:
            for trial, (failure, outcome) in zip(trials, pool.map(lambda each: try_one(injector, parent, *each), trials)):
                outcomes[trial[1]][outcome] += 1
                failures += [failure] if failure else []
    print("\n".join(failures[:30]))
    for kind, counts in outcomes.items():
        print(f"{kind:16} {counts.total():5}  " + ", ".join(f"{count} × {name}" for name, count in counts.most_common()))
    print(f"all              {len(trials):5}")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
