"""Tests leave nothing behind, even if they are killed, and write nothing in the home folder of whoever runs them."""

import os
import shutil
import signal
import subprocess
import tempfile
import unittest
from pathlib import Path

IN_OWN_FOLDER = Path(__file__).parent / "in_own_folder"
VIEW_TESTS = os.environ["VESK_VIEW_TESTS"]
A_VIEW_TEST = Path(__file__).parents[1] / "ui/tst_history_pane.qml"


class LeftBehindTest(unittest.TestCase):
    def setUp(self):
        self.place = Path(tempfile.mkdtemp(prefix="vesk-place-"))
        self.addCleanup(shutil.rmtree, self.place)
        self.environment = dict(os.environ, TMPDIR=str(self.place))

    def start(self, script):
        """Starts a command in its own folder, and returns once it has printed something."""
        process = subprocess.Popen(
            [IN_OWN_FOLDER, "sh", "-c", script], env=self.environment, stdout=subprocess.PIPE, text=True,
            start_new_session=True)
        self.addCleanup(process.stdout.close)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        process.stdout.readline()
        return process

    def test_the_folder_goes_with_the_command(self):
        run = subprocess.run([IN_OWN_FOLDER, "sh", "-c", "echo x >$TMPDIR/file; echo $TMPDIR; exit 3"],
                             env=self.environment, capture_output=True, text=True, check=False)
        self.assertEqual(run.returncode, 3)
        self.assertEqual(Path(run.stdout.strip()).parent, self.place)
        self.assertEqual(os.listdir(self.place), [])

    def test_that_of_a_killed_command_is_removed_by_the_next(self):
        killed = self.start("echo x >$TMPDIR/file; echo ready; sleep 600")
        os.killpg(killed.pid, signal.SIGKILL)
        killed.wait()
        self.assertEqual(len(os.listdir(self.place)), 1)
        self.assertEqual(subprocess.run([IN_OWN_FOLDER, "true"], env=self.environment, check=False).returncode, 0)
        self.assertEqual(os.listdir(self.place), [])

    def test_that_of_a_living_command_stays(self):
        living = self.start("echo ready; sleep 600")
        before = os.listdir(self.place)
        subprocess.run([IN_OWN_FOLDER, "true"], env=self.environment, check=True)
        self.assertEqual(os.listdir(self.place), before)
        os.killpg(living.pid, signal.SIGKILL)

    def test_many_that_start_at_once_leave_each_others_alone(self):
        runs = [subprocess.Popen([IN_OWN_FOLDER, "sh", "-c", "sleep 0.2; test -d $TMPDIR"], env=self.environment)
                for _ in range(40)]
        self.assertEqual([run.wait() for run in runs], [0] * len(runs))

    def test_the_views_tests_write_nothing_into_the_home_folder(self):
        home = self.place / "home"
        home.mkdir()
        environment = dict(self.environment, HOME=str(home), XDG_CACHE_HOME=str(home / "cache"))
        run = subprocess.run([VIEW_TESTS, "-input", A_VIEW_TEST], env=environment, capture_output=True, text=True, check=False)
        self.assertEqual(run.returncode, 0, run.stdout)
        self.assertEqual(os.listdir(home), [])
        self.assertEqual(os.listdir(self.place), ["home"])


if __name__ == "__main__":
    unittest.main(verbosity=2)
