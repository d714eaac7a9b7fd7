#!/usr/bin/env python3
"""Writes a changelog as Debian's packages have it, from CHANGELOG.md.

    changelog.py CHANGELOG PACKAGE MAINTAINER     prints it
    changelog.py --date CHANGELOG                 prints the time of the newest release, in seconds since 1970
"""

import datetime
import email.utils
import pathlib
import re
import sys
import textwrap

RELEASE = re.compile(r"## \[([0-9.]+)\] - (\d{4}-\d{2}-\d{2})")


def releases(text):
    """Returns [(version, date, lines)] of the released versions, the newest first."""
    found = []
    lines = None
    for line in text.splitlines():
        if line.startswith("## "):
            release = RELEASE.fullmatch(line)
            lines = []
            if release:
                date = datetime.datetime.fromisoformat(release[2]).replace(hour=12, tzinfo=datetime.timezone.utc)
                found.append((release[1], date, lines))
        elif lines is not None:
            lines.append(line)
    if not found:
        raise ValueError("the changelog has no release such as: ## [1.0] - 2026-01-31")
    return found


def blocks(lines):
    """Returns the paragraphs, headings and items of Markdown, each as one line."""
    found = []
    for line in lines:
        starts = line.startswith(("- ", "### ")) or not found or found[-1] == "" or found[-1].startswith("### ")
        if not line or starts:
            found.append(line)
        else:
            found[-1] += " " + line.strip()
    return [block for block in found if block]


def plain(text):
    """Returns a text of Markdown without links' addresses and marks of code."""
    return re.sub(r"\[([^]]*)\]\([^)]*\)", r"\1", text).replace("`", "")


def debian_changelog(text, package, maintainer):
    """Returns the changelog; an entry is for each release."""
    entries = []
    for version, date, lines in releases(text):
        entry = [f"{package} ({version}) stable; urgency=medium", ""]
        for block in blocks(lines):
            if block.startswith("### "):
                entry += [f"  [ {block[4:]} ]"]
            else:
                entry += textwrap.wrap(plain(block.removeprefix("- ")), 78, initial_indent="  * ",
                                       subsequent_indent="    ", break_long_words=False, break_on_hyphens=False)
        entries.append("\n".join([*entry, "", f" -- {maintainer}  {email.utils.format_datetime(date)}", ""]))
    return "\n".join(entries)


def main():
    if sys.argv[1] == "--date":
        print(int(releases(pathlib.Path(sys.argv[2]).read_text(encoding="utf-8"))[0][1].timestamp()))
    else:
        sys.stdout.write(debian_changelog(pathlib.Path(sys.argv[1]).read_text(encoding="utf-8"), *sys.argv[2:]))


if __name__ == "__main__":
    main()
