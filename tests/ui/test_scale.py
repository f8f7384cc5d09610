"""On a dense screen everything is where it is on any other: in points, not in pixels."""

import os
import subprocess
import unittest
from pathlib import Path

TOLERANCE = 1  # point: an image is as large as its pixels, which are whole


def places(scale):
    """Where each item of the window is, in points, by its way through the tree."""
    command = [os.environ["VESK_VIEW_TESTS"], "-input", str(Path(__file__).parent / "print_places.qml")]
    environment = dict(os.environ, QT_SCALE_FACTOR=str(scale))
    result = subprocess.run(command, env=environment, capture_output=True, text=True, timeout=120, check=False)
    assert result.returncode == 0, result.stdout + result.stderr
    found = {}
    for line in (result.stdout + result.stderr).splitlines():
        if "PLACE " in line:
            name, *numbers = line.split("PLACE ", 1)[1].split(" ")
            found[name] = [float(number) for number in numbers]
    return found


class ScaleTest(unittest.TestCase):
    def test_nothing_is_elsewhere_at_double_scale(self):
        once, twice = places(1), places(2)
        self.assertGreater(len(once), 150)
        self.assertEqual(once.keys(), twice.keys())
        elsewhere = [
            f"{name}: {once[name]} became {twice[name]}"
            for name in once
            if max(abs(one - two) for one, two in zip(once[name], twice[name])) > TOLERANCE
        ]
        self.assertEqual(elsewhere, [])


if __name__ == "__main__":
    unittest.main(verbosity=2)
