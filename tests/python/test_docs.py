"""Everything public is explained: in the stubs that editors read, in the modules themselves, and in the reference."""

import ast
import html.parser
import importlib
import pathlib
import re
import subprocess
import sys
import urllib.parse

import pytest
import zor

STUBS = pathlib.Path(zor.__file__).parent
MODULES = sorted(path.stem for path in STUBS.glob("*.pyi"))
REPOSITORY = pathlib.Path(__file__).parents[2]
# What generators write by themselves.
NOISE = re.compile(r"Proxy of C\+\+|SwigPyObject|\*args|std::|:type |\*Overload \d|swig_")
# Names that say it all; in the modules of OpenSceneGraph also those of plain accessors and of its constants.
PLAIN = re.compile(r"GuiEventListener\.KEY_\w+|SWIG_MODULE_\w+|cvar")
SCENE_GRAPH_PLAIN = re.compile(r"(\w+\.)?((get|set|is|has|as|add|remove|key|mouse|touch)[A-Z]\w*|[A-Z][A-Z0-9_]+\w*|KEY_\w+)")


def described(body):
    """{name: docstrings} of what a stub's module or class declares."""
    found = {}
    for node, following in zip(body, [*body[1:], None]):
        if isinstance(node, ast.FunctionDef) and not node.name.startswith("_") and node.name != "thisown":
            if any(ast.unparse(decorator).endswith(".setter") for decorator in node.decorator_list):
                continue
            found.setdefault(node.name, []).append(ast.get_docstring(node) or "")
        elif isinstance(node, ast.AnnAssign) and not node.target.id.startswith("_"):
            below = isinstance(following, ast.Expr) and isinstance(following.value, ast.Constant)
            found[node.target.id] = [following.value.value if below else ""]
    return found


def unexplained_constructors(node):
    """Ways to make an object of which no text tells; an empty one and a copy need none."""
    found = [function for function in node.body if isinstance(function, ast.FunctionDef) and function.name == "__init__"]
    if any(map(ast.get_docstring, found)):
        return []  # SWIG tells of an overloaded name in one text where the library's comments do
    parameters = [[*function.args.posonlyargs, *function.args.args][1:] for function in found]
    return [f"__init__({', '.join(one.arg for one in names)})" for names in parameters
            if names and names[0].arg not in ("no_constructor", "other")]


def classes(module):
    tree = ast.parse((STUBS / f"{module}.pyi").read_text())
    return tree, [node for node in tree.body if isinstance(node, ast.ClassDef) and not node.name.startswith("_")]


@pytest.mark.parametrize("module", MODULES)
def test_everything_is_explained(module):
    tree, kinds = classes(module)
    missing = [name for name, docs in described(tree.body).items() if not any(docs)]
    for kind in kinds:
        missing += [] if ast.get_docstring(kind) else [kind.name]
        missing += [f"{kind.name}.{name}" for name, docs in described(kind.body).items() if not any(docs)]
        missing += [f"{kind.name}.{name}" for name in unexplained_constructors(kind)]
    plain = [PLAIN, SCENE_GRAPH_PLAIN] if module.startswith("osg") else [PLAIN]
    assert [name for name in missing if not any(pattern.fullmatch(name) for pattern in plain)] == []


@pytest.mark.parametrize("module", MODULES)
def test_docstrings_are_written_for_python(module):
    tree, kinds = classes(module)
    texts = [ast.get_docstring(node) or "" for node in ast.walk(tree) if isinstance(node, (ast.FunctionDef, ast.ClassDef))]
    assert [text for text in texts if NOISE.search(text)] == []


@pytest.mark.parametrize("module", MODULES)
def test_modules_explain_what_stubs_explain(module):
    """`help()` has a text wherever an editor has one."""
    tree, kinds = classes(module)
    real = importlib.import_module(module)
    silent = []
    for scope, body in [(real, tree.body), *((getattr(real, kind.name), kind.body) for kind in kinds)]:
        for name, docs in described(body).items():
            thing = getattr(scope, name, None)  # annotated attributes have no place in the class
            if any(docs) and callable(thing) and not (thing.__doc__ or "").strip():
                silent.append(f"{scope.__name__}.{name}")
    assert silent == []


class Links(html.parser.HTMLParser):
    """Addresses that a page leads to, and the places in it."""

    def __init__(self, page):
        super().__init__()
        self.targets, self.places = set(), set()
        self.feed(page.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attributes):
        values = dict(attributes)
        self.targets |= {values[name] for name in ("href", "src") if values.get(name)}
        self.places |= {values[name] for name in ("id", "name") if values.get(name)}


@pytest.fixture(scope="module")
def reference(tmp_path_factory):
    """The reference, made anew; a warning of its makers is an error."""
    output = tmp_path_factory.mktemp("reference")
    program = REPOSITORY / "toolchain" / "make_reference.py"
    result = subprocess.run([sys.executable, program, REPOSITORY, STUBS, output], capture_output=True, text=True, timeout=300)
    assert result.returncode == 0, result.stdout + result.stderr
    return output / "html"


def test_links_of_the_reference_lead_somewhere(reference):
    pages = {path.resolve(): Links(path) for path in reference.rglob("*.html") if "cpp" not in path.relative_to(reference).parts}
    broken = []
    for path, links in pages.items():
        for target in links.targets:
            address = urllib.parse.urlsplit(target)
            if address.scheme or target.startswith("//"):
                continue
            there = (path.parent / urllib.parse.unquote(address.path)).resolve() if address.path else path
            fragment = urllib.parse.unquote(address.fragment)
            if not there.exists() or there in pages and fragment and fragment not in pages[there].places:
                broken.append((path.name, target))
    assert len(pages) > 150 and broken == []


def test_reference_has_a_place_for_everything(reference):
    places = {place for path in (reference / "api").rglob("*.html") for place in Links(path).places}
    missing = []
    for module in MODULES:
        tree, kinds = classes(module)
        missing += [f"{module}.{name}" for name in described(tree.body) if f"{module}.{name}" not in places]
        missing += [f"{module}.{kind.name}" for kind in kinds if f"{module}.{kind.name}" not in places]
        for kind in kinds:
            if f"{module}.{kind.name}.{next(iter(described(kind.body)), '')}" in places:
                missing += [name for name in described(kind.body) if f"{module}.{kind.name}.{name}" not in places]
    assert missing == []
    hinge = (reference / "api/zor/Hinge.html").read_text()
    assert 'href="RigidBody.html#zor.RigidBody"' in hinge and 'href="Constraint1DOF.html#zor.Constraint1DOF"' in hinge
    visual = (reference / "api/zorOSG/index.html").read_text()
    assert 'href="../osg/Group.html#osg.Group"' in visual and "Proxy of C++" not in visual and "*args" not in visual
