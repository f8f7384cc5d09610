#!/usr/bin/env python3
"""Checks that lint/promises.py finds tests that do not exist, and promises without a test."""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

CHECK = Path(__file__).resolve().parents[2] / "lint" / "promises.py"

TESTS = {
    "tests/core/card_test.cpp": "TEST_F(CardTest, IsACard) {\n}\nTEST(Plain,\n     Test) {\n",
    "tests/app/test_window.py": "class A:\n    def test_opens(self):\n        pass\n",
    "tests/ui/tst_pane.qml": "TestCase {\n    function test_shows() {\n    }\n}\n",
}
RIGHT = "# Title\n\n## One\n\nText.\n\n- `CardTest.IsACard`, `Plain.Test`\n\n## Two\n\n- `test_window.py: test_opens`\n" \
    "- `tst_pane.qml: test_shows`\n\n# Other\n\nNo promise.\n"


def check(document):
    """Runs the check on a tree with this document; returns its exit status and output."""
    with tempfile.TemporaryDirectory() as tree:
        for path, text in {**TESTS, "docs/safety.md": document}.items():
            file = Path(tree) / path
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_text(text, encoding="utf-8")
        run = subprocess.run([sys.executable, CHECK, tree], capture_output=True, text=True, check=False)
        return run.returncode, run.stdout


class Promises(unittest.TestCase):
    def test_a_right_document_passes(self):
        self.assertEqual(check(RIGHT), (0, "4 tests named\n"))

    def test_a_test_that_is_not_there_is_found(self):
        for name in ("CardTest.IsACard", "test_window.py: test_opens", "tst_pane.qml: test_shows"):
            with self.subTest(name=name):
                status, printed = check(RIGHT.replace(name, name + "Not"))
                self.assertEqual(status, 1)
                self.assertIn(f"there is no test {name}Not", printed)

    def test_a_promise_without_a_test_is_found(self):
        status, printed = check(RIGHT.replace("\n# Other", "\n## Three\n\nText.\n\n# Other"))
        self.assertEqual((status, printed), (1, 'docs/safety.md:14: no test holds "Three"\n'))

    def test_a_document_without_tests_is_a_fault(self):
        self.assertEqual(check("# Title\n")[0], 1)


if __name__ == "__main__":
    unittest.main(verbosity=2)
