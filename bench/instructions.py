#!/usr/bin/python3 -B
"""Counts the instructions that one more row or chunk costs, and compares them with those on record.

Instructions do not depend on what else the machine does, so this guards against regressions where a
clock could not. It fails when an operation needs more than one and a half times what is on record.
"""

import argparse
import json
import os
import shutil
import sys

from counts import Counter, instructions_per_unit

RECORD = os.path.join(os.path.dirname(os.path.abspath(__file__)), "instructions.json")
BOUND = 1.5
SKIPPED = 77

OPERATIONS = {
    "refresh, per row": "refresh",
    "collect, per chunk": "collect",
    "save, per chunk": "save",
    "upload of a file, per chunk": "upload-file",
    "upload of a backup, per chunk": "upload-backup",
}


def count(program):
    """Instructions for one more row or chunk, by operation."""
    counted = instructions_per_unit(Counter(program), OPERATIONS.values())
    return {name: round(counted[operation]) for name, operation in OPERATIONS.items()}


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
    parser.add_argument("program", help="veltra4-bench, in a release build")
    parser.add_argument("--record", action="store_true", help="put what is counted on record")
    arguments = parser.parse_args()
    if shutil.which("valgrind") is None:
        print("SKIPPED: valgrind is not installed; ./dev setup installs it")
        return SKIPPED
    counted = count(arguments.program)
    if arguments.record:
        with open(RECORD, "w", encoding="utf-8") as file:
            json.dump(counted, file, indent=2)
            file.write("\n")
    with open(RECORD, encoding="utf-8") as file:
        return 0 if report(counted, json.load(file)) else 1


if __name__ == "__main__":
    sys.exit(main())
