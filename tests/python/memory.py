"""How much memory the process has in use."""

import ctypes


def _sanitizer_bytes():
    """The address sanitizer's own count, a function; None without it. (It holds freed memory back, so that resident
    memory tells nothing.)"""
    try:
        function = ctypes.CDLL(None).__sanitizer_get_current_allocated_bytes
    except AttributeError:
        return None
    function.restype = ctypes.c_size_t
    return function


_SANITIZER_BYTES = _sanitizer_bytes()


def memory_in_use():
    """Bytes; without a sanitizer what is resident, in whole pages."""
    if _SANITIZER_BYTES:
        return _SANITIZER_BYTES()
    with open("/proc/self/statm", encoding="ascii") as file:
        return int(file.read().split()[1]) * 4096
