#!/usr/bin/env python3
"""Gives the run-time types of a SWIG wrapper their module.

SWIG 4.3 names its three run-time types ("SwigPyObject", "SwigPyPacked", "swigvarlink") without a module.
CPython 3.14 warns of such types, and with warnings as errors the import fails. This step puts the name of the
shared run-time module before them, both where the types are made and where a type is recognised by its name
(sibling modules have type objects of their own, so the comparison is what lets them share objects).

Usage: name_swig_types.py INPUT OUTPUT
"""

import re
import sys

import wrapperstep

TYPES = ("SwigPyObject", "SwigPyPacked", "swigvarlink")
MODULE = '"swig_runtime_data" SWIG_RUNTIME_VERSION "."'


def name_types(source: str) -> str:
    """Returns the source with qualified type names; ValueError if a type has no place to rename."""
    for name in TYPES:
        # `"X",` alone on a line opens a type object or a type specification.
        made = re.compile(rf'^(\s*)"{name}",', re.MULTILINE)
        source, count = made.subn(rf'\g<1>{MODULE} "{name}",', source)
        if count == 0:
            raise ValueError(f"no definition of the run-time type {name} found")
        compared = re.compile(rf'(->tp_name, )"{name}"\)')
        source, count = compared.subn(rf'\g<1>{MODULE} "{name}")', source)
        if count == 0 and name != "swigvarlink":
            raise ValueError(f"no check of the run-time type {name} found")
    return source


if __name__ == "__main__":
    sys.exit(wrapperstep.run(sys.argv[1:], name_types, __doc__))
