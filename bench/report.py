#!/usr/bin/python3 -B
"""Turns what counts.py and runs of veltra4-bench tell into the tables of docs/performance.md and its picture."""

import argparse
import datetime
import json
import math
import os
import re
import statistics
import subprocess

from counts import CHUNK, MEBIBYTE, ROWS, SIZES

BEGIN, END = "<!-- written by bench/report.py -->\n", "<!-- end -->\n"
CHUNKS_IN_TURN = 1000
MANY_ROWS = 10000
DIALOGS = ("list", "save", "load", "new", "edit", "lock", "unlock")


class Turns:
    """What operations that took turns told in each run of veltra4-bench."""

    def __init__(self, paths):
        self._runs = [self._read(path) for path in paths]

    @staticmethod
    def _read(path):
        with open(path, encoding="utf-8") as file:
            runs = json.load(file)["benchmarks"]
        for run in runs:
            if run.get("error_occurred"):
                raise SystemExit(f"{run['name']}: {run['error_message']}")
        # "encode/100/iterations:5/manual_time"
        return {"/".join(run["name"].split("/")[:2]): run for run in runs}

    def time(self, turns, operation):
        """The median, in seconds."""
        return statistics.median(run[turns][operation] for run in self._runs)

    def difference(self, turns, operation, beside):
        """How much more time than another one an operation takes: the median, in seconds."""
        return statistics.median(run[turns][operation] - run[turns][beside] for run in self._runs)

    def ratio(self, turns, beside):
        """The median, and the range from the second least to the second greatest median of all runs."""
        medians = sorted(run[turns]["to " + beside] for run in self._runs)
        return statistics.median(medians), medians[1], medians[-2]


class Goal:
    """What a figure must not exceed, or the range that it must lie in."""

    def __init__(self, most, least=-math.inf):
        self.most, self.least = most, least

    def __str__(self):
        if self.least > -math.inf:
            return f"{self.least:.2f} to {self.most:.2f}"
        return f"≤ {self.most:,}" if isinstance(self.most, int) else f"≤ {self.most:.3g}"

    def verdict(self, low, high):
        """Of a figure that lies in the range from low to high."""
        if self.least <= low and high <= self.most:
            return "met"
        return "missed" if low > self.most or high < self.least else "open"


class Table:
    """Rows of texts under headings, and what became of the goals."""

    def __init__(self, title, words, headings):
        self.title, self.words, self.headings, self.rows = title, words, headings, []

    def add(self, *cells, goal=None, low=None, high=None):
        """A row; of a goal and a figure, exact if there is no high, two more cells are made."""
        high = low if high is None else high
        self.rows.append([*cells, *(("", "") if goal is None else (str(goal), goal.verdict(low, high)))])

    def verdicts(self):
        return [(row[0], row[-1]) for row in self.rows if row[-1]]

    def markdown(self):
        lines = [self.headings, ["---"] + ["---:"] * (len(self.headings) - 2) + ["---"], *self.rows]
        return f"### {self.title}\n\n{self.words}\n\n" + "".join("| " + " | ".join(line) + " |\n" for line in lines)

    def text(self):
        lines = [self.headings, *self.rows]
        widths = [max(len(line[column]) for line in lines) for column in range(len(self.headings))]
        return f"\n{self.title}\n\n" + "".join(
            "  ".join(cell.ljust(width) for cell, width in zip(line, widths)).rstrip() + "\n" for line in lines)


def seconds(value):
    for unit, size in (("s", 1.0), ("ms", 1e-3), ("µs", 1e-6)):
        if value >= size:
            return f"{value / size:.3g} {unit}"
    return f"{value / 1e-9:.3g} ns"


def size_text(value):
    return f"{value / MEBIBYTE:.2f} MiB" if value >= MEBIBYTE else f"{value / 1024:.0f} KiB"


def integer(value):
    return f"{value:,.0f}"


