#!/usr/bin/env python3
"""Checks an installed bundle's layout and its Info.plist: check.py Vesk.app. Fails with what is wrong."""

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


def problems(bundle):
    version = re.search(r"project\(Vesk VERSION ([0-9.]+) ", (TOP / "CMakeLists.txt").read_text())[1]
    contents = bundle / "Contents"
    information = plistlib.loads((contents / "Info.plist").read_bytes())
    wanted = WANTED | {"CFBundleShortVersionString": version, "CFBundleVersion": version}
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


found = list(problems(Path(sys.argv[1])))
if found:
    sys.exit("\n".join(found))
print("Vesk.app: layout and Info.plist are fine")
