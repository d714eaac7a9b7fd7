#!/usr/bin/python3
"""Runs the real programs against the real service for a desktop's address books.

desktop_books_test.py PATH-OF-DUNMORA PATH-OF-DUNMORA-CLI PATH-OF-OTHER-CLIENT [UNITTEST-OPTION]...
"""

import json
import os
import pathlib
import shutil
import subprocess
import sys
import time

import windowcase
from cards import card
from desktop import Desktop
from dunmora import CONFIRMATION, is_alert
from dunmoracase import ANN_1, ANN_2, ANNS, BEN, BOOK, CARL_1, CARL_2, CARLS, DunmoraCase
from module import MODULE, module_of

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "packaging"))
from shells import Bash  # noqa: E402

SERVICES = sorted(pathlib.Path("/usr/share/dbus-1/services").glob("org.gnome.evolution.dataserver.[AS]*.service"))
# The longest time until a user sees a message, whatever is broken.
SECONDS = 15


class GnomeDesktop(Desktop):
    """A desktop on which the service can be started."""

    services = SERVICES


class BooksCase(DunmoraCase):
    """The programs on such a desktop; each class has its own one, with only the books that its tests create."""

    kind_of_desktop = GnomeDesktop
    terminal_program = ""
    other_client = ""

    def environment(self, **settings):
        environment = self.desktop.environment_at(self.home)
        environment["DBUS_SESSION_BUS_ADDRESS"] = self.desktop.environment["DBUS_SESSION_BUS_ADDRESS"]
        return {**environment, **settings}

    def ask_other(self, *arguments):
        run = subprocess.run([self.other_client, *arguments], env=self.environment(), capture_output=True, timeout=60,
                             check=False)
        self.assertEqual(run.returncode, 0, run.stderr)
        return run.stdout

    def create_book(self, uid, name, *cards):
        self.ask_other("make", uid, name, *(card.decode() for card in cards))

    def cards(self, uid):
        """Returns a book's cards by uid, as another program sees them."""
        parts = self.ask_other("cards", uid).split(b"\0")[:-1]
        return dict(zip(parts[::2], parts[1::2]))

    def run_cli(self, *arguments, program=None, **settings):
        return subprocess.run([program or self.terminal_program, *map(str, arguments)],
                              env=self.environment(**settings), capture_output=True, text=True, timeout=60,
                              stdin=subprocess.DEVNULL, check=False)


class WindowTest(BooksCase):
    @staticmethod
    def books_in_title(dunmora):
        return dunmora.main.name.removesuffix(" – Dunmora").split(", ")

    def test_deletes_the_checked_people_and_leaves_all_others_as_they_were(self):
        self.create_book("friends", "Friends", ANN_1, BEN, ANN_2, CARL_1, CARL_2)
        before = self.cards("friends")
        self.assertEqual(len(before), 5)

        dunmora = self.start()
        dunmora.search()
        self.assertIn("Friends", self.books_in_title(dunmora))
        dunmora.total("4 duplicates of 5")
        self.assertEqual(dunmora.names(), ANNS + CARLS)
        self.assertEqual(dunmora.marks(), [False, True, False, True])
        dunmora.press(self.delete_checked(dunmora), "enter")
        dunmora.wait_until_idle()
        dunmora.total("2 duplicates of 3")

        after = {uid: card for uid, card in before.items() if uid not in (b"ann-2", b"carl-2")}
        self.assertEqual(self.cards("friends"), after)
        # Reading the book again gives the same result.
        dunmora.click(dunmora.button("Reload"))
        dunmora.search()
        dunmora.total("0 duplicates of 3")
        self.assertEqual(dunmora.output, "")

    def test_undoes_a_deletion_by_keys_alone(self):
        self.create_book("family", "Family", ANN_1, BEN, ANN_2, CARL_1, CARL_2)
        before = self.cards("family")

        dunmora = self.start("eds:family")
        dunmora.search()
        dunmora.press(dunmora.main, "ctrl+Delete")
        dunmora.press(dunmora.alert(*CONFIRMATION), "enter")
        dunmora.label("2 people deleted.")
        self.assertEqual(len(self.cards("family")), 3)
        dunmora.press(dunmora.wait_for_main_alone(), "alt+u")
        dunmora.search()

        dunmora.total("4 duplicates of 5")
        self.assertEqual(self.cards("family"), before)

    def test_opens_the_books_of_the_desktop_from_the_menu(self):
        self.create_book("club", "Club", card("zoe-1", "Zoe", "Ng"), card("zoe-2", "Zoe", "Ng"))
        self.create_book("choir", "Choir & Band", card("yan-1", "Yan", "Ng"), card("yan-2", "Yan", "Ng"))
        dunmora = self.start_searched()
        self.assertEqual(dunmora.main.name, "book.vcf – Dunmora")

        dunmora.choose("File", "Open Desktop Address Book", "All")
        dunmora.search()
        self.assertLessEqual({"Club", "Choir & Band"}, set(self.books_in_title(dunmora)))
        self.assertLessEqual({("Zoe", "Ng"), ("Yan", "Ng")}, set(dunmora.names()))

        dunmora.choose("File", "Open Desktop Address Book", "Choir & Band")
        dunmora.search()
        self.assertEqual(dunmora.main.name, "Choir & Band – Dunmora")
        self.assertEqual(dunmora.names(), [("Yan", "Ng")] * 2)


