"""Counts the instructions that a person costs in each module, with valgrind's callgrind.

Unlike times, instructions do not depend on what else the computer does. They do not show what waits for memory.
"""

import collections
import re
import shutil

MODULE = re.compile(r".*/((?:adapters|programs)/[\w-]+|base|engine|platform|review|text)/[^/]+$")
OWN_PROGRAM = re.compile(r".*/dunmora(-cli|-eds\.so)$")
CPP_LIBRARY = "C++ library"
C_LIBRARY = "C library: memory, copies, system calls"

# The smaller book is subtracted, so that what happens once in a run does not count.
FEWER, MORE = 1_000, 5_000
FEWER_WHEN_BRIEF, MORE_WHEN_BRIEF = 10, 20


def instructions(callgrind):
    """{module: instructions} of a file that callgrind has written. Each instruction counts for the function that it was
    compiled into, so what is inlined counts for its caller."""
    names = {}
    counts = collections.Counter()
    file = program = ""
    module = C_LIBRARY
    is_call = False
    for line in callgrind.splitlines():
        key, separator, value = line.partition("=")
        if separator and key in ("ob", "fl", "fi", "fe", "fn", "cob", "cfi", "cfl", "cfn"):
            name = named(names, key[-2:] if key[-2:] in ("ob", "fn") else "file", value)
            if key == "ob":
                program = name
            elif key == "fl":
                file = name
            elif key == "fn":
                module = module_of(program, file)
        elif key == "calls":
            is_call = True
        elif line[:1] in "0123456789+-*" and line:
            # The line below a call has what the called function cost, which counts there.
            if not is_call:
                counts[module] += int(line.split()[1])
            is_call = False
    return counts


def named(names, kind, value):
    """The name of a `(number) name`, or of a `(number)` that had a name before."""
    number, _, name = value.partition(" ")
    if name:
        names[kind, number] = name
    return names.get((kind, number), value)


def module_of(program, file):
    found = MODULE.fullmatch(file)
    if found:
        return found.group(1)
    # Templates of the C++ library are compiled into our programs.
    return CPP_LIBRARY if OWN_PROGRAM.fullmatch(program) or "libstdc++" in program else C_LIBRARY


class Profile:
    """Profiles runs of a program with books in a folder."""

    def __init__(self, meter, cli, folder, brief):
        self.meter = meter
        self.cli = cli
        self.folder = folder
        self.sizes = (FEWER_WHEN_BRIEF, MORE_WHEN_BRIEF) if brief else (FEWER, MORE)

    @staticmethod
    def is_possible():
        return shutil.which("valgrind") is not None

    def measure(self, match):
        """{run: {module: instructions a person}}"""
        runs = {"`list --quiet`, few rows": (10, ["list", "--quiet"]),
                "`list --quiet`, everybody in rows": (100, ["list", "--quiet"]),
                "`delete --quiet`, half of the people": (100, ["delete", "--quiet", "--yes"])}
        return {run: self._of(percent, [*options, *match]) for run, (percent, options) in runs.items()}

    def _of(self, percent_with_copy, options):
        fewer, more = (self._run(people, percent_with_copy, options) for people in self.sizes)
        more.subtract(fewer)
        return {module: count / (self.sizes[1] - self.sizes[0]) for module, count in more.items()}

    def _run(self, people, percent_with_copy, options):
        book, output = self.folder / "profiled.vcf", self.folder / "callgrind"
        self.meter.run([self.meter.programs / "write_book", "file", book, people, percent_with_copy, "equal"])
        self.meter.run(["valgrind", "--tool=callgrind", f"--callgrind-out-file={output}", self.cli, *options, book])
        return instructions(output.read_text())
