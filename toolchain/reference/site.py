"""All pages: writes the sources that Sphinx makes HTML of, only where they have changed."""

import ast
import re

from . import enumerations
from .markdown import Converter
from .pages import PageMaker, heading

# Pages of the guide in the order of the start page; others of docs/ follow by name.
_GUIDE = ["getting-started", "troubleshooting", "changes"]
_DEVELOPERS = ["architecture", "decisions", "header-conventions"]

_CPP = "The public headers of the toolkit, by library and namespace. Python's modules are made from them, so that names, \
parameters and comments are the same."


class Site:
    """The sources of the reference in a folder; what is written twice alike keeps its time, so that Sphinx skips it."""

    def __init__(self, repository, output, library):
        self._repository = repository
        self._output = output
        self._library = library
        self._written = set()
        self._guides = {path.stem: path for path in sorted((repository / "docs").glob("*.md"))}
        self._readmes = {str(path.parent.relative_to(repository)): path for folder in ("toolchain", "swig", "binding", "benchmarks", "toolkit")
                         for path in sorted((repository / folder).rglob("README.md"))}
        self._examples = {path.name: path for path in sorted((repository / "examples").glob("*.py"))}

    def write(self):
        """Writes all pages and removes those of before."""
        headers = sorted((self._repository / "toolkit").glob("*/include"))
        pages = PageMaker(self._library, enumerations.by_scope(headers, self._library))
        self._page("api/index", pages.index())
        for module in self._library.modules.values():
            self._page(f"api/{module.name}/index", pages.module(module))
            for family in module.families:
                self._page(family[0].page.lstrip("/"), pages.class_page(family))
        for name, path in self._guides.items():
            self._document(f"guide/{name}", path)
        for name, path in self._readmes.items():
            self._document(f"inside/{name.replace('/', '-')}", path)
        self._write_examples()
        self._page("cpp-headers", [*heading("C++ headers"), _CPP, "", "`Open the reference of the C++ headers <cpp/index.html>`__", ""])
        self._page("index", self._start())
        for path in self._output.rglob("*"):
            if path.is_file() and path not in self._written:
                path.unlink()

    # ---------------------------------------------------------------------------------------------- writing

    def _page(self, name, lines):
        text = re.sub(r"\n{3,}", "\n\n", "\n".join(line.rstrip() for line in lines)).strip() + "\n"
        self._put(f"{name}.rst", text.encode())

    def _put(self, name, content):
        path = self._output / name
        self._written.add(path)
        if not path.exists() or path.read_bytes() != content:
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(content)

    def _document(self, name, path):
        folder = str(path.parent.relative_to(self._repository))
        self._page(name, Converter(folder, self._resolve).convert(path.read_text(encoding="utf-8")))

    def _resolve(self, path, target):
        """Where a link of a document leads: to another page, elsewhere, or only to a file of the repository."""
        if "://" in target:
            return "url", target
        path = path.partition("#")[0]
        if path.startswith("docs/") and path.endswith(".md") and path[5:-3] in self._guides:
            return "doc", f"/guide/{path[5:-3]}"
        if path.endswith("/README.md") and path[:-10] in self._readmes:
            return "doc", f"/inside/{path[:-10].replace('/', '-')}"
        if path.startswith("examples/") and path[9:] in self._examples:
            return "doc", f"/examples/{path[9:-3]}"
        file = self._repository / path
        if file.suffix in (".png", ".jpg", ".svg") and file.is_file():
            self._put(path, file.read_bytes())
            return "picture", f"/{path}"
        return "", path

    # ---------------------------------------------------------------------------------------------- examples

    def _write_examples(self):
        rows, names = [], []
        for name, path in self._examples.items():
            source = path.read_text(encoding="utf-8")
            doc = ast.get_docstring(ast.parse(source)) or ""
            stem = path.stem
            self._put(f"examples/{name}", source.encode())
            body = Converter("examples", self._resolve).convert(doc)
            self._page(f"examples/{stem}", [*heading(name), *self._pictures(stem), *body, "", "Run it with", "",
                                            ".. code-block:: sh", "", f"   ./zor run examples/{name}", "",
                                            f".. literalinclude:: {name}", "   :language: python", "   :linenos:", ""])
            first = Converter("examples", self._resolve).inline(" ".join(doc.partition("\n\n")[0].split()))
            pictures = sorted((self._repository / "docs/images").glob(f"{stem}*.png"))
            rows += [f"   * - .. image:: /docs/images/{pictures[0].name}" if pictures else "   * -",
                     *([f"          :target: {stem}.html", f"          :alt: {stem}", ""] if pictures else []),
                     f"     - :doc:`{name} <{stem}>`", "", f"       {first}"]
            names.append(stem)
        self._page("examples/index", [*heading("Examples"), "Run them with ``./zor run examples/NAME``.", "",
                                      ".. list-table::", "   :widths: 40 60", "   :class: summary", "", *rows, "",
                                      ".. toctree::", "   :hidden:", "", *[f"   {name}" for name in names], ""])

    def _pictures(self, stem):
        lines = []
        for path in sorted((self._repository / "docs/images").glob(f"{stem}*.png")):
            self._put(f"docs/images/{path.name}", path.read_bytes())
            lines += [f".. image:: /docs/images/{path.name}", f"   :alt: {stem}", ""]
        return lines

    # ------------------------------------------------------------------------------------------- start page

    def _start(self):
        guide = [name for name in _GUIDE if name in self._guides] + \
            [name for name in self._guides if name not in _GUIDE + _DEVELOPERS]
        inside = [name for name in _DEVELOPERS if name in self._guides]
        lines = [*heading("zorOSG"), "Python modules, and the C++ toolkit under them, that simulate bodies and show them.", "",
                 *self._pictures("first_scene")[:3],
                 "- :doc:`Examples </examples/index>`: scripts to run, with pictures and source",
                 "- :doc:`Python modules </api/index>`: every class and function, with types",
                 "- :doc:`C++ headers </cpp-headers>`: the toolkit below"]
        lines += ["", ".. toctree::", "   :maxdepth: 1", "   :caption: Guide", "", *[f"   guide/{name}" for name in guide], "   examples/index", ""]
        lines += [".. toctree::", "   :maxdepth: 1", "   :caption: Reference", "", "   api/index", "   cpp-headers", ""]
        lines += [".. toctree::", "   :maxdepth: 1", "   :caption: Inside", "", *[f"   guide/{name}" for name in inside],
                  *[f"   {name} <inside/{name.replace('/', '-')}>" for name in self._readmes], ""]
        return lines