class EmptyDesktopTest(BooksCase):
    def test_reports_an_empty_book_and_offers_another(self):
        dunmora = self.start()
        dunmora.search()

        dunmora.label("The address book “Personal” is empty")
        dunmora.click(dunmora.button("Open Address Book…"))
        dunmora.choose_book(self.book)
        dunmora.search()
        dunmora.total("4 duplicates of 5")


class TerminalTest(BooksCase):
    def test_lists_the_books_and_deletes_from_them_with_a_backup(self):
        self.create_book("colleagues", "Colleagues", ANN_1, BEN, ANN_2, card("odd", "Odd", "Ek", "NOTE:an odd \\x escape"))
        before = self.cards("colleagues")

        books = self.run_cli("books", "--format", "json")
        self.assertEqual(books.stderr, "")
        self.assertIn({"uid": "colleagues", "name": "Colleagues", "kind": "local", "writable": True, "people": 4,
                       "failure": None}, json.loads(books.stdout)["books"])
        self.assertRegex(self.run_cli("books").stdout, r"(?m)^colleagues +Colleagues +local +yes +4$")
        names = self.run_cli("books", "--names", "--format", "json")
        self.assertIn({"uid": "colleagues", "name": "Colleagues", "kind": "local", "writable": None, "people": None,
                       "failure": None}, json.loads(names.stdout)["books"])

        listing = self.run_cli("list", "eds:", "--format", "json")
        self.assertEqual(listing.stderr, "dunmora-cli: warning: 1 copy holds something unique.\n")
        found = json.loads(listing.stdout)
        self.assertEqual([row["uid"] for group in found["groups"] for row in group["rows"]],
                         ["colleagues/ann-1", "colleagues/ann-2"])

        backup = self.home / "backup.vcf"
        deletion = self.run_cli("delete", "eds:colleagues", "--yes", "--backup", backup)
        command = f"dunmora-cli restore {backup} eds:colleagues"
        self.assertEqual((deletion.returncode, deletion.stderr),
                         (0, "dunmora-cli: warning: 1 copy holds something unique, marked with * in the table.\n"
                             f"dunmora-cli: To put these people back: {command}\n"))
        self.assertIn("1 person deleted.", deletion.stdout)
        self.assertEqual(backup.read_bytes(), before[b"ann-2"] + b"\r\n")
        self.assertEqual(self.cards("colleagues"), {uid: text for uid, text in before.items() if uid != b"ann-2"})

        refused = self.run_cli("restore", backup, "eds:", "--yes")
        self.assertEqual((refused.returncode, refused.stdout), (1, ""))
        self.assertIn("Choose one of them", refused.stderr)
        restored = self.run_cli("restore", backup, "eds:colleagues", "--yes")
        self.assertEqual((restored.returncode, restored.stdout, restored.stderr), (0, "1 person restored.\n", ""))
        self.assertEqual(self.cards("colleagues"), before)
        again = self.run_cli("restore", backup, "eds:colleagues", "--yes")
        self.assertEqual((again.returncode, again.stdout),
                         (0, "0 people restored.\n1 person is there already.\n"))

    def test_offers_the_books_in_a_shell(self):
        self.create_book("cousins", "Cousins", card("zoe", "Zoe", "Ng"))
        programs = pathlib.Path(self.terminal_program).parent
        shell = Bash({**self.environment(), "PATH": f"{programs}:{os.environ['PATH']}"}, self.home)
        self.addCleanup(shell.close)

        self.assertEqual(shell.completed("dunmora-cli list eds:cous"), "eds:cousins")

    def test_loads_the_module_only_for_these_books(self):
        def loaded(*arguments):
            run = self.run_cli(*arguments, LD_DEBUG="files")
            self.assertEqual(run.returncode, 0, run.stderr[-2000:])
            return [name for name in (MODULE, "libebook", "libglib", "libgio") if name in run.stderr]

        self.book.write_bytes(BOOK)
        self.assertEqual(loaded("list", self.book), [])
        self.assertEqual(loaded("delete", self.book, "--dry-run"), [])
        self.assertEqual(loaded("list", "eds:"), [MODULE, "libebook", "libglib", "libgio"])

    def copy_of_the_program(self):
        """Copies the terminal program without the module; returns its path and where its module would be."""
        prefix = self.home / "a prefix"
        program = prefix / "bin/dunmora-cli"
        module = prefix / module_of(self.terminal_program).relative_to(pathlib.Path(self.terminal_program).parents[1])
        for file in (program, module):
            file.parent.mkdir(parents=True)
        shutil.copy(self.terminal_program, program)
        return program, module

    def test_works_on_files_without_the_module(self):
        program, module = self.copy_of_the_program()
        # None of these is the folder for it.
        for folder in (program.parent, module.parent.parent, self.home):
            shutil.copy(module_of(self.terminal_program), folder)

        self.assertEqual(self.run_cli("list", self.book, program=program).returncode, 0)
        for arguments in (["list", "eds:"], ["books"]):
            run = self.run_cli(*arguments, program=program, LD_LIBRARY_PATH=str(program.parent))
            self.assertEqual(run.returncode, 1)
            self.assertEqual(run.stderr, "dunmora-cli: The desktop's address books cannot be opened: Dunmora's module "
                                         f"for them, {MODULE}, is not installed.\n")

    def test_loads_no_module_that_other_users_can_change(self):
        program, module = self.copy_of_the_program()
        folder = module.parent
        shutil.copy(module_of(self.terminal_program), module)
        self.assertEqual(self.run_cli("books", program=program).returncode, 0)

        folder.chmod(0o777)

        for arguments in (["list", "eds:"], ["books"]):
            run = self.run_cli(*arguments, program=program)
            self.assertEqual((run.returncode, run.stdout), (1, ""))
            self.assertEqual(run.stderr, "dunmora-cli: The desktop's address books cannot be opened: Dunmora's module "
                                         f"for them is not loaded, because “{folder}” can be changed by other users.\n")


