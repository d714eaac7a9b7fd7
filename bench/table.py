#!/usr/bin/env python3
"""Measures the program next to others and prints one table in Markdown. No time is a failure.

    table.py PROGRAMS [--binary FOLDER] [--people N,...] [--no-peers] [--no-windows] [--no-profile]
             [--brief] [--save FILE] [--before FILE] [--pages]

PROGRAMS is the folder with the benchmarks' programs; see --help for the rest.
"""

import argparse
import dataclasses
import json
import pathlib
import sys
import tempfile

import report
import windows
from measuring import REPETITIONS, Cost, Failed, Meter
from plot import plot
from profile_modules import Profile
from runs import EVCARD, FLOOR, MATCH, Row, Runs

ROOT = pathlib.Path(__file__).resolve().parents[1]
SIZES = (1_000, 10_000, 100_000, 1_000_000)
ROWS_IN_WINDOW = 100_000
IN_THE_PLOT = (FLOOR, "`wc -l`", "`list --quiet`, few rows", "`list --quiet`, everybody in rows",
               "`delete --quiet`, half of the people", EVCARD, "KContacts, parsing only", "vobject, grouping by name",
               "comparing every pair of names")
# The pages with measurements, and the markers between which they are.
PAGES = {ROOT / "docs/performance.md": ("table", "profile", "waits", "parts"), ROOT / "README.md": ("summary",)}


def parse(arguments):
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("programs", type=pathlib.Path, help="the folder with the benchmarks' programs")
    parser.add_argument("--binary", type=pathlib.Path, metavar="FOLDER",
                        help="measure the programs in this folder, for example of an older build, not those in PROGRAMS")
    parser.add_argument("--people", type=lambda text: [int(number) for number in text.split(",")], default=SIZES,
                        metavar="N,...", help="sizes of the books (default: 1000,10000,100000,1000000)")
    parser.add_argument("--no-peers", action="store_true", help="omit the other vCard readers and the comparison of every pair")
    parser.add_argument("--no-windows", action="store_true", help="omit the windows")
    parser.add_argument("--no-profile", action="store_true", help="omit the instructions of each module")
    parser.add_argument("--brief", action="store_true",
                        help="run everything once on very little input, to see that it runs; the figures mean nothing")
    parser.add_argument("--save", type=pathlib.Path, metavar="FILE", help="also store the measurements, for --before")
    parser.add_argument("--before", type=pathlib.Path, metavar="FILE",
                        help="also compare with the measurements that --save has stored in this file")
    parser.add_argument("--pages", action="store_true",
                        help="also write the tables and the plot into docs/performance.md and README.md")
    options = parser.parse_args(arguments)
    if options.brief:
        options.people = [100]
    return options


def announce(row):
    print(f"{row.run}, {row.people:,}: {report.duration(row.cost.wall)}", file=sys.stderr)


def stored(rows):
    return json.dumps([dataclasses.asdict(row) for row in rows], indent=1) + "\n"


def read_back(text):
    return [Row(**{**row, "cost": Cost(**row["cost"])}) for row in json.loads(text)]


def measure_windows(meter, binary, brief):
    """The windows' two tables, or none where their benchmarks are not built."""
    rows = 1_000 if brief else ROWS_IN_WINDOW
    texts = {}
    if (binary / "event_loop_bench").exists():
        texts["waits"] = report.waits_text(windows.waits(meter, binary / "event_loop_bench", rows), rows)
    if (binary / "qt_bench").exists():
        texts["parts"] = report.parts_text(windows.parts(meter, binary / "qt_bench", brief))
    if len(texts) < 2:
        print("omitted: the windows, whose benchmarks are not in that folder", file=sys.stderr)
    return texts


def measure_profile(meter, binary, folder, brief):
    """The table of the modules' instructions, or none where valgrind is not installed."""
    if not Profile.is_possible():
        print("omitted: the instructions of each module: valgrind is not installed", file=sys.stderr)
        return {}
    profile = Profile(meter, binary / "dunmora-cli", pathlib.Path(folder), brief)
    return {"profile": report.profile_text(profile.measure(MATCH))}


def write_pages(table, texts):
    """Writes the measurements into the pages, each between its markers."""
    for page, names in PAGES.items():
        text = page.read_text(encoding="utf-8")
        for name in names:
            if name in texts:
                text = report.filled(text, name, texts[name])
        page.write_text(text, encoding="utf-8")
    (ROOT / "docs/performance.svg").write_text(plot(table, IN_THE_PLOT), encoding="utf-8")


def main(arguments):
    options = parse(arguments)
    binary = options.binary or options.programs
    with tempfile.TemporaryDirectory(prefix="dunmora-bench-") as folder:
        meter = Meter(options.programs.resolve(), folder, 1 if options.brief else REPETITIONS)
        runs = Runs(meter, binary.resolve(), folder, announce, not options.no_peers)
        try:
            runs.measure(options.people)
            texts = {}
            if not options.no_profile:
                texts.update(measure_profile(meter, binary.resolve(), folder, options.brief))
            if not options.no_windows:
                texts.update(measure_windows(meter, binary.resolve(), options.brief))
        except Failed as failure:
            print(f"table: failed: {failure}", file=sys.stderr)
            return 1
    for title, why in runs.missing.items():
        print(f"omitted: {title}: {why}", file=sys.stderr)
    table = report.Table(runs.rows)
    texts["table"] = table.text()
    texts["summary"] = table.summary()
    for name in ("table", "profile", "waits", "parts"):
        if name in texts:
            print(texts[name])
    if options.save:
        options.save.write_text(stored(runs.rows), encoding="utf-8")
    if options.before:
        print(report.comparison(report.Table(read_back(options.before.read_text(encoding="utf-8"))), table))
    if options.pages:
        write_pages(table, texts)
    for title, why in runs.failed.items():
        print(f"table: failed: {title}: {why}", file=sys.stderr)
    return 1 if runs.failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
