#!/usr/bin/env python3
"""The oldest macOS that Vesk runs on stands in one place, and whatever else speaks of it says the same."""

import re
import unittest
from pathlib import Path

TOP = Path(__file__).resolve().parents[2]


def text(name):
    return (TOP / name).read_text(encoding="utf-8")


VERSION = re.search(r"^set\(CMAKE_OSX_DEPLOYMENT_TARGET ([0-9.]+) CACHE", text("CMakeLists.txt"), re.MULTILINE)


class OldestMacosTest(unittest.TestCase):
    def test_the_build_is_told_before_it_looks_for_a_compiler(self):
        self.assertIsNotNone(VERSION)
        top = text("CMakeLists.txt")
        self.assertLess(top.index("CMAKE_OSX_DEPLOYMENT_TARGET"), top.index("\nproject("))

    def test_the_bundle_demands_the_version_of_the_build(self):
        demanded = re.search(r"<key>LSMinimumSystemVersion</key>\s*<string>(.*)</string>", text("packaging/macos/Info.plist.in"))
        self.assertEqual(demanded[1], "${CMAKE_OSX_DEPLOYMENT_TARGET}")

    def test_readers_are_told_the_same(self):
        major = VERSION[1].split(".")[0]
        for name in "README.md", "docs/platforms.md":
            told = re.findall(r"macOS (\d+) (?:and|or) newer", text(name))
            self.assertEqual(set(told), {major}, name)

    def test_the_lint_compiles_for_it(self):
        self.assertIn("CMAKE_OSX_DEPLOYMENT_TARGET", text("lint/macos/run.sh"))
        self.assertEqual(re.findall(r"macos\.[0-9]", text("lint/macos/run.sh")), [])


if __name__ == "__main__":
    unittest.main(verbosity=2)