class WithoutServiceTest(BooksCase):
    """On a desktop without the service."""

    kind_of_desktop = Desktop

    def assert_reports(self, reason, **settings):
        started = time.monotonic()
        run = self.run_cli("list", "eds:", **settings)
        self.assertLess(time.monotonic() - started, SECONDS)
        self.assertEqual(run.returncode, 1)
        self.assertEqual(run.stderr, f"dunmora-cli: The desktop's address books cannot be reached: {reason}\n")

    def test_reports_that_the_service_is_not_installed(self):
        self.assert_reports("Evolution Data Server is not installed.")

    def test_reports_that_there_is_no_bus(self):
        nowhere = str(self.home / "nowhere")
        self.assert_reports("There is no session bus (D-Bus).", DBUS_SESSION_BUS_ADDRESS="", XDG_RUNTIME_DIR=nowhere)

    def test_reports_that_nothing_listens_at_the_address_of_the_bus(self):
        self.assert_reports("There is no session bus (D-Bus). Could not connect: No such file or directory.",
                         DBUS_SESSION_BUS_ADDRESS=f"unix:path={self.home / 'nowhere'}")

    def test_offers_to_open_a_book_without_the_service(self):
        self.desktop.screen.count_new_windows()
        dunmora = self.start()

        dunmora.wait_for_main_alone()
        dunmora.label("No address book is open")
        dunmora.label("This desktop has no address books that Dunmora can read: Evolution Data Server is not available."
                      "\nOpen a vCard file or a folder of vCard files, or drop one on this window.")
        self.assertEqual(self.desktop.screen.count_new_windows(), 1)
        dunmora.click(dunmora.button("Open Address Book…"))
        dunmora.choose_book(self.book)
        dunmora.search()
        dunmora.total("4 duplicates of 5")

    def test_offers_to_open_a_book_without_a_bus(self):
        # Assistive technology needs the bus too, so only the windows themselves can be seen.
        nowhere = str(self.home / "nowhere")
        dunmora = self.start(settings={"DBUS_SESSION_BUS_ADDRESS": "", "XDG_RUNTIME_DIR": nowhere})

        def windows():
            return [window for window in dunmora.screen.windows if window.process_id == dunmora.process.pid]

        def press_in(window, key):
            # A new window is on the screen before it has the keyboard.
            dunmora.wait_for(lambda: dunmora.screen.focused_window == window, f"focus for {key}")
            dunmora.screen.press(key)

        dunmora.wait_for(windows, "main window")
        main, = windows()
        # Its command works at once, so no alert is in front of it.
        press_in(main, "ctrl+o")
        dunmora.wait_for(lambda: len(windows()) == 2, "open panel")
        panel, = set(windows()) - {main}
        press_in(panel, "escape")
        dunmora.wait_for(lambda: windows() == [main], "end of the open panel")

    def test_reports_it_in_the_window_if_the_book_was_named(self):
        dunmora = self.start("eds:")
        dunmora.press(dunmora.alert("The desktop's address books cannot be reached: Evolution Data Server is not "
                                    "installed."), "enter")
        dunmora.label("The address book could not be read")


