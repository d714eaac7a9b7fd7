#!/usr/bin/env python3
"""Tests scripts/check_layers.py on small source trees with a small table, and on the real table."""

import contextlib
import io
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "scripts"))

import check_layers  # noqa: E402

REAL_DOCUMENT = (ROOT / "docs/architecture.md").read_text(encoding="utf-8")

MODULES = [
    "| `platform/` | the ports | | |",
    "| `engine/` | duplicates | `platform` | |",
    "| `update/` | versions | `platform`, `engine` | |",
    "| `adapters/posix/` | system calls | | POSIX |",
    "| `adapters/vcard/` | files | `platform`, `adapters/posix` | POSIX, xxHash |",
    "| `adapters/eds/` | the desktop's books | `platform`, `adapters/vcard` | |",
    "| `adapters/eds/module/` | its plug-in | `adapters/eds` | GLib |",
    "| `adapters/qt/` | windows | `platform` | Qt |",
    "| `programs/windows/` | one program | `engine`, `adapters/qt`, `adapters/vcard` | Qt |",
    "| `programs/terminal/` | another | `engine`, `adapters/vcard` | |",
    "| `tests/` | tests | everything | |",
]
LIBRARIES = [
    "| POSIX | `unistd.h`, `sys/stat.h` | `Iconv::Iconv` |",
    "| xxHash | `xxhash.h` | |",
    "| GLib | `glib.h` | |",
    "| Qt | `Q[A-Z]*`, `Qt[A-Z]*/*` | `Qt6::*` |",
]
SUCCESS = (0, ["layers: every include and link is allowed by docs/architecture.md"])


def document(modules, libraries=tuple(LIBRARIES)):
    return "\n".join(["# Architecture", "",
                      "| module | what it is | may include | libraries |", "|---|---|---|---|", *modules, "",
                      "| library | headers | CMake targets |", "|---|---|---|", *libraries, ""])


def folders_named_in(text):
    return re.findall("(?m)^[|] `([a-z/-]+)/` [|]", text)


def files_with_every_header(text, folders):
    """One file per module, which includes every header that the text allows it."""
    try:
        architecture = check_layers.Architecture(text)
    except check_layers.TableError:
        return {}
    return {f"{module}/EveryHeader.cpp": ["#include <" + pattern.replace("[A-Z]", "X").replace("*", "x") + ">"
                                          for library in libraries for pattern in architecture.headers[library]]
            for module, libraries in architecture.libraries.items() if module in folders}


def check(files, text=document(MODULES), folders=None):
    """Returns the checker's exit status and lines for a tree of these files, each given as its lines.

    The tree has the folders, by default those of the text, and in each a file with every header that it may include.
    """
    folders = folders_named_in(text) if folders is None else folders
    with tempfile.TemporaryDirectory() as root:
        for folder in folders:
            pathlib.Path(root, folder).mkdir(parents=True, exist_ok=True)
        tree = {"docs/architecture.md": text.splitlines(), **files_with_every_header(text, folders), **files}
        for name, lines in tree.items():
            file = pathlib.Path(root, name)
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_text("\n".join(lines) + "\n", encoding="utf-8")
        output = io.StringIO()
        with contextlib.redirect_stdout(output):
            status = check_layers.main([root])
        return status, output.getvalue().splitlines()


class CheckerCase(unittest.TestCase):
    def assert_allowed(self, files, text=document(MODULES)):
        self.assertEqual(check(files, text), SUCCESS)

    def assert_fault(self, name, include, fault):
        """One file with one include has this fault and no other."""
        self.assertEqual(check({name: ["#pragma once", include]}), (1, [f"{name}:2: {fault}"]))

    def assert_table_refused(self, text, fault):
        self.assertEqual(check({}, text), (1, [fault]))


