#!/usr/bin/python3
"""Makes the real program fail, and ends it in every state: dunmora_failures_test.py PATH-OF-DUNMORA [OPTION]..."""

import pathlib
import signal

import windowcase
from bigbook import MANY_PEOPLE, big_book
from dunmora import FIELDS, MOBILE_FIELD, NO_FIELD, is_alert, is_progress
from dunmoracase import ANN_1, ANNS, BEN, BOOK, CARL_1, CARLS, DORA_1, DORA_2, JUNK, DunmoraCase
from waiting import wait_for


class FailureTest(DunmoraCase):
    def fail_with(self, dunmora, text):
        """Waits for an alert with this text, with no progress window behind it, and confirms it."""
        alert = dunmora.alert(text)
        self.assertTrue(alert.find("graphic", "Error"))
        self.assertFalse([window for window in dunmora.windows if is_progress(window)])
        dunmora.press(alert, "enter")

    def test_reports_that_a_book_cannot_be_read(self):
        self.book.unlink()
        dunmora = self.start(self.book)

        self.fail_with(dunmora, f"“{self.book}” does not exist.")

        dunmora.wait_for_main_alone()
        dunmora.label("The address book could not be read")
        self.book.write_bytes(BOOK)
        dunmora.click(dunmora.button("Reload"))
        dunmora.search()
        dunmora.total("4 duplicates of 5")

    def test_reports_that_a_read_only_book_cannot_be_changed(self):
        dunmora = self.start_searched()
        self.book.chmod(0o444)

        dunmora.press(self.delete_checked(dunmora), "enter")
        self.fail_with(dunmora, f"“{self.book}” cannot be changed: it is read-only.")

        # The book is read again, because the engine has already dropped people who are still in it.
        dunmora.search()
        dunmora.total("4 duplicates of 5")
        self.assertEqual(dunmora.names(), ANNS + CARLS)
        self.assert_book(BOOK)

    def test_reports_that_another_program_has_changed_the_book(self):
        dunmora = self.start_searched()
        self.book.write_bytes(BOOK + DORA_1 + DORA_2)

        dunmora.press(self.delete_checked(dunmora), "enter")
        self.fail_with(dunmora, f"“{self.book}” has changed since it was read. Reload it and try again.")

        dunmora.search()
        dunmora.total("6 duplicates of 7")
        self.assert_book(BOOK + DORA_1 + DORA_2)

        dunmora.press(self.delete_checked(dunmora), "enter")
        dunmora.total("2 duplicates of 3")
        self.assert_book(ANN_1 + JUNK + BEN + CARL_1)


class PreferencesTest(DunmoraCase):
    NOT_SAVED = "The preferences were not saved and last until the program ends."

    def setUp(self):
        super().setUp()
        self.folder = self.home / "config" / "dunmora"
        self.folder.parent.mkdir()
        self.file = self.folder / "dunmora.conf"

    @staticmethod
    def alerts(dunmora):
        return [window for window in dunmora.windows if is_alert(window)]

    def confirm(self, dunmora, text):
        """Waits for an alert with this text and confirms it."""
        alert = dunmora.alert(text)
        self.assertTrue(alert.find("graphic", "Error"))
        dunmora.press(alert, "enter")
        dunmora.wait_for(lambda: not self.alerts(dunmora), "end of the alert")

    def test_reports_once_above_the_dialog_that_they_cannot_be_saved(self):
        self.folder.write_text("a file where the folder should be")
        dunmora = self.start(self.book)
        dialog = dunmora.dialog
        nickname = dialog.find("check box", "Nickname")

        dunmora.click_field(dialog, MOBILE_FIELD)
        message = f"{self.NOT_SAVED} “{self.file}” cannot be changed: Not a directory."
        self.confirm(dunmora, message)
        dunmora.click(nickname)
        dunmora.wait_for(lambda: nickname.has("checked"), "mark")
        dunmora.click(nickname)
        dunmora.wait_for(lambda: not nickname.has("checked"), "end of the mark")
        self.assertFalse(self.alerts(dunmora))
        dunmora.press(dialog, "enter")

        # Nevertheless the search uses the choice: everybody has another mobile number or none.
        dunmora.wait_until_idle()
        dunmora.total("0 duplicates of 5")
        self.assertEqual(dunmora.output, f"dunmora: {message}\n")

    def test_reports_at_launch_that_they_cannot_be_loaded(self):
        self.folder.mkdir()
        self.file.write_text("junk\n")
        dunmora = self.start(self.book)

        self.confirm(dunmora, f"The preferences were not loaded. “{self.file}” is not a valid preferences file. "
                              "Correct it or delete it.")
        dunmora.search()

        dunmora.total("4 duplicates of 5")
        self.assertEqual(self.file.read_text(), "junk\n")


