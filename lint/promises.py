#!/usr/bin/env python3
"""Checks that docs/safety.md promises nothing without a test, and names no test that is not there.

    lint/promises.py [FOLDER]     FOLDER is a tree with docs/ and tests/ in it, by default Vesk's

A promise is a section ("## ..."). Tests are named as `Suite.Name`, `test_program.py: test_name` or
`tst_view.qml: test_name`. Prints a line for each fault and exits with 1 when there is one.
"""

import re
import sys
from pathlib import Path

GOOGLE_TEST = re.compile(r"\bTEST(?:_F|_P)?\(\s*(\w+)\s*,\s*(\w+)\s*\)")
PYTHON_TEST = re.compile(r"^\s*def (test_\w+)\(", re.MULTILINE)
QML_TEST = re.compile(r"^\s*function (test_\w+)\(", re.MULTILINE)
NAMED = re.compile(r"`([A-Z]\w*\.[A-Z]\w*|\w+\.(?:py|qml): \w+)`")


def tests_of(tree):
    """The names of all tests, as the document writes them."""
    names = set()
    for path in sorted((tree / "tests").rglob("*")):
        if path.suffix == ".cpp":
            names |= {f"{suite}.{name}" for suite, name in GOOGLE_TEST.findall(path.read_text(encoding="utf-8"))}
        elif path.suffix in (".py", ".qml"):
            pattern = PYTHON_TEST if path.suffix == ".py" else QML_TEST
            names |= {f"{path.name}: {name}" for name in pattern.findall(path.read_text(encoding="utf-8"))}
    return names


def faults(document, tests):
    """What is wrong with the document, as "line: what", and how many tests it names."""
    found, named = [], 0
    promise, line_of_promise, held = None, 0, False
    for number, line in enumerate([*document.splitlines(), "# end"], 1):
        if line.startswith("#"):
            if promise is not None and not held:
                found.append(f"{line_of_promise}: no test holds \"{promise}\"")
            promise = line[3:] if line.startswith("## ") else None
            line_of_promise, held = number, False
        for name in NAMED.findall(line):
            named += 1
            held = True
            if name not in tests:
                found.append(f"{number}: there is no test {name}")
    return found, named


def main():
    tree = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).resolve().parent.parent
    found, named = faults((tree / "docs/safety.md").read_text(encoding="utf-8"), tests_of(tree))
    if not named:
        found.append("1: names no test at all")
    for fault in found:
        print(f"docs/safety.md:{fault}")
    if not found:
        print(f"{named} tests named")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