class BrokenServiceDesktop(Desktop):
    """A desktop on which the service is installed, and ends as soon as it is started."""

    def start_bus(self):
        service = self.folder / "org.gnome.evolution.dataserver.Sources5.service"
        service.write_text(f"[D-BUS Service]\nName={service.stem}\nExec=/bin/false\n")
        self.services = [service]
        return super().start_bus()


class BrokenServiceTest(BooksCase):
    kind_of_desktop = BrokenServiceDesktop

    def test_shows_on_the_page_why_the_books_cannot_be_read(self):
        dunmora = self.start()

        dunmora.label("The address book could not be read")
        dunmora.label(r"The desktop's address books cannot be reached: .+\n"
                      "Choose Reload to try again, or open another one.")
        dunmora.wait_for_main_alone()
        # The user asks for the next reading.
        dunmora.click(dunmora.button("Reload"))
        alert = dunmora.wait_for_window(is_alert, "alert")
        self.assertTrue(alert.find("graphic", "Error"))


if __name__ == "__main__":
    BooksCase.terminal_program, BooksCase.other_client = (os.path.abspath(sys.argv.pop(2)) for _ in range(2))
    windowcase.prepare()
    if not SERVICES:
        print("SKIPPED: Evolution Data Server is not installed", file=sys.stderr)
        sys.exit(windowcase.EXIT_SKIPPED)
    windowcase.main()
