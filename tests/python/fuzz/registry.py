"""The shared type registry, read from memory: which live object fits which parameter. Makes null pointers of any type."""

import ctypes
import re
import sys

_CAPSULE = "swig_runtime_data4.type_pointer_capsule"


class _Type(ctypes.Structure):
    pass


class _Cast(ctypes.Structure):
    pass


class _Module(ctypes.Structure):
    pass


_Type._fields_ = [("name", ctypes.c_char_p), ("readable", ctypes.c_char_p), ("dynamic", ctypes.c_void_p),
                  ("cast", ctypes.POINTER(_Cast)), ("data", ctypes.c_void_p), ("owns", ctypes.c_int)]
_Cast._fields_ = [("type", ctypes.POINTER(_Type)), ("converter", ctypes.c_void_p),
                  ("next", ctypes.POINTER(_Cast)), ("previous", ctypes.POINTER(_Cast))]
_Module._fields_ = [("types", ctypes.POINTER(ctypes.POINTER(_Type))), ("size", ctypes.c_size_t),
                    ("next", ctypes.POINTER(_Module))]


def normal(text):
    """A type's name without const, reference, pointer and blanks that don't matter."""
    text = re.sub(r"\b(const|class|struct|enum)\b|[&*]", " ", text)
    return re.sub(r"\s*([<>,:()])\s*", r"\1", re.sub(r"\s+", " ", text)).strip()


class Registry:
    """Types by any of their names, and the types that convert to them."""

    def __init__(self):
        capsule = getattr(sys.modules["swig_runtime_data4"], "type_pointer_capsule")
        pointer = ctypes.pythonapi.PyCapsule_GetPointer
        pointer.restype, pointer.argtypes = ctypes.c_void_p, [ctypes.py_object, ctypes.c_char_p]
        first = ctypes.cast(pointer(capsule, _CAPSULE.encode()), ctypes.POINTER(_Module))
        self._names = {}
        self._entries = {}
        self._casts = {}
        module = first
        while True:
            for i in range(module.contents.size):
                self._add(module.contents.types[i])
            module = module.contents.next
            if ctypes.addressof(module.contents) == ctypes.addressof(first.contents):
                break

    def _add(self, entry):
        name = entry.contents.name
        if name in self._casts:
            return
        # An entry that comes from a module which only knows the type as somebody's base has no readable name.
        plain = name.decode().removeprefix("_p_").replace("__", "::")
        for alias in ((entry.contents.readable or b"").decode() or f"{name.decode()}|{plain}").split("|"):
            # Pointers to pointers and function pointers keep what distinguishes them.
            self._names.setdefault(normal(alias) + "*" * (alias.count("*") - 1), name)
        self._entries[name] = ctypes.addressof(entry.contents)
        sources, cast = [], entry.contents.cast
        while cast:
            sources.append(cast.contents.type.contents.name)
            cast = cast.contents.next
        self._casts[name] = sources

    def key(self, text):
        """The registry's name of a class that a parameter takes; None if it is no class."""
        return self._names.get(normal(text) + "*" * (text.count("*") - 1))

    def sources(self, key):
        """Names of the types whose objects are accepted where `key` is."""
        return self._casts.get(key, ())

    def keys(self):
        """All names of types."""
        return list(self._entries)

    def null(self, key, wrapped):
        """Turns a wrapped object, which must not own anything, into a null pointer of a type."""
        pointer, entry = 2 * ctypes.sizeof(ctypes.c_void_p), 3 * ctypes.sizeof(ctypes.c_void_p)
        ctypes.c_void_p.from_address(id(wrapped) + pointer).value = None
        ctypes.c_void_p.from_address(id(wrapped) + entry).value = self._entries[key]
        return wrapped

    def key_of(self, value):
        """The registry's name of a wrapped object's type; None for other objects."""
        this = getattr(value, "this", None) if hasattr(type(value), "thisown") else value
        if type(this).__name__ != "SwigPyObject":
            return None
        readable = re.match(r"<Swig Object of type '(.*)' at", repr(this))
        return readable and self.key(readable[1])
