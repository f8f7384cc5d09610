"""Measures the window on its own display, with software rendering: the time to its first frame, and what it costs when
idle. Run it as

    VESK=build/release/bin/vesk VESK_DEMO=build/release/bin/vesk-demo \\
        tests/app/with_display python3 tests/app/measure_window.py
"""

import os
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

ROUNDS = 15
REST_SECONDS = 5


def start(program, home, **more):
    environment = dict(os.environ, HOME=home, TMPDIR=home, QT_QPA_PLATFORM="xcb", QT_QUICK_BACKEND="software", **more)
    for name in ("XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"):
        environment.pop(name, None)
    return subprocess.Popen([program], env=environment, stderr=subprocess.PIPE, text=True)


def first_frame(program, home):
    """Milliseconds from the program's start to its first frame."""
    began = time.monotonic()
    process = start(program, home, QT_LOGGING_RULES="qt.scenegraph.time.renderloop=true")
    for line in process.stderr:
        if "rendered" in line:
            break
    else:
        sys.exit("no frame was drawn")
    took = (time.monotonic() - began) * 1000
    process.terminate()
    process.communicate()
    return took


def processor_seconds(pid):
    fields = Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def at_rest(program, home):
    """CPU use in percent of a core, and resident MB, of a window after its scan."""
    process = start(program, home)
    time.sleep(REST_SECONDS)
    before = processor_seconds(process.pid)
    time.sleep(REST_SECONDS)
    share = (processor_seconds(process.pid) - before) / REST_SECONDS * 100
    pages = int(Path(f"/proc/{process.pid}/statm").read_text().split()[1])
    process.terminate()
    process.communicate()
    return share, pages * os.sysconf("SC_PAGE_SIZE") / 1e6


def main():
    with tempfile.TemporaryDirectory(prefix="vesk-measure-") as home:
        times = sorted(first_frame(os.environ["VESK"], home) for _ in range(ROUNDS))
        print(f"first frame: median {statistics.median(times):.0f} ms, slowest {times[-1]:.0f} ms of {ROUNDS} starts")
        share, resident = at_rest(os.environ["VESK_DEMO"], home)
        print(f"at rest: {share:.1f} % of a core, {resident:.0f} MB resident")


if __name__ == "__main__":
    main()
