#!/usr/bin/env python3
"""Tests the desktop entry and the metainfo: those that the build wrote, and those of other settings and changelogs.

    desktop_files_test.py PATH-OF-CMAKE FOLDER APP-ID VERSION [UNITTEST-OPTION]...
"""

import configparser
import pathlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree

ROOT = pathlib.Path(__file__).resolve().parents[2]
TOOLS = ("desktop-file-validate", "appstreamcli")
FINDING = re.compile(r"^[EWIP]: \S+: (\S+)", re.M)


def size_of_picture(file):
    """Returns the width and the height of a PNG."""
    return struct.unpack(">II", file.read_bytes()[16:24])


class DesktopFilesCase(unittest.TestCase):
    cmake: str
    folder: pathlib.Path
    app_id: str
    version: str

    def written(self, **settings):
        """A folder with the files of these settings. The id and the address of the screenshots have a default."""
        folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        settings = {"DUNMORA_APP_ID": self.app_id, "DUNMORA_SCREENSHOTS": "https://dunmora.example.com/screenshots",
                    "DUNMORA_DESKTOP_FILES": folder, **settings}
        run = subprocess.run([self.cmake, *(f"-D{name}={value}" for name, value in settings.items()), "-P",
                              ROOT / "cmake/DesktopFiles.cmake"], capture_output=True, text=True, check=False)
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        return folder

    def findings(self, folder):
        """Returns the tags of everything that AppStream's validator has to say about the metainfo."""
        run = subprocess.run(["appstreamcli", "validate", "--no-net", "--no-color", self.metainfo_file(folder)],
                             capture_output=True, text=True, check=False)
        tags = FINDING.findall(run.stdout)
        self.assertTrue(tags or run.returncode == 0, run.stdout + run.stderr)
        return tags

    def metainfo_file(self, folder):
        return folder / f"{self.app_id}.metainfo.xml"

    def metainfo(self, folder):
        return xml.etree.ElementTree.parse(self.metainfo_file(folder)).getroot()


class DesktopEntry(DesktopFilesCase):
    def setUp(self):
        self.file = self.folder / f"{self.app_id}.desktop"
        self.entry = configparser.ConfigParser(interpolation=None, delimiters="=")
        self.entry.optionxform = str
        self.entry.read(self.file, encoding="utf-8")
        self.main = self.entry["Desktop Entry"]

    def test_has_nothing_that_the_validator_objects_to(self):
        run = subprocess.run(["desktop-file-validate", self.file], capture_output=True, text=True, check=False)

        self.assertEqual((run.returncode, run.stdout, run.stderr), (0, "", ""))

    def test_is_of_an_application_for_contacts_that_opens_vcards(self):
        self.assertEqual(self.main["Categories"], "Office;ContactManagement;")
        self.assertEqual(self.main["MimeType"], "text/vcard;text/x-vcard;")
        self.assertEqual(self.main["Exec"], "dunmora %f")
        self.assertLess({"contacts", "duplicates", "vCard"}, set(self.main["Keywords"].split(";")))

    def test_has_the_id_of_the_windows_and_icons(self):
        self.assertEqual((self.main["StartupWMClass"], self.main["Icon"]), (self.app_id, self.app_id))

    def test_describes_exactly_the_actions_that_it_lists(self):
        actions = [f"Desktop Action {name}" for name in self.main["Actions"].split(";") if name]

        self.assertTrue(actions)
        self.assertEqual(self.entry.sections(), ["Desktop Entry", *actions])
        for action in actions:
            self.assertRegex(self.entry[action]["Exec"], "^dunmora ")