class Includes(CheckerCase):
    def test_allows_what_the_table_allows(self):
        self.assert_allowed({
            "platform/Person.h": ["#include <string_view>"],
            "engine/Finder.h": ['#include "platform/Person.h"', "#include <span>"],
            "engine/Finder.cpp": ['#include "engine/Finder.h"', "#include <algorithm>"],
            "update/Reply.cpp": ['#include "engine/Finder.h"'],
            "adapters/vcard/Book.cpp": ["#include <unistd.h>", "#include <sys/stat.h>", "#include <xxhash.h>",
                                        '#include "adapters/posix/Descriptor.h"'],
            "adapters/eds/Book.cpp": ['#include "adapters/eds/Service.h"'],
            "adapters/eds/module/Service.cpp": ['#include "adapters/eds/Service.h"', "#include <glib.h>"],
            "adapters/qt/Window.cpp": ["#include <QWidget>", "#include <QtCore/qglobal.h>"],
            "programs/windows/main.cpp": ["#include <QString>", '#include "adapters/qt/Window.h"'],
        })

    def test_does_not_check_folders_that_may_include_everything(self):
        self.assert_allowed({"tests/engine/Finder_test.cpp": ["#include <gtest/gtest.h>", '#include "update/Reply.h"']})

    def test_rejects_a_core_module_that_includes_one_above_it(self):
        self.assert_fault("engine/Finder.cpp", '#include "update/Reply.h"',
                          'engine may not include "update/Reply.h"')

    def test_rejects_a_port_that_includes_the_core(self):
        self.assert_fault("platform/Alert.h", '#include "engine/Finder.h"',
                          'platform may not include "engine/Finder.h"')

    def test_rejects_a_core_module_that_includes_an_adapter(self):
        self.assert_fault("engine/Finder.cpp", '#include "adapters/vcard/Book.h"',
                          'engine may not include "adapters/vcard/Book.h"')

    def test_rejects_a_core_module_that_includes_a_toolkit(self):
        self.assert_fault("engine/Finder.cpp", "#include <QSettings>", "engine may not include <QSettings>")
        self.assert_fault("engine/Finder.cpp", "#include <QtCore/QString>", "engine may not include <QtCore/QString>")

    def test_rejects_a_core_module_that_includes_the_operating_system(self):
        self.assert_fault("engine/Finder.cpp", "#include <unistd.h>", "engine may not include <unistd.h>")

    def test_rejects_an_adapter_that_includes_the_core(self):
        self.assert_fault("adapters/qt/Table.cpp", '#include "engine/Finder.h"',
                          'adapters/qt may not include "engine/Finder.h"')

    def test_rejects_an_adapter_that_includes_one_not_named_for_it(self):
        self.assert_fault("adapters/qt/Table.cpp", '#include "adapters/vcard/Book.h"',
                          'adapters/qt may not include "adapters/vcard/Book.h"')

    def test_rejects_an_adapter_that_includes_the_library_of_another(self):
        self.assert_fault("adapters/vcard/Book.cpp", "#  include <glib.h>",
                          "adapters/vcard may not include <glib.h>")

    def test_rejects_an_adapter_that_includes_a_program(self):
        self.assert_fault("adapters/vcard/Book.cpp", '#include "programs/terminal/Table.h"',
                          'adapters/vcard may not include "programs/terminal/Table.h"')

    def test_rejects_a_program_that_includes_another(self):
        self.assert_fault("programs/windows/main.cpp", '#include "programs/terminal/Table.h"',
                          'programs/windows may not include "programs/terminal/Table.h"')

    def test_tells_a_module_from_the_one_inside_it(self):
        self.assert_fault("adapters/eds/Book.cpp", "#include <glib.h>", "adapters/eds may not include <glib.h>")
        self.assert_fault("adapters/eds/Book.cpp", '#include "adapters/eds/module/Service.h"',
                          'adapters/eds may not include "adapters/eds/module/Service.h"')

    def test_rejects_product_code_that_includes_a_test(self):
        self.assert_fault("engine/Finder.cpp", '#include "tests/FakeBook.h"',
                          'engine may not include "tests/FakeBook.h"')

    def test_rejects_an_include_that_is_not_from_the_root(self):
        for include in ("Finder.h", "../update/Reply.h", "engine/../update/Reply.h", "engine/./Finder.h",
                        "engine//Finder.h"):
            with self.subTest(include=include):
                self.assert_fault("engine/Finder.cpp", f'#include "{include}"',
                                  f'"{include}" is not the path of a file from the root')

    def test_rejects_an_include_that_is_a_macro(self):
        self.assert_fault("engine/Finder.cpp", "#include HEADER", "an include must name its file, not a macro")

    def test_reads_import_as_an_include(self):
        self.assert_fault("engine/Finder.mm", "#import <glib.h>", "engine may not include <glib.h>")

    def test_reads_every_kind_of_source_file(self):
        for suffix in ("h", "hpp", "inl", "c", "cc", "cpp", "m", "mm"):
            with self.subTest(suffix=suffix):
                self.assert_fault(f"engine/Finder.{suffix}", "#include <QString>", "engine may not include <QString>")


