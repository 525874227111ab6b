"""Signatures of functions as a type checker reads them."""

import ast
import builtins
import re

from . import cpptypes, docstrings
from .shadow import HAND_WRITTEN, Function, python_default
from .wrapper import Prototype


class Signatures:
    """Joins a module's shadow functions with what their wrappers do. `untyped` collects what no type is known of."""

    def __init__(self, module, wrapper):
        self._module = module
        self._wrapper = wrapper
        self.hidden = set()  # names of the class being written: there they stand for its members
        self.untyped = []
        self.known = 0

    def of(self, scope, function):
        """(signature, docstring) of each overload."""
        if function.flat and function.name not in ("__eq__", "__ne__", "__iter__"):
            return self._prototype_signatures(function)
        signatures = self._hand_written(scope, function)
        return list(zip(signatures, [docstrings.tidy(function.doc)] + [""] * len(signatures)))

    def _hand_written(self, scope, function):
        """Signatures of what is written in Python, or has more to it than its C++ function."""
        if function.annotated:
            self.known += 1
            return [self.visible(f"({ast.unparse(function.arguments)}) -> {ast.unparse(function.source.returns)}")]
        element = self.element(scope)
        known = HAND_WRITTEN.get(function.signature_key)
        if function.abstract:
            known = ["(self, no_constructor: Never, /) -> None"]
        elif function.name in ("__eq__", "__ne__"):
            known = ["(self, other: object, /) -> bool"]
        elif function.name == "__iter__":
            known = [f"(self) -> Iterator[{element}]" if element else "(self) -> Self"]
        elif known is None:
            self.untyped.append(f"{scope.name}.{function.name}")
            known = [f"({ast.unparse(function.arguments)}) -> Any"]
        plain = element if element in cpptypes.NUMBERS.values() else "list[float]"
        return [re.sub(r"\bPlain\b", plain, re.sub(r"\bElement\b", element or "Any", self.visible(signature)))
                for signature in known]

    def _prototype_signatures(self, function):
        prototypes = self._wrapper.prototypes(function.flat)
        if not prototypes:
            raise ValueError(f"no wrapper of {function.flat}")
        if function.arguments.vararg is None:
            full = max(prototypes, key=lambda prototype: len(prototype.parameters))
            return [(self._signature(function, full, self._own_names(function)), docstrings.joined(function.sections))]
        matched = self._matched(function, prototypes)
        docs = docstrings.by_overload(function.sections, [{name for name, _ in names} for _, names, _ in matched])
        return [(self._signature(function, prototype, names, "/"), docs[index])
                for prototype, names, index in self._distinct(matched)]

    @staticmethod
    def _distinct(matched):
        """Overloads that Python can tell apart: the first of those with equal types; None belongs to the first too."""
        kept, seen = [], set()
        for prototype, names, number in matched:
            types = list(prototype.parameters)
            for earlier, *_ in kept:
                for i, (known, other) in enumerate(zip(types, earlier.parameters)):
                    optional = i - len(types) + len(names) >= 0 and names[i - len(types)][1] is not None
                    if known != other and not optional and all(n and n.endswith(" | None") for n in (known, other)):
                        types[i] = known.removesuffix(" | None")
            if tuple(types) not in seen:
                seen.add(tuple(types))
                kept.append((Prototype(types, prototype.result), names, number))
        return kept

    @staticmethod
    def _own_names(function):
        """(name, default or None) of the parameters, the object left out."""
        arguments = function.arguments.args
        defaults = [None] * (len(arguments) - len(function.arguments.defaults)) + \
            [ast.unparse(default) for default in function.arguments.defaults]
        pairs = [(argument.arg, default) for argument, default in zip(arguments, defaults)]
        return pairs[1:] if pairs and pairs[0][0] == "self" and not function.static else pairs

    def _matched(self, function, prototypes):
        """(prototype, its parameters' names, number): default arguments make several prototypes of one."""
        position, matched = 0, []
        for names in function.parameter_lists:
            types = prototypes[position].parameters if position < len(prototypes) else []
            if len(types) - len(names) not in (0, 1):  # the object; callbacks hand it to their constructor too
                break
            matched.append((prototypes[position], names, len(matched)))
            position += 1
            for fewer in range(1, sum(default is not None for _, default in names) + 1):
                if position < len(prototypes) and prototypes[position].parameters == types[:len(types) - fewer]:
                    position += 1
        if position != len(prototypes):
            raise ValueError(f"the prototypes of {function.flat} are not those that SWIG describes")
        return matched

    def _signature(self, function, prototype, names, separator=""):
        types = prototype.parameters[len(prototype.parameters) - len(names):] if names else []
        shown = [] if function.static or not self._is_method(function) else ["self"]
        for (name, default), known in zip(names, types):
            written = self.type_of(known, f"{function.flat}({name})")
            shown.append(f"{name}: {written}" + (f" = {python_default(default)}" if default is not None else ""))
        if separator and names:
            shown.append(separator)
        elif function.name.startswith("__") and function.name != "__init__" and names:
            shown.append("/")
        result = "None" if function.name == "__init__" else self.type_of(prototype.result, function.flat)
        return f"({', '.join(shown)}) -> {result}"

    @staticmethod
    def _is_method(function):
        return bool(function.arguments.args) and function.arguments.args[0].arg == "self"

    def element(self, scope):
        """What a class is a sequence of; None if it is none."""
        for flat in (f"{scope.name}__get", f"{scope.name}___getitem__"):
            for prototype in self._wrapper.prototypes(flat):
                if prototype.parameters[1:] == ["int"]:
                    return self.visible(prototype.result or "Any")
        # Sequences of mixed types: elements are told by index only.
        return "Any" if any(isinstance(m, Function) and m.signature_key == "__getitem__(self, index)"
                            for m in scope.members) else None

    # ------------------------------------------------------------------------------------------------- types

    def type_of(self, name, what):
        if name is None:
            self.untyped.append(what)
            return "Any"
        self.known += 1
        if name == "Any":
            self.untyped.append(what)
        return self.visible(name)

    def visible(self, text):
        """A type or signature with names written so that members of the same name don't hide them."""
        def visible(found):
            name = found[0]
            if name not in self.hidden:
                return name
            return f"builtins.{name}" if hasattr(builtins, name) else f"{self._module}.{name}"
        return re.sub(r"(?<![\w.])[A-Za-z_]\w*(?![\w]*:|[\w.]*\.|\w)", visible, text)
