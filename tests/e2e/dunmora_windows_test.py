#!/usr/bin/python3
"""Uses the real program's windows: dunmora_windows_test.py PATH-OF-DUNMORA [UNITTEST-OPTION]..."""

import pathlib
import re

import windowcase
from bigbook import MANY_PEOPLE, big_book
from drop import FileDrag
from dunmora import (CONFIRMATION, DEFAULT_FIELDS, FIELDS, MOBILE_FIELD, NO_BOOK, NO_FIELD, SEVERAL_BOOKS, is_alert,
                     is_shortcuts, texts_of)
from dunmoracase import (ANN_1, ANN_2, ANNS, BEN, BOOK, BROKEN, CARL_1, CARL_2, CARLS, DORA_1, DORA_2, JUNK, NOBODY_1,
                         NOBODY_2, DunmoraCase)
from module import module_of
from updateservice import Browser


class StartTest(DunmoraCase):
    def test_shows_progress_while_it_loads_and_then_asks_for_the_match_fields(self):
        self.book.write_bytes(big_book(MANY_PEOPLE, 10)[0])
        dunmora = self.start(self.book)

        main, progress = dunmora.main, dunmora.progress
        text = dunmora.wait_for(lambda: texts_of(progress), "text in the progress window")
        bar = progress.find("progress bar")
        dunmora.wait_for(lambda: 0 < bar.value < bar.maximum, "movement of the bar")
        stack = [window for window in dunmora.screen.windows if window.process_id == dunmora.process.pid]
        self.assertEqual(text, ["Loading Contacts..."])
        # Only the progress window says that it takes time.
        self.assertEqual(texts_of(main), ["Looking for duplicates…"])
        self.assertEqual(stack, [dunmora.x_window(main), dunmora.x_window(progress)])
        # It never takes the focus from the main window.
        dunmora.wait_until_active(main)

        dialog = dunmora.dialog
        dunmora.wait_until_active(dialog)
        self.assertEqual(sorted(window.role for window in dunmora.windows), sorted([main.role, dialog.role]))

    def test_names_the_book_in_the_title(self):
        dunmora = self.start(self.book)

        self.assertIn("book.vcf", dunmora.main.name)

    def test_does_nothing_when_it_is_activated_again(self):
        dunmora = self.start_searched()
        main = dunmora.main
        dunmora.screen.count_new_windows()

        other = dunmora.screen.open_window("Another program")
        self.addCleanup(other.window.destroy)
        dunmora.wait_for(lambda: dunmora.screen.active_window in (other, None), "activation of the other program")
        other.activate()
        dunmora.wait_for(lambda: dunmora.screen.active_window == other, "activation of the other program")
        dunmora.x_window(main).activate()
        dunmora.wait_until_active(main)
        # Its marks can still be changed, so no job was started.
        dunmora.select(0)
        dunmora.press(main, "space")
        dunmora.wait_for_marks(True, True, False, True)

        self.assertEqual(dunmora.screen.count_new_windows(), 1)
        self.assertEqual(dunmora.windows, [main])

    def test_offers_to_open_a_book_when_none_is_given(self):
        self.desktop.screen.count_new_windows()
        dunmora = self.start()

        dunmora.wait_for_main_alone()
        dunmora.label("No address book is open")
        self.assertEqual(dunmora.screen.count_new_windows(), 1)
        dunmora.click(dunmora.button("Open Address Book…"))
        self.open_by_keyboard(dunmora)

        dunmora.search()
        dunmora.total("4 duplicates of 5")

    def test_explains_how_to_open_a_book_when_none_can_be_reloaded(self):
        dunmora = self.start()

        dunmora.click(dunmora.button("Reload", dunmora.wait_for_main_alone()))

        dunmora.press(dunmora.alert(NO_BOOK), "enter")
        dunmora.wait_until_idle()
        dunmora.label("No address book is open")

    def open_by_keyboard(self, dunmora, book=None):
        panel = dunmora.open_panel
        dunmora.type(panel, str(book or self.book))
        dunmora.press(panel, "enter")

    def test_opens_another_book_by_keyboard(self):
        other = self.books / "other.vcf"
        other.write_bytes(DORA_1 + DORA_2)
        dunmora = self.start_searched()

        dunmora.press(dunmora.main, "ctrl+o")
        self.open_by_keyboard(dunmora, other)
        dunmora.search()

        dunmora.total("2 duplicates of 2")
        self.assertIn("other.vcf", dunmora.main.name)

    def test_opens_a_folder_of_cards(self):
        (self.books / "dora.vcf").write_bytes(DORA_1)
        dunmora = self.start(self.books)

        dunmora.search()

        dunmora.total("4 duplicates of 6")

    def test_opens_a_folder_by_keyboard_beside_the_open_book(self):
        other = self.books / "other"
        other.mkdir()
        (other / "dora.vcf").write_bytes(DORA_1 + DORA_2)
        dunmora = self.start_searched()

        dunmora.press(dunmora.main, "ctrl+shift+d")
        # Relative to the folder in which the panel starts.
        self.open_by_keyboard(dunmora, "other")
        dunmora.search()

        dunmora.total("2 duplicates of 2")

    def test_keeps_its_book_when_the_open_panel_is_cancelled(self):
        dunmora = self.start_searched()

        dunmora.press(dunmora.main, "ctrl+o")
        dunmora.press(dunmora.open_panel, "escape")
        dunmora.wait_for_main_alone()

        dunmora.total("4 duplicates of 5")
        self.assertEqual(dunmora.names(), ANNS + CARLS)