class UnusedHeaders(CheckerCase):
    FILES = {
        "adapters/posix/EveryHeader.cpp": [],
        "adapters/vcard/EveryHeader.cpp": ["#include <unistd.h>", "#include <xxhash.h>"],
    }
    FAULT = "docs/architecture.md: no module includes sys/stat.h of POSIX"

    def test_rejects_a_header_that_no_module_includes(self):
        self.assertEqual(check(self.FILES), (1, [self.FAULT]))

    def test_does_not_count_includes_that_are_not_allowed_or_not_checked(self):
        self.assertEqual(check({
            **self.FILES,
            "engine/Finder.cpp": ["#include <sys/stat.h>"],
            "tests/Finder_test.cpp": ["#include <sys/stat.h>"],
        }), (1, ["engine/Finder.cpp:1: engine may not include <sys/stat.h>", self.FAULT]))


class Cycles(CheckerCase):
    def test_rejects_a_cycle_between_headers(self):
        self.assertEqual(check({
            "engine/Finder.h": ['#include "engine/Group.h"'],
            "engine/Group.h": ['#include "engine/Key.h"'],
            "engine/Key.h": ['#include "engine/Finder.h"'],
        }), (1, ["headers include each other: engine/Finder.h -> engine/Group.h -> engine/Key.h -> engine/Finder.h"]))

    def test_rejects_a_cycle_between_modules(self):
        # No header includes itself here: only the modules form the cycle.
        self.assertEqual(check({
            "engine/Finder.cpp": ['#include "update/Reply.h"'],
            "update/Check.cpp": ['#include "engine/Group.h"'],
        }), (1, ['engine/Finder.cpp:1: engine may not include "update/Reply.h"',
                 "modules include each other: engine -> update -> engine"]))

    def test_refuses_a_table_that_allows_a_cycle(self):
        self.assert_table_refused(
            document(["| `text/` | | `base` | |", "| `base/` | | `platform` | |", "| `platform/` | | `text` | |"]),
            "docs/architecture.md: the table lets modules include each other: base -> platform -> text -> base")


class Folders(CheckerCase):
    def test_rejects_a_folder_without_a_row(self):
        for folder in ("adapters/floppy", "helpers", "adapters", "."):
            with self.subTest(folder=folder):
                self.assertEqual(check({f"{folder}/Book.h": [], f"{folder}/Book.mm": []}),
                                 (1, [f"{folder}: has source files but no row in docs/architecture.md"]))

    def test_rejects_a_row_without_a_folder(self):
        folders = [folder for folder in folders_named_in(document(MODULES)) if folder != "adapters/qt"]
        self.assertEqual(check({}, folders=folders),
                         (1, ["docs/architecture.md: the module adapters/qt has no folder"]))

    def test_does_not_read_the_build_folder(self):
        self.assert_allowed({"build/dev/CompilerId.cpp": ["#include <floppy.h>"]})


