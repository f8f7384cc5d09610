#!/usr/bin/env python3
"""Checks an installed bundle: check.py Vesk.app BUILD MACOS. Its layout, its Info.plist (for which version MACOS stands),
and whether every QML module that Vesk's own QML imports was found by Qt's import scanner, in BUILD, and copied in. Fails
with what is wrong."""

import plistlib
import re
import sys
from pathlib import Path

TOP = Path(__file__).resolve().parents[3]
MACH_O_64 = bytes.fromhex("cffaedfe")
WANTED = {
    "CFBundleIdentifier": "app.vesk.Vesk",
    "CFBundleName": "Vesk",
    "CFBundleExecutable": "Vesk",
    "CFBundlePackageType": "APPL",
    "CFBundleIconFile": "vesk.icns",
    "NSHighResolutionCapable": True,
    "NSRequiresAquaSystemAppearance": True,
    "NSPrincipalClass": "NSApplication",
}


def imported(folder):
    """The modules that the QML below a folder imports, but for Vesk's own."""
    text = "\n".join(file.read_text(encoding="utf-8") for file in folder.glob("**/*.qml"))
    return set(re.findall(r"^import ([A-Z][\w.]*)", text, re.MULTILINE)) - {"Vesk"}


def problems_with_qml(bundle, build):
    lists = list(build.glob("src/**/*mports_vesk*.cmake"))
    listed = lists[0].read_text() if lists else ""
    names = set(re.findall(r"(?<=[\";]NAME;)[\w.]+", listed))
    placed = dict(re.findall(r"[\";]NAME;([\w.]+);PATH;([^;]+)", listed))
    wanted = imported(TOP / "src")
    if not wanted:
        yield "no QML below src imports anything"
    for name in sorted(wanted):
        if name not in names:
            yield f"{name}: not in the list of the bundle's QML imports"
        elif name in placed and not (bundle / "Contents/Resources/qml" / name.replace(".", "/") / "qmldir").is_file():
            yield f"{name}: not copied into the bundle"


def problems(bundle, macos):
    version = re.search(r"project\(Vesk VERSION ([0-9.]+) ", (TOP / "CMakeLists.txt").read_text())[1]
    contents = bundle / "Contents"
    information = plistlib.loads((contents / "Info.plist").read_bytes())
    wanted = WANTED | {
        "CFBundleShortVersionString": version,
        "CFBundleVersion": version,
        "LSMinimumSystemVersion": macos,
    }
    for key, value in wanted.items():
        if information.get(key) != value:
            yield f"Info.plist: {key} is {information.get(key)!r} instead of {value!r}"
    for folder in "Downloads", "Documents", "Desktop":
        if not information.get(f"NS{folder}FolderUsageDescription"):
            yield f"Info.plist: does not say what the {folder} folder is looked into for"
    program = contents / "MacOS" / "Vesk"
    if not program.is_file() or program.read_bytes()[:4] != MACH_O_64 or not program.stat().st_mode & 0o100:
        yield f"{program}: no program for macOS"
    for name in "Resources/vesk.icns", "deployed", "signed":
        if not (contents / name).exists():
            yield f"{contents / name}: missing"
    # Signing comes last: whatever is written into a bundle afterwards breaks its signature.
    signed = set((contents / "signed").read_text().split())
    for file in sorted(p for p in bundle.rglob("*") if p.is_file() and p.name != "signed"):
        if f"./{file.relative_to(bundle)}" not in signed:
            yield f"{file}: written after the bundle was signed"


bundle, build, macos = Path(sys.argv[1]), Path(sys.argv[2]), sys.argv[3]
found = [*problems(bundle, macos), *problems_with_qml(bundle, build)]
if found:
    sys.exit("\n".join(found))
print("Vesk.app: layout and Info.plist are fine; QML of " + ", ".join(sorted(imported(TOP / "src"))))
