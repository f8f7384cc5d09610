#!/usr/bin/env python3
"""Looks for what a linker on a Mac would miss: symbols.py BUILD COMPILER.

Every symbol that an object of BUILD needs must come from another object of the same program, from the compiler's own list
of what Darwin's libSystem exports, from the C++ library (known by its namespaces), from what Qt's libraries on this machine
export (a mangled name is the same on both systems, but for a leading underscore and where the C++ library's own types are
in it), or from FRAMEWORKS, the few functions of frameworks that Vesk calls. A program is what CMake's file API says: its own
objects, and those of the libraries that it depends on."""

import json
import re
import struct
import subprocess
import sys
from pathlib import Path

# The functions of frameworks and of the Objective-C runtime that Vesk calls, by the framework that has to be named
# when a program is linked.
FRAMEWORKS = {
    "CoreFoundation": """CFRelease CFGetTypeID CFBooleanGetTypeID CFBooleanGetValue CFDataCreate CFDataGetBytePtr
        CFDataGetLength CFDataGetTypeID CFNumberGetTypeID CFNumberGetValue CFPreferencesCopyValue CFPreferencesSetValue
        CFPreferencesSynchronize CFStringCreateWithBytes CFStringGetTypeID CFStringGetCString
        CFURLCopyResourcePropertyForKey CFURLCreateFromFileSystemRepresentation CFURLCreateWithString
        kCFAllocatorDefault kCFBooleanFalse kCFBooleanTrue kCFPreferencesAnyHost kCFPreferencesCurrentApplication
        kCFPreferencesCurrentUser kCFURLVolumeAvailableCapacityForImportantUsageKey kCFURLVolumeTotalCapacityKey""",
    "CoreServices": "LSOpenCFURLRef",
    "objc": "objc_getClass objc_msgSend sel_registerName",
}


# What the C++ library and its runtime define: names in std and __cxxabiv1, their tables and thunks, new and delete. To
# build the compiler's own library for a list would take longer than all the rest.
CXX_LIBRARY = re.compile(r"__Z(?:T(?:[ISV]|hn\d+_|v0_n\d+_))?N?K?(?:St|10__cxxabiv1)|__Z(?:n[aw]m|d[al]Pv)"
                         r"|___(?:cxa|gxx)_|___dso_handle$|___dynamic_cast$")


def macho_symbols(path):
    """(defined, undefined) names of an object for a 64-bit Mac; weak ones count as defined (Mach-O, <mach-o/nlist.h>)."""
    data = path.read_bytes()
    magic, _, _, _, commands = struct.unpack_from("<5I", data)
    if magic != 0xFEEDFACF:
        sys.exit(f"{path}: no object for a 64-bit Mac")
    at, defined, undefined = 32, set(), set()
    for _ in range(commands):
        command, size = struct.unpack_from("<2I", data, at)
        if command == 2:  # LC_SYMTAB
            symbols, count, strings = struct.unpack_from("<3I", data, at + 8)
            for i in range(count):
                name_at, kind, _, description, value = struct.unpack_from("<IBBHQ", data, symbols + 16 * i)
                if kind & 0xE0 or not kind & 1:  # for debuggers, or local
                    continue
                end = data.index(b"\0", strings + name_at)
                name = data[strings + name_at:end].decode()
                is_undefined = kind & 0x0E == 0 and value == 0
                if not (is_undefined and description & 0x40):  # N_WEAK_REF may stay unresolved
                    (undefined if is_undefined else defined).add(name)
        at += size
    return defined, undefined


