#!/usr/bin/env python3
"""Checks the user guide in docs/guide against the program.

    python3 scripts/check_guide.py [ROOT]
    python3 scripts/check_guide.py --html FOLDER [ROOT]    checks the HTML that the build has made of it

In the guide a link leads to another page of the guide, a picture is one of docs/screenshots, and what is bold is a name
from the program, letter for letter: **File > Open…** (Ctrl+O) is a command of the menus with its shortcut, any other a
title of a window or a text of the sources. The options of both programs are those that their parsers know.
"""

import html.parser
import pathlib
import re
import sys
import urllib.parse
import xml.etree.ElementTree

PAGES = "docs/guide"
FIRST_PAGE = "index.md"
PICTURES = "docs/screenshots"
INTERFACES = "adapters/qt/interfaces"
MAIN_WINDOW = "MainWindow.ui"
WINDOWED_PROGRAM = "programs/dunmora"
TERMINAL_PROGRAM = "programs/dunmora-cli"
# Where the texts of windows and alerts are written.
TEXTS = ("base", "review", "ui", "update", WINDOWED_PROGRAM)

# The keys of the standard commands of the interface files, outside a Mac.
STANDARD_KEYS = {"Close": "Ctrl+W", "Copy": "Ctrl+C", "Find": "Ctrl+F", "Open": "Ctrl+O", "Quit": "Ctrl+Q",
                 "Refresh": "F5"}

CODE_BLOCK = re.compile(r"(?m)(?:^(?: {4}|\t).*\n?)+")
CODE_SPAN = re.compile(r"`[^`\n]+`")
LINK = re.compile(r"(!?)\[[^\]]*\]\(([^)]*)\)")
BOLD = re.compile(r"\*\*(.+?)\*\*(?: \(([A-Z][\w?+]*)\))?", re.DOTALL)
OPTION = re.compile(r"(?<![\w-])--[a-z][a-z-]*")
WINDOWED_OPTION = re.compile(r"\bdunmora +(--[a-z][a-z-]*)")
COMMAND = re.compile(r"\bdunmora-cli +([a-z]+)")
LITERAL = re.compile(r'"((?:[^"\\\n]|\\.)*)"')


def without_mnemonic(title):
    return re.sub("&(.)", r"\1", title)


def one_line(text):
    return " ".join(text.split())


def property_of(element, name):
    """Returns the text of a property of an interface file; None if it is not set."""
    for found in element.findall("property"):
        if found.get("name") == name:
            return "".join(found.itertext()).strip()
    return None


class Interfaces:
    """The names that the interface files give to the user.

    commands maps the path of a menu command, such as "File > Open…", to its keys, which may be None; titles holds every
    other text.
    """

    def __init__(self, folder):
        self.commands, self.titles = {}, set()
        for file in sorted(folder.glob("*.ui")):
            root = xml.etree.ElementTree.parse(file).getroot()
            self.titles.update(without_mnemonic(text.text or "") for text in root.iter("string")
                               if text.get("notr") != "true")
            if file.name == MAIN_WINDOW:
                self.actions = {action.get("name"): action for action in root.iter("action")}
                for bar in root.iter("widget"):
                    if bar.get("class") == "QMenuBar":
                        self.add_menu(bar, "")

    def add_menu(self, menu, path):
        submenus = {child.get("name"): child for child in menu.findall("widget")}
        for entry in menu.findall("addaction"):
            name = entry.get("name")
            if name in submenus:
                title = path + without_mnemonic(property_of(submenus[name], "title"))
                self.commands[title] = None
                self.add_menu(submenus[name], title + " > ")
            elif name in self.actions:
                action = self.actions[name]
                standard = property_of(action, "standardKey")
                keys = STANDARD_KEYS[standard] if standard else property_of(action, "shortcut")
                self.commands[path + without_mnemonic(property_of(action, "text"))] = keys


def literals_in(folders):
    """Returns every string literal of the C++ sources in the folders."""
    texts = set()
    for folder in folders:
        for file in folder.glob("*.[ch]*"):
            if file.suffix in (".cpp", ".h"):
                texts.update(LITERAL.findall(file.read_text(encoding="utf-8")))
    return texts


