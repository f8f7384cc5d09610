"""The states in which a power loss may have left a recorded disk, each mounted and checked."""

import shutil
import subprocess
from collections import Counter

from recorded_disk import Write

PAGE = 4096


def call(*command):
    return subprocess.run([str(word) for word in command], check=True, capture_output=True, text=True)


def mount(kind, device, place):
    options = [option for option in (kind.options, "" if str(device).startswith("/dev/") else "loop") if option]
    call("mount", "-t", kind.type, *(["-o", ",".join(options)] if options else []), device, place)


def copy(source, target):
    call("cp", "--sparse=auto", "--reflink=auto", source, target)


def pages(writes):
    """The writes, split at the disk's pages: after a power loss, any of them may have been written."""
    for write in writes:
        for start in range(0, len(write.data), PAGE):
            yield Write(write.offset + start, write.data[start:start + PAGE])


def put(file, writes):
    with open(file, "r+b") as disk:
        for write in writes:
            disk.seek(write.offset)
            disk.write(write.data)


class Replay:
    """Replays a recording. `faults` counts the states with each fault; `examples` has the first of each."""

    def __init__(self, recording, folder):
        self.recording = recording
        self.flushed = folder / "flushed"
        self.state = folder / "state"
        self.place = recording.place
        self.states = 0
        self.faulty = 0
        self.faults = Counter()
        self.examples = {}

    def run(self, wanted, draw):
        """Every prefix of the writes and, between two flushes, subsets of them: about `wanted` states in all."""
        writes = self.recording.writes
        places = [number for number, write in enumerate(writes, 1) if not write.is_flush]
        parts = Counter(draw.choice(places) for _ in range(max(0, wanted - len(places))))
        copy(self.recording.base, self.flushed)
        unflushed = []
        for number, write in enumerate(writes, 1):
            if write.is_flush:
                put(self.flushed, unflushed)
                unflushed = []
                continue
            unflushed.append(write)
            self.look(number, "all", unflushed)
            for _ in range(parts[number]):
                self.look(number, "a part", [page for page in pages(unflushed) if draw.random() < 0.5])

    def look(self, number, how_much, since_flush):
        copy(self.flushed, self.state)
        put(self.state, since_flush)
        self.states += 1
        faults = self.faults_of_state(number)
        self.faulty += any(not fault.startswith("(") for fault in faults)
        for fault in faults:
            kind, _, detail = fault.partition(": ")
            self.faults[kind] += 1
            self.examples.setdefault(kind, f"{how_much} of the first {number} of {len(self.recording.writes)}: {detail}")

    def faults_of_state(self, number):
        kind, recording = self.recording.kind, self.recording
        if kind.repair:
            # Any status: it only says what was repaired.
            subprocess.run([*kind.repair, str(self.state)], capture_output=True, check=False)
        try:
            mount(kind, self.state, self.place)
        except subprocess.CalledProcessError as error:
            return [f"cannot be mounted: {error.stderr.strip()}"]
        try:
            return recording.home.faults(number > recording.cleaned, number > recording.undone)
        except OSError as error:
            return [f"cannot be read: {error}"]
        finally:
            call("umount", self.place)