def per_row(counts):
    """Instructions by operation, of very many rows."""
    return {operation: costs[str(MANY_ROWS)] / MANY_ROWS for operation, costs in counts["rows"].items()}


def added(counts, turns):
    table = Table("What the plug-in adds to the host's channel",
                  "The first two columns are instructions: they carry over to other machines, times do not.",
                  ["operation", "without it", "the plug-in adds", "time that this takes", "goal", "verdict"])
    figures = dict(counts["chunks"], **per_row(counts))

    def add(title, operation, loop, size, units, goal=None):
        more = figures[operation] - figures[loop]
        name = f"{operation}/{size}"
        time = turns.difference(name, operation, loop) / units
        table.add(title, integer(figures[loop]), integer(more), seconds(time), goal=goal, low=more)

    chunks = CHUNKS_IN_TURN * CHUNK, CHUNKS_IN_TURN
    add("collect a chunk", "collect", "collect-loop", *chunks, Goal(2400))
    add("upload a chunk of a file", "upload-file", "upload-loop", *chunks, Goal(1400))
    add("upload a chunk of a backup", "upload-backup", "upload-loop", *chunks, Goal(1150))
    add("save a chunk, beside the channel and opening the file", "save", "save-opens", *chunks)
    add("refresh one of 10,000 rows", "refresh", "refresh-loop", MANY_ROWS, MANY_ROWS)
    return table


def counted(counts, folder):
    table = Table("Counted", "All of it carries over to other machines with the same Qt, C library and compiler.",
                  ["name", "ours", "beside", "ratio", "goal", "verdict"])

    def add(title, ours, beside, words, text=integer, goal=None):
        ratio = ours / beside
        table.add(title, text(ours), f"{words}: {text(beside)}", f"{ratio:.2f}", goal=goal, low=ratio)

    rows = per_row(counts)
    add("instructions to refresh a row, without the channel's", rows["refresh"] - rows["refresh-loop"],
        rows["refresh-table"], "filling and sorting a bare table", goal=Goal(1.2))
    sizes, calls, memory, widgets = (counts[kind] for kind in ("sizes", "system calls", "memory", "widgets"))
    add("instructions to validate 16 MiB", sizes["validate"]["16"], sizes["validate-qt"]["16"],
        "Qt's validator alone", goal=Goal(1.0))
    add("system calls to save a chunk", calls["save"], calls["save-opens"], "opening, appending, closing",
        text=lambda value: f"{value:.2f}", goal=Goal(1.0))
    for operation in ("write", "read"):
        for size in SIZES:
            add(f"memory to {operation} {size} MiB", memory[operation][str(size)], size * MEBIBYTE, "the data",
                size_text, Goal(6.0))
    add("memory to save 64 MiB", memory["save"]["64"], memory["save"]["1"], "1 MiB", size_text, Goal(1.1))
    for dialog in ("save", "load"):
        add(f"instructions to fill the {dialog} dialog, 10,000 rows", widgets[f"fill-{dialog}/{MANY_ROWS}"],
            widgets[f"fill-{dialog}-table/{MANY_ROWS}"], "bare table", goal=Goal(1.3))
    for dialog in DIALOGS:
        add(f"instructions to open the {dialog} dialog", widgets[f"open-{dialog}/1"],
            widgets[f"open-{dialog}-empty/1"], "as many empty widgets", goal=Goal(2.0))
    ours, empty = (os.path.join(folder, name) for name in ("ConfigurationsModule.so", "emptyplugin.so"))
    add("bytes of the plug-in", os.path.getsize(ours), os.path.getsize(empty), "an empty plug-in", size_text)
    add("relocations of the plug-in", relocations(ours), relocations(empty), "an empty plug-in")
    return table


def relocations(path):
    listed = subprocess.run(["readelf", "-rW", path], check=True, capture_output=True, text=True).stdout
    return len(re.findall(r"^[0-9a-f]{8}", listed, re.M))


