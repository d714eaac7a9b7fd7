#!/usr/bin/env python3
"""Tries the completions in the real shells and compares what they offer with what the programs' help lists.

    completions_test.py PATH-OF-DUNMORA-CLI PATH-OF-DUNMORA [UNITTEST-OPTION]...

PATH-OF-DUNMORA is "none" for a build without windows. A shell that is not installed is skipped with a message.
"""

import os
import pathlib
import shutil
import sys
import tempfile
import unittest

from helptext import Help
from shells import LEFT, Bash, Fish, Zsh

NONE = pathlib.Path("none")
TERMINAL_PROGRAM = WINDOWED_PROGRAM = NONE
# Prints what the program does, and where it would look for books.
DESKTOP = """#!/bin/sh
echo "$@" >>calls
[ -e offline ] && echo "The desktop cannot be reached." >&2 && exit 1
cat <<'END'
{"schema":1,"books":[{"uid":"system-address-book","name":"Personal","kind":"local","writable":null,"people":null,"failure":null},{"uid":"family","name":"\\"We\\", {\\"uid\\":\\"you\\"}","kind":"local","writable":null,"people":null,"failure":null},{"uid":"odd $(one)","name":"Odd","kind":"local","writable":null,"people":null,"failure":null}]}
END
"""


class Completions:
    """The tests, which are the same in every shell."""

    kind: type

    @classmethod
    def setUpClass(cls):
        if not shutil.which(cls.kind.program):
            raise unittest.SkipTest(f"{cls.kind.program} is not installed")
        cls.help = Help(TERMINAL_PROGRAM)
        cls.helps = {command: Help(TERMINAL_PROGRAM, command) for command in cls.help.commands}
        cls.folder = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        for name in ("book.vcf", "removed.vcf"):
            (cls.folder / name).touch()
        (cls.folder / "contacts").mkdir()
        programs = cls.folder / "programs"
        programs.mkdir()
        program = programs / "dunmora-cli"
        program.write_text(DESKTOP)
        program.chmod(0o755)
        environment = {"PATH": f"{programs}:{os.environ['PATH']}", "HOME": str(cls.folder), "LANG": "C.UTF-8"}
        cls.shell = cls.kind(environment, cls.folder)
        cls.addClassCleanup(cls.shell.close)

    def assert_offers(self, line, words):
        self.assertEqual(self.shell.offers(line), set(words), line)

    def offered_options(self, line):
        """Returns the options without the equals sign that a shell may add for the value."""
        return {option.removesuffix("=") for option in self.shell.offers(line)}

    def test_offers_the_commands(self):
        self.assert_offers("dunmora-cli ", self.help.commands)
        self.assertEqual(self.shell.completed("dunmora-cli rest"), "restore")
        self.assert_offers("dunmora-cli help ", self.help.commands)

    def test_offers_the_options_of_the_help(self):
        self.assert_offers("dunmora-cli -", self.help.options)
        for command, command_help in self.helps.items():
            self.assertEqual(self.offered_options(f"dunmora-cli {command} -"), command_help.options, command)

    def test_offers_an_option_again_that_can_be_repeated(self):
        repeatable = {option for option in self.helps["delete"].options if "check" in option}
        given = " ".join(f"{option} value" for option in sorted(repeatable))
        self.assertEqual(len(repeatable), 4)
        self.assertLessEqual(repeatable, self.offered_options(f"dunmora-cli delete {given} -"))

    def test_offers_the_options_after_the_arguments(self):
        self.assertEqual(self.shell.completed("dunmora-cli delete book.vcf --match work --keep"), "--keep-one")

    def test_offers_the_values_among_which_an_option_chooses(self):
        for command, command_help in self.helps.items():
            for option, values in command_help.choices.items():
                self.assert_offers(f"dunmora-cli {command} {option} ", values)
        self.assertEqual(self.shell.completed("dunmora-cli list --format=js"), "--format=json")

    def test_offers_the_match_fields(self):
        fields = self.helps["list"].fields
        self.assert_offers("dunmora-cli fields ", fields)
        for command in ("list", "delete"):
            self.assert_offers(f"dunmora-cli {command} --match ", fields)
        self.assertEqual(self.shell.completed("dunmora-cli list --match=mob"), "--match=mobile")

    def test_adds_a_field_to_a_list(self):
        for before in ("fields ", "list --match ", "delete book.vcf --match="):
            word = before.rpartition(" ")[2]
            self.assertEqual(self.shell.completed(f"dunmora-cli {before}work,firstname,las"),
                             f"{word}work,firstname,lastname")

    def test_offers_no_field_twice(self):
        self.assertEqual(self.shell.completed("dunmora-cli list --match home,ho"), "home,ho")

    def test_offers_files_and_folders(self):
        for before in ("list", "delete", "show", "diff", "restore", "restore removed.vcf", "delete book.vcf --backup",
                       "delete book.vcf --check-from", "delete book.vcf --uncheck-from", "list --match work"):
            self.assertEqual(self.shell.completed(f"dunmora-cli {before} bo"), "book.vcf")
            self.assertEqual(self.shell.completed(f"dunmora-cli {before} cont").rstrip("/"), "contacts")

    def test_offers_at_most_options_where_nothing_is_known(self):
        for before in ("list book.vcf", "delete --check", "delete --uncheck", "show book.vcf", "show book.vcf ann-1",
                       "diff book.vcf ann-1", "restore removed.vcf book.vcf", "fields work", "books", "help list"):
            others = {word for word in self.shell.offers(f"dunmora-cli {before} ") if not word.startswith("-")}
            self.assertEqual(others, set(), before)

    def test_offers_the_books_of_the_desktop(self):
        for before in ("list", "delete", "show", "diff", "restore removed.vcf", "list --match work"):
            self.assert_offers(f"dunmora-cli {before} eds", ["eds:", "eds:family", "eds:system-address-book"])
            self.assertEqual(self.shell.completed(f"dunmora-cli {before} eds:f"), "eds:family")

    def test_offers_a_file_whose_name_begins_as_those_of_books(self):
        file = self.folder / "edsel.vcf"
        file.touch()
        self.addCleanup(file.unlink)
        self.assertEqual(self.shell.completed("dunmora-cli list edse"), "edsel.vcf")
        self.assertEqual(self.shell.completed("dunmora edse"), "edsel.vcf")

    def test_asks_the_desktop_only_for_its_books(self):
        calls = self.folder / "calls"
        calls.unlink(missing_ok=True)
        for line in ("list ", "list bo", "list ed", "list --", "restore eds", "books ", "fields "):
            self.shell.offers("dunmora-cli " + line)
        self.assertFalse(calls.exists())
        self.shell.offers("dunmora-cli list eds:")
        self.assertEqual(calls.read_text(), "books --names --quiet --format json\n")

    def test_is_silent_when_the_desktop_cannot_be_reached(self):
        offline = self.folder / "offline"
        offline.touch()
        self.addCleanup(offline.unlink)
        self.assertEqual(self.shell.completed("dunmora-cli list eds"), "eds:")
        self.assertNotIn("reached", self.shell.output)

    def test_offers_the_options_of_the_windowed_program(self):
        options = {"--choose", "-h", "--help", "--version"} if WINDOWED_PROGRAM == NONE else Help(WINDOWED_PROGRAM).options
        self.assert_offers("dunmora -", options)

    def test_offers_address_books_to_the_windowed_program(self):
        self.assertEqual(self.shell.completed("dunmora bo"), "book.vcf")
        self.assertEqual(self.shell.completed("dunmora cont").rstrip("/"), "contacts")
        self.assertEqual(self.shell.completed("dunmora eds"), "eds:")


