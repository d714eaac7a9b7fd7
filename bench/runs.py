"""The runs that the table compares: the floor, other programs, and ours."""

import dataclasses
import os
import pathlib
import shutil

from measuring import Cost, Failed

PEERS = pathlib.Path(__file__).parent / "peers"
# Debian's, which has the Debian package python3-vobject.
PYTHON = "/usr/bin/python3"

FLOOR = "floor"
EVCARD = "EVCard, parsing only"

# The largest book that a peer is measured with; the others are measured with all.
MOST_FOR_KCONTACTS = 100_000
MOST_FOR_VOBJECT = 10_000
MOST_FOR_PAIRS = 10_000
MOST_IN_A_FOLDER = 10_000
MOST_ON_THE_DESKTOP = 10_000

# The exit status of desktop_book where no desktop can be started.
NO_DESKTOP = 77

MATCH = ("--match", "firstname,lastname")


@dataclasses.dataclass(frozen=True)
class Row:
    """A run with a book of so many people. `floor` names the row whose time is the floor of this one; `size` is the
    book's size in bytes, or None for the desktop's book, which is in no file."""

    run: str
    people: int
    cost: Cost
    floor: str
    size: int | None


class Runs:
    """Measures everything with books in a folder, and reports each row as soon as it is measured."""

    def __init__(self, meter, binary, folder, report, with_peers=True):
        self.meter = meter
        self.binary = pathlib.Path(binary)
        self.cli = self.binary / "dunmora-cli"
        self.folder = pathlib.Path(folder)
        self.report = report
        self.with_peers = with_peers
        self.rows = []
        # {what: why} of what could not be measured, and of what is broken.
        self.missing = {}
        self.failed = {}

    def measure(self, sizes):
        for people in sizes:
            self._measure_file(people)
        self._measure_folder(min(max(sizes), MOST_IN_A_FOLDER))
        self._measure_desktop(min(max(sizes), MOST_ON_THE_DESKTOP))

    def _add(self, run, people, cost, floor=FLOOR, size=None):
        row = Row(run, people, cost, floor, size)
        self.rows.append(row)
        self.report(row)

    def _book(self, name, people, percent_with_copy, kind="file", copies="equal"):
        path = self.folder / name
        self.meter.run([self.meter.programs / "write_book", kind, path, people, percent_with_copy, copies])
        return path

    # One file

    def _measure_file(self, people):
        few = self._book("few.vcf", people, 10)
        size = few.stat().st_size

        def add(run, command):
            self._add(run, people, self.meter.best(command), size=size)

        add(FLOOR, [self.meter.programs / "floor", few])
        add("`wc -l`", ["wc", "-l", few])
        add("`cat`", ["cat", few])
        for run, command in self._peers(people):
            add(run, [*command, few])
        for book, rows in ((few, "few rows"), (self._book("twice.vcf", people, 100), "everybody in rows")):
            for options in ("--quiet", "", "--format json --quiet", "--format json", "--format csv --quiet",
                            "--format csv"):
                add(f"`{f'list {options}'.strip()}`, {rows}", [self.cli, "list", book, *MATCH, *options.split()])
        differ = self._book("differ.vcf", people, 100, copies="different")
        for command in ("list --quiet", "list"):
            self._add(f"`{command}`, everybody in rows, copies differ", people,
                      self.meter.best([self.cli, *command.split(), differ, *MATCH]), size=differ.stat().st_size)
        self._measure_deletion(people, self.folder / "twice.vcf")
        for file in self.folder.glob("*.vcf"):
            file.unlink()

    def _peers(self, people):
        """(title, command) of the peers that can be measured with this many people."""
        peers = [(EVCARD, "libebook-contacts1.2-dev", self._built("evcard_read"), people),
                 ("KContacts, parsing only", "libkf5contacts-dev", self._built("kcontacts_read"), MOST_FOR_KCONTACTS),
                 ("vobject, grouping by name", "python3-vobject", self._vobject(), MOST_FOR_VOBJECT),
                 ("comparing every pair of names", "", self._built("pairwise"), MOST_FOR_PAIRS)]
        for title, package, command, most in peers if self.with_peers else ():
            if command is None:
                self.missing[title] = f"{package} is not installed"
            elif people <= most:
                yield title, command

    def _built(self, name):
        path = self.meter.program(name)
        return [path] if path else None

    def _vobject(self):
        try:
            self.meter.run([PYTHON, "-c", "import vobject"])
        except (Failed, OSError):
            return None
        return [PYTHON, "-B", PEERS / "vobject_read.py"]

    def _measure_deletion(self, people, book):
        """Deletes everybody's second card, without a backup and with one, and puts them back."""
        work, backup, rest = (self.folder / name for name in ("work.vcf", "removed.vcf", "rest.vcf"))
        size = book.stat().st_size

        def begin_with(file):
            shutil.copyfile(file, work)
            # What is written above is not to be flushed during the measured run.
            os.sync()

        def begin_deletion():
            backup.unlink(missing_ok=True)
            begin_with(book)

        def expect(bytes_left):
            if abs(work.stat().st_size - bytes_left) * 20 > size:
                raise Failed(f"{work.stat().st_size} of {size} bytes are left after the change of the book")

        delete = [self.cli, "delete", work, *MATCH, "--yes", "--quiet"]
        self._add("`delete --quiet`, half of the people", people, self.meter.best(delete, begin_deletion), size=size)
        expect(size / 2)
        self._add("`delete --quiet --backup`, half of the people", people,
                  self.meter.best([*delete, "--backup", backup], begin_deletion), size=size)
        expect(size / 2)
        shutil.copyfile(work, rest)
        restore = [self.cli, "restore", backup, work, "--yes", "--quiet"]
        self._add("`restore --quiet`, half of the people", people,
                  self.meter.best(restore, lambda: begin_with(rest)), size=size)
        expect(size)

    # A folder, and the desktop's service

    def _measure_folder(self, people):
        folder = self._book("folder", people, 10, kind="folder")
        size = sum(file.stat().st_size for file in folder.iterdir())
        floor = "floor of a folder, a file a person"

        def add(run, command):
            self._add(run, people, self.meter.best(command), floor, size)

        add(floor, [self.meter.programs / "floor", folder])
        add("`cat` of the folder", ["sh", "-c", f"cat '{folder}'/*"])
        add("`list --quiet` of the folder", [self.cli, "list", folder, *MATCH, "--quiet"])
        shutil.rmtree(folder)

    def _measure_desktop(self, people):
        """Measures on a private desktop, in turns, because its service is not always equally quick."""
        floor = "libebook, everyone of the desktop's book"
        reader, desktop = self.meter.program("ebook_read"), self.meter.program("desktop_book")
        module = next(self.binary.parent.glob("lib*/**/dunmora/dunmora-eds.so"), None)
        if not (reader and desktop and module):
            self.missing["the desktop's address book"] = "it is built without libebook"
            return
        commands = {floor: [reader], "`list eds: --quiet`": [self.cli, "list", "eds:", *MATCH, "--quiet"],
                    "`books --quiet`": [self.cli, "books", "--quiet"]}
        measured = [" ".join(f"'{part}'" for part in (self.meter.programs / "measure", *command))
                    for command in commands.values()]
        script = f"set -e; for i in $(seq {self.meter.repetitions}); do {'; '.join(measured)}; done"
        try:
            lines = self.meter.run([desktop, self._book("few.vcf", people, 10), "sh", "-c", script]).splitlines()
        except Failed as failure:
            # The other measurements, which took long, are still shown.
            reasons = self.missing if failure.status == NO_DESKTOP else self.failed
            reasons["the desktop's address book"] = str(failure).splitlines()[-1]
            return
        costs = [Cost.of(line) for line in lines]
        for place, run in enumerate(commands):
            self._add(run, people, min(costs[place::len(commands)], key=lambda cost: cost.wall), floor)
