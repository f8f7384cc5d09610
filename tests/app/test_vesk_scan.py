"""vesk-scan as users call it: options, the table, the JSON report, exit statuses."""

import json
import os
import re
import resource
import signal
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))

from ordinary_user import reachable  # noqa: E402

PROGRAM = reachable(os.environ["VESK_SCAN"])
DAY = 86_400


class VeskScanTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="vesk-scan-")
        self.addCleanup(folder.cleanup)
        # On macOS the place of temporary folders is reached through a link, as it is here. Programs tell the folder that
        # they work in without links on the way.
        place = Path(folder.name) / "link"
        place.symlink_to(".")
        self.root = place.resolve() / "root"
        self.home = self.root / "Users/tester"
        self.home.mkdir(parents=True)

    def run_program(self, *options, home=None, env=None):
        places = ["--root", str(self.root), "--home", str(home or self.home)]
        return self.run_bare(*places, *options, env=env)

    @staticmethod
    def run_bare(*options, env=None):
        return subprocess.run(
            [PROGRAM, *options], capture_output=True, text=True, timeout=60, check=False, env=env,
            stdin=subprocess.DEVNULL,
        )

    def report(self):
        result = self.run_program("--json")
        self.assertEqual(result.returncode, 0, result.stderr)
        return json.loads(result.stdout)

    def make_file(self, path, size=5000, age=0.0, below=None):
        file = (below or self.home) / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_bytes(b"v" * size)
        date = time.time() - age
        os.utime(file, (date, date))
        return file

    def test_empty_home_has_nothing_to_clean(self):
        result = self.run_program()
        self.assertEqual(result.returncode, 0)
        self.assertIn("Nothing worth cleaning right now.", result.stdout)
        self.assertEqual(self.report()["cards"], [])

    def test_json_says_everything_of_a_card(self):
        cache = self.make_file("Library/Caches/com.acme.Editor/file", 100_000, age=3 * DAY)
        report = self.report()
        (card,) = report["cards"]
        size = cache.stat().st_blocks * 512
        self.assertEqual(
            {key: card[key] for key in ("id", "title", "symbol", "bucket", "confidence", "risk")},
            {"id": "caches", "title": "App caches", "symbol": "internaldrive", "bucket": "safe",
             "confidence": 0.85, "risk": 1.5},
        )
        self.assertTrue(card["selected"])
        self.assertEqual(card["size"], size)
        self.assertEqual(card["snapshotIDs"], [])
        self.assertAlmostEqual(card["dormancyDays"], 3, delta=0.01)
        self.assertAlmostEqual(card["priority"], 0.85 * card["dormancyDays"] * size / 2**20 / 1.5, places=9)
        (entry,) = card["entries"]
        self.assertEqual(entry["path"], str(cache.parent))
        self.assertEqual(entry["name"], "Acme")
        self.assertAlmostEqual(entry["lastUsed"], time.time() - 3 * DAY, delta=60)
        self.assertEqual((report["files"], report["bytes"]), (1, size))
        self.assertEqual((report["safeBytes"], report["smartBytes"]), (size, 0))
        self.assertGreater(report["capacity"], report["free"])
        self.assertEqual(report["personalBytes"], report["capacity"] - report["free"] - size)

    def test_no_name_reaches_the_terminal_as_a_command(self):
        names = [
            "two\nlines", "\x01\x1b[31mred\x7f", "c1 \u009b31m", "\u202egpj.exe", "\u2066isolated\u2069",
            "mark \u200f\u061c", "\ufeffmark", "unseen \u200b\u2060\u3164\U0001d173", "\"quoted\" \\ 'too'", "caf\u00e9 \u5bb6 \U0001f3e0", "n" * 255,
        ]
        for name in names:
            self.make_file(f"Library/Caches/{name}/{name}", age=3 * DAY)
        not_utf8 = os.fsencode(self.home / "Library/Caches") + b"/caf\xe9\x1b"
        os.mkdir(not_utf8)
        with open(not_utf8 + b"/file", "wb") as file:
            file.write(b"v" * 5000)
        obeyed = re.compile("[\x00-\x09\x0b-\x1f\x7f-\x9f\u061c\u200e\u200f\u2028-\u202e\u2060-\u206f\ufeff\u200b\u3164\U0001d173]")
        for option in ("--json", None):
            result = self.run_program(*([option] if option else []))
            self.assertEqual(result.returncode, 0, result.stderr)
            self.assertIsNone(obeyed.search(result.stdout + result.stderr))
        (card,) = self.report()["cards"]
        found = sorted(Path(entry["path"]).name for entry in card["entries"])
        self.assertEqual(found, sorted([*names, "caf\ufffd\x1b"]))

        for options in (["--home", "/missing\x1b[31m\u202e"], ["--\x1b[31m"]):
            result = self.run_bare(*options)
            self.assertEqual(result.returncode, 2)
            self.assertIsNone(obeyed.search(result.stderr))
            self.assertIn("\\u001b[31m", result.stderr)

    def test_cards_are_best_first_in_both_reports(self):
        self.make_file("Library/Caches/App/file", 400_000)
        self.make_file("Library/Logs/DiagnosticReports/old.ips", 400_000, age=300 * DAY)
        self.assertEqual([card["id"] for card in self.report()["cards"]], ["crash", "caches"])
        table = self.run_program().stdout.splitlines()
        self.assertRegex(table[0], r"Card +Bucket +Size +Days unused +Entries")
        self.assertRegex(table[1], r"Old crash reports +safe +4\d\d KB +300 +1")
        self.assertRegex(table[2], r"App caches +safe +4\d\d KB +1 +1")

    def test_absolute_places_are_looked_for_below_the_root(self):
        self.make_file("private/var/folders/ab/cd/X/x.code_sign_clone/file", below=self.root)
        self.assertEqual([card["id"] for card in self.report()["cards"]], ["clones"])

    def test_denied_areas_are_named(self):
        caches = self.home / "Library/Caches"
        caches.mkdir(parents=True)
        caches.chmod(0)
        self.addCleanup(caches.chmod, 0o700)
        # Both of these rules look into that folder.
        self.assertEqual(self.report()["blockedAreas"], ["App caches", "Video editing caches"])
        self.assertIn(
            "Could not be read: App caches\nCould not be read: Video editing caches\n", self.run_program().stdout)

    def test_names_that_are_not_text_stay_readable(self):
        folder = os.path.join(os.fsencode(self.home), b"Library/Caches/\xff\xfe")
        os.makedirs(folder)
        with open(os.path.join(folder, b"file"), "wb") as file:
            file.write(b"v" * 5000)
        (entry,) = self.report()["cards"][0]["entries"]
        self.assertEqual(os.path.basename(entry["path"]), "\ufffd\ufffd")

    def test_relative_folders_are_taken_from_here(self):
        self.make_file("Library/Caches/App/file")
        result = subprocess.run(
            [PROGRAM, "--root", ".", "--home", "Users/tester", "--json"], cwd=self.root, capture_output=True,
            text=True, timeout=60, check=True,
        )
        (card,) = json.loads(result.stdout)["cards"]
        self.assertEqual(Path(card["entries"][0]["path"]), self.home / "Library/Caches/App")

    def test_the_home_of_the_environment_is_the_default(self):
        self.make_file("Library/Caches/App/file")
        result = self.run_bare("--root", str(self.root), "--json", env={**os.environ, "HOME": str(self.home)})
        self.assertEqual(len(json.loads(result.stdout)["cards"]), 1)

    def test_a_made_up_home_is_a_macs_unless_linux_is_asked_for(self):
        self.make_file(".cache/mozilla/file")
        self.make_file("Library/Caches/App/file")
        variables = {**os.environ, "XDG_CACHE_HOME": str(self.home / "elsewhere"), "PIP_CACHE_DIR": str(self.home / "pip")}
        self.make_file("pip/file")
        self.make_file("elsewhere/yarn/file")
        for options, expected in (
            ([], {"App"}), (["--layout", "macos"], {"App"}), (["--layout", "linux"], {"App", "mozilla"}),
        ):
            result = self.run_program(*options, "--json", env=variables)
            (card,) = json.loads(result.stdout)["cards"]
            self.assertEqual({entry["name"] for entry in card["entries"]}, expected)

    @unittest.skipIf(sys.platform == "darwin", "the home is a Mac's there")
    def test_the_users_own_home_is_one_of_this_system(self):
        self.make_file(".cache/mozilla/file")
        self.make_file("elsewhere/yarn/file")
        self.make_file("pip/file")
        result = self.run_bare("--json", env={
            **os.environ, "HOME": str(self.home), "XDG_CACHE_HOME": str(self.home / "elsewhere"),
            "PIP_CACHE_DIR": "~/pip"})
        names = {entry["name"] for card in json.loads(result.stdout)["cards"] for entry in card["entries"]}
        self.assertEqual(names, {"mozilla", "yarn", "pip cache"})

    def test_bad_calls_say_why_and_end_with_2(self):
        refused = self.make_file("a file")
        calls = {
            "unknown option": ["--yes"],
            "needs a folder": ["--home"],
            'needs "macos" or "linux"': ["--layout", "windows"],
            "No such file": ["--home", str(self.home / "missing")],
            "Not a directory": ["--home", str(refused)],
            "never scanned": ["--home", "/"],
        }
        for message, options in calls.items():
            result = self.run_bare(*options)
            self.assertEqual(result.returncode, 2, options)
            self.assertIn(message, result.stderr)
            self.assertEqual(result.stdout, "")

    def test_a_home_that_is_the_whole_disk_is_not_scanned(self):
        link = self.root / "link"
        link.symlink_to("/")
        for env_home, options in (("/", []), ("//", []), (str(self.home), ["--home", str(link)])):
            result = self.run_bare(*options, env={**os.environ, "HOME": env_home})
            self.assertEqual(result.returncode, 2)
            self.assertIn('the home folder is "/", which is never scanned', result.stderr)
            self.assertEqual(result.stdout, "")

    def test_a_report_that_cannot_be_written_is_told_in_one_line(self):
        self.make_file("Library/Caches/App/file")
        reading, nobody_reads = os.pipe()
        os.close(reading)
        small = open(self.root / "small", "wb")
        self.addCleanup(small.close)
        cases = (
            ("Broken pipe", nobody_reads, None),
            ("No space left on device", open("/dev/full", "wb"), None),
            ("File too large", small, lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (10, 10))),
        )
        for reason, output, prepare in cases:
            result = subprocess.run(
                [PROGRAM, "--root", str(self.root), "--home", str(self.home)], stdout=output, stderr=subprocess.PIPE,
                text=True, timeout=60, check=False, preexec_fn=prepare)
            self.assertEqual(result.returncode, 1, reason)
            self.assertEqual(result.stderr, f"vesk-scan: cannot write the report: {reason}\n")
        os.close(nobody_reads)
        cases[1][1].close()

    @unittest.skipUnless(os.geteuid() == 0, "only root can give a folder away")
    def test_the_home_of_another_user_may_be_looked_into(self):
        self.make_file("Library/Caches/App/file")
        nobody = 65534
        os.chown(self.home, nobody, nobody)
        self.assertEqual(len(self.report()["cards"]), 1)

    def test_a_tool_that_hangs_ends_with_it(self):
        told = self.root / "told"
        tool = self.root / "usr/bin/tmutil"
        tool.parent.mkdir(parents=True)
        tool.write_text(f"#!/bin/sh\ntrap '' INT TERM\necho $$ > {told}.new; mv {told}.new {told}\nsleep 3600\n")
        tool.chmod(0o755)
        for number in (signal.SIGINT, signal.SIGTERM):
            told.unlink(missing_ok=True)
            process = subprocess.Popen([PROGRAM, "--root", str(self.root), "--home", str(self.home)])
            while not told.exists():
                self.assertIsNone(process.poll())
                time.sleep(0.02)
            process.send_signal(number)
            self.assertEqual(process.wait(60), 1)
            state = Path("/proc", told.read_text().strip(), "stat")
            while state.exists() and state.read_text().rsplit(")", 1)[1].split()[0] != "Z":
                time.sleep(0.02)  # if it never comes true, ctest's time limit ends this

    def test_leaves_no_trace(self):
        self.make_file("Library/Caches/App/deep/file", age=9 * DAY)
        folders = [Path(folder) for folder, _, _ in os.walk(self.root)]
        for folder in folders:
            os.utime(folder, (time.time() - 9 * DAY, time.time() - DAY))
        before = [folder.stat() for folder in folders]
        self.run_program()
        after = [folder.stat() for folder in folders]
        self.assertEqual([s.st_atime_ns for s in before], [s.st_atime_ns for s in after])
        self.assertEqual([s.st_mtime_ns for s in before], [s.st_mtime_ns for s in after])


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], "-v"])
