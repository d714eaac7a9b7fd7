"""Writes the measurements as Markdown and into the pages that show them."""

import re

from runs import EVCARD, FLOOR

# The cost of a person is flat if it is the same with this many people as with the most.
FLAT_FROM = 100_000


def significant(value):
    """A number with three significant digits, with commas, never in scientific notation."""
    if value >= 100:
        return f"{value:,.0f}"
    return f"{value:.1f}" if value >= 10 else f"{value:.2f}"


def duration(seconds):
    return f"{significant(seconds)} s" if seconds >= 0.1 else f"{significant(seconds * 1e3)} ms"


def megabytes(count):
    return f"{significant(count / 1e6)} MB"


def markdown(headings, rows):
    lines = [headings, ["---"] * len(headings), *rows]
    return "\n".join("| " + " | ".join(cells) + " |" for cells in lines) + "\n"


def per_person(row):
    """Microseconds of processor time."""
    return row.cost.processor * 1e6 / row.people


def above_the_file(row):
    """Bytes of memory a person beyond the book's own; None for a program that does not keep the book, and where a
    program's start weighs more than the people."""
    if row.size is None or row.people < FLAT_FROM or row.cost.peak < row.size:
        return None
    return (row.cost.peak - row.size) / row.people


class Table:
    """The rows with what can be said of them only by comparison."""

    def __init__(self, rows):
        self.rows = rows
        self.by_name = {(row.run, row.people): row for row in rows}

    def runs(self):
        """The names of the runs, in the order in which they were first measured."""
        return list(dict.fromkeys(row.run for row in self.rows))

    def of(self, run):
        return [row for row in self.rows if row.run == run]

    def times_floor(self, row):
        return row.cost.wall / self.by_name[row.floor, row.people].cost.wall

    def times_evcard(self, row):
        evcard = self.by_name.get((EVCARD, row.people)) if row.floor == FLOOR else None
        return row.cost.processor / evcard.cost.processor if evcard else None

    def growth(self, row):
        """The processor time a person, relative to the same run with FLAT_FROM people."""
        first = self.by_name.get((row.run, FLAT_FROM))
        return per_person(row) / per_person(first) if first and row.people >= FLAT_FROM else None

    def text(self):
        def optional(value, form=significant):
            return "" if value is None else form(value)

        return markdown(
            ["run", "people", "× floor", "wall time", "processor time", "µs a person", "growth", "peak memory",
             "bytes a person above the file", "× EVCard"],
            [[run, f"{row.people:,}", significant(self.times_floor(row)), duration(row.cost.wall),
              duration(row.cost.processor), significant(per_person(row)), optional(self.growth(row)),
              megabytes(row.cost.peak), optional(above_the_file(row), "{:,.0f}".format),
              optional(self.times_evcard(row))]
             for run in self.runs() for row in self.of(run)])

    def summary(self):
        """README's few rows."""
        runs = ["`list --quiet`, few rows", "`list --quiet`, everybody in rows",
                "`list --quiet`, everybody in rows, copies differ", "`delete --quiet`, half of the people"]
        return markdown(
            ["run", "people", "× floor", "wall time", "peak memory", "µs a person", "× EVCard"],
            [[run, f"{row.people:,}", significant(self.times_floor(row)), duration(row.cost.wall),
              megabytes(row.cost.peak), significant(per_person(row)),
              significant(self.times_evcard(row)) if self.times_evcard(row) else ""]
             for run in runs for row in self.of(run) if row.people >= FLAT_FROM])


def waits_text(waits, rows):
    return markdown([f"job, {rows:,} rows", "longest wait", "main thread's work"],
                    [[title, *(f"{significant(value)} ms" if value >= 1 else "< 1 ms" for value in values)]
                     for title, *values in waits])


def parts_text(parts):
    def text(figures):
        return ", ".join(f"{name} {significant(value)} {unit}" for name, (value, unit) in figures.items())

    return markdown(["operation", "figures"], [[title, text(figures)] for title, figures in parts])


def profile_text(profile):
    """The modules with at least a hundredth of the instructions of some run, the most expensive first."""
    sums = {run: sum(counts.values()) for run, counts in profile.items()}
    modules = {module for counts in profile.values() for module in counts}
    shown = [module for module in modules
             if any(counts.get(module, 0) * 100 >= sums[run] for run, counts in profile.items())]
    shown.sort(key=lambda module: -max(counts.get(module, 0) for counts in profile.values()))
    rows = [["in all", *(f"{total:,.0f}" for total in sums.values())]]
    for module in shown:
        title = module if " " in module else f"`{module}/`"
        rows.append([title, *(f"{counts.get(module, 0):,.0f}" for counts in profile.values())])
    return markdown(["instructions a person", *profile], rows)


def comparison(before, after):
    """The rows that both tables have, the earlier build's figures next to the later one's."""
    rows = []
    for row in after.rows:
        old = before.by_name.get((row.run, row.people))
        if old:
            rows.append([row.run, f"{row.people:,}",
                         f"{significant(before.times_floor(old))} → {significant(after.times_floor(row))}",
                         f"{duration(old.cost.wall)} → {duration(row.cost.wall)}",
                         significant(old.cost.wall / row.cost.wall),
                         f"{significant(per_person(old))} → {significant(per_person(row))}",
                         f"{megabytes(old.cost.peak)} → {megabytes(row.cost.peak)}"])
    return markdown(["run", "people", "× floor", "wall time", "times as fast", "µs a person", "peak memory"], rows)


def filled(page, name, text):
    """The page with this text between its two markers, which stay."""
    begin, end = f"<!-- measured: {name} -->", f"<!-- end: {name} -->"
    pattern = re.compile(f"{re.escape(begin)}\n.*?{re.escape(end)}", re.DOTALL)
    if len(pattern.findall(page)) != 1:
        raise ValueError(f"the page needs {begin} and {end} once each")
    return pattern.sub(lambda _: f"{begin}\n{text}{end}", page)