class MatchFieldsTest(DunmoraCase):
    def states(self, dialog):
        return {name: dialog.find("check box", name).has("checked") for name in FIELDS}

    def test_has_first_and_last_name_checked_at_first(self):
        dunmora = self.start(self.book)

        self.assertEqual(self.states(dunmora.dialog), {name: name in DEFAULT_FIELDS for name in FIELDS})

    def test_works_by_keyboard_alone(self):
        dunmora = self.start(self.book)
        dialog = dunmora.dialog
        dunmora.wait_until_active(dialog)

        # The Tab key reaches every box and the space bar toggles it.
        turned = set()
        for _ in range(3 * len(FIELDS)):
            box = next(iter(dialog.find_all("check box", states=["focused"])), None)
            if box is not None and box.name not in turned:
                before = box.has("checked")
                dunmora.press(dialog, "space")
                dunmora.wait_for(lambda: box.has("checked") != before, f"turn of {box.name}")
                turned.add(box.name)
            focused = dialog.find_all(states=["focused"])
            dunmora.press(dialog, "tab")
            dunmora.wait_for(lambda: dialog.find_all(states=["focused"]) not in ([], focused), "next control")
        self.assertEqual(turned, set(FIELDS))

        self.assertEqual(self.states(dialog), {name: name not in DEFAULT_FIELDS for name in FIELDS})
        dunmora.press(dialog, "enter")
        dunmora.wait_for_main_alone()
        dunmora.total("0 duplicates of 5")

    def test_stores_a_choice_even_when_it_is_cancelled(self):
        dunmora = self.start(self.book)
        dialog = dunmora.dialog
        dunmora.click_field(dialog, MOBILE_FIELD)
        dunmora.wait_for(lambda: self.states(dialog)[MOBILE_FIELD], "mark")
        dunmora.press(dialog, "escape")
        dunmora.wait_for_main_alone()
        dunmora.choose("File", "Quit")
        dunmora.seconds_until_end()

        dunmora = self.start(self.book)

        self.assertEqual(self.states(dunmora.dialog),
                         {name: name in (*DEFAULT_FIELDS, MOBILE_FIELD) for name in FIELDS})

    def test_asks_again_by_menu(self):
        dunmora = self.start_searched()

        dunmora.choose("Edit", "Match Fields…")
        dialog = dunmora.dialog
        dunmora.click_field(dialog, MOBILE_FIELD)
        dunmora.search()

        dunmora.label("No duplicates found")
        dunmora.total("0 duplicates of 5")

    def test_asks_for_at_least_one_field(self):
        dunmora = self.start(self.book)
        dialog = dunmora.dialog
        for name in DEFAULT_FIELDS:
            dunmora.click_field(dialog, name)
        dunmora.wait_for(lambda: not any(self.states(dialog).values()), "empty boxes")

        dunmora.press(dialog, "enter")
        alert = dunmora.alert(NO_FIELD)
        self.assertTrue(alert.find("graphic", "Information"))
        dunmora.press(alert, "enter")
        dunmora.wait_for(lambda: not [window for window in dunmora.windows if is_alert(window)], "end of the alert")
        dunmora.click_field(dialog, MOBILE_FIELD)
        dunmora.wait_for(lambda: self.states(dialog)[MOBILE_FIELD], "mark")
        dunmora.press(dialog, "enter")

        dunmora.wait_for_main_alone()
        dunmora.total("5 duplicates of 5")
        # Two people share one number, three have no number.
        self.assertEqual(dunmora.names(),
                         [("Ann", "Lee"), ("Carl", "Ek"), ("Ben", "Li"), ("Ann", "Lee"), ("Carl", "Ek")])

    def test_reports_that_the_search_was_cancelled(self):
        for cancel in (lambda dunmora, dialog: dunmora.press(dialog, "escape"),
                       lambda dunmora, dialog: dunmora.click(dunmora.button("Cancel", dialog)),
                       lambda dunmora, dialog: dunmora.x_window(dialog).close()):
            with self.subTest():
                dunmora = self.start(self.book)

                cancel(dunmora, dunmora.dialog)

                dunmora.wait_for_main_alone()
                dunmora.label("The search was cancelled")
                dunmora.kill()
        self.assert_book(BOOK)

    def test_keeps_the_total_line_until_the_next_search_has_ended(self):
        dunmora = self.start_searched()
        dunmora.total("4 duplicates of 5")

        dunmora.click(dunmora.button("Reload"))
        dialog = dunmora.dialog
        self.assertEqual(texts_of(dunmora.main), ["Looking for duplicates…", "4 duplicates of 5"])
        dunmora.press(dialog, "escape")

        dunmora.wait_for_main_alone()
        dunmora.label("The search was cancelled")
        dunmora.total("4 duplicates of 5")

    def test_blocks_the_main_window_while_it_asks(self):
        dunmora = self.start(self.book)
        main, dialog = dunmora.main, dunmora.dialog
        dunmora.wait_until_active(dialog)
        dunmora.screen.count_new_windows()

        reload = main.find_all("push button", "Reload")[0]
        dunmora.screen.count_activations()
        dunmora.click(reload)
        # The window manager activates the main window, then the program activates the dialog again.
        dunmora.wait_for(dunmora.screen.count_activations, "activation of the main window")
        dunmora.wait_until_active(dialog)
        dunmora.press(dialog, "ctrl+r", "f5", "enter")

        dunmora.wait_for_main_alone()
        dunmora.total("4 duplicates of 5")
        # Only the search's progress window was shown since.
        self.assertLessEqual(dunmora.screen.count_new_windows(), 1)


