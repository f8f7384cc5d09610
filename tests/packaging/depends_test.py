#!/usr/bin/env python3
"""The Debian package's dependencies, evaluated as apt does: without the plugin for SVG files, every pictogram is
blank."""

import os
import re
import shutil
import subprocess
import unittest
from pathlib import Path

CONFIG = Path(os.environ["VESK_CPACK_CONFIG"]).read_text(encoding="utf-8")
DEPENDS = re.search(r'set\(CPACK_DEBIAN_PACKAGE_DEPENDS "([^"]*)"\)', CONFIG).group(1)


def satisfied(alternative, installed):
    name, _, condition = alternative.strip().partition(" ")
    if name not in installed:
        return False
    relation = condition.strip("() ").split()
    return not relation or subprocess.run(["dpkg", "--compare-versions", installed[name], *relation]).returncode == 0


def unmet(installed):
    """The dependencies that these packages, in any version, do not satisfy."""
    return [group for group in DEPENDS.split(", ") if not any(satisfied(a, installed) for a in group.split("|"))]


QML = {group: "6.4.2" for group in DEPENDS.split(", ") if group.startswith("qml6-module-")}


@unittest.skipUnless(shutil.which("dpkg"), "dpkg, which compares versions, is not here")
class DependsTest(unittest.TestCase):
    def test_debian_12_has_the_svg_plugin_in_the_library(self):
        self.assertEqual(unmet({**QML, "libqt6svg6": "6.4.2-1"}), [])

    def test_newer_debian_has_the_svg_plugin_in_a_package_of_its_own(self):
        self.assertEqual(len(unmet({**QML, "libqt6svg6": "6.8.2-1"})), 1)
        self.assertEqual(unmet({**QML, "libqt6svg6": "6.8.2-1", "qt6-svg-plugins": "6.8.2-1"}), [])

    def test_nothing_is_met_by_nothing(self):
        self.assertEqual(unmet({}), DEPENDS.split(", "))


if __name__ == "__main__":
    unittest.main(verbosity=2)
