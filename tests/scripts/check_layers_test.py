#!/usr/bin/env python3
"""Tests of scripts/check_layers.py on small trees of their own."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

CHECKER = pathlib.Path(__file__).resolve().parents[2] / "scripts" / "check_layers.py"


def check(files):
    """The checker's exit status and lines for a tree of these files."""
    with tempfile.TemporaryDirectory() as folder:
        for name, lines in files.items():
            file = pathlib.Path(folder, name)
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_text("\n".join(lines) + "\n", encoding="utf-8")
        run = subprocess.run([sys.executable, CHECKER, folder], capture_output=True, text=True, check=False)
        return run.returncode, run.stdout.splitlines()


class CheckLayers(unittest.TestCase):
    def assert_allowed(self, files):
        self.assertEqual(check(files), (0, ["layers: every include is allowed"]))

    def assert_fault(self, name, include, fault):
        self.assertEqual(check({name: ["#pragma once", include]}), (1, [fault]))

    def test_allows_what_the_architecture_allows(self):
        self.assert_allowed({
            "platform/Person.h": ["#include <string_view>"],
            "platform/AddressBook.h": ['#include "platform/Person.h"', "#include <span>"],
            "engine/Finder.h": ['#include "platform/AddressBook.h"'],
            "engine/Finder.cpp": ['#include "engine/Finder.h"', "#include <algorithm>", '#include "app/Settings.h"'],
            "app/Settings.h": ["#include <string>"],
            "adapters/defaults/Defaults.cpp": ["#include <fcntl.h>"],
            "adapters/vcard/Book.h": ['#include "platform/AddressBook.h"'],
            "adapters/vcard/Book.cpp": ["#include <unistd.h>", "#include <sys/stat.h>", "#include <xxhash.h>"],
            "programs/dunmora-cli/main.cpp": ["#include <CLI/CLI.hpp>", '#include "adapters/vcard/Book.h"',
                                              '#include "adapters/defaults/Defaults.h"', '#include "engine/Finder.h"'],
            "programs/dunmora/main.cpp": ["#include <CLI/CLI.hpp>", "#include <QString>", "#include <unistd.h>",
                                          '#include "adapters/bundle/Bundle.h"', '#include "adapters/posix/Process.h"'],
            "adapters/bundle/Bundle.cpp": ['#include "platform/Person.h"'],
        })

    def test_leaves_tests_alone(self):
        self.assert_allowed({"tests/engine/Finder_test.cpp": ["#include <gtest/gtest.h>", "#include <QString>"]})

    def test_keeps_the_ports_free_of_the_core(self):
        self.assert_fault("platform/Alert.h", '#include "engine/Finder.h"',
                          'platform/Alert.h:2: platform may not include "engine/Finder.h"')

    def test_keeps_the_core_free_of_adapters(self):
        self.assert_fault("engine/Finder.cpp", '#include "adapters/vcard/Book.h"',
                          'engine/Finder.cpp:2: engine may not include "adapters/vcard/Book.h"')

    def test_keeps_the_core_free_of_a_toolkit(self):
        self.assert_fault("app/Settings.cpp", "#include <QSettings>",
                          "app/Settings.cpp:2: app may not include <QSettings>")

    def test_keeps_the_core_free_of_the_operating_system(self):
        self.assert_fault("engine/Finder.cpp", "#include <unistd.h>",
                          "engine/Finder.cpp:2: engine may not include <unistd.h>")

    def test_keeps_the_vcard_adapter_free_of_qt(self):
        self.assert_fault("adapters/vcard/Book.cpp", "#include <QFile>",
                          "adapters/vcard/Book.cpp:2: adapters/vcard may not include <QFile>")

    def test_keeps_the_vcard_adapter_free_of_glib(self):
        self.assert_fault("adapters/vcard/Book.cpp", "#  include <glib.h>",
                          "adapters/vcard/Book.cpp:2: adapters/vcard may not include <glib.h>")

    def test_keeps_the_vcard_adapter_free_of_the_core(self):
        self.assert_fault("adapters/vcard/Book.cpp", '#include "engine/Finder.h"',
                          'adapters/vcard/Book.cpp:2: adapters/vcard may not include "engine/Finder.h"')

    def test_lets_the_module_alone_know_glib(self):
        self.assert_allowed({
            "platform/Error.h": ["#include <string>"],
            "adapters/vcard/Cards.h": ["#include <string>"],
            "adapters/eds/Service.h": ["#include <string>"],
            "adapters/eds/Book.cpp": ['#include "adapters/eds/Service.h"', '#include "adapters/vcard/Cards.h"',
                                      "#include <dlfcn.h>"],
            "adapters/eds/module/Service.cpp": ['#include "adapters/eds/Service.h"', '#include "platform/Error.h"',
                                                "#include <libebook/libebook.h>"],
        })
        self.assert_fault("adapters/eds/Book.cpp", "#include <gio/gio.h>",
                          "adapters/eds/Book.cpp:2: adapters/eds may not include <gio/gio.h>")

    def test_keeps_everybody_out_of_the_module(self):
        self.assert_fault("adapters/eds/Book.cpp", '#include "adapters/eds/module/Service.h"',
                          'adapters/eds/Book.cpp:2: adapters/eds may not include "adapters/eds/module/Service.h"')
        self.assert_fault("programs/dunmora/main.cpp", '#include "adapters/eds/module/Service.h"',
                          'programs/dunmora/main.cpp:2: programs/dunmora may not include '
                          '"adapters/eds/module/Service.h"')

    def test_keeps_qt_out_of_the_preferences(self):
        self.assert_fault("adapters/defaults/Defaults.cpp", "#include <QSettings>",
                          "adapters/defaults/Defaults.cpp:2: adapters/defaults may not include <QSettings>")

    def test_keeps_qt_out_of_the_terminal_program(self):
        self.assert_fault("programs/dunmora-cli/main.cpp", "#include <QCoreApplication>",
                          "programs/dunmora-cli/main.cpp:2: programs/dunmora-cli may not include <QCoreApplication>")

    def test_keeps_the_programs_apart(self):
        self.assert_fault("programs/dunmora/main.cpp", '#include "programs/dunmora-cli/Table.h"',
                          'programs/dunmora/main.cpp:2: programs/dunmora may not include "programs/dunmora-cli/Table.h"')

    def test_keeps_programs_out_of_adapters(self):
        self.assert_fault("adapters/vcard/Book.cpp", '#include "programs/dunmora-cli/Table.h"',
                          'adapters/vcard/Book.cpp:2: adapters/vcard may not include "programs/dunmora-cli/Table.h"')

    def test_wants_includes_from_the_root(self):
        self.assert_fault("engine/Finder.cpp", '#include "Finder.h"',
                          'engine/Finder.cpp:2: engine may not include "Finder.h"')

    def test_wants_an_include_that_can_be_read(self):
        self.assert_fault("engine/Finder.cpp", "#include HEADER",
                          "engine/Finder.cpp:2: an include names its file itself")

    def test_reports_a_file_in_no_room(self):
        self.assert_fault("adapters/floppy/Book.h", "#include <string>",
                          "adapters/floppy/Book.h: is in no room that scripts/check_layers.py knows")

    def test_reports_a_circle(self):
        self.assertEqual(check({
            "app/Settings.h": ['#include "engine/Finder.h"'],
            "engine/Finder.h": ['#include "engine/Group.h"'],
            "engine/Group.h": ['#include "app/Settings.h"'],
        }), (1, ["circle: app/Settings.h -> engine/Finder.h -> engine/Group.h -> app/Settings.h"]))


if __name__ == "__main__":
    unittest.main()
