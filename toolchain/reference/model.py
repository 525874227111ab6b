"""What the type stubs tell of the modules, as the pages need it."""

import ast
import functools
import importlib
import re

# Stands in stubs for what scripts can only pass on.
OPAQUE = "_Opaque"


class Overload:
    """One way to call a function."""

    def __init__(self, node, is_method):
        arguments = ast.parse("lambda: 0", mode="eval").body.args
        everything = [*node.args.posonlyargs, *node.args.args]
        arguments.args = everything[1:] if is_method and everything and everything[0].arg == "self" else everything
        arguments.defaults, arguments.vararg = node.args.defaults, node.args.vararg
        arguments.kwonlyargs, arguments.kw_defaults, arguments.kwarg = node.args.kwonlyargs, node.args.kw_defaults, node.args.kwarg
        self.arguments = ast.unparse(arguments)
        self.parameters = [argument.arg for argument in arguments.args + arguments.kwonlyargs]
        self.parameter_types = [ast.unparse(argument.annotation) for argument in arguments.args + arguments.kwonlyargs
                                if argument.annotation]
        self.result = ast.unparse(node.returns) if node.returns else ""
        self.doc = ast.get_docstring(node) or ""


class Function:
    """A function or method with its overloads."""

    def __init__(self, name, owner):
        self.name = name
        self.owner = owner  # a Class or Module
        self.overloads = []
        self.static = False

    @property
    def doc(self):
        return next((overload.doc for overload in self.overloads if overload.doc), "")

    @property
    def path(self):
        return f"{self.owner.path}.{self.name}"


class Value:
    """A constant, property or variable."""

    def __init__(self, name, owner, kind, annotation, doc="", settable=False, value=None):
        self.name, self.owner, self.kind, self.annotation = name, owner, kind, annotation
        self.doc, self.settable, self.value = doc, settable, value

    @property
    def path(self):
        return f"{self.owner.path}.{self.name}"


class Scope:
    """Members of a class or module, in the order of the stub."""

    def __init__(self, name):
        self.name = name
        self.doc = ""
        self.functions = {}
        self.values = {}

    def read(self, body, real):
        """Takes the members from a stub's nodes; `real` is the scope at run time, which knows the constants' values."""
        for node, following in zip(body, [*body[1:], None]):
            if isinstance(node, ast.FunctionDef):
                self._read_function(node)
            elif isinstance(node, ast.AnnAssign):
                doc = following.value.value if isinstance(following, ast.Expr) and isinstance(following.value, ast.Constant) else ""
                self._read_value(node, doc, real)

    def _read_function(self, node):
        decorators = [ast.unparse(decorator) for decorator in node.decorator_list]
        if "property" in decorators:
            self.values[node.name] = Value(node.name, self, "property", ast.unparse(node.returns), ast.get_docstring(node) or "")
        elif any(decorator.endswith(".setter") for decorator in decorators):
            self.values[node.name].settable = True
        else:
            function = self.functions.setdefault(node.name, Function(node.name, self))
            function.static = "staticmethod" in decorators
            function.overloads.append(Overload(node, isinstance(self, Class) and not function.static))

    def _read_value(self, node, doc, real):
        name, annotation = node.target.id, ast.unparse(node.annotation)
        annotation = "" if annotation == "_GlobalVariables" else annotation
        if name.startswith("_"):
            return
        final = re.fullmatch(r"Final(?:\[(.*)\])?", annotation)
        value = getattr(real, name, None)
        self.values[name] = Value(name, self, "constant" if final else "variable", (final[1] if final else annotation) or "",
                                  doc, not final, value if isinstance(value, (int, float, str)) else None)


class Class(Scope):
    """A class of a module."""

    def __init__(self, node, module, real):
        super().__init__(node.name)
        self.module = module
        self.doc = ast.get_docstring(node) or ""
        self.base_names = [ast.unparse(base) for base in node.bases]
        self.bases, self.derived = [], []
        self.read(node.body, real)
        self.values.pop("thisown", None)
        constructor = self.functions.pop("__init__", None)
        # A parameter that nobody can give stands for an abstract class.
        self.constructors = [overload for overload in constructor.overloads if "no_constructor" not in overload.parameters] \
            if constructor else []

    @property
    def path(self):
        return f"{self.module.name}.{self.name}"

    @property
    def page(self):
        return f"/api/{self.module.name}/{self.name}"

    def ancestors(self):
        """Base classes of base classes, nearest first."""
        found = []
        for base in self.bases:
            found += [base, *base.ancestors()]
        return list(dict.fromkeys(found))

    def shape(self):
        """Equal for classes that differ in their element type alone."""
        stem = re.match(r"\D+", self.name)[0]
        return (stem, self.name.endswith("Vector"), tuple(self.functions), tuple(self.values), len(self.constructors))


class Module(Scope):
    """A module, from its stub and from itself."""

    def __init__(self, name, stub):
        super().__init__(name)
        tree = ast.parse(stub.read_text(encoding="utf-8"))
        real = importlib.import_module(name)
        self.doc = ast.get_docstring(tree) or next(
            (node.value.value for node in tree.body if isinstance(node, ast.Expr) and isinstance(node.value, ast.Constant)
             and isinstance(node.value.value, str)), "")
        self.read(tree.body, real)
        self.classes = {node.name: Class(node, self, getattr(real, node.name, None)) for node in tree.body
                        if isinstance(node, ast.ClassDef) and (not node.name.startswith("_") or node.name == OPAQUE)}

    @property
    def path(self):
        return self.name

    @functools.cached_property
    def families(self):
        """Lists of classes; those of one list differ in their element type alone."""
        families = {}
        for one in self.classes.values():
            families.setdefault(one.shape(), []).append(one)
        return [part for family in families.values() for part in ([family] if len(family) >= 8 else [[one] for one in family])]


class Library:
    """All modules, joined: bases, derived classes and uses are known."""

    def __init__(self, folder, names):
        self.modules = {name: Module(name, folder / f"{name}.pyi") for name in names}
        self.classes = {one.path: one for module in self.modules.values() for one in module.classes.values()}
        for one in self.classes.values():
            for base in map(lambda name: self.find_class(name, one.module), one.base_names):
                if base:
                    one.bases.append(base)
                    base.derived.append(one)
        self.makers, self.takers = {}, {}
        for module in self.modules.values():
            for scope in (module, *module.classes.values()):
                for function in scope.functions.values():
                    self._note_uses(function, module)

    def find_class(self, name, module):
        """The class that a name means in a module."""
        return self.classes.get(name) or self.classes.get(f"{module.name}.{name}")

    def _note_uses(self, function, module):
        for overload in function.overloads:
            for uses, annotations in ((self.makers, [overload.result]), (self.takers, overload.parameter_types)):
                for name in re.findall(r"[A-Za-z_][\w.]*", " ".join(annotations)):
                    used = self.find_class(name, module)
                    if used and used is not function.owner and function not in uses.setdefault(used.path, []):
                        uses[used.path].append(function)
