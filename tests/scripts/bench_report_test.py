#!/usr/bin/env python3
"""Tests what bench/table.py does with its measurements."""

import pathlib
import sys
import tempfile
import unittest
import xml.etree.ElementTree

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "bench"))

import plot  # noqa: E402
import profile_modules  # noqa: E402
import report  # noqa: E402
import table  # noqa: E402
from measuring import Cost, Failed, Meter  # noqa: E402
from runs import EVCARD, FLOOR, NO_DESKTOP, Row, Runs  # noqa: E402

LIST = "`list --quiet`, few rows"


def row(run, people, wall, processor, peak=10_000_000, size=1_000_000, floor=FLOOR):
    return Row(run, people, Cost(wall, processor, peak), floor, size)


ROWS = [row(FLOOR, 100_000, 0.1, 0.1), row(EVCARD, 100_000, 0.8, 0.8), row(LIST, 100_000, 0.3, 0.4, peak=41_000_000),
        row(FLOOR, 1_000_000, 1, 1), row(LIST, 1_000_000, 4, 5)]


class Report(unittest.TestCase):
    def setUp(self):
        self.table = report.Table(ROWS)
        self.small, self.big = self.table.of(LIST)

    def test_compares_wall_times_with_the_floor_of_the_same_book(self):
        self.assertAlmostEqual(self.table.times_floor(self.small), 3)
        self.assertAlmostEqual(self.table.times_floor(self.big), 4)

    def test_compares_processor_times_with_evcard(self):
        self.assertAlmostEqual(self.table.times_evcard(self.small), 0.5)

    def test_has_no_ratio_to_evcard_where_it_was_not_measured(self):
        self.assertIsNone(self.table.times_evcard(self.big))

    def test_growth_is_the_cost_of_a_person_relative_to_100000_people(self):
        self.assertAlmostEqual(self.table.growth(self.big), 1.25)

    def test_memory_is_counted_above_the_file(self):
        self.assertAlmostEqual(report.above_the_file(self.small), 400)

    def test_memory_of_few_people_is_not_counted_a_person(self):
        self.assertIsNone(report.above_the_file(row(LIST, 1_000, 0.1, 0.1)))

    def test_a_program_that_does_not_keep_the_book_has_no_memory_above_the_file(self):
        self.assertIsNone(report.above_the_file(row("`cat`", 100_000, 0.1, 0.1, peak=999_999)))

    def test_prints_the_rows_by_run(self):
        lines = self.table.text().splitlines()

        self.assertEqual([line.split(" | ")[0] for line in lines[2:]],
                         [f"| {FLOOR}", f"| {FLOOR}", f"| {EVCARD}", f"| {LIST}", f"| {LIST}"])
        self.assertEqual(lines[5], f"| {LIST} | 100,000 | 3.00 | 0.30 s | 0.40 s | 4.00 | 1.00 | 41.0 MB | 400 | 0.50 |")

    def test_compares_two_builds_by_the_rows_that_both_have(self):
        before = report.Table([row(FLOOR, 100_000, 0.1, 0.1), row(LIST, 100_000, 0.9, 0.8)])

        lines = report.comparison(before, self.table).splitlines()

        self.assertEqual(len(lines), 4)
        self.assertEqual(lines[3], f"| {LIST} | 100,000 | 9.00 → 3.00 | 0.90 s → 0.30 s | 3.00 | 8.00 → 4.00 "
                                   "| 10.0 MB → 41.0 MB |")

    def test_stores_measurements_for_a_later_comparison(self):
        self.assertEqual(table.read_back(table.stored(ROWS)), ROWS)


CALLGRIND = """positions: line
events: Ir
summary: 999

ob=(1) /build/bin/dunmora-cli
fl=(1) /source/engine/ContactsParser.cpp
fn=(1) load
8 100
fi=(2) /usr/include/c++/12/bits/vector
+2 20
fe=(1)
cob=(2) /lib/libc.so.6
cfi=(3) ???
cfn=(2) malloc
calls=5 0
* 5000
-1 3

fl=(2)
fn=(3) std::vector::grow
4 7

ob=(2)
fl=(3)
fn=(2)
0 5000

ob=(1)
fl=(4) /elsewhere/adapters/vcard/Card.cpp
fn=(4) read
1 60
"""


