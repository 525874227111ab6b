"""Enumerations of the public headers: Python has their constants, but not what holds them together."""

import re

_ENUM = re.compile(r"(?:/\*\*((?:[^*]|\*(?!/))*)\*/|///([^\n]*))\s*enum\s+(?:class\s+)?(\w+)[^;{]*\{(.*?)\};", re.S)
_COMMENT = re.compile(r"/\*.*?\*/|//[^\n]*", re.S)


class Enumeration:
    """Constants that belong together."""

    def __init__(self, name, doc, constants):
        self.name, self.doc, self.constants = name, doc, constants


def enumerations(text):
    """Those of one header, with their comments."""
    found = []
    for block, line, name, body in _ENUM.findall(text):
        doc = " ".join(re.sub(r"^\s*\*", "", part).strip() for part in (block or line).splitlines()).strip()
        constants = [item.split("=")[0].strip() for item in _COMMENT.sub("", body).split(",")]
        found.append(Enumeration(name, doc, [constant for constant in constants if constant]))
    return found


def by_scope(folders, library):
    """{path of a class or module: enumerations} of the headers below some folders; a header is named after its class."""
    found = {}
    for header in sorted(header for folder in folders for header in folder.rglob("*.h")):
        module, path = header.parent.name, f"{header.parent.name}.{header.stem}"
        for one in enumerations(header.read_text(encoding="utf-8")):
            found.setdefault(path if path in library.classes else module, []).append(one)
    return found
