#!/usr/bin/env python3
"""Deletes from a book that another program is writing to: writer_race_test.py DUNMORA-CLI [DELETIONS]

The other program appends a card every few milliseconds. Half of its cards are copies, which the deletions remove; the
others must all be in the book at the end, or in a file that reading the book names.
"""

import argparse
import dataclasses
import itertools
import os
import pathlib
import random
import subprocess
import sys
import tempfile
import time

from shared import card, environment_at

SECONDS = 20
# Whatever happens, the races are over by then.
LONGEST = 120
# The pauses of the other program, in seconds.
PAUSES = (0.002, 0.008)
# A race ends after so many cards, because deletions from a larger book take longer and fail more often.
CARDS = 150

FIRST = card("copy", "Ann", "Lee", "TEL:+1 555 0100")


def kept(number):
    return card(f"kept-{number}", f"Number {number}", "Kept")


def copy(number):
    return card(f"copy-{number}", "Ann", "Lee")


def write_cards(book, seed, keeps_open):
    """Is the other program."""
    chance = random.Random(seed)
    number = 0
    while number < CARDS:
        file = os.open(book, os.O_WRONLY | os.O_APPEND)
        for _ in range(chance.randrange(2, 5) if keeps_open else 1):
            os.write(file, kept(number) + copy(number))
            number += 1
            time.sleep(chance.uniform(*PAUSES) if keeps_open else 0)
        os.close(file)
        time.sleep(chance.uniform(*PAUSES) * (4 if keeps_open else 1))
    print(number)


@dataclasses.dataclass
class Result:
    """What became of the cards of some races."""

    written: int = 0
    tried: int = 0
    succeeded: int = 0
    lost: int = 0


def race(program, home, seed, keeps_open, result):
    """Adds what happened to the result."""
    book = home / "book.vcf"
    book.write_bytes(FIRST)
    command = [sys.executable, "-B", __file__, "--write", book, str(seed), *(["--keep-open"] if keeps_open else [])]

    def run(*arguments):
        ended = subprocess.run([program, *arguments], cwd=home, env=environment_at(home), stdin=subprocess.DEVNULL,
                               capture_output=True, timeout=SECONDS, check=False)
        if ended.returncode not in (0, 1):
            raise AssertionError(f"it ended with {ended.returncode}: {ended.stderr}")
        return ended

    with subprocess.Popen(command, stdout=subprocess.PIPE) as writer:
        while writer.poll() is None:
            result.tried += 1
            result.succeeded += b" deleted." in run("delete", "book.vcf", "--yes").stdout
        written = int(writer.communicate()[0])
    reading = run("list", "book.vcf").stderr.decode()
    content = book.read_bytes() + b"".join(path.read_bytes() for path in home.iterdir()
                                           if path.name.startswith(".") and path.name in reading)
    counts = [content.count(kept(number)) for number in range(written)]
    if max(counts) > 1:
        raise AssertionError("a card is in the book twice")
    result.written += written
    result.lost += counts.count(0)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program", help="the program under test")
    parser.add_argument("deletions", type=int, nargs="?", default=50, help="how many must succeed")
    parser.add_argument("--seed", type=int, help="of the other program's pauses; random by default")
    arguments = parser.parse_args()
    seed = arguments.seed if arguments.seed is not None else random.SystemRandom().randrange(10 ** 6)
    print(f"seed {seed}", flush=True)
    failed = False
    for keeps_open in (False, True):
        result = Result()
        end = time.monotonic() + LONGEST
        for number in itertools.count():
            if result.succeeded >= arguments.deletions or time.monotonic() > end:
                break
            with tempfile.TemporaryDirectory(prefix="dunmora-race-") as folder:
                race(pathlib.Path(arguments.program).resolve(), pathlib.Path(folder), seed + number, keeps_open, result)
        how = "keeps the book open for some cards" if keeps_open else "opens the book for each card"
        print(f"The other program {how}: {result.written} cards written, {result.succeeded} of {result.tried} deletions "
              f"succeeded, {result.lost} cards lost", flush=True)
        failed = failed or result.lost > 0 or result.succeeded == 0
    return 1 if failed else 0


if __name__ == "__main__":
    if sys.argv[1] == "--write":
        write_cards(sys.argv[2], int(sys.argv[3]), "--keep-open" in sys.argv)
    else:
        sys.exit(main())
