#!/usr/bin/env python3
"""Checks that includes follow the layers: platform < core < rules < state < ui < app.

    lint/includes.py [FOLDER]     FOLDER is a source tree with src/ in it, by default Vesk's

A file knows its own layer and those before it; includes carry their folder ("core/card.h"); platform, core and rules
show only standard C++ in their headers; the system and the libraries are reached from platform/*.cpp alone, Qt also
from state, ui and app, RapidJSON also from the history's codec. tools/, tests/ and bench/ may include anything.
Prints a line for each include that breaks this and exits with 1 when there is one.
"""

import re
import sys
from pathlib import Path

LAYERS = ["platform", "core", "rules", "state", "ui", "app"]
QT_LAYERS = {"state", "ui", "app"}
SOURCES = {".h", ".cpp"}
# Shared by macOS's own sources, and included by nothing else but each other.
MACOS_HEADERS = {
    "platform/system/core_foundation.h",
    "platform/system/objective_c.h",
    "platform/system/objective_c_send.h",
}
INCLUDE = re.compile(r'^\s*#\s*(?:include|import)\s*([<"])([^>"]+)[>"]')
QT = re.compile(r"^(Q[A-Za-z]+|Qt[A-Za-z0-9]*/.+|q[a-z_]+\.h)$")

STANDARD = set("""
algorithm any array atomic barrier bit bitset cassert cctype cerrno cfenv cfloat charconv chrono cinttypes climits
clocale cmath codecvt compare complex concepts condition_variable coroutine csetjmp csignal cstdarg cstddef cstdint
cstdio cstdlib cstring ctime cuchar cwchar cwctype deque exception execution filesystem format forward_list fstream
functional future initializer_list iomanip ios iosfwd iostream istream iterator latch limits list locale map memory
memory_resource mutex new numbers numeric optional ostream queue random ranges ratio regex scoped_allocator semaphore
set shared_mutex source_location span sstream stack stdexcept stop_token streambuf string string_view strstream
syncstream system_error thread tuple type_traits typeindex typeinfo unordered_map unordered_set utility valarray
variant vector version
""".split())


def fault_of_own(layer, path, name):
    """What is wrong with including Vesk's own file `name`, or None."""
    if name in MACOS_HEADERS and not path.stem.endswith("_macos") and path.as_posix() not in MACOS_HEADERS:
        return f'"{name}" is for *_macos.cpp alone'
    if name.endswith(".moc"):
        return None
    folder = name.split("/")[0]
    if "/" not in name or folder not in LAYERS:
        return f'"{name}" does not carry the folder of a layer'
    if LAYERS.index(folder) > LAYERS.index(layer):
        return f"{layer} must not know {folder}"
    return None


def fault_of_foreign(layer, path, name):
    """What is wrong with including <name> in the file at `path` (below src/), or None."""
    if name in STANDARD:
        return None
    if layer == "platform" and (path.suffix != ".h" or path.as_posix() in MACOS_HEADERS):
        return None
    if layer in QT_LAYERS:
        if QT.match(name):
            return None
        if name.startswith("rapidjson/") and path.as_posix() == "state/json.h":
            return None
        return f"<{name}> is neither standard C++ nor Qt; only platform/*.cpp may reach it"
    where = "a header of platform" if layer == "platform" else layer
    return f"<{name}> is not standard C++, which is all that {where} may show"


def faults(tree):
    """Every fault below tree/src as "path:line: what", and the number of files looked at."""
    found, looked_at = [], 0
    for path in sorted((tree / "src").rglob("*")):
        if path.suffix not in SOURCES:
            continue
        looked_at += 1
        place = path.relative_to(tree / "src")
        layer = place.parts[0]
        if layer not in LAYERS:
            found.append(f"{path.relative_to(tree)}:1: src/{layer} is no layer")
            continue
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            if not (match := INCLUDE.match(line)):
                continue
            own, name = match[1] == '"', match[2]
            fault = fault_of_own(layer, place, name) if own else fault_of_foreign(layer, place, name)
            if fault:
                found.append(f"{path.relative_to(tree)}:{number}: {fault}")
    return found, looked_at


def main():
    own = Path(__file__).resolve().parent.parent
    tree = Path(sys.argv[1]) if len(sys.argv) > 1 else own
    found, looked_at = faults(tree)
    # An exception for a file that has moved would hold for nothing, or for whatever comes to lie there.
    if tree == own:
        found += [f"src/{name}:1: is not there" for name in sorted(MACOS_HEADERS) if not (tree / "src" / name).is_file()]
    if not looked_at:
        found.append(f"{tree}/src: no sources there")
    for fault in found:
        print(fault)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
