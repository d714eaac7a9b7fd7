#!/usr/bin/python3
"""Opens and saves files with the desktop's own dialog: file_dialog_test.py PATH-OF-DUNMORA [UNITTEST-OPTION]..."""

import os
import subprocess
import urllib.parse

from gi.repository import GLib
import Xlib.X

import windowcase
from dunmoracase import ANN_2, ANNS, CARL_2, CARLS, DORA_1, DORA_2, DunmoraCase
from portal import CANCELLED, CHOSEN, OTHER, FilePortal

HELP = ["The desktop's file dialog is open.", "If you cannot find it, use Dunmora's own dialog instead."]
NONSENSE = ["The desktop's file dialog did not return a single file or folder on this computer."]


def uri(path):
    return "file://" + urllib.parse.quote_from_bytes(os.fsencode(path))


def folder_of(call):
    return os.fsdecode(bytes(call.options["current_folder"]))


class FileDialogCase(DunmoraCase):
    def setUp(self):
        super().setUp()
        self.other = self.books / "other.vcf"
        self.other.write_bytes(DORA_1 + DORA_2)

    def portal(self, *arguments):
        return self.enterContext(FilePortal(self.desktop.environment["DBUS_SESSION_BUS_ADDRESS"], *arguments))

    def call(self, dunmora, portal, keys="ctrl+o"):
        """Asks for the dialog and returns the portal's call."""
        count = len(portal.calls)
        dunmora.press(dunmora.main, keys)
        return self.next_call(dunmora, portal, count)

    @staticmethod
    def next_call(dunmora, portal, count):
        dunmora.wait_for(lambda: len(portal.calls) > count, "call of the desktop's dialog")
        return portal.calls[-1]

    def assert_still_open(self, dunmora):
        """The book is still open, and the program can be used."""
        dunmora.wait_for_main_alone()
        self.assertEqual(dunmora.names(), ANNS + CARLS)
        dunmora.select(0)
        dunmora.press(dunmora.main, "space")
        dunmora.wait_for_marks(True, True, False, True)

    def choose_in_own_dialog(self, dunmora):
        dunmora.choose_book(self.other)
        dunmora.search()
        dunmora.total("2 duplicates of 2")


