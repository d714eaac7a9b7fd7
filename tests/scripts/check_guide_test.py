#!/usr/bin/env python3
"""Tests scripts/check_guide.py on small guides, with the real interface files, pictures and sources."""

import contextlib
import io
import pathlib
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "scripts"))

import check_guide  # noqa: E402

SUCCESS = (0, ["guide: every link, picture, command and option exists"])
INDEX = "# Help\n\n[A page](page.md)\n"


def run(*arguments):
    output = io.StringIO()
    with contextlib.redirect_stdout(output):
        status = check_guide.main([str(argument) for argument in arguments])
    return status, output.getvalue().splitlines()


class GuideCase(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="dunmora-guide-")
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        for name in (check_guide.INTERFACES, check_guide.PICTURES, check_guide.TERMINAL_PROGRAM, *check_guide.TEXTS):
            (self.root / name).parent.mkdir(parents=True, exist_ok=True)
            (self.root / name).symlink_to(ROOT / name)

    def write(self, page, index=INDEX):
        (self.root / check_guide.PAGES).mkdir(parents=True, exist_ok=True)
        for name, text in (("index.md", index), ("page.md", page)):
            (self.root / check_guide.PAGES / name).write_text(text, encoding="utf-8")

    def check(self, page, index=INDEX):
        self.write(page, index)
        return run(self.root)

    def assert_fault(self, text, fault):
        self.assertEqual(self.check(f"# Page\n\n{text}\n"), (1, [f"docs/guide/page.md: {fault}"]))

    def assert_allowed(self, text):
        self.assertEqual(self.check(f"# Page\n\n{text}\n"), SUCCESS)


class Pages(GuideCase):
    def test_accepts_the_real_guide(self):
        self.assertEqual(run(), SUCCESS)

    def test_allows_links_between_pages_and_pictures_of_windows(self):
        self.assert_allowed("[Start](index.md) and ![The window](../screenshots/main-light.png)")

    def test_finds_a_page_that_does_not_exist(self):
        self.assert_fault("[Nothing](nothing.md)", "there is no page nothing.md")

    def test_finds_links_that_an_installed_guide_cannot_follow(self):
        for target in ("../../README.md", "https://example.org/", "index.md#in-short"):
            with self.subTest(target):
                self.assert_fault(f"[Away]({target})", f"the link to {target} leads out of the guide")

    def test_finds_a_picture_that_does_not_exist_in_light_and_dark(self):
        self.assertEqual(self.check("# Page\n\n![None](../screenshots/none-light.png)\n"),
                         (1, [f"docs/guide/page.md: there is no picture docs/screenshots/none-{scheme}.png"
                              for scheme in ("light", "dark")]))

    def test_finds_another_picture(self):
        self.assert_fault("![The plot](../performance.svg)",
                          "../performance.svg is not the light picture of a window in docs/screenshots")

    def test_finds_a_page_that_nobody_reaches(self):
        self.assertEqual(self.check("# Page\n", "# Help\n"), (1, ["docs/guide/page.md: index.md does not link it"]))

    def test_finds_a_page_without_a_title_of_its_own(self):
        self.assertEqual(self.check("Text\n"), (1, ["docs/guide/page.md: does not begin with its title"]))
        self.assertEqual(self.check("# Help\n"), (1, ["docs/guide/page.md: has the title of index.md"]))


class Names(GuideCase):
    def test_knows_commands_submenus_and_keys(self):
        for name in ("**File > Open…** (Ctrl+O)", "**Edit > Check\nSelected** (Ctrl+T)", "**Help > Website**",
                     "**File > Open Desktop Address Book > All**", "**View > Details** (F9), too"):
            with self.subTest(name):
                self.assert_allowed(name)

    def test_knows_the_titles_and_texts_of_other_windows(self):
        for name in ("**Check for updates at startup**", "**Leave Them Out**", "**Mobile**"):
            with self.subTest(name):
                self.assert_allowed(name)

    def test_finds_a_command_that_has_another_name_or_place(self):
        for name in ("File > Open...", "File > open…", "Edit > Open…", "File > OnOpen"):
            with self.subTest(name):
                self.assert_fault(f"**{name}**", f"no menu has {name}")

    def test_finds_other_keys(self):
        self.assert_fault("**Edit > Redo** (Ctrl+Y)", "the keys of Edit > Redo are Ctrl+Shift+Z, not Ctrl+Y")
        self.assert_fault("**Help > Website** (F2)", "the keys of Help > Website are None, not F2")

    def test_finds_a_text_that_the_program_does_not_have(self):
        self.assert_fault("**Merge**", "no window and no text of the program has “Merge”")

    def test_finds_unknown_options_and_commands_of_the_terminal_program(self):
        self.assert_fault("    dunmora-cli list --backwards", "dunmora-cli has no option --backwards")
        self.assert_fault("`dunmora-cli merge`", "dunmora-cli has no command merge")
        self.assert_allowed("    dunmora-cli delete contacts.vcf --dry-run")

    def test_finds_unknown_options_of_the_windowed_program(self):
        self.assert_fault("`dunmora --dry-run`", "dunmora has no option --dry-run")
        self.assert_allowed("`dunmora --choose`")

    def test_does_not_read_code_as_text(self):
        self.assert_allowed("    [no](link) **no name**\n\nand `**no name**`")


class Html(GuideCase):
    def check_made(self, page, name="page.html"):
        """Checks the HTML of a guide with two pages, of which one is this text."""
        self.write("# Page\n")
        made = self.root / "html"
        made.mkdir(exist_ok=True)
        (made / "index.html").write_text("<title>Help</title>", encoding="utf-8")
        (made / name).write_text(page, encoding="utf-8")
        return run("--html", made, self.root)

    def test_allows_files_beside_it(self):
        self.assertEqual(self.check_made('<title>Page – Dunmora</title><a href="index.html">'), SUCCESS)

    def test_finds_addresses_of_nothing_and_of_other_places(self):
        for address in ("none.html", "picture.png", "https://example.org/", "index.md"):
            with self.subTest(address):
                self.assertEqual(self.check_made(f'<title>Page</title><img src="{address}">'),
                                 (1, [f"page.html: there is no {address}"]))

    def test_finds_the_dark_picture_too(self):
        self.assertEqual(self.check_made('<title>Page</title><source srcset="dark.png">'),
                         (1, ["page.html: there is no dark.png"]))

    def test_finds_a_page_that_was_not_made_and_one_with_another_title(self):
        self.assertEqual(self.check_made("", "other.html"), (1, ["page.html: was not made of docs/guide/page.md"]))
        self.assertEqual(self.check_made("<title>Other</title>"), (1, ["page.html: its title is “Other”"]))


if __name__ == "__main__":
    unittest.main()
