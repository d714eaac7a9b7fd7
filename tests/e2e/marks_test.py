#!/usr/bin/python3
"""Decides about groups by keys and menus in the real window: marks_test.py PATH-OF-DUNMORA [UNITTEST-OPTION]..."""

import time

import windowcase
from cards import card
from dunmoracase import ANNS, BOOK, DunmoraCase

CARL_3 = card("carl-3", "Carl", "Ek", "TEL;TYPE=CELL:+1 555 0107")
PROPOSAL = (False, True, False, True, True)


class MarksTest(DunmoraCase):
    """Two copies of Ann and three of Carl, of whom the first copies are kept."""

    def setUp(self):
        super().setUp()
        self.dunmora = self.start_searched(BOOK + CARL_3)
        self.dunmora.wait_for_marks(*PROPOSAL)

    def press(self, *keys):
        self.dunmora.press(self.dunmora.main, *keys)

    def test_undoes_and_redoes_commands_by_keys(self):
        self.dunmora.select_all()
        self.press("space")
        self.dunmora.wait_for_marks(True, True, True, True, True)
        self.press("space")
        self.dunmora.wait_for_marks(False, False, False, False, False)

        self.press("ctrl+z")
        self.dunmora.wait_for_marks(True, True, True, True, True)
        self.press("ctrl+z")
        self.dunmora.wait_for_marks(*PROPOSAL)
        self.press("ctrl+shift+z", "ctrl+shift+z")
        self.dunmora.wait_for_marks(False, False, False, False, False)

        self.dunmora.choose("Edit", "Restore Proposal")
        self.dunmora.wait_for_marks(*PROPOSAL)
        self.dunmora.label("Checked 3 people\\.")
        self.assert_book(BOOK + CARL_3)

    def test_keeps_another_copy_by_keys(self):
        self.dunmora.select(0)
        self.press("alt+down", "down", "down", "ctrl+k")
        self.dunmora.wait_for_marks(False, True, True, True, False)
        self.dunmora.label("Checked 1 person and unchecked 1\\.")

        self.press("ctrl+shift+k")
        self.dunmora.wait_for_marks(False, True, False, False, False)
        self.press("alt+up", "ctrl+shift+k")
        self.dunmora.wait_for_marks(False, False, False, False, False)

    def open_context_menu(self, key):
        self.press(key)
        # AT-SPI does not show when this menu opens, and until then the table gets the keys.
        time.sleep(2)

    def test_keeps_another_copy_by_the_context_menu(self):
        self.dunmora.select(3)
        self.open_context_menu("shift+F10")
        self.press("down", "enter")
        self.dunmora.wait_for_marks(False, True, True, False, True)

        self.open_context_menu("Menu")
        self.press("a")
        self.dunmora.wait_for_marks(False, True, False, False, False)

    def test_filters_whole_groups_and_checks_only_those_that_match(self):
        self.dunmora.select(0)
        self.press("ctrl+f")
        self.dunmora.wait_for(lambda: self.dunmora.main.find("text", states=["focused"]), "open filter")
        self.dunmora.type(self.dunmora.main, "0101")
        self.dunmora.label("1 of 5 match")
        self.assertEqual(self.dunmora.names(), ANNS)

        self.dunmora.choose("Edit", "Uncheck All Shown")
        self.dunmora.wait_for_marks(False, False)
        self.dunmora.choose("Edit", "Check All Shown")
        self.dunmora.wait_for_marks(False, True)
        self.press("escape")
        self.dunmora.wait_for_marks(*PROPOSAL)


if __name__ == "__main__":
    windowcase.main()
