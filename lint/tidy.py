#!/usr/bin/env python3
"""Runs clang-tidy over Vesk's own sources, on all cores, and remembers what it found clean.

    lint/tidy.py CLANG_TIDY BUILD_FOLDER

BUILD_FOLDER holds compile_commands.json. Sources that are compiled together there are looked at together, which takes a
quarter of the time; only where that has findings, each is looked at by itself. A source is looked at again when it, one
of Vesk's headers that it includes (through any number of others), its compile command, the checks, clang-tidy itself or
the libraries' headers changed. What was clean is remembered in $XDG_CACHE_HOME/vesk/tidy (~/.cache/vesk/tidy) for every
checkout; findings never are. Prints the findings and exits with 1 when there are any.
"""

import hashlib
import json
import os
import re
import shlex
import subprocess
import sys
import time
from concurrent.futures import ThreadPoolExecutor
from functools import lru_cache
from pathlib import Path

TREE = Path(__file__).resolve().parent.parent
INCLUDE = re.compile(rb'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)
# As in .clang-tidy, with the sources themselves, which a file that includes them all takes for headers.
TOGETHER = r"--header-filter=/(src|tools|tests|bench)/.*\.(h|cpp)$"
KEPT_FOR = 90 * 86_400


@lru_cache(maxsize=None)
def own_includes(path):
    """Vesk's own files that a file names in its includes."""
    places = (path.parent, TREE / "src", TREE / "tests", TREE / "tools", TREE / "bench", TREE)
    found = []
    for name in INCLUDE.findall(path.read_bytes()):
        found += [p / os.fsdecode(name) for p in places if (p / os.fsdecode(name)).is_file()][:1]
    return found


def with_includes(sources):
    """Sources and every file of Vesk's that they include, directly or not."""
    seen, waiting = set(sources), list(sources)
    while waiting:
        for path in map(Path.resolve, own_includes(waiting.pop())):
            if path not in seen and path.is_relative_to(TREE):
                seen.add(path)
                waiting.append(path)
    return sorted(seen)


@lru_cache(maxsize=None)
def nearest_config(folder):
    """The .clang-tidy that holds for a folder of the tree."""
    config = folder / ".clang-tidy"
    return config if config.exists() or folder == TREE else nearest_config(folder.parent)


@lru_cache(maxsize=None)
def listing(folder):
    """Names and sizes of a library's headers: they differ between its versions."""
    try:
        return repr(sorted((e.name, e.stat().st_size) for e in os.scandir(folder) if e.is_file())).encode()
    except OSError:
        return b""


class Job:
    """A file that the build compiles, with the sources of Vesk's in it: itself, or those that it includes."""

    def __init__(self, entry, build):
        self.file = Path(entry["file"])
        words = entry.get("arguments") or shlex.split(entry["command"])
        pairs = zip(words, words[1:])
        self.flags = [word for before, word in pairs if not {before, word} & {"-c", "-o"}]
        self.flags = self.flags[[flag[:1] for flag in self.flags].index("-"):]  # a compiler, after its launcher
        self.folder, self.build = entry["directory"], build
        together = self.file.is_relative_to(build) and self.file.suffix == ".cxx"
        names = INCLUDE.findall(self.file.read_bytes()) if together else [os.fsencode(self.file)]
        paths = [Path(os.fsdecode(name)) for name in names]
        self.sources = [p for p in paths if p.is_relative_to(TREE) and not p.is_relative_to(build)]

    def key(self, common):
        digest = hashlib.sha256(common)
        for flag in self.flags:
            digest.update(flag.replace(str(self.build), "build").replace(str(TREE), "tree").encode() + b"\0")
            digest.update(listing(flag) if flag.startswith("/") else b"")
        for path in with_includes(self.sources):
            digest.update(os.fsencode(path.relative_to(TREE)) + b"\0")
            digest.update(path.read_bytes())
        return digest.hexdigest()

    def cost(self):
        return sum(path.stat().st_size for path in with_includes(self.sources))


class Tidy:
    def __init__(self, program, build):
        self.program, self.build = program, build
        self.common = subprocess.run([program, "--version"], check=True, capture_output=True).stdout
        for config in sorted(TREE.glob("**/.clang-tidy")):
            if not config.is_relative_to(build.parent):
                self.common += config.read_bytes()
        cache = Path(os.environ.get("XDG_CACHE_HOME") or Path.home() / ".cache")
        try:
            self.memory = cache / "vesk" / "tidy"
            self.memory.mkdir(parents=True, exist_ok=True)
        except OSError:
            self.memory = build / "tidy"
            self.memory.mkdir(exist_ok=True)

    def forget_old(self):
        for mark in self.memory.iterdir():
            if mark.stat().st_mtime < time.time() - KEPT_FOR:
                mark.unlink(missing_ok=True)

    @lru_cache(maxsize=None)
    def config_of(self, source):
        run = subprocess.run([self.program, "--dump-config", source, "--"], check=True, capture_output=True, text=True)
        return run.stdout

    def findings(self, job, file, options=()):
        """What clang-tidy says of one file that is compiled as the job's; empty when it is clean."""
        # What is deprecated the compiler says; newer clang says it of older standard libraries, too.
        run = subprocess.run([self.program, "--quiet", *options, str(file), "--", *job.flags,
                              "-Wno-deprecated-declarations"], capture_output=True, text=True, cwd=job.folder)
        if run.returncode == 0 and not run.stdout.strip():
            return ""
        # Without a finding on standard output it did not get that far; standard error then says why.
        return run.stdout if "error:" in run.stdout else run.stdout + run.stderr

    def look_at(self, job):
        """The findings in a job; None when nothing changed since it was clean."""
        clean = self.memory / job.key(self.common)
        if clean.exists():
            clean.touch()
            return None
        found = self.is_doubtful(job)
        if found:
            found = "".join(self.findings(job, source) for source in job.sources)
        if not found:
            clean.touch()
        return found

    def is_doubtful(self, job):
        """Whether there is a reason to look at each source by itself."""
        if len(job.sources) == 1 or len({nearest_config(source.parent) for source in job.sources}) > 1:
            return True
        return self.findings(job, job.file, [f"--config={self.config_of(str(job.sources[0]))}", TOGETHER])


def main():
    program, build = sys.argv[1], Path(sys.argv[2]).resolve()
    jobs = [Job(entry, build) for entry in json.loads((build / "compile_commands.json").read_text())]
    jobs = [job for job in jobs if job.sources]
    if not jobs:
        print(f"{build}: no sources to look at")
        return 1
    tidy = Tidy(program, build)
    tidy.forget_old()
    # The dearest first, so that no core waits for a large one at the end.
    jobs.sort(key=Job.cost, reverse=True)
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        results = list(pool.map(tidy.look_at, jobs))
    for findings in sorted(r for r in results if r):
        print(findings.rstrip())
    if any(results):
        return 1
    remembered = sum(len(job.sources) for job, result in zip(jobs, results) if result is None)
    print(f"{sum(len(job.sources) for job in jobs)} sources, {remembered} of them unchanged since they were found clean")
    return 0


if __name__ == "__main__":
    sys.exit(main())
