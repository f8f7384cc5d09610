"""Drives a Vesk window from outside, as a user and as assistive technology does.

Needs a display and a session bus of its own: `tests/app/with_display ...`. The program is vesk-demo, the real
window over a made-up Mac in a temporary folder, so nothing of whoever runs this is read or touched."""

import contextlib
import os
import shutil
import subprocess
import tempfile
import threading
import time
from pathlib import Path

import pyatspi
import x11
from gi.repository import GLib

PATIENCE = 30  # seconds; far more than anything takes, for machines that do much else


def wait_for(what, condition):
    """The first true answer of `condition`; fails after PATIENCE seconds."""
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        try:
            answer = condition()
        except GLib.GError:  # the item looked at went away meanwhile
            answer = None
        if answer:
            return answer
        time.sleep(0.05)
    raise AssertionError(f"waited in vain for {what}")


def environment_for(folder, **more):
    """The environment of a program that is to find and keep everything in `folder`."""
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
    """The window of a program that is started for it, with what it keeps in a folder that goes when it is closed.
    A `mac` names a folder that stays instead: vesk-demo's own, whose home is used again the next time. `stderr` is where
    its standard error goes, by default that of the tests."""

    def __init__(self, program, mac=None, stderr=None, **environment):
        self.folder = Path(tempfile.mkdtemp(prefix="vesk-window-test-"))
        self.mac = mac
        command = [program] if mac is None else [program, "--folder", str(mac)]
        self.process = subprocess.Popen(command, env=environment_for(self.folder, **environment), stderr=stderr)
        self.display = environment.get("DISPLAY", os.environ["DISPLAY"])
        self.application = wait_for("the application", self._find_application)
        self.id = wait_for("the window", self._find_window)
        # There is no window manager to do it.
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
        # Of several windows of that name, the one of this process.
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
        """What a window manager does when the user presses a window's close button."""
        x11.ask_to_close(self.display, int(self.id))

    def close(self):
        """Asks the program to end. Returns its exit status."""
        self.process.terminate()
        status = self.process.wait(PATIENCE)
        shutil.rmtree(self.folder, ignore_errors=True)
        return status

    # As assistive technology

    def items(self, showing=True):
        """Every accessible item of the window, from the top."""

        def walk(item):
            for child in item:
                if child is None:
                    continue
                child.clear_cache()  # what is remembered may be from before
                if not showing or child.getState().contains(pyatspi.STATE_VISIBLE):
                    yield child
                    yield from walk(child)

        return list(walk(self.application))

    def find(self, role, name):
        """The first item with that role, whose name is `name` or is accepted by it; None when there is none."""
        accepts = name if callable(name) else lambda text: text == name
        for item in self.items():
            if role_of(item) == role and accepts(item.name):
                return item
        return None

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
        """What assistive technology is told of from the moment that `act_apart` is called until it has returned and
        nothing has been told for a second: kind of event, role and name of its item, and the item's value where it has
        one. What had gone when its news was read has neither name nor value."""
        told = []
        loop = GLib.MainLoop()
        last = time.monotonic()

        def note(event):
            nonlocal last
            last = time.monotonic()
            kind, role, name, value = event.type.split(":")[2], "", "", None
            try:
                role, name = role_of(event.source), event.source.name
                value = event.source.queryValue().currentValue if kind == "accessible-value" else None
            except (GLib.GError, NotImplementedError):
                pass
            told.append((kind, role, name, value))

        pyatspi.Registry.registerEventListener(note, *kinds)
        begin = time.monotonic()
        # Apart, so that events are heard when they come rather than afterwards.
        acting = threading.Thread(target=act_apart)
        acting.start()
        GLib.timeout_add(
            100, lambda: acting.is_alive() or time.monotonic() < max(last + 1, begin + 2) or loop.quit()
        )
        loop.run()
        pyatspi.Registry.deregisterEventListener(note, *kinds)
        return told

    # As a user

    def keys(self, *names):
        for name in names:
            self._xdotool("key", name)
            time.sleep(0.05)

    @contextlib.contextmanager
    def held(self, key):
        """Holds a key down, which repeats it after a while."""
        self._xdotool("keydown", key)
        try:
            yield
        finally:
            self._xdotool("keyup", key)

    def middle(self, item):
        """Where the middle of an item is, in pixels of the display. (Those of the window are told wrongly by Qt 6.4.)"""
        place = item.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        return place.x + place.width // 2, place.y + place.height // 2

    def is_at(self, item, spot):
        place = item.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        return place.x <= spot[0] < place.x + place.width and place.y <= spot[1] < place.y + place.height

    def click_at(self, *spots, between=0.12):
        """Clicks at places of the display, one soon after the other."""
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
        """The item that has the keyboard; None when none has."""
        # What it lies in says so too; it is the innermost.
        focused = [item for item in self.items() if item.getState().contains(pyatspi.STATE_FOCUSED)]
        return focused[-1] if focused else None

    def tab_to(self, role, name):
        """Presses Tab until the item has the keyboard."""
        accepts = name if callable(name) else lambda text: text == name
        for _ in range(80):
            item = self.focused()
            if item and role_of(item) == role and accepts(item.name):
                return item
            self.keys("Tab")
        raise AssertionError(f"Tab does not reach {role} {name}")


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
