#!/usr/bin/env python3
"""Tests the changelog of the packages for Debian: deb_changelog_test.py [UNITTEST-OPTION]..."""

import pathlib
import shutil
import subprocess
import sys
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "packaging/deb"))
import changelog

MAINTAINER = "Ann Lee <ann@example.com>"
TEXT = """# Changelog

What changes.

## [Unreleased]

- Not yet.

## [0.2] - 2027-01-31

### Changed

- Reads `.vcf` files
  in [folders](docs/folders.md); faster.
- Does more.

## [0.1] - 2026-11-23

The first
release.
"""


class DebChangelog(unittest.TestCase):
    def test_has_an_entry_for_each_release_as_debian_writes_them(self):
        self.assertEqual(changelog.debian_changelog(TEXT, "dunmora-cli", MAINTAINER), """\
dunmora-cli (0.2) stable; urgency=medium

  [ Changed ]
  * Reads .vcf files in folders; faster.
  * Does more.

 -- Ann Lee <ann@example.com>  Sun, 31 Jan 2027 12:00:00 +0000

dunmora-cli (0.1) stable; urgency=medium

  * The first release.

 -- Ann Lee <ann@example.com>  Mon, 23 Nov 2026 12:00:00 +0000
""")

    def test_wraps_long_lines(self):
        written = changelog.debian_changelog(f"## [1.0] - 2026-11-23\n- {'word ' * 40}\n", "dunmora", MAINTAINER)

        self.assertLessEqual(max(len(line) for line in written.splitlines()), 78)
        self.assertEqual(written.count("word"), 40)

    def test_refuses_a_changelog_without_a_release(self):
        with self.assertRaisesRegex(ValueError, "no release"):
            changelog.debian_changelog("# Changelog\n\n## [Unreleased]\n\n- Not yet.\n", "dunmora", MAINTAINER)

    def test_is_one_that_dpkg_can_read(self):
        if not shutil.which("dpkg-parsechangelog"):
            self.skipTest("dpkg-parsechangelog is not installed.")
        text = (ROOT / "CHANGELOG.md").read_text(encoding="utf-8")

        parsed = subprocess.run(["dpkg-parsechangelog", "-l-", "--all"], text=True, capture_output=True, check=True,
                                input=changelog.debian_changelog(text, "dunmora", MAINTAINER))

        self.assertEqual(parsed.stderr, "")
        self.assertIn(f"Version: {changelog.releases(text)[0][0]}\n", parsed.stdout)

    def test_dates_a_package_by_the_newest_release(self):
        run = subprocess.run([sys.executable, "-B", ROOT / "packaging/deb/changelog.py", "--date", "/dev/stdin"],
                             input=TEXT, text=True, capture_output=True, check=True)

        self.assertEqual(run.stdout, "1801396800\n")


if __name__ == "__main__":
    unittest.main()
