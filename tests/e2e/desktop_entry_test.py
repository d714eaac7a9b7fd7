#!/usr/bin/python3
"""Starts the real program as its menu entry says: desktop_entry_test.py PATH-OF-DUNMORA ENTRY [UNITTEST-OPTION]..."""

import configparser
import os
import pathlib
import shlex
import sys

import windowcase
from dunmora import is_alert, is_open_panel
from dunmoracase import DunmoraCase

MAIN = "Desktop Entry"


class DesktopEntryTest(DunmoraCase):
    entry_file: pathlib.Path

    def setUp(self):
        super().setUp()
        self.entry = configparser.ConfigParser(interpolation=None, delimiters="=")
        self.entry.optionxform = str
        self.entry.read(self.entry_file, encoding="utf-8")

    def start_as_in(self, group, *files):
        """Starts the program with the arguments of a group of the entry, and with these files in place of %f."""
        program, *arguments = shlex.split(self.entry[group]["Exec"])
        self.assertEqual(program, pathlib.Path(self.executable).name)
        return self.start(*(argument for word in arguments for argument in (files if word == "%f" else [word])))

    def window_class(self, window):
        return self.desktop.screen.property_of(window.window, "WM_CLASS").decode().split("\0")

    def test_has_the_class_of_every_window(self):
        dunmora = self.start_as_in(MAIN, self.book)
        windows = [dunmora.main, dunmora.dialog]

        for window in windows:
            instance, of_program, _ = self.window_class(dunmora.x_window(window))
            self.assertEqual(instance, pathlib.Path(self.executable).name)
            self.assertEqual(of_program, self.entry[MAIN]["StartupWMClass"])
            self.assertEqual(of_program, self.entry_file.stem)

    def test_leaves_the_program_the_name_that_screen_readers_know(self):
        dunmora = self.start_as_in(MAIN, self.book)

        self.assertEqual(dunmora.application.name, "dunmora")

    def test_opens_a_file(self):
        dunmora = self.start_as_in(MAIN, self.book)

        dunmora.search()

        dunmora.total("4 duplicates of 5")

    def test_starts_without_a_file(self):
        dunmora = self.start_as_in(MAIN)

        dunmora.wait_for_main_alone()
        self.assertEqual(dunmora.main.name, "Dunmora")

    def test_has_an_action_for_the_books_of_the_desktop(self):
        dunmora = self.start_as_in("Desktop Action desktop-books")

        # There are none here, which only this action reports in an alert.
        dunmora.wait_for_window(is_alert, "alert")

    def test_has_an_action_that_asks_for_a_file(self):
        dunmora = self.start_as_in("Desktop Action choose-file")

        dunmora.wait_for_window(is_open_panel, "open panel")
        dunmora.choose_book(self.book)
        dunmora.search()
        dunmora.total("4 duplicates of 5")


if __name__ == "__main__":
    DesktopEntryTest.entry_file = pathlib.Path(os.path.abspath(sys.argv.pop(2)))
    windowcase.main()
