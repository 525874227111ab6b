"""The pages of modules and classes."""

import re

from stubs import docstrings

from .restructured import Linker, literal

# What special methods are for, as a script writes it; `self` and the other parameters by their names.
_EXPRESSIONS = {
    "__add__": "{s} + {0}", "__radd__": "{0} + {s}", "__sub__": "{s} - {0}", "__rsub__": "{0} - {s}", "__mul__": "{s} * {0}",
    "__rmul__": "{0} * {s}", "__truediv__": "{s} / {0}", "__matmul__": "{s} @ {0}", "__neg__": "-{s}", "__pos__": "+{s}",
    "__abs__": "abs({s})", "__iadd__": "{s} += {0}", "__isub__": "{s} -= {0}", "__imul__": "{s} *= {0}",
    "__itruediv__": "{s} /= {0}", "__xor__": "{s} ^ {0}", "__eq__": "{s} == {0}", "__ne__": "{s} != {0}", "__lt__": "{s} < {0}",
    "__le__": "{s} <= {0}", "__gt__": "{s} > {0}", "__ge__": "{s} >= {0}", "__len__": "len({s})", "__bool__": "bool({s})",
    "__iter__": "iter({s})", "__reversed__": "reversed({s})", "__next__": "next({s})", "__contains__": "{0} in {s}",
    "__getitem__": "{s}[{0}]", "__setitem__": "{s}[{0}] = {1}", "__delitem__": "del {s}[{0}]", "__call__": "{s}({all})",
    "__buffer__": "memoryview({s})", "__array__": "numpy.asarray({s})", "__hash__": "hash({s})", "__float__": "float({s})",
    "__int__": "int({s})", "__str__": "str({s})", "__repr__": "repr({s})", "__copy__": "copy.copy({s})",
    "__deepcopy__": "copy.deepcopy({s})", "__reduce__": "pickle.dumps({s})", "__enter__": "with {s}:", "__round__": "round({s})",
}
_MANY = 24  # uses that are listed; more say little


def heading(text, line="="):
    return [text, line * max(len(text), 3), ""]


def indented(lines, by=3):
    return [" " * by + line if line else "" for line in lines]


def table(rows, widths="40 60"):
    """Rows of reStructuredText cells."""
    lines = [".. list-table::", f"   :widths: {widths}", "   :class: summary", ""]
    for row in rows:
        for number, cell in enumerate(row):
            lines.append(f"   {'* -' if number == 0 else '  -'} {cell}")
    return lines + [""] if rows else []


def shown(annotation):
    """A type as readers know it."""
    return re.sub(r"\bbuiltins\.", "", annotation)


