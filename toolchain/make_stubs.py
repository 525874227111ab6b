#!/usr/bin/env python3
"""Makes the type stubs (.pyi) of the Python modules, for editors and type checkers.

Reads what SWIG generated: the shadow module gives classes, names and docstrings; the wrapper the types, from the
conversions that each function does; a second shadow, made with SWIG's own descriptions, the names and defaults of
overloads' parameters. Prints what got the type Any because nothing is known.

Usage: make_stubs.py WORK OUTPUT MODULE...
       WORK/MODULE/{MODULE_raw.cxx, MODULE.py, signatures/MODULE.py}; modules in order of import
"""

import os
import sys

from stubs.cpptypes import ClassRegistry
from stubs.shadow import Shadow
from stubs.signatures import Signatures
from stubs.wrapper import Wrapper
from stubs.writer import Writer


def read(*path):
    with open(os.path.join(*path), encoding="utf-8", errors="surrogateescape") as stream:
        return stream.read()


def write_stub(module, wrapper, work, output, modules):
    shadow = Shadow(module, read(work, module, f"{module}.py"), read(work, module, "signatures", f"{module}.py"))
    signatures = Signatures(module, wrapper)
    text = Writer(shadow, wrapper, signatures, modules).text()
    if signatures.untyped:
        print(f"{module}: {len(signatures.untyped)} of {signatures.known} types are Any: {', '.join(signatures.untyped)}")
    path = os.path.join(output, f"{module}.pyi")
    with open(path + ".tmp", "w", encoding="utf-8", errors="surrogateescape") as stream:
        stream.write(text)
    os.replace(path + ".tmp", path)


def main(arguments):
    if len(arguments) < 3:
        print(__doc__, file=sys.stderr)
        return 2
    work, output, *modules = arguments
    registry = ClassRegistry()
    wrappers = {module: read(work, module, f"{module}_raw.cxx") for module in modules}
    for module, source in wrappers.items():
        registry.add_module(module, source)
    for module, source in wrappers.items():
        try:
            write_stub(module, Wrapper(module, source, registry), work, output, modules)
        except ValueError as error:
            print(f"{module}: {error}; is this the code of another SWIG version?", file=sys.stderr)
            return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