class ReviewTest(DunmoraCase):
    def test_shows_each_group_with_the_proposed_marks(self):
        dunmora = self.start_searched()

        dunmora.total("4 duplicates of 5")
        self.assertEqual(dunmora.marks(), [False, True, False, True])
        rows = dunmora.rows()
        # The user's locale decides the format of the date.
        self.assertEqual([row._replace(modified="") for row in rows], [
            ("Ann", "Lee", "Annie", "", "", "+1 555 0100", ""),
            ("Ann", "Lee", "", "+1 555 0101", "", "", ""),
            ("Carl", "Ek", "", "", "+1 555 0102", "", ""),
            ("Carl", "Ek", "", "", "", "+1 555 0100", "")])
        self.assertTrue(all("24" in row.modified for row in rows), rows)

    def test_focuses_the_table_after_a_search(self):
        # In a long search the main window has the focus before the table has rows.
        dunmora = self.start_searched(big_book(10_000, 10)[0])

        dunmora.wait_for(lambda: dunmora.table.has("focused"), "focus in the table")

    def test_toggles_a_mark_by_click_and_by_space(self):
        dunmora = self.start_searched()

        dunmora.click_mark(0)
        dunmora.wait_for_marks(True, True, False, True)
        dunmora.click_mark(0)
        dunmora.wait_for_marks(False, True, False, True)
        dunmora.select(1, 2)
        dunmora.press(dunmora.main, "space")
        dunmora.wait_for_marks(False, False, False, True)
        dunmora.press(dunmora.main, "down", "space")
        dunmora.wait_for_marks(False, False, True, True)
        self.assert_book(BOOK)

    def test_marks_all_selected_rows_by_menu(self):
        dunmora = self.start_searched()

        dunmora.select_all()
        dunmora.choose("Edit", "Check Selected")
        dunmora.wait_for_marks(True, True, True, True)
        dunmora.choose("Edit", "Uncheck Selected")
        dunmora.wait_for_marks(False, False, False, False)

    def test_marks_by_shortcuts(self):
        dunmora = self.start_searched()
        dunmora.select_all()

        dunmora.press(dunmora.main, "ctrl+t")
        dunmora.wait_for_marks(True, True, True, True)
        dunmora.press(dunmora.main, "ctrl+shift+o")
        dunmora.wait_for_marks(False, True, False, True)
        dunmora.press(dunmora.main, "ctrl+shift+t")
        dunmora.wait_for_marks(False, False, False, False)

    def test_does_not_delete_when_nothing_is_checked(self):
        dunmora = self.start_searched()

        dunmora.press(self.delete_nobody(dunmora), "escape")

        dunmora.wait_for_main_alone()
        self.assertEqual(dunmora.names(), ANNS + CARLS)
        self.assert_book(BOOK)

    def test_does_not_delete_when_the_confirmation_is_cancelled(self):
        dunmora = self.start_searched()

        for cancel in (lambda alert: dunmora.press(alert, "escape"),
                       lambda alert: dunmora.click(dunmora.button("Cancel", alert)),
                       lambda alert: dunmora.x_window(alert).close()):
            cancel(self.delete_checked(dunmora))
            dunmora.wait_for_main_alone()

        self.assertEqual(dunmora.marks(), [False, True, False, True])
        self.assert_book(BOOK)

    def test_deletes_the_checked_cards_and_not_a_byte_more(self):
        dunmora = self.start_searched()
        dunmora.click_mark(3)
        dunmora.wait_for_marks(False, True, False, False)

        dunmora.click(dunmora.button("Okay", self.delete_checked(dunmora)))

        dunmora.total("3 duplicates of 4")
        dunmora.wait_for_main_alone()
        self.assertEqual(dunmora.names(), ANNS[:1] + CARLS)
        self.assert_book(ANN_1 + JUNK + BEN + CARL_1 + CARL_2)

    def test_deletes_several_times_in_a_row(self):
        dunmora = self.start_searched()

        dunmora.press(self.delete_checked(dunmora), "enter")
        dunmora.total("2 duplicates of 3")
        dunmora.wait_for_main_alone()
        dunmora.click_mark(1)
        dunmora.wait_for_marks(False, True)
        dunmora.press(self.delete_checked(dunmora), "enter")

        dunmora.total("1 duplicates of 2")
        self.assert_book(ANN_1 + JUNK + BEN)

    def test_steps_through_unique_copies_keeps_one_deletes_and_undoes_by_keys_alone(self):
        dunmora = self.start_searched()
        dunmora.wait_for(lambda: dunmora.table.has("focused"), "focused table")
        only_here = dunmora.button("2 copies hold something unique")
        for row in (1, 3, 1):
            dunmora.focus_by_tab(only_here)
            dunmora.press(dunmora.main, "space")
            dunmora.wait_for(lambda row=row: dunmora.table.cell(row, 1).has("selected"), f"jump to row {row}")
        dunmora.press(dunmora.main, "ctrl+k")
        dunmora.wait_for_marks(True, False, False, True)

        dunmora.press(dunmora.main, "ctrl+Delete")
        dunmora.press(dunmora.alert(*CONFIRMATION), "enter")
        dunmora.total("2 duplicates of 3")
        dunmora.label("2 people deleted.")
        self.assert_book(JUNK + BEN + ANN_2 + CARL_1)
        dunmora.wait_for_main_alone()
        dunmora.wait_for(lambda: dunmora.table.has("focused"), "focused table")

        dunmora.press(dunmora.main, "alt+u")
        dunmora.search()
        dunmora.total("4 duplicates of 5")
        dunmora.label("2 people restored.")
        self.assert_book(BOOK)

    def test_undoes_two_deletions_by_menu_after_a_reload(self):
        dunmora = self.start_searched()
        dunmora.press(self.delete_checked(dunmora), "enter")
        dunmora.total("2 duplicates of 3")
        dunmora.wait_for_main_alone()
        dunmora.press(dunmora.main, "home", "space")
        dunmora.wait_for_marks(True, False)
        dunmora.press(self.delete_checked(dunmora), "enter")
        dunmora.total("1 duplicates of 2")
        self.assert_book(JUNK + BEN + CARL_1)
        dunmora.press(dunmora.wait_for_main_alone(), "F5")
        dunmora.search()

        dunmora.press(dunmora.main, "alt+e", "d")
        dunmora.search()
        dunmora.total("0 duplicates of 3")
        self.assert_book(ANN_1 + JUNK + BEN + CARL_1)
        dunmora.press(dunmora.main, "alt+e", "d")
        dunmora.search()
        self.assert_book(BOOK)

    def test_saves_the_removed_people(self):
        dunmora = self.start_searched()
        dunmora.press(self.delete_checked(dunmora), "enter")
        dunmora.label("2 people deleted.")
        dunmora.wait_for_main_alone()

        dunmora.press(dunmora.main, "alt+s")
        panel = dunmora.open_panel
        dunmora.press(panel, "ctrl+a")
        dunmora.type(panel, str(self.home / "removed"))
        dunmora.press(panel, "enter")

        dunmora.wait_for_main_alone()
        self.assertEqual((self.home / "removed.vcf").read_bytes(), ANN_2 + CARL_2)

    def test_reads_the_book_again_on_reload(self):
        dunmora = self.start_searched()
        self.book.write_bytes(BOOK + DORA_1 + DORA_2)

        dunmora.click(dunmora.button("Reload"))
        dunmora.search()

        dunmora.total("6 duplicates of 7")
        self.assertEqual(dunmora.marks(), [False, True, False, True, True, True])

    def test_reports_that_there_are_no_duplicates(self):
        dunmora = self.start_searched(ANN_1 + BEN)

        dunmora.total("0 duplicates of 2")
        dunmora.label("No duplicates found")