class EndTest(DunmoraCase):
    """In every state the program ends as soon as it is asked to."""

    BIG, BIG_WITHOUT_COPIES = big_book(MANY_PEOPLE, 2_000)

    @staticmethod
    def wait_until_signals_are_handled(process_id):
        """Waits until the process handles SIGTERM; before that the system would kill it."""
        def is_handled():
            status = pathlib.Path(f"/proc/{process_id}/status").read_text()
            handled = next(int(line.split()[1], 16) for line in status.splitlines() if line.startswith("SigCgt:"))
            return handled & (1 << (signal.SIGTERM - 1))

        wait_for(is_handled, "handler of SIGTERM")

    def assert_ends(self, reach):
        """Brings the program to a state with `reach` and ends it, once for each way to end it."""
        for name, end in (("close", lambda dunmora, main: main.close()),
                          ("quit", lambda dunmora, main: dunmora.screen.press("ctrl+q"))):
            with self.subTest(name):
                dunmora = reach()
                end(dunmora, dunmora.x_window(dunmora.main))

                dunmora.seconds_until_end()
                self.assertEqual((dunmora.process.returncode, dunmora.output), (0, ""))

    def test_over_the_review(self):
        self.assert_ends(self.start_searched)
        self.assert_book(BOOK)

    def test_over_the_match_fields(self):
        def reach():
            dunmora = self.start(self.book)
            dunmora.wait_until_active(dunmora.dialog)
            return dunmora

        self.assert_ends(reach)

    def test_over_a_message_over_the_match_fields(self):
        def reach():
            dunmora = self.start(self.book)
            dialog = dunmora.dialog
            for name in FIELDS:
                box = dialog.find("check box", name)
                if box.has("checked"):
                    dunmora.click_field(dialog, name)
                    dunmora.wait_for(lambda box=box: not box.has("checked"), "empty box")
            dunmora.press(dialog, "enter")
            dunmora.wait_until_active(dunmora.alert(NO_FIELD))
            return dunmora

        self.assert_ends(reach)

    def test_over_the_confirmation(self):
        def reach():
            dunmora = self.start_searched()
            dunmora.wait_until_active(self.delete_checked(dunmora))
            return dunmora

        self.assert_ends(reach)
        self.assert_book(BOOK)

    def test_over_a_message(self):
        def reach():
            dunmora = self.start_searched()
            dunmora.wait_until_active(self.delete_nobody(dunmora))
            return dunmora

        self.assert_ends(reach)

    def test_over_an_error(self):
        def reach():
            dunmora = self.start(self.books / "missing.vcf")
            dunmora.wait_until_active(dunmora.wait_for_window(is_alert, "alert"))
            return dunmora

        self.assert_ends(reach)

    def test_over_the_open_panel(self):
        def reach():
            dunmora = self.start_searched()
            dunmora.press(dunmora.main, "ctrl+o")
            dunmora.wait_until_active(dunmora.open_panel)
            return dunmora

        self.assert_ends(reach)

    def test_while_it_loads(self):
        self.book.write_bytes(self.BIG)

        def reach():
            dunmora = self.start(self.book)
            dunmora.wait_until_active(dunmora.main)
            self.assertTrue(dunmora.progress)
            return dunmora

        self.assert_ends(reach)
        self.assert_book(self.BIG)

    def test_while_it_finds(self):
        self.book.write_bytes(self.BIG)

        def reach():
            dunmora = self.start(self.book)
            dunmora.press(dunmora.dialog, "enter")
            dunmora.wait_until_active(dunmora.main)
            return dunmora

        self.assert_ends(reach)
        self.assert_book(self.BIG)

    def test_while_it_deletes(self):
        def reach():
            dunmora = self.start_searched(self.BIG)
            dunmora.press(self.delete_checked(dunmora), "enter")
            dunmora.wait_until_active(dunmora.main)
            return dunmora

        self.assert_ends(reach)
        self.assertIn(self.book.read_bytes(), (self.BIG, self.BIG_WITHOUT_COPIES))

    def test_by_a_click_on_its_close_button(self):
        dunmora = self.start(self.book)
        dunmora.wait_until_active(dunmora.dialog)
        window = dunmora.x_window(dunmora.main)
        x, y, width, _ = window.extents
        title_height = window.frame[2]

        dunmora.screen.click((x + width - title_height, y - title_height, title_height, title_height))

        dunmora.seconds_until_end()
        self.assertEqual(dunmora.process.returncode, 0)

    def test_by_its_menu(self):
        for menu, entry in (("File", "Close"), ("File", "Quit")):
            with self.subTest(entry):
                dunmora = self.start_searched()

                dunmora.choose(menu, entry)

                dunmora.seconds_until_end()
                self.assertEqual(dunmora.process.returncode, 0)

    def test_before_its_window_is_shown(self):
        dunmora = self.start(self.book)
        self.wait_until_signals_are_handled(dunmora.process.pid)

        dunmora.terminate()

        dunmora.seconds_until_end()
        self.assertEqual(dunmora.process.returncode, 0)
        self.assert_book(BOOK)

    def test_when_the_session_ends(self):
        dunmora = self.start_searched()

        dunmora.terminate()

        dunmora.seconds_until_end()
        self.assertEqual(dunmora.process.returncode, 0)


if __name__ == "__main__":
    windowcase.main()
