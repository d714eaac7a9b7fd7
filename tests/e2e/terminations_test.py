#!/usr/bin/python3
"""Ends the program at random moments: terminations_test.py PATH-OF-DUNMORA [COUNT [SEED]]

At every moment and however it is asked to, it ends at once with status 0, and the address book is byte for byte the old
one or the new one.
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
from dunmora import CONFIRMATION, DELETE, Dunmora

PEOPLE, COPIES = 30_000, 2_500
OLD, NEW = big_book(PEOPLE, COPIES)

# The stages in which the runs are ended, in turn. Ten stages and three ways have no common divisor, so that every
# combination occurs.
STAGES = ("deleting", "loading", "finding", "choosing", "deleting", "loading", "finding", "confirming", "deleting",
          "loading")
# A dialog stays open, so its stage has no length; delay the end by up to this many seconds.
SHORTEST = 0.1

PRESSES, SECONDS_PER_PRESS = 3, 0.5

WAYS = ("close", "Ctrl+Q", "SIGTERM")


class Run:
    """One run of the program, on its own book."""

    def __init__(self, desktop, executable, home):
        self.book = home / "books" / "book.vcf"
        self.book.parent.mkdir()
        # The part of the time to end that press_quit has already waited.
        self.seconds = 0.0
        self.book.write_bytes(OLD)
        self.program = Dunmora(desktop, [executable, self.book], home)

    def stages(self):
        """Acts as the user; yields at the beginning of each stage."""
        program = self.program
        main = program.main
        # Does not wait for its activation: on a busy machine the book is read by then and the dialog is active.
        self.x_main = program.wait_for(lambda: program.x_window(main), "main window on the screen")
        yield "loading"
        dialog = program.dialog
        yield "choosing"
        program.press(dialog, "enter")
        yield "finding"
        program.total(f"{2 * COPIES} duplicates of {PEOPLE + COPIES}")
        program.wait_for_main_alone()
        program.click(program.button(DELETE))
        alert = program.alert(*CONFIRMATION)
        yield "confirming"
        program.press(alert, "enter")
        yield "deleting"
        program.total(f"{COPIES} duplicates of {PEOPLE}")
        yield "idle"

    def durations(self):
        """Returns how long each stage lasts."""
        begins = [(stage, time.monotonic()) for stage in self.stages()]
        return {stage: end - begin for (stage, begin), (_, end) in itertools.pairwise(begins)}

    def reach(self, wanted):
        next(stage for stage in self.stages() if stage == wanted)

    def ask_to_end(self, way):
        if way == "close":
            self.x_main.close()
        elif way == "Ctrl+Q":
            self.press_quit()
        else:
            self.program.terminate()

    def press_quit(self):
        """Presses Ctrl+Q, again if no window received it: after a dialog closes, keys are lost until the window manager
        focuses another window. A window that had the focus all the time received the key and must obey it."""
        screen = self.program.screen
        for _ in range(PRESSES):
            window = screen.focused_window
            pressed = time.monotonic()
            screen.press("ctrl+q")
            try:
                self.program.process.wait(SECONDS_PER_PRESS)
                self.seconds = time.monotonic() - pressed
                return
            except subprocess.TimeoutExpired:
                if window is not None and screen.focused_window == window:
                    raise AssertionError("it received Ctrl+Q and is still running") from None

    def check_end(self):
        """Returns how long it took and whether the book is the new one."""
        seconds = self.seconds + self.program.seconds_until_end()
        status = self.program.process.returncode
        content = self.book.read_bytes()
        others = {path.name for path in self.book.parent.iterdir()} - {self.book.name}
        if status != 0:
            raise AssertionError(f"it ended with {status} and printed {self.program.output!r}")
        if content not in (OLD, NEW):
            raise AssertionError(f"the address book is neither the old nor the new one, but {len(content)} bytes")
        if others:
            raise AssertionError(f"it left files next to the address book: {others}")
        return seconds, content == NEW


class Terminations:
    """All runs, on one desktop."""

    def __init__(self, desktop, executable):
        self.desktop = desktop
        self.executable = executable

    def run(self, number, use):
        """Calls `use` with a new run and returns its result."""
        with tempfile.TemporaryDirectory(prefix="dunmora-home-") as home:
            run = Run(self.desktop, self.executable, pathlib.Path(home))
            try:
                return use(run)
            except BaseException as error:
                error.add_note(f"Screen and output: {windowcase.save_evidence(run.program, f'termination-{number}')}")
                raise
            finally:
                run.program.kill()

    def measure(self):
        def measured(run):
            durations = run.durations()
            run.ask_to_end("close")
            if run.check_end()[1] is not True:
                raise AssertionError("undisturbed, it did not delete the copies")
            return durations

        return self.run("none", measured)

    def end(self, number, stage, way, delay):
        def ended(run):
            run.reach(stage)
            # This does not wait for a condition: the moment itself is what is tested.
            time.sleep(delay)
            run.ask_to_end(way)
            seconds, is_new = run.check_end()
            if is_new and stage != "deleting":
                raise AssertionError("it deleted people before the deletion was confirmed")
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
    print(f"All ended with status 0, the slowest in {slowest:.3f} s; {new_books} left the new book")


if __name__ == "__main__":
    main()