class WarningsTest(DunmoraCase):
    def setUp(self):
        super().setUp()
        self.dunmora = self.start_searched(ANN_1 + DORA_1 + DORA_2 + ANN_2 + NOBODY_1 + NOBODY_2 + CARL_1 + CARL_2)

    def test_shows_who_would_be_lost(self):
        dunmora = self.dunmora
        dunmora.button("1 person would lose every copy")
        self.assertIn("Every copy of this person is checked", dunmora.table.cell(2, 0).name)

        dunmora.click_mark(0)

        dunmora.button("2 people would lose every copy")

    def test_shows_who_shares_only_empty_fields(self):
        self.dunmora.button("2 people share only empty fields")

    def test_jumps_from_one_warning_to_the_next(self):
        dunmora = self.dunmora
        dunmora.click_mark(0)

        for row in (0, 2, 0):
            dunmora.click(dunmora.button("2 people would lose every copy"))
            dunmora.wait_for(lambda row=row: dunmora.table.cell(row, 1).has("selected"), f"jump to row {row}")

    def test_asks_before_a_deletion_takes_somebody_completely(self):
        dunmora = self.dunmora
        dunmora.label("5 checked")
        dunmora.press(dunmora.main, "ctrl+Delete")
        alert = dunmora.wait_for_window(is_alert, "alert")
        self.assertEqual(texts_of(alert)[0], "1 person would be deleted completely")
        dunmora.press(alert, "escape")
        dunmora.wait_for_main_alone()
        dunmora.label("5 checked")

        dunmora.press(dunmora.main, "ctrl+Delete")
        dunmora.press(dunmora.wait_for_window(is_alert, "alert"), "enter")
        dunmora.wait_for(lambda: texts_of(dunmora.wait_for_window(is_alert, "alert")) == list(CONFIRMATION),
                         "confirmation")
        dunmora.press(dunmora.alert(*CONFIRMATION), "escape")
        dunmora.wait_for_main_alone()

        dunmora.label("3 checked")
        dunmora.button("Delete 3 Checked…?")

    def test_keeps_one_of_each(self):
        dunmora = self.dunmora

        dunmora.choose("Edit", "Keep One of Each")

        dunmora.wait_for(lambda: not dunmora.has_button(".* lose every copy"), "end of the warning")
        self.assertEqual(dunmora.marks(), [False, True, False, True, False, True, False, True])


