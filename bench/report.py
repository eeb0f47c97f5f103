#!/usr/bin/python3
"""Turns the results of veltra4-bench into the table of docs/performance.md and its picture."""

import argparse
import json
import re
import subprocess

MEBIBYTE = 1024 * 1024
UNITS = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}
BEGIN, END = "<!-- written by bench/report.py -->\n", "<!-- end -->\n"


class Results:
    """The smallest processor time of all repetitions, and the counters, by name."""

    def __init__(self, path):
        with open(path, encoding="utf-8") as file:
            content = json.load(file)
        self.date = content["context"]["date"][:10]
        self.times, self.counters = {}, {}
        for run in content["benchmarks"]:
            if run["run_type"] == "iteration":
                self._take(run)

    def _take(self, run):
        if run.get("error_occurred"):
            raise SystemExit(f"{run['name']}: {run['error_message']}")
        parts = run["run_name"].split("/")
        name = "/".join(part for part in parts if ":" not in part and not part.endswith("_time"))
        field = "real_time" if "manual_time" in parts else "cpu_time"
        time = run[field] * UNITS[run["time_unit"]]
        self.times[name] = min(time, self.times.get(name, time))
        self.counters[name] = run

    def time(self, name):
        return self.times[name]

    def counter(self, name, counter):
        return self.counters[name][counter]


class Row:
    """What is measured, what it is compared with, and the largest ratio that is good enough."""

    def __init__(self, name, ours, beside, ratio, goal=None):
        self.name, self.ours, self.beside, self.ratio, self.goal = name, ours, beside, ratio, goal

    def cells(self):
        goal = "" if self.goal is None else f"≤ {self.goal:.3g}"
        met = "" if self.goal is None else "yes" if self.ratio <= self.goal else "no"
        return [self.name, self.ours, self.beside, f"{self.ratio:.2f}", goal, met]


def seconds(value):
    for unit, size in (("s", 1.0), ("ms", 1e-3), ("µs", 1e-6)):
        if value >= size:
            return f"{value / size:.3g} {unit}"
    return f"{value / 1e-9:.3g} ns"


def size_text(value):
    return f"{value / MEBIBYTE:.2f} MiB" if value >= MEBIBYTE else f"{value / 1024:.0f} KiB"


def timed(results, name, ours, beside, words, goal=None):
    left, right = results.time(ours), results.time(beside)
    return Row(name, seconds(left), f"{words}: {seconds(right)}", left / right, goal)


def encoding_rows(results):
    rows = []
    for operation in ("encode", "decode"):
        for size, words in ((100, "100 bytes"), (16 * MEBIBYTE, "16 MiB")):
            for variant, beside in (("qt", "Qt's Base64"), ("libb64", "libb64")):
                rows.append(timed(results, f"{operation} {words}", f"{operation}/ours/{size}",
                                  f"{operation}/{variant}/{size}", beside, 1 / 3))
            rows.append(timed(results, f"{operation} {words}", f"{operation}/ours/{size}",
                              f"encode/memcpy/{size}", "memcpy"))
    return rows


def transfer_rows(results):
    rows = []
    for channel, words in (("free", "for nothing"), ("socket", "local socket")):
        for operation, beside, title, goal in (
                ("collect", "collect", "collect 16 MiB", 1.15),
                ("save", "save", "save 16 MiB", 2.0),
                ("uploadfile", "upload", "upload a file of 16 MiB", 1.15),
                ("uploadbackup", "upload", "upload a backup of 16 MiB", 1.15)):
            rows.append(timed(results, f"{title}, {words}", f"{operation}/ours/{channel}/16",
                              f"{beside}/bare/{channel}/16", "bare loop", goal))
        rows.append(timed(results, f"save 16 MiB, {words}", f"save/ours/{channel}/16",
                          f"save/bychunks/{channel}/16", "bare loop, file opened per chunk"))
    return rows


def refresh_share(results, count):
    """What the plug-in adds to the commands."""
    return results.time(f"refresh/ours/{count}") - results.time(f"refresh/bare/{count}")


def refresh_rows(results):
    rows = []
    for count in (10, 100, 1000, 10000):
        bare = results.time(f"refresh/bare/{count}")
        share = refresh_share(results, count)
        rows.append(Row(f"refresh {count:,}, own share", seconds(share), f"bare loop: {seconds(bare)}", share / bare))
    few, many = refresh_share(results, 1000), refresh_share(results, 10000)
    rows.append(Row("refresh 10,000, own share", seconds(many), f"the same of 1,000: {seconds(few)}", many / few, 12))
    few, many = (results.time(f"refresh/table/{n}") - results.time(f"refresh/bare/{n}") for n in (1000, 10000))
    rows.append(Row("a bare table, 10,000", seconds(many), f"the same of 1,000: {seconds(few)}", many / few))
    return rows


def document_rows(results):
    rows = []
    for size in (1, 16, 64):
        rows.append(timed(results, f"write {size} MiB", f"write/ours/{size}", f"write/copy/{size}", "copy"))
        rows.append(timed(results, f"read {size} MiB", f"read/ours/{size}", f"read/copy/{size}", "copy"))
        rows.append(timed(results, f"validate {size} MiB", f"validate/ours/{size}", f"validate/plain/{size}",
                          "Qt's validator alone", 1.0))
        rows.append(timed(results, f"validate {size} MiB", f"validate/ours/{size}", f"validate/xmllint/{size}",
                          "xmllint"))
    for operation in ("write", "read", "validate"):
        rows.append(timed(results, f"{operation} 64 MiB", f"{operation}/ours/64", f"{operation}/ours/16",
                          "16 MiB", 4 * 1.2))
    return rows


