"""The window on a display that is smaller than the window's usual size and its minimum size."""

import os
import sys
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent))

import pyatspi  # noqa: E402
from window import ScannedWindowTest, act, wait_for  # noqa: E402

DISPLAY = tuple(int(number) for number in os.environ["VESK_SCREEN"].split("x"))


class SmallDisplayTest(ScannedWindowTest):
    def test_the_window_is_no_larger_than_the_display(self):
        width, height = self.window.size()
        self.assertLessEqual(width, DISPLAY[0])
        self.assertLessEqual(height, DISPLAY[1])
        self.assertEqual((width, height), DISPLAY)

    def test_cards_stand_one_below_the_other(self):
        def gaps():
            rows = self.window.cards()[:5]
            places = [row.queryComponent().getExtents(pyatspi.DESKTOP_COORDS) for row in rows]
            return [below.y - above.y - above.height for above, below in zip(places, places[1:])]

        time.sleep(3)  # until they have appeared
        wait_for("cards 10 apart", lambda: gaps() == [10] * 4)

    def in_view(self, item):
        place = item.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        return place.x >= 0 and place.y >= 0 and place.x + place.width <= DISPLAY[0] and place.y + place.height <= DISPLAY[1]

    def test_everything_can_be_reached(self):
        self.window.tab_to("check box", "Preview only")
        for role, name in (("push button", "Scan again"), ("page tab", "History"), ("push button", "Pick safe junk only"),
                           ("check box", "Preview only")):
            item = self.window.tab_to(role, name)
            wait_for(f"{name} in view", lambda item=item: self.in_view(item))
        row = next(row for row in self.window.cards() if row.getState().contains(pyatspi.STATE_VISIBLE))
        act(row, "Press")
        wait_for("Done in view", lambda: self.in_view(self.window.wait("push button", "Done")))
        self.window.click(self.window.wait("push button", "Done"))
        self.window.wait_gone("push button", "Done")


if __name__ == "__main__":
    unittest.main(verbosity=2)
