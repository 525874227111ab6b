"""The project's Markdown as reStructuredText: headings, paragraphs, lists, tables, code, links and pictures."""

import posixpath
import re

_INLINE = re.compile(r"`([^`]+)`|!\[([^\]]*)\]\(([^)\s]+)\)|\[([^\]]+)\]\(([^)\s]+)\)|\*\*([^*]+)\*\*|\*([^*\s][^*]*)\*")
_BULLET = re.compile(r"( *)([-*]|\d+\.) +(.*)")


class Converter:
    """Converts one document. `resolve` makes a reStructuredText target of a link: ("doc"|"url"|"", address)."""

    def __init__(self, folder, resolve):
        self._folder = folder
        self._resolve = resolve

    def convert(self, text):
        lines, result = text.splitlines(), []
        while lines:
            line = lines[0]
            if found := re.match(r"```(\w*)", line):
                result += self._fenced(lines, found[1])
            elif found := re.match(r"(#+) +(.*)", line):
                title = self.inline(found[2])
                result += ["", title, "=-~^"[min(len(found[1]), 4) - 1] * len(title), ""]
                lines.pop(0)
            elif line.startswith("|"):
                result += self._table(lines)
            elif line.startswith("    ") and (not result or not result[-1].strip()):
                result += self._indented(lines)
            elif _BULLET.match(line):
                result += self._list(lines)
            elif found := re.fullmatch(r"!\[([^\]]*)\]\(([^)\s]+)\)", line.strip()):
                result += self._picture(found[1], found[2])
                lines.pop(0)
            elif not line.strip():
                result.append("")
                lines.pop(0)
            else:
                result += self._paragraph(lines)
        return result

    @staticmethod
    def _fenced(lines, language):
        lines.pop(0)
        code = []
        while lines and not lines[0].startswith("```"):
            code.append(lines.pop(0))
        if lines:
            lines.pop(0)
        return ["", f".. code-block:: {language or 'text'}", "", *[f"   {line}" if line else "" for line in code], ""]

    @staticmethod
    def _indented(lines):
        code = []
        while lines and (lines[0].startswith("    ") or not lines[0].strip()):
            code.append(lines.pop(0)[4:])
        return ["", ".. code-block:: text", "", *[f"   {line}" if line else "" for line in code], ""]

    def _table(self, lines):
        rows = []
        while lines and lines[0].startswith("|"):
            row = [cell.strip() for cell in re.split(r"(?<!\\)\|", lines.pop(0).strip().strip("|"))]
            if not all(re.fullmatch(r":?-+:?", cell) for cell in row):
                rows.append(row)
        result = ["", ".. list-table::", "   :header-rows: 1", ""]
        for row in rows:
            for number, cell in enumerate(row):
                result.append(f"   {'* -' if number == 0 else '  -'} {self.inline(cell.replace(chr(92) + '|', '|'))}")
        return [*result, ""]

    def _list(self, lines):
        result = [""]
        while lines and (found := _BULLET.match(lines[0])):
            indent, text = len(found[1]), [found[3]]
            lines.pop(0)
            while lines and lines[0].strip() and not _BULLET.match(lines[0]) and lines[0].startswith(" "):
                text.append(lines.pop(0).strip())
            mark = "#." if found[2][0].isdigit() else "-"
            if result[-1].strip() and indent != len(result[-1]) - len(result[-1].lstrip()):
                result.append("")
            result.append(f"{' ' * indent}{mark} {self.inline(' '.join(text))}")
        return [*result, ""]

    def _paragraph(self, lines):
        text = []
        while lines and lines[0].strip() and not re.match(r"```|#+ |\|", lines[0]) and not (text and _BULLET.match(lines[0])):
            text.append(lines.pop(0).strip())
        return [self.inline(" ".join(text)), ""]

    def _picture(self, description, target):
        kind, address = self._resolve(posixpath.normpath(posixpath.join(self._folder, target)), target)
        return ["", f".. image:: {address}", f"   :alt: {description}", ""] if kind == "picture" else [description, ""]

    def inline(self, text):
        """The inline markup of one line."""
        position, parts = 0, []
        for found in _INLINE.finditer(text):
            parts += [_escaped(text[position:found.start()]), self._marked(found)]
            if re.match(r"\w", text[found.end():found.end() + 1]):
                parts.append("\\ ")
            position = found.end()
        return "".join([*parts, _escaped(text[position:])])

    def _marked(self, found):
        code, _, _, label, target, strong, emphasis = found.groups()
        if code:
            return f"``{code.strip()}``"
        if label:
            plain = label.replace("`", "")
            kind, address = self._resolve(posixpath.normpath(posixpath.join(self._folder, target)), target)
            if kind == "doc":
                return f":doc:`{plain} <{address}>`"
            return f"`{_escaped(plain)} <{address}>`__" if kind == "url" else f"``{plain}``"
        return f"**{strong}**" if strong else f"*{emphasis}*" if emphasis else ""


def _escaped(text):
    text = re.sub(r"([\\*`|])", r"\\\1", text)
    return re.sub(r"(?<=[A-Za-z0-9])_(?![A-Za-z0-9])", r"\\_", text)