def memory_rows(results):
    rows = []
    for operation in ("write", "read"):
        for size in (1, 16, 64):
            name = f"memory/{operation}/{size}"
            peak, data = results.counter(name, "peak"), results.counter(name, "data")
            rows.append(Row(f"memory to {operation} {size} MiB", size_text(peak), f"the data: {size_text(data)}",
                            peak / data, 6))
    large, small = (results.counter(f"memory/save/{size}", "peak") for size in (64, 1))
    rows.append(Row("memory to save 64 MiB", size_text(large), f"1 MiB: {size_text(small)}", large / small, 1.1))
    return rows


def widget_rows(results):
    rows = [timed(results, "fill the list, 10,000 rows", "refresh/ours/10000", "refresh/table/10000",
                  "bare table and loop", 1.3)]
    for dialog in ("save", "load"):
        rows.append(timed(results, f"fill the {dialog} dialog, 10,000 rows", f"table/{dialog}/ours",
                          f"table/{dialog}/bare", "bare table", 1.3))
    for dialog in ("list", "save", "load", "new", "edit", "lock", "unlock"):
        rows.append(timed(results, f"open the {dialog} dialog", f"open/{dialog}/ours", f"open/{dialog}/plain",
                          "as many empty widgets", 2.0))
        rows.append(timed(results, f"open the {dialog} dialog", f"open/{dialog}/ours", f"open/{dialog}/texts",
                          "the same with their texts"))
    return rows


def loading_rows(results):
    rows = [timed(results, "load the plug-in", "load/ours", "load/empty", "an empty plug-in", 1.2)]
    for counter, text in (("bytes", size_text), ("relocations", lambda value: f"{value:.0f}")):
        ours, empty = (results.counter(f"load/{which}", counter) for which in ("ours", "empty"))
        rows.append(Row(f"{counter} of the plug-in", text(ours), f"an empty plug-in: {text(empty)}", ours / empty))
    return rows


def all_rows(results):
    return (encoding_rows(results) + transfer_rows(results) + refresh_rows(results) + document_rows(results)
            + memory_rows(results) + widget_rows(results) + loading_rows(results))


HEADINGS = ["name", "ours", "beside", "ratio", "goal", "met"]


def print_table(rows):
    lines = [HEADINGS] + [row.cells() for row in rows]
    widths = [max(len(line[column]) for line in lines) for column in range(len(HEADINGS))]
    for line in lines:
        print("  ".join(cell.ljust(width) for cell, width in zip(line, widths)).rstrip())
    missed = sum(row.cells()[-1] == "no" for row in rows)
    print(f"\n{sum(row.goal is not None for row in rows)} goals, {missed} of them not met.")


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


def update_document(path, results, rows):
    with open(path, encoding="utf-8") as file:
        text = file.read()
    lines = [f"Measured on {results.date}: {machine()}.\n", "\n",
             "| " + " | ".join(HEADINGS) + " |\n", "|---|---:|---:|---:|---:|---|\n"]
    lines += ["| " + " | ".join(row.cells()) + " |\n" for row in rows]
    begin, end = text.index(BEGIN) + len(BEGIN), text.index(END)
    with open(path, "w", encoding="utf-8") as file:
        file.write(text[:begin] + "".join(lines) + text[end:])


def draw(path, results):
    import matplotlib
    matplotlib.use("svg")
    matplotlib.rcParams["svg.hashsalt"] = "performance"
    from matplotlib import pyplot

    figure, (left, right) = pyplot.subplots(1, 2, figsize=(11, 4.2))
    counts = (10, 100, 1000, 10000)
    left.loglog(counts, [refresh_share(results, n) * 1e3 for n in counts], "o-", label="own share of a refresh")
    left.loglog(counts, [results.time(f"refresh/bare/{n}") * 1e3 for n in counts], "s--", label="bare loop")
    left.set_xlabel("configurations")
    sizes = (1, 16, 64)
    for operation in ("write", "read", "validate"):
        right.loglog(sizes, [results.time(f"{operation}/ours/{n}") * 1e3 for n in sizes], "o-", label=operation)
    right.loglog(sizes, [results.time(f"validate/xmllint/{n}") * 1e3 for n in sizes], "s--", label="xmllint")
    right.set_xlabel("MiB of configuration data")
    for axes in (left, right):
        axes.set_ylabel("ms of processor time")
        axes.grid(True, which="both", alpha=0.3)
        axes.legend()
    figure.tight_layout()
    figure.savefig(path, metadata={"Date": None})


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("results", help="what veltra4-bench wrote")
    parser.add_argument("--document", help="the document whose table is written anew")
    parser.add_argument("--picture", help="the picture that is drawn")
    arguments = parser.parse_args()
    results = Results(arguments.results)
    rows = all_rows(results)
    print_table(rows)
    if arguments.document:
        update_document(arguments.document, results, rows)
    if arguments.picture:
        draw(arguments.picture, results)


if __name__ == "__main__":
    main()