def exported_by(libraries, *options):
    """The names that libraries of this machine define for others, as Darwin would spell them."""
    listed = subprocess.run(["nm", "--defined-only", "--format=posix", *options, *libraries], check=True, text=True,
                            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout
    return {"_" + line.split("@")[0].split()[0] for line in listed.splitlines() if " " in line and line[0] not in "/ "}


def plain_names(symbols):
    """Mangled names as they are declared, without what only one C++ library puts into the names of its types."""
    listed = subprocess.run(["c++filt", "--strip-underscore"], input="\n".join(sorted(symbols)), check=True, text=True,
                            stdout=subprocess.PIPE).stdout.splitlines()
    plain = (re.sub(r"\bstd::(?:__1|__cxx11)::", "std::", name).replace("[abi:cxx11]", "") for name in listed)
    return dict(zip(sorted(symbols), plain, strict=True))


def system_symbols(compiler):
    text = next((compiler / "lib/libc/darwin").glob("libSystem*.tbd")).read_text()
    names = set()
    for quoted in re.findall(r"symbols:\s*\[(.*?)\]", text, re.DOTALL):
        names |= {name.strip(" '\"\n") for name in quoted.split(",")}
    return names


def programs(build):
    """(program, names of all targets whose objects it is made of, whether it is a test's)."""
    replies = build / ".cmake/api/v1/reply"
    index = json.loads(max(replies.glob("index-*.json")).read_text())
    model = json.loads((replies / index["reply"]["codemodel-v2"]["jsonFile"]).read_text())
    targets = {}
    for listed in model["configurations"][0]["targets"]:
        described = json.loads((replies / listed["jsonFile"]).read_text())
        targets[described["id"]] = described
    for target in targets.values():
        if target["type"] != "EXECUTABLE":
            continue
        waiting, reached = [target["id"]], set()
        while waiting:
            one = waiting.pop()
            if one in reached or one not in targets:
                continue
            reached.add(one)
            if one == target["id"] or targets[one]["type"] != "EXECUTABLE":
                waiting += [needed["id"] for needed in targets[one].get("dependencies", [])]
        libraries = {"EXECUTABLE", "STATIC_LIBRARY", "OBJECT_LIBRARY"}
        parts = [targets[one] for one in reached if one == target["id"] or targets[one]["type"] in libraries]
        parts = [part for part in parts if part["type"] != "EXECUTABLE" or part is target]
        link = " ".join(piece["fragment"] for piece in target.get("link", {}).get("commandFragments", []))
        yield target["name"], parts, link


def main(build, compiler):
    commands = json.loads((build / "compile_commands.json").read_text())
    by_target = {}
    for entry in commands:
        output = re.search(r" -o (\S+)", entry["command"])[1]
        by_target.setdefault(re.search(r"CMakeFiles/([^/]+)\.dir/", output)[1], []).append(build / output)
    if missing := [path for paths in by_target.values() for path in paths if not path.exists()]:
        sys.exit(f"not looked for: {len(missing)} sources did not compile")
    system = system_symbols(compiler)
    frameworks = {name: {"_" + symbol for symbol in text.split()} for name, text in FRAMEWORKS.items()}
    read, qt, found, count, needed = {}, {}, [], 0, set()
    for name, parts, link in programs(build):
        objects = [path for part in parts for path in by_target.get(part["name"], [])]
        defined, undefined = set(), set()
        for path in objects:
            if path not in read:
                read[path] = macho_symbols(path)
            defined |= read[path][0]
            undefined |= read[path][1]
        known = defined | system
        libraries = re.findall(r"\S+/libQt6\w+\.so[.\d]*|\S+/(?:libgtest|libgmock)\.a", link)
        for library in libraries:
            if library not in qt:
                qt[library] = exported_by([library], *(["--dynamic"] if ".so" in library else []))
            known |= qt[library]
        for framework, symbols in frameworks.items():
            if framework == "objc" or f"-framework {framework}" in link:
                known |= symbols
        needed |= undefined
        count += 1
        missing = {symbol for symbol in undefined - known if not CXX_LIBRARY.match(symbol)}
        if missing:
            declared = {one for library in libraries for one in plain_names(qt[library]).values()}
            missing = {symbol for symbol, plain in plain_names(missing).items() if plain not in declared}
        found += [f"{name}: {symbol} is nowhere" for symbol in sorted(missing)]
    if count == 0:
        found.append("CMake makes no program")
    if found:
        sys.exit("\n".join(found))
    unused = set().union(*frameworks.values()) - needed
    if unused:
        sys.exit("listed as called, but is not: " + " ".join(sorted(unused)))
    print(f"{count} programs, {len(needed)} symbols from elsewhere, none unresolved")


main(Path(sys.argv[1]).resolve(), Path(sys.argv[2]))
