#!/usr/bin/env python3
"""Empties one Trash with trash-cli's own program, and logs which files it deleted.

    telling_trash_empty.py TRASH LOG

Adds a line to LOG for each removed file name: the file's inode number. Empties only the given Trash; by default the
program would also empty those on the machine's volumes.
"""

import os
import runpy
import shutil
import sys

TRASH, LOG = sys.argv[1:]


def telling(remove):
    def remove_and_tell(path, *, dir_fd=None):
        try:
            file = os.open(path, os.O_RDONLY | os.O_NOFOLLOW | os.O_NONBLOCK, dir_fd=dir_fd)
        except OSError:
            remove(path, dir_fd=dir_fd)
            return
        try:
            names = os.fstat(file).st_nlink
            remove(path, dir_fd=dir_fd)
            if os.fstat(file).st_nlink < names:
                with open(LOG, "a", encoding="ascii") as log:
                    log.write(f"{os.fstat(file).st_ino}\n")
        finally:
            os.close(file)

    return remove_and_tell


os.remove, os.unlink = telling(os.remove), telling(os.unlink)

sys.argv = ["trash-empty", f"--trash-dir={TRASH}"]
runpy.run_path(shutil.which("trash-empty"), run_name="__main__")