class FilterTest(DunmoraCase):
    def test_hides_rows_and_changes_no_mark(self):
        dunmora = self.start_searched()

        dunmora.press(dunmora.main, "ctrl+f")
        dunmora.wait_for(lambda: dunmora.main.find("text", states=["focused"]), "focused filter line")
        dunmora.type(dunmora.main, "carl")
        dunmora.wait_for(lambda: dunmora.names() == CARLS, "filtered rows")
        dunmora.wait_for_marks(False, True)
        dunmora.total("4 duplicates of 5")

        dunmora.press(dunmora.main, "escape")
        dunmora.wait_for(lambda: dunmora.names() == ANNS + CARLS, "all rows")
        dunmora.wait_for_marks(False, True, False, True)
        self.assertIsNone(dunmora.main.find("text"))

    def test_stays_when_a_deletion_is_cancelled_and_is_cleared_after_one(self):
        dunmora = self.start_searched()
        dunmora.press(dunmora.main, "ctrl+f")
        dunmora.type(dunmora.main, "carl")
        dunmora.wait_for(lambda: dunmora.names() == CARLS, "filtered rows")

        dunmora.press(self.delete_checked(dunmora), "escape")
        dunmora.wait_for_main_alone()
        self.assertEqual(dunmora.names(), CARLS)

        dunmora.press(self.delete_checked(dunmora), "enter")
        dunmora.total("2 duplicates of 3")
        dunmora.wait_for(lambda: dunmora.names() == [ANNS[0], CARLS[0]], "all rows")
        self.assert_book(ANN_1 + JUNK + BEN + CARL_1)

    def test_marks_only_the_rows_that_it_shows(self):
        dunmora = self.start_searched()
        dunmora.press(dunmora.main, "ctrl+f")
        dunmora.type(dunmora.main, "ann")
        dunmora.wait_for(lambda: dunmora.names() == ANNS, "filtered rows")

        dunmora.select(0)
        dunmora.press(dunmora.main, "ctrl+a")
        dunmora.choose("Edit", "Uncheck Selected")
        dunmora.wait_for_marks(False, False)
        dunmora.press(dunmora.main, "ctrl+f", "escape")

        dunmora.wait_for(lambda: dunmora.names() == ANNS + CARLS, "all rows")
        dunmora.wait_for_marks(False, False, False, True)