class InteractiveCompletions(Completions):
    def test_continues_a_list_after_a_completed_field(self):
        self.assertEqual(self.shell.completed("dunmora-cli list --match las\t,wo"), "lastname,work")


class BashTest(InteractiveCompletions, unittest.TestCase):
    kind = Bash

    def test_splits_the_line_as_bash_does(self):
        """A colon and an equals sign are parts of a word, whatever is next to it."""
        self.assertEqual(self.shell.completed("dunmora-cli list eds: --wi"), "--wide")
        self.assertEqual(self.shell.completed("dunmora-cli list  book.vcf   --format=json --match=work,mob"),
                         "--match=work,mobile")

    def test_offers_no_empty_word_after_a_colon(self):
        self.assert_offers("dunmora-cli list eds:", ["eds:family", "eds:system-address-book"])

    def test_completes_at_the_cursor(self):
        self.assertEqual(self.shell.words_after("dunmora-cli list --fo json" + LEFT * 5, "\t"),
                         ["list", "--format", "json"])
        self.assertEqual(self.shell.words_after("dunmora-cli list --qwide" + LEFT * 4, "\t"), ["list", "--quietwide"])


class ZshTest(InteractiveCompletions, unittest.TestCase):
    kind = Zsh


class FishTest(Completions, unittest.TestCase):
    kind = Fish

    def test_shows_the_names_of_the_books(self):
        self.assertEqual(self.shell.lines("dunmora-cli list eds:f"), [["eds:family", '"We", {"uid":"you"}']])


if __name__ == "__main__":
    TERMINAL_PROGRAM, WINDOWED_PROGRAM = (pathlib.Path(sys.argv.pop(1)) for _ in range(2))
    unittest.main()
