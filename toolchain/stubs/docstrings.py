"""Header comments, as SWIG translates them, in the words and the form of Python."""

import inspect
import itertools
import re
import textwrap

_WIDTH = 100
_FIELD = re.compile(r":(param [\w.]+|return|raises(?: \w+)?):(?: |$)")
# C++ exceptions as they arrive; sequences raise others, and their comments say so.
_EXCEPTION = r"std::(?:invalid_argument|out_of_range|runtime_error|logic_error|length_error|domain_error|exception)"
# "null" is None where an object is missing; vectors and rotations of length zero keep the word.
_NULL = re.compile(r"(?<!\ba )(?<!\bthe )\bnull\b(?! (?:vector|quaternion|axis|rotation|matrix|transform))(?!-)|\bnullptr\b")
# Namespaces and classes; a lower-case name after them is a member or function.
_QUALIFIED = re.compile(r"\b((?:zor|osg)[A-Za-z]*|[A-Z]\w*)::(?=[\w~])")


def sections(doc):
    """A docstring's parts about each overload; SWIG leaves out those without a comment."""
    parts = re.split(r"^ *\*Overload \d+:\*", inspect.cleandoc(doc), flags=re.M)
    if len(parts) == 1:
        return [doc] if doc.strip() else []
    return [part.strip().removesuffix("|").rstrip() for part in parts if part.strip()]


def parameter_names(section):
    """The parameters that a section tells of."""
    return set(re.findall(r":(?:type|param) ([\w.]+):", section))


def tidy(section):
    """One section without C++: types are in the signature, exceptions are Python's, fields have one form."""
    text = re.sub(r"^ *:type [^\n]*\n?|^ *:rtype: [^\n]*\n?", "", inspect.cleandoc(section), flags=re.M)
    text = re.sub(r" +:r?type[^\n]*", "", text)
    text = re.sub(r"(?<=\S) +(?=:(?:param \w+|return|raises):)", "\n", text)
    description, fields = _split(text.splitlines())
    lines = _description(description)
    lines += [""] if lines and fields else []
    for head, body in fields:
        lines += textwrap.wrap(f":{head}: {body}", _WIDTH, subsequent_indent="    ", break_long_words=False,
                               break_on_hyphens=False)
    return "\n".join(lines).strip()


def by_overload(sections, parameters):
    """The docstring of each overload, whose parameters' names are given. SWIG leaves overloads without a comment
    out and doesn't say which: then the parameters decide, or where they can't, the first one tells of all."""
    if len(sections) > len(parameters):  # forms with fewer arguments are told of again at times
        sections = [section for i, section in enumerate(sections)
                    if not i or tidy(section) != tidy(sections[i - 1])]
    # Copies are made by constructors that have no line in a header.
    candidates = [at for at, names in enumerate(parameters) if names != {"other"}]
    if len(candidates) < len(sections):
        candidates = range(len(parameters))
    places = [[] for _ in sections]
    for chosen in itertools.combinations(candidates, len(sections)):
        if all(parameter_names(section) <= parameters[at] for section, at in zip(sections, chosen)):
            for place, at in zip(places, chosen):
                place.append(at)
    # Overloads with equal parameters share what is said of any of them.
    shared = {}
    for section, place in zip(sections, places):
        if len({frozenset(parameters[at]) for at in place}) != 1:
            return [joined(sections)] + [""] * (len(parameters) - 1)
        shared.setdefault(tuple(sorted(set(place))), []).append(section)
    docs = {}
    for place, parts in shared.items():
        for at in place:
            docs.setdefault(at, []).extend(parts)
    return [joined(docs.get(at, [])) for at in range(len(parameters))]


def joined(parts):
    """Several sections as one text, each said once."""
    return "\n\n".join(dict.fromkeys(tidied for tidied in map(tidy, parts) if tidied))


def _split(lines):
    """The description's lines, and (head, text) of each field."""
    description, fields = [], []
    for line in lines:
        if found := _FIELD.match(line.strip()):
            fields.append([found[1], line.strip()[found.end():]])
        elif fields and line.strip():
            fields[-1][1] += " " + line.strip()
        elif not fields:
            description.append(line)
    split = [part for head, body in fields for part in _field(head, " ".join(body.split()))]
    order = {"param": 0, "return": 1, "raises": 2}
    return description, sorted(split, key=lambda field: order[field[0].split()[0]])


def _field(head, body):
    """A field in Python's words; what it throws as a field of its own."""
    body = body.removeprefix("- ").strip()
    if head.startswith("raises"):
        found = re.match(rf"({_EXCEPTION}|\w+)[,:]?\s*(.*)", body)
        if head == "raises" and found:
            return [(f"raises {_python_exception(found[1])}", python_words(found[2]))]
        return [(head, python_words(body))]
    if found := re.search(rf"(?:^|[.;] |(?<=\w) )Throws ({_EXCEPTION}|RuntimeError) (.*)$", body):
        return [(head, python_words(body[:found.start()])), (f"raises {_python_exception(found[1])}", python_words(found[2]))]
    return [(head, python_words(body))]


def _description(lines):
    indents = [len(line) - len(line.lstrip()) for line in lines if line.strip()]
    if not any(re.match(r" *([-*]|\d+\.) ", line) for line in lines) and "::\n" not in "\n".join(lines):
        lines = [line.strip() for line in lines]  # SWIG indents first lines and continuations at will
    elif indents:
        lines = [line[min(indents):].rstrip() for line in lines]
    while lines and not lines[0]:
        lines.pop(0)
    while lines and not lines[-1]:
        lines.pop()
    return python_words("\n".join(lines)).splitlines()


def _python_exception(name):
    return "RuntimeError" if name.startswith("std::") else name


def python_words(text):
    """C++ words of a comment as Python's."""
    text = re.sub(rf"\b(T|t)hrows (?:an? )?{_EXCEPTION}", lambda found: f"{'R' if found[1] == 'T' else 'r'}aises RuntimeError", text)
    text = re.sub(_EXCEPTION, "RuntimeError", text)
    text = _NULL.sub("None", text)
    text = re.sub(r"(?<![\w-])(true|false)(?![\w-])", lambda found: found[1].capitalize(), text)
    return _QUALIFIED.sub(r"\1.", text)
