"""Root is never denied a folder, so tests started as root continue as "nobody"."""

import atexit
import os
import pwd
import shutil
import tempfile
from pathlib import Path


def reachable(program):
    """The path of the program to run: the given one or, for root, a copy that "nobody" may run wherever the build is.
    From then on, this process runs as that user. Call this before creating anything else."""
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
    # The folder belongs to this user, and its parent is sticky, so its owner may remove it.
    atexit.register(shutil.rmtree, folder, ignore_errors=True)
    return copy
