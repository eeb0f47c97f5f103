#!/usr/bin/env python3
"""Reports what the tests cover of the plug-in, from the counters in build/coverage.

Fails when a file covers less than it has to, or when a line is not covered although
tests/uncovered.txt does not tell why.
"""
import json
import re
import subprocess
import sys
from collections import Counter
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
BUILD = ROOT / "build" / "coverage"
FOLDERS = ["channel", "widgets", "backup", "transfer", "dialogs", "module"]

# Of these every branch has to be taken: what they make of hostile input decides about data.
COMPLETE = re.compile(
    r"backup/|channel/(transferencoding|downloadanswer|importitem|answeredcount)\.")
LEAST_LINES = 98  # percent of the rest
LEAST_BRANCHES = 92

# Where the compiler adds branches of its own, which no test can take: memory is given back when a
# constructor throws, and a static is guarded against threads.
COMPILER_MADE = re.compile(r"\bnew [A-Z]|^static ")


def measure():
    """Lets gcovr write the pages and returns its data, a list of files."""
    pages = BUILD / "report" / "index.html"
    pages.parent.mkdir(exist_ok=True)
    data = BUILD / "report" / "coverage.json"
    command = ["gcovr", "--root", str(ROOT), "--exclude-throw-branches",
               "--exclude-unreachable-branches", "--html-details", str(pages), "--json", str(data)]
    command += [argument for folder in FOLDERS for argument in ("--filter", f"{ROOT}/{folder}/")]
    subprocess.run(command + [str(BUILD / folder) for folder in FOLDERS], check=True)
    print(f"Pages: {pages.relative_to(ROOT)}")
    return json.loads(data.read_text())["files"]


class Figures:
    """How many lines and branches there are, and how many of them are covered."""

    def __init__(self):
        self.lines = self.covered_lines = self.branches = self.taken_branches = 0

    def add(self, line):
        self.lines += 1
        self.covered_lines += line["count"] > 0
        self.branches += len(line["branches"])
        self.taken_branches += sum(branch["count"] > 0 for branch in line["branches"])

    def line_percentage(self):
        return 100 * self.covered_lines / self.lines if self.lines else 100

    def branch_percentage(self):
        return 100 * self.taken_branches / self.branches if self.branches else 100

    def row(self, name):
        return (f"{name:44}{self.covered_lines:5} of {self.lines:4} lines"
                f"{self.line_percentage():7.1f} %{self.taken_branches:6} of {self.branches:4} "
                f"branches{self.branch_percentage():7.1f} %")


def counted(file):
    """The lines that count, each with its text and without the branches that nobody wrote."""
    source = (ROOT / file["file"]).read_text().splitlines()
    lines = [line for line in file["lines"] if not line["gcovr/noncode"]]
    for line in lines:
        line["text"] = source[line["line_number"] - 1].strip()
        if COMPILER_MADE.search(line["text"]):
            line["branches"] = []
    return lines


def known_gaps():
    """How many lines each (file, text of the line) of uncovered.txt excuses; reasons follow there."""
    gaps = Counter()
    for entry in (ROOT / "tests" / "uncovered.txt").read_text().splitlines():
        if entry and not entry.startswith("#"):
            name, text, _reason = (part.strip() for part in entry.split(" | "))
            gaps[name, text] += 1
    return gaps


def gaps_in(file, is_complete):
    """Lines that are not covered and, where all of them count, branches that are not taken."""
    for line in counted(file):
        if line["count"] == 0:
            yield line["line_number"], line["text"], "line"
        elif is_complete and not all(branch["count"] for branch in line["branches"]):
            yield line["line_number"], line["text"], "branch"


def main():
    files = sorted(measure(), key=lambda file: file["file"])
    known = known_gaps()
    rest = Figures()
    problems = []
    for file in files:
        name = file["file"]
        is_complete = bool(COMPLETE.match(name))
        figures = Figures()
        for line in counted(file):
            figures.add(line)
            if not is_complete:
                rest.add(line)
        print(figures.row(name + (" *" if is_complete else "")))
        for number, text, kind in gaps_in(file, is_complete):
            is_known = known[name, text] > 0
            known[name, text] -= 1
            print(f"    {kind} {number} not covered{'' if is_known else ', no reason given'}: {text}")
            if not is_known:
                problems.append(f"{name}:{number}: {kind} not covered")
    print(rest.row("all of them but those with a *"))
    if rest.line_percentage() < LEAST_LINES or rest.branch_percentage() < LEAST_BRANCHES:
        problems.append(f"less than {LEAST_LINES} % of the lines or {LEAST_BRANCHES} % of the branches")
    for (name, text), number in known.items():
        if number > 0:
            print(f"uncovered.txt excuses what is covered by now: {name} | {text}")
    for problem in problems:
        print(problem, file=sys.stderr)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
