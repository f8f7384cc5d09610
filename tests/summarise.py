#!/usr/bin/env python3
"""Adds up ctest's report (--output-junit): names all that was skipped, with its reason, and closes with the line
"N passed, N failed".

    tests/summarise.py REPORT

A test of ctest's may hold many (a Python program, a file of the views' tests). What one of these skips does not make
the whole a skipped test, so it is looked for in the output."""

import re
import sys
import xml.etree.ElementTree as ElementTree

# "test_name (module.Class.test_name) ... skipped 'reason'", with the test's description on a line between or without.
PYTHON = re.compile(r"^(\w+) \([\w.]+\)(?:\n.*)? \.\.\. skipped (?P<quote>['\"])(.*)(?P=quote)$", re.MULTILINE)
# "SKIP   : views::Pane::test_name() reason"
QT = re.compile(r"^SKIP +: \w+::([\w:]+\(.*?\)) (.*)$", re.MULTILINE)
# "file.cpp:12: Skipped", and the reason on the next line
GOOGLE = re.compile(r"^\S+:\d+: Skipped\n(.*)$", re.MULTILINE)


def skips_within(output):
    """The tests that a program reports as skipped: name and reason of each."""
    found = [(match[1], match[3]) for match in PYTHON.finditer(output)]
    return found + [(match[1], match[2]) for match in QT.finditer(output)]


def reason_of_skip(case, output):
    """Why ctest skipped a whole test; None if it did not. A test that it could not run has failed."""
    mark = case.find("skipped")
    if mark is None or not mark.get("message", "").startswith(("SKIP_", "Disabled")):
        return None
    told = GOOGLE.search(output)
    return told[1] if told else mark.get("message")


def summary(report):
    """The lines to print."""
    passed = failed = 0
    skipped = []
    for case in ElementTree.parse(report).iter("testcase"):
        name, output = case.get("name"), case.findtext("system-out") or ""
        reason = reason_of_skip(case, output)
        if reason is not None:
            skipped.append((name, reason))
        elif case.get("status") == "run":
            passed += 1
        else:
            failed += 1
        skipped += [(f"{name}, {inner}", why) for inner, why in skips_within(output)]
    lines = [f"{len(skipped)} skipped:"] if skipped else []
    lines += [f"  {name}: {reason}" for name, reason in skipped]
    return [*lines, f"{passed} passed, {failed} failed"]


if __name__ == "__main__":
    print("\n".join(summary(sys.argv[1])))
