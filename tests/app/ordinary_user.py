"""Root is refused nothing, so a test of a refused folder would see no refusal: tests started as root go on as "nobody"."""

import atexit
import os
import pwd
import shutil
import tempfile
from pathlib import Path


def reachable(program):
    """The path of the program to run: the same one, or for root a copy that "nobody" may run wherever the build lies.
    The rest of the process goes on as that user. Call this before anything else is made."""
    if os.geteuid() != 0:
        return program
    nobody = pwd.getpwnam("nobody")
    folder = Path(tempfile.mkdtemp(prefix="vesk-program-"))
    copy = shutil.copy(program, folder)
    os.chown(folder, nobody.pw_uid, nobody.pw_gid)
    os.setgroups([])
    os.setgid(nobody.pw_gid)
    os.setuid(nobody.pw_uid)
    os.chmod(folder, 0o755)
    # The folder is this user's; what it lies in is sticky, which lets its owner remove it.
    atexit.register(shutil.rmtree, folder, ignore_errors=True)
    return copy
