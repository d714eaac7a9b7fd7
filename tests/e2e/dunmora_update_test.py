"""Tests the real program's update check against a local service.

    dunmora_update_test.py PATH-OF-DUNMORA-FOR-UPDATE-TESTS [UNITTEST-OPTION]...
"""

import functools
import socket

import windowcase
from accessibility import Announcements
from dunmora import Dunmora, is_dialog, is_shortcuts, is_update, texts_of
from dunmoracase import ANNS, CARLS, DunmoraCase
from updateservice import Browser, Hangup, Reply, UnwantedReply, UpdateService
from waiting import DEADLINE_SECONDS, wait_for
from windowcase import WindowCase

REQUEST = "GET /update/?app=dunmoraapp HTTP/1.1"
DOWNLOAD = "http://127.0.0.1:9/get?version=99.5&really"
NEWS = "<b>Better</b> & faster."
NEWER = f"99.5\n{DOWNLOAD}\n{NEWS}".encode()
SAME = b"0.1\nhttp://127.0.0.1:9/get\nNothing new."
UNREADABLE = b"<html>\n<title>Not found</title>\n<p>Really.\n</html>\n"
LATEST = "You are running the latest version."
AT_EVERY_START = "Check at Every Start"
NO_SERVICE = ""
ANY_FAILURE = "Failed to check updates due to:'"


class UpdateCase(DunmoraCase):
    def setUp(self):
        super().setUp()
        self.service = self.enterContext(UpdateService())
        self.browser = self.enterContext(Browser(self.home))

    def start(self, *arguments):
        return super().start(self.service.host, *arguments)

    def start_with(self, *replies):
        """Starts the program and confirms the match fields; the first reply is for the check at launch."""
        self.service.replies = list(replies)
        return self.start_searched()

    @staticmethod
    def check_from_menu(dunmora):
        dunmora.choose("Help", "Check for Updates…")
        return dunmora.wait_for_window(is_update, "update window")

    @staticmethod
    def is_busy(window):
        return bool(window.find_all("progress bar", states=["showing"]))

    @staticmethod
    def offers_download(window):
        return bool(window.find_all("push button", "Download", ["showing"]))

    def wait_for_message(self, dunmora, window, fits):
        dunmora.wait_for(lambda: any(fits(text) for text in texts_of(window)), "message in the update window")

    def wait_for_outcome(self, dunmora, window, message):
        self.wait_for_message(dunmora, window, lambda text: text == message)
        dunmora.wait_for(lambda: not self.is_busy(window), "end of the busy layout")

    def box(self, window):
        return window.find("check box")