class Check:
    """The faults of the guide, one line each."""

    def __init__(self, root):
        self.root, self.faults = root, []
        self.interfaces = Interfaces(root / INTERFACES)
        self.texts = literals_in(root / folder for folder in TEXTS)
        self.windowed = literals_in([root / WINDOWED_PROGRAM])
        self.terminal = literals_in([root / TERMINAL_PROGRAM])
        self.reached = set()
        pages = sorted((root / PAGES).glob("*.md"))
        titles = {}
        for page in pages:
            text = page.read_text(encoding="utf-8")
            title = text.partition("\n")[0]
            if not re.match(r"# \S", title):
                self.fault(page, "does not begin with its title")
            elif titles.setdefault(title, page) != page:
                self.fault(page, f"has the title of {titles[title].name}")
            self.check_command_lines(page, text)
            prose = CODE_SPAN.sub("", CODE_BLOCK.sub("", text))
            self.check_links(page, prose)
            self.check_names(page, prose)
        names = {page.name for page in pages}
        if FIRST_PAGE not in names:
            self.faults.append(f"{PAGES}: has no {FIRST_PAGE}")
        for name in sorted(names - self.reached - {FIRST_PAGE}):
            self.faults.append(f"{PAGES}/{name}: {FIRST_PAGE} does not link it")

    def fault(self, page, text):
        self.faults.append(f"{PAGES}/{page.name}: {text}")

    def check_links(self, page, prose):
        for is_picture, target in LINK.findall(prose):
            if is_picture:
                self.check_picture(page, target)
            elif "/" in target or not target.endswith(".md"):
                self.fault(page, f"the link to {target} leads out of the guide")
            elif not (page.parent / target).is_file():
                self.fault(page, f"there is no page {target}")
            elif page.name == FIRST_PAGE:
                self.reached.add(target)

    def check_picture(self, page, target):
        match = re.fullmatch(r"\.\./screenshots/([\w-]+)-light\.png", target)
        if not match:
            self.fault(page, f"{target} is not the light picture of a window in {PICTURES}")
            return
        for scheme in ("light", "dark"):
            name = f"{match[1]}-{scheme}.png"
            if not (self.root / PICTURES / name).is_file():
                self.fault(page, f"there is no picture {PICTURES}/{name}")

    def check_names(self, page, prose):
        for name, keys in BOLD.findall(prose):
            name = one_line(name)
            if name in self.interfaces.commands:
                own = self.interfaces.commands[name]
                if keys and keys != own:
                    self.fault(page, f"the keys of {name} are {own}, not {keys}")
            elif " > " in name:
                self.fault(page, f"no menu has {name}")
            elif name not in self.interfaces.titles and name not in self.texts:
                self.fault(page, f"no window and no text of the program has “{name}”")

    def check_command_lines(self, page, text):
        for option in sorted(set(WINDOWED_OPTION.findall(text)) - self.windowed):
            self.fault(page, f"dunmora has no option {option}")
        for option in sorted(set(OPTION.findall(WINDOWED_OPTION.sub("", text))) - self.terminal):
            self.fault(page, f"dunmora-cli has no option {option}")
        for command in sorted(set(COMMAND.findall(text)) - self.terminal):
            self.fault(page, f"dunmora-cli has no command {command}")


class Addresses(html.parser.HTMLParser):
    """Every address that a page of HTML names, and its title."""

    def __init__(self, text):
        super().__init__()
        self.found, self.title, self.is_in_title = [], "", False
        self.feed(text)

    def handle_starttag(self, tag, attrs):
        self.is_in_title = tag == "title"
        for name, value in attrs:
            if name in ("href", "src", "srcset"):
                self.found.append(value or "")

    def handle_data(self, data):
        if self.is_in_title:
            self.title += data

    def handle_endtag(self, tag):
        self.is_in_title = False


def html_faults(folder, root):
    """The faults of the pages that the build has made."""
    faults = []
    for page in sorted((root / PAGES).glob("*.md")):
        made = folder / f"{page.stem}.html"
        if not made.is_file():
            faults.append(f"{made.name}: was not made of {PAGES}/{page.name}")
            continue
        content = Addresses(made.read_text(encoding="utf-8"))
        title = page.read_text(encoding="utf-8").partition("\n")[0].removeprefix("# ")
        if not content.title.startswith(title):
            faults.append(f"{made.name}: its title is “{content.title}”")
        for address in content.found:
            target = folder / urllib.parse.unquote(address)
            if urllib.parse.urlsplit(address).scheme or not target.is_file() or target.suffix == ".md":
                faults.append(f"{made.name}: there is no {address}")
    return faults


def main(arguments):
    folder = None
    if arguments[:1] == ["--html"]:
        folder, arguments = pathlib.Path(arguments[1]), arguments[2:]
    root = pathlib.Path(arguments[0] if arguments else pathlib.Path(__file__).parents[1])
    faults = Check(root).faults if folder is None else html_faults(folder, root)
    print("\n".join(faults) if faults else "guide: every link, picture, command and option exists")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
