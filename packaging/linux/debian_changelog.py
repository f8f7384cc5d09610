#!/usr/bin/env python3
"""Writes Debian's changelog from Vesk's own: debian_changelog.py CHANGELOG.md MAINTAINER TO.

Each "## VERSION, YEAR-MONTH-DAY" begins a release, each "- " in it one change, which may go on in indented lines.
"""

import email.utils
import re
import sys
import textwrap
from datetime import datetime, timezone
from pathlib import Path

RELEASE = re.compile(r"^## ([0-9.]+), (\d{4}-\d{2}-\d{2})$", re.MULTILINE)


def changes(text):
    return [" ".join(found.split()) for found in re.findall(r"^- (.*(?:\n  .*)*)", text, re.MULTILINE)]


def stanza(version, day, text, maintainer):
    lines = [f"vesk ({version}-1) unstable; urgency=medium", ""]
    for change in changes(text):
        lines += textwrap.wrap(change, 78, initial_indent="  * ", subsequent_indent="    ")
    date = email.utils.format_datetime(datetime.fromisoformat(day).replace(hour=12, tzinfo=timezone.utc))
    return "\n".join([*lines, "", f" -- {maintainer}  {date}", ""])


def main():
    source, maintainer, target = sys.argv[1:]
    # Text before the first release, then version, day and text of each.
    _, *parts = RELEASE.split(Path(source).read_text(encoding="utf-8"))
    releases = list(zip(parts[0::3], parts[1::3], parts[2::3]))
    if not releases or not all(changes(text) for _, _, text in releases):
        sys.exit(f"{source}: no release, or a release without a change")
    Path(target).write_text("\n".join(stanza(*release, maintainer) for release in releases), encoding="utf-8")


main()
