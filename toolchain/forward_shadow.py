#!/usr/bin/env python3
"""Appends to a shadow module the list of its functions that only pass their arguments on to a flat function.

`_zorCalls` (binding/calls) lets the interpreter call that one without a frame of Python between.

Usage: forward_shadow.py INPUT OUTPUT
"""

import ast
import re
import sys

import wrapperstep


def flat_call(node, module):
    """The flat name and the argument nodes of a call `module.name(...)`."""
    if isinstance(node, ast.Call) and not node.keywords and isinstance(node.func, ast.Attribute) \
            and isinstance(node.func.value, ast.Name) and node.func.value.id == module:
        return node.func.attr, node.args
    return None, None


def passes_on(arguments, signature, skipped=0):
    """Whether a call's arguments are a function's own parameters, all of them and in order."""
    if signature.kwonlyargs or signature.kwarg or signature.posonlyargs:
        return False
    expected = [a.arg for a in signature.args][skipped:]
    plain = [a.id for a in arguments if isinstance(a, ast.Name)]
    rest = [a.value.id for a in arguments if isinstance(a, ast.Starred) and isinstance(a.value, ast.Name)]
    return plain == expected and rest == ([signature.vararg.arg] if signature.vararg else []) \
        and len(plain) + len(rest) == len(arguments)


def forwarded(function, module):
    """What a shadow function forwards to: (flat name,), or (flat constructor, flat initialiser) for __init__."""
    body = function.body[1:] if ast.get_docstring(function, clean=False) is not None else function.body
    if len(body) != 1 or not all(isinstance(d, ast.Name) and d.id == "staticmethod" for d in function.decorator_list):
        return None
    if isinstance(body[0], ast.Return):
        name, arguments = flat_call(body[0].value, module)
        return (name,) if name and passes_on(arguments, function.args) else None
    if isinstance(body[0], ast.Expr) and function.name == "__init__":
        initialiser, arguments = flat_call(body[0].value, module)
        if initialiser and initialiser.endswith("_swiginit") and len(arguments) == 2:
            name, inner = flat_call(arguments[1], module)
            if name and passes_on(inner, function.args, skipped=1):
                return (name, initialiser)
    return None


def count_range(function):
    """How many arguments the short way takes: all parameters, or any number from the named ones on."""
    named = len(function.args.args)
    return (named, -1 if function.args.vararg else named)


def first_line(function):
    """The line by which a function's code is known: one that was replaced later is left alone."""
    return min([function.lineno, *(decorator.lineno for decorator in function.decorator_list)])


def forwarding_list(source, module):
    """(class or "", function, line, least count, greatest count or -1, flat names...) of what only forwards."""
    found = []
    for node in ast.parse(source).body:
        scope, functions = ("", [node]) if isinstance(node, ast.FunctionDef) else \
            (node.name, node.body) if isinstance(node, ast.ClassDef) else ("", [])
        for function in functions:
            target = isinstance(function, ast.FunctionDef) and forwarded(function, module)
            if target:
                found.append((scope, function.name, first_line(function), *count_range(function), *target))
    return found


def append_forwarding(source):
    module = re.search(r"^    import (_\w+)$", source, re.MULTILINE).group(1)
    found = forwarding_list(source, module)
    if not found and re.search(r"^ *return _\w+\.\w+\(", source, re.MULTILINE):
        raise ValueError("no function that forwards was recognised")
    lines = "".join(f"    {entry!r},\n" for entry in found)
    return f"{source}\n# Functions that only pass their arguments on.\nimport _zorCalls\n_zorCalls.forward(globals(), {module}, (\n{lines}))\n"


if __name__ == "__main__":
    sys.exit(wrapperstep.run(sys.argv[1:], append_forwarding, __doc__))
