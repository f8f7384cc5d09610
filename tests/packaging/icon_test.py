"""Reads the icon files that the build draws: macOS shows nothing at all for a file that it cannot read."""

import os
import struct
import unittest
from pathlib import Path

ICONS = Path(os.environ["VESK_ICONS"])
# Sides in pixels of the kinds that hold PNG files.
SIDES = {
    b"ic11": 32, b"ic12": 64, b"ic07": 128, b"ic13": 256, b"ic08": 256, b"ic14": 512, b"ic09": 512, b"ic10": 1024,
}


def size_of_png(content):
    if content[:8] != b"\x89PNG\r\n\x1a\n" or content[12:16] != b"IHDR" or content[-8:-4] != b"IEND":
        raise ValueError("no whole PNG file")
    return struct.unpack(">II", content[16:24])


class IconTest(unittest.TestCase):
    def test_the_icns_file_holds_every_size(self):
        content = (ICONS / "vesk.icns").read_bytes()
        self.assertEqual(content[:4], b"icns")
        self.assertEqual(struct.unpack(">I", content[4:8])[0], len(content))
        found, place = {}, 8
        while place < len(content):
            kind, length = content[place : place + 4], struct.unpack(">I", content[place + 4 : place + 8])[0]
            found[kind] = size_of_png(content[place + 8 : place + length])
            place += length
        self.assertEqual(place, len(content))
        self.assertEqual(found, {kind: (side, side) for kind, side in SIDES.items()})

    def test_each_size_of_the_icon_themes_is_drawn(self):
        for side in 16, 24, 32, 48, 64, 128, 256:
            self.assertEqual(size_of_png((ICONS / f"{side}.png").read_bytes()), (side, side))


if __name__ == "__main__":
    unittest.main(verbosity=2)
