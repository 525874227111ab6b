"""Writes the stub of one module."""

import re

from . import cpptypes, docstrings
from .shadow import Alias, Attribute, Constant, Function, Property, Scope

_HEADER = '''# Made by toolchain/make_stubs.py from what SWIG generates; not to be edited.
# Results of C++ functions that may be null are written without None, as most of them never are where they are used.
# As in C++, methods of derived classes may take other arguments, and overloads base classes before derived ones.
# mypy: disable-error-code="override, overload-cannot-match"
'''


class Writer:
    """Makes the text of a stub."""

    def __init__(self, shadow, wrapper, signatures, modules):
        self._modules = modules  # stubs may name classes of any of them, also of those that import this one
        self._shadow = shadow
        self._wrapper = wrapper
        self._signatures = signatures
        self._lines = []

    def text(self):
        top = self._shadow.top
        if top.doc:
            self._write_doc(docstrings.tidy(top.doc), "")
        self._write_members(top, "")
        if self._wrapper.variables:
            self._write_variables()
        body = "\n".join(self._lines)
        return _HEADER + self._imports(body) + body + "\n"

    def _imports(self, body):
        lines = [f"import {module}\n" for module in ("builtins", "numpy", "numpy.typing", *self._modules) if re.search(rf"(?<!\w){module}\.\w", body)]
        abstract = [name for name in ("Buffer", "Callable", "Iterable", "Iterator") if re.search(rf"\b{name}\[|[:|] {name}\b", body)]
        typing = [name for name in ("Any", "ClassVar", "Final", "Never", "Self", "overload")
                  if re.search(rf"\b{name}\b", body)]
        lines += [f"from collections.abc import {', '.join(abstract)}\n"] if abstract else []
        lines += [f"from typing import {', '.join(typing)}\n"] if typing else []
        lines += [f"from {module} import {name} as {name}\n" for module, name in self._shadow.reexports]
        opaque = f'\nclass {cpptypes.OPAQUE_CLASS}:\n    """A C++ value that scripts can only pass on."""\n' \
            if cpptypes.OPAQUE_MODULE == self._shadow.name else ""
        return "".join(lines) + opaque + "\n"

    # ------------------------------------------------------------------------------------------------ scopes

    def _write_members(self, scope, indent):
        outer = self._signatures.hidden
        self._signatures.hidden = {member.name for member in scope.members} if indent else set()
        written = set()
        for member in reversed(scope.members):  # a later definition of a name replaces an earlier one
            if member.name in written or self._hidden(member, indent):
                member.name = ""
            written.add(member.name)
        for member in scope.members:
            if member.name:
                self._write_member(scope, member, indent)
        if indent:
            self._write_implied(scope, written, indent)
        self._signatures.hidden = outer

    @staticmethod
    def _hidden(member, indent):
        return member.name.startswith("_") and not (indent and member.name.startswith("__") and member.name.endswith("__"))

    def _write_member(self, scope, member, indent):
        if isinstance(member, Scope):
            self._write_class(member)
        elif isinstance(member, Function):
            self._write_function(scope, member, indent)
        elif isinstance(member, Property):
            self._write_property(member, indent)
        elif isinstance(member, Alias):
            self._lines.append(f"{indent}{member.name} = {member.target}")
        elif isinstance(member, Constant):
            self._write_constant(member, indent)
        elif isinstance(member, Attribute):
            self._lines.append(f"{indent}{member.name}: {member.annotation}")
            if member.doc:
                self._write_doc(docstrings.tidy(member.doc), indent)

    def _write_class(self, scope):
        bases = f"({', '.join(scope.bases)})" if scope.bases else ""
        self._lines.append(f"\nclass {scope.name}{bases}:")
        if scope.doc:
            self._write_doc(docstrings.tidy(scope.doc), "    ")
        self._write_members(scope, "    ")
        if self._lines[-1] == f"\nclass {scope.name}{bases}:":
            self._lines.append("    ...")

    def _write_implied(self, scope, names, indent):
        """What classes have without a line in the source."""
        if not scope.bases or scope.bases == ["RuntimeError"]:
            self._lines += [f"{indent}@property", f"{indent}def thisown(self) -> {self._signatures.visible('bool')}: ...",
                            f"{indent}@thisown.setter",
                            f"{indent}def thisown(self, value: {self._signatures.visible('bool')}) -> None: ..."]
        if "__eq__" in names and "__hash__" not in names:
            self._lines.append(f"{indent}__hash__: ClassVar[None]  # type: ignore[assignment]")
        element = self._signatures.element(scope)
        if element and "__getitem__" in names and "__iter__" not in names:
            self._lines.append(f"{indent}def __iter__(self) -> Iterator[{element}]: ...")

    def _write_constant(self, member, indent):
        if member.name == "cvar":
            self._lines.append(f"{indent}cvar: _GlobalVariables")
            return
        known = self._wrapper.constants.get(member.flat)
        self._lines.append(f"{indent}{member.name}: Final[{self._signatures.type_of(known, member.name)}]")
        if member.doc:
            self._write_doc(docstrings.tidy(member.doc), indent)

    def _write_variables(self):
        """What C++ variables look like: attributes of one object."""
        self._lines.append("\nclass _GlobalVariables:")
        for name, getter in self._wrapper.variables:
            self._lines.append(f"    {name}: {self._signatures.type_of(self._wrapper.variable_type(getter), name)}")

    def _write_property(self, member, indent):
        result = self._signatures.type_of(self._wrapper.prototypes(member.getter)[0].result, member.name)
        self._lines += [f"{indent}@property", f"{indent}def {member.name}(self) -> {result}:"]
        self._write_body(docstrings.tidy(member.doc), indent)
        if member.setter:
            value = self._signatures.type_of(self._wrapper.prototypes(member.setter)[0].parameters[1], member.name)
            self._lines += [f"{indent}@{member.name}.setter",
                            f"{indent}def {member.name}(self, value: {value}) -> None: ..."]

    # --------------------------------------------------------------------------------------------- functions

    def _write_function(self, scope, function, indent):
        signatures = self._signatures.of(scope, function)
        for signature, doc in signatures:
            if len(signatures) > 1:
                self._lines.append(f"{indent}@overload")
            if function.static:
                self._lines.append(f"{indent}@staticmethod")
            # Iterators subtract iterators too, which makes no sense in place.
            ignored = "  # type: ignore[misc]" if function.name == "__isub__" else ""
            self._lines.append(f"{indent}def {function.name}{signature}:{ignored}")
            self._write_body(doc, indent)

    # -------------------------------------------------------------------------------------------- docstrings

    def _write_body(self, doc, indent):
        if doc.strip():
            self._write_doc(doc, indent + "    ")
        else:
            self._lines[-1] = re.sub(r":(  #.*)?$", r": ...\1", self._lines[-1])

    def _write_doc(self, doc, indent):
        doc = doc.strip().replace("\\", "\\\\").replace('"""', '\\"\\"\\"')
        doc = re.sub(r'"$', r'\"', doc)
        lines = [f"{indent}{line}".rstrip() for line in doc.splitlines()] or [indent]
        closing = '"""' if len(lines) == 1 else f'\n{indent}"""'
        self._lines.append(f'{indent}"""' + "\n".join(lines)[len(indent):] + closing)