class SilentCheckTest(UpdateCase):
    def test_a_newer_version_is_offered_above_the_dialog_and_does_not_hold_it_up(self):
        self.service.replies = [Reply(NEWER)]
        dunmora = self.start(self.book)

        window = dunmora.wait_for_window(is_update, "update window")

        self.wait_for_outcome(dunmora, window, NEWS)
        self.assertTrue(self.offers_download(window))
        self.assertTrue(self.box(window).has("checked"))
        self.assertEqual(self.service.requests, [REQUEST])
        dialog = dunmora.dialog
        dunmora.click(window.find("push button", "Close"))
        dunmora.wait_for(lambda: not any(map(is_update, dunmora.windows)), "end of the update window")
        dunmora.press(dialog, "enter")
        dunmora.wait_until_idle()
        self.assertEqual(dunmora.names(), ANNS + CARLS)

    def test_the_offer_takes_no_key_from_the_filter(self):
        reply = Reply(NEWER, held=True)
        dunmora = self.start_with(reply)
        main = dunmora.main
        dunmora.press(main, "ctrl+f")
        field = dunmora.wait_for(lambda: main.find("text", states=["focused"]), "filter")
        dunmora.screen.count_activations()

        dunmora.screen.type("+1 5")
        reply.resume()
        dunmora.screen.type("55 0")
        window = dunmora.wait_for_window(is_update, "update window")
        self.wait_for_outcome(dunmora, window, NEWS)
        dunmora.screen.type("100")

        dunmora.wait_for(lambda: field.text == "+1 555 0100", "every letter in the filter")
        dunmora.screen.press("enter")
        dunmora.wait_for(lambda: not field.has("focused"), "keyboard focus in the table")
        dunmora.screen.press("ctrl+f")
        dunmora.screen.press("escape")
        dunmora.wait_for(lambda: not main.find_all("text"), "end of the filter")
        self.assertIn(window, dunmora.windows)
        self.assertEqual(dunmora.screen.count_activations(), 0)

    def test_a_screen_reader_hears_of_the_offer(self):
        heard = self.enterContext(Announcements(self.desktop.accessibility.bus))
        reply = Reply(NEWER, held=True)
        dunmora = self.start_with(reply)
        heard.clear()

        reply.resume()
        window = dunmora.wait_for_window(is_update, "update window")

        dunmora.wait_for(lambda: heard.has_notified("Software Update – Dunmora"), "notification")
        dunmora.wait_for(lambda: heard.has(NEWS), "announcement of the message")
        self.check_from_menu(dunmora)
        dunmora.wait_until_active(window)
        self.assertEqual(window.role, "dialog")

    def test_the_offer_does_not_get_the_keyboard_when_a_dialog_closes(self):
        self.service.replies = [Reply(NEWER)]
        dunmora = self.start(self.book)
        window = dunmora.wait_for_window(is_update, "update window")
        for _ in range(2):
            dunmora.press(dunmora.dialog, "enter")
            dunmora.wait_for(lambda: not any(map(is_dialog, dunmora.windows)), "end of the dialog")
            dunmora.button("Reload")

            dunmora.wait_until_active(dunmora.main)
            self.assertIn(window, dunmora.windows)
            # Asks for the match fields again.
            dunmora.screen.press("f5")

    def test_the_offer_does_not_get_the_keyboard_when_the_list_of_shortcuts_closes(self):
        reply = Reply(NEWER, held=True)
        dunmora = self.start_with(reply)
        dunmora.choose("Help", "Keyboard Shortcuts")
        shortcuts = dunmora.wait_for_window(is_shortcuts, "list of shortcuts")
        dunmora.wait_until_active(shortcuts)
        reply.resume()
        window = dunmora.wait_for_window(is_update, "update window")

        dunmora.press(shortcuts, "escape")

        dunmora.wait_until_active(dunmora.main)
        self.assertEqual(set(dunmora.windows), {dunmora.main, window})

    def test_the_menu_command_gives_the_keyboard_to_the_offer(self):
        reply = Reply(NEWER, held=True)
        dunmora = self.start_with(reply)
        reply.resume()
        window = dunmora.wait_for_window(is_update, "update window")
        dunmora.wait_until_active(dunmora.main)

        self.check_from_menu(dunmora)
        dunmora.press(window, "escape")

        dunmora.wait_for_main_alone()

    def test_nothing_is_shown_when_there_is_nothing_new(self):
        for reply in (Reply(SAME), Reply(UNREADABLE), Reply(b""), Reply(SAME, status=500), Hangup()):
            with self.subTest(reply.body):
                dunmora = self.start_with(reply)
                reply.wait_until_over()

                # The user continues to work, during which a window would appear.
                dunmora.press(dunmora.main, "F5")
                dunmora.search()

                self.assertEqual(dunmora.windows, [dunmora.main])
                self.assertEqual(self.service.requests, [REQUEST])
                self.service.requests.clear()
                dunmora.kill()

    def test_the_status_of_the_response_does_not_matter(self):
        self.service.replies = [Reply(NEWER, status=404)]

        dunmora = self.start(self.book)

        self.wait_for_outcome(dunmora, dunmora.wait_for_window(is_update, "update window"), NEWS)

    def test_redirects_are_followed(self):
        elsewhere = f"http://{self.service.host}/elsewhere"
        self.service.replies = [Reply(b"moved", 302, [("Location", elsewhere)]), Reply(NEWER)]
        dunmora = self.start(self.book)

        self.wait_for_outcome(dunmora, dunmora.wait_for_window(is_update, "update window"), NEWS)

        self.assertEqual(self.service.requests, [REQUEST, "GET /elsewhere HTTP/1.1"])

    def test_the_program_starts_and_works_while_the_service_is_silent(self):
        dunmora = self.start_with(Reply(NEWER, held=True))

        self.assertEqual(dunmora.names(), ANNS + CARLS)
        self.assertEqual(dunmora.windows, [dunmora.main])
        dunmora.press(dunmora.main, "ctrl+q")
        dunmora.seconds_until_end()

    def test_the_program_starts_and_works_during_a_proxy_lookup_that_hangs(self):
        silent = self.enterContext(socket.create_server(("127.0.0.1", 0)))
        silent.settimeout(DEADLINE_SECONDS)
        script = f"http://127.0.0.1:{silent.getsockname()[1]}/proxy.pac"
        kind = functools.partial(Dunmora, settings={"http_proxy": f"pac+{script}"})
        dunmora = WindowCase.start(self, "dunmora.invalid", self.book, kind=kind)
        lookup = self.enterContext(silent.accept()[0])
        self.assertIn(b"GET /proxy.pac", lookup.recv(4096))

        dunmora.search()

        self.assertEqual(dunmora.names(), ANNS + CARLS)
        dunmora.press(dunmora.main, "ctrl+q")
        dunmora.seconds_until_end()


