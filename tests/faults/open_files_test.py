#!/usr/bin/env python3
"""Deletes from more files than the program may open: open_files_test.py DUNMORA-CLI LIMIT FILES

From FILES files of one card, half of which are removed, and from half as many files of three cards, which lose one.
"""

import pathlib
import sys
import tempfile

from costs import fast_folder, run
from shared import card


def write_single_cards(folder, files):
    """Everybody is in two files; returns how many people a deletion removes."""
    for number in range(files):
        person = number // 2
        copy = card(f"{number}", f"First {person}", "Last", *(["TEL:+1 555 0100"] if number % 2 == 0 else []))
        (folder / f"{number:06}.vcf").write_bytes(copy)
    return files // 2


def write_three_cards(folder, files):
    """Two of the three people in every file are the same."""
    for number in range(files):
        (folder / f"{number:06}.vcf").write_bytes(
            card(f"a{number}", f"First {number}", "Last", "TEL:+1 555 0100") + card(f"b{number}", f"First {number}", "Last") +
            card(f"c{number}", f"Other {number}", "Last"))
    return files


def check(program, limit, files, write, cards_left):
    with tempfile.TemporaryDirectory(prefix="dunmora-files-", dir=fast_folder()) as name:
        home = pathlib.Path(name)
        folder = home / "book"
        folder.mkdir()
        removed = write(folder, files)
        cost = run(program, home, ["delete", "book", "--yes", "--format", "json"], open_files=limit)
        left = sum(path.read_bytes().count(b"BEGIN:VCARD") for path in folder.iterdir())
        others = [path.name for path in folder.iterdir() if not path.name.endswith(".vcf")]
        print(f"{files} files, at most {limit} open: {removed} people to be removed, {left} left: {cost}", flush=True)
        if cost.code != 0 or left != cards_left or others:
            print(f"{cost.err}\nother files: {others[:10]}")
            return False
        return True


def main():
    program, limit, files = sys.argv[1], int(sys.argv[2]), int(sys.argv[3])
    results = [check(program, limit, files, write_single_cards, files // 2),
               check(program, limit, files // 2, write_three_cards, files // 2 * 2)]
    return 0 if all(results) else 1


if __name__ == "__main__":
    sys.exit(main())
