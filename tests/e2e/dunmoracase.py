"""Shared by the tests of `dunmora`: a book of a few people, and the program started on it."""

import functools

from cards import card
from dunmora import CONFIRMATION, DELETE, NOTHING_CHECKED, Dunmora, is_alert
from windowcase import WindowCase

ANN_1 = card("ann-1", "Ann", "Lee", "TEL;TYPE=CELL:+1 555 0100", "NICKNAME:Annie")
BEN = card("ben", "Ben", "Li", "NOTE:kept\\, with a fold", " ed line")
ANN_2 = card("ann-2", "Ann", "Lee", "X-ODD:whatever", "TEL;TYPE=HOME:+1 555 0101")
JUNK = b"text between cards\r\n"
CARL_1 = card("carl-1", "Carl", "Ek", "TEL;TYPE=WORK:+1 555 0102")
CARL_2 = card("carl-2", "Carl", "Ek", "TEL;TYPE=CELL:+1 555 0100")
BOOK = ANN_1 + JUNK + BEN + ANN_2 + CARL_1 + CARL_2
ANNS, CARLS = [("Ann", "Lee")] * 2, [("Carl", "Ek")] * 2

DORA_1, DORA_2 = card("dora-1", "Dora", "Ng"), card("dora-2", "Dora", "Ng")
NOBODY_1, NOBODY_2 = card("no-1", "", "", "TEL:+1 555 0103"), card("no-2", "", "", "TEL:+1 555 0104")
BROKEN = b"BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Cut off\r\n"


class DunmoraCase(WindowCase):
    """A test with a home folder that contains a book."""

    def start(self, *arguments, settings=None):
        """Starts the program, with these environment variables changed."""
        return super().start(*arguments, kind=functools.partial(Dunmora, settings=settings))

    def setUp(self):
        super().setUp()
        self.books = self.home / "books"
        self.books.mkdir()
        self.book = self.books / "book.vcf"
        self.book.write_bytes(BOOK)

    def start_searched(self, content=BOOK):
        """Starts the program on a book with this content and confirms the match fields unchanged."""
        self.book.write_bytes(content)
        dunmora = self.start(self.book)
        dunmora.search()
        return dunmora

    def delete_checked(self, dunmora):
        """Clicks Delete Checked, insists on everyone about whom the program has doubts, and returns the confirmation."""
        dunmora.wait_for_main_alone()
        dunmora.click(dunmora.button(DELETE))
        alert = dunmora.wait_for_window(is_alert, "alert")
        insist = alert.find_all("push button", "Delete Them Too")
        if insist:
            dunmora.click(insist[0])
            dunmora.wait_for(lambda: alert not in dunmora.windows, "end of the question")
        return dunmora.alert(*CONFIRMATION)

    @staticmethod
    def delete_nobody(dunmora):
        """Clicks Delete Checked with every row unchecked and returns the alert."""
        dunmora.select_all()
        dunmora.choose("Edit", "Uncheck Selected")
        dunmora.wait_for(lambda: not any(dunmora.marks()), "table without check marks")
        dunmora.click(dunmora.button(DELETE))
        return dunmora.alert(NOTHING_CHECKED)

    def assert_book(self, content):
        """The book has this content, and there is no other file in its folder."""
        self.assertEqual(self.book.read_bytes(), content)
        self.assertEqual([path.name for path in self.books.iterdir()], [self.book.name])