class OpenTest(FileDialogCase):
    def test_opens_the_file_chosen_in_the_desktops_dialog(self):
        portal = self.portal()
        dunmora = self.start_searched()
        main = dunmora.x_window(dunmora.main)

        call = self.call(dunmora, portal)
        self.assertEqual(dunmora.windows, [dunmora.main])
        portal.respond(CHOSEN, uri(self.other))
        dunmora.search()

        dunmora.total("2 duplicates of 2")
        self.assertEqual((call.method, call.parent, call.title),
                         ("OpenFile", f"x11:{main.window.id:x}", "Open Address Book"))
        self.assertEqual(folder_of(call), f"{self.books}\0")
        self.assertTrue(call.options["modal"])
        self.assertNotIn("directory", call.options)
        self.assertEqual(call.options["filters"],
                         [("vCard files", [(0, "*.vcf"), (0, "*.vcard"), (0, "*.VCF"), (0, "*.VCARD")]),
                          ("All files", [(0, "*")])])
        self.assertEqual(portal.closed, [])

    def test_asks_for_a_file_at_the_start(self):
        portal = self.portal()

        dunmora = self.start("--choose")
        self.next_call(dunmora, portal, 0)
        portal.respond(CHOSEN, uri(self.other))
        dunmora.search()

        dunmora.total("2 duplicates of 2")
        self.assertEqual(len(portal.calls), 1)

    def test_asks_for_no_file_beside_the_one_that_is_given(self):
        run = subprocess.run([self.executable, "--choose", self.book], capture_output=True, text=True, check=False)

        self.assertEqual((run.returncode, run.stdout), (2, ""))
        self.assertIn("ADDRESS-BOOK excludes --choose", run.stderr)

    def test_opens_a_folder_chosen_in_the_desktops_dialog(self):
        portal = self.portal()
        dunmora = self.start_searched()

        call = self.call(dunmora, portal, "ctrl+shift+d")
        portal.respond(CHOSEN, uri(self.books))
        dunmora.search()

        dunmora.total("6 duplicates of 7")
        self.assertEqual((call.method, call.title), ("OpenFile", "Open Folder of vCard Files"))
        self.assertTrue(call.options["directory"])
        # The next dialog starts beside the folder.
        self.assertEqual(folder_of(self.call(dunmora, portal)), f"{self.home}\0")

    def test_opens_a_file_whose_name_is_no_text(self):
        other = os.path.join(os.fsencode(self.books), b"M\xfcller #1 100%.vcf")
        os.rename(self.other, other)
        portal = self.portal()
        dunmora = self.start_searched()

        self.call(dunmora, portal)
        portal.respond(CHOSEN, uri(other))
        dunmora.search()

        dunmora.total("2 duplicates of 2")

    def test_keeps_its_book_when_the_user_cancels(self):
        portal = self.portal()
        dunmora = self.start_searched()

        self.call(dunmora, portal)
        portal.respond(CANCELLED)

        self.assert_still_open(dunmora)

    def test_keeps_its_book_when_the_user_closes_the_dialogs_window(self):
        portal = self.portal()
        dunmora = self.start_searched()

        self.call(dunmora, portal)
        dialog = dunmora.screen.open_window("Dialog of the desktop")
        dunmora.wait_for(lambda: not dunmora.main.has("active"), "activation of the dialog")
        portal.respond(OTHER)
        dialog.window.destroy()

        self.assert_still_open(dunmora)

    def test_refuses_what_is_not_one_local_file(self):
        portal = self.portal()
        dunmora = self.start_searched()

        for response in ((0, {}), (0, {"uris": GLib.Variant("as", [])}), (0, {"uris": GLib.Variant("u", 7)}),
                         (0, {"uris": GLib.Variant("as", [uri(self.other), uri(self.book)])}),
                         *((0, {"uris": GLib.Variant("as", [text])})
                           for text in ("sftp://server/book.vcf", "file://server/book.vcf", str(self.other), "file:",
                                        "", uri(self.other) + "%00"))):
            with self.subTest(response=response):
                self.call(dunmora, portal)
                portal.send(GLib.Variant("(ua{sv})", response))
                dunmora.press(dunmora.alert(*NONSENSE), "enter")
                dunmora.wait_for_main_alone()
        self.assert_still_open(dunmora)


class PortalFailureTest(FileDialogCase):
    """The program's own dialog appears when the desktop's fails."""

    def test_when_the_portal_refuses(self):
        self.portal(FilePortal.REFUSES)
        dunmora = self.start_searched()

        dunmora.press(dunmora.main, "ctrl+o")

        self.choose_in_own_dialog(dunmora)

    def test_when_the_dialog_ends_before_it_is_shown(self):
        portal = self.portal()
        dunmora = self.start_searched()

        self.call(dunmora, portal)
        portal.respond(OTHER)

        self.choose_in_own_dialog(dunmora)

    def test_when_the_response_makes_no_sense(self):
        portal = self.portal()
        dunmora = self.start_searched()

        self.call(dunmora, portal)
        portal.send(GLib.Variant("(s)", ("done",)))

        self.choose_in_own_dialog(dunmora)

    def test_when_the_portal_ends(self):
        portal = self.portal()
        dunmora = self.start_searched()

        self.call(dunmora, portal)
        portal.leave()

        self.choose_in_own_dialog(dunmora)

    def test_when_the_portal_never_replies(self):
        portal = self.portal(FilePortal.HANGS)
        dunmora = self.start_searched()

        call = self.call(dunmora, portal)

        self.choose_in_own_dialog(dunmora)
        # It must not show its dialog later.
        self.assertEqual(portal.closed, [call.handle])

    def test_when_the_user_cannot_find_the_dialog(self):
        portal = self.portal()
        dunmora = self.start_searched()

        call = self.call(dunmora, portal)
        dunmora.click(dunmora.table)
        dunmora.press(dunmora.alert(*HELP), "enter")

        self.choose_in_own_dialog(dunmora)
        self.assertEqual(portal.closed, [call.handle])

    def test_when_the_user_gives_the_dialog_up(self):
        portal = self.portal()
        dunmora = self.start_searched()

        call = self.call(dunmora, portal)
        dunmora.press(dunmora.main, "escape")
        dunmora.press(dunmora.alert(*HELP), "escape")

        dunmora.wait_for(lambda: portal.closed == [call.handle], "end of the desktop's dialog")
        self.assert_still_open(dunmora)