class MenuCheckTest(UpdateCase):
    def check(self, reply):
        """Checks from the menu and lets the service reply once the window is busy; returns the program and window."""
        dunmora = self.start_with(Reply(SAME), reply)
        window = self.check_from_menu(dunmora)
        self.assertTrue(self.is_busy(window))
        self.assertFalse(self.offers_download(window))
        self.assertEqual(texts_of(window), [])
        reply.resume()
        return dunmora, window

    def test_a_newer_version_is_offered(self):
        dunmora, window = self.check(Reply(NEWER, held=True))

        self.wait_for_outcome(dunmora, window, NEWS)
        self.assertTrue(self.offers_download(window))
        self.assertEqual(texts_of(window), [NEWS, "Download opens 127.0.0.1"])
        self.assertEqual(self.service.requests, [REQUEST] * 2)

    def test_the_latest_version_is_reported(self):
        dunmora, window = self.check(Reply(SAME, held=True))

        self.wait_for_outcome(dunmora, window, LATEST)
        self.assertFalse(self.offers_download(window))

    def test_an_unreadable_reply_counts_as_the_latest_version(self):
        dunmora, window = self.check(Reply(UNREADABLE, held=True))

        self.wait_for_outcome(dunmora, window, LATEST)
        self.assertFalse(self.offers_download(window))

    def test_a_failure_is_reported_in_the_busy_window(self):
        dunmora = self.start_with(Reply(SAME), Hangup())

        window = self.check_from_menu(dunmora)

        self.wait_for_message(dunmora, window, lambda text: text.startswith(ANY_FAILURE) and text.endswith("'"))
        self.assertTrue(self.is_busy(window))
        self.assertFalse(self.offers_download(window))

    def test_a_refused_connection_is_reported(self):
        dunmora = self.start_with(Reply(SAME))
        self.service.server.socket.close()

        window = self.check_from_menu(dunmora)

        self.wait_for_message(dunmora, window, lambda text: text == ANY_FAILURE + "Connection refused'")

    def test_a_long_message_leaves_the_window_on_the_screen(self):
        dunmora, window = self.check(Reply(b"99.5\nx\n" + b"W" * 100000, held=True))

        self.wait_for_message(dunmora, window, lambda text: text.startswith("WWWW"))
        x, y, width, height = window.extents
        screen_width, screen_height, _ = dunmora.screen.image()
        self.assertLessEqual(x + width, screen_width)
        self.assertLessEqual(y + height, screen_height)

    def test_it_works_by_keyboard_alone(self):
        dunmora, window = self.check(Reply(NEWER, held=True))
        self.wait_for_outcome(dunmora, window, NEWS)

        dunmora.press(window, "alt+s")
        dunmora.wait_for(lambda: not self.box(window).has("checked"), "automatic check turned off")
        dunmora.press(window, "escape")

        dunmora.wait_for_main_alone()

    def test_it_reopens_where_the_user_left_it_but_on_the_screen(self):
        dunmora, window = self.check(Reply(SAME, held=True))
        self.wait_for_outcome(dunmora, window, LATEST)
        x, y, _, _ = dunmora.extents(window)

        def reopen_after_moving_to(*place):
            dunmora.x_window(window).move(*place)
            dunmora.wait_for(lambda: dunmora.extents(window)[:2] != (x, y) and dunmora.x_window(window), "new place")
            left = dunmora.extents(window)
            dunmora.press(window, "escape")
            dunmora.wait_for_main_alone()
            self.check_from_menu(dunmora)
            return left, dunmora.extents(window)

        left, reopened = reopen_after_moving_to(40, 500)
        self.assertEqual(reopened, left)

        x, y, width, height = reopened
        (left_x, *_), (x, y, width, height) = reopen_after_moving_to(1200, 900)
        screen_width, screen_height, _ = dunmora.screen.image()
        self.assertGreater(left_x + width, screen_width)
        self.assertLessEqual(x + width, screen_width)
        self.assertLessEqual(y + height, screen_height)

    def test_it_floats_above_the_main_window(self):
        dunmora, window = self.check(Reply(NEWER, held=True))
        self.wait_for_outcome(dunmora, window, NEWS)

        dunmora.select(0)

        self.assertEqual(dunmora.screen.windows[-1], dunmora.x_window(window))


