#!/usr/bin/env python3
"""Checks that lint/includes.py finds each kind of include against the layers, and accepts the right ones."""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

CHECK = Path(__file__).resolve().parents[2] / "lint" / "includes.py"

RIGHT = [
    ("src/platform/files/files.h", "#include <vector>"),
    ("src/platform/files/files.cpp", "#include <fcntl.h>"),
    ("src/platform/text.cpp", "#include <QString>"),
    ("src/platform/system/core_foundation.h", "#include <CoreFoundation/CoreFoundation.h>"),
    ("src/platform/volume_macos.cpp", '#include "platform/system/core_foundation.h"'),
    ("src/ui/delegate_macos.cpp", '#include "platform/system/objective_c.h"'),
    ("src/core/card.h", '#include "platform/date.h"'),
    ("src/rules/caches.cpp", '#include "core/card.h"'),
    ("src/state/store.h", "#include <QObject>"),
    ("src/state/json.h", "#include <rapidjson/reader.h>"),
    ("src/ui/arc.h", "#include <QtQml/qqmlregistration.h>"),
    ("src/app/main.cpp", '#include "state/store.h"'),
    ("tools/report.cpp", "#include <nlohmann/json.hpp>"),
    ("src/core/card.cpp", "// a word about #include <QString>"),
]

WRONG = [
    ("src/platform/files.cpp", '#include "core/card.h"'),
    ("src/core/card.cpp", '#include "rules/rules.h"'),
    ("src/rules/caches.cpp", '#include "state/store.h"'),
    ("src/state/store.cpp", '#include "ui/arc.h"'),
    ("src/ui/arc.cpp", '#include "app/start.h"'),
    ("src/core/card.cpp", '#include "card.h"'),
    ("src/core/card.cpp", '#include "../platform/files/files.h"'),
    ("src/core/card.cpp", '#include "tests/support/temporary_home.h"'),
    ("src/platform/files/files.h", "#include <fcntl.h>"),
    ("src/platform/text.h", "#include <QString>"),
    ("src/core/card.h", "#include <QString>"),
    ("src/core/card.cpp", "#include <unistd.h>"),
    ("src/rules/caches.cpp", "#  include <QtCore/QString>"),
    ("src/state/store.cpp", "#include <unistd.h>"),
    ("src/state/store.cpp", "#include <rapidjson/reader.h>"),
    ("src/ui/json.h", "#include <rapidjson/reader.h>"),
    ("src/state/scan.cpp", "#include <sys/stat.h>"),
    ("src/platform/volume_linux.cpp", '#include "platform/system/core_foundation.h"'),
    ("src/ui/delegate_macos.cpp", "#include <objc/runtime.h>"),
    ("src/ui/delegate.cpp", '#include "platform/system/objective_c.h"'),
    ("src/ui/delegate_macos.cpp", "#include <unistd.h>"),
    ("src/platform/window_macos.cpp", '#include "ui/arc.h"'),
    ("src/elsewhere/thing.h", "#include <vector>"),
]


def check(*files):
    """Runs the check on a tree of these files; returns its exit status and output."""
    with tempfile.TemporaryDirectory() as tree:
        for path, line in files:
            file = Path(tree) / path
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_text(f"// A file.\n{line}\n", encoding="utf-8")
        run = subprocess.run([sys.executable, CHECK, tree], capture_output=True, text=True, check=False)
        return run.returncode, run.stdout


class Includes(unittest.TestCase):
    def test_right_ones_pass(self):
        self.assertEqual(check(*RIGHT), (0, ""))

    def test_each_wrong_one_is_found_with_its_place(self):
        for path, line in WRONG:
            with self.subTest(path=path, line=line):
                status, printed = check(("src/core/entry.h", "#include <string>"), (path, line))
                self.assertEqual(status, 1)
                self.assertEqual(len(printed.splitlines()), 1, printed)
                self.assertTrue(printed.startswith(f"{path}:"), printed)

    def test_a_tree_without_sources_is_a_fault(self):
        self.assertEqual(check(("tools/report.cpp", "#include <vector>"))[0], 1)


if __name__ == "__main__":
    unittest.main(verbosity=2)