class OpenDialogTest(FileDialogCase):
    """While the desktop's dialog is open."""

    def test_the_main_window_changes_nothing(self):
        portal = self.portal()
        dunmora = self.start_searched()

        self.call(dunmora, portal)
        dunmora.press(dunmora.main, "ctrl+o", "space", "ctrl+r")
        self.assertEqual(dunmora.marks(), [False, True, False, True])
        portal.respond(CANCELLED)

        self.assert_still_open(dunmora)
        self.assertEqual(len(portal.calls), 1)

    def test_the_main_window_is_drawn(self):
        portal = self.portal()
        dunmora = self.start_searched()
        self.call(dunmora, portal)
        screen, extents = dunmora.screen, dunmora.main.extents
        before = screen.image(extents)

        cover = screen.root.create_window(*extents, 0, Xlib.X.CopyFromParent, override_redirect=True,
                                          background_pixel=0xFF0000)
        cover.map()
        dunmora.wait_for(lambda: screen.image(extents) != before, "covered window")
        cover.destroy()

        dunmora.wait_for(lambda: screen.image(extents) == before, "drawn window")

    def test_the_program_can_be_quit(self):
        portal = self.portal()
        for end in (lambda dunmora: dunmora.press(dunmora.main, "ctrl+q"),
                    lambda dunmora: dunmora.press(dunmora.main, "ctrl+w"),
                    lambda dunmora: dunmora.x_window(dunmora.main).close(),
                    lambda dunmora: dunmora.terminate()):
            dunmora = self.start_searched()
            self.call(dunmora, portal)

            end(dunmora)

            dunmora.seconds_until_end()
            self.assertEqual(dunmora.process.returncode, 0)


class SaveTest(FileDialogCase):
    def start_deleted(self):
        dunmora = self.start_searched()
        dunmora.press(self.delete_checked(dunmora), "enter")
        dunmora.label("2 people deleted.")
        dunmora.wait_for_main_alone()
        return dunmora

    def test_saves_a_new_file_beside_the_open_book(self):
        portal = self.portal()
        dunmora = self.start_deleted()

        call = self.call(dunmora, portal, "alt+s")
        portal.respond(CHOSEN, uri(self.home / "removed"))

        dunmora.wait_for((self.home / "removed.vcf").exists, "saved file")
        dunmora.wait_for_main_alone()
        self.assertEqual((self.home / "removed.vcf").read_bytes(), ANN_2 + CARL_2)
        self.assertEqual((call.method, call.title), ("SaveFile", "Save Removed People"))
        self.assertEqual((call.options["current_name"], folder_of(call)), ("Removed People.vcf", f"{self.books}\0"))

    def test_asks_again_instead_of_replacing_a_file(self):
        portal = self.portal()
        dunmora = self.start_deleted()

        self.call(dunmora, portal, "alt+s")
        portal.respond(CHOSEN, uri(self.other))
        text = f"“{self.other}” already exists. Choose another name or folder."
        dunmora.press(dunmora.alert(text), "enter")
        self.next_call(dunmora, portal, 1)
        portal.respond(CANCELLED)

        dunmora.wait_for_main_alone()
        self.assertEqual(self.other.read_bytes(), DORA_1 + DORA_2)

    def test_saves_with_the_programs_own_dialog_when_the_portal_ends(self):
        portal = self.portal()
        dunmora = self.start_deleted()

        self.call(dunmora, portal, "alt+s")
        portal.leave()
        panel = dunmora.open_panel
        dunmora.press(panel, "ctrl+a")
        dunmora.type(panel, str(self.home / "removed"))
        dunmora.press(panel, "enter")

        dunmora.wait_for((self.home / "removed.vcf").exists, "saved file")


if __name__ == "__main__":
    windowcase.main()
