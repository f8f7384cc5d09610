"""Held keys and double clicks on the real window: nobody confirms, closes or opens anything by accident."""

import os
import sys
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))

from window import PATIENCE, ScannedWindowTest, Window, act, is_available, role_of, wait_for  # noqa: E402

LARGEST = "Dormant AI models"
QUESTION = "Move to Trash"


def is_main(name):
    return name.startswith("Clean ")


def is_celebration(name):
    return name.startswith("Vesk!")


class InputTest(ScannedWindowTest):
    def stays(self, seconds, role, name):
        """Waits for the item, then checks that it stays for that long."""
        item = self.window.wait(role, name)
        time.sleep(seconds)
        self.assertIsNotNone(self.window.find(role, item.name), f"{role} {name} went away")

    def nothing_cleaned(self):
        self.assertFalse(list(self.window.home.glob(".local/share/Trash/files/*")))

    def test_a_held_return_asks_and_does_not_answer(self):
        self.window.tab_to("push button", is_main)
        with self.window.held("Return"):
            self.stays(2, "push button", QUESTION)
        self.stays(0.2, "push button", QUESTION)
        self.nothing_cleaned()
        self.window.keys("Return")
        self.window.wait("alert", is_celebration)

    def test_a_held_key_presses_once(self):
        for key in ("space", "Return"):
            with self.subTest(key):
                preview = self.window.tab_to("check box", "Preview only")
                told = self.window.told_while(lambda: self.hold(key, 2), ("object:state-changed:checked",))
                changes = [name for _, role, name, _ in told if role == "check box"]
                self.assertEqual(changes, [preview.name])

    def test_the_usual_keys_end_it(self):
        for key in ("ctrl+q", "ctrl+w"):
            with self.subTest(key):
                self.window.press("push button", LARGEST)
                self.window.wait("push button", "Done")
                self.window.keys(key)
                self.assertEqual(self.window.process.wait(PATIENCE), 0)
                self.window = Window(os.environ["VESK_DEMO"])
                self.window.wait("list", "Cards")
                self.window.scanned()

    def test_after_an_undos_alert_something_has_the_focus(self):
        for way in ("keyboard", "assistive technology"):
            with self.subTest(way):
                self.window.press("page tab", "Found")
                self.window.press("push button", self.window.wait("push button", is_main).name)
                self.window.press("push button", QUESTION)
                act(self.window.wait("alert", is_celebration), "Press")
                self.window.wait_gone("alert", is_celebration)
                self.window.scanned()
                self.window.press("page tab", "History")
                self.window.wait("push button", "Undo")
                if way == "keyboard":
                    self.window.tab_to("push button", "Undo")
                    self.window.keys("Return")
                else:
                    self.window.press("push button", "Undo")
                self.window.wait("push button", "OK")
                self.window.keys("Return")
                self.window.wait_gone("push button", "OK")
                item = wait_for("something with the focus", self.window.focused)
                self.assertIn(role_of(item), ("push button", "page tab", "check box"), item.name)

    def hold(self, key, seconds):
        with self.window.held(key):
            time.sleep(seconds)

    def test_return_presses_a_focused_cancel(self):
        self.window.tab_to("push button", is_main)
        self.window.keys("Return")
        self.window.wait("push button", QUESTION)
        self.window.tab_to("push button", "Cancel")
        self.window.keys("Return")
        self.window.wait_gone("push button", QUESTION)
        wait_for("the screen", lambda: is_available(self.window.find("push button", is_main)))
        self.nothing_cleaned()

    def test_a_double_click_on_move_to_trash_leaves_the_celebration(self):
        self.window.press("push button", self.window.wait("push button", is_main).name)
        self.window.click(self.window.wait("push button", QUESTION), times=2)
        self.stays(1, "alert", is_celebration)
        self.window.click(self.window.wait("alert", is_celebration))
        self.window.wait_gone("alert", is_celebration)

    def test_a_double_click_on_cancel_presses_nothing_beneath(self):
        self.window.press("push button", self.window.wait("push button", is_main).name)
        cancel = self.window.wait("push button", "Cancel")
        self.window.click(cancel, times=2)
        self.window.wait_gone("push button", "Cancel")
        self.assertIsNone(self.window.find("push button", "Done"), "a card behind Cancel was opened")

    def test_a_double_click_on_done_opens_nothing_beneath(self):
        self.window.press("push button", LARGEST)
        self.window.click(self.window.wait("push button", "Done"), times=2)
        time.sleep(1)
        self.assertIsNone(self.window.find("push button", "Done"))

    def test_a_double_click_on_a_card_leaves_its_sheet_open(self):
        self.window.press("push button", LARGEST)
        spot = self.window.middle(self.window.wait("push button", "Done"))
        self.window.keys("Escape")
        self.window.wait_gone("push button", "Done")
        self.assertTrue(any(self.window.is_at(row, spot) for row in self.window.cards()), "no row lies where Done comes up")
        self.window.click_at(spot, spot)
        self.stays(1, "push button", "Done")
        self.window.click_at(spot)
        self.window.wait_gone("push button", "Done")


if __name__ == "__main__":
    unittest.main(verbosity=2)
