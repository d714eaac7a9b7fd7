"""The program `dunmora` as its user sees it: the main window, the dialogs, the table."""

import collections
import re

from accessibility import Gone
from program import Program

# The match fields that are on until the user chooses others.
DEFAULT_FIELDS = ("First name", "Last name")
MOBILE_FIELD = "Mobile phone number"
FIELDS = (*DEFAULT_FIELDS, "Nickname", "Home phone number", "Work phone number", MOBILE_FIELD)

COLUMNS = ("Delete", "First Name", "Last Name", "Nickname", "Home", "Work", "Mobile", "Modified")
MARK = 0
# The texts of a row: row.first_name and so on.
Row = collections.namedtuple("Row", [title.lower().replace(" ", "_") for title in COLUMNS[MARK + 1:]])

# The line end in the message is shown as a line end.
CONFIRMATION = (
    "Confirm to delete",
    "The checked contacts will be deleted from Address Book. \nDo you really want to continue?",
)
# The button of the command, whose title has the number of people checked.
DELETE = r"Delete( [\d,]+)? Checked…?"
NOTHING_CHECKED = "No contact checked to be deleted!"
NO_BOOK = ("No address book is open. Choose File > Open… to open a vCard file, "
           "or File > Open Folder… to open a folder of them.")
SEVERAL_BOOKS = "One address book is opened at a time. Drop a single file or folder."
NO_FIELD = "You should choose at least one field as match condition!"


def is_main(window):
    return bool(window.find_all("menu bar"))


def is_dialog(window):
    return len(window.find_all("check box")) == len(FIELDS) and not is_main(window)


def is_progress(window):
    return bool(window.find_all("progress bar"))


def is_alert(window):
    return window.role == "alert message"


def is_update(window):
    return window.name.startswith("Software Update")


def is_shortcuts(window):
    return window.name.startswith("Keyboard Shortcuts")


def is_open_panel(window):
    return window.role in ("dialog", "file chooser") and bool(window.find_all("text"))


def texts_of(window):
    """Returns the texts of a window's labels, from top to bottom."""
    labels = [label for label in window.find_all("label") if label.name]
    return [label.name for label in sorted(labels, key=lambda label: label.extents[1])]


class Dunmora(Program):
    """One run of the program."""

    @property
    def main(self):
        return self.wait_for_window(is_main, "main window")

    @property
    def dialog(self):
        return self.wait_for_window(is_dialog, "match-field dialog")

    def click_field(self, dialog, name):
        """Clicks a match field once the dialog is active: a click is lost while the window manager still places it."""
        self.wait_until_active(dialog)
        self.click(dialog.find("check box", name))

    @property
    def progress(self):
        return self.wait_for_window(is_progress, "progress window")

    @property
    def open_panel(self):
        return self.wait_for_window(is_open_panel, "open panel")

    def choose_book(self, path):
        """Opens a book in the open panel of the program itself."""
        panel = self.open_panel
        self.type(panel, str(path))
        self.press(panel, "enter")

    def alert(self, *texts):
        """Waits for an alert with these texts and returns it. The one before it, which is closing, has none."""
        def says_them(window):
            try:
                return is_alert(window) and texts_of(window) == list(texts)
            except Gone:
                return False

        return self.wait_for_window(says_them, f"alert that says {texts!r}")

    def wait_for_main_alone(self):
        """Waits until only the main window is shown and returns it."""
        main = self.main
        self.wait_for(lambda: self.windows == [main], "end of the other windows")
        self.wait_until_active(main)
        return main

    # The main window

    @property
    def table(self):
        return self.wait_for(lambda: self.main.find("table"), "table")

    def total(self, text):
        """Waits until the total line has this text."""
        self.wait_for(lambda: self.main.find_all("label", text), f"total line that says {text!r}")

    def label(self, pattern):
        """Waits for a label in the main window whose whole text matches."""
        def found():
            return next((label for label in self.main.find_all("label") if re.fullmatch(pattern, label.name)), None)

        return self.wait_for(found, f"label {pattern!r}")

    def button(self, pattern, window=None):
        """Waits for an enabled button whose whole text matches."""
        def found():
            buttons = (window or self.main).find_all("push button", states=["enabled"])
            return next((button for button in buttons if re.fullmatch(pattern, button.name)), None)

        return self.wait_for(found, f"button {pattern!r}")

    def has_button(self, pattern):
        return any(re.fullmatch(pattern, button.name) for button in self.main.find_all("push button"))

    def rows(self):
        """Returns the texts of the table's rows, without the mark."""
        table = self.table
        return [Row(*(self.text_of(table.cell(row, column), COLUMNS[column])
                      for column in range(MARK + 1, len(COLUMNS))))
                for row in range(table.row_count)]

    @staticmethod
    def text_of(cell, title):
        """Returns the cell's text. Its accessible name is the column's title and that text, or "empty"."""
        name = cell.name
        if not name.startswith(f"{title}: "):
            raise AssertionError(f"a cell of the column {title!r} has the name {name!r}")
        text = name.removeprefix(f"{title}: ")
        return "" if text == "empty" else text

    def names(self):
        """Returns the first and last name of each row."""
        return [(row.first_name, row.last_name) for row in self.rows()]

    def marks(self):
        """Returns for each row whether it is checked."""
        table = self.table
        return [table.cell(row, MARK).has("checked") for row in range(table.row_count)]

    def focus_by_tab(self, control):
        """Presses Tab until the control has the focus."""
        main = self.main
        for _ in range(20):
            focused = self.wait_for(lambda: main.find(states=["focused"]), "focused control")
            if focused == control:
                return
            self.press(main, "tab")
            self.wait_for(lambda focused=focused: main.find(states=["focused"]) not in (None, focused), "next control")
        raise AssertionError(f"Tab does not reach {control.name!r}")

    def click_mark(self, row):
        """Clicks the check box of a row, which is at the left of its cell."""
        cell = self.table.cell(row, MARK)
        self.wait_for(lambda: cell.has("showing"), f"row {row} on the screen")
        x, y, _, height = self.extents(cell)
        self.screen.click((x, y, height, height))

    def select(self, row, column=1):
        """Clicks a cell and waits until its row is selected: a key pressed right away could overtake the click, which
        the window manager delays until it has raised the window."""
        self.click(self.table.cell(row, column))
        self.wait_for(lambda: self.table.cell(row, column).has("selected"), f"selection of row {row}")

    def select_all(self):
        """Selects every row of the table."""
        self.select(0)
        self.press(self.main, "ctrl+a")

    def wait_for_marks(self, *marks):
        self.wait_for(lambda: self.marks() == list(marks), f"marks {marks}")

    # Whole steps of a review

    def search(self):
        """Confirms the match fields unchanged and waits until the search is over."""
        self.press(self.dialog, "enter")
        return self.wait_until_idle()

    def wait_until_idle(self):
        """Waits until no job is running, when another one can be started."""
        self.button("Reload")
        return self.wait_for_main_alone()

    def choose(self, menu, *items):
        """Clicks an item of a menu or a submenu: choose("Edit", "Keep One of Each")."""
        main = self.main
        self.wait_until_active(main)
        self.click(self.wait_for(lambda: main.find("menu bar").find("menu item", menu), f"menu {menu!r}"))
        for item in items:
            self.click(self.wait_for(lambda item=item: self.menu_entry(item), f"entry {item!r}"))

    def menu_entry(self, item):
        """Returns an entry of an open menu, which may open a submenu; None while it cannot be used."""
        states = ["showing", "enabled"]
        return self.main.find("menu item", item, states) or self.main.find("menu", item, states)
