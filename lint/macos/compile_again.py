#!/usr/bin/env python3
"""Compiles sources of a build for a Mac once more, in another way: compile_again.py BUILD OUT --qt ROOT, or --for-intel.
The first takes what only macOS has, and the window's side, with the Qt headers below ROOT; the second what only macOS has,
for x86_64. The commands are the build's own, changed; each source is compiled by itself, also where the build puts
several together, so that no include is lent by another. A source that includes moc's output is left out where Qt is
another one: that belongs to the Qt which made it."""

import json
import os
import re
import shlex
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from sources import files_of

TOP = Path(__file__).resolve().parents[2]
QT_HEADERS = re.compile(r"/usr/include/[^/ ]+/qt6|\S+/lint-macos/include/qt6")


def only_macos(source):
    return source.is_relative_to(TOP / "src") and source.stem.endswith("_macos")


def on_the_windows_side(source):
    if not source.is_relative_to(TOP / "src") or re.search(r'#include "[^"]+\.moc"', source.read_text()):
        return False
    return only_macos(source) or source.parent.name in ("app", "ui")


def commands(build, chosen):
    """(source, command, its folder) of each chosen source."""
    for entry in json.loads((build / "compile_commands.json").read_text()):
        for source in files_of(Path(entry["file"])):
            if chosen(source):
                words = [str(source) if word == entry["file"] else word for word in shlex.split(entry["command"])]
                yield source, words, entry["directory"]


def compile_one(source, words, folder, change, out):
    words = [change(word) for word in words]
    words[words.index("-o") + 1] = str(out / (source.name + ".o"))
    done = subprocess.run(words, cwd=folder, text=True, capture_output=True)
    return None if done.returncode == 0 else f"{source}:\n{done.stderr}"


def main(build, folder, way, root=None):
    if way == "--for-intel":
        chosen, what = only_macos, "x86_64"

        def change(word):
            return word.replace("aarch64-macos", "x86_64-macos")
    else:
        headers = next(iter(root.glob("usr/include/*/qt6")), None)
        if headers is None:
            sys.exit(f"{root}: no Qt headers below it")
        version = re.search(r'QTCORE_VERSION_STR "([^"]+)"', (headers / "QtCore/qtcoreversion.h").read_text())
        chosen, what = on_the_windows_side, f"the headers of Qt {version[1] if version else root}"

        def change(word):
            return QT_HEADERS.sub(str(headers), word)

    folder.mkdir(parents=True, exist_ok=True)
    found = list(commands(build, chosen))
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        failures = [told for told in pool.map(lambda one: compile_one(*one, change, folder), found) if told]
    if failures or not found:
        sys.exit("\n".join(failures) or "nothing to compile")
    print(f"{len(found)} sources, each by itself: fine with {what}")


main(*(Path(word).resolve() if not word.startswith("--") else word for word in sys.argv[1:]))
