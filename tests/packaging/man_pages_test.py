#!/usr/bin/env python3
"""Compares the manual pages with what the programs' help says: both have the same commands, options and values.

    man_pages_test.py FOLDER-OF-THE-PAGES PATH-OF-DUNMORA-CLI PATH-OF-DUNMORA [UNITTEST-OPTION]...

PATH-OF-DUNMORA is "none" for a build without windows.
"""

import pathlib
import re
import shutil
import subprocess
import sys
import unittest

from helptext import Help

NONE = pathlib.Path("none")
PAGES = TERMINAL_PROGRAM = WINDOWED_PROGRAM = NONE


def options_in(macros):
    """Returns the options that these lines of a page name."""
    return {"-" + name for name in re.findall(r"\bFl (-?[a-z-]+)", macros)}


class Page:
    """A manual page. synopsis maps each command, and "" for none, to the lines about it."""

    def __init__(self, name):
        self.text = (PAGES / name).read_text()
        parts = re.split(r"(?m)^\.Sh (.*)$", self.text)
        self.sections = dict(zip(parts[1::2], parts[2::2]))
        self.synopsis = {}
        for entry in re.split(r"(?m)^\.Nm$", self.sections["SYNOPSIS"])[1:]:
            command = re.match(r"\s*\.Cm (\S+)", entry)
            self.synopsis.setdefault(command.group(1) if command else "", []).append(entry)

    def entries(self, section):
        """Returns the titles of the entries in a list."""
        return re.findall(r"(?m)^\.It (.*)$", self.sections[section])

    @property
    def described_options(self):
        return options_in("\n".join(self.entries("OPTIONS")))

    @property
    def examples(self):
        """The command lines in the examples."""
        return [line for block in re.findall(r"(?ms)^\.Bd -literal.*?\n(.*?)^\.Ed", self.sections["EXAMPLES"])
                for line in block.splitlines()]


class PagesTest(unittest.TestCase):
    @unittest.skipUnless(shutil.which("mandoc"), "mandoc is not installed")
    def test_have_nothing_that_mandoc_objects_to(self):
        for page in ("dunmora.1", "dunmora-cli.1"):
            run = subprocess.run(["mandoc", "-Tlint", PAGES / page], capture_output=True, text=True, check=False)
            # The pages refer to each other, and mandoc looks for them among the installed ones.
            findings = [line for line in run.stdout.splitlines()
                        if not re.search("referenced manual not found: Xr dunmora(-cli)? 1$", line)]
            self.assertEqual((findings, run.stderr), ([], ""))

    def test_know_the_version(self):
        run = subprocess.run([TERMINAL_PROGRAM, "--version"], capture_output=True, text=True, check=True)
        version = run.stdout.split()[1]
        for page in ("dunmora.1", "dunmora-cli.1"):
            self.assertEqual(Page(page).sections["HISTORY"], f"\nThis page describes version {version}.\n")
            self.assertNotIn("@", Page(page).text)

    def test_have_the_sections_that_people_look_for(self):
        sections = {"SYNOPSIS", "OPTIONS", "EXIT STATUS", "FILES", "ENVIRONMENT", "EXAMPLES"}
        self.assertLessEqual(sections, set(Page("dunmora.1").sections))
        self.assertLessEqual(sections | {"COMMANDS"}, set(Page("dunmora-cli.1").sections))


class TerminalProgramTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.page = Page("dunmora-cli.1")
        cls.help = Help(TERMINAL_PROGRAM)
        cls.helps = {command: Help(TERMINAL_PROGRAM, command) for command in cls.help.commands}
        # These are written once for all commands.
        cls.common = options_in(cls.page.synopsis[""][0])

    def test_has_the_commands_of_the_help(self):
        self.assertEqual([command for command in self.page.synopsis if command], self.help.commands)
        self.assertEqual([entry.removeprefix("Cm ") for entry in self.page.entries("COMMANDS")], self.help.commands)

    def test_has_the_options_of_every_command(self):
        self.assertEqual(self.common, self.help.options)
        for command, command_help in self.helps.items():
            entry, = self.page.synopsis[command]
            self.assertEqual(options_in(entry) | self.common, command_help.options, command)

    def test_describes_every_option_and_no_other(self):
        options = set().union(*(command_help.options for command_help in self.helps.values()))
        self.assertEqual(self.page.described_options, options)
        self.assertEqual(len(self.page.entries("OPTIONS")), len(options) - 1, "-h and --help have one entry")

    def test_has_the_arguments_of_every_command(self):
        for command, command_help in self.helps.items():
            entry, = self.page.synopsis[command]
            words = re.findall(r"(?m)^\.(?:Op )?Ar (.*)$", entry)
            arguments = list(dict.fromkeys(word for line in words for word in re.findall(r"[A-Z][A-Z-]+", line)))
            self.assertEqual(arguments, command_help.arguments, command)

    def test_shows_standard_input_where_the_help_does(self):
        for command, command_help in self.helps.items():
            entry, = self.page.synopsis[command]
            self.assertEqual("Ar ADDRESS-BOOK | Cm -" in entry, "- for standard input" in command_help.text, command)

    def test_has_the_values_that_an_option_chooses_from(self):
        for command, command_help in self.helps.items():
            entry, = self.page.synopsis[command]
            choices = {"-" + name: values.split(" | ") for name, values in re.findall(r"Fl (-\S+) Cm (.*)", entry)}
            self.assertEqual(choices, command_help.choices, command)

    def test_has_the_match_fields(self):
        description = self.page.sections["OPTIONS"].partition("Fl -match ")[2]
        fields = re.search(r"(?m)^\.Cm (.*) \.$", description).group(1)
        self.assertEqual(fields.split(" , "), self.helps["list"].fields)

    def test_has_the_exit_statuses(self):
        self.assertEqual(self.page.entries("EXIT STATUS"), self.help.exit_statuses)

    def test_has_examples_of_commands_and_options_that_exist(self):
        self.assertTrue(self.page.examples)
        for example in self.page.examples:
            command, *words = re.search(r"dunmora-cli (.*)", example).group(1).split()
            options = {word for word in words if word.startswith("--")}
            self.assertLessEqual(options, self.helps[command].options, example)


class WindowedProgramTest(unittest.TestCase):
    def setUp(self):
        if WINDOWED_PROGRAM == NONE:
            self.skipTest("built without windows")
        self.page = Page("dunmora.1")
        self.help = Help(WINDOWED_PROGRAM)

    def test_has_the_options_of_the_help(self):
        self.assertEqual(options_in(self.page.sections["SYNOPSIS"]), self.help.options)
        self.assertEqual(self.page.described_options, self.help.options)

    def test_has_the_arguments_of_the_help(self):
        self.assertEqual(re.findall(r"\bAr (\S+)", self.page.sections["SYNOPSIS"]), self.help.arguments)

    def test_has_examples_without_an_option_that_does_not_exist(self):
        self.assertTrue(self.page.examples)
        for example in self.page.examples:
            program, *words = example.split()
            self.assertEqual(program, "dunmora")
            self.assertLessEqual({word for word in words if word.startswith("-")}, self.help.options, example)


if __name__ == "__main__":
    PAGES, TERMINAL_PROGRAM, WINDOWED_PROGRAM = (pathlib.Path(sys.argv.pop(1)) for _ in range(3))
    unittest.main()
