"""What a shadow module declares: its classes, functions and constants, with names and docstrings."""

import ast
import re

from . import docstrings

# Signatures of the hand-written methods, by name and parameters. `Element` is what the class is a sequence of.
HAND_WRITTEN = {
    "pop(self, index=-1)": ["(self, index: int = -1, /) -> Element"],
    "__getitem__(self, index)": ["(self, index: int, /) -> Element", "(self, index: slice, /) -> Self"],
    "__getitem__(self, at)": ["(self, at: tuple[int, int], /) -> float", "(self, at: int, /) -> tuple[float, ...]"],
    "__setitem__(self, at, value)": ["(self, at: tuple[int, int], value: float, /) -> None"],
    "__len__(self)": ["(self) -> int"],
    "__repr__(self)": ["(self) -> str"],
    "__str__(self)": ["(self) -> str"],
    "__copy__(self)": ["(self) -> Self"],
    "__deepcopy__(self, memo)": ["(self, memo: dict[int, object], /) -> Self"],
    "__reduce__(self)": ["(self) -> tuple[object, ...]"],
    "__buffer__(self, flags)": ["(self, flags: int, /) -> memoryview"],
    "__release_buffer__(self, view)": ["(self, view: memoryview, /) -> None"],
    "tolist(self)": ["(self) -> list[Plain]"],
    # A proxy with all of the object's attributes, so it may be passed on like the object.
    "__disown__(self)": ["(self) -> Self"],
}


def described_names(line):
    """Names and defaults in `name(Type self, Type parameter=default) -> Type`."""
    inner = re.sub(r"\) -> [^)]*$|\)$", "", line[line.index("(") + 1:])
    parts, depth, part = [], 0, ""
    for character in inner:
        depth += (character in "(<[") - (character in ")>]")
        if character == "," and depth == 0:
            parts.append(part)
            part = ""
        else:
            part += character
    parts = [p for p in [*parts, part] if p.strip()]
    names = []
    for part in parts:
        declared, _, default = part.partition("=")
        names.append((declared.split()[-1].lstrip("*&"), default.strip() or None))
    return names[1:] if names and names[0][0] == "self" else names


def python_default(text):
    """A default as Python, where C++ and Python write it alike."""
    text = {"true": "True", "false": "False"}.get(text, text)
    return text if re.fullmatch(r"-?\d+(\.\d*)?(e-?\d+)?|True|False|None|'[^']*'|\"[^\"]*\"", text) else "..."


class Function:
    """One function or method of a shadow module."""

    def __init__(self, node, module, described):
        self.name = node.name
        self.arguments = node.args
        self.static = any(isinstance(d, ast.Name) and d.id == "staticmethod" for d in node.decorator_list)
        self.doc = ast.get_docstring(node) or ""
        self.annotated = node.returns is not None
        self.source = node
        self.flat = self._flat_name(node, module)
        name = r"\w+" if node.name == "__init__" else node.name  # constructors of renamed classes have the C++ name
        self.named_prototypes = re.findall(rf"^{name}\(.*", re.sub(r"\n\s+", " ", described.get(node.name, "")), re.M)

    @staticmethod
    def _flat_name(node, module):
        """The function of the wrapper whose result this one hands on; None for a hand-written one."""
        text = ast.unparse(node)
        found = re.search(rf"_swiginit\(self, {module}\.(\w+)\(", text) or \
            re.search(rf"^ +(?:return|val =) {module}\.(\w+)\(", text, re.M)
        return found[1] if found else None

    @property
    def sections(self):
        """The docstring's parts about each overload."""
        return docstrings.sections(self.doc)

    @property
    def parameter_lists(self):
        """(name, default or None) of each overload's parameters, the object left out; default arguments make no overloads."""
        return [described_names(line) for line in self.named_prototypes]

    @property
    def abstract(self):
        return self.name == "__init__" and self.flat is None

    @property
    def signature_key(self):
        return f"{self.name}({ast.unparse(self.arguments)})"


class Constant:
    """A constant of a class or module, with the docstring below it."""

    def __init__(self, name, flat):
        self.name = name
        self.flat = flat
        self.doc = ""


class Attribute:
    """An annotated attribute of a class written in Python, with the docstring below it."""

    def __init__(self, name, annotation):
        self.name = name
        self.annotation = annotation
        self.doc = ""


class Property:
    """A member variable: the flat functions that read and write it."""

    def __init__(self, name, getter, setter, doc):
        self.name = name
        self.getter = getter
        self.setter = setter
        self.doc = doc


class Alias:
    """Another name of a class or function."""

    def __init__(self, name, target):
        self.name = name
        self.target = target


class Scope:
    """Members of a module or class, in the order of the source."""

    def __init__(self, name, doc, bases=(), source=None):
        self.name = name
        self.doc = doc
        self.bases = bases
        self.source = source
        self.members = []


class Shadow:
    """A shadow module. `signatures` is the same module generated with SWIG's own description of every function."""

    def __init__(self, name, source, signatures):
        self.name = name
        self._module = f"_{name}"
        self._described = self._descriptions(ast.parse(signatures))
        tree = ast.parse(source)
        self.top = Scope("", ast.get_docstring(tree) or "")
        self.reexports = [(node.module, alias.name) for node in tree.body if isinstance(node, ast.ImportFrom)
                          and node.module != "sys" and not node.level for alias in node.names]
        self._fill(self.top, tree.body)

    @staticmethod
    def _descriptions(tree):
        """{class or "": {function: prototypes, one a line}}"""
        found = {}
        for node in tree.body:
            scope, functions = (node.name, node.body) if isinstance(node, ast.ClassDef) else ("", [node])
            for function in functions:
                if isinstance(function, ast.FunctionDef):
                    found.setdefault(scope, {})[function.name] = ast.get_docstring(function) or ""
        return found

    def _fill(self, scope, nodes):
        for node in nodes:
            if isinstance(node, ast.FunctionDef):
                if not node.name.startswith("_swig"):
                    scope.members.append(Function(node, self._module, self._described.get(scope.name, {})))
            elif isinstance(node, ast.ClassDef):
                if not node.name.startswith("_"):
                    bases = [ast.unparse(base) for base in node.bases if ast.unparse(base) != "object"]
                    inner = Scope(node.name, ast.get_docstring(node) or "", bases, node)
                    self._fill(inner, node.body)
                    scope.members.append(inner)
            elif isinstance(node, ast.Assign) and isinstance(node.targets[0], ast.Name):
                member = self._assigned(node.targets[0].id, node.value)
                if member:
                    scope.members.append(member)
            elif isinstance(node, ast.AnnAssign) and scope.name and not node.target.id.startswith("_"):
                scope.members.append(Attribute(node.target.id, ast.unparse(node.annotation)))
            elif isinstance(node, ast.Expr) and isinstance(node.value, ast.Constant) and scope.members \
                    and isinstance(scope.members[-1], Constant | Attribute):
                scope.members[-1].doc = node.value.value

    def _assigned(self, name, value):
        text = ast.unparse(value)
        if name == "thisown" or name.startswith("__"):
            return None
        flat = rf"{self._module}\.(\w+)"
        if found := re.fullmatch(rf"property\({flat}(?:, {flat})?(?:, doc=(.*))?\)", text, re.S):
            return Property(name, found[1], found[2], ast.literal_eval(found[3]) if found[3] else "")
        if found := re.fullmatch(flat, text):
            return Constant(name, found[1])
        return Alias(name, text) if re.fullmatch(r"\w+", text) else None
