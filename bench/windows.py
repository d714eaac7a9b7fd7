"""What the windows cost, from the two benchmarks that show them without a screen."""

import json

# The stages of event_loop_bench that the table shows, and what happens in them.
STAGES = {
    "launch": "checking for an update at launch",
    "table": "showing the rows",
    "table again": "showing them again",
    "Select All, Space": "Select All and Space",
    "Space again": "Space again",
    "undo": "undoing a mark of all rows",
    "redo": "repeating it",
    "filter": "typing three letters into the filter",
    "arrow key, photos": "moving to a row whose card has a photo of 2 MB",
    "delete": "deleting half of the people",
    "table of the rest": "showing the remaining rows",
}

# The parts that qt_bench measures, what happens in them, and the figures that belong to them: where in its output they
# are, and the unit.
PARTS = {
    "selectAllAndMark/100000": ("selecting and checking 100,000 rows", {"processor time": ("cpu_time", "ms")}),
    "typeIntoFilter/100000": ("typing a letter into the filter, 100,000 rows",
                              {"longest turn": ("longest_turn_ms", "ms"), "processor time": ("cpu_time", "ms")}),
    "scrollFrame/100000": ("scrolling one frame, 100,000 rows", {"processor time": ("cpu_time", "ms")}),
    "scrollFrame/1000000": ("scrolling one frame, 1,000,000 rows", {"processor time": ("cpu_time", "ms")}),
    "reloadTable/100000": ("loading and drawing 100,000 rows", {"processor time": ("cpu_time", "ms")}),
    "reloadTable/1000000": ("loading and drawing 1,000,000 rows", {"processor time": ("cpu_time", "ms")}),
    "postProgressToQtWindow": ("posting progress while the window is drawn", {"time": ("real_time", "ns")}),
    "postMessageToQtWindow": ("posting a text while the window is drawn", {"time": ("real_time", "ns")}),
}


def waits(meter, program, rows):
    """[(what happens, longest wait, the main thread's work in it)], in milliseconds, of a book with so many rows."""
    lines = meter.run([program, rows]).splitlines()[1:]
    stages = {}
    for line in lines:
        name, _, gap, work = line.rsplit(maxsplit=3)
        stages[name.strip()] = (float(gap), float(work))
    return [(title, *stages[stage]) for stage, title in STAGES.items()]


def parts(meter, program, brief):
    """[(what happens, {name of a figure: (value, unit)})], each the best of a few repetitions."""
    options = ["--benchmark_min_time=0.001", "--benchmark_filter=/100000$|post"] if brief else [
        "--benchmark_repetitions=3", f"--benchmark_filter=^({'|'.join(PARTS)})($|/manual_time)"]
    benchmarks = json.loads(meter.run([program, "--benchmark_format=json", *options]))["benchmarks"]
    result = []
    for name, (title, figures) in PARTS.items():
        runs = [each for each in benchmarks
                if each["run_type"] == "iteration" and each["run_name"].removesuffix("/manual_time") == name]
        if runs:
            result.append((title, {figure: (min(each[key] for each in runs), unit)
                                   for figure, (key, unit) in figures.items()}))
    return result
