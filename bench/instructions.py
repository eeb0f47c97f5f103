#!/usr/bin/python3
"""Counts the instructions that one more row or chunk costs, and compares them with those on record.

Instructions do not depend on what else the machine does, so this guards against regressions where a
clock could not. It fails when an operation needs more than one and a half times what is on record.
"""

import argparse
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile

RECORD = os.path.join(os.path.dirname(os.path.abspath(__file__)), "instructions.json")
BOUND = 1.5
FEW, MANY = 100, 300  # as in the probe
SKIPPED = 77


OPERATIONS = {
    "refresh, per row": "refreshList(ChangeConfigurationDlg*)",
    "collect, per chunk": "FullBackup::downloadConfigData()",
    "save, per chunk": "downloadConfigurationFile(Controller const&, QString const&)",
    "upload of a file, per chunk": "uploadConfigurationFile(Controller const&, QString const&)",
    "upload of a backup, per chunk": "FullBackup::uploadConfigData()",
}


def profile(probe):
    """The profile of the probe: one block per function, with a line for each function it calls."""
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "profile")
        environment = dict(os.environ, QT_HASH_SEED="0", HOME=folder, XDG_RUNTIME_DIR=folder)
        subprocess.run(["valgrind", "--quiet", "--tool=callgrind", "--callgrind-out-file=" + path, probe],
                       env=environment, check=True)
        annotate = ["callgrind_annotate", "--inclusive=yes", "--tree=calling", "--threshold=100", path]
        return subprocess.run(annotate, check=True, capture_output=True, text=True).stdout


def costs_at(text, count):
    """Instructions of each operation with so many rows and chunks."""
    block = re.search(rf"\*  .*::runAll<{count}>.*\n((?:.*  >  .*\n)+)", text).group(1)
    costs = {}
    for name, function in OPERATIONS.items():
        line = re.search(rf"^\s*([\d,]+) .*:{re.escape(function)} ", block, re.M)
        costs[name] = int(line.group(1).replace(",", ""))
    return costs


def count(probe):
    """Instructions for one more row or chunk, by operation."""
    text = profile(probe)
    few, many = costs_at(text, FEW), costs_at(text, MANY)
    return {name: round((many[name] - few[name]) / (MANY - FEW)) for name in OPERATIONS}


def report(counted, recorded):
    """Prints the comparison; false if anything is missing or above the bound."""
    is_good = set(counted) == set(recorded)
    for operation, expected in recorded.items():
        actual = counted.get(operation)
        is_within = actual is not None and actual <= BOUND * expected
        is_good = is_good and is_within
        print(f"{operation:30} {actual} instructions, {expected} on record: {'good' if is_within else 'TOO MANY'}")
    return is_good


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("probe", help="the program veltra4-instructionprobe, in a release build")
    parser.add_argument("--record", action="store_true", help="put what is counted on record")
    arguments = parser.parse_args()
    if shutil.which("valgrind") is None:
        print("SKIPPED: valgrind is not installed; ./dev setup installs it")
        return SKIPPED
    counted = count(arguments.probe)
    if arguments.record:
        with open(RECORD, "w", encoding="utf-8") as file:
            json.dump(counted, file, indent=2)
            file.write("\n")
    with open(RECORD, encoding="utf-8") as file:
        return 0 if report(counted, json.load(file)) else 1


if __name__ == "__main__":
    sys.exit(main())
