"""The real program's end, whatever it is at: soon, with what was done on record and nothing left running. And its
second start, which must not open beside the first.

    test_ends.py             tests; generous with time
    test_ends.py --measure   prints how long the end takes in each state
"""

import json
import os
import resource
import shutil
import signal
import statistics
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))

from window import PATIENCE, Window, act, environment_for, wait_for  # noqa: E402

DEMO = os.environ["VESK_DEMO"]
VESK = os.environ["VESK"]
# Vesk's own limit is two seconds, and `--measure` tells the figures; a machine that does much else gets more.
END_LIMIT = 5
ROUNDS = 5

# A backup tool that hangs in one of its commands, deaf to being asked to end, with a program of its own beside it.
HANGING_TOOL = """#!/bin/sh
if [ "$1" = {command} ]; then
    trap '' TERM INT HUP
    sleep 3600 &
    echo $$ $! > "{told}.new" && mv "{told}.new" "{told}"
    while :; do sleep 3600; done
fi
echo com.apple.TimeMachine.2024-05-01-101530.local
"""


def is_running(pid):
    try:
        state = Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()[0]
    except OSError:
        return False
    return state != "Z"


class Mac:
    """A made-up Mac that outlives the windows opened on it."""

    def __init__(self):
        # In memory where there is room: thousands of files are moved, and a disk is waited for at each.
        memory = "/dev/shm"
        place = memory if "TMPDIR" not in os.environ and os.access(memory, os.W_OK) else None
        self.folder = Path(tempfile.mkdtemp(prefix="vesk-mac-test-", dir=place))
        self.windows = []

    def open(self, **more):
        self.windows.append(Window(DEMO, self.folder, **more))
        return self.windows[-1]

    def made(self):
        """Has the demo make its Mac, so that something can be changed before a scan meets it."""
        window = self.open()
        window.press_close()
        window.process.wait(PATIENCE)
        return self

    def home(self):
        return next(self.folder.glob("mac/Users/*"))

    def hang(self, command):
        """Puts a backup tool in place that hangs in this command; returns the file in which it then tells its number
        and that of the program it started."""
        told = self.folder / "hangs"
        told.unlink(missing_ok=True)
        # Beside the old one and moved over it: a running script must not change.
        fresh = self.folder / "mac/usr/bin/tmutil.new"
        fresh.write_text(HANGING_TOOL.format(command=command, told=told))
        fresh.chmod(0o755)
        fresh.rename(self.folder / "mac/usr/bin/tmutil")
        return told

    def history(self):
        return json.loads((self.home() / ".config/vesk/vesk.history").read_text())

    def remove(self):
        for window in self.windows:
            if window.process.poll() is None:
                window.process.kill()
                window.process.wait()
            shutil.rmtree(window.folder, ignore_errors=True)
        shutil.rmtree(self.folder, ignore_errors=True)


def hung(told):
    wait_for("the tool to hang", told.exists)
    return [int(number) for number in told.read_text().split()]


def seconds_to_end(window, ask):
    began = time.monotonic()
    ask()
    window.process.wait(PATIENCE)
    return time.monotonic() - began


def scanning(mac):
    """A window whose scan hangs at the backup tool, and the numbers of what hangs."""
    told = mac.made().hang("listlocalsnapshots")
    window = mac.open()
    return window, hung(told)


def cleaning(mac, **more):
    """A window that cleans all that is ticked and hangs at the snapshots."""
    told = mac.made().hang("deletelocalsnapshots")
    window = mac.open(**more)
    window.scanned()
    window.press("push button", lambda name: name.startswith("Clean "))
    window.press("push button", "Move to Trash")
    return window, hung(told)


def undoing(mac, files):
    """A window that has just been told to put back that many files."""
    logs = mac.made().home() / "Library/Logs/DiagnosticReports"
    logs.mkdir(parents=True, exist_ok=True)
    for number in range(files):
        file = logs / f"report-{number}.crash"
        file.write_bytes(b"x" * 5000)
        os.utime(file, (0, 0))
    window = mac.open()
    window.scanned()
    window.press("push button", lambda name: name.startswith("Clean "))
    window.press("push button", "Move to Trash")
    act(window.wait("alert", lambda name: name.startswith("Vesk!")), "Press")
    window.scanned()
    window.press("page tab", "History")
    window.press("push button", "Undo")
    return window


