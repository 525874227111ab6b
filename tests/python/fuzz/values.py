"""Ill-typed and extreme plain values."""

import array
import os

from hypothesis import strategies as st

# The address sanitizer takes an allocation that is too large for an error of its own.
LARGEST = 1 << 12 if "libasan" in os.environ.get("LD_PRELOAD", "") else None
EDGES = sorted({sign * (1 << bits) + offset for bits in (0, 7, 8, 15, 16, 31, 32, 53, 62, 63, 64, 100)
                for sign in (1, -1) for offset in (-1, 0, 1) if LARGEST is None or 1 << bits <= LARGEST})
FLOATS = [0.0, -0.0, 1.0, -1.0, 0.5, 1e-320, 1e-30, 3.4028234663852886e38, 3.5e38, 1e308, -1e308,
          float("inf"), float("-inf"), float("nan")]
TEXTS = ["", "a", "\0", "a\0b", "\ud800", "caf\udce9", "Käse 😀", "x" * 100_000, "%s%n%d", ".", "missing.png", "a.png", "b.osgt",
         "c.mp4", "scene.py", "build", "no/such/folder/x.png", "/no/such/folder/x.osg", "/dev/full", "--help", "100", "1e999"]


class Mischief(Exception):
    """Raised by the objects below: the one exception that is not the system's."""


class Raising:
    """Fails at whatever it is asked."""

    def _fail(self, *arguments):
        raise Mischief

    __iter__ = __len__ = __getitem__ = __index__ = __float__ = __int__ = __bool__ = __str__ = __eq__ = _fail
    __hash__ = object.__hash__
    this = property(_fail)


class Liar(list):
    """A list whose length says nothing."""

    def __len__(self):
        return 1 << 40


class Shrinking:
    """A sequence that gets shorter while it is read."""

    def __init__(self):
        self.items = [1.0] * 8

    def __len__(self):
        return len(self.items)

    def __getitem__(self, index):
        self.items.pop()
        return self.items[index]


class IntLike(int):
    """Passes for an int."""


class TextLike(str):
    """Passes for a str."""


class Bare:
    """Has an attribute `this` that is no wrapped object."""

    this = 5


class Circular:
    """Its `this` leads nowhere."""

    @property
    def this(self):
        return self


def objects():
    """A new set of odd objects."""
    mutable = [1.0, 2.0]
    nested = []
    nested.append(nested)
    return [None, True, False, object(), object, int, type, Raising(), Liar([1.0]), Shrinking(), IntLike(3), TextLike("t"), Bare(),
            Circular(), mutable, nested, [], [1, 2], [1.5, "x"], [None], (1, 2, 3), {}, {"a": 1}, set(), b"bytes", bytearray(8),
            memoryview(bytes(16)), memoryview(array.array("d", [1.0, 2.0])), array.array("f", [1.0] * 6), range(5), iter([1, 2]),
            (n for n in (1.0, 2.0)), slice(None), slice(1, -1, 2), slice(0, 5, 0), slice(1 << 70, None, -1), 1j, NotImplemented, ...,
            lambda *arguments: None, len, print.__class__]


def plain():
    """Strategy of a handful of plain values, from the lists above and from hypothesis' own ideas."""
    value = st.one_of(st.sampled_from(EDGES), st.sampled_from(FLOATS), st.sampled_from(TEXTS), st.integers(max_value=LARGEST), st.floats(),
                      st.text(max_size=40), st.binary(max_size=16), st.lists(st.floats(), max_size=5),
                      st.text(st.characters(min_codepoint=0xD7F0, max_codepoint=0xE00F), max_size=4))
    return st.lists(value, min_size=8, max_size=24)