class DownloadTest(UpdateCase):
    def test_the_address_is_opened_and_the_window_closed(self):
        dunmora = self.start_with(Reply(SAME), Reply(NEWER))
        window = self.check_from_menu(dunmora)
        self.wait_for_outcome(dunmora, window, NEWS)

        dunmora.click(window.find("push button", "Download"))

        wait_for(lambda: self.browser.opened == [DOWNLOAD], "address in the browser")
        dunmora.wait_for_main_alone()

    def test_the_address_of_a_service_whose_lines_end_in_cr_lf_is_opened(self):
        dunmora = self.start_with(Reply(SAME), Reply(NEWER.replace(b"\n", b"\r\n")))
        window = self.check_from_menu(dunmora)
        self.wait_for_outcome(dunmora, window, NEWS)

        dunmora.click(window.find("push button", "Download"))

        wait_for(lambda: self.browser.opened == [DOWNLOAD], "address in the browser")
        dunmora.wait_for_main_alone()

    def test_every_other_address_is_reported(self):
        for address in ("file:///etc/passwd", "/bin/true", "not an address", "javascript:alert(1)", ""):
            with self.subTest(address):
                dunmora = self.start_with(Reply(SAME), Reply(f"99.5\n{address}\n{NEWS}".encode()))
                window = self.check_from_menu(dunmora)
                self.wait_for_outcome(dunmora, window, NEWS)

                dunmora.click(window.find("push button", "Download"))

                alert = dunmora.alert(f"“{address}” cannot be opened: it is not the address of a web page.")
                self.assertFalse(any(map(is_update, dunmora.windows)))
                dunmora.click(alert.find("push button", "OK"))
                dunmora.wait_for_main_alone()
                # Addresses are opened in order, so this must be the first.
                dunmora.choose("Help", "Website")
                wait_for(lambda: self.browser.opened, "the maker's page in the browser")
                self.assertEqual(len(self.browser.opened), 1)
                self.browser.log.write_text("")
                dunmora.kill()


class AutomaticCheckTest(UpdateCase):
    def test_it_can_be_turned_off_and_on_for_the_next_start(self):
        dunmora = self.start_with(Reply(SAME))
        window = self.check_from_menu(dunmora)
        self.wait_for_outcome(dunmora, window, LATEST)
        self.assertTrue(self.box(window).has("checked"))
        dunmora.click(self.box(window))
        dunmora.wait_for(lambda: not self.box(window).has("checked"), "automatic check turned off")
        dunmora.kill()
        self.service.requests.clear()

        dunmora = self.start_with(Reply(NEWER))
        self.assertEqual(dunmora.windows, [dunmora.main])
        self.assertEqual(self.service.requests, [])

        window = self.check_from_menu(dunmora)
        self.wait_for_outcome(dunmora, window, NEWS)
        self.assertEqual(self.service.requests, [REQUEST])
        self.assertFalse(self.box(window).has("checked"))
        dunmora.click(self.box(window))
        dunmora.wait_for(lambda: self.box(window).has("checked"), "automatic check turned on")
        dunmora.kill()
        self.service.requests.clear()

        dunmora = self.start(self.book)
        dunmora.wait_for_window(is_update, "update window")
        self.assertEqual(self.service.requests, [REQUEST])

    def test_a_choice_that_cannot_be_stored_is_reported(self):
        folder = self.home / "config" / "dunmora"
        folder.parent.mkdir()
        folder.write_text("a file where the folder should be")
        dunmora = self.start_with(Reply(SAME))
        window = self.check_from_menu(dunmora)
        self.wait_for_outcome(dunmora, window, LATEST)

        dunmora.click(self.box(window))
        alert = dunmora.alert("The preferences were not saved and last until the program ends. "
                              f"“{folder}/dunmora.conf” cannot be changed: Not a directory.")
        # The update window stays usable.
        dunmora.click(self.box(window))
        dunmora.wait_for(lambda: self.box(window).has("checked"), "automatic check turned on again")
        dunmora.click(alert.find("push button", "OK"))
        dunmora.wait_for(lambda: alert not in dunmora.windows, "end of the alert")

        self.assertIn(window, dunmora.windows)

    def test_it_can_be_turned_off_and_on_from_the_menu_without_a_check(self):
        dunmora = self.start_with(Reply(SAME))
        self.assertTrue(self.checks_at_every_start(dunmora))

        dunmora.choose("Help", AT_EVERY_START)
        self.assertFalse(self.checks_at_every_start(dunmora))
        self.assertEqual(dunmora.windows, [dunmora.main])
        self.assertEqual(self.service.requests, [REQUEST])
        dunmora.kill()
        self.service.requests.clear()

        dunmora = self.start_with(Reply(NEWER))
        self.assertFalse(self.checks_at_every_start(dunmora))
        self.assertEqual(dunmora.windows, [dunmora.main])
        self.assertEqual(self.service.requests, [])
        dunmora.choose("Help", AT_EVERY_START)
        self.assertTrue(self.checks_at_every_start(dunmora))
        self.assertEqual(self.service.requests, [])
        dunmora.kill()

        dunmora = self.start(self.book)
        dunmora.wait_for_window(is_update, "update window")
        self.assertEqual(self.service.requests, [REQUEST])

    def test_the_menu_and_the_window_show_the_same(self):
        dunmora = self.start_with(Reply(SAME))
        window = self.check_from_menu(dunmora)
        self.wait_for_outcome(dunmora, window, LATEST)

        dunmora.select(0)
        dunmora.choose("Help", AT_EVERY_START)
        dunmora.wait_for(lambda: not self.box(window).has("checked"), "automatic check turned off")
        dunmora.click(self.box(window))
        dunmora.wait_for(lambda: self.box(window).has("checked"), "automatic check turned on")

        dunmora.select(0)
        self.assertTrue(self.checks_at_every_start(dunmora))

    @staticmethod
    def checks_at_every_start(dunmora):
        """Opens the menu, returns whether its entry is checked, and closes it."""
        dunmora.choose("Help")
        entry = dunmora.wait_for(lambda: dunmora.menu_entry(AT_EVERY_START), "entry of the automatic check")
        is_checked = entry.has("checked")
        dunmora.press(dunmora.main, "escape")
        dunmora.wait_for(lambda: not dunmora.menu_entry(AT_EVERY_START), "end of the menu")
        return is_checked


