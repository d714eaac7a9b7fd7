#!/usr/bin/python3
"""Checks accessibility and light or dark windows: dunmora_access_test.py PATH-OF-DUNMORA [UNITTEST-OPTION]..."""

import windowcase
from accessibility import Announcements
from bigbook import MANY_PEOPLE, big_book
from cards import card
from dunmora import MARK
from dunmoracase import BOOK, BROKEN, DORA_1, DORA_2, NOBODY_1, NOBODY_2, DunmoraCase
from portal import DARK, LIGHT, SettingsPortal

DETAILS_OF_ANN_2 = ["Name: Ann Lee; same in the kept copy", "X-ODD: whatever; only here",
                    "Phone (home): +1 555 0101; only here"]
ONLY_HERE = "Something in this copy is in no copy that is kept."


class AccessTest(DunmoraCase):
    """A screen reader gets everything that the windows show."""

    NAMED = {"push button", "check box", "radio button", "text", "table", "table column header", "menu", "menu item",
             "progress bar", "frame", "dialog", "alert message", "combo box", "list"}

    def assert_all_named(self, window):
        unnamed = [node for node in window.walk() if node.role in self.NAMED and not node.name]
        self.assertEqual(unnamed, [])

    def assert_unique_mnemonics(self, window):
        keys = [key for node in window.walk() for key in node.key_bindings]
        self.assertEqual(sorted(keys), sorted(set(keys)), [(node, node.key_bindings) for node in window.walk()])

    def test_names_every_control_of_every_window(self):
        self.book.write_bytes(big_book(MANY_PEOPLE, 2_000)[0])
        dunmora = self.start(self.book)
        self.assert_all_named(dunmora.progress)
        dialog = dunmora.dialog
        self.assert_all_named(dialog)
        self.assert_unique_mnemonics(dialog)
        self.assert_all_named(dunmora.main)
        dunmora.press(dialog, "escape")
        self.assert_all_named(dunmora.wait_for_main_alone())
        dunmora.kill()

        dunmora = self.start_searched(BOOK + DORA_1 + DORA_2 + NOBODY_1 + NOBODY_2 + BROKEN)
        main = dunmora.main
        self.assert_all_named(main)
        self.assert_unique_mnemonics(main)
        alert = self.delete_checked(dunmora)
        self.assert_all_named(alert)
        self.assert_unique_mnemonics(alert)

    def test_names_every_cell_and_the_person_of_each_mark(self):
        dunmora = self.start_searched()
        table = dunmora.table

        names = [[table.cell(row, column).name for column in range(table.column_count)]
                 for row in range(table.row_count)]
        self.assertEqual([row[MARK] for row in names],
                         ["Ann Lee, copy 1 of 2, kept", f"Ann Lee, copy 2 of 2, marked for deletion. {ONLY_HERE}",
                          "Carl Ek, copy 1 of 2, kept", f"Carl Ek, copy 2 of 2, marked for deletion. {ONLY_HERE}"])
        self.assertTrue(all(name for row in names for name in row), names)

    def test_reaches_everything_under_the_table_by_keyboard(self):
        dunmora = self.start_searched(NOBODY_1 + NOBODY_2 + DORA_1 + DORA_2 + BROKEN)
        main = dunmora.main
        dunmora.select(0)

        reached = []
        for _ in range(6):
            focused = dunmora.wait_for(lambda: main.find(states=["focused"]), "focused control")
            reached.append(focused.name)
            dunmora.press(main, "tab")
            dunmora.wait_for(lambda: main.find(states=["focused"]) not in (None, focused), "next control")

        self.assertEqual(reached, ["Duplicates", "Details", "1 person would lose every copy",
                                   "2 people share only empty fields", "3 copies hold something unique",
                                   f"1 card in “{self.book}” (line 27) was skipped because it breaks off or has no "
                                   "properties. It stays in the file unchanged."])

    def test_reads_the_details_of_a_person_by_keyboard(self):
        dunmora = self.start_searched()
        main = dunmora.main
        dunmora.select(1)

        def details():
            return main.find("list", "Details")

        def lines():
            return [line.name for line in details().children]

        dunmora.wait_for(lambda: lines() == DETAILS_OF_ANN_2, "details")
        dunmora.press(main, "f9")
        dunmora.wait_for(lambda: details() is None, "end of the details")
        dunmora.press(main, "f9", "tab", "down")
        dunmora.wait_for(lambda: details() and details().has("focused"), "keyboard focus in the details")
        dunmora.wait_for(lambda: [line.name for line in details().children if line.has("selected")] ==
                         DETAILS_OF_ANN_2[1:2], "selected line")

    def test_shows_only_rows_that_need_a_look(self):
        dunmora = self.start_searched(BOOK + card("eva-1", "Eva", "Ng", "TEL:+1 555 0105") +
                                      card("eva-2", "Eva", "Ng", "TEL:+1 555 0105"))
        self.assertEqual(dunmora.table.row_count, 6)

        dunmora.choose("View", "Show Only Rows That Need a Look")
        dunmora.wait_for(lambda: dunmora.table.row_count == 4, "rows with a sign")

        dunmora.click(dunmora.button("Only rows that need a look"))
        dunmora.wait_for(lambda: dunmora.table.row_count == 6, "all rows")


