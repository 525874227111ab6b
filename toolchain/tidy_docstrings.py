#!/usr/bin/env python3
"""Writes the docstrings of a shadow module anew: in Python's words, without C++ types, each overload under its parameters.

Usage: tidy_docstrings.py INPUT OUTPUT [SIGNATURES]
       SIGNATURES: the same module with SWIG's own description of every function
"""

import pathlib
import re
import sys
import textwrap

from stubs import docstrings
from stubs.shadow import Function, Scope, Shadow, python_default


def overloaded(function, title):
    """The docstring of a function with several prototypes."""
    lists = function.parameter_lists
    docs = docstrings.by_overload(function.sections, [{name for name, _ in names} for names in lists])
    if not any(docs[1:]):
        return docstrings.joined(function.sections)
    parts = []
    for names, doc in zip(lists, docs):
        parameters = ", ".join(name if default is None else f"{name}={python_default(default)}" for name, default in names)
        parts.append(f"{title}({parameters})" + (f"\n{textwrap.indent(doc, '    ')}" if doc else ""))
    return "\n\n".join(parts)


def documentation(member, owner):
    """The new docstring of a class or function."""
    if isinstance(member, Function) and len(member.parameter_lists) > 1:
        return overloaded(member, owner if member.name == "__init__" else member.name)
    return docstrings.joined(member.sections) if isinstance(member, Function) else docstrings.tidy(member.doc)


def replacements(scope, owner=""):
    """(first line, last line, text) of each docstring below a scope."""
    for member in scope.members:
        if isinstance(member, (Function, Scope)) and member.doc and member.source.body:
            node = member.source.body[0]
            text = documentation(member, owner)
            if text and '"""' not in text:
                yield node.lineno, node.end_lineno, node.col_offset, text
        if isinstance(member, Scope):
            yield from replacements(member, member.name)


def tidied(source, signatures):
    """The module's source with its new docstrings."""
    lines = source.splitlines()
    found = sorted(replacements(Shadow("any", source, signatures).top), reverse=True)
    for first, last, column, text in found:
        block = f'r"""\n{text}\n"""'
        lines[first - 1:last] = [" " * column + line if line else "" for line in block.splitlines()]
    if not found and "def " in source and ":param" in source:
        raise ValueError("no docstring was recognised")
    return re.sub(r'(?<=\bdoc=)r"""(.*?)"""(?=\)$)', _property, "\n".join(lines) + "\n", flags=re.M | re.S)


def _property(found):
    text = docstrings.tidy(found[1])
    return repr(text) if text else found[0]


def main(arguments):
    if len(arguments) not in (2, 3):
        print(__doc__, file=sys.stderr)
        return 2
    source = pathlib.Path(arguments[0]).read_text(encoding="utf-8", errors="surrogateescape")
    signatures = pathlib.Path(arguments[2]).read_text(encoding="utf-8", errors="surrogateescape") if len(arguments) == 3 else ""
    pathlib.Path(arguments[1]).write_text(tidied(source, signatures), encoding="utf-8", errors="surrogateescape")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