class Profile(unittest.TestCase):
    def test_counts_each_function_s_own_instructions_for_its_module(self):
        self.assertEqual(profile_modules.instructions(CALLGRIND),
                         {"engine": 123, profile_modules.CPP_LIBRARY: 7, profile_modules.C_LIBRARY: 5000,
                          "adapters/vcard": 60})

    def test_shows_the_modules_that_weigh_something_the_heaviest_first(self):
        text = report.profile_text({"a run": {"text": 1, "engine": 100, "C library: x": 900},
                                    "another": {"engine": 100}})

        self.assertEqual(text.splitlines()[2:],
                         ["| in all | 1,001 | 100 |", "| C library: x | 900 | 0 |", "| `engine/` | 100 | 100 |"])


class Pages(unittest.TestCase):
    def test_replaces_what_is_between_the_markers(self):
        page = "before\n<!-- measured: x -->\nold\n<!-- end: x -->\nafter\n"

        self.assertEqual(report.filled(page, "x", "new \\1\n"),
                         "before\n<!-- measured: x -->\nnew \\1\n<!-- end: x -->\nafter\n")

    def test_refuses_a_page_without_the_markers(self):
        with self.assertRaises(ValueError):
            report.filled("text\n", "x", "new\n")

    def test_the_real_pages_have_the_markers(self):
        for page, names in table.PAGES.items():
            text = page.read_text(encoding="utf-8")
            for name in names:
                self.assertIn("new\n", report.filled(text, name, "new\n"))


class BrokenDesktop(Meter):
    """Writes no books, and cannot measure the desktop."""

    def __init__(self, folder, status):
        super().__init__(folder, folder)
        self.status = status

    def run(self, command):
        if command[0].name == "desktop_book":
            raise Failed("the command\nthe reason", self.status)


class Desktop(unittest.TestCase):
    def runs(self, status):
        with tempfile.TemporaryDirectory() as folder:
            programs = pathlib.Path(folder) / "bin"
            for name in ("bin/ebook_read", "bin/desktop_book", "lib/dunmora/dunmora-eds.so"):
                file = pathlib.Path(folder) / name
                file.parent.mkdir(parents=True, exist_ok=True)
                file.touch()
            runs = Runs(BrokenDesktop(programs, status), programs, folder, report=None)
            runs._measure_desktop(10)
            return runs

    def test_is_omitted_where_none_can_be_started(self):
        runs = self.runs(NO_DESKTOP)

        self.assertEqual((runs.missing, runs.failed), ({"the desktop's address book": "the reason"}, {}))

    def test_that_cannot_be_listed_is_a_failure(self):
        runs = self.runs(1)

        self.assertEqual((runs.missing, runs.failed), ({}, {"the desktop's address book": "the reason"}))


class Plot(unittest.TestCase):
    def test_draws_a_line_with_a_point_for_each_size_and_the_run_s_name(self):
        picture = xml.etree.ElementTree.fromstring(plot.plot(report.Table(ROWS), [LIST, "not measured"]))

        name = "{http://www.w3.org/2000/svg}"
        self.assertEqual(len(picture.findall(f"{name}polyline")), 1)
        self.assertEqual(len(picture.findall(f"{name}circle")), 2)
        self.assertIn("list --quiet, few rows", [text.text for text in picture.findall(f"{name}text")])

    def test_puts_equal_ratios_at_equal_distances(self):
        scale = plot.Scale(1, 1000, 0, 300)

        self.assertAlmostEqual(scale.at(10), 100)
        self.assertAlmostEqual(scale.at(100), 200)

    def test_names_at_the_same_height_do_not_cover_each_other(self):
        rows = [row(run, 1_000, 1, 1) for run in ("a", "b")]

        picture = xml.etree.ElementTree.fromstring(plot.plot(report.Table(rows), ["a", "b"]))

        heights = [float(text.get("y")) for text in picture.iter() if text.text in ("a", "b")]
        self.assertGreaterEqual(abs(heights[0] - heights[1]), 12)


if __name__ == "__main__":
    unittest.main()
