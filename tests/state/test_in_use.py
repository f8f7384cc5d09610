"""Programs that work in a folder while Vesk cleans it: what is in use stays, and nothing of it is lost."""

import json
import os
import random
import signal
import sqlite3
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent.parent / "app"))

from ordinary_user import reachable  # noqa: E402

# Opens each file that it is told, and says so. Root's, where the tests were started by root, who then goes on as nobody.
OPENER = """
import sys
files = []
for line in sys.stdin:
    files.append(open(line.rstrip("\\n")))
    print("open", flush=True)
"""
PROCESS_OF_ROOT = None
if os.geteuid() == 0:
    PROCESS_OF_ROOT = subprocess.Popen(
        [sys.executable, "-c", OPENER], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)

DRIVER = reachable(os.environ["VESK_DRIVER"])
ROUNDS = int(os.environ.get("VESK_ROUNDS", "12"))

# Writes numbers one by one, each in a transaction of its own, and says how far it came when it is told to end.
WRITER = """
import signal, sqlite3, sys, time
ended = []
signal.signal(signal.SIGTERM, lambda *_: ended.append(1))
time.sleep(float(sys.argv[2]))
try:
    database = sqlite3.connect(f"file:{sys.argv[1]}?mode=rw", uri=True, isolation_level=None)
    database.execute("CREATE TABLE IF NOT EXISTS numbers (number INTEGER)")
except sqlite3.OperationalError:
    print("never opened", flush=True)
    sys.exit(0)
print("open", flush=True)
written = 0
while not ended:
    try:
        database.execute("INSERT INTO numbers VALUES (?)", (written,))
        written += 1
    except sqlite3.OperationalError:
        time.sleep(0.001)
print(written, flush=True)
"""


class InUseTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="vesk-in-use-")
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name).resolve() / "root"
        self.home = self.root / "Users/tester"
        self.item = self.home / "Library/Caches/com.acme.Notes"
        self.item.mkdir(parents=True)
        self.file = self.item / "notes.db"
        self.make_database()

    def make_database(self):
        database = sqlite3.connect(self.file)
        database.execute("CREATE TABLE IF NOT EXISTS numbers (number INTEGER)")
        database.commit()
        database.close()

    def drive(self, *steps):
        result = subprocess.run(
            [DRIVER, str(self.root), str(self.home), "careful", *steps], capture_output=True, text=True, timeout=60,
            check=True)
        return json.loads(result.stdout)

    def writer(self, delay=0.0):
        program = subprocess.Popen(
            [sys.executable, "-c", WRITER, str(self.file), str(delay)], stdout=subprocess.PIPE, text=True)
        self.addCleanup(program.stdout.close)
        self.addCleanup(program.wait)
        self.addCleanup(program.kill)
        return program

    @staticmethod
    def end(program):
        program.send_signal(signal.SIGTERM)
        return program.stdout.readline().strip()

    def numbers(self, file=None):
        database = sqlite3.connect(file or self.file)
        self.assertEqual(database.execute("PRAGMA integrity_check").fetchone(), ("ok",))
        found = [number for (number,) in database.execute("SELECT number FROM numbers ORDER BY number")]
        database.close()
        return found

    def test_a_database_that_a_program_writes_stays_and_loses_nothing(self):
        program = self.writer()
        self.assertEqual(program.stdout.readline().strip(), "open")
        told = self.drive("scan", "clean")
        self.assertEqual(told["celebration"], {"bytes": 0, "snapshots": 0, "failures": 1})
        self.assertEqual(told["history"][0]["moves"], [])
        written = int(self.end(program))
        self.assertEqual(self.numbers(), list(range(written)))
        program.wait()
        told = self.drive("scan", "clean")
        self.assertEqual(told["celebration"]["failures"], 0)
        self.assertFalse(self.item.exists())

    def test_a_working_folder_stays(self):
        modules = self.home / "code/site/node_modules"
        (modules / "deep").mkdir(parents=True)
        (modules / "deep/file").write_text("v" * 5000)
        old = time.time() - 30 * 86400
        for path in (modules / "deep/file", modules / "deep", modules, modules.parent, modules.parent.parent):
            os.utime(path, (old, old))
        shell = subprocess.Popen(["sleep", "60"], cwd=modules / "deep")
        self.addCleanup(shell.wait)
        self.addCleanup(shell.kill)
        told = self.drive("scan", "clean")
        self.assertIn("proj-node", [card["id"] for card in told["cards"]])
        self.assertEqual(told["celebration"]["failures"], 1)
        self.assertTrue((modules / "deep/file").exists())

    def test_a_process_of_another_user_that_may_not_be_looked_at_is_no_reason_to_refuse(self):
        if PROCESS_OF_ROOT is None:
            self.skipTest("only root can have a process of another user")
        with PROCESS_OF_ROOT as process:
            print(self.file, file=process.stdin, flush=True)
            self.assertEqual(process.stdout.readline().strip(), "open")
            with self.assertRaises(PermissionError):
                os.listdir(f"/proc/{process.pid}/fd")
            told = self.drive("scan", "clean")
        self.assertEqual(told["celebration"]["failures"], 0)
        self.assertFalse(self.item.exists())
        self.assertTrue((Path(told["history"][0]["moves"][0]["trashed"]) / "notes.db").exists())

    def test_a_program_that_opens_at_any_moment_keeps_its_data(self):
        chance = random.Random(4711)
        outcomes = {"moved": 0, "stayed": 0}
        # When the program opens, in seconds after the clean's start. However fast the machine is, the rounds find the
        # moment at which it makes a difference and stay there.
        moment = 0.1
        for _ in range(max(100, 2 * ROUNDS)):
            if sum(outcomes.values()) >= ROUNDS and all(outcomes.values()):
                break
            self.item.mkdir(exist_ok=True)
            self.file.unlink(missing_ok=True)
            self.make_database()
            delay = moment + chance.uniform(-0.05, 0.05)
            program = self.writer(max(0, delay))
            time.sleep(max(0, -delay))
            told = self.drive("scan", "clean")
            opened = program.stdout.readline().strip() == "open"
            written = int(self.end(program)) if opened else 0
            program.wait()
            moves = [move for entry in told["history"][:1] for move in entry["moves"]]
            outcomes["moved" if moves else "stayed"] += 1
            moment += 0.05 if not moves else -0.05
            place = Path(moves[0]["trashed"]) / "notes.db" if moves else self.file
            found = self.numbers(place if not self.file.exists() else self.file)
            self.assertEqual(found, list(range(written)), (opened, moves))
        self.assertTrue(all(outcomes.values()), outcomes)


if __name__ == "__main__":
    unittest.main(verbosity=2)