def exponent(costs):
    """The slope of the line through sizes and costs, both on logarithmic scales."""
    return statistics.linear_regression([math.log(int(size)) for size in costs],
                                        [math.log(cost) for cost in costs.values()]).slope


def growth(counts):
    table = Table("How cost grows",
                  "Instructions, less what the same costs with no row or a single chunk. Carries over to other "
                  "machines. An exponent of 1 is in proportion.",
                  ["operation", "smallest", "largest", "exponent", "goal", "verdict"])

    def add(title, costs, unit, goal=Goal(1.05, 0.95)):
        (small, low), *_, (large, high) = costs.items()
        slope = exponent(costs)
        table.add(title, f"{int(small):,} {unit}: {low:,}", f"{int(large):,} {unit}: {high:,}", f"{slope:.3f}",
                  goal=goal, low=slope)

    add("refresh", counts["rows"]["refresh"], "rows")
    add("sort both ways", counts["rows"]["sort"], "rows", goal=None)
    for operation in ("collect", "save", "upload-file", "upload-backup", "write", "read", "validate"):
        add(operation.replace("-", " of a "), counts["sizes"][operation], "MiB")
    return table


def in_turn(turns):
    table = Table("In turn",
                  "Ratios carry over to other machines by and large, times do not. The spread encloses the true ratio "
                  "with a probability of 93 %.",
                  ["name", "ours", "beside", "ratio", "spread", "goal", "verdict"])

    def add(title, name, beside, words, goal=None):
        ratio, low, high = turns.ratio(name, beside)
        ours = name.split("/")[0]
        table.add(title, seconds(turns.time(name, ours)), f"{words}: {seconds(turns.time(name, beside))}",
                  f"{ratio:.2f}", f"{low:.2f} to {high:.2f}", goal=goal and Goal(goal), low=low, high=high)

    for operation in ("encode", "decode"):
        for size, words, in ((CHUNK, "10,000 × 100 bytes"), (16 * MEBIBYTE, "16 MiB")):
            name = f"{operation}/{size}"
            add(f"{operation} {words}", name, f"{operation}-qt", "Qt's Base64", 1 / 3)
            add(f"{operation} {words}", name, f"{operation}-libb64", "libb64", 1 / 3)
            add(f"{operation} {words}", name, "copy", "memcpy")
    for suffix, channel in (("", "for nothing"), ("-socket", "local socket")):
        def add_transfer(title, operation, beside, words, goal, suffix=suffix, channel=channel):
            add(f"{title} 1,000 chunks, {channel}", f"{operation}{suffix}/{CHUNKS_IN_TURN * CHUNK}", beside + suffix,
                words, goal if suffix else None)

        add_transfer("collect", "collect", "collect-loop", "bare loop", 1.15)
        add_transfer("save", "save", "save-loop", "bare loop", 2.0)
        add_transfer("save", "save", "save-opens", "bare loop, file opened per chunk", None)
        add_transfer("upload of a file,", "upload-file", "upload-loop", "bare loop", 1.15)
        add_transfer("upload of a backup,", "upload-backup", "upload-loop", "bare loop", 1.15)
    add("refresh 10,000 rows", f"refresh/{MANY_ROWS}", "refresh-bare", "bare loop and table", 1.3)
    add("sort 10,000 rows", f"sort/{MANY_ROWS}", "sort-table", "bare table", 1.5)
    for dialog in ("save", "load"):
        add(f"fill the {dialog} dialog, 10,000 rows", f"fill-{dialog}/{MANY_ROWS}", f"fill-{dialog}-table",
            "bare table")
    for dialog in DIALOGS:
        add(f"open the {dialog} dialog", f"open-{dialog}/1", f"open-{dialog}-empty", "as many empty widgets")
        add(f"open the {dialog} dialog", f"open-{dialog}/1", f"open-{dialog}-texts", "the same with their texts")
    for operation, beside, words in (("write", "write-copy", "copy"), ("read", "read-copy", "copy"),
                                     ("validate", "validate-qt", "Qt's validator alone"),
                                     ("validate", "validate-xmllint", "xmllint")):
        add(f"{operation} 4 MiB", f"{operation}/{4 * MEBIBYTE}", beside, words)
    add("load the plug-in", "load/1", "load-empty", "an empty plug-in", 1.2)
    return table