class NoServiceTest(UpdateCase):
    def test_nothing_is_sent_and_the_menu_offers_no_check(self):
        proxy = self.enterContext(socket.create_server(("127.0.0.1", 0)))
        kind = functools.partial(Dunmora, settings={"http_proxy": f"http://127.0.0.1:{proxy.getsockname()[1]}"})
        dunmora = WindowCase.start(self, NO_SERVICE, self.book, kind=kind)
        dunmora.search()

        dunmora.choose("Help")
        dunmora.wait_for(lambda: dunmora.menu_entry("About Dunmora"), "entry of the menu")

        self.assertIsNone(dunmora.menu_entry("Check for Updates…"))
        self.assertIsNone(dunmora.menu_entry(AT_EVERY_START))
        proxy.setblocking(False)
        self.assertRaises(BlockingIOError, proxy.accept)


class TransferTest(UpdateCase):
    def test_closing_the_window_cancels_the_transfer(self):
        reply = UnwantedReply(NEWER[20:], first=NEWER[:20])
        dunmora = self.start_with(Reply(SAME), reply, Reply(SAME))
        window = self.check_from_menu(dunmora)
        self.service.wait_for_requests(2)

        dunmora.press(window, "escape")
        dunmora.wait_for_main_alone()
        reply.wait_until_closed()
        reply.resume()
        reply.wait_until_over()

        window = self.check_from_menu(dunmora)
        self.wait_for_outcome(dunmora, window, LATEST)
        self.assertFalse(self.offers_download(window))

    def test_a_menu_check_replaces_a_running_launch_check(self):
        launch = Reply(NEWER[20:], first=NEWER[:20], held=True)
        menu = Reply(SAME, held=True)
        dunmora = self.start_with(launch, menu)
        window = self.check_from_menu(dunmora)
        self.service.wait_for_requests(2)

        launch.resume()
        launch.wait_until_over()
        self.assertTrue(self.is_busy(window))
        menu.resume()

        self.wait_for_outcome(dunmora, window, LATEST)
        self.assertFalse(self.offers_download(window))

    def test_a_launch_checks_reply_is_ignored_after_the_menu_checks(self):
        launch = Reply(NEWER, held=True)
        dunmora = self.start_with(launch, Reply(SAME))
        window = self.check_from_menu(dunmora)
        self.wait_for_outcome(dunmora, window, LATEST)

        launch.resume()
        launch.wait_until_over()
        dunmora.press(window, "alt+s")
        dunmora.wait_for(lambda: not self.box(window).has("checked"), "automatic check turned off")

        self.assertIn(LATEST, texts_of(window))
        self.assertFalse(self.offers_download(window))


if __name__ == "__main__":
    windowcase.main()
