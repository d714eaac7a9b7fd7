#!/usr/bin/env python3
"""Runs the real terminal program on real files: dunmora_cli_test.py PATH-OF-DUNMORA-CLI

Every test has its own folder, which is also the program's home, so that the user's files are never touched.
"""

import csv
import errno
import fcntl
import io
import json
import os
import pathlib
import pty
import select
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import termios
import time
import unicodedata
import unittest

from cards import card

PROGRAM = ""
ROOT = pathlib.Path(__file__).parents[2]
SAMPLE = ROOT / "samples" / "address-book.vcf"
SECONDS = 20
QUESTION = (
    "book.vcf”.\r\n"
    "Confirm to delete\r\n"
    "The checked contacts will be deleted from Address Book. \r\n"
    "Do you really want to continue?\r\n"
)
NO_OUTPUT = "dunmora-cli: The output could not be written.\n"

ANN_1 = card("ann-1", "Ann", "Lee", "TEL;TYPE=CELL:+1 555 0100")
BEN = card("ben", "Ben", "Li", "NOTE:kept\\, with a fold", " ed line")
ANN_2 = card("ann-2", "Ann", "Lee", "X-ODD:whatever")
# The line of the second copy that the first one has not.
UNIQUE = "dunmora-cli: warning: 1 copy holds something unique.\n"
UNIQUE_IN_TABLE = "dunmora-cli: warning: 1 copy holds something unique, marked with * in the table.\n"
BOOK = ANN_1 + b"text between cards\r\n" + BEN + ANN_2
BOOK_WITHOUT_ANN_2 = BOOK[: -len(ANN_2)]
DELETED = {
    "schema": 1, "deleted": ["ann-2"], "contacts": 2, "duplicates": 1, "remarks": [],
    "warnings": {"loses_every_copy": 0, "shares_only_empty_fields": 0, "only_here": 1},
    "rows": [{"uid": "ann-2", "warnings": ["only_here"],
              "only_here": [{"property": "X-ODD", "value": "whatever"}]}],
}


def own_terminal():
    """Makes standard input the controlling terminal, so that Ctrl+C sends a signal."""
    fcntl.ioctl(0, termios.TIOCSCTTY, 0)


def width(text):
    """The columns that the text takes on a terminal."""
    return sum(0 if unicodedata.combining(c) else 2 if unicodedata.east_asian_width(c) in "WF" else 1 for c in text)


