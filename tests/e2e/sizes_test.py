#!/usr/bin/python3
"""Checks that windows with large letters fit on a small screen.

    sizes_test.py PATH-OF-DUNMORA-FOR-UPDATE-TESTS [UNITTEST-OPTION]...
"""

import windowcase
from bigbook import MANY_PEOPLE, big_book
from cards import card
from desktop import Desktop
from dunmora import DEFAULT_FIELDS, NO_FIELD, is_alert, is_shortcuts, is_update
from dunmoracase import BOOK, BROKEN, NOBODY_1, NOBODY_2, DunmoraCase

WIDTH, HEIGHT = 800, 600
# Nothing listens there, but a program without an update service would have no update window.
UPDATE_SERVICE = "127.0.0.1:9"
LONG = "x" * 300
# Everything that the main window can report is in it.
PEOPLE = BOOK + NOBODY_1 + NOBODY_2 + card("long-1", "Long", LONG) + card("long-2", "Long", LONG) + BROKEN
REMARK = "1 card in .+ was skipped .+"
# Each is cut or shows its number alone when the window is too narrow for it.
NOTICES = ["4 people would lose every copy", "Only rows that need a look", "2 people share only empty fields",
           "8 copies hold something unique", REMARK]


class SmallDesktop(Desktop):
    def __init__(self):
        super().__init__(WIDTH, HEIGHT)


class SizesTest(DunmoraCase):
    kind_of_desktop = SmallDesktop
    scale = 2

    def start(self, *arguments):
        return super().start(UPDATE_SERVICE, *arguments, settings={"QT_SCALE_FACTOR": str(self.scale)})

    def assert_fits(self, dunmora, fits, what):
        """Waits for the window and checks that its frame is on the screen and its title names the program."""
        window = dunmora.wait_for_window(fits, what)
        # Until then the window manager may not have placed it.
        dunmora.wait_for(lambda: any(dunmora.x_window(window).frame), f"frame of the {what}")
        x_window = dunmora.x_window(window)
        x, y, width, height = x_window.extents
        left, right, top, bottom = x_window.frame
        with self.subTest(what):
            self.assertGreaterEqual((x - left, y - top), (0, 0))
            self.assertLessEqual(x + width + right, WIDTH)
            self.assertLessEqual(y + height + bottom, HEIGHT)
            self.assertRegex(x_window.title, "^(.+ – )?Dunmora$")
        return window

    def close(self, dunmora, window):
        dunmora.press(window, "escape")
        dunmora.wait_for_main_alone()

    def show_every_notice(self):
        dunmora = self.start_searched(PEOPLE)
        dunmora.select_all()
        dunmora.choose("View", "Show Only Rows That Need a Look")
        dunmora.press(dunmora.main, "space", "ctrl+f")
        dunmora.wait_for(lambda: all(dunmora.marks()), "check marks")
        dunmora.label("8 of 8 match")
        return dunmora

    def test_the_main_window_fits_with_every_notice(self):
        for self.scale in (1, 1.5, 2):
            with self.subTest(self.scale):
                dunmora = self.show_every_notice()

                main = self.assert_fits(dunmora, lambda window: True, "main window")
                right = main.extents[0] + main.extents[2]
                for notice in NOTICES:
                    x, _, width, _ = dunmora.button(notice).extents
                    self.assertLessEqual(x + width, right, notice)
                for count in ("8 duplicates of 9", "8 checked"):
                    dunmora.total(count)
                dunmora.kill()

    def test_the_main_window_fits_below_a_deletion(self):
        dunmora = self.start_searched(PEOPLE)
        dunmora.press(dunmora.main, "ctrl+f")

        dunmora.press(self.delete_checked(dunmora), "enter")
        dunmora.label(r"\d people deleted\.")
        dunmora.press(dunmora.wait_for_main_alone(), "ctrl+f")

        self.assert_fits(dunmora, lambda window: True, "main window")
        dunmora.click(dunmora.button("Undo"))
        dunmora.search()
        dunmora.total("8 duplicates of 9")

    def test_the_windows_before_a_search_fit(self):
        self.book.write_bytes(big_book(MANY_PEOPLE, 10)[0])
        dunmora = self.start(self.book)
        self.assert_fits(dunmora, lambda window: window == dunmora.progress, "progress window")
        dialog = dunmora.dialog
        self.assert_fits(dunmora, lambda window: window == dialog, "match-field dialog")
        for name in DEFAULT_FIELDS:
            dunmora.click_field(dialog, name)
        dunmora.wait_for(lambda: not dialog.find_all("check box", states=["checked"]), "empty boxes")

        dunmora.press(dialog, "enter")

        dunmora.alert(NO_FIELD)
        self.assert_fits(dunmora, is_alert, "alert")

    def test_the_windows_above_a_review_fit(self):
        dunmora = self.show_every_notice()
        main = dunmora.main

        dunmora.press(main, "ctrl+Delete")
        self.close(dunmora, self.assert_fits(dunmora, is_alert, "question"))
        dunmora.click(dunmora.button(REMARK))
        self.close(dunmora, self.assert_fits(dunmora, is_alert, "alert"))
        dunmora.press(main, "alt+h", "c")
        self.close(dunmora, self.assert_fits(dunmora, is_update, "update window"))
        dunmora.press(main, "ctrl+?")
        shortcuts = self.assert_fits(dunmora, is_shortcuts, "list of shortcuts")
        dunmora.wait_for(lambda: shortcuts.find("push button", "Close").has("showing"), "close button")
        self.close(dunmora, shortcuts)
        dunmora.press(main, "ctrl+o")
        panel = dunmora.open_panel
        self.close(dunmora, self.assert_fits(dunmora, lambda window: window == panel, "open panel"))


if __name__ == "__main__":
    windowcase.main()
