"""Runs commands and measures what they cost; compares two of them in pairs."""

import os
import re
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass


@dataclass
class Cost:
    """What one run of a command took, in seconds."""

    wall: float
    user: float
    system: float
    voluntary: int
    involuntary: int
    output: str

    @property
    def cpu(self):
        return self.user + self.system


def cost_of(command, environment=None):
    """Runs a command to its end. Its output goes to `output`; a failure ends the benchmark."""
    with tempfile.TemporaryFile(mode="w+") as written:
        start = time.perf_counter()
        process = subprocess.Popen(
            command, stdin=subprocess.DEVNULL, stdout=written, stderr=written, env=environment)
        _, status, usage = os.wait4(process.pid, 0)
        wall = time.perf_counter() - start
        process.returncode = os.waitstatus_to_exitcode(status)
        written.seek(0)
        output = written.read()
    if process.returncode != 0:
        sys.exit(f"bench: {' '.join(command)} ended with {process.returncode}:\n{output}")
    return Cost(wall, usage.ru_utime, usage.ru_stime, usage.ru_nvcsw, usage.ru_nivcsw, output)


def peak_memory(command):
    """The peak memory of a command in bytes, as GNU time reports it."""
    with tempfile.NamedTemporaryFile(mode="r") as told:
        # Not through wait4 from here: the child of a large program inherits that program's own peak.
        cost_of(["time", "--format=%M", f"--output={told.name}", *command])
        return int(told.read()) * 1024


def system_calls(command):
    """How often a command and its threads made each system call, as strace counts them."""
    with tempfile.NamedTemporaryFile(mode="r") as told:
        cost_of(["strace", "-f", "-c", "-o", told.name, *command])
        counts = {}
        for line in told.read().splitlines():
            fields = line.split()
            if len(fields) >= 5 and fields[3].isdigit() and fields[-1] != "total":
                counts[fields[-1]] = int(fields[3])
        return counts


def said(pattern, output):
    """The number that `pattern` finds in a command's output."""
    found = re.search(pattern, output)
    if not found:
        sys.exit(f"bench: no {pattern!r} in {output!r}")
    return float(found.group(1))


@dataclass
class Comparison:
    """Two commands, run in turn, and what they cost."""

    first: list
    second: list

    def median(self, what, side):
        return statistics.median(getattr(cost, what) for cost in side)

    @property
    def ratio(self):
        """First by second: the median of the pairs' own ratios, since what slows one run slows its neighbour too."""
        return statistics.median(a.wall / b.wall for a, b in zip(self.first, self.second))

    @property
    def spread(self):
        ratios = sorted(a.wall / b.wall for a, b in zip(self.first, self.second))
        return ratios[len(ratios) // 4], ratios[-1 - len(ratios) // 4]


def compare(first, second, pairs, before=lambda: None, own_clock=False):
    """Runs A B A B ...; `before` comes before each run. One warm-up of each is not counted.

    `own_clock`: the wall time is the one that the programs print, which leaves out their start.
    """
    comparison = Comparison([], [])
    for turn in range(-1, pairs):
        for command, costs in ((first, comparison.first), (second, comparison.second)):
            before()
            cost = cost_of(command)
            if own_clock:
                cost.wall = said(r"([\d.]+) seconds", cost.output)
            if turn >= 0:
                costs.append(cost)
    return comparison


def can_drop_caches():
    return os.access("/proc/sys/vm/drop_caches", os.W_OK)


def drop_caches():
    os.sync()
    with open("/proc/sys/vm/drop_caches", "w", encoding="ascii") as switch:
        switch.write("3\n")


def missing(programs):
    return [program for program in programs if shutil.which(program) is None]