class EndTest(unittest.TestCase):
    def setUp(self):
        self.mac = Mac()
        self.addCleanup(self.mac.remove)

    def assert_ends(self, window, ask, left_running=(), status=0):
        self.assertLess(seconds_to_end(window, ask), END_LIMIT)
        self.assertEqual(window.process.returncode, status)
        for pid in left_running:
            wait_for(f"the end of {pid}", lambda pid=pid: not is_running(pid))

    def assert_clean_on_record(self):
        newest = self.mac.history()[0]
        self.assertGreater(len(newest["moves"]), 0)
        self.assertEqual(newest["snapshotsRemoved"], 0)
        for move in newest["moves"]:
            self.assertFalse(Path(move["original"]).exists(), move)
            self.assertTrue(Path(move["trashed"]).exists(), move)

    def test_while_a_scan_hangs_the_window_stays_usable(self):
        window, pids = scanning(self.mac)
        window.wait("progress bar", lambda name: " 92%" in name)  # twelve of thirteen rules
        window.press("page tab", "History")
        window.wait("heading", "No cleanups yet")
        self.assertTrue(all(is_running(pid) for pid in pids))
        self.assert_ends(window, window.press_close, pids)

    def test_asked_by_a_signal_during_a_scan(self):
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(number):
                mac = Mac()
                self.addCleanup(mac.remove)
                window, pids = scanning(mac)
                self.assert_ends(window, lambda window=window, number=number: window.process.send_signal(number), pids)

    def test_during_a_clean_that_hangs(self):
        window, pids = cleaning(self.mac)
        self.assert_ends(window, window.press_close, pids)
        self.assert_clean_on_record()

    def test_during_an_undo(self):
        window = undoing(self.mac, 2000)
        self.assert_ends(window, window.press_close)
        entry = self.mac.history()[0]
        back = [Path(move["original"]).exists() for move in entry["moves"]]
        for move, is_back in zip(entry["moves"], back):
            self.assertNotEqual(is_back, Path(move["trashed"]).exists(), move)
        self.assertEqual(entry["undone"], all(back))

    def display_of_its_own(self):
        """A display to take away: its server and its name."""
        reading, writing = os.pipe()
        server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", "1600x1100x24"], pass_fds=[writing],
            stderr=subprocess.DEVNULL)
        self.addCleanup(server.wait)
        self.addCleanup(server.kill)
        return server, ":" + os.read(reading, 16).decode().strip()

    def test_when_the_display_goes_away_during_a_clean(self):
        server, display = self.display_of_its_own()
        window, pids = cleaning(self.mac, DISPLAY=display)
        self.assert_ends(window, server.kill, pids, status=1)
        self.assert_clean_on_record()

    def test_when_nobody_reads_its_last_words(self):
        # The display takes along the terminal that Vesk was started in, and Qt has something to say of it.
        server, display = self.display_of_its_own()
        reading, writing = os.pipe()
        window, pids = cleaning(self.mac, stderr=writing, DISPLAY=display)
        os.close(writing)
        os.close(reading)
        self.assert_ends(window, server.kill, pids, status=1)
        self.assert_clean_on_record()

    def test_where_no_file_may_grow_it_stays_and_says_so(self):
        home = self.mac.made().home()
        window = self.mac.open()
        window.scanned()
        no_growth = (0, resource.RLIM_INFINITY)
        resource.prlimit(window.process.pid, resource.RLIMIT_FSIZE, no_growth)
        window.press("push button", lambda name: name.startswith("Clean "))
        window.press("push button", "Move to Trash")
        window.wait("alert", lambda name: "couldn't be moved" in name)
        self.assertEqual(list((home / ".local/share/Trash").glob("*/*")), [])
        resource.prlimit(window.process.pid, resource.RLIMIT_FSIZE, (resource.RLIM_INFINITY, resource.RLIM_INFINITY))
        self.assert_ends(window, window.press_close)
        self.assertEqual(self.mac.history()[0]["moves"], [])  # stored at the end


