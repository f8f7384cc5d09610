#!/usr/bin/env python3
"""Checks that tests/summarise.py counts and names whatever a run has skipped."""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from xml.sax.saxutils import escape, quoteattr

SUMMARISE = Path(__file__).resolve().parents[1] / "summarise.py"


def case(name, output="", inside="", status="run"):
    return f'<testcase name={quoteattr(name)} status="{status}">{inside}<system-out>{escape(output)}</system-out></testcase>'


def skipped(name, output=""):
    return case(name, output, '<skipped message="SKIP_REGULAR_EXPRESSION_MATCHED"/>', "notrun")


def summary(*cases):
    with tempfile.NamedTemporaryFile("w", suffix=".xml") as report:
        report.write("<testsuite>" + "".join(cases) + "</testsuite>")
        report.flush()
        run = subprocess.run([sys.executable, SUMMARISE, report.name], capture_output=True, text=True, check=True)
        return run.stdout.splitlines()


class SummariseTest(unittest.TestCase):
    def test_without_skips_there_is_one_line(self):
        self.assertEqual(summary(case("a"), case("b", inside="<failure/>", status="fail")), ["1 passed, 1 failed"])

    def test_googletests_are_named_with_their_reasons(self):
        output = "[ RUN      ] A.B\n/src/a_test.cpp:85: Skipped\nno namespaces here\n\n[  SKIPPED ] A.B (0 ms)\n"
        self.assertEqual(
            summary(skipped("core.A.B", output), case("c")),
            ["1 skipped:", "  core.A.B: no namespaces here", "1 passed, 0 failed"])

    # ctest counts a Python program as passed even if all its tests are skipped.
    def test_of_python_and_of_the_views_each_inner_test_is_named(self):
        python = (
            "test_plain (test_scan.ScanTest.test_plain) ... ok\n"
            "test_refused (test_scan.ScanTest.test_refused) ... skipped 'root is refused nothing'\n"
            "test_older (test_scan.ScanTest.test_older)\nWith a description. ... skipped \"isn't there\"\n"
            "\nRan 3 tests in 0.1s\n\nOK (skipped=2)\n")
        views = "PASS   : views::Pane::test_a()\nSKIP   : views::Pane::test_b(large) no fonts\n   Loc: [tst_pane.qml(3)]\n"
        self.assertEqual(
            summary(case("app.scan", python), case("ui.pane", views)),
            ["3 skipped:", "  app.scan, test_refused: root is refused nothing", "  app.scan, test_older: isn't there",
             "  ui.pane, Pane::test_b(large): no fonts", "2 passed, 0 failed"])

    def test_what_could_not_be_run_has_failed(self):
        missing = case("gone", inside='<skipped message="Unable to find executable: gone"/>', status="notrun")
        self.assertEqual(summary(missing), ["0 passed, 1 failed"])

    def test_what_is_disabled_is_named(self):
        disabled = case("off", inside='<skipped message="Disabled"/>', status="disabled")
        self.assertEqual(summary(disabled), ["1 skipped:", "  off: Disabled", "0 passed, 0 failed"])


class SourcesTest(unittest.TestCase):
    # Otherwise a program prints how many tests it has skipped, but not which.
    def test_every_python_program_names_its_tests(self):
        programs = [*SUMMARISE.parent.rglob("test_*.py"), *SUMMARISE.parent.rglob("*_test.py")]
        self.assertGreater(len(programs), 5)
        for program in programs:
            main = program.read_text(encoding="utf-8").split("__main__")[-1]
            self.assertTrue("verbosity=2" in main or '"-v"' in main, program)


if __name__ == "__main__":
    unittest.main(verbosity=2)