class NotesTest(DunmoraCase):
    def test_lists_the_cards_that_were_skipped(self):
        dunmora = self.start_searched(BOOK + BROKEN)

        remark = (
            f"1 card in “{self.book}” (line 40) was skipped because it breaks off or has no properties. "
            "It stays in the file unchanged."
        )
        # The button is too narrow for the remark; assistive technology reads all of it.
        dunmora.click(dunmora.button(re.escape(remark)))
        alert = dunmora.wait_for_window(is_alert, "alert")
        self.assertEqual(texts_of(alert), ["1 card was skipped", remark])
        dunmora.press(alert, "escape")
        dunmora.wait_for_main_alone()

        self.book.write_bytes(BOOK)
        dunmora.click(dunmora.button("Reload"))
        dunmora.search()
        dunmora.total("4 duplicates of 5")
        self.assertFalse(dunmora.has_button(re.escape(remark)))

    def test_refuses_a_file_that_is_no_vcard_file(self):
        self.book.write_bytes(b"First,Last\nAnn,Lee\n")

        dunmora = self.start(self.book)

        alert = dunmora.alert(f"“{self.book}” is a CSV file, not a vCard file. Export as vCard (.vcf).")
        dunmora.press(alert, "enter")
        # No question about match fields follows.
        dunmora.wait_for_main_alone()
        dunmora.label("The address book could not be read")

    def test_leaves_a_broken_card_as_it_is(self):
        dunmora = self.start_searched(BOOK + BROKEN)

        dunmora.press(self.delete_checked(dunmora), "enter")

        dunmora.total("2 duplicates of 3")
        self.assert_book(ANN_1 + JUNK + BEN + CARL_1 + BROKEN)


class AboutTest(DunmoraCase):
    def test_names_the_version_and_the_libraries(self):
        dunmora = self.start_searched()

        dunmora.choose("Help", "About Dunmora")

        title, text = texts_of(dunmora.wait_for_window(is_alert, "alert"))
        self.assertRegex(title, r"^Dunmora \d")
        self.assertRegex(text, r"Qt 6\.\d.*CLI11.*xxHash")
        self.assertEqual("libebook" in text, module_of(self.executable) is not None)


