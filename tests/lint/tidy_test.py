#!/usr/bin/env python3
"""Checks that lint/tidy.py finds faults in any of the sources that are compiled together, and checks again only what has
changed. Uses a stand-in for clang-tidy, which reports the word FAULT."""

import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

TIDY = Path(__file__).resolve().parents[2] / "lint" / "tidy.py"
CLANG_TIDY = """#!/bin/sh
case $1 in
  --version) echo "version $VERSION"; exit ;;
  --dump-config) echo "Checks: all"; exit ;;
esac
while [ "$1" != -- ]; do file=$1; shift; done
echo "$file" >>"$LOG"
for one in $(sed -n 's/^#include "\\(.*cpp\\)"$/\\1/p' "$file") "$file"; do
  if grep -q FAULT "$one"; then echo "$one:1: error: a fault"; found=1; fi
done
exit ${found:-0}
"""


class TidyTest(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.place = Path(temporary.name).resolve()
        self.program = self.place / "clang-tidy"
        self.program.write_text(CLANG_TIDY, encoding="utf-8")
        self.program.chmod(0o755)
        self.make_tree("tree")

    def make_tree(self, name):
        """A checkout with two sources that are compiled together, one by itself, and generated files."""
        self.tree = self.place / name
        for path, text in {
            "src/a.cpp": '#include "a.h"', "src/b.cpp": "", "src/alone.cpp": "", "src/a.h": "", ".clang-tidy": "Checks: all",
            "build/lint/made.cpp": "FAULT", "build/lint/unity_1.cxx": '#include "made.cpp"',
        }.items():
            self.write(path, text)
        self.write("build/lint/unity_0.cxx",
                   "".join(f'/* path */\n#include "{self.tree}/src/{name}.cpp"\n' for name in ("a", "b")))
        command = f"ccache c++ -I{self.tree}/src -o X.o -c "
        self.write("build/lint/compile_commands.json", json.dumps([
            {"directory": str(self.tree / "build/lint"), "file": str(self.tree / file), "command": command + file}
            for file in ("build/lint/unity_0.cxx", "build/lint/unity_1.cxx", "build/lint/made.cpp", "src/alone.cpp")]))
        (self.tree / "lint").mkdir()
        shutil.copy(TIDY, self.tree / "lint")

    def write(self, path, text):
        (self.tree / path).parent.mkdir(parents=True, exist_ok=True)
        (self.tree / path).write_text(text, encoding="utf-8")

    def tidy(self, version="1"):
        """Returns the exit status, the output, and the files that were checked."""
        log = self.place / "log"
        log.write_text("", encoding="utf-8")
        run = subprocess.run([sys.executable, self.tree / "lint/tidy.py", self.program, self.tree / "build/lint"],
                             capture_output=True, text=True, check=False,
                             env={**os.environ, "LOG": str(log), "XDG_CACHE_HOME": str(self.place / "cache"), "VERSION": version})
        return run.returncode, run.stdout + run.stderr, sorted(Path(f).name for f in log.read_text().split())

    def test_sources_that_are_compiled_together_are_looked_at_together_and_only_once(self):
        self.assertEqual(self.tidy()[2], ["alone.cpp", "unity_0.cxx"])
        status, said, looked_at = self.tidy()
        self.assertEqual((status, looked_at), (0, []))
        self.assertEqual(said, "3 sources, 3 of them unchanged since they were found clean\n")

    def test_a_fault_in_one_of_several_is_found_and_never_remembered(self):
        self.write("src/b.cpp", "FAULT")
        for looked_at in (["a.cpp", "alone.cpp", "b.cpp", "unity_0.cxx"], ["a.cpp", "b.cpp", "unity_0.cxx"]):
            self.assertEqual(self.tidy(), (1, f"{self.tree}/src/b.cpp:1: error: a fault\n", looked_at))

    def test_another_checkout_profits_too(self):
        self.tidy()
        self.make_tree("elsewhere")
        self.assertEqual(self.tidy()[2], [])

    def test_what_changed_is_looked_at_again(self):
        self.tidy()
        self.write("src/a.h", "// changed")
        self.assertEqual(self.tidy()[2], ["unity_0.cxx"])
        self.write("src/alone.cpp", "// changed")
        self.assertEqual(self.tidy()[2], ["alone.cpp"])
        for change in (lambda: self.tidy("2"), lambda: (self.write(".clang-tidy", "Checks: none"), self.tidy())[1]):
            self.assertEqual(change()[2], ["alone.cpp", "unity_0.cxx"])

    def test_sources_under_different_checks_are_looked_at_one_by_one(self):
        self.write("src/inner/b.cpp", "FAULT")
        self.write("src/inner/.clang-tidy", "Checks: more")
        unity = (self.tree / "build/lint/unity_0.cxx").read_text(encoding="utf-8")
        self.write("build/lint/unity_0.cxx", unity.replace("src/b.cpp", "src/inner/b.cpp"))
        self.assertEqual(self.tidy()[2], ["a.cpp", "alone.cpp", "b.cpp"])

    def test_a_build_without_sources_is_a_fault(self):
        self.write("build/lint/compile_commands.json", "[]")
        self.assertEqual(self.tidy()[0], 1)


if __name__ == "__main__":
    unittest.main(verbosity=2)
