"""A disk that records every write and flush, in order.

It is one file in a FUSE file system that this program serves, with a loop device on it. The kernel passes writes on at
once, and flushes of the device as fsync. They are appended to a log, which `entries` reads.
"""

import ctypes
import errno
import os
import struct
import subprocess
from dataclasses import dataclass
from pathlib import Path

NAME = b"disk"
HEADER = struct.Struct("<IIQQIIIHH")
ANSWER = struct.Struct("<IiQ")
ATTRIBUTES = struct.Struct("<6Q10I")
# An entry in the log: a write's offset and length, followed by its bytes; a flush has a length that no write has.
ENTRY = struct.Struct("<QI")

LOOKUP, FORGET, GETATTR, SETATTR, OPEN, READ, WRITE, STATFS, RELEASE = 1, 2, 3, 4, 14, 15, 16, 17, 18
FSYNC, FLUSH, INIT, OPENDIR, RELEASEDIR, INTERRUPT, BATCH_FORGET = 20, 25, 26, 27, 29, 36, 42
UNANSWERED = {FORGET, BATCH_FORGET, INTERRUPT}
LARGEST_WRITE = 128 * 1024


@dataclass
class Write:
    """The bytes written, and where; without bytes, a flush."""

    offset: int
    data: bytes

    @property
    def is_flush(self):
        return not self.data


def entries(log):
    """Everything in a log, in order, each with the log's length up to its end."""
    with open(log, "rb") as file:
        while head := file.read(ENTRY.size):
            offset, length = ENTRY.unpack(head)
            yield Write(offset, file.read(length)), file.tell()


class Server:
    """Answers the kernel until it is unmounted."""

    def __init__(self, device, image, log):
        self.device = device
        self.image = os.open(image, os.O_RDWR)
        self.log = os.open(log, os.O_WRONLY | os.O_CREAT | os.O_APPEND, 0o600)

    def attributes(self, node):
        if node == 1:
            return ATTRIBUTES.pack(1, 0, 0, 0, 0, 0, 0, 0, 0, 0o40700, 2, 0, 0, 0, 4096, 0)
        size = os.fstat(self.image).st_size
        return ATTRIBUTES.pack(2, size, size // 512, 0, 0, 0, 0, 0, 0, 0o100600, 1, 0, 0, 0, 4096, 0)

    def write(self, body):
        offset, length = struct.unpack_from("<QI", body, 8)
        data = body[40:40 + length]
        os.write(self.log, ENTRY.pack(offset, length) + data)
        os.pwrite(self.image, data, offset)
        return struct.pack("<II", length, 0)

    def flush(self):
        os.write(self.log, ENTRY.pack(0, 0))
        return b""

    def read(self, body):
        offset, length = struct.unpack_from("<QI", body, 8)
        return os.pread(self.image, length, offset)

    def answer(self, what, node, body):
        """The bytes of the reply, or an error number."""
        if what == INIT:
            return struct.pack("<IIIIHHIIHHII", 7, 31, LARGEST_WRITE, 1 << 5, 16, 12, LARGEST_WRITE, 1, 0, 0, 0, 0) + bytes(24)
        if what == LOOKUP:
            if body.rstrip(b"\0") != NAME:
                return errno.ENOENT
            return struct.pack("<4Q2I", 2, 1, 60, 60, 0, 0) + self.attributes(2)
        if what in (GETATTR, SETATTR):
            return struct.pack("<QII", 60, 0, 0) + self.attributes(node)
        if what in (OPEN, OPENDIR):
            return struct.pack("<QII", 0, 0, 0)
        if what == READ:
            return self.read(body)
        if what == WRITE:
            return self.write(body)
        if what == FSYNC:
            return self.flush()
        if what == STATFS:
            return struct.pack("<5Q4I", 1 << 20, 1 << 20, 1 << 20, 2, 0, 4096, 255, 4096, 0) + bytes(24)
        if what in (FLUSH, RELEASE, RELEASEDIR):
            return b""
        return errno.ENOSYS

    def serve(self):
        while True:
            try:
                request = os.read(self.device, LARGEST_WRITE + 65536)
            except OSError as error:
                if error.errno in (errno.EINTR, errno.ENOENT):
                    continue
                return  # unmounted
            _, what, unique, node, *_ = HEADER.unpack_from(request)
            if what in UNANSWERED:
                continue
            answer = self.answer(what, node, request[HEADER.size:])
            failed = isinstance(answer, int)
            body = b"" if failed else answer
            os.write(self.device, ANSWER.pack(ANSWER.size + len(body), -answer if failed else 0, unique) + body)


class RecordedDisk:
    """The device, while it exists. For a process in its own mount namespace."""

    def __init__(self, folder, image, log):
        self.folder = Path(folder)
        self.folder.mkdir()
        device = os.open("/dev/fuse", os.O_RDWR)
        options = f"fd={device},rootmode=40000,user_id=0,group_id=0".encode()
        libc = ctypes.CDLL(None, use_errno=True)
        if libc.mount(b"vesk-disk", os.fsencode(self.folder), b"fuse", 0, options) != 0:
            raise OSError(ctypes.get_errno(), "cannot mount the recorded disk")
        self.process = os.fork()
        if self.process == 0:
            try:
                Server(device, image, log).serve()
            finally:
                os._exit(0)
        os.close(device)
        self.device = subprocess.run(["losetup", "--find", "--show", self.folder / NAME.decode()], check=True,
                                     capture_output=True, text=True).stdout.strip()

    def remove(self):
        subprocess.run(["losetup", "--detach", self.device], check=True)
        subprocess.run(["umount", self.folder], check=True)
        os.waitpid(self.process, 0)
        self.folder.rmdir()
