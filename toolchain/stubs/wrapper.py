"""What the functions of a generated wrapper take and return, read from the conversions that they do.

The generated code is regular: each argument has one statement that converts `swig_obj[i]`, and the result one that
assigns `resultobj`. That is what happens at run time, typemaps included, so nothing is guessed from prototypes.
"""

import re

from . import cpptypes

_FUNCTION = re.compile(r"^SWIGINTERN PyObject \*_wrap_(\w+)\(PyObject \*[^{]*\{\n(.*?)^\}\n", re.M | re.S)


class Prototype:
    """Python types of one C++ function: of its arguments in order, and of its result. None where unknown."""

    def __init__(self, parameters, result):
        self.parameters = parameters
        self.result = result


class Wrapper:
    """The functions and constants of one module."""

    def __init__(self, module, source, registry):
        self._module = module
        self._registry = registry
        self._bodies = dict(_FUNCTION.findall(source))
        self.constants = {name: cpptypes.SCALARS.get(kind) for name, kind in re.findall(
            r'SWIG_Python_SetConstant\(d, "(\w+)",\s*SWIG_(?:Python_)?From_(\w+)\(', source)}
        self.variables = re.findall(r'SWIG_addvarlink\(globals, "(\w+)", (\w+)', source)
        self._variable_getters = dict(
            re.findall(r"^SWIGINTERN PyObject \*(\w+_get)\(void\) \{\n(.*?)^\}\n", source, re.M | re.S))

    def prototypes(self, flat):
        """The prototypes behind a flat function, in the header's order; default arguments give several."""
        names = [flat]
        if f"{flat}__SWIG_0" in self._bodies:
            names = []
            while f"{flat}__SWIG_{len(names)}" in self._bodies:
                names.append(f"{flat}__SWIG_{len(names)}")
        return [self._prototype(flat, self._bodies[name]) for name in names if name in self._bodies]

    def variable_type(self, getter):
        """The type of a global variable, by its getter."""
        found = re.search(r"SWIG_(?:Python_)?From_(\w+)\(|SWIGTYPE(_p_\w+)", self._variable_getters.get(getter, ""))
        if found and found[2]:
            return self._class(found[2])
        return cpptypes.SCALARS.get(found[1]) if found else None

    def _prototype(self, flat, body):
        if variable := re.search(r"Swig_var_(\w+)_[gs]et\(", body):  # of a class
            known = self.variable_type(f"Swig_var_{variable[1]}_get")
            return Prototype([None, known], known)
        body = re.sub(r'"\s*"', "", body)
        used = [int(index) for index in re.findall(r"(?<!PyObject \*)swig_obj\[(\d+)\]", body)]
        number = max(used) + 1 if used else 0
        parameters = [self._parameter(flat, body, i) for i in range(number)]
        if "upcall = (director" in body:  # a callback: C++ gives it objects
            parameters = [known and known.removesuffix(" | None") for known in parameters]
        return Prototype(parameters, self._result(flat, body))

    def _class(self, descriptor):
        return self._registry.python_name(self._module, descriptor)

    def _parameter(self, flat, body, index):
        place = rf"swig_obj\[{index}\]"
        found = re.search(rf"argument {index + 1} of type '([^']*)'", body)
        spelled = found[1] if found else ""
        if found := re.search(rf"zorReadValue<(\d+)>\({place}, SWIGTYPE(_p_\w+),[^;]*?(zorIs\w+)\({place}", body):
            return self._value_argument(int(found[1]), self._class(found[2]), found[3] == "zorIsIterable")
        if re.search(rf"PyIndex_Check\({place}", body):
            return "int"
        if re.search(rf"zorIsIterable\({place}", body):
            return self._iterable_argument(body, place)
        if found := re.search(rf"SWIG_AsVal_(\w+)\({place}", body):
            return cpptypes.SCALARS.get(found[1])
        if re.search(rf"(SWIG_AsPtr_std_string|SWIG_AsCharPtrAndSize|ZOR_STRING_IN)\({place}", body):
            return "str"
        if re.search(rf"(zorReadItems|swig::asptr)\({place}", body):
            element = re.match(r"std::vector<\s*(.*?)(,std::allocator.*)?\s*>[^>]*$", spelled)
            name = element and self._registry.python_element(self._module, element[1])
            return name and f"Iterable[{name}]"
        if re.search(rf"zorReadPosition\({place}|SWIG_ConvertPtr\({place}.*SwigPyIterator::descriptor", body):
            return "SwigPyIterator"
        if re.search(rf"PySlice_Check\({place}", body):
            return "slice"
        if re.search(rf"SWIG_ConvertFunctionPtr\({place}", body):
            return cpptypes.OPAQUE
        if found := re.search(rf"SWIG_ConvertPtr\({place}, .*?SWIGTYPE(_p_\w+)", body):
            nullable = spelled.endswith("*") and f"argument {index + 1} of type '{spelled}'" not in \
                "".join(re.findall(r"invalid null reference .*", body))
            name = self._class(found[1])
            if re.search(rf"PyList_Check\({place}", body):
                name += " | list[int]" + (" | list[float]" if "Real" in spelled else "")
            return name + (" | None" if nullable else "")
        return cpptypes.PYTHON_OBJECTS.get((flat, index + 1)) or self._any_argument(flat, index)

    @staticmethod
    def _value_argument(count, name, is_iterable):
        """Where a value is read, its components may be given; of a list nobody knows how many they are."""
        number = "int" if re.search(r"Vec\d[iu]$", name) else "float"
        if is_iterable:
            return f"Iterable[{number}]"
        return f"{name} | tuple[{', '.join([number] * count)}]"

    def _any_argument(self, flat, index):
        """What methods of sequences take that is no object of C++."""
        if flat.endswith("___contains__") and index == 1:
            return "object"
        if flat.endswith("___setitem__") and index == 2:
            return f"Iterable[{self._item(flat.replace('set', 'get'))}]"
        return None

    def _item(self, flat):
        """What a sequence gives for a position."""
        first = f"{flat}__SWIG_0"
        return self._result(first, self._bodies[first])

    def _iterable_argument(self, body, place):
        """Where a vector is read, the simulation modules take any iterable."""
        if found := re.search(rf"newNumberVector<(\w+)>\({place}", body):
            return f"Iterable[{cpptypes.NUMBERS[found[1]]}]"
        if re.search(rf"newTextVector<.*>\({place}", body):
            return "Iterable[str]"
        if found := re.search(rf"zorNewObjectVector<\s*zor::Vector<\s*(.*?)\s*>\s*>\({place}", body):
            name = self._registry.python_element(self._module, re.sub(r"^\w+::ref_ptr<\s*(.*?)\s*>$", r"\1", found[1]))
            return name and f"Iterable[{name}]"
        return "Iterable[Iterable[float]]" if re.search(rf"newValueVector<.*>\({place}", body) else None

    def _result(self, flat, body):
        statements = re.findall(r"resultobj = ([^;]*);", body)
        statement = statements[-1] if statements else ""
        if statement == "SWIG_Py_Void()":
            return "None"
        if "SwigPyIterator::descriptor()" in statement or statement.startswith("zorIteratorHandle"):
            return "SwigPyIterator"
        if found := re.match(r"SWIG_(?:Python_)?From_(\w+)\(", statement):
            return cpptypes.SCALARS.get(found[1])
        if statement.startswith("SWIG_FromCharPtr"):
            return "str"
        if found := re.match(r"zorWrapSharedList\(.*SWIGTYPE(_p_\w+)", statement):
            return f"list[{self._class(found[1])}]"
        if statement.startswith("SWIG_NewFunctionPtrObj"):
            return cpptypes.OPAQUE
        if found := re.search(r"SWIGTYPE(_p_\w+)", statement):
            return self._class(found[1])
        if found := re.search(r"swig::from\(static_cast<\s*std::vector<\s*([^,>]*)", statement):
            name = self._registry.python_element(self._module, found[1])
            return name and f"tuple[{name}, ...]"
        if statement.startswith("Py_NewRef(swig_obj[0])"):
            return "Self"
        if flat.endswith("___getitem__") and statement == "result" and "PySlice_Check(swig_obj[1])" in body:
            return f"tuple[{self._item(flat)}, ...]"
        if statement.startswith("PyList_New(0)") and "= SWIG_FromCharPtrAndSize(" in body:
            return "list[str]"
        return cpptypes.PYTHON_OBJECTS.get((flat, "return"))