def summary(tables):
    verdicts = [verdict for table in tables for verdict in table.verdicts()]

    def names(wanted):
        found = [name for name, verdict in verdicts if verdict == wanted]
        return f"{len(found)} {wanted}" + (f" ({'; '.join(found)})" if found and wanted != "met" else "")

    return f"{len(verdicts)} goals: {names('met')}, {names('missed')}, {names('open')}."


def machine():
    def first(pattern, path):
        with open(path, encoding="utf-8") as file:
            found = re.search(pattern, file.read(), re.M)
        return found.group(1).strip() if found else "?"

    def version(*command):
        return subprocess.run(command, capture_output=True, text=True, check=True).stdout.splitlines()[0]

    processor = first(r"^model name\s*:\s*(.*)$", "/proc/cpuinfo")
    system = first(r'^PRETTY_NAME="(.*)"$', "/etc/os-release")
    qt = version("dpkg-query", "-W", "-f", "${Version}", "libqt5core5a").split("+")[0]
    return f"{processor}; {system}, Qt {qt}, GCC {version('c++', '-dumpfullversion')}; release build"


def update_document(path, tables):
    with open(path, encoding="utf-8") as file:
        text = file.read()
    today = datetime.datetime.now(datetime.timezone.utc).date()
    parts = [f"Measured on {today}: {machine()}.\n\n{summary(tables)}\n"] + [table.markdown() for table in tables]
    begin, end = text.index(BEGIN) + len(BEGIN), text.index(END)
    with open(path, "w", encoding="utf-8") as file:
        file.write(text[:begin] + "\n".join(parts) + text[end:])


def draw(path, counts):
    import matplotlib
    matplotlib.use("svg")
    matplotlib.rcParams["svg.hashsalt"] = "performance"
    from matplotlib import pyplot

    figure, (left, right) = pyplot.subplots(1, 2, figsize=(11, 4.2), layout="constrained")
    rows, sizes = counts["rows"], counts["sizes"]
    for operation, style, label in (("refresh", "o-", "refresh"), ("refresh-table", "s--", "bare table"),
                                    ("refresh-loop", "s--", "bare loop")):
        left.loglog(ROWS, list(rows[operation].values()), style, label=label)
    left.set_xlabel("configurations")
    for operation in ("validate", "read", "save", "collect", "upload-file", "upload-backup", "write"):
        right.loglog(SIZES, list(sizes[operation].values()), "o-", label=operation.replace("-", " of a "))
    right.set_xlabel("MiB of configuration data")
    for axes in (left, right):
        axes.set_ylabel("instructions")
        axes.grid(True, which="both", alpha=0.3)
        axes.legend(loc="upper left", bbox_to_anchor=(1, 1))
    figure.savefig(path, metadata={"Date": None})


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder", help="where the plug-in and an empty one are")
    parser.add_argument("counts", help="what counts.py wrote")
    parser.add_argument("turns", nargs="+", help="what runs of veltra4-bench wrote")
    parser.add_argument("--document", help="the document whose tables are written anew")
    parser.add_argument("--picture", help="the picture that is drawn")
    arguments = parser.parse_args()
    with open(arguments.counts, encoding="utf-8") as file:
        counts = json.load(file)
    turns = Turns(arguments.turns)
    tables = [added(counts, turns), counted(counts, arguments.folder), growth(counts), in_turn(turns)]
    print("\n".join([table.text() for table in tables] + [summary(tables)]))
    if arguments.document:
        update_document(arguments.document, tables)
    if arguments.picture:
        draw(arguments.picture, counts)


if __name__ == "__main__":
    main()
