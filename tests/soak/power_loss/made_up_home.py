"""A small home in which several rules find something, and the check of it after a power loss."""

import json
import os
import urllib.parse
from pathlib import Path

PLIST = '<plist version="1.0"><dict><key>CFBundleIdentifier</key><string>com.example.notes</string></dict></plist>\n'
LONG_AGO = 1_600_000_000


def portrait(item):
    """What must stay the same of an item: the kind and content of everything in it."""
    if item.is_symlink():
        return os.readlink(item)
    if item.is_dir():
        return {child.name: portrait(child) for child in item.iterdir()}
    return item.read_bytes()


class Home:
    """In `root`, which stands for "/"."""

    def __init__(self, root):
        self.root = Path(root)
        self.home = self.root / "Users/tester"
        self.trash = self.home / ".local/share/Trash"
        self.history = self.home / ".config/vesk/vesk.history"
        self.items = {}
        self.kept = {}

    def make(self):
        self.write("Documents/letter", "precious")
        self.write("Library/Caches/com.acme.Editor/inner/file", "e" * 9000)
        self.write("Library/Caches/com.acme.Player/file", "p" * 5000)
        self.write("Library/Caches/Fetcher.db", "f" * 3000)
        (self.home / "Library/Caches/linked").symlink_to("../../Documents")
        for number in range(6):
            self.write(f"Library/Caches/com.acme.Tool{number}/inner/file", str(number) * 700 * number)
        for project in ("one", "two", "three"):
            self.write(f"code/{project}/node_modules/x/index.js", project * 1000)
            self.write(f"code/{project}/package.json", "{}")
        applications = self.root / "Applications/Notes.app/Contents/Info.plist"
        applications.parent.mkdir(parents=True)
        applications.write_text(PLIST, encoding="ascii")
        for folder, _, files in os.walk(self.home, topdown=False):
            for name in files:
                os.utime(Path(folder, name), (LONG_AGO, LONG_AGO), follow_symlinks=False)
            os.utime(folder, (LONG_AGO, LONG_AGO))

    def write(self, path, text):
        file = self.home / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="ascii")

    def know(self, cards):
        """Records the items on a scan's cards as they are now, and what else must stay."""
        for card in cards:
            for entry in card["entries"]:
                item = Path(entry["path"])
                self.items[item] = portrait(item)
        self.kept = {path: portrait(path) for path in
                     [self.home / "Documents", *(self.home / "code").glob("*/package.json")]}

    def recorded(self):
        """The recorded place of each item in the Trash."""
        places = {}
        for record in (self.trash / "info").glob("*.trashinfo"):
            for line in record.read_text(encoding="utf-8", errors="replace").splitlines():
                if line.startswith("Path="):
                    item = self.trash / "files" / record.name.removesuffix(".trashinfo")
                    places[item] = Path(urllib.parse.unquote(line.removeprefix("Path=")))
        return places

    def faults(self, was_cleaned, was_undone):
        """The faults, each as "kind: detail". `was_cleaned`, `was_undone`: whether the user had been told so.

        A record without an item loses nothing; it is reported in brackets.
        """
        found = []
        in_trash = {}
        recorded = self.recorded()
        for item in (self.trash / "files").glob("*"):
            if item in recorded:
                in_trash.setdefault(recorded[item], []).append(item)
            else:
                found.append(f"unrecorded: {item.name}")
        for place, before in self.items.items():
            lies = [path for path in [place, *in_trash.get(place, [])] if os.path.lexists(path)]
            if not lies:
                found.append(f"lost: {place}")
            if len(lies) > 1:
                found.append(f"doubled: {place}")
            if any(portrait(path) != before for path in lies):
                found.append(f"changed: {place}")
        for path, before in self.kept.items():
            if not path.exists() or portrait(path) != before:
                found.append(f"changed: {path}")
        for record in recorded:
            if not os.path.lexists(record):
                found.append(f"(record without an item): {record.name}")
        return found + self.faults_of_history(was_cleaned, was_undone)

    def faults_of_history(self, was_cleaned, was_undone):
        # The undo starts only after the clean was reported.
        undo_has_begun = was_cleaned
        try:
            entries = json.loads(self.history.read_bytes())
        except FileNotFoundError:
            return ["history: lost"] if was_cleaned else []
        except ValueError:
            return ["history: cannot be read"]
        if len(entries) != 1:
            return [f"history: {len(entries)} runs"]
        found = []
        entry = entries[0]
        for move in entry["moves"]:
            here, there = os.path.lexists(move["original"]), os.path.lexists(move["trashed"])
            if entry["undone"] and not here:
                found.append(f"history ahead of an undo: {move['original']}")
            if not entry["undone"] and not here and not there:
                found.append(f"history without the item: {move['trashed']}")
            if here and not there and not undo_has_begun:
                found.append(f"history ahead of a clean: {move['original']}")
        if was_undone and not entry["undone"]:
            found.append("history: behind what was told")
        return found
