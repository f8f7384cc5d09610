"""The real program on a real display, used by keyboard and by assistive technology, and what is on disk afterwards."""

import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))

import pyatspi  # noqa: E402
from window import PATIENCE, ScannedWindowTest, Window, act, is_checked, role_of, wait_for  # noqa: E402

CARDS = 19
# What a clean itself creates in the home: the Trash and the preferences.
OWN = {".local", ".config"}
LARGEST = "Dormant AI models"


def trash_list(home):
    """The original paths that trash-cli, which shares no code with Vesk, finds in the Trash."""
    environment = {"HOME": str(home), "XDG_DATA_HOME": str(home / ".local/share"), "PATH": "/usr/bin:/bin"}
    output = subprocess.run(["trash-list"], env=environment, capture_output=True, text=True, check=True).stdout
    return sorted(line.split(" ", 2)[2] for line in output.splitlines() if line)


def files_below(folder):
    return sorted(str(path.relative_to(folder)) for path in folder.rglob("*") if path.relative_to(folder).parts[0] not in OWN)


class WindowTest(ScannedWindowTest):
    def tick_only(self, title):
        """Unticks every card but this one."""
        for row in self.window.cards():
            switch = next(item for item in row if role_of(item) == "check box")
            if is_checked(switch) != (row.name == title):
                act(switch, "Toggle")
        wait_for("one ticked card", lambda: self.window.find("push button", lambda name: name == "Clean 36.2 MB"))

    def test_every_card_can_be_read(self):
        wait_for("all cards", lambda: len(self.window.cards()) == CARDS)
        for row in self.window.cards():
            switch = next(item for item in row if role_of(item) == "check box")
            self.assertEqual(switch.name, row.name)
            self.assertEqual(is_checked(switch), row.description.startswith("Safe."), row.description)

    def test_every_control_has_a_name(self):
        self.window.press("page tab", "History")
        self.window.wait("heading", "No cleanups yet")
        self.window.press("page tab", "Found")
        self.window.press("push button", LARGEST)
        self.window.wait("dialog", LARGEST)
        structural = {"filler", "panel", "frame", "application", "scroll bar"}
        nameless = [role_of(item) for item in self.window.items() if not item.name]
        self.assertEqual([role for role in nameless if role not in structural], [])

    def test_clean_and_undo(self):
        home = self.window.home
        before = files_below(home)
        self.tick_only(LARGEST)
        self.window.press("push button", "Clean 36.2 MB")
        self.window.wait("dialog", "Move 36.2 MB to the Trash?")
        self.assertEqual(trash_list(home), [])
        self.window.press("push button", "Move to Trash")
        celebration = self.window.wait("alert", lambda name: name.startswith("Vesk! 36.2 MB freed."))
        wait_for("items in the Trash", lambda: trash_list(home))
        trashed = trash_list(home)
        for path in trashed:
            self.assertFalse(Path(path).exists(), path)
        act(celebration, "Press")
        self.window.wait_gone("alert", celebration.name)
        self.window.scanned()
        self.window.wait_gone("push button", LARGEST)

        self.window.press("page tab", "History")
        self.window.wait("list item", lambda name: name.startswith(f"Freed 36.2 MB. {LARGEST}."))
        self.window.press("push button", "Undo")
        self.window.wait("dialog", "Heads up")
        notice = f"All {len(trashed)} items are back where they were."
        self.window.wait("label", notice)
        self.window.press("push button", "OK")
        self.window.wait("list item", lambda name: name.endswith("Restored"))
        self.assertEqual(trash_list(home), [])
        self.assertEqual(files_below(home), before)

    def test_preview_touches_nothing(self):
        home = self.window.home
        before = files_below(home)
        self.tick_only(LARGEST)
        act(self.window.wait("check box", "Preview only"), "Toggle")
        self.window.press("push button", "Preview 36.2 MB")
        self.window.wait("dialog", "Preview 36.2 MB?")
        self.window.press("push button", "Run preview")
        celebration = self.window.wait(
            "alert", lambda name: name == "Preview done 36.2 MB could be freed. Nothing was touched."
        )
        act(celebration, "Press")
        self.window.press("page tab", "History")
        self.window.wait("list item", lambda name: name.startswith("Preview: would free 36.2 MB."))
        self.assertIsNone(self.window.find("push button", "Undo"))
        self.assertEqual(trash_list(home), [])
        self.assertEqual(files_below(home), before)

    def test_keyboard_alone(self):
        home = self.window.home
        self.window.tab_to("check box", "Preview only")
        self.window.keys("space")
        wait_for("preview on", lambda: is_checked(self.window.find("check box", "Preview only")))
        self.window.keys("space")
        self.window.tab_to("push button", lambda name: name.startswith("Clean "))
        self.window.keys("Return")
        self.window.wait("dialog", lambda name: name.startswith("Move "))
        self.window.keys("Escape")
        self.window.wait_gone("dialog", lambda name: name.startswith("Move "))
        focused = wait_for("the focus to come back", self.window.focused)
        self.assertTrue(focused.name.startswith("Clean "), focused.name)
        self.assertEqual(trash_list(home), [])

        self.window.keys("Return")
        self.window.wait("push button", "Move to Trash")
        self.window.keys("Return")
        self.window.wait("alert", lambda name: name.startswith("Vesk!"))
        self.window.keys("Escape")
        self.window.wait_gone("alert", lambda name: name.startswith("Vesk!"))
        self.window.scanned()
        trashed = len(trash_list(home))
        self.assertGreater(trashed, 0)

        self.window.tab_to("page tab", "Found")
        self.window.keys("Right")
        self.window.tab_to("push button", "Undo")
        self.window.keys("Return")
        self.window.wait("dialog", "Heads up")
        self.window.keys("Return")
        self.window.wait_gone("dialog", "Heads up")
        self.window.scanned()
        self.assertEqual(trash_list(home), [])

    def test_progress_and_celebration_are_announced(self):
        self.window.tab_to("push button", "Scan again")
        told = self.window.told_while(lambda: self.window.keys("space"))
        progress = [(role, name, value) for kind, role, name, value in told if kind == "accessible-value"]
        self.assertGreater(len(progress), 2, told)
        for role, name, value in progress:
            if name and value is not None:
                self.assertEqual(role, "progress bar")
                self.assertRegex(name, r"^Sniffing around… \d+%, .* checked$")
                self.assertTrue(0 <= value <= 100, value)

        self.window.scanned()
        self.window.tab_to("push button", lambda name: name.startswith("Clean "))
        self.window.keys("Return")
        self.window.wait("push button", "Move to Trash")
        told = self.window.told_while(lambda: self.window.keys("Return"))
        alerts = {kind for kind, role, name, _ in told if role == "alert" and name.startswith("Vesk!")}
        self.assertLessEqual({"showing", "focused"}, alerts, told)

    def test_nothing_behind_a_dialog_can_be_used(self):
        toggle = self.window.find("check box", "Preview only")
        self.window.press("push button", LARGEST)
        self.window.wait("dialog", LARGEST)
        act(toggle, "Toggle")  # as a program could that still holds on to it
        inside = {LARGEST, "Done", "Include in clean", "Review", "Details"}
        wait_for("nothing else", lambda: not self.window.find("push button", "Scan again"))
        pressable = {item.name for item in self.window.items() if role_of(item) in ("push button", "check box", "page tab")}
        self.assertLessEqual(pressable, inside)
        reached = set()
        for _ in range(8):
            self.window.keys("Tab")
            item = self.window.focused()
            if item:
                reached.add(item.name)
        self.assertLessEqual(reached, {"Done", "Include in clean", "Details"})
        self.window.keys("Return")
        self.window.wait_gone("dialog", LARGEST)
        self.window.wait("push button", "Scan again")
        self.assertFalse(is_checked(self.window.wait("check box", "Preview only")))

    def test_a_button_that_is_unavailable_says_so(self):
        def is_enabled(item):
            item.clear_cache()
            states = item.getState()
            return states.contains(pyatspi.STATE_ENABLED) and states.contains(pyatspi.STATE_SENSITIVE)

        self.window.press("push button", "Pick safe junk only")
        main = self.window.wait("push button", lambda name: name.startswith("Clean "))
        self.assertTrue(is_enabled(main))
        for row in self.window.cards():
            switch = next(item for item in row if role_of(item) == "check box")
            if is_checked(switch):
                act(switch, "Toggle")
        main = self.window.wait("push button", "Pick something to clean")
        self.assertFalse(is_enabled(main))
        self.assertEqual(main.description, "Not available now")

    def test_resizing(self):
        def resized(width, height):
            subprocess.run(["xdotool", "windowsize", self.window.id, str(width), str(height)], check=True)

        resized(1500, 900)
        wait_for("a larger window", lambda: self.window.size() == (1500, 900))
        hints = subprocess.run(["xprop", "-id", self.window.id, "WM_NORMAL_HINTS"], capture_output=True, text=True).stdout
        self.assertIn("minimum size: 980 by 660", hints)

    def test_ends_cleanly_when_asked_to(self):
        folder = next(self.window.folder.glob("vesk-demo-*"))
        self.window.process.terminate()
        self.assertEqual(self.window.process.wait(PATIENCE), 0)
        self.assertFalse(folder.exists())


