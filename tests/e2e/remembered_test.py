#!/usr/bin/python3
"""Checks what the main window remembers from one run to the next.

    remembered_test.py PATH-OF-DUNMORA [UNITTEST-OPTION]...
"""

import re
import time

import windowcase
from dunmora import COLUMNS, is_alert
from dunmoracase import BOOK, DunmoraCase

HOME = COLUMNS.index("Home")
MAXIMIZED = {"_NET_WM_STATE_MAXIMIZED_HORZ", "_NET_WM_STATE_MAXIMIZED_VERT"}


class RememberedTest(DunmoraCase):
    def setUp(self):
        super().setUp()
        self.folder = self.home / "config" / "dunmora"
        self.file = self.folder / "dunmora.conf"

    def write_file(self, text):
        self.folder.mkdir(parents=True)
        self.file.write_text(text)

    def wait_for_line(self, dunmora, pattern):
        """Waits until a line of the preferences file matches."""
        dunmora.wait_for(lambda: self.file.exists() and re.search(f"^{pattern}$", self.file.read_text(), re.M),
                         f"line {pattern!r}")

    @staticmethod
    def let_settle():
        """Waits until the program takes changes of the window for the user's: those of the first moment are the window
        manager's, and a test can be quicker than any user."""
        time.sleep(1)

    def resize(self, dunmora, width, height):
        dunmora.x_window(dunmora.main).resize(width, height)
        dunmora.wait_for(lambda: self.size(dunmora) == (width, height), "new size")

    def quit(self, dunmora):
        dunmora.press(dunmora.main, "ctrl+q")
        dunmora.seconds_until_end()

    @staticmethod
    def size(dunmora):
        return tuple(dunmora.main.extents[2:])

    @staticmethod
    def width(dunmora, column):
        return dunmora.table.cell(0, column).extents[2]

    @staticmethod
    def shows_details(dunmora):
        return bool(dunmora.main.find_all("list", "Details", ["showing"]))

    def drag_edge(self, dunmora, column, distance):
        """Drags the right edge of a column's title, and waits for the column's new width."""
        x, y, width, _ = dunmora.extents(dunmora.table.cell(0, column))
        title = (dunmora.extents(dunmora.table)[1] + y) // 2
        dunmora.screen.drag((x + width - 1, title), (x + width - 1 + distance, title))
        dunmora.wait_for(lambda: self.width(dunmora, column) == width + distance, "new width")

    def drag_splitter(self, dunmora, distance):
        """Drags the edge below the table, and waits for the table's new height."""
        x, y, width, height = dunmora.extents(dunmora.table)
        start = (x + width // 2, y + height + 2)
        dunmora.screen.drag(start, (start[0], start[1] + distance))
        dunmora.wait_for(lambda: dunmora.table.extents[3] == height + distance, "new height")

    def test_its_size_columns_and_panes_are_as_the_user_left_them(self):
        dunmora = self.start_searched()
        self.let_settle()
        self.resize(dunmora, 1000, 700)
        self.drag_edge(dunmora, HOME, 37)
        self.drag_splitter(dunmora, -60)
        table = dunmora.table.extents[2:]
        widths = [self.width(dunmora, column) for column in range(len(COLUMNS))]
        self.wait_for_line(dunmora, "size=1000 700")
        self.wait_for_line(dunmora, r"vwReview\.sizes=.+")
        self.wait_for_line(dunmora, r"tableContacts\.columns=.+")
        self.quit(dunmora)

        dunmora = self.start_searched()

        dunmora.wait_for(lambda: self.size(dunmora) == (1000, 700), "size of the run before")
        dunmora.wait_for(lambda: dunmora.table.extents[2:] == table, "table's size of the run before")
        self.assertEqual([self.width(dunmora, column) for column in range(len(COLUMNS))], widths)
        stored = self.file.read_text()
        self.assertNotRegex(stored, "Ann|Lee|Carl|555|vcf")
        self.assertRegex(stored, r"^\[General\]\n\n\[MainWindow\]\n")

    def test_its_place_is_as_the_user_left_it(self):
        dunmora = self.start(self.book)
        dunmora.press(dunmora.dialog, "escape")
        self.let_settle()
        self.resize(dunmora, 800, 600)
        dunmora.x_window(dunmora.wait_for_main_alone()).move(150, 120)
        self.wait_for_line(dunmora, "place=150 120")
        place = dunmora.x_window(dunmora.main).extents
        self.quit(dunmora)

        dunmora = self.start(self.book)

        dunmora.wait_for(lambda: dunmora.x_window(dunmora.main).extents == place, "place of the run before")

    def test_it_is_maximized_again(self):
        dunmora = self.start_searched()
        self.let_settle()
        dunmora.x_window(dunmora.main).maximize()
        self.wait_for_line(dunmora, "maximized=true")
        self.assertNotIn("size=", self.file.read_text().replace(".sizes=", ""))
        self.quit(dunmora)

        dunmora = self.start_searched()

        dunmora.wait_for(lambda: MAXIMIZED <= dunmora.x_window(dunmora.main).states, "maximized window")

    def test_its_details_stay_hidden(self):
        dunmora = self.start_searched()
        self.assertTrue(self.shows_details(dunmora))
        dunmora.press(dunmora.main, "f9")
        self.wait_for_line(dunmora, r"OnDetails\.checked=false")
        self.quit(dunmora)

        dunmora = self.start_searched()
        self.assertFalse(self.shows_details(dunmora))
        dunmora.press(dunmora.main, "f9")
        dunmora.wait_for(lambda: self.shows_details(dunmora), "details")
        self.wait_for_line(dunmora, r"OnDetails\.checked=true")

    def test_nothing_is_stored_while_the_user_leaves_it_as_it_is(self):
        dunmora = self.start_searched()
        self.let_settle()
        self.quit(dunmora)

        self.assertFalse(self.file.exists())

    def test_damaged_lines_do_no_harm(self):
        text = ("[MainWindow]\nsize=-1 99999999999\nplace=90000 -90000\nmaximized=perhaps\nvwReview.sizes=0 0 0\n"
                "OnDetails.checked=2\ntableContacts.columns=" + " ".join(f"c{n}:{n}" for n in range(10_000)) + "\n")
        self.write_file(text)

        dunmora = self.start_searched()

        dunmora.total("4 duplicates of 5")
        self.assertTrue(self.shows_details(dunmora))
        x, y, width, height = dunmora.x_window(dunmora.main).extents
        self.assertTrue(0 <= x and 0 <= y and x + width <= 1280 and y + height <= 960)
        self.assertEqual(self.file.read_text(), text)

    def test_a_size_for_another_screen_fits_on_this_one(self):
        self.write_file("[MainWindow]\nsize=9000 8000\nplace=20 20\n")

        dunmora = self.start_searched()

        x_window = dunmora.x_window(dunmora.main)
        x, y, width, height = x_window.extents
        left, right, top, bottom = x_window.frame
        self.assertGreaterEqual((x - left, y - top), (0, 0))
        self.assertLessEqual(x + width + right, 1280)
        self.assertLessEqual(y + height + bottom, 960)

    def test_a_window_that_cannot_be_stored_disturbs_nobody(self):
        self.folder.parent.mkdir()
        self.folder.write_text("a file where the folder should be")
        dunmora = self.start_searched(BOOK)
        self.let_settle()
        self.resize(dunmora, 1000, 700)
        self.let_settle()

        self.quit(dunmora)

        self.assertEqual(dunmora.output, "")
        self.assertEqual(self.folder.read_text(), "a file where the folder should be")

        dunmora = self.start_searched(BOOK)
        self.assertFalse([window for window in dunmora.windows if is_alert(window)])


if __name__ == "__main__":
    windowcase.main()
