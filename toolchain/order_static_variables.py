#!/usr/bin/env python3
"""Puts the functions of a class's static variables in the order of all members: setter first.

SWIG lists the two functions of a static variable getter first, those of every other variable setter first. The
function table of a module is part of its interface, so this step gives it one order throughout.

Usage: order_static_variables.py INPUT OUTPUT
"""

import re
import sys

import wrapperstep

# A static variable's getter is the only `_get` that takes an argument tuple and reads a variable of its own.
PAIR = re.compile(r'^(?P<get>\t \{ "(?P<name>\w+)_get", _wrap_(?P=name)_get, METH_VARARGS, NULL\},\n)'
                  r'(?P<set>\t \{ "(?P=name)_set", _wrap_(?P=name)_set, METH_O, NULL\},\n)', re.MULTILINE)
LINK = re.compile(r"SWIG_addvarlink\(globals, \"(\w+)\", Swig_var_\w+_get, Swig_var_\w+_set\)")


def order_variables(source: str) -> str:
    """Returns the source with reordered pairs; ValueError if a static variable's pair is not where it should be."""
    ordered = {match["name"] for match in PAIR.finditer(source)}
    source = PAIR.sub(r"\g<set>\g<get>", source)
    # Variables of a namespace live in `cvar` only; those of a class have functions besides.
    for name in LINK.findall(source):
        if f'"{name}_get"' in source and name not in ordered:
            raise ValueError(f"the functions of the static variable {name} are not where they should be")
    return source


if __name__ == "__main__":
    sys.exit(wrapperstep.run(sys.argv[1:], order_variables, __doc__))
