"""Whether the display that the environment names can be opened."""

import os
import re
import socket


def problem(environ=os.environ):
    """Why DISPLAY cannot be used; "" where it can, or where none is named."""
    name = environ.get("DISPLAY", "")
    if not name:
        return ""
    match = re.fullmatch(r"(?:unix)?([^:]*):(\d+)(?:\.\d+)?", name)
    if not match:
        return f"DISPLAY is '{name}', which names no display"
    host, number = match.group(1), int(match.group(2))
    try:
        _connect(host, number)
    except OSError as error:
        return f"display '{name}' cannot be opened: {error.strerror or error}"
    return ""


def _connect(host, number):
    """Raises OSError where no server listens."""
    if host:
        socket.create_connection((host, 6000 + number), timeout=3).close()
        return
    last = None
    for address in (f"\0/tmp/.X11-unix/X{number}", f"/tmp/.X11-unix/X{number}"):
        with socket.socket(socket.AF_UNIX) as connection:
            try:
                connection.connect(address)
                return
            except OSError as error:
                last = error
    raise last
