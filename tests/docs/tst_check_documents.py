#!/usr/bin/env python3
"""The check of the documents finds what is wrong, and nothing else."""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

CHECK = Path(__file__).resolve().with_name("check-documents")
USAGE = """#!/bin/sh
echo 'usage: ./dev COMMAND'
echo '  test             all that
                   has to be right'
"""
PROGRAM = "#!/bin/sh\necho '  --dark  Show everything in dark colours.'\n"


class TestCheckDocuments(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)
        self.write("dev", USAGE).chmod(0o755)
        self.write("program", PROGRAM).chmod(0o755)
        self.write("docs/guide.md", "# Guide\n\n## By hand, and by the day\n")
        self.write("tests/transfer/tst_upload.cpp", "")

    def write(self, path, text):
        file = self.root / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="utf-8")
        return file

    def problems_of(self, text, root="."):
        self.write(f"{root}/README.md", text)
        result = subprocess.run([sys.executable, CHECK, self.root / root, self.root / "program"],
                                capture_output=True, text=True, timeout=60)
        self.assertEqual(result.stderr, "")
        return result.returncode, result.stdout.strip()

    def test_what_exists_may_be_named(self):
        code, output = self.problems_of(
            "`./dev test`, `docs/guide.md`, `tests/transfer/`, `program --dark`, `tst_upload`,\n"
            "`build/release/bin/tst_transfer tst_upload`,\n"
            "[there](docs/guide.md#by-hand-and-by-the-day), [elsewhere](https://example.com/x)\n")
        self.assertEqual((code, output), (0, "All that the documents name exists."))

    def test_what_does_not_exist(self):
        for text, problem in [
                ("`docs/other.md`", "there is no docs/other.md"),
                ("`transfer/`", "there is no transfer/"),
                ("build/release/bin/tst_download", "there is no test tst_download"),
                ("    ./dev has", "there is no ./dev has"),
                ("    program --light", "no program has the option --light"),
                ("[x](docs/other.md)", "the link docs/other.md leads nowhere"),
                ("![x](docs/x.png)", "the link docs/x.png leads nowhere"),
                ("[x](docs/guide.md#nowhere)",
                 "the link docs/guide.md#nowhere leads to no heading")]:
            with self.subTest(text):
                self.assertEqual(self.problems_of(text), (1, f"README.md: {problem}"))

    def test_picture_that_nobody_shows(self):
        self.write("docs/pictures/old.png", "")
        self.assertEqual(self.problems_of(""), (1, "docs/pictures/old.png: no document shows it"))

    def test_installed_documents_may_name_what_is_installed(self):
        self.write("installed/guide.md", "![x](pictures/x.png)")
        self.write("installed/pictures/x.png", "")
        self.write("installed/examples/host/main.cpp", "")
        self.assertEqual(self.problems_of("[x](guide.md) `examples/host/main.cpp`", "installed"),
                         (0, "All that the documents name exists."))

    def test_installed_documents_may_not_name_what_is_elsewhere(self):
        code, output = self.problems_of("[x](../docs/y.md) `docs/guide.md` `./dev test`",
                                        "installed")
        self.assertEqual((code, output.splitlines()),
                         (1, ["README.md: the link ../docs/y.md leads nowhere",
                              "README.md: there is no ./dev test",
                              "README.md: there is no docs/guide.md",
                              "README.md: there is no ./dev"]))


if __name__ == "__main__":
    unittest.main()
