"""Drives a Vesk window from outside, like a user and like assistive technology.

Needs its own display and session bus: `tests/app/with_display ...`. The program is vesk-demo, the real window on a
made-up Mac in a temporary folder, so nothing of whoever runs this is read or touched."""

import contextlib
import json
import os
import queue
import shutil
import subprocess
import sys
import tempfile
import threading
import time
import unittest
from pathlib import Path

import pyatspi
import x11
from gi.repository import GLib

PATIENCE = 30  # seconds; far more than anything takes, for busy machines


def wait_for(what, condition):
    """The first true result of `condition`; fails after PATIENCE seconds."""
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        try:
            answer = condition()
        except GLib.GError:  # the item has gone in the meantime
            answer = None
        if answer:
            return answer
        time.sleep(0.05)
    raise AssertionError(f"waited in vain for {what}")


def environment_for(folder, **more):
    """The environment of a program that finds and keeps all its files in `folder`."""
    environment = dict(
        os.environ,
        TMPDIR=str(folder),
        HOME=str(folder),
        QT_QPA_PLATFORM="xcb",
        QT_QUICK_BACKEND="software",
        QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
    )
    for name in ("XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"):
        environment.pop(name, None)
    environment.update(more)
    return environment


class Window:
    """Starts a program and drives its window. Its files are in a folder that is removed when it is closed. `mac` names a
    folder to keep instead: vesk-demo's own, whose home is used again the next time. `stderr`: where its standard error
    goes; by default, to that of the tests."""

    def __init__(self, program, mac=None, stderr=None, **environment):
        self.folder = Path(tempfile.mkdtemp(prefix="vesk-window-test-"))
        self.mac = mac
        command = [program] if mac is None else [program, "--folder", str(mac)]
        self.process = subprocess.Popen(command, env=environment_for(self.folder, **environment), stderr=stderr)
        self.display = environment.get("DISPLAY", os.environ["DISPLAY"])
        self.application = wait_for("the application", self._find_application)
        self.id = wait_for("the window", self._find_window)
        # There is no window manager to do this.
        self._xdotool("windowfocus", "--sync", self.id)

    def _xdotool(self, *words, check=True):
        return subprocess.run(
            ["xdotool", *words], env=dict(os.environ, DISPLAY=self.display), check=check, capture_output=True, text=True
        ).stdout

    def _find_application(self):
        assert self.process.poll() is None, "the program ended"
        for application in pyatspi.Registry.getDesktop(0):
            if application and application.name == "Vesk" and application.get_process_id() == self.process.pid:
                return application
        return None

    def _find_window(self):
        # Of several windows of that name, this process's.
        for window in self._xdotool("search", "--onlyvisible", "--name", "^Vesk$", check=False).split():
            if self._xdotool("getwindowpid", window, check=False).strip() == str(self.process.pid):
                return window
        return None

    @property
    def home(self):
        if self.mac is not None:
            return next(Path(self.mac).glob("mac/Users/*"))
        return next(self.folder.glob("vesk-demo-*/mac/Users/*"))

    def press_close(self):
        """Closes the window as a window manager does when the user clicks its close button."""
        x11.ask_to_close(self.display, int(self.id))

    def close(self):
        """Asks the program to end. Returns its exit status."""
        self.process.terminate()
        status = self.process.wait(PATIENCE)
        shutil.rmtree(self.folder, ignore_errors=True)
        return status

    # As assistive technology

    def items(self, showing=True):
        """Every accessible item in the window, from the top."""

        def walk(item):
            for child in item:
                if child is None:
                    continue
                child.clear_cache()  # cached values may be out of date
                if not showing or child.getState().contains(pyatspi.STATE_VISIBLE):
                    yield child
                    yield from walk(child)

        return list(walk(self.application))

    def find(self, role, name):
        """The first item with this role whose name is `name`, or is accepted by it; None if there is none."""
        accepts = name if callable(name) else lambda text: text == name
        for item in self.items():
            if role_of(item) == role and accepts(item.name):
                return item
        return None

    def cards(self):
        """The cards' rows, in order. Newer Qt tells of one more item around each that was ever in view."""

        def rows(item):
            for child in item:
                if child is not None and role_of(child) == "push button":
                    yield child
                elif child is not None:
                    yield from rows(child)

        return list(rows(self.find("list", "Cards")))

    def wait(self, role, name):
        return wait_for(f"{role} {name}", lambda: self.find(role, name))

    def wait_gone(self, role, name):
        wait_for(f"no {role} {name}", lambda: not self.find(role, name))

    def press(self, role, name):
        act(self.wait(role, name), "Press")

    def scanned(self):
        """Waits until no scan is running."""
        wait_for("an available Scan again", lambda: is_available(self.find("push button", "Scan again")))

    def told_while(
        self,
        act_apart,
        kinds=("object:property-change:accessible-value", "object:state-changed:showing", "object:state-changed:focused"),
    ):
        """Calls `act_apart`, and returns the events sent to assistive technology until it has returned and a second has
        passed without one: kind of event, role and name of its item, and the item's value if it has one. An item that had
        gone when its event was read has neither name nor value."""
        listener = subprocess.Popen(
            [sys.executable, Path(__file__).parent / "listen.py", *kinds], stdout=subprocess.PIPE, text=True)
        told = queue.Queue()
        hearing = threading.Thread(target=lambda: [told.put(json.loads(line)) for line in listener.stdout])
        hearing.start()
        told.get(timeout=PATIENCE)  # that it listens
        begin = time.monotonic()
        act_apart()
        heard = []
        with contextlib.suppress(queue.Empty):
            while True:
                heard.append(tuple(told.get(timeout=max(1, begin + 2 - time.monotonic()))))
        listener.terminate()
        hearing.join()
        listener.stdout.close()
        listener.wait(PATIENCE)
        return heard

    # As a user

    def keys(self, *names):
        for name in names:
            self._xdotool("key", name)
            time.sleep(0.05)

    @contextlib.contextmanager
    def held(self, key):
        """Holds a key down; after a while it repeats."""
        self._xdotool("keydown", key)
        try:
            yield
        finally:
            self._xdotool("keyup", key)

    def middle(self, item):
        """The centre of an item, in pixels of the display. (In Qt 6.4, window coordinates are wrong.)"""
        place = item.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        return place.x + place.width // 2, place.y + place.height // 2

    def is_at(self, item, spot):
        place = item.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        return place.x <= spot[0] < place.x + place.width and place.y <= spot[1] < place.y + place.height

    def click_at(self, *spots, between=0.12):
        """Clicks at places on the display in quick succession."""
        words = []
        for x, y in spots:
            words += ["mousemove", str(x), str(y), "click", "1", "sleep", str(between)]
        self._xdotool(*words)

    def click(self, item, times=1):
        self.click_at(*[self.middle(item)] * times)

    def size(self):
        values = dict(line.split("=") for line in self._xdotool("getwindowgeometry", "--shell", self.id).split())
        return int(values["WIDTH"]), int(values["HEIGHT"])

    def focused(self):
        """The item with the keyboard focus; None if there is none."""
        # Its ancestors report the focus too; the innermost item has it.
        focused = [item for item in self.items() if item.getState().contains(pyatspi.STATE_FOCUSED)]
        return focused[-1] if focused else None

    def tab_to(self, role, name):
        """Presses Tab until the item has the focus."""
        accepts = name if callable(name) else lambda text: text == name
        for _ in range(80):
            item = self.focused()
            if item and role_of(item) == role and accepts(item.name):
                return item
            self.keys("Tab")
        raise AssertionError(f"Tab does not reach {role} {name}")


class ScannedWindowTest(unittest.TestCase):
    """Each test has a window of its own, on a made-up Mac that has been scanned."""

    def setUp(self):
        self.window = Window(os.environ["VESK_DEMO"])
        self.addCleanup(self.stop)
        self.window.wait("list", "Cards")
        self.window.scanned()

    def stop(self):
        if self.window.process.poll() is None:
            self.window.close()


def role_of(item):
    """The name of an item's role. Newer AT-SPI calls a push button a button."""
    name = item.getRoleName()
    return "push button" if name == "button" else name


def act(item, name):
    actions = item.queryAction()
    for place in range(actions.nActions):
        if actions.getName(place) == name:
            actions.doAction(place)
            return
    raise AssertionError(f"{item.name} has no action {name}")


def is_available(item):
    return item is not None and item.description != "Not available now"


def is_checked(item):
    item.clear_cache()
    return item.getState().contains(pyatspi.STATE_CHECKED)