class AnnouncementTest(DunmoraCase):
    """A screen reader hears what changes away from the keyboard focus."""

    def setUp(self):
        super().setUp()
        self.heard = self.enterContext(Announcements(self.desktop.accessibility.bus))

    def assert_heard(self, dunmora, *names):
        dunmora.wait_for(lambda: self.heard.has(*names), f"announcement of {names}")

    def test_announces_counts_and_the_results_of_commands(self):
        dunmora = self.start_searched()
        self.assert_heard(dunmora, "4 duplicates of 5", "2 checked", "2 copies hold something unique")
        dunmora.select_all()
        self.heard.clear()

        dunmora.choose("Edit", "Check Selected")
        self.assert_heard(dunmora, "4 checked", "Checked 2 people.", "2 people would lose every copy")

        self.heard.clear()
        dunmora.press(dunmora.main, "ctrl+z")
        self.assert_heard(dunmora, "2 checked", "Unchecked 2 people.", "2 copies hold something unique")

    def test_announces_a_deletion(self):
        dunmora = self.start_searched()
        self.heard.clear()

        dunmora.press(self.delete_checked(dunmora), "enter")

        self.assert_heard(dunmora, "2 people deleted.", "2 duplicates of 3", "0 checked")

    def test_announces_a_warning_each_time_it_appears(self):
        dunmora = self.start_searched()
        warning = "1 person would lose every copy"
        dunmora.select(0)
        dunmora.press(dunmora.main, "space")
        self.assert_heard(dunmora, warning)
        dunmora.press(dunmora.main, "space")
        self.assert_heard(dunmora, "2 checked")
        self.heard.clear()

        dunmora.press(dunmora.main, "space")
        self.assert_heard(dunmora, warning)

    def test_announces_how_many_rows_a_filter_finds(self):
        dunmora = self.start_searched()
        dunmora.select(0)
        self.heard.clear()

        dunmora.press(dunmora.main, "ctrl+f")
        dunmora.type(dunmora.main, "0101")

        self.assert_heard(dunmora, "1 of 4 match")

    def test_announces_a_mark_that_is_toggled_from_another_column(self):
        dunmora = self.start_searched()
        dunmora.select(0, column=2)
        self.heard.clear()

        dunmora.press(dunmora.main, "space")

        loses = "Every copy of this person is checked: none would be left."
        dunmora.wait_for(lambda: self.heard.has_toggled((f"Ann Lee, copy 1 of 2, marked for deletion. {loses}", True)),
                         "announcement of the mark")
        self.assert_heard(dunmora, "3 checked", "1 person would lose every copy")


class AppearanceTest(DunmoraCase):
    def brightness(self, dunmora):
        """Returns the main window's mean brightness, from 0 to 255."""
        _, _, pixels = dunmora.screen.image(dunmora.main.extents)
        return sum(pixels) / len(pixels)

    def test_follows_the_desktop_from_light_to_dark_and_back(self):
        with SettingsPortal(self.desktop.environment["DBUS_SESSION_BUS_ADDRESS"], DARK) as portal:
            dunmora = self.start_searched()

            dunmora.wait_for(lambda: self.brightness(dunmora) < 80, "dark window")
            portal.set_colour_scheme(LIGHT)
            dunmora.wait_for(lambda: self.brightness(dunmora) > 180, "light window")
            portal.set_colour_scheme(DARK)
            dunmora.wait_for(lambda: self.brightness(dunmora) < 80, "dark window")

    def test_does_not_wait_for_a_desktop_that_replies_late(self):
        with SettingsPortal(self.desktop.environment["DBUS_SESSION_BUS_ADDRESS"], DARK, replies=False) as portal:
            dunmora = self.start_searched()

            dunmora.wait_for(lambda: self.brightness(dunmora) > 180, "light window")
            portal.start_replying()
            dunmora.wait_for(lambda: self.brightness(dunmora) < 80, "dark window")


if __name__ == "__main__":
    windowcase.main()
