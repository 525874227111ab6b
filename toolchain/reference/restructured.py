"""Docstrings as reStructuredText, with links for the names of classes and functions that they mention."""

import re

_TOKEN = re.compile(r"`[^`\n]+`|[A-Za-z_]\w*(?:(?:\.|::)[A-Za-z_]\w*)*(?:\(\))?")


def escaped(text):
    """Text that reads as it is."""
    text = re.sub(r"([\\*`|])", r"\\\1", text)
    text = re.sub(r"(?<=[A-Za-z0-9])_(?![A-Za-z0-9])", r"\\_", text)
    return re.sub(r"::(?=\s|$)", r":\\:", text)


def literal(text):
    return f"``{text}``" if text and "`" not in text and text == text.strip() else escaped(text)


class Linker:
    """Turns plain docstrings into reStructuredText within one class or module."""

    def __init__(self, library, module, owner=None):
        self._library = library
        self._module = module
        self._owner = owner

    def text(self, plain):
        """One paragraph or more, escaped and linked."""
        position, parts = 0, []
        for found in _TOKEN.finditer(plain):
            parts.append(escaped(plain[position:found.start()]))
            parts.append(self._token(found[0], plain[found.start() - 1:found.start()], plain[found.end():found.end() + 1]))
            position = found.end()
        return "".join([*parts, escaped(plain[position:])])

    def _token(self, token, before, after):
        code = token.startswith("`")
        marked = self._link(token.strip("`")) or (literal(token.strip("`")) if code else "")
        if not marked:
            return escaped(token)
        # Markup needs the ends of a word around it.
        return ("" if not before or before in " \n'\"([{<-/:" else "\\ ") + marked + \
            ("" if not after or after in " \n'\")]}>-/:.,;!?" else "\\ ")

    def _link(self, token):
        name = token.removesuffix("()").replace("::", ".")
        target = self._target(name, explicit=token.endswith("()") or "." in name)
        if target is None or (self._owner and target is self._owner):
            return ""
        role = "class" if hasattr(target, "constructors") else "mod" if hasattr(target, "classes") else \
            "func" if hasattr(target, "overloads") and hasattr(target.owner, "classes") else \
            "meth" if hasattr(target, "overloads") else "attr"
        return f":py:{role}:`{token} <{target.path}>`"

    def _target(self, name, explicit):
        """What a word means; ordinary words mean nothing, as they would be linked by chance."""
        telling = explicit or re.search(r"[a-z0-9][A-Z]|^[A-Z]{2,}_|_[A-Z]", name)
        if name in self._library.classes:
            return self._library.classes[name]
        head, _, member = name.rpartition(".")
        if head:
            owner = self._library.modules.get(head) or self._library.find_class(head, self._module)
            if owner is None and "." not in head:
                same = [one for one in self._library.classes.values() if one.name == head]
                owner = same[0] if len(same) == 1 else None
            return self._member(owner, member) if owner else None
        if not telling:
            return None
        if self._owner and (found := self._member(self._owner, name)):
            return found
        if found := self._member(self._module, name):
            return found
        if name in self._module.classes:
            return self._module.classes[name]
        same = [one for one in self._library.classes.values() if one.name == name]
        return same[0] if len(same) == 1 else None

    @staticmethod
    def _member(owner, name):
        for scope in (owner, *(owner.ancestors() if hasattr(owner, "ancestors") else ())):
            if found := scope.functions.get(name) or scope.values.get(name):
                return found
        return None

    def doc(self, plain):
        """A whole docstring: paragraphs, lists and fields."""
        blocks, fields = [], []
        for line in plain.splitlines():
            if re.match(r":(param|return|raises)\b", line):
                fields.append(line)
            elif fields and line.startswith("    "):
                fields[-1] += " " + line.strip()
            else:
                blocks.append(line)
        lines = self._paragraphs(blocks)
        if fields:
            lines += ["", *map(self._field, fields)]
        return lines

    def _field(self, field):
        head, body = re.match(r"(:[^:]*:)\s*(.*)", field).groups()
        return f"{head} {self.text(body)}"

    def _paragraphs(self, lines):
        """Paragraphs and list items, each on one line."""
        blocks = []  # (indentation, mark, text)
        for line in lines:
            bullet = re.match(r"( *)([-*]|\d+\.) +(.*)", line)
            if bullet:
                blocks.append([bullet[1], "#. " if bullet[2][0].isdigit() else "- ", bullet[3]])
            elif not line.strip():
                blocks.append(["", "", ""])
            elif blocks and blocks[-1][2]:
                blocks[-1][2] += " " + line.strip()
            else:
                blocks.append([line[:len(line) - len(line.lstrip())], "", line.strip()])
        result = []
        for number, (indent, mark, text) in enumerate(blocks):
            if mark and number and not blocks[number - 1][1]:
                result.append("")
            result.append(indent + mark + self.text(text))
        return result

    def summary(self, plain):
        """The first sentence."""
        body = re.split(r"\n\s*\n|\n(?=:)", plain.strip())[0]
        if found := re.match(r":return:\s*(\w)(\w?)", body):
            keep = found[2].isupper() or found[1] + found[2] in ("Tr", "Fa", "No")
            body = "Returns " + (found[1] if keep else found[1].lower()) + body[found.end(1):]
        elif body.startswith(":"):
            body = body.partition(": ")[2]
        body = " ".join(body.split())
        sentence = re.match(r".*?[.](?=\s+[A-Z(]|$)", body)
        text = sentence[0] if sentence else body
        text = text[:1].upper() + text[1:]
        return self.text(text)