class Tables(CheckerCase):
    def test_refuses_a_document_without_a_table_of_modules(self):
        self.assert_table_refused("# Architecture\n",
                                  "docs/architecture.md: no table with the columns library, headers, CMake targets")
        self.assert_table_refused("| library | headers | CMake targets |\n|---|---|---|\n| Qt | `Q*` | |\n",
                                  "docs/architecture.md: no table with the columns module, may include, libraries")

    def test_refuses_a_second_table(self):
        self.assert_table_refused(document(MODULES) + "\n" + document(MODULES),
                                  "docs/architecture.md: 2 tables with the columns library, headers, CMake targets")

    def test_refuses_a_table_without_rows(self):
        self.assert_table_refused(document([]), "docs/architecture.md:3: the table has no rows")

    def test_refuses_a_row_with_a_missing_cell(self):
        self.assert_table_refused(document(["| `engine/` | | |"]),
                                  "docs/architecture.md:5: the row has 3 cells, the heading 4")

    def test_refuses_a_module_without_backticks(self):
        self.assert_table_refused(document(["| | | `engine` | |"]),
                                  "docs/architecture.md:5: the row does not begin with a module in backticks: ")

    def test_refuses_a_cell_that_it_cannot_read(self):
        self.assert_table_refused(document(["| `engine/` | | `platform` or so | |"]),
                                  "docs/architecture.md:5: cannot read the cell: `platform` or so")

    def test_refuses_a_module_with_two_rows(self):
        self.assert_table_refused(document(["| `engine/` | | | |", "| `engine/` | | | |"]),
                                  "docs/architecture.md:6: the module engine has two rows")

    def test_refuses_a_library_with_two_rows(self):
        self.assert_table_refused(document(["| `engine/` | | | |"], [*LIBRARIES, LIBRARIES[0]]),
                                  "docs/architecture.md:13: the library POSIX has two rows")

    def test_refuses_a_module_that_may_include_an_unknown_one(self):
        self.assert_table_refused(document(["| `engine/` | | `platfrom` | |"]),
                                  "docs/architecture.md:5: engine may include platfrom, which has no row of its own")

    def test_refuses_a_module_that_may_include_tests(self):
        self.assert_table_refused(document(["| `engine/` | | `tests` | |", "| `tests/` | | everything | |"]),
                                  "docs/architecture.md:5: engine may include tests, which has no row of its own")

    def test_refuses_an_unknown_library(self):
        self.assert_table_refused(document(["| `engine/` | | | Windows |"]),
                                  "docs/architecture.md:5: engine may include Windows, which is not in the table of libraries")

    def test_fails_with_a_message_where_the_document_is_missing(self):
        with tempfile.TemporaryDirectory() as root:
            run = subprocess.run([sys.executable, "-B", check_layers.__file__, root], capture_output=True, text=True,
                                 check=False)
        self.assertEqual(run.returncode, 1)
        self.assertIn("docs/architecture.md", run.stdout)
        self.assertEqual(run.stderr, "")


class Diagrams(CheckerCase):
    MODULES = [
        "| `base/` | | | |", "| `engine/` | | `base` | |", "| `ui/` | | `base`, `engine` | |",
        "| `adapters/qt/` | | `base` | |",
    ]

    def with_diagram(self, *lines):
        return "\n".join([document(self.MODULES, ["| none | | |"]), "```mermaid", "flowchart TD", *lines, "```", ""])

    def test_allows_arrows_that_the_table_allows(self):
        self.assert_allowed({}, self.with_diagram('    subgraph core ["the core: decides"]', "    ui --> engine --> base",
                                                  "    end", '    toolkit["qt, the windows"] --> base', "core --> text"))

    def test_refuses_an_arrow_that_the_table_does_not_allow(self):
        self.assert_table_refused(self.with_diagram("ui --> engine --> base --> ui"),
                                  "docs/architecture.md: the table does not allow the diagram's arrow base --> ui")
        self.assert_table_refused(self.with_diagram('toolkit["qt: windows"] --> engine'), "docs/architecture.md: the "
                                  "table does not allow the diagram's arrow adapters/qt --> engine")

    def test_refuses_a_diagram_without_an_arrow_that_the_table_allows(self):
        self.assert_table_refused(self.with_diagram("ui --> base", "engine --> base"), "docs/architecture.md: ui may "
                                  "include engine, but no diagram has an arrow from it to there")


