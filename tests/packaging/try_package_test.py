"""Checks that try_package does not take an empty display for a window."""

import struct
import subprocess
import tempfile
import unittest
import zlib
from pathlib import Path

SOURCES = Path(__file__).resolve().parents[2]
TRY_PACKAGE = SOURCES / "packaging/linux/try_package"


def png(width, height, rgb):
    """A picture of one colour."""
    def chunk(kind, content):
        return struct.pack(">I", len(content)) + kind + content + struct.pack(">I", zlib.crc32(kind + content))

    rows = (b"\0" + bytes(rgb) * width) * height
    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b"")


def shows_a_window(picture):
    run = subprocess.run([TRY_PACKAGE, "--shows-a-window", picture], capture_output=True, text=True, check=False)
    return run.returncode == 0


class PictureTest(unittest.TestCase):
    def test_an_empty_display_shows_no_window(self):
        with tempfile.TemporaryDirectory() as folder:
            for name, rgb in (("black", (0, 0, 0)), ("white", (255, 255, 255))):
                picture = Path(folder) / f"{name}.png"
                picture.write_bytes(png(1280, 900, rgb))
                self.assertFalse(shows_a_window(picture), name)

    def test_vesk_is_seen(self):
        self.assertTrue(shows_a_window(SOURCES / "docs/pictures/main.png"))


if __name__ == "__main__":
    unittest.main(verbosity=2)
