"""How C++ types look to a type checker: the one table of it, and the registered classes of all modules."""

import re

# What a conversion function of the generated code takes or makes, by the end of its name.
SCALARS = {"bool": "bool", "double": "float", "float": "float", "std_string": "str", "char": "str"}
SCALARS |= dict.fromkeys(("int", "long", "short", "size_t", "ptrdiff_t", "signed_SS_char", "unsigned_SS_char",
                          "unsigned_SS_short", "unsigned_SS_int", "unsigned_SS_long"), "int")

# Elements that iterables are read as, by their C++ name.
NUMBERS = {"double": "float", "float": "float", "std::string": "str"}
NUMBERS |= dict.fromkeys(("int", "int64_t", "uint64_t", "uint32_t", "uint8_t", "size_t"), "int")

# Python objects that C++ takes or makes itself: (flat function, argument or "return").
PYTHON_OBJECTS = {
    ("new_Callback", 1): "Callable[[], object]",
    ("new_Matrix3x3", 1): "Iterable[Iterable[float]] | Iterable[float]",
    ("new_AffineMatrix4x4", 1): "Iterable[Iterable[float]] | Iterable[float]",
    ("new_Matrixd", 1): "Iterable[Iterable[float]] | Iterable[float]",
    ("Simulation_toBytes", "return"): "bytes",
    ("Simulation_fromBytes", 2): "bytes | bytearray | memoryview",
    ("Event_add", 2): "Callable[[], object]",
    ("BoolEvent_add", 2): "Callable[[bool], object]",
    ("ShapeChangeEvent_add", 2): "Callable[[Geometry], object]",
    ("Camera_getViewport", "return"): "tuple[float, float, float, float] | None",
    ("GeometryNodePtrVector___iter__", "return"): "Iterator[GeometryNode]",
    ("Panel_match", 2): "object",
    ("createPanel", 5): "object",
    # One class serves the vectors of all element types, so what it points to is not known.
    ("SwigPyIterator_value", "return"): "Any",
    ("SwigPyIterator_next", "return"): "Any",
    ("SwigPyIterator___next__", "return"): "Any",
    ("SwigPyIterator_previous", "return"): "Any",
}

# What arrays of the scene graph and their indices are made of.
PYTHON_OBJECTS |= {(f"new_{name}Array", 1): "Iterable[Iterable[float]]" for name in ("Vec2", "Vec3", "Vec4", "Vec2d", "Vec3d", "Vec4d")}
PYTHON_OBJECTS |= {("new_Vec4ubArray", 1): "Iterable[Iterable[int]]", ("new_DrawArrayLengths", 3): "Iterable[int]"}
PYTHON_OBJECTS |= {(f"new_{name}Array", 1): "Iterable[float]" for name in ("Float", "Double")}
PYTHON_OBJECTS |= {(f"new_{name}Array", 1): "Iterable[int]" for name in ("UInt", "UShort", "UByte", "Int")}
PYTHON_OBJECTS |= {(f"new_DrawElements{name}", 2): "Iterable[int]" for name in ("UInt", "UShort", "UByte")}

# A pointer to what no module declares, which scripts can only pass on; all modules write the class of this one.
OPAQUE_MODULE, OPAQUE_CLASS = "zor", "_Opaque"
OPAQUE = f"{OPAQUE_MODULE}.{OPAQUE_CLASS}"


class ClassRegistry:
    """The Python class of each C++ class."""

    def __init__(self):
        self._classes = {}  # (module, descriptor) -> class name
        self._homes = {}  # descriptor -> first module that registers it
        self._descriptors = {}  # C++ spelling -> descriptor

    def add_module(self, module, wrapper):
        """Reads what a wrapper registers. Modules come in order of import."""
        for name, descriptor in re.findall(
                r"^SWIGINTERN PyObject \*(\w+)_swigregister\([^}]*?SWIG_TypeNewClientData\(SWIGTYPE(_p_\w+)", wrapper, re.M):
            self._classes[module, descriptor] = name
            self._homes.setdefault(descriptor, module)
        for descriptor, spellings in re.findall(r'^static swig_type_info _swigt_\w+ = \{"(\w+)", "([^"]*)"', wrapper, re.M):
            for spelling in spellings.split("|"):
                self._descriptors[re.sub(r"\W", "", spelling)] = descriptor

    def python_name(self, module, descriptor):
        """The class behind a descriptor as `module` writes it; OPAQUE for what no module declares."""
        home = module if (module, descriptor) in self._classes else self._homes.get(descriptor)
        if home is None:
            return OPAQUE
        name = self._classes[home, descriptor]
        return name if home == module else f"{home}.{name}"

    def python_element(self, module, cpp_type):
        """The Python type of a vector's C++ element; None where it is unknown."""
        cpp_type = cpp_type.strip()
        if cpp_type in NUMBERS:
            return NUMBERS[cpp_type]
        descriptor = self._descriptors.get(re.sub(r"\W", "", cpp_type))
        if descriptor is None and cpp_type.endswith("*"):
            descriptor = "_p_" + re.sub(r"\W+", "__", cpp_type.rstrip("* "))
        name = self.python_name(module, descriptor)
        return None if name == OPAQUE else name
