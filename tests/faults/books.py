"""The address books of the fault injection, and what deletions from them remove."""

import dataclasses
import os
import pathlib

from shared import card

KEPT = card("kept", "Zoe", "Zed", "NOTE:0000000000")
# What another program makes of the first card by overwriting its note.
NOTE = KEPT.index(b"0000000000")
EDITED = KEPT.replace(b"0000000000", b"1111111111")

# Every text that may be in a book. No text is the beginning of another one.
TEXTS = {
    "kept": KEPT,
    "edited": EDITED,
    "text": b"text between cards\r\n",
    "ann-1": card("ann-1", "Ann", "Lee", "TEL;TYPE=CELL:+1 555 0100"),
    "ann-2": card("ann-2", "Ann", "Lee", "X-ODD:whatever"),
    "ben": card("ben", "Ben", "Li", "NOTE:kept\\, with a fold", " ed line"),
    "cy-1": card("cy-1", "Cy", "Orr", "TEL:+1 555 0101"),
    "cy-2": card("cy-2", "Cy", "Orr"),
    "dee-1": card("dee-1", "Dee", "Poe", "TEL:+1 555 0102"),
    "dee-2": card("dee-2", "Dee", "Poe"),
    "written-1": card("written-1", "Wim", "One"),
    "written-2": card("written-2", "Wes", "Two"),
}
REMOVED = frozenset({"ann-2", "cy-2", "dee-2"})

MODE = 0o640
ATTRIBUTE, VALUE = "user.kept", b"by every change"

# What system calls report where the file system lacks something.
NO_EXCHANGE = (("renameat2-exchange", "1+", "fail", 22), ("renameat2-noreplace", "1+", "fail", 22))
NO_LEASES = (("fcntl-setlease", "1+", "fail", 22),)
NO_NAMELESS_FILES = (("openat-nameless", "1+", "fail", 95),)


@dataclasses.dataclass(frozen=True)
class Scenario:
    """An address book in the folder `book`, and a deletion from it."""

    name: str
    # The texts of each file, by the file's name.
    files: dict
    book: str = "book"
    # The names of other links to a file, relative to the folder above the book.
    hard_links: tuple = ()
    symbolic_links: tuple = ()
    has_backup: bool = False
    # Faults that are there in every run: what the file system cannot do.
    lacks: tuple = ()

    @property
    def arguments(self):
        return ["delete", self.book, "--yes", *(["--backup", "backup.vcf"] if self.has_backup else [])]

    @property
    def is_folder(self):
        return self.book == "book"

    @property
    def texts(self):
        return [name for texts in self.files.values() for name in texts]

    @property
    def removed(self):
        return [name for name in self.texts if name in REMOVED]

    def rest(self, file):
        """Returns the texts of the file after the deletion, or None for a file that is then gone."""
        rest = [name for name in self.files[file] if name not in REMOVED]
        return rest if rest or not self.is_folder else None

    def write(self, home):
        folder = home / "book"
        folder.mkdir()
        for file, texts in self.files.items():
            path = folder / file
            path.write_bytes(content_of(texts))
            path.chmod(MODE)
            set_attribute(path)
        for link, file in self.hard_links:
            os.link(folder / file, home / link)
        for link, file in self.symbolic_links:
            (home / link).symlink_to(file)

    def names_of(self, file):
        """Returns all names of a file in the book."""
        return [file, *(pathlib.PurePath(link).name for link, linked in self.hard_links
                        if linked == file and link.startswith("book/"))]


ONE_FILE = {"book.vcf": ["kept", "ann-1", "text", "ben", "ann-2", "cy-1", "cy-2"]}
# A file that loses a card, one that is removed, one that loses a card and one that stays.
FOLDER = {"a.vcf": ["kept", "ann-1", "cy-2"], "b.vcf": ["ann-2"], "c.vcf": ["text", "cy-1", "dee-1", "dee-2"],
          "d.vcf": ["ben"]}

SCENARIOS = (
    Scenario("file", ONE_FILE, "book/book.vcf"),
    Scenario("file, with backup", ONE_FILE, "book/book.vcf", has_backup=True),
    Scenario("folder, with backup", FOLDER, has_backup=True),
    Scenario("hard links in the folder", FOLDER, hard_links=(("book/aa.vcf", "a.vcf"), ("book/bb.vcf", "b.vcf"))),
    Scenario("hard link elsewhere", ONE_FILE, "book/book.vcf", hard_links=(("elsewhere.vcf", "book.vcf"),)),
    Scenario("symbolic link", ONE_FILE, "link.vcf", symbolic_links=(("link.vcf", "book/book.vcf"),)),
    Scenario("no exchange", FOLDER, has_backup=True, lacks=NO_EXCHANGE),
    Scenario("no leases", FOLDER, lacks=NO_LEASES),
    Scenario("no nameless files", FOLDER, has_backup=True, lacks=NO_NAMELESS_FILES),
)


def content_of(texts):
    return b"".join(TEXTS[name] for name in texts)


def texts_of(content):
    """Returns the names of the texts that the content consists of, or None if there is anything else."""
    names = []
    while content:
        name = next((name for name, text in TEXTS.items() if content.startswith(text)), None)
        if name is None:
            return None
        names.append(name)
        content = content[len(TEXTS[name]):]
    return names


def set_attribute(path):
    try:
        os.setxattr(path, ATTRIBUTE, VALUE)
    except OSError:
        # This file system has no attributes for users.
        pass


def attribute_of(path):
    try:
        return os.getxattr(path, ATTRIBUTE)
    except OSError:
        return None
