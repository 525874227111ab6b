#!/usr/bin/env python3
"""Shortens the way of a call through a wrapper; what a call does stays as it is.

Puts the headers of swig/runtime into the wrapper: the generator's functions that take argument tuples apart, find the
wrapped object of a proxy and make proxies are renamed to ..._generated and called by ours where the quick way does not
apply; every dispatcher of an overloaded name remembers what it found.

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


def shorten_calls(source):
    return remember_overloads(replace_functions(source))


if __name__ == "__main__":
    sys.exit(wrapperstep.run(sys.argv[1:], shorten_calls, __doc__))
