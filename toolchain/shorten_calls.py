#!/usr/bin/env python3
"""Shortens the way of a call through a wrapper; what a call does stays as it is.

Puts the headers of swig/runtime into the wrapper: the generator's functions that take argument tuples apart, find the
wrapped object of a proxy and make proxies are renamed to ..._generated and called by ours where the quick way does not
apply; every dispatcher of an overloaded name remembers what it found; callbacks make names once and take no lock twice.

Usage: shorten_calls.py INPUT OUTPUT
"""

import re
import sys

import wrapperstep

REPLACED = ("SWIG_Python_UnpackTuple", "SwigPyObject_Check", "SWIG_Python_GetSwigThis", "SWIG_Python_ConvertPtrAndOwn",
            "SWIG_Python_NewShadowInstance", "SWIG_Python_InitShadowInstance")


def substituted(pattern, replacement, source, count, what, flags=0):
    """`source` after exactly `count` replacements."""
    source, found = re.subn(pattern, replacement, source, flags=re.MULTILINE | flags)
    if found != count:
        raise ValueError(f"{what} found {found} times")
    return source


def replace_functions(source):
    for name in REPLACED:
        source = substituted(rf"^((?:SWIGRUNTIME|SWIGRUNTIMEINLINE|SWIGINTERN) [^\n]*\n){name}\(([^;{{)]*\)\s*{{)",
                             rf"\g<1>{name}_generated(\g<2>", source, 1, f"definition of {name}")
    for header, place in (("ArgumentTuple.h", r"SWIGINTERN Py_ssize_t\nSWIG_Python_UnpackTuple_generated\("),
                          ("WrappedObjects.h", r"SWIGRUNTIMEINLINE int\nSwigPyObject_Check_generated\(")):
        source = substituted(rf"^({place})", rf'#include "runtime/{header}"' + "\n\n\\1", source, 1, f"place of {header}")
    source = substituted(r"PyObject_New\(SwigPyObject, SwigPyObject_type\(\)\)", "ZorWrappedMemory::take()", source, 1,
                         "memory of wrapped objects")
    return substituted(r"^(SwigPyObject_dealloc\(PyObject \*v\)\n{.*?)PyObject_Free\(v\);\n}",
                       r"\1ZorWrappedMemory::give(sobj);\n}", source, 1, "end of wrapped objects", re.DOTALL)


DISPATCHER = re.compile(r"^SWIGINTERN PyObject \*_wrap_(\w+)\(PyObject \*self, PyObject \*args\) {\n  Py_ssize_t argc;\n"
                        r".*?^}\n", re.MULTILINE | re.DOTALL)


def remember_overloads(source):
    source = substituted(r"^(#define SWIG_TypeQuery\(name\).*\n)", r'\1#include "runtime/Overloads.h"' + "\n", source, 1,
                         "place of Overloads.h")

    def remembering(match):
        name, text = match.group(1), match.group(0)
        chosen = re.compile(rf"return _wrap_{name}__SWIG_(\d+)\(self, argc, argv\);")
        prototypes = sorted(set(map(int, chosen.findall(text))))
        text = chosen.sub(rf"return _wrap_{name}__SWIG_\1(self, (zorRememberOverload(&overloads, &key, \1), argc), argv);", text)
        text = substituted(r"^  Py_ssize_t argc;$", "  Py_ssize_t argc;\n  static ZorOverloads overloads;\n  ZorOverloadKey key;",
                           text, 1, f"head of {name}")
        cases = "".join(f"    case {i}: return _wrap_{name}__SWIG_{i}(self, argc, argv);\n" for i in prototypes)
        return substituted(r"^  --argc;$", f"  --argc;\n  switch (zorRecallOverload(&overloads, &key, argc, argv)) {{\n{cases}  }}",
                           text, 1, f"count in {name}")

    result = DISPATCHER.sub(remembering, source)
    if source.count("__SWIG_0(self, argc, argv)") != result.count("case 0: return"):
        raise ValueError("not every dispatcher was recognised")
    return result


def shorten_callbacks(source):
    """The lock is taken where the thread hasn't got it already; names of methods are made once."""
    source = substituted(r"SWIG_Python_Thread_Block\(\) : status\(true\), state\(PyGILState_Ensure\(\)\) {}",
                         "SWIG_Python_Thread_Block() : status(!PyThreadState_GetUnchecked()), state() {"
                         " if (status) state = PyGILState_Ensure(); }", source, 1, "lock of error texts and callbacks")
    called = 'swig::SwigVar_PyObject swig_method_name = SWIG_Python_str_FromChar('
    return substituted(rf'^( *){re.escape(called)}("\w+")\);',
                       r"\1static PyObject *const swig_interned = PyUnicode_InternFromString(\2);\n"
                       r"\1swig::SwigVar_PyObject swig_method_name = Py_NewRef(swig_interned);", source, source.count(called),
                       "names of overridable methods")


def shorten_containers(source):
    """An element that refers into a container keeps it by an attribute, set on every element that is handed out."""
    if "container_owner_attribute" not in source:
        return source
    source = substituted(r'(static PyObject\* attr = )SWIG_Python_str_FromChar(\("__swig_container"\);)',
                         r"\1PyUnicode_InternFromString\2", source, 1, "name of the container's attribute")
    return substituted(r"return (PyObject_SetAttr\(child, container_owner_attribute\(\), owner\) != -1);",
                       r"return zorAddInstanceAttribute(child, container_owner_attribute(), owner) || \1;", source, 1,
                       "container's attribute")


def shorten_calls(source):
    return shorten_containers(shorten_callbacks(remember_overloads(replace_functions(source))))


if __name__ == "__main__":
    sys.exit(wrapperstep.run(sys.argv[1:], shorten_calls, __doc__))