class SecondStartTest(unittest.TestCase):
    def setUp(self):
        self.mac = Mac()
        self.addCleanup(self.mac.remove)

    def start_again(self, **environment):
        process = subprocess.Popen(
            [DEMO, "--folder", str(self.mac.folder)], env=environment_for(self.mac.folder, **environment),
            stderr=subprocess.PIPE, text=True)
        self.addCleanup(process.stderr.close)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process

    def topmost(self):
        """The window on top of all others, by the server's own order."""
        tree = subprocess.run(["xwininfo", "-root", "-children"], capture_output=True, text=True, check=True).stdout
        first = next(line for line in tree.splitlines() if '"Vesk"' in line)
        return int(first.split()[0], 16)

    def test_brings_the_first_window_forward_and_ends(self):
        window = self.mac.open()
        window.scanned()
        other = Mac()  # another Mac's window is no first one; it gets in front
        self.addCleanup(other.remove)
        cover = other.open()
        subprocess.run(["xdotool", "windowraise", cover.id, "windowfocus", "--sync", cover.id], check=True)
        wait_for("the cover", lambda: self.topmost() == int(cover.id))

        self.assertEqual(self.start_again().wait(PATIENCE), 0)
        wait_for("the first window in front", lambda: self.topmost() == int(window.id))
        focused = lambda: subprocess.run(["xdotool", "getwindowfocus"], capture_output=True, text=True).stdout.strip()  # noqa: E731
        wait_for("the first window with the focus", lambda: focused() == window.id)
        self.assertIsNone(window.process.poll())

    def test_many_at_once_open_one(self):
        self.mac.made()
        started = [self.start_again() for _ in range(6)]
        wait_for("all but one to end", lambda: sum(process.poll() is None for process in started) == 1)
        ended = [process.returncode for process in started if process.poll() is not None]
        self.assertEqual(ended, [0] * 5)

    def test_after_a_killed_first_opens(self):
        window = self.mac.open()
        window.process.kill()
        window.process.wait()
        self.mac.open().wait("list", "Cards")

    def test_while_the_first_is_ending_opens(self):
        window, _ = cleaning(self.mac)
        window.press_close()
        again = self.mac.open()
        self.assertEqual(window.process.wait(PATIENCE), 0)
        self.assertIsNone(again.process.poll())
        # It read the history only when the first had written it.
        again.press("page tab", "History")
        again.wait("list item", lambda name: name.startswith("Freed "))

    def test_while_the_first_hangs_says_so(self):
        window = self.mac.open()
        window.process.send_signal(signal.SIGSTOP)
        self.addCleanup(window.process.send_signal, signal.SIGCONT)
        again = Window(DEMO, self.mac.folder)
        self.mac.windows.append(again)
        again.wait("dialog", "Vesk is already open")
        again.press("push button", "Quit")
        self.assertEqual(again.process.wait(PATIENCE), 1)

    def test_after_a_killed_save_removes_what_it_left(self):
        left = self.mac.made().home() / ".config/vesk/vesk.history.AbCd12"
        left.write_text("[{")
        beside = left.with_name("notes")
        beside.write_text("mine")
        self.mac.open().wait("list", "Cards")
        self.assertFalse(left.exists())
        self.assertTrue(beside.exists())

    def test_without_a_place_for_the_lock_opens(self):
        # A file where the folder should be, since whoever runs this may write everywhere.
        place = self.mac.made().home() / ".config/vesk"
        shutil.rmtree(place)
        place.write_text("in the way")
        self.mac.open().wait("list", "Cards")


class HomeTest(unittest.TestCase):
    def test_that_is_the_whole_disk_is_refused(self):
        before = os.listdir("/")
        window = Window(VESK, HOME="/")
        self.addCleanup(shutil.rmtree, window.folder, True)
        window.wait("dialog", "Vesk doesn't scan a whole disk")
        window.press("push button", "Quit")
        self.assertEqual(window.process.wait(PATIENCE), 1)
        self.assertEqual(os.listdir("/"), before)

    @unittest.skipUnless(os.geteuid() == 0, "only root can give a folder away")
    def test_that_belongs_to_another_user_is_refused(self):
        home = Path(tempfile.mkdtemp(prefix="vesk-home-test-"))
        self.addCleanup(shutil.rmtree, home, True)
        nobody = 65534
        os.chown(home, nobody, nobody)
        window = Window(VESK, HOME=str(home))
        self.addCleanup(shutil.rmtree, window.folder, True)
        window.wait("dialog", "Vesk cleans only your own home")
        window.press("push button", "Quit")
        self.assertEqual(window.process.wait(PATIENCE), 1)
        self.assertEqual([found.name for found in home.iterdir() if found.name != ".cache"], [])


def measure():
    def in_state(name, prepare, ask):
        times = []
        for _ in range(ROUNDS):
            mac = Mac()
            try:
                window = prepare(mac)
                times.append(seconds_to_end(window, lambda: ask(window)))
            finally:
                mac.remove()
        print(f"{name:28} median {statistics.median(times):.2f} s, longest {max(times):.2f} s of {ROUNDS}")

    def at_rest(mac):
        window = mac.open()
        window.scanned()
        return window

    close = Window.press_close
    in_state("closed at rest", at_rest, close)
    in_state("closed, hanging scan", lambda mac: scanning(mac)[0], close)
    in_state("closed, hanging clean", lambda mac: cleaning(mac)[0], close)
    in_state("closed, undo of 2,000 files", lambda mac: undoing(mac, 2000), close)
    in_state("SIGTERM, hanging clean", lambda mac: cleaning(mac)[0], lambda window: window.process.terminate())


if __name__ == "__main__":
    if "--measure" in sys.argv:
        measure()
    else:
        unittest.main(verbosity=2)
