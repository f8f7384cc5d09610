#!/usr/bin/env python3
"""Runs clang-tidy over Vesk's own sources, on all cores, and remembers what it found clean.

    lint/tidy.py CLANG_TIDY BUILD_FOLDER

BUILD_FOLDER holds compile_commands.json. A source is looked at again when it, one of Vesk's headers that it includes
(through any number of others), its compile command, the checks or clang-tidy itself changed. What was clean is
remembered in BUILD_FOLDER/tidy; findings never are. Prints the findings and exits with 1 when there are any.
"""

import hashlib
import json
import os
import re
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from functools import lru_cache
from pathlib import Path

TREE = Path(__file__).resolve().parent.parent
INCLUDE = re.compile(rb'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)


@lru_cache(maxsize=None)
def own_includes(path):
    """Vesk's own files that a file names in its includes."""
    places = (path.parent, TREE / "src", TREE / "tests", TREE / "tools", TREE / "bench", TREE)
    found = []
    for name in INCLUDE.findall(path.read_bytes()):
        found += [p / os.fsdecode(name) for p in places if (p / os.fsdecode(name)).is_file()][:1]
    return found


def with_includes(source):
    """A source and every file of Vesk's that it includes, directly or not."""
    seen, waiting = {source}, [source]
    while waiting:
        for path in map(Path.resolve, own_includes(waiting.pop())):
            if path not in seen:
                seen.add(path)
                waiting.append(path)
    return sorted(seen)


def key(entry, common):
    digest = hashlib.sha256(common)
    digest.update((entry.get("command") or " ".join(entry["arguments"])).encode())
    for path in with_includes(Path(entry["file"])):
        digest.update(os.fsencode(path))
        digest.update(path.read_bytes())
    return digest.hexdigest()


def is_own(path):
    return path.is_relative_to(TREE) and not path.is_relative_to(TREE / "build")


def main():
    clang_tidy, build = sys.argv[1], Path(sys.argv[2]).resolve()
    entries = [e for e in json.loads((build / "compile_commands.json").read_text()) if is_own(Path(e["file"]))]
    if not entries:
        print(f"{build}: no sources to look at")
        return 1
    common = subprocess.run([clang_tidy, "--version"], check=True, capture_output=True).stdout
    for config in sorted(p for p in TREE.glob("**/.clang-tidy") if is_own(p)):
        common += config.read_bytes()
    memory = build / "tidy"
    memory.mkdir(exist_ok=True)

    def look_at(entry):
        clean = memory / key(entry, common)
        if clean.exists():
            return None
        run = subprocess.run([clang_tidy, "-p", str(build), "--quiet", entry["file"]], capture_output=True, text=True)
        if run.returncode == 0 and not run.stdout.strip():
            clean.touch()
            return ""
        # Without a finding on standard output it did not get that far; standard error then says why.
        return run.stdout if "error:" in run.stdout else run.stdout + run.stderr

    # The dearest first, so that no core waits for a large one at the end.
    entries.sort(key=lambda e: -sum(p.stat().st_size for p in with_includes(Path(e["file"]))))
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        results = list(pool.map(look_at, entries))
    for findings in sorted(r for r in results if r):
        print(findings.rstrip())
    remembered = sum(r is None for r in results)
    if any(results):
        return 1
    print(f"{len(results)} sources, {remembered} of them unchanged since they were found clean")
    return 0


if __name__ == "__main__":
    sys.exit(main())
