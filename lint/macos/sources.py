#!/usr/bin/env python3
"""Checks that whatever CMake names for macOS was compiled: sources.py BUILD. The list is CMake's own, from its file API
(cmake-file-api(7), codemodel version 2); nothing is guessed from folders."""

import json
import re
import sys
from pathlib import Path

TOP = Path(__file__).resolve().parents[2]


def files_of(file):
    """The sources that a file given to the compiler stands for: those that CMake put together in it, or itself."""
    if file.parent.name != "Unity":
        return [file]
    return [Path(name) for name in re.findall(r'^#include "([^"]+)"', file.read_text(), re.MULTILINE)]


def named_sources(build):
    """(target, source) for every source of C++ that CMake names, relative to the top where it lies below it."""
    replies = build / ".cmake/api/v1/reply"
    index = json.loads(max(replies.glob("index-*.json")).read_text())
    model = json.loads((replies / index["reply"]["codemodel-v2"]["jsonFile"]).read_text())
    for target in model["configurations"][0]["targets"]:
        described = json.loads((replies / target["jsonFile"]).read_text())
        for source in described.get("sources", []):
            if source["path"].endswith(".cpp"):
                yield described["name"], source["path"]


def problems(build, sources):
    if not sources:
        yield "CMake names nothing to compile"
    outputs = {}
    for entry in json.loads((build / "compile_commands.json").read_text()):
        for file in files_of(Path(entry["file"])):
            outputs.setdefault(file.resolve(), build / re.search(r" -o (\S+)", entry["command"])[1])
    for target, source in sources:
        output = outputs.get((TOP / source).resolve())
        if output is None or not output.exists():
            yield f"{source} of {target}: not compiled"
    named = {source for _, source in sources}
    tested = "tests/support/test_main.cpp" in named
    for file in sorted([*TOP.glob("src/**/*_macos.cpp"), *(TOP.glob("tests/support/*_macos.cpp") if tested else [])]):
        if str(file.relative_to(TOP)) not in named:
            yield f"{file.relative_to(TOP)}: CMake does not name it for macOS"


def main(build):
    sources = list(named_sources(build))
    if found := list(problems(build, sources)):
        sys.exit("\n".join(found))
    generated = sum((TOP / source).resolve().is_relative_to(build) for _, source in sources)
    print(f"{len(sources)} of {len(sources)} that CMake names for macOS were compiled, {generated} of them generated")


if __name__ == "__main__":
    main(Path(sys.argv[1]).resolve())