class TextSizeTest(unittest.TestCase):
    def text_size(self, mac, **environment):
        """How high the list's heading is, as a multiple of a switch, whose size does not depend on the text's."""
        window = Window(os.environ["VESK_DEMO"], mac=mac, **environment)
        try:
            window.scanned()
            items = [window.wait("heading", "Best first"), window.wait("check box", "Preview only")]
            heading, switch = [item.queryComponent().getExtents(pyatspi.DESKTOP_COORDS).height for item in items]
            self.home = window.home
            return heading / switch
        finally:
            window.close()

    def test_texts_are_as_large_as_the_desktop_has_them(self):
        with tempfile.TemporaryDirectory(prefix="vesk-text-size-") as mac:
            usual = self.text_size(mac)
            settings = self.home / ".config/gtk-4.0/settings.ini"
            settings.parent.mkdir(parents=True)
            settings.write_text(f"[Settings]\ngtk-xft-dpi={int(1.5 * 96 * 1024)}\n")
            self.assertAlmostEqual(self.text_size(mac) / usual, 1.5, delta=0.1)
            # Where the whole window is drawn larger by this setting, its texts are not enlarged once more.
            self.assertAlmostEqual(self.text_size(mac, QT_SCALE_FACTOR="1.5") / usual, 1, delta=0.1)


if __name__ == "__main__":
    unittest.main(verbosity=2)
