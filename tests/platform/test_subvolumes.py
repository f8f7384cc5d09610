"""A home with btrfs subvolumes: nothing can be renamed from one to another, so each has a Trash of its own.

Needs root, loop devices, btrfs and its tools; otherwise exits with 77 and says why. Everything is mounted in a namespace
of its own.
"""

import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

DRIVER = os.environ["VESK_DRIVER"]
SKIPPED = 77


def lacking():
    """Why this cannot run here; None if it can."""
    if os.geteuid() != 0:
        return "only root can mount a file system"
    if not os.path.exists("/dev/loop-control"):
        return "there are no loop devices"
    if shutil.which("mkfs.btrfs") is None or "\tbtrfs\n" not in Path("/proc/filesystems").read_text(encoding="ascii"):
        return "btrfs is not on this machine"
    return None


def call(*command, **more):
    return subprocess.run([str(word) for word in command], check=True, capture_output=True, text=True, **more).stdout


class SubvolumesTest(unittest.TestCase):
    def setUp(self):
        self.folder = Path(tempfile.mkdtemp(prefix="vesk-subvolumes-"))
        self.addCleanup(shutil.rmtree, self.folder, True)
        self.disk = self.folder / "disk"
        image = self.folder / "image"
        self.disk.mkdir()
        with open(image, "wb") as file:
            file.truncate(160 * 1024 * 1024)
        call("mkfs.btrfs", "-q", image)
        call("mount", "-o", "loop", image, self.disk)
        self.addCleanup(call, "umount", self.disk)
        self.root = self.disk / "root"
        self.home = self.root / "Users/tester"
        self.caches = self.home / "Library/Caches"
        self.caches.parent.mkdir(parents=True)

    @staticmethod
    def make_item(item):
        item.mkdir(parents=True, exist_ok=True)
        (item / "file").write_text(item.name * 500)

    def run_driver(self, *steps):
        return json.loads(call(DRIVER, self.root, self.home, *steps))

    def test_items_in_a_subvolume_go_to_its_own_trash_and_back(self):
        call("btrfs", "subvolume", "create", self.caches)
        items = [self.caches / "com.acme.One", self.caches / "com.acme.Two"]
        for item in items:
            self.make_item(item)
        told = self.run_driver("scan", "clean")
        self.assertEqual(told["celebration"]["failures"], 0, told)
        trash = self.caches / f".Trash-{os.getuid()}"
        for item in items:
            self.assertFalse(item.exists())
            self.assertEqual((trash / "files" / item.name / "file").read_text(), item.name * 500)
            self.assertIn(f"\nPath={item.name}\n", (trash / "info" / f"{item.name}.trashinfo").read_text())
        self.assertEqual(self.run_driver("scan")["cards"], [], "the Trash itself is no cache")

        # Other programs look only at mount points.
        again = self.folder / "mounted by itself"
        again.mkdir()
        device = call("findmnt", "--noheadings", "--output", "SOURCE", self.disk).strip()
        call("mount", "-o", f"subvol={self.caches.relative_to(self.disk)}", device, again)
        try:
            listed = call("trash-list", env={**os.environ, "HOME": str(self.folder), "XDG_DATA_HOME": ""})
        finally:
            call("umount", again)
        for item in items:
            self.assertIn(str(again / item.name), listed)

        self.assertEqual(self.run_driver("undo")["notice"], "All 2 items are back where they were.")
        for item in items:
            self.assertEqual((item / "file").read_text(), item.name * 500)
        self.assertEqual(list((trash / "info").iterdir()), [])

    def test_a_subvolume_goes_to_the_trash_as_a_whole(self):
        item = self.caches / "com.acme.Whole"
        self.caches.mkdir()
        call("btrfs", "subvolume", "create", item)
        self.make_item(item)
        told = self.run_driver("scan", "clean")
        self.assertEqual(told["celebration"]["failures"], 0, told)
        self.assertTrue((self.home / ".local/share/Trash/files/com.acme.Whole/file").exists())
        self.assertEqual(self.run_driver("undo")["notice"], "All 1 items are back where they were.")
        self.assertTrue((item / "file").exists())

    # Its device is not its folder's, though it is no mount point.
    def test_a_subvolume_in_use_through_another_mount_stays(self):
        item = self.caches / "com.acme.Used"
        self.caches.mkdir()
        call("btrfs", "subvolume", "create", item)
        self.make_item(item)
        elsewhere = self.folder / "elsewhere"
        elsewhere.mkdir()
        device = call("findmnt", "--noheadings", "--output", "SOURCE", self.disk).strip()
        holding = f'mount -o "subvol={item.relative_to(self.disk)}" {device} "{elsewhere}" && ' \
                  f'exec 3<"{elsewhere}/file" && echo ready && exec sleep 60'
        with subprocess.Popen(["unshare", "--mount", "sh", "-c", holding], stdout=subprocess.PIPE, text=True) as holder:
            self.addCleanup(holder.kill)
            self.assertEqual(holder.stdout.readline(), "ready\n")
            told = self.run_driver("careful", "scan", "clean")
            holder.kill()
        self.assertEqual(told["celebration"]["failures"], 1, told)
        self.assertTrue((item / "file").exists())


if __name__ == "__main__":
    if (reason := lacking()) is not None:
        print("skipped:", reason)
        sys.exit(SKIPPED)
    if "VESK_SUBVOLUMES" not in os.environ:
        os.environ["VESK_SUBVOLUMES"] = "1"
        os.execvp("unshare", ["unshare", "--mount", "--propagation", "private", sys.executable, *sys.argv])
    unittest.main(argv=[sys.argv[0], "-v"])
