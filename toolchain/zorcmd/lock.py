"""A lock between runs of the command, kept for as long as any process of the holder lives."""

import contextlib
import fcntl
import os

from zorcmd.progress import note


@contextlib.contextmanager
def held(path, busy):
    """Holds the lock file `path`, saying `busy` when another run has it; yields the descriptor.

    The descriptor is passed on to long-running children, so that the lock of a killed run is free
    only when its children have ended too.
    """
    path.parent.mkdir(parents=True, exist_ok=True)
    descriptor = os.open(path, os.O_RDWR | os.O_CREAT | os.O_CLOEXEC, 0o666)
    try:
        try:
            fcntl.flock(descriptor, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except BlockingIOError:
            note(busy)
            fcntl.flock(descriptor, fcntl.LOCK_EX)
        yield descriptor
    finally:
        os.close(descriptor)
