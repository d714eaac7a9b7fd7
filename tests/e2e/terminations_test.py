#!/usr/bin/python3
"""Ends the program at random moments: terminations_test.py PATH-OF-DUNMORA [COUNT [SEED]]

Whatever it does at that moment and however it is told to end, it ends at once and well, and the address book is the
old one or the new one to the byte.
"""

import itertools
import os
import pathlib
import random
import subprocess
import sys
import tempfile
import time

import windowcase
from bigbook import big_book
from desktop import Desktop
from dunmora import CONFIRMATION, Dunmora

PEOPLE, COPIES = 30_000, 2_500
OLD, NEW = big_book(PEOPLE, COPIES)

# What it is doing when it is told to end, in turn. Ten stages and three ways have no common divisor, so that each meets
# each.
STAGES = ("deleting", "loading", "finding", "choosing", "deleting", "loading", "finding", "confirming", "deleting",
          "loading")
# Dialogs stay as long as the user likes.
SHORTEST = 0.1

PRESSES, SECONDS_A_PRESS = 3, 0.5

WAYS = ("close", "Ctrl+Q", "SIGTERM")


class Run:
    """One run of the program, on a book of its own."""

    def __init__(self, desktop, executable, home):
        self.book = home / "books" / "book.vcf"
        self.book.parent.mkdir()
        # How long it has already taken to end.
        self.seconds = 0.0
        self.book.write_bytes(OLD)
        self.program = Dunmora(desktop, [executable, self.book], home)

    def stages(self):
        """Goes on as the user does, and stops at the beginning of each stage."""
        program = self.program
        main = program.main
        # Not until it has the keyboard: on a busy machine everyone is read by then and the dialog has it.
        self.x_main = program.wait_for(lambda: program.x_window(main), "main window on the screen")
        yield "loading"
        dialog = program.dialog
        yield "choosing"
        program.press(dialog, "enter")
        yield "finding"
        program.total(f"{2 * COPIES} duplicates of {PEOPLE + COPIES}")
        program.wait_for_main_alone()
        program.click(program.button("Delete Checked"))
        alert = program.alert(*CONFIRMATION)
        yield "confirming"
        program.press(alert, "enter")
        yield "deleting"
        program.total(f"{COPIES} duplicates of {PEOPLE}")
        yield "idle"

    def durations(self):
        """How long each stage lasts."""
        begins = [(stage, time.monotonic()) for stage in self.stages()]
        return {stage: end - begin for (stage, begin), (_, end) in itertools.pairwise(begins)}

    def reach(self, wanted):
        next(stage for stage in self.stages() if stage == wanted)

    def tell_to_end(self, way):
        if way == "close":
            self.x_main.close()
        elif way == "Ctrl+Q":
            self.press_quit()
        else:
            self.program.terminate()

    def press_quit(self):
        """Presses it again where it has reached nobody: between the end of a dialog and the moment in which the window
        manager gives the keyboard to another window, keys are lost. A window that had the keyboard all the time has got
        the key, and has to obey."""
        screen = self.program.screen
        for _ in range(PRESSES):
            window = screen.focused_window
            pressed = time.monotonic()
            screen.press("ctrl+q")
            try:
                self.program.process.wait(SECONDS_A_PRESS)
                self.seconds = time.monotonic() - pressed
                return
            except subprocess.TimeoutExpired:
                if window is not None and screen.focused_window == window:
                    raise AssertionError("it has got the key to quit and goes on") from None

    def check_end(self):
        """Returns how long it took and whether the book is the new one."""
        seconds = self.seconds + self.program.seconds_until_end()
        status = self.program.process.returncode
        content = self.book.read_bytes()
        others = {path.name for path in self.book.parent.iterdir()} - {self.book.name}
        if status != 0:
            raise AssertionError(f"it ended with {status} and said {self.program.output!r}")
        if content not in (OLD, NEW):
            raise AssertionError(f"the address book is neither the old nor the new one, but {len(content)} bytes")
        if others:
            raise AssertionError(f"it left beside the address book: {others}")
        return seconds, content == NEW


class Terminations:
    """All runs, on one desktop."""

    def __init__(self, desktop, executable):
        self.desktop = desktop
        self.executable = executable

    def run(self, number, use):
        """Gives a new run to `use`; returns what that returns."""
        with tempfile.TemporaryDirectory(prefix="dunmora-home-") as home:
            run = Run(self.desktop, self.executable, pathlib.Path(home))
            try:
                return use(run)
            except BaseException as error:
                error.add_note(f"What it showed then: {windowcase.save_evidence(run.program, f'termination-{number}')}")
                raise
            finally:
                run.program.kill()

    def measure(self):
        def measured(run):
            durations = run.durations()
            run.tell_to_end("close")
            if run.check_end()[1] is not True:
                raise AssertionError("undisturbed, it did not delete the copies")
            return durations

        return self.run("none", measured)

    def end(self, number, stage, way, delay):
        def ended(run):
            run.reach(stage)
            # The moment is the test's very subject; nothing is waited for.
            time.sleep(delay)
            run.tell_to_end(way)
            seconds, is_new = run.check_end()
            if is_new and stage != "deleting":
                raise AssertionError("it deleted what it was not told to delete")
            return seconds, is_new

        return self.run(number, ended)


def main():
    windowcase.prepare()
    executable = os.path.abspath(sys.argv[1])
    count = int(sys.argv[2]) if len(sys.argv) > 2 else 20
    seed = int(sys.argv[3]) if len(sys.argv) > 3 else random.SystemRandom().randrange(10 ** 6)
    print(f"{count} terminations, seed {seed}", flush=True)
    chance = random.Random(seed)
    slowest, new_books = 0.0, 0
    with Desktop() as desktop:
        terminations = Terminations(desktop, executable)
        durations = terminations.measure()
        print(", ".join(f"{stage} {seconds:.2f} s" for stage, seconds in durations.items()), flush=True)
        for number, stage, way in zip(range(count), itertools.cycle(STAGES), itertools.cycle(WAYS)):
            delay = chance.uniform(0, max(SHORTEST, 1.1 * durations[stage]))
            print(f"{number}: {stage}, {way} after {delay:.3f} s", end="", flush=True)
            seconds, is_new = terminations.end(number, stage, way, delay)
            print(f": {'new' if is_new else 'old'} book, {seconds:.3f} s", flush=True)
            slowest, new_books = max(slowest, seconds), new_books + is_new
    print(f"All ended well, the slowest in {slowest:.3f} s; {new_books} times the book was the new one")


if __name__ == "__main__":
    main()