class Links(CheckerCase):
    LIBRARIES = {
        "engine/CMakeLists.txt": ["dunmora_library(engine SOURCES Finder.cpp)"],
        "update/CMakeLists.txt": ["dunmora_library(update LINKS Dunmora::engine Threads::Threads)"],
        "adapters/qt/CMakeLists.txt": ["dunmora_library(qt PRIVATE_LINKS Qt6::Widgets)"],
    }

    def assert_link_fault(self, name, lines, fault):
        self.assertEqual(check({**self.LIBRARIES, name: lines}), (1, [fault]))

    def test_allows_what_the_table_allows(self):
        self.assert_allowed({
            **self.LIBRARIES,
            "adapters/vcard/CMakeLists.txt": ["dunmora_library(vcard LINKS Dunmora::posix Iconv::Iconv)"],
            "adapters/posix/CMakeLists.txt": ["dunmora_library(posix)"],
            "tests/CMakeLists.txt": ["target_link_libraries(tests Dunmora::update GTest::gtest)"],
        })

    def test_rejects_a_link_to_a_module_that_may_not_be_included(self):
        self.assert_link_fault("engine/CMakeLists.txt", ["dunmora_library(engine", "    LINKS Dunmora::update)"],
                               "engine/CMakeLists.txt:2: engine may not link Dunmora::update")

    def test_rejects_a_link_without_the_namespace(self):
        self.assert_link_fault("engine/CMakeLists.txt",
                               ["dunmora_library(engine)", "target_link_libraries(dunmora_engine dunmora_update)"],
                               "engine/CMakeLists.txt:2: engine may not link dunmora_update")

    def test_rejects_a_link_kept_in_a_variable(self):
        self.assert_link_fault("programs/terminal/CMakeLists.txt", ["set(windows Dunmora::qt)"],
                               "programs/terminal/CMakeLists.txt:1: programs/terminal may not link Dunmora::qt")

    def test_reports_the_line_of_a_link_below_a_condition(self):
        self.assert_link_fault("engine/CMakeLists.txt",
                               ["dunmora_library(engine)", "", "if(TARGET Dunmora::qt)",
                                "    target_link_libraries(dunmora_engine PRIVATE Dunmora::qt)", "endif()"],
                               "engine/CMakeLists.txt:4: engine may not link Dunmora::qt")

    def test_rejects_a_link_to_a_library_that_may_not_be_included(self):
        self.assert_link_fault("engine/CMakeLists.txt", ["dunmora_library(engine LINKS Qt6::Core)"],
                               "engine/CMakeLists.txt:1: engine may not link Qt6::Core")

    def test_rejects_a_link_to_an_unknown_library(self):
        self.assert_link_fault("engine/CMakeLists.txt", ["dunmora_library(engine LINKS Dunmora::floppy)"],
                               "engine/CMakeLists.txt:1: engine may not link Dunmora::floppy")

    def test_allows_conditions_and_comments_about_other_modules(self):
        self.assert_allowed({**self.LIBRARIES, "programs/terminal/CMakeLists.txt": [
            "if(TARGET Dunmora::qt)", "elseif(TARGET Dunmora::qt)", "endif()", "# See Dunmora::qt."]})


class RealTable(CheckerCase):
    """Violations that the repository's own table must not allow."""

    def assert_fault(self, name, include, fault):
        self.assertEqual(check({name: ["#pragma once", include]}, REAL_DOCUMENT), (1, [f"{name}:2: {fault}"]))

    def test_allows_an_empty_tree(self):
        self.assert_allowed({}, REAL_DOCUMENT)

    def test_keeps_the_engine_free_of_the_modules_above_it(self):
        for module in ("review", "ui", "update", "app"):
            with self.subTest(module=module):
                self.assert_fault("engine/Finder.cpp", f'#include "{module}/Thing.h"',
                                  f'engine may not include "{module}/Thing.h"')

    def test_keeps_adapters_free_of_the_core(self):
        core = ("base", "engine", "review", "ui", "update", "app")
        for adapter in ("bundle", "defaults", "eds", "eds/module", "http", "macos", "posix", "qt", "vcard"):
            with self.subTest(adapter=adapter):
                name = f"adapters/{adapter}/Thing.cpp"
                self.assertEqual(check({name: [f'#include "{module}/Thing.h"' for module in core]}, REAL_DOCUMENT),
                                 (1, [f'{name}:{line}: adapters/{adapter} may not include "{module}/Thing.h"'
                                      for line, module in enumerate(core, 1)]))

    def test_keeps_qt_in_the_adapter_and_the_program_with_windows(self):
        for module in ("ui", "adapters/vcard", "adapters/defaults", "adapters/http", "programs/dunmora-cli"):
            with self.subTest(module=module):
                self.assert_fault(f"{module}/Thing.cpp", "#include <QCoreApplication>",
                                  f"{module} may not include <QCoreApplication>")

    def test_keeps_glib_in_the_plug_in(self):
        self.assert_fault("adapters/eds/Book.cpp", "#include <gio/gio.h>", "adapters/eds may not include <gio/gio.h>")

    def test_keeps_the_programs_apart(self):
        self.assert_fault("programs/dunmora/main.cpp", '#include "programs/dunmora-cli/Table.h"',
                          'programs/dunmora may not include "programs/dunmora-cli/Table.h"')


if __name__ == "__main__":
    unittest.main()
