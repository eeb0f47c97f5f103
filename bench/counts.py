#!/usr/bin/python3
"""Counts what operations of veltra4-bench cost: instructions of user code, system calls, and bytes of memory.

None of them depends on what else the machine does. Where an operation begins and ends only callgrind can tell;
cachegrind counts whole processes, at five times the speed, so it counts what takes long.
"""

import argparse
import concurrent.futures
import glob
import json
import os
import re
import subprocess
import tempfile

MEBIBYTE = 1024 * 1024
CHUNK = 100  # bytes
ROWS = (10, 100, 1000, 10000)
SIZES = (1, 16, 64)  # MiB
NO_ROWS, ONE_CHUNK = 0, CHUNK  # what costs next to nothing

OF_ROWS = ("refresh", "refresh-loop", "refresh-table", "sort")
OF_CHUNKS = ("collect", "collect-loop", "save", "save-opens", "upload-file", "upload-backup", "upload-loop")
OF_SIZES = ("validate", "read", "save", "collect", "upload-file", "upload-backup", "write")  # the longest first
OF_DIALOGS = tuple(f"{operation}{beside}/1" for operation in (
    "open-list", "open-save", "open-load", "open-new", "open-edit", "open-lock", "open-unlock")
    for beside in ("", "-empty"))
OF_TABLES = tuple(f"fill-{dialog}{beside}/10000" for dialog in ("save", "load") for beside in ("", "-table"))
OF_MEMORY = ("write", "read", "save")
OF_SYSTEM_CALLS = ("save", "save-opens", "upload-file")

# Hashes that are the same each time; and copies word by word: the processor's own instruction for that would
# be counted once for each byte.
ENVIRONMENT = {"QT_HASH_SEED": "0", "GLIBC_TUNABLES": "glibc.cpu.hwcaps=-ERMS,-FSRM"}


class Counter:
    """Counts one go of operations such as "read/1048576", each count in a folder of its own."""

    def __init__(self, program):
        self._program = os.path.abspath(program)
        self._folders = tempfile.TemporaryDirectory()

    def make_documents(self):
        """What is read and validated. To be called first, as making it is no part of that."""
        self._run([], [f"read-copy/{size}" for size in (1, ONE_CHUNK, *(size * MEBIBYTE for size in SIZES))])

    def _run(self, tool, operations):
        folder = tempfile.mkdtemp(dir=self._folders.name)  # several run at once
        for document in glob.glob(os.path.join(self._folders.name, "*", "document-*.xml")):
            if not os.path.exists(os.path.join(folder, os.path.basename(document))):
                os.symlink(os.path.realpath(document), os.path.join(folder, os.path.basename(document)))
        done = subprocess.run([*tool, self._program, "--once", *operations], cwd=folder,
                              env=dict(os.environ, **ENVIRONMENT), capture_output=True, text=True)
        if done.returncode != 0:
            raise SystemExit(f"{' '.join(done.args)} failed: {done.stderr}")
        return folder, done.stdout

    def instructions(self, operations):
        """Of each operation, in a dictionary."""
        tool = ["valgrind", "--quiet", "--tool=callgrind", "--collect-atstart=no", "--callgrind-out-file=profile"]
        folder, _ = self._run(tool, operations)
        return {operation: self._total(os.path.join(folder, f"profile.{number}"))
                for number, operation in enumerate(operations, 1)}

    def process_instructions(self, operation):
        """Of the whole process: two sizes differ by what they cost."""
        tool = ["valgrind", "--quiet", "--tool=cachegrind", "--cache-sim=no", "--cachegrind-out-file=profile"]
        folder, _ = self._run(tool, [operation])
        return self._total(os.path.join(folder, "profile"))

    @staticmethod
    def _total(profile):
        with open(profile, encoding="utf-8") as file:
            return int(re.search(r"^summary: (\d+)", file.read(), re.M).group(1))

    def system_calls(self, operation):
        """Of the whole process."""
        folder, _ = self._run(["strace", "-f", "-c", "-U", "calls,name", "-o", "calls"], [operation])
        with open(os.path.join(folder, "calls"), encoding="utf-8") as file:
            return int(re.search(r"^ *(\d+) +total", file.read(), re.M).group(1))

    def memory(self, operation):
        """How many bytes the memory of the process grows by at most."""
        _, output = self._run([], [operation])
        return int(output)


def instructions_per_unit(counter, operations, few=100, many=1000):
    """Instructions for one more row or chunk, by operation."""
    def name(operation, count):
        return f"{operation}/{count if operation in OF_ROWS else count * CHUNK}"

    counted = counter.instructions([name(operation, count) for operation in operations for count in (few, many)])
    return {operation: (counted[name(operation, many)] - counted[name(operation, few)]) / (many - few)
            for operation in operations}


def instructions_of_rows(counter):
    """By operation and number of rows, less what the same costs without any."""
    counted = counter.instructions([f"{operation}/{rows}" for operation in OF_ROWS for rows in (NO_ROWS, *ROWS)])
    return {operation: {rows: counted[f"{operation}/{rows}"] - counted[f"{operation}/{NO_ROWS}"] for rows in ROWS}
            for operation in OF_ROWS}


def instructions_of_sizes(counter, pool):
    """By operation and number of MiB, less what the same costs with a single chunk."""
    wanted = [(operation, size) for size in (64, 16, 1) for operation in OF_SIZES] + [("validate-qt", 16)]
    names = [f"{operation}/{size * MEBIBYTE}" for operation, size in wanted]
    names += [f"{operation}/{ONE_CHUNK}" for operation in dict(wanted)]
    counted = dict(zip(names, pool.map(counter.process_instructions, names)))
    result = {}
    for operation, size in sorted(wanted, key=lambda pair: pair[1]):
        cost = counted[f"{operation}/{size * MEBIBYTE}"] - counted[f"{operation}/{ONE_CHUNK}"]
        result.setdefault(operation, {})[size] = cost
    return result


def system_calls_per_chunk(counter, few=100, many=1000):
    return {operation: (counter.system_calls(f"{operation}/{many * CHUNK}")
                        - counter.system_calls(f"{operation}/{few * CHUNK}")) / (many - few)
            for operation in OF_SYSTEM_CALLS}


def memory_of_sizes(counter):
    """By operation and number of MiB."""
    return {operation: {size: counter.memory(f"{operation}/{size * MEBIBYTE}") for size in SIZES}
            for operation in OF_MEMORY}


def count_all(program):
    counter = Counter(program)
    counter.make_documents()
    memory = memory_of_sizes(counter)
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        rows = pool.submit(instructions_of_rows, counter)
        tables = pool.submit(counter.instructions, OF_TABLES)
        dialogs = pool.submit(counter.instructions, OF_DIALOGS)
        chunks = pool.submit(instructions_per_unit, counter, OF_CHUNKS)
        return {
            "memory": memory,
            "sizes": instructions_of_sizes(counter, pool),
            "chunks": chunks.result(),
            "rows": rows.result(),
            "widgets": dict(tables.result(), **dialogs.result()),
            "system calls": system_calls_per_chunk(counter),
        }


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("program", help="veltra4-bench, in a release build")
    parser.add_argument("counts", help="the file that the counts go to")
    arguments = parser.parse_args()
    with open(arguments.counts, "w", encoding="utf-8") as file:
        json.dump(count_all(arguments.program), file, indent=2)


if __name__ == "__main__":
    main()
