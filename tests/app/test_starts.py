"""What Vesk does before its window: asked for help, and where there is no display."""

import os
import subprocess
import tempfile
import unittest
from pathlib import Path

VESK = os.environ["VESK"]
DEMO = os.environ["VESK_DEMO"]
HAS_DISPLAY = os.environ["VESK_HAS_DISPLAY"]
NO_SUCH_DISPLAY = ":98765"


class StartTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="vesk-start-test-")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def run_program(self, *command, **more):
        environment = dict(os.environ, HOME=str(self.folder), TMPDIR=str(self.folder), **more)
        for name in ("QT_QPA_PLATFORM", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "WAYLAND_DISPLAY"):
            if name not in more:
                environment.pop(name, None)
        return subprocess.run(command, env=environment, capture_output=True, text=True, timeout=60, check=False)

    def test_without_a_display_a_sentence_says_so(self):
        for unreachable in ({"DISPLAY": NO_SUCH_DISPLAY}, {"DISPLAY": NO_SUCH_DISPLAY, "WAYLAND_DISPLAY": "wayland-98765"},
                            {"DISPLAY": ""}, {"QT_QPA_PLATFORM": "missing"}):
            for program in (VESK, DEMO):
                with self.subTest(program, **unreachable):
                    result = self.run_program(program, **unreachable)
                    self.assertEqual(result.returncode, 1, result.stderr)
                    self.assertIn("Vesk can't open its window: it cannot connect to a display.\n", result.stderr)
                    self.assertNotIn("einstall", result.stderr)
                    self.assertEqual(os.listdir(self.folder), [])

    def test_a_display_that_is_named_need_not_be_there(self):
        self.assertEqual(self.run_program(HAS_DISPLAY, DISPLAY=NO_SUCH_DISPLAY).returncode, 1)
        self.assertEqual(self.run_program(HAS_DISPLAY, QT_QPA_PLATFORM="offscreen").returncode, 0)

    def test_help_and_version_need_no_display(self):
        for option in ("--help", "--version"):
            result = self.run_program(VESK, option, QT_QPA_PLATFORM="missing")
            self.assertEqual(result.returncode, 0, result.stderr)
            self.assertRegex(result.stdout, r"\AVesk \d+\.\d+\.\d+\n")
            self.assertIn("There are no options.", result.stdout)
            self.assertEqual(result.stderr, "")


if __name__ == "__main__":
    unittest.main(verbosity=2)