class HelpTest(DunmoraCase):
    def test_opens_the_guide_in_the_browser_also_while_the_fields_are_asked_for(self):
        page = pathlib.Path(self.executable).resolve().with_name("guide") / "index.html"
        browser = self.enterContext(Browser(self.home))
        dunmora = self.start(self.book)

        dunmora.wait_until_active(dunmora.dialog)
        dunmora.press(dunmora.dialog, "f1")
        dunmora.wait_for(lambda: browser.opened == [page.as_uri()], "guide in the browser")

        dunmora.search()
        dunmora.choose("Help", "Dunmora Help")
        dunmora.wait_for(lambda: browser.opened == [page.as_uri()] * 2, "guide in the browser again")


class ShortcutsTest(DunmoraCase):
    LISTED = {"File", "Delete Checked…: Ctrl+Del", "Check Selected: Ctrl+T", "Dunmora Help: F1",
              "Keyboard Shortcuts: Ctrl+?", "In the table", "Check or uncheck the selected rows: Space", "In the filter",
              "Close the filter and show all rows: Esc"}

    def lines(self, shortcuts):
        return [line.name for line in shortcuts.find("list", "Keyboard shortcuts").children]

    def test_are_listed_by_their_own_shortcut_whichever_key_has_the_question_mark(self):
        dunmora = self.start_searched()
        for layout in ("us", "de", "fr"):
            with self.subTest(layout), dunmora.screen.keyboard(layout):
                dunmora.press(dunmora.main, "ctrl+?")
                shortcuts = dunmora.wait_for_window(is_shortcuts, "list of shortcuts")
                self.assertLessEqual(self.LISTED, set(self.lines(shortcuts)))

                dunmora.press(shortcuts, "escape")
                dunmora.wait_for_main_alone()

    def test_are_read_line_by_line_and_closed_by_keyboard(self):
        dunmora = self.start_searched()
        dunmora.choose("Help", "Keyboard Shortcuts")
        shortcuts = dunmora.wait_for_window(is_shortcuts, "list of shortcuts")

        def selected():
            lines = shortcuts.find("list", "Keyboard shortcuts").children
            return [index for index, line in enumerate(lines) if line.has("selected")]

        dunmora.wait_for(lambda: selected() == [0], "first line")
        dunmora.press(shortcuts, "down")
        dunmora.wait_for(lambda: selected() == [1], "second line")
        dunmora.press(shortcuts, "end")
        dunmora.wait_for(lambda: selected() == [len(self.lines(shortcuts)) - 1], "last line")
        dunmora.press(shortcuts, "enter")
        dunmora.wait_for_main_alone()

    def test_stay_open_beside_the_review(self):
        dunmora = self.start_searched()
        dunmora.press(dunmora.main, "ctrl+?")
        shortcuts = dunmora.wait_for_window(is_shortcuts, "list of shortcuts")

        dunmora.x_window(dunmora.main).activate()
        dunmora.press(dunmora.main, "ctrl+shift+o", "ctrl+a", "ctrl+t")
        dunmora.wait_for_marks(True, True, True, True)
        self.assertIn(shortcuts, dunmora.windows)

        dunmora.press(dunmora.main, "ctrl+?")
        dunmora.press(shortcuts, "escape")
        dunmora.wait_for_main_alone()


class DropTest(DunmoraCase):
    def test_opens_a_book_that_is_dropped_on_the_window(self):
        other = self.books / "other.vcf"
        other.write_bytes(DORA_1 + DORA_2)
        dunmora = self.start_searched()
        main = dunmora.main

        self.assertTrue(FileDrag(dunmora.screen, other).drop(dunmora.x_window(main)))
        dunmora.search()

        dunmora.total("2 duplicates of 2")
        self.assertIn("other.vcf", main.name)

    def test_opens_none_of_several_books_that_are_dropped_together(self):
        other = self.books / "other.vcf"
        other.write_bytes(DORA_1 + DORA_2)
        dunmora = self.start_searched()

        self.assertTrue(FileDrag(dunmora.screen, other, self.book).drop(dunmora.x_window(dunmora.main)))
        dunmora.press(dunmora.alert(SEVERAL_BOOKS), "enter")

        dunmora.wait_for_main_alone()
        self.assertEqual(dunmora.names(), ANNS + CARLS)

    def test_accepts_no_book_while_it_asks(self):
        dunmora = self.start(self.book)
        main, dialog = dunmora.main, dunmora.dialog

        self.assertFalse(FileDrag(dunmora.screen, self.book).drop(dunmora.x_window(main)))

        dunmora.press(dialog, "escape")
        dunmora.wait_for_main_alone()


if __name__ == "__main__":
    windowcase.main()