class Metainfo(DesktopFilesCase):
    def test_has_only_one_finding_because_no_licence_is_claimed(self):
        self.assertEqual(self.findings(self.written()), ["metadata-license-missing"])

    def test_has_no_finding_with_the_licences_of_a_packager(self):
        folder = self.written(DUNMORA_LICENSE="MIT OR Apache-2.0", DUNMORA_METADATA_LICENSE="CC0-1.0")

        self.assertEqual(self.findings(folder), [])
        self.assertEqual(self.metainfo(folder).findtext("project_license"), "MIT OR Apache-2.0")
        self.assertEqual(self.metainfo(folder).findtext("metadata_license"), "CC0-1.0")

    def test_that_the_build_wrote_has_no_other_finding(self):
        self.assertLessEqual(set(self.findings(self.folder)), {"metadata-license-missing"})

    def test_claims_no_licence_by_default(self):
        metainfo = self.metainfo(self.written())

        self.assertIsNone(metainfo.find("project_license"))
        self.assertIsNone(metainfo.find("metadata_license"))

    def test_launches_the_desktop_entry(self):
        metainfo = self.metainfo(self.folder)

        self.assertEqual(metainfo.findtext("id"), self.app_id)
        self.assertEqual(metainfo.findtext("launchable"), f"{self.app_id}.desktop")

    def test_names_a_web_site_only_with_https(self):
        self.assertIsNone(self.metainfo(self.written(DUNMORA_WEBSITE="http://example.com/")).find("url"))

        folder = self.written(DUNMORA_WEBSITE="https://example.com/?a=1&b=2")
        self.assertEqual(self.metainfo(folder).findtext("url"), "https://example.com/?a=1&b=2")
        self.assertEqual(self.findings(folder), ["metadata-license-missing"])

    def test_shows_screenshots_of_this_repository_in_their_size(self):
        images = self.metainfo(self.written(DUNMORA_SCREENSHOTS="https://example.com/a&b")).findall(".//image")

        self.assertGreaterEqual(len(images), 3)
        for image in images:
            address, _, name = image.text.rpartition("/")
            self.assertEqual(address, "https://example.com/a&b")
            self.assertEqual((int(image.get("width")), int(image.get("height"))),
                             size_of_picture(ROOT / "docs/screenshots" / name), name)

    def test_has_no_screenshots_without_their_address(self):
        folder = self.written(DUNMORA_SCREENSHOTS="")

        self.assertIsNone(self.metainfo(folder).find("screenshots"))
        self.assertEqual(self.findings(folder), ["metadata-license-missing"])


class Releases(DesktopFilesCase):
    CHANGELOG = """# Changelog

This is not in a release; [0.9] is only mentioned.

## [Unreleased]

### Added

- What is not released yet.

## [1.2] - 2031-02-03

Text with a [link](https://example.com/x),
in two lines; with `--code`.

### Fixed

- Less than < and more than >
  & an item in two lines.
- Another item.

### Added

- One more.

## [1.1] - 2030-12-31

- The last line"""

    def releases(self, changelog):
        file = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory())) / "CHANGELOG.md"
        file.write_text(changelog, encoding="utf-8")
        folder = self.written(DUNMORA_CHANGELOG=file)
        self.assertEqual(self.findings(folder), ["metadata-license-missing"])
        return self.metainfo(folder).findall("releases/release")

    def texts(self, release):
        """Returns the texts of the paragraphs and the lists of a release."""
        return ["".join(part.itertext()) if part.tag == "p" else ["".join(item.itertext()) for item in part]
                for part in release.find("description")]

    def test_are_those_of_the_changelog_with_their_dates(self):
        releases = self.releases(self.CHANGELOG)

        self.assertEqual([dict(release.items()) for release in releases],
                         [{"version": "1.2", "date": "2031-02-03"}, {"version": "1.1", "date": "2030-12-31"}])

    def test_have_the_texts_of_the_changelog(self):
        first, second = self.releases(self.CHANGELOG)

        self.assertEqual(self.texts(first), [
            "Text with a link, in two lines; with --code.", "Fixed:",
            ["Less than < and more than > & an item in two lines.", "Another item."], "Added:", ["One more."]])
        self.assertEqual([code.text for code in first.iter("code")], ["--code"])
        self.assertEqual(self.texts(second), [["The last line"]])

    def test_begin_with_the_version_that_is_built(self):
        newest = self.metainfo(self.folder).find("releases/release")

        self.assertEqual(newest.get("version"), self.version)
        self.assertTrue(self.texts(newest))


if __name__ == "__main__":
    DesktopFilesCase.cmake = sys.argv.pop(1)
    DesktopFilesCase.folder = pathlib.Path(sys.argv.pop(1))
    DesktopFilesCase.app_id, DesktopFilesCase.version = sys.argv.pop(1), sys.argv.pop(1)
    missing = [tool for tool in TOOLS if not shutil.which(tool)]
    if missing:
        sys.exit(f"{missing[0]} is not installed. Run scripts/install_packages.sh test.")
    unittest.main()