class PageMaker:
    """Makes the reStructuredText of each page of the library."""

    def __init__(self, library, enumerations):
        self._library = library
        self._enumerations = enumerations  # {path of a class or module: those of its header}

    # --------------------------------------------------------------------------------------------- modules

    def index(self):
        rows = [(f":py:mod:`{name}`", Linker(self._library, module).summary(module.doc))
                for name, module in self._library.modules.items()]
        return [*heading("Python modules"), "Scripts import these; all share their types, so that what one makes the others take.", "",
                *table(rows, "20 80"), ".. toctree::", "   :hidden:", "", *[f"   {name}/index" for name in self._library.modules], ""]

    def module(self, module):
        """The page of a module: tables of its contents, its functions and constants in full."""
        linker = Linker(self._library, module)
        lines = [*heading(module.name), f".. py:module:: {module.name}", "", *linker.doc(module.doc), ""]
        lines += self._class_tables(module, linker)
        functions = [function for function in module.functions.values() if not function.name.startswith("_")]
        if functions:
            rows = [(f":py:func:`{function.name}() <{function.path}>`", linker.summary(function.doc)) for function in functions]
            lines += [*heading("Functions", "-"), *table(sorted(rows))]
        if module.values:
            lines += heading("Constants and variables", "-")
            lines += self._grouped(module.path, list(module.values.values()), linker, "data")
        if functions:
            lines += heading("Functions in full", "-") if len(functions) > 1 else []
            for function in functions:
                lines += self._function(function, linker, "function")
        return lines

    def _class_tables(self, module, linker):
        families = module.families
        single = sorted((one for family in families if len(family) == 1 for one in family), key=lambda one: one.name)
        lines = []
        for title, chosen in (("Classes", [one for one in single if not one.name.endswith("Vector")]),
                              ("Sequences", [one for one in single if one.name.endswith("Vector")])):
            rows = [(f":py:class:`{one.name} <{one.path}>`", linker.summary(one.doc)) for one in chosen]
            lines += [*heading(title, "-"), *table(rows)] if rows else []
        for family in families:
            if len(family) > 1:
                lines += [*heading(self.family_title(family), "-"), linker.summary(family[0].doc), "",
                          ", ".join(f":py:class:`{one.name} <{one.path}>`" for one in family), ""]
        return lines

    @staticmethod
    def family_title(family):
        stem = re.match(r"[A-Za-z]+", family[0].name)[0]
        words = re.sub(r"(?<=[a-z])(?=[A-Z])", " ", stem).capitalize()
        return f"{words}, vectors" if family[0].name.endswith("Vector") else words

    def page_of(self, one):
        """Classes of a family share the page of the first."""
        return next(family[0] for family in one.module.families if one in family).page

    # --------------------------------------------------------------------------------------------- classes

    def class_page(self, family):
        first, *others = family
        linker = Linker(self._library, first.module, first)
        title = f"{first.name} and alike" if others else first.name
        # Hundreds of pages in the tree of contents, which stands on each of them, would take most of the time.
        lines = [":orphan:", "", f":doc:`{first.module.name} </api/{first.module.name}/index>` ›", "", *heading(title),
                 f".. py:currentmodule:: {first.module.name}", ""]
        lines += [f".. py:class:: {first.name}", "", *indented(self._class_body(first, linker))]
        for other in others:
            about = Linker(self._library, other.module, other).summary(other.doc)
            lines += [f".. py:class:: {other.name}", "", f"   {about} Members as of :py:class:`{first.name} <{first.path}>`.", ""]
        return lines

    def _class_body(self, one, linker):
        lines = []
        if one.bases:
            lines += ["Bases: " + " → ".join(f":py:class:`{base.path}`" for base in one.ancestors()), ""]
        elif one.base_names:
            lines += [f"Bases: {', '.join(map(literal, one.base_names))}", ""]
        if one.derived:
            lines += ["Derived: " + ", ".join(f":py:class:`{derived.path}`" for derived in one.derived), ""]
        lines += [*linker.doc(one.doc), ""]
        lines += self._constructors(one, linker)
        plain = [function for function in one.functions.values() if not function.name.startswith("_")]
        constants = [value for value in one.values.values() if value.kind == "constant"]
        members = [value for value in one.values.values() if value.kind != "constant"]
        if constants:
            lines += [".. rubric:: Constants", "", *self._grouped(one.path, constants, linker, "attribute")]
        if members:
            lines += [".. rubric:: Properties", ""]
            lines += [line for value in members for line in self._value(value, linker, "property")]
        if plain:
            lines += [".. rubric:: Methods", ""]
            if len(plain) > 8:
                lines += table([(f":py:meth:`{function.name}() <{function.path}>`", linker.summary(function.doc)) for function in plain])
            for function in plain:
                lines += self._function(function, linker, "method")
        return lines + self._operators(one) + self._inherited(one) + self._uses(one)

    def _constructors(self, one, linker):
        if not one.constructors:
            return [".. rubric:: Constructors", "", "None: objects come from the functions that return them, or from derived classes.", ""] \
                if not one.derived or one.path in self._library.makers else []
        lines = [".. rubric:: Constructors", ""]
        for overload in one.constructors:
            lines += [f".. py:method:: {one.name}({shown(overload.arguments)})", "   :no-index:", "",
                      *indented(linker.doc(overload.doc)), ""]
        return lines

    def _operators(self, one):
        rows = []
        variable = "sequence" if one.name.endswith("Vector") else "".join(re.findall(r"[A-Z]", one.name))[:1].lower() or "x"
        for function in one.functions.values():
            pattern = _EXPRESSIONS.get(function.name)
            if not pattern:
                continue
            for overload in function.overloads:
                names = [f"{name}: {shown(kind)}" if len(function.overloads) > 1 else name
                         for name, kind in zip(overload.parameters, overload.parameter_types)] or overload.parameters
                if pattern.count("{0}") + pattern.count("{1}") > len(names):
                    continue
                rows.append((literal(pattern.format(*names, s=variable, all=", ".join(names))), self._types(overload.result, one.module)))
        return [".. rubric:: Operators and built-in functions", "", *table(rows)] if rows else []

    def _types(self, annotation, module):
        """An annotation with its classes linked."""
        def linked(found):
            used = self._library.find_class(found[0], module)
            return f":py:class:`{found[0]} <{used.path}>`\\ " if used else found[0]
        text = re.sub(r"[A-Za-z_][\w.]*", linked, shown(annotation)).replace("|", "\\|").strip()
        return text if text != "None" else "\\ "

    @staticmethod
    def _inherited(one):
        lines, known = [], set(one.functions) | set(one.values)
        for base in one.ancestors():
            names = [member for member in (*base.functions.values(), *base.values.values())
                     if member.name not in known and not member.name.startswith("_")]
            known |= {member.name for member in names}
            if names:
                links = ", ".join(f":py:{'meth' if hasattr(member, 'overloads') else 'attr'}:`{member.name} <{member.path}>`" for member in names)
                lines += [f".. rubric:: Inherited from {base.name}", "", links, ""]
        return lines

    def _uses(self, one):
        lines = []
        for title, uses in (("Returned by", self._library.makers), ("Taken by", self._library.takers)):
            found = [function for function in uses.get(one.path, ()) if not function.name.startswith("__") or function.name == "__init__"]
            links = []
            for function in found[:_MANY]:
                constructor = function.name == "__init__"
                path = function.owner.path if constructor else function.path
                if constructor and not getattr(function.owner, "constructors", None):
                    continue
                role = "class" if constructor else "meth" if hasattr(function.owner, "constructors") else "func"
                # Only the first of a family's classes has its members written out.
                if role == "meth" and self.page_of(function.owner) != function.owner.page:
                    continue
                links.append(f":py:{role}:`{path.partition('.')[2]} <{path}>`")
            if links:
                more = f" and {len(found) - _MANY} more" if len(found) > _MANY else ""
                lines += [f".. rubric:: {title}", "", ", ".join(dict.fromkeys(links)) + more, ""]
        return lines

    # --------------------------------------------------------------------------------------------- members

    @staticmethod
    def _function(function, linker, directive):
        lines = []
        for number, overload in enumerate(function.overloads):
            result = f" -> {shown(overload.result)}" if overload.result else ""
            lines.append(f".. py:{directive}:: {function.name}({shown(overload.arguments)}){result}")
            lines += ["   :staticmethod:"] if function.static and directive == "method" else []
            lines += ["   :no-index:"] if number else []
            lines += ["", *indented(linker.doc(overload.doc)), ""]
        return lines

    def _grouped(self, path, values, linker, directive):
        """Constants by the enumeration that they belong to."""
        lines = []
        for one in self._enumerations.get(path, ()):
            members = [value for value in values if value.name in one.constants]
            if members:
                lines += [f"**{one.name}**: {linker.text(docstrings.python_words(one.doc))}", ""]
                lines += [line for value in members for line in self._value(value, linker, directive)]
                values = [value for value in values if value not in members]
        return lines + [line for value in values for line in self._value(value, linker, directive)]

    @staticmethod
    def _value(value, linker, directive):
        lines = [f".. py:{directive}:: {value.name}"]
        lines += [f"   :type: {shown(value.annotation)}"] if value.annotation else []
        if value.value is not None and directive != "property":
            lines.append(f"   :value: {value.value!r}")
        doc = linker.doc(value.doc)
        if value.kind == "property" and not value.settable:
            doc += ["", "Read only."]
        return [*lines, "", *indented(doc), ""]