class EndToEnd(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.book = self.folder / "book.vcf"
        self.book.write_bytes(BOOK)
        self.backup = self.folder / "backup.vcf"
        self.environment = {
            "HOME": folder.name,
            "XDG_CONFIG_HOME": str(self.folder / "config"),
            "PATH": os.environ["PATH"],
            "TERM": "xterm",
            "TZ": "UTC0",
            "LC_ALL": "C.UTF-8",
        }
        # The options of a program built with sanitizers.
        self.environment.update({name: value for name, value in os.environ.items() if name.endswith("SAN_OPTIONS")})

    def run_program(self, *arguments, command=None, stdout=subprocess.PIPE):
        """Runs the program in pipes; returns its exit code, output and errors, with their line ends unchanged."""
        result = subprocess.run([*(command or []), PROGRAM, *map(str, arguments)], stdin=subprocess.DEVNULL,
                                stdout=stdout, stderr=subprocess.PIPE, env=self.environment, timeout=SECONDS,
                                check=False)
        return result.returncode, (result.stdout or b"").decode(), result.stderr.decode()

    def listed(self, book, *arguments):
        code, out, _ = self.run_program("list", book, "--format", "json", *arguments)
        self.assertEqual(code, 0)
        return json.loads(out)

    def run_on_terminal(self, *arguments, answer=None, stdout=None, command=None, columns=0):
        """Runs the program, or a command, on a new terminal and types the answer to its question. Returns the exit
        code and everything that the terminal showed. A terminal of 0 columns does not know how many it has."""
        master, slave = pty.openpty()
        fcntl.ioctl(slave, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
        with subprocess.Popen(command or [PROGRAM, *map(str, arguments)], stdin=slave, stdout=stdout or slave, stderr=slave,
                              env=self.environment, start_new_session=True, preexec_fn=own_terminal) as process:
            os.close(slave)
            try:
                shown = self.read_terminal(master, answer)
                return process.wait(SECONDS), shown.decode()
            finally:
                process.kill()
                os.close(master)

    def read_terminal(self, master, answer):
        shown = b""
        deadline = time.monotonic() + SECONDS
        while True:
            ready, _, _ = select.select([master], [], [], max(0, deadline - time.monotonic()))
            self.assertTrue(ready, f"the program hangs: {shown!r}")
            try:
                piece = os.read(master, 65536)
            except OSError as error:
                # Linux reports EIO once no process has the terminal open.
                if error.errno != errno.EIO:
                    raise
                piece = b""
            if not piece:
                return shown
            shown += piece
            if answer is not None and shown.endswith(b"[y/N] "):
                os.write(master, answer)
                answer = None

    def closed_pipe(self):
        """The end for writing of a pipe that nobody reads."""
        reader, writer = os.pipe()
        os.close(reader)
        self.addCleanup(os.close, writer)
        return writer

    def assert_untouched(self):
        self.assertEqual(self.book.read_bytes(), BOOK)
        self.assertEqual({path.name for path in self.folder.iterdir()} - {"config"}, {"book.vcf"})


class LongResultTest(EndToEnd):
    """A result of several hundred thousand bytes, which is printed in pieces."""

    PAIRS = range(2000)
    # Less than the result in any format, but more than its first piece.
    LIMIT = 100 * 1024
    AFTER = b"".join(card(f"{i}-a", "Zoë", f"Number{i}", "TEL;TYPE=CELL:1") for i in PAIRS)
    BEFORE = AFTER + b"".join(card(f"{i}-b", "Zoë", f"Number{i}") for i in PAIRS)
    UIDS = [f"{i}-{copy}" for i in PAIRS for copy in "ab"]
    # POSIX counts in blocks of 512 bytes.
    LIMITED = ["sh", "-c", f'ulimit -f {LIMIT // 512}; exec "$@"', "sh"]

    def setUp(self):
        super().setUp()
        self.book.write_bytes(self.BEFORE)

    def uids_in(self, table):
        return [line.split()[-1] for line in table.splitlines() if line.startswith("[")]

    def test_is_printed_whole_in_every_format(self):
        table, text = (self.run_program("list", self.book, "--quiet", *form)[1]
                       for form in ((), ("--format", "csv")))
        rows = [row for group in self.listed(self.book)["groups"] for row in group["rows"]]

        self.assertEqual(self.uids_in(table), self.UIDS)
        self.assertEqual([row["uid"] for row in csv.DictReader(io.StringIO(text, newline=""))], self.UIDS)
        self.assertEqual([row["uid"] for row in rows], self.UIDS)
        self.assertGreater(min(len(table), len(text)), self.LIMIT)

    def test_is_in_the_charset_of_the_locale_to_its_end(self):
        whole = self.run_program("list", self.book, "--quiet")[1]
        self.environment["LC_ALL"] = "C"

        self.assertEqual(self.run_program("list", self.book, "--quiet")[1], whole.replace("ë", "?"))

    def test_that_does_not_fit_on_the_disk_is_reported(self):
        for form in ("table", "json", "csv"):
            with open(self.folder / "result", "wb") as result:
                self.assertEqual(self.run_program("list", self.book, "--format", form, command=self.LIMITED,
                                                  stdout=result), (1, "", NO_OUTPUT))

    def test_of_a_deletion_that_does_not_fit_on_the_disk_changes_nothing(self):
        with open(self.folder / "result", "wb") as result:
            self.assertEqual(self.run_program("delete", self.book, "--yes", command=self.LIMITED, stdout=result),
                             (1, "", NO_OUTPUT))

        self.assertEqual(self.book.read_bytes(), self.BEFORE)

    def test_of_a_deletion_whose_reader_has_seen_enough_deletes_wholly(self):
        with subprocess.Popen([PROGRAM, "delete", self.book, "--yes", "--quiet"], stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=self.environment) as process:
            self.assertTrue(process.stdout.read(1))
            process.stdout.close()
            errors = process.stderr.read()
            code = process.wait(SECONDS)

        self.assertEqual((code, errors), (0, b""))
        self.assertEqual(self.book.read_bytes(), self.AFTER)


class ListTest(EndToEnd):
    def test_prints_the_review_as_json(self):
        row = {"uid": "ann-1", "fname": "Ann", "lname": "Lee", "nickname": "", "home": "", "work": "",
               "mobile": "+1 555 0100", "modified": "2024-05-01T10:00:00Z", "check": False,
               "source": str(self.book), "warnings": [], "only_here": []}
        copy = {**row, "uid": "ann-2", "mobile": "", "check": True, "warnings": ["only_here"],
                "only_here": [{"property": "X-ODD", "value": "whatever"}]}

        self.assertEqual(self.listed(self.book), {
            "schema": 1, "addressBook": str(self.book), "match": ["firstname", "lastname"], "contacts": 3,
            "duplicates": 2, "skipped": 0, "remarks": [],
            "warnings": {"loses_every_copy": 0, "shares_only_empty_fields": 0, "only_here": 1},
            "groups": [{"key": "Ann-Lee-", "rows": [row, copy]}]})
        self.assert_untouched()

    def test_prints_csv_that_other_programs_can_read(self):
        code, out, err = self.run_program("list", self.book, "--format", "csv")

        rows = list(csv.DictReader(io.StringIO(out, newline="")))
        self.assertEqual((code, err), (0, UNIQUE))
        self.assertEqual([(row["group"], row["check"], row["uid"], row["modified"], row["source"])
                          for row in rows],
                         [("1", "false", "ann-1", "2024-05-01T10:00:00Z", str(self.book)),
                          ("1", "true", "ann-2", "2024-05-01T10:00:00Z", str(self.book))])

    def test_shows_a_table_without_colour_or_progress_in_a_pipe(self):
        code, out, err = self.run_program("list", self.book)

        self.assertEqual((code, err), (0, UNIQUE_IN_TABLE))
        self.assertTrue(out.endswith("\n\n2 duplicates of 3\n"), out)
        self.assertNotIn("\x1b", out)

    def test_shows_colour_on_a_terminal(self):
        code, shown = self.run_on_terminal("list", self.book)

        self.assertEqual(code, 0)
        self.assertIn("\x1b[31m[x]\x1b[0m* Ann", shown)

    def test_shows_the_progress_of_a_long_job_only(self):
        self.assertNotIn("Loading", self.run_on_terminal("list", self.book)[1])

        self.assertIn("\rLoading Contacts...", self.list_slowly()[1])

    def test_shows_neither_progress_nor_colour_on_a_dumb_terminal(self):
        for terminal in ("dumb", ""):
            self.environment["TERM"] = terminal
            code, shown = self.list_slowly()

            self.assertEqual(code, 0)
            self.assertNotIn("Loading", shown)
            self.assertIn("[x]* Ann", shown)
            self.assertNotIn("\x1b", shown)

    def list_slowly(self):
        """Lists the book from a pipe that lets the program wait for longer than progress takes to appear, however fast
        the program is."""
        return self.run_on_terminal(command=["sh", "-c", '{ sleep 0.8; cat "$1"; } | "$0" list -', PROGRAM,
                                             str(self.book)])

    def test_respects_no_color_and_quiet(self):
        self.environment["NO_COLOR"] = "1"

        code, shown = self.run_on_terminal("list", self.book, "--quiet")

        self.assertEqual(code, 0)
        self.assertNotIn("\x1b", shown)
        self.assertNotIn("Loading", shown)

    def test_never_sends_a_control_character_of_a_name_to_a_terminal(self):
        self.environment["NO_COLOR"] = "1"
        self.book.write_bytes(card("1\x07", "A\x1b[2Jnn\u202e") + card("2", "A\x1b[2Jnn\u202e"))
        for form in ("table", "csv", "json"):
            code, shown = self.run_on_terminal("list", self.book, "--format", form)

            self.assertEqual(code, 0)
            self.assertIn("[2Jnn", shown)
            for character in "\x1b\x07\u202e":
                self.assertNotIn(character, shown, form)

    def test_reports_that_it_cannot_read_the_book(self):
        for book in (self.folder / "none.vcf", "/dev/null", self.folder / "bro\x1bken"):
            code, out, err = self.run_program("list", book, "--format", "json")

            self.assertEqual((code, out), (1, ""))
            self.assertRegex(err, r"\Adunmora-cli: [^\n\x1b]+\n\Z")

    def test_refuses_a_file_that_is_no_vcard_file(self):
        for content, kind in ((b"\xef\xbb\xbfFirst Name,Last Name\r\nAnn,Lee\r\n", "is a CSV file, not"),
                              ("First;Last\r\nAnn;Lee\r\n".encode("utf-16"), "is a CSV file, not"),
                              (b"version: 1\n\ndn: cn=Ann\ncn: Ann\n", "is an LDIF file, not"),
                              (b"PK\x05\x06" + bytes(18), "is a zip archive, not"),
                              (b"Hello\n", "is not")):
            self.book.write_bytes(content)
            for command in (["list"], ["list", "--quiet"], ["delete", "--yes"]):
                self.assertEqual(self.run_program(*command, self.book),
                                 (1, "", f"dunmora-cli: “{self.book}” {kind} a vCard file. Export as vCard (.vcf).\n"))
            self.assertEqual(self.book.read_bytes(), content)

    def test_reads_a_folder_of_files_with_either_extension_in_any_case(self):
        people = self.folder / "people"
        people.mkdir()
        code, out, err = self.run_program("list", people)
        self.assertEqual((code, err), (0, f"dunmora-cli: note: “{people}” contains no .vcf or .vcard files.\n"), out)

        (people / "family").mkdir()
        (people / "family" / "ann.vcf").write_bytes(ANN_1)
        _, _, err = self.run_program("list", people)
        self.assertIn(" Its subfolder “family” has some.\n", err)

        (people / "ANN.VCF").write_bytes(ANN_1)
        (people / "ann.vCard").write_bytes(ANN_2)
        (people / "google.vcf").write_bytes(b"First,Last\nAnn,Lee\n")
        self.assertEqual(self.listed(people)["contacts"], 2)
        _, _, err = self.run_program("list", people)
        self.assertIn(f"“{people}/google.vcf” was skipped: it is a CSV file, not a vCard file.\n", err)
        code, _, err = self.run_program("delete", people, "--yes", "--backup", people / "backup.VCARD")
        self.assertEqual(code, 2)
        self.assertIn("would become part of the address book", err)

    def test_restores_nobody_into_a_file_that_is_no_vcard_file(self):
        self.backup.write_bytes(ANN_1)
        self.book.write_bytes(b"First,Last\nAnn,Lee\n")

        self.assertEqual(self.run_program("restore", self.backup, self.book, "--yes"),
                         (1, "", f"dunmora-cli: “{self.book}” was not changed: it is a CSV file, not a vCard file.\n"))
        self.assertEqual(self.book.read_bytes(), b"First,Last\nAnn,Lee\n")

    def test_reads_a_file_whose_people_it_has_deleted(self):
        content = b"My friends, and others\n" + card("1", "Ann", "Lee") + card("2", "Ann", "Lee")
        self.book.write_bytes(content)
        delete = ("delete", self.book, "--yes", "--allow-last-copy", "--backup", self.backup)
        self.assertEqual(self.run_program(*delete)[0], 0)
        self.assertEqual(self.book.read_bytes(), b"My friends, and others\n")
        try:
            os.getxattr(self.book, "user.dunmora.remainder")
        except OSError:
            self.skipTest("the file system keeps no attributes")

        code, out, err = self.run_program("list", self.book)
        self.assertEqual((code, err.splitlines()[-1]), (0, f"dunmora-cli: note: “{self.book}” contains no vCards."), out)
        self.assertEqual(self.run_program("restore", self.backup, self.book, "--yes")[0], 0)
        self.assertEqual(self.book.read_bytes(), content)

    def test_reports_that_the_disk_of_the_output_is_full(self):
        with open("/dev/full", "wb") as full:
            self.assertEqual(self.run_program("list", self.book, stdout=full), (1, "", NO_OUTPUT))

    def test_replaces_what_the_locale_cannot_show(self):
        self.environment["NO_COLOR"] = "1"
        self.book.write_bytes(card("1", "Zoë", "王") + card("2", "Zoë", "王"))
        whole = self.run_program("list", self.book, "--quiet")[1]
        data = [self.run_program("list", self.book, "--quiet", "--format", form)[1] for form in ("json", "csv")]
        self.environment["LC_ALL"] = "C"

        code, out, _ = self.run_program("list", self.book, "--quiet")
        self.assertEqual((code, out), (0, whole.replace("Zoë", "Zo?").replace("王", "??")))
        code, shown = self.run_on_terminal("list", self.book, "--quiet")
        self.assertEqual(code, 0)
        self.assertIn("]* Zo?         ??  ", shown)
        self.assertEqual([self.run_program("list", self.book, "--quiet", "--format", form)[1]
                          for form in ("json", "csv")], data)
        code, shown = self.run_on_terminal("delete", self.book, "--keep-one", "--quiet", answer=b"n\n")
        self.assertIn(f'1 person will be deleted from "{self.book}".\r\n', shown)

    def test_believes_the_name_of_a_locale_that_is_not_installed(self):
        self.book.write_bytes(card("1", "Zoë") + card("2", "Zoë"))
        for locale, name in (("xx_XX.UTF-8", "Zoë"), ("xx_XX.utf8@euro", "Zoë"), ("xx_XX", "Zo?")):
            self.environment["LC_ALL"] = locale
            self.assertIn(f"]* {name} ", self.run_program("list", self.book, "--quiet")[1])

    def test_ends_quietly_when_the_reader_has_seen_enough(self):
        for form in ("table", "json", "csv"):
            code, _, err = self.run_program("list", self.book, "--quiet", "--format", form, stdout=self.closed_pipe())

            self.assertEqual((code, err), (0, ""))

        code, _, err = self.run_program("list", self.book, "--quiet", "--fail-if-found", stdout=self.closed_pipe())
        self.assertEqual((code, err), (3, ""))

    def test_lists_the_sample(self):
        review = self.listed(SAMPLE)

        self.assertGreater(review["duplicates"], 0)
        self.assertEqual(review["duplicates"], sum(len(group["rows"]) for group in review["groups"]))
        for group in review["groups"]:
            self.assertGreaterEqual(len(group["rows"]), 2)


class TableTest(EndToEnd):
    """The table of people on terminals of different widths."""

    UIDS = ("urn:uuid:a974c8a5-1c5b-5cf8-aca6-60d3a03df39f", "card-345dcadef490815681dedf741706c6e6")

    def setUp(self):
        super().setUp()
        self.environment["NO_COLOR"] = "1"
        self.names = (("美咲", "佐藤"), ("يوسف", "البيطار"), ("Zoe\u0308", "😀 Smith"))
        self.book.write_bytes(b"".join(
            card(f"{uid}{place}", *name, f"TEL;TYPE=CELL:+44 7700 900 {place}{copy}0", "TEL;TYPE=WORK:+1 (415) 555-0183")
            for place, name in enumerate(self.names) for copy, uid in enumerate(self.UIDS)))

    def shown(self, columns, *options):
        code, shown = self.run_on_terminal("list", self.book, "--quiet", *options, columns=columns)
        self.assertEqual(code, 0)
        return shown.replace("\r\n", "\n")

    def assert_fits(self, text, columns):
        for line in text.splitlines():
            self.assertLessEqual(width(line), columns, line)

    def test_fits_every_terminal_and_cuts_no_name(self):
        for columns in (52, 60, 80, 120):
            text = self.shown(columns)

            self.assert_fits(text, columns)
            for name in self.names:
                for part in name:
                    self.assertEqual(text.count(part), 2, (columns, text))

    def test_aligns_the_columns_in_every_script(self):
        for columns in (60, 80, 120):
            lines = [line for line in self.shown(columns).splitlines() if line.startswith("[")]

            places = {width(line[:line.index("0183")]) for line in lines}
            self.assertEqual(len(places), 1, lines)

    def test_shows_the_uid_whole_or_says_what_does(self):
        note = "Not shown: UID. Use --wide to show everything.\n"
        self.assertNotIn("Nickname", self.shown(200), "empty for everybody")
        for columns, isShown in ((52, True), (80, False), (200, True)):
            text = self.shown(columns)

            for uid in self.UIDS:
                self.assertEqual(uid + "0\n" in text, isShown, text)
            self.assertEqual("Not shown" in text, not isShown)
        self.assertIn(note, self.shown(100))

    def test_shows_everything_when_asked_and_when_it_is_no_terminal(self):
        piped = self.run_program("list", self.book, "--quiet")[1]

        self.assertEqual(self.shown(80, "--wide"), piped)
        self.assertIn("Nickname", piped)
        for uid in self.UIDS:
            self.assertIn(uid + "0\n", piped)

    def test_prefers_the_users_columns_to_those_of_the_terminal(self):
        self.environment["COLUMNS"] = "60"
        self.assertEqual(self.shown(200), self.shown(60))

        for nonsense in ("", "0", "-1", "80x"):
            self.environment["COLUMNS"] = nonsense
            self.assertGreater(max(map(width, self.shown(200).splitlines())), 80, nonsense)

    def test_takes_a_terminal_that_does_not_know_its_width_for_80_columns(self):
        self.assertEqual(self.shown(0), self.shown(80))


class DeleteTest(EndToEnd):
    def test_cuts_out_the_checked_cards_and_no_other_byte(self):
        code, out, err = self.run_program("delete", self.book, "--yes", "--format", "json", "--backup", self.backup)

        self.assertEqual((code, err), (0, UNIQUE + "dunmora-cli: To put these people back: dunmora-cli restore "
                                       f"{self.backup} {self.book}\n"))
        self.assertEqual(json.loads(out), {**DELETED, "dryRun": False})
        self.assertEqual(self.book.read_bytes(), BOOK_WITHOUT_ANN_2)
        self.assertEqual(self.backup.read_bytes(), ANN_2)

    def test_backs_up_exactly_the_removed_people_of_the_sample(self):
        shutil.copy(SAMPLE, self.book)
        before = self.listed(self.book)
        checked = {row["uid"] for group in before["groups"] for row in group["rows"] if row["check"]}

        code, out, _ = self.run_program("delete", self.book, "--yes", "--format", "json", "--backup", self.backup,
                                        "--allow-last-copy", "--allow-blank-match")

        self.assertEqual(code, 0)
        result = json.loads(out)
        self.assertEqual(set(result["deleted"]), checked)
        after = self.listed(self.book)
        self.assertEqual(result["contacts"], before["contacts"] - len(checked))
        self.assertEqual(after["contacts"], result["contacts"])
        backup = self.listed(self.backup)
        self.assertEqual((backup["contacts"], backup["skipped"]), (len(checked), 0))
        self.assertEqual(len(SAMPLE.read_bytes()), self.book.stat().st_size + self.backup.stat().st_size)

    def test_asks_for_confirmation_on_a_terminal(self):
        for answer in (b"y\n", b"Yes\n", b"OKAY\n"):
            self.book.write_bytes(BOOK)
            code, shown = self.run_on_terminal("delete", self.book, answer=answer)

            self.assertEqual(code, 0, shown)
            self.assertLess(shown.index("ann-2"), shown.index(QUESTION))
            self.assertIn("1 person deleted.", shown)
            self.assertEqual(self.book.read_bytes(), BOOK_WITHOUT_ANN_2)

    def test_changes_nothing_unless_the_answer_is_yes(self):
        # The last one, Ctrl+D, ends the input.
        for answer in (b"\n", b"n\n", b"cancel\n", b"\x04"):
            code, shown = self.run_on_terminal("delete", self.book, "--backup", self.backup, answer=answer)

            self.assertEqual(code, 1, shown)
            self.assertIn("dunmora-cli: Nothing was deleted.", shown)
            self.assert_untouched()

    def test_ends_as_a_shell_expects_when_it_is_interrupted(self):
        code, shown = self.run_on_terminal("delete", self.book, "--backup", self.backup, answer=b"\x03")

        self.assertEqual(code, -signal.SIGINT, shown)
        self.assert_untouched()

    def test_asks_on_the_terminal_while_the_output_goes_to_a_file(self):
        with open(self.folder / "out", "w+b") as output:
            code, shown = self.run_on_terminal("delete", self.book, "--format", "json", answer=b"ok\n", stdout=output)
            output.seek(0)
            result = json.load(output)

        self.assertEqual((code, result["deleted"]), (0, ["ann-2"]))
        self.assertLess(shown.index("ann-2"), shown.index(QUESTION))

    def test_needs_yes_without_a_terminal(self):
        self.assertEqual(self.run_program("delete", self.book),
                         (2, "", "dunmora-cli: delete needs --yes when it cannot ask on a terminal.\n"))
        self.assert_untouched()

    def test_writes_nothing_in_a_dry_run(self):
        code, out, _ = self.run_program("delete", self.book, "--dry-run", "--format", "json", "--backup", self.backup)

        self.assertEqual(code, 0)
        self.assertEqual(json.loads(out), {**DELETED, "dryRun": True})
        self.assert_untouched()

    def test_refuses_to_delete_what_may_not_have_been_reviewed(self):
        blank = card("1", "", "") + card("2", "", "")
        self.book.write_bytes(blank)

        code, out, err = self.run_program("delete", self.book, "--yes", "--format", "json")

        self.assertEqual((code, out), (1, ""))
        self.assertIn("would lose every copy", err)
        self.assertIn("share only empty fields", err)
        self.assertEqual(self.book.read_bytes(), blank)
        code, out, _ = self.run_program("delete", self.book, "--yes", "--format", "json", "--keep-one",
                                        "--allow-blank-match")
        self.assertEqual((code, json.loads(out)["deleted"]), (0, ["2"]))

    def test_refuses_a_backup_that_exists(self):
        self.backup.write_bytes(b"mine")

        code, out, _ = self.run_program("delete", self.book, "--yes", "--backup", self.backup)

        self.assertEqual((code, out), (1, ""))
        self.assertEqual((self.book.read_bytes(), self.backup.read_bytes()), (BOOK, b"mine"))

    def test_keeps_the_backup_when_the_book_cannot_be_saved(self):
        with open(self.book, "rb") as locked:
            fcntl.flock(locked, fcntl.LOCK_EX)
            code, out, err = self.run_program("delete", self.book, "--yes", "--format", "json", "--backup",
                                              self.backup)

        self.assertEqual((code, out), (1, ""))
        self.assertIn("locked", err)
        self.assertIn(str(self.backup), err)
        self.assertEqual((self.book.read_bytes(), self.backup.read_bytes()), (BOOK, ANN_2))

    def test_reports_a_read_only_book_before_anything_else(self):
        self.book.chmod(0o444)
        report = f"dunmora-cli: “{self.book}” cannot be changed: it is read-only.\n"

        self.assertEqual(self.run_program("delete", self.book, "--yes", "--backup", self.backup), (1, "", report))
        code, shown = self.run_on_terminal("delete", self.book, "--quiet")
        self.assertEqual((code, shown.replace("\r", "")), (1, report))
        self.assert_untouched()
        self.assertEqual(self.run_program("delete", self.book, "--dry-run")[0], 0)

    def test_changes_nothing_when_it_cannot_print_who_is_deleted(self):
        closed = ["sh", "-c", 'exec "$@" >&-', "sh"]
        self.assertEqual(self.run_program("delete", self.book, "--yes", command=closed), (1, "", NO_OUTPUT))
        self.assert_untouched()

        with open("/dev/full", "wb") as full:
            self.assertEqual(self.run_program("delete", self.book, "--yes", stdout=full), (1, "", NO_OUTPUT))
        self.assert_untouched()

    def test_deletes_wholly_when_the_reader_has_seen_enough(self):
        code, _, err = self.run_program("delete", self.book, "--yes", "--quiet", stdout=self.closed_pipe())

        self.assertEqual((code, err), (0, ""))
        self.assertEqual(self.book.read_bytes(), BOOK_WITHOUT_ANN_2)

    def test_reports_a_failure_when_the_reader_has_seen_enough(self):
        with open(self.book, "rb") as locked:
            fcntl.flock(locked, fcntl.LOCK_EX)
            code, _, err = self.run_program("delete", self.book, "--yes", "--quiet", stdout=self.closed_pipe())

        self.assertEqual(code, 1)
        self.assertIn("locked", err)
        self.assert_untouched()

    def test_reports_that_the_limit_for_file_sizes_is_reached(self):
        # One block rather than zero, because a sanitizer's runtime writes a file before the program starts.
        limited = ["sh", "-c", 'ulimit -f 1; exec "$@"', "sh"]
        book = BOOK + card("cleo", "Cleo", "Lu", f"NOTE:{'long ' * 1000}")
        self.book.write_bytes(book)

        code, _, err = self.run_program("delete", self.book, "--yes", "--format", "json", command=limited)

        self.assertEqual(code, 1)
        self.assertRegex(err, r"cannot be changed: File too large\.\n\Z")
        self.assertEqual(self.book.read_bytes(), book)

    def test_writes_no_output_into_the_book_when_all_standard_streams_are_closed(self):
        closed = ["sh", "-c", 'exec "$@" <&- >&- 2>&-', "sh"]

        code, _, _ = self.run_program("delete", self.book, "--yes", "--format", "json", command=closed)

        # It deleted the person but could not report that.
        self.assertEqual(code, 1)
        self.assertEqual(self.book.read_bytes(), BOOK_WITHOUT_ANN_2)

    def test_deletes_from_a_folder_and_keeps_its_backup_out(self):
        people = self.folder / "people"
        people.mkdir()
        (people / "a.vcf").write_bytes(ANN_1 + BEN)
        (people / "b.vcf").write_bytes(ANN_2)

        code, _, err = self.run_program("delete", people, "--yes", "--backup", people / "backup.vcf")
        self.assertEqual(code, 2, err)
        code, _, err = self.run_program("delete", people, "--yes", "--backup", self.backup)

        self.assertEqual((code, err), (0, UNIQUE_IN_TABLE + "dunmora-cli: To put these people back: "
                                                         f"dunmora-cli restore {self.backup} {people}\n"))
        self.assertEqual({path.name: path.read_bytes() for path in people.iterdir()}, {"a.vcf": ANN_1 + BEN})
        self.assertEqual(self.backup.read_bytes(), ANN_2)


class FieldsTest(EndToEnd):
    def test_stores_the_match_fields_for_the_next_run(self):
        self.assertEqual(self.run_program("fields"), (0, "firstname,lastname\n", ""))
        self.assertEqual(self.run_program("fields", "mobile,firstname"), (0, "firstname,mobile\n", ""))

        self.assertEqual(self.run_program("fields"), (0, "firstname,mobile\n", ""))
        self.assertEqual(self.listed(self.book)["match"], ["firstname", "mobile"])

    def test_does_not_store_the_fields_of_a_single_run(self):
        self.run_program("fields", "lastname")
        stored = {path: path.read_bytes() for path in (self.folder / "config").rglob("*") if path.is_file()}
        self.assertTrue(stored)

        self.assertEqual(self.listed(self.book, "--match", "home")["match"], ["home"])

        self.assertEqual({path: path.read_bytes() for path in stored}, stored)
        self.assertEqual(self.run_program("fields")[1], "lastname\n")

    def test_stores_the_fields_of_one_of_two_programs_that_run_at_once(self):
        choices = ["nickname,firstname,home", "lastname,work,mobile"]
        for _ in range(50):
            programs = [subprocess.Popen([PROGRAM, "fields", choice], env=self.environment, stdout=subprocess.PIPE,
                                         stderr=subprocess.PIPE, text=True) for choice in choices]
            for program, choice in zip(programs, choices):
                out, err = program.communicate(timeout=20)
                if program.returncode == 0:
                    self.assertEqual((out, err), (choice + "\n", ""))
                else:
                    self.assertEqual((program.returncode, err), (1, "dunmora-cli: Another program stored other match "
                                                                    "fields at the same time. Try again.\n"))
            self.assertIn(self.run_program("fields")[1].rstrip("\n"), choices)

    def test_waits_a_second_for_the_lock_of_the_fields(self):
        self.run_program("fields", "lastname")
        path = self.folder / "config" / "dunmora" / "dunmora.conf"
        with path.open("rb") as other:
            fcntl.flock(other, fcntl.LOCK_EX)
            begin = time.monotonic()
            code, out, err = self.run_program("fields", "home")
            duration = time.monotonic() - begin

        self.assertEqual((code, out), (1, ""))
        self.assertIn("another program has locked it. Try again later.\n", err)
        self.assertTrue(err.endswith("dunmora-cli: The match fields could not be stored.\n"), err)
        self.assertGreater(duration, 0.9)
        # It waits a second, not for the lock; a busy machine takes its time for the rest.
        self.assertLess(duration, 10)
        self.assertEqual(self.run_program("fields")[1], "lastname\n")

    def test_reports_that_the_fields_could_not_be_stored(self):
        # A file in place of the folder makes writing fail, even for root.
        (self.folder / "config").write_bytes(b"")

        code, out, err = self.run_program("fields", "home")

        self.assertEqual((code, out), (1, ""))
        self.assertTrue(err.endswith("dunmora-cli: The match fields could not be stored.\n"), err)


class StandardInputTest(EndToEnd):
    def run_with_input(self, content, *arguments):
        """Runs the program and writes this into its standard input."""
        result = subprocess.run([PROGRAM, *map(str, arguments)], input=content, capture_output=True,
                                env=self.environment, timeout=SECONDS, check=False)
        return result.returncode, result.stdout.decode(), result.stderr.decode()

    def test_is_read_as_an_address_book(self):
        self.book.unlink()
        code, out, err = self.run_with_input(BOOK, "list", "-", "--format", "json")

        self.assertEqual((code, err), (0, UNIQUE))
        review = json.loads(out)
        self.assertEqual((review["addressBook"], review["contacts"], review["duplicates"]), ("-", 3, 2))
        self.assertEqual({row["source"] for row in review["groups"][0]["rows"]}, {"-"})
        code, out, _ = self.run_with_input(BOOK, "show", "-", "ben")
        self.assertEqual((code, out.splitlines()[0]), (0, "ben in “standard input”"))
        code, out, _ = self.run_with_input(BOOK, "diff", "-", "ann-1", "ann-2", "--format", "json")
        self.assertEqual((code, json.loads(out)["people"][1]["only_here"]),
                         (0, [{"property": "X-ODD", "value": "whatever"}]))

    def test_is_named_in_remarks_and_errors(self):
        code, out, err = self.run_with_input(b"BEGIN:VCARD\r\n" + BOOK, "list", "-", "--format", "json")
        self.assertEqual((code, json.loads(out)["skipped"]), (0, 1))
        self.assertIn("“standard input”", err)

        folder = os.open(self.folder, os.O_RDONLY)
        self.addCleanup(os.close, folder)
        result = subprocess.run([PROGRAM, "list", "-"], stdin=folder, capture_output=True, env=self.environment,
                                timeout=SECONDS, check=False)
        self.assertEqual((result.returncode, result.stdout, result.stderr.decode()),
                         (1, b"", "dunmora-cli: “standard input” cannot be read: Is a directory.\n"))

    def test_is_expected_aloud_on_a_terminal(self):
        master, slave = pty.openpty()
        with subprocess.Popen([PROGRAM, "list", "-"], stdin=slave, stdout=slave, stderr=slave,
                              env=self.environment, start_new_session=True, preexec_fn=own_terminal) as process:
            os.close(slave)
            try:
                shown = b""
                while b"Ctrl+D" not in shown:
                    self.assertTrue(select.select([master], [], [], SECONDS)[0], shown)
                    shown += os.read(master, 65536)
                os.write(master, ANN_1.replace(b"\r\n", b"\n") + b"\x04")
                shown += self.read_terminal(master, None)
                self.assertEqual(process.wait(SECONDS), 0)
            finally:
                process.kill()
                os.close(master)
        self.assertIn(b"0 duplicates of 1", shown)

    def test_cannot_be_changed(self):
        for arguments in (["delete", "-", "--yes"], ["restore", self.book, "-", "--yes"]):
            code, out, err = self.run_with_input(BOOK, *arguments)
            self.assertEqual((code, out), (2, ""))
            self.assertIn("cannot change standard input", err)

    def test_is_not_a_file_that_is_called_dash(self):
        (self.folder / "-").write_bytes(BOOK)
        result = subprocess.run([PROGRAM, "list", "./-"], stdin=subprocess.DEVNULL, capture_output=True,
                                cwd=self.folder, env=self.environment, timeout=SECONDS, check=False)
        self.assertIn(b"2 duplicates of 3", result.stdout)

    def test_has_the_people_to_check(self):
        code, out, _ = self.run_with_input(b"ben\r\n\n", "delete", self.book, "--yes", "--check-from", "-",
                                           "--allow-last-copy", "--format", "json")
        self.assertEqual((code, json.loads(out)["deleted"]), (0, ["ben", "ann-2"]))

    def test_may_be_a_pipe_with_a_name(self):
        fifo = self.folder / "uids"
        os.mkfifo(fifo)
        with subprocess.Popen(["sh", "-c", 'sleep 0.2; echo ann-2 > "$0"', str(fifo)]):
            code, out, _ = self.run_program("delete", self.book, "--yes", "--uncheck-from", fifo, "--check", "ben",
                                            "--allow-last-copy", "--format", "json")
        self.assertEqual((code, json.loads(out)["deleted"]), (0, ["ben"]))


COMMANDS = ("list", "delete", "restore", "show", "diff", "fields", "books", "help")


class HelpTest(EndToEnd):
    def test_has_examples_that_run(self):
        """Runs every example in a folder with the files that it names. The desktop's books may be missing."""
        self.environment["PATH"] = os.pathsep.join([os.path.dirname(PROGRAM), os.environ["PATH"]])
        contacts = self.folder / "contacts.vcf"
        for command in COMMANDS:
            code, out, _ = self.run_program("help", command)
            self.assertEqual(code, 0)
            examples = out.rpartition("\nExamples:\n")[2].splitlines()
            self.assertEqual(len(examples), 2, out)
            for example in examples:
                for file in self.folder.glob("*.vcf"):
                    file.unlink()
                contacts.write_bytes(BOOK)
                if command == "restore":
                    contacts.write_bytes(BOOK_WITHOUT_ANN_2)
                    (self.folder / "removed.vcf").write_bytes(ANN_2)
                code, shown = self.run_on_terminal(command=["sh", "-c", f"cd '{self.folder}' && {example}"],
                                                   answer=b"y\n")
                self.assertIn(code, (0, 1) if command == "books" else (0,), f"{example}: {shown}")


class UsageErrorTest(EndToEnd):
    def test_is_reported_in_one_line(self):
        for arguments in (["tidy"], ["list"], ["list", self.book, "--format", "xml"], ["list", self.book, "more"],
                          ["list", self.book, "--match", "email"], ["delete", self.book, "--yes", "--check", "nobody"],
                          ["delete", self.book, "--yes", "--check", "ben", "--uncheck", "ben"],
                          ["fields", "email"], ["--what\x1b"]):
            code, out, err = self.run_program(*arguments)

            self.assertEqual((code, out), (2, ""), arguments)
            self.assertRegex(err, r"\Adunmora-cli: [^\n\x1b]+\n\Z")
            self.assert_untouched()

    def test_asks_for_a_match_field(self):
        expected = (2, "", "You should choose at least one field as match condition!\n")
        for arguments in (["list", self.book, "--match", ""], ["delete", self.book, "--yes", "--match="],
                          ["fields", ""]):
            self.assertEqual(self.run_program(*arguments), expected)

    def test_prints_the_usage_without_arguments(self):
        code, out, err = self.run_program()

        self.assertEqual((code, out), (2, ""))
        self.assertTrue(err.startswith("Usage:\n"))

    def test_blames_the_word_that_is_wrong(self):
        self.assertEqual(self.run_program("lst", self.book),
                         (2, "", "dunmora-cli: There is no command “lst”. Did you mean “list”? "
                          "See: dunmora-cli help\n"))
        self.assertEqual(self.run_program("list", "--formt", "json", self.book),
                         (2, "", "dunmora-cli: list has no option “--formt”. Did you mean “--format”? "
                          "See: dunmora-cli help list\n"))

    def test_does_not_count_help_or_version_as_an_error(self):
        for command in ([], ["list"], ["delete"], ["fields"]):
            code, out, err = self.run_program(*command, "--help")
            self.assertEqual((code, err), (0, ""))
            self.assertIn("Usage: dunmora-cli", out)

            code, out, err = self.run_program(*command, "--version")
            self.assertEqual((code, err), (0, ""))
            self.assertRegex(out, r"\Adunmora-cli \d+\.\d+\n\Z")


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    PROGRAM = os.path.abspath(sys.argv.pop(1))
    unittest.main()
