#!/usr/bin/env python3
"""Deletes from copies of other programs' cards: real_cards_test.py PATH-OF-DUNMORA-CLI FOLDER-OF-CARDS

The environment variable DUNMORA_VCARDS overrides the folder. If the folder does not exist, nothing is tested.
"""

import codecs
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

PROGRAM = ""
FILES = []
EVERY_FIELD = ("--match", "nickname,firstname,lastname,home,work,mobile")
UTF_16 = {codecs.BOM_UTF16_LE: "utf-16-le", codecs.BOM_UTF16_BE: "utf-16-be"}


def holds_cards(file):
    return file.is_file() and b"BEGIN:VCARD" in file.read_bytes().replace(b"\0", b"").upper()


def is_made_of(original, remaining, cards):
    """Whether inserting these cards, each in one piece and in this order, into what remains gives the original."""
    # A card may occur twice, so the cards so far may end at several places.
    ends, taken = {0}, 0
    for card in cards:
        begins = [match.start() for match in re.finditer(b"(?=%b)" % re.escape(card), original)]
        ends = {begin + len(card) for begin in begins for end in ends
                if end <= begin and original[end:begin] == remaining[end - taken:begin - taken]}
        taken += len(card)
    return any(original[end:] == remaining[end - taken:] for end in ends)


def cards_in(backup):
    """Returns the cards of a backup, byte for byte, and the line end that was added if the last card had none."""
    encoding = UTF_16.get(backup[:2], "latin-1")
    text = backup[2 if backup[:2] in UTF_16 else 0:].decode(encoding, "surrogatepass")
    cards = re.split(r"(?<=[\r\n])(?=[ \t]*BEGIN:VCARD)", text, flags=re.IGNORECASE)
    return [card.encode(encoding, "surrogatepass") for card in cards], "\r\n".encode(encoding)


class RealCards(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.book, self.backup = (pathlib.Path(folder.name, name) for name in ("book.vcf", "backup.vcf"))
        self.environment = {**os.environ, "HOME": folder.name, "XDG_CONFIG_HOME": folder.name + "/config"}

    def run_program(self, command, book, *arguments):
        return subprocess.run([PROGRAM, command, book, "--format", "json", *arguments], stdin=subprocess.DEVNULL,
                              capture_output=True, env=self.environment, timeout=20, check=False)

    def result_of(self, command, book, *arguments):
        result = self.run_program(command, book, *arguments)
        self.assertEqual(result.returncode, 0, result.stderr)
        return json.loads(result.stdout)

    def delete_and_find_everyone(self, original):
        """Deletes from a book with these bytes and checks that the book and its backup together still contain them.
        Returns how many people were deleted; None if the deletion was refused, because it would have changed how the
        others are read."""
        self.book.write_bytes(original)
        self.backup.unlink(missing_ok=True)
        before = self.result_of("list", self.book)
        result = self.run_program("delete", self.book, "--yes", "--allow-last-copy", "--allow-blank-match",
                                  "--match", "firstname", "--backup", self.backup)
        if result.returncode == 1 and "would be read differently" in result.stderr.decode():
            # A card that was skipped because its END comes after other cards would be complete without them.
            self.assertGreater(before["skipped"], 0)
            self.assertEqual(self.book.read_bytes(), original)
            return None
        self.assertEqual(result.returncode, 0, result.stderr)
        deleted = len(json.loads(result.stdout)["deleted"])
        after = self.result_of("list", self.book)
        self.assertEqual(after["skipped"], before["skipped"])
        self.assertEqual(after["contacts"], before["contacts"] - deleted)
        self.assertEqual(self.backup.exists(), deleted > 0)
        cards, line_end = cards_in(self.backup.read_bytes()) if deleted else ([], b"")
        remaining = self.book.read_bytes()
        if len(remaining) + sum(map(len, cards)) > len(original):
            cards[-1] = cards[-1].removesuffix(line_end)
        self.assertTrue(is_made_of(original, remaining, cards), "the book and its backup together are not the original")
        if deleted:
            self.assertEqual(self.result_of("list", self.backup, *EVERY_FIELD)["contacts"], deleted)
        return deleted

    def test_lose_no_byte_in_a_deletion(self):
        """From each file, and from all of them in one."""
        texts = []
        for file in FILES:
            with self.subTest(file):
                text = file.read_bytes()
                # UTF-16 cannot be part of a larger file.
                if self.delete_and_find_everyone(text) is not None and b"\0" not in text:
                    texts.append(text)
        # Nearly all; and twice each, so that there is much to delete.
        self.assertGreater(len(texts), 0.8 * len(FILES))
        self.assertGreater(self.delete_and_find_everyone(b"\n".join(texts * 2)), 0)


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    PROGRAM, folder = os.path.abspath(sys.argv[1]), pathlib.Path(os.environ.get("DUNMORA_VCARDS") or sys.argv[2])
    FILES = sorted(filter(holds_cards, folder.rglob("*")))
    if folder.is_dir():
        unittest.main(argv=sys.argv[:1])
    print(f"Skipped: “{folder}” does not exist. Set DUNMORA_VCARDS to a folder of vCards.")
