#!/usr/bin/python3
"""Starts an installed program as a desktop does: from its menu entry, and for a vCard file.

    menu_test.py PATH-OF-DUNMORA APP-ID FOLDER-FOR-PICTURES [UNITTEST-OPTION]...
"""

import pathlib
import sys

import windowcase
from dunmora import Dunmora
from dunmoracase import DunmoraCase
from launched import LaunchedProcess
from png import png

from gi.repository import Gio

ENTRIES = pathlib.Path("/usr/share/applications")
TYPES = ("text/vcard", "text/x-vcard")


class LaunchedDunmora(Dunmora):
    """One run of the program that a desktop's command has started."""

    executable = ""

    def start_process(self, command, **options):
        return LaunchedProcess(command, self.executable, **options)


class MenuTest(DunmoraCase):
    app_id: str
    pictures: pathlib.Path

    def launch(self, *command):
        """Runs a command of the desktop that starts the program."""
        LaunchedDunmora.executable = self.executable
        self.program = LaunchedDunmora(self.desktop, command, self.home)
        self.addCleanup(self.program.kill)
        return self.program

    def save_picture(self, name):
        (self.pictures / f"{name}.png").write_bytes(png(self.desktop.screen.image()))

    def assert_opens_the_book(self, *command):
        dunmora = self.launch(*command)

        dunmora.search()

        dunmora.total("4 duplicates of 5")
        self.assertIn(self.book.name, dunmora.main.name)
        return dunmora

    def test_is_in_the_menu(self):
        entry = next(entry for entry in Gio.AppInfo.get_all() if entry.get_id() == f"{self.app_id}.desktop")

        self.assertTrue(entry.should_show())
        self.assertIn("Office", entry.get_categories().split(";"))
        icons = pathlib.Path("/usr/share/icons/hicolor")
        for icon in (f"scalable/apps/{self.app_id}.svg", f"48x48/apps/{self.app_id}.png"):
            self.assertTrue((icons / icon).is_file(), icon)
        self.assertEqual(entry.get_icon().to_string(), self.app_id)

    def test_is_what_opens_vcards(self):
        for kind in TYPES:
            self.assertEqual(Gio.AppInfo.get_default_for_type(kind, False).get_id(), f"{self.app_id}.desktop")

    def test_starts_from_its_menu_entry(self):
        dunmora = self.launch("gio", "launch", ENTRIES / f"{self.app_id}.desktop")

        dunmora.wait_for_main_alone()
        self.assertEqual(dunmora.main.name, "Dunmora")
        self.save_picture("menu")

    def test_opens_a_file_of_the_desktop(self):
        self.assert_opens_the_book("gio", "open", self.book)
        self.save_picture("file")

    def test_opens_a_file_of_another_program(self):
        self.assert_opens_the_book("xdg-open", self.book)


if __name__ == "__main__":
    MenuTest.app_id = sys.argv.pop(2)
    MenuTest.pictures = pathlib.Path(sys.argv.pop(2))
    windowcase.main()
