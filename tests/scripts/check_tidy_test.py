#!/usr/bin/env python3
"""Tests that scripts/check_tidy.sh finds defects, although clang-tidy does not look at all that it parses."""

import pathlib
import shutil
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]

HEADER = """#pragma once

namespace dunmora {
class Number {};
int larger(int number);
}  // namespace dunmora
"""
SOURCE = """#include "tests/Header.h"

#include <gtest/gtest.h>

int dunmora::larger(int number)
{
    const int one = 1;
    const int* summand = &one;
    if (number > 1) {
        summand = &number;
    }
    return number + *summand;
}

TEST(Pointer, IsEmpty)
{
    const int* const pointer = nullptr;
    EXPECT_EQ(pointer, nullptr);
}
"""


class CheckTidyTest(unittest.TestCase):
    def check(self, header, source):
        """Checks one source, and returns the exit status and the output."""
        with tempfile.TemporaryDirectory() as folder:
            tests = pathlib.Path(folder, "tests")
            tests.mkdir()
            shutil.copy(ROOT / ".clang-tidy", folder)
            (tests / "Header.h").write_text(header)
            (tests / "Source.cpp").write_text(source.replace('"tests/', f'"{tests}/'))
            run = subprocess.run([ROOT / "scripts/check_tidy.sh", tests / "Source.cpp"], stdout=subprocess.PIPE,
                                 stderr=subprocess.STDOUT, text=True, check=False)
            return run.returncode, run.stdout

    def assert_reports(self, place, what, header=HEADER, source=SOURCE):
        status, output = self.check(header, source)
        self.assertNotEqual(status, 0)
        self.assertRegex(output, f"{place}:[0-9]+: error: .+{what}")

    def test_accepts_a_source_without_defects(self):
        self.assertEqual(self.check(HEADER, SOURCE), (0, "tidy: no warnings in 1 files\n"))

    def test_reports_a_defect_in_a_header(self):
        self.assert_reports(r"Header\.h:4", "readability-identifier-naming", header=HEADER.replace("Number", "number"))

    def test_reports_a_defect_in_a_test(self):
        self.assert_reports(r"Source\.cpp:17", "modernize-use-nullptr", source=SOURCE.replace("= nullptr", "= 0"))

    def test_reports_what_only_a_path_through_the_code_shows(self):
        self.assert_reports(r"Source\.cpp:12", "clang-analyzer-core",
                            source=SOURCE.replace("= &number", "= nullptr"))


if __name__ == "__main__":
    unittest.main(verbosity=2)
