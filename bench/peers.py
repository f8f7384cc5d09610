"""The newest disk-usage programs, from Debian's unstable packages: unpacked beside their own C library, not installed."""

import os
import platform
import shutil
import subprocess
from pathlib import Path

PACKAGES = ["diskus", "gdu", "dua-cli", "du-dust", "libc6", "libgcc-s1"]
KEYS = "/usr/share/keyrings/debian-archive-keyring.gpg"
PROGRAMS = {
    "diskus": ["diskus"],
    "diskus -j 24": ["diskus", "-j", "24"],
    "gdu of unstable": ["gdu", "--non-interactive", "--no-progress"],
    "dua": ["dua"],
    "dust": ["dust"],
}


def _fetch(folder):
    """Downloads and unpacks with apt's own means, which compare signatures; all it writes lies in `folder`."""
    for part in ("lists/partial", "archives/partial", "unpacked"):
        (folder / part).mkdir(parents=True, exist_ok=True)
    sources = folder / "sources.list"
    sources.write_text(f"deb [signed-by={KEYS}] http://deb.debian.org/debian unstable main\n", encoding="ascii")
    apt = ["apt-get", "-o", f"Dir::State::Lists={folder}/lists", "-o", f"Dir::Cache={folder}",
           "-o", f"Dir::Etc::SourceList={sources}", "-o", "Dir::Etc::SourceParts=/dev/null",
           "-o", "Acquire::Languages=none", "-o", "APT::Sandbox::User=root"]
    subprocess.run([*apt, "update"], check=True, stdout=subprocess.DEVNULL)
    subprocess.run([*apt, "download", *PACKAGES], check=True, stdout=subprocess.DEVNULL, cwd=folder / "archives")
    for package in sorted((folder / "archives").glob("*.deb")):
        subprocess.run(["dpkg-deb", "-x", package, folder / "unpacked"], check=True)
    (folder / "complete").touch()


def commands(folder):
    """How to call each peer: its name in the report, and the command to which a folder is added. Empty where there are
    no such packages."""
    if platform.machine() != "x86_64" or shutil.which("apt-get") is None or not os.path.exists(KEYS):
        return {}
    if not (folder / "complete").exists():
        try:
            _fetch(folder)
        except subprocess.CalledProcessError as failure:
            print(f"bench: no peers: {failure}")
            return {}
    root = folder / "unpacked" / "usr"
    libraries = root / "lib" / "x86_64-linux-gnu"
    loader = [str(libraries / "ld-linux-x86-64.so.2"), "--library-path", str(libraries)]
    return {name: [*loader, str(root / "bin" / words[0]), *words[1:]] for name, words in PROGRAMS.items()}


def versions(folder):
    """The packages that were unpacked, as one line."""
    return ", ".join(sorted(path.name.rsplit("_", 1)[0].replace("_", " ")
                            for path in (folder / "archives").glob("*.deb")))
