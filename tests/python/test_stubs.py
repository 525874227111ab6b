"""The type stubs beside the modules: they name all that is there, and say of types what happens at run time."""

import annotationlib
import ast
import importlib
import inspect
import os
import pathlib
import re
import subprocess
import sys
import textwrap

import pytest
import zor

MODULES = ["zor", "zorStream", "zorIO", "zorRender", "zorCollide", "zorSDK", "zorPython", "zorOSG", "zorUtil", "zorModel",
           "zorWire", "zorCable", "zorTerrain", "zorSensor", "zorNet", "osg", "osgDB", "osgText", "osgGA", "osgSim", "osgViewer"]
STUBS = pathlib.Path(zor.__file__).parent
EXAMPLES = pathlib.Path(__file__).parents[2] / "examples"
LARGEST_SHARE_OF_ANY = 0.005
# Methods that tell something and change nothing, by their names.
ASKS = re.compile(r"get|is|has|length|[a-z]$|children$|str$|capacity$|size$|__len__|__repr__|__neg__")

# Statements that are right and wrong, for the checker and for the modules alike.
RIGHT = """
    x, y, z = zor.Vec3(1, 2, 3)
    length: float = zor.Vec3(1, 2, 3).normal().length()
    moved: zor.Vec3 = zor.Quat() * zor.Vec3(1, 2, 3) + 2 * zor.Vec3() * 2.0
    part: float = zor.Vec3(1, 2, 3)[0]
    whole: int = zor.Vec3i(1, 2, 3)[0]
    row: zor.Vec3 = zor.Vec3Vector([(1, 2, 3), zor.Vec3()])[:1][0]
    [element.cross(element).length() for element in zor.Vec3Vector([(1, 2, 3)])]
    memoryview(zor.RealVector(range(3))).tobytes()
    zor.Matrix3x3().getRow(0), zor.AffineMatrix4x4()[3, 3]
    zor.RigidBody("box").setPosition((0, 0, 1))
    pair: tuple[float, ...] = zor.Vec3(1, 2, 3)[:2]; zor.Vec2(pair) + (1, 2) - zor.Vec2([1.0, 2.0])
    zor.AffineMatrix4x4([[1, 0, 0, 0], [0, 1, 0, 0], (0, 0, 1, 0), zor.AffineMatrix4x4()[3]]).equals(zor.AffineMatrix4x4())
    names = zor.StringVector(["a", "b"]); names += ("c",); last: str = names.pop().upper()
    zor.Vec3Vector([(1, 2, 3)]).insert(0, (1, 2, 3))
    zor.Vec3Vector([(1, 2, 3)])[:1] = [(1, 2, 3), zor.Vec3()]
    osg.ImageVector([osg.Image()]).pop().getTotalSizeInBytes()
    zorUtil.CatmullRomSpline([(0, 0, 0), zor.Vec3(1, 1, 1)], 0.5).evaluate(0.5).length()
    zorCollide.Geometry().getShapeChangeEvent().add(lambda geometry: print(geometry.getName()))
    zor.Callback(lambda: None)
    zor.BoolEvent().add(lambda value: print(value))
    zorRender.RenderData().setVertices([(0, 0, 0), zor.Vec3()])
    zorRender.RenderData().setIndices(iter([0, 1, 2]))
    hinge = zor.Hinge(zor.Vec3(), zor.Vec3(0, 0, 1), zor.RigidBody("a"), None)
    [name.upper() for name in zorIO.ArgumentParser(["test", "--a"]).getArguments()]
    zor.RigidBody("b").setMotionControl(zor.RigidBody.STATIC)
    zorOSG.setDiffuseColor(osg.Group(), zor.Vec4f(1, 0, 0, 1))
    zorSDK.Simulation().add(zor.RigidBody())
    [child.getName() for child in osg.Group().children()]
    osg.Image().allocate(2, 2, components=3)
    zorOSG.GuiEventListener().keyboard(1, 2, 3, 4, True)
    error = zorPython.getErrors()[:1]
"""
WRONG = """
    zor.Vec3("1", 2, 3)
    zor.Vec3(1, 2)
    zor.Vec3(1, 2, 3).w()
    zor.Vec3i(1.5, 2, 3)
    zor.StringVector([1])
    zor.StringVector(["a"]).append(1)
    zor.Vec3(1, 2, 3) + "abc"
    zor.Vec3() + 1
    zor.RigidBody("box").setPosition("001")
    zor.RigidBody.STATIK
    zor.Listener()
    zor.RealVector(["a"])
    zor.Vec3Vector([1, 2, 3])
    zorCollide.Geometry(zor.RigidBody())
    zorCollide.Sphere(None)
    zorSDK.Simulation().add("box")
    zorIO.ArgumentParser(["test"]).getValue(1)
    zorOSG.setDiffuseColor(osg.Group(), zor.Vec3(1, 0, 0))
    zorOSG.createVisual(osg.Group(), osg.Group())
    zorOSG.ExampleApplication().stopAfter("soon")
    osg.Group().addChild(zor.RigidBody())
    osg.Image().allocate("2", 2)
"""


def statements(text):
    return textwrap.dedent(text).strip().splitlines()


def stub(module):
    return ast.parse((STUBS / f"{module}.pyi").read_text())


def classes(name):
    """(class of a module, its members in the stub)"""
    module = importlib.import_module(name)
    return [(getattr(module, node.name), node.body) for node in stub(name).body
            if isinstance(node, ast.ClassDef) and not node.name.startswith("_")]


def declared(nodes):
    """Public names that the body of a stub's module or class declares."""
    names = set()
    for node in nodes:
        if isinstance(node, (ast.FunctionDef, ast.ClassDef)):
            names.add(node.name)
        elif isinstance(node, ast.AnnAssign):
            names.add(node.target.id)
        elif isinstance(node, ast.Assign):
            names.add(node.targets[0].id)
        elif isinstance(node, ast.ImportFrom):
            names |= {alias.asname for alias in node.names if alias.asname}
    return {name for name in names if not name.startswith("_")}


def public(things):
    return {name for name, thing in things.items() if not name.startswith("_") and not inspect.ismodule(thing)}


@pytest.mark.parametrize("name", MODULES)
def test_stubs_name_all_that_is_there_and_nothing_else(name):
    assert declared(stub(name).body) == public(vars(importlib.import_module(name)))
    for kind, members in classes(name):
        # Every proxy class defines anew whether it owns its object; stubs say it once.
        there = annotationlib.get_annotations(kind, format=annotationlib.Format.STRING) | vars(kind)
        assert declared(members) - {"thisown"} == public(there) - {"thisown"}, kind.__name__


@pytest.mark.parametrize("name", MODULES)
def test_parameters_are_called_as_at_run_time(name):
    compared = 0
    for scope, body in [(importlib.import_module(name), stub(name).body), *classes(name)]:
        for node in body:
            there = getattr(scope, node.name, None) if isinstance(node, ast.FunctionDef) else None
            if inspect.isfunction(there) and not there.__code__.co_flags & inspect.CO_VARARGS and not node.args.posonlyargs:
                names = [argument.arg for argument in [*node.args.args, *node.args.kwonlyargs]]
                assert names == list(inspect.signature(there, annotation_format=annotationlib.Format.STRING).parameters), f"{scope.__name__}.{node.name}"
                compared += 1
    assert compared or name == "zorStream"


def is_of(value, annotation, names):
    """Whether a value has the type that a stub tells; for objects of C++ None, a null pointer, has it too."""
    if isinstance(annotation, ast.BinOp):
        return is_of(value, annotation.left, names) or is_of(value, annotation.right, names)
    text = ast.unparse(annotation)
    if isinstance(annotation, ast.Subscript):
        inner = annotation.slice.elts[0] if isinstance(annotation.slice, ast.Tuple) else annotation.slice
        if text.startswith("Final["):
            return is_of(value, inner, names)
        return isinstance(value, eval(annotation.value.id)) and all(is_of(part, inner, names) for part in value)
    if text == "zor._Opaque":
        return type(value).__name__ == "SwigPyObject"
    known = eval(text, names)
    if known in (bool, int, float, str, None):
        return type(value) is (known or type(None))
    return value is None or isinstance(value, known)


@pytest.mark.parametrize("name, fewest", [
    ("zor", 200), ("zorRender", 20), ("zorCollide", 40), ("zorSDK", 25), ("zorOSG", 200), ("osg", 80)])
def test_results_have_their_types(name, fewest):
    """Calls all that only tells something of objects that can be made from nothing."""
    names = {other: importlib.import_module(other) for other in [*MODULES, "builtins"]} | vars(importlib.import_module(name))
    compared = 0
    for kind, members in classes(name):
        try:
            thing = kind()
        except (AttributeError, TypeError, RuntimeError):
            continue
        for node in members:
            alone = isinstance(node, ast.FunctionDef) and len(node.args.posonlyargs + node.args.args) == 1
            if not alone or not ASKS.match(node.name):
                continue
            try:
                value = getattr(thing, node.name)()
            except RuntimeError:
                continue  # it isn't in a state to tell
            assert is_of(value, node.returns, names), f"{kind.__name__}.{node.name}: {value!r}"
            compared += 1
    assert compared >= fewest


def test_constants_have_their_types():
    compared = 0
    for name in MODULES:
        for kind, members in classes(name):
            for node in members:
                if isinstance(node, ast.AnnAssign) and ast.unparse(node.annotation).startswith("Final"):
                    assert is_of(getattr(kind, node.target.id), node.annotation, {}), f"{kind.__name__}.{node.target.id}"
                    compared += 1
    assert compared > 150


def test_hardly_any_type_is_unknown():
    """What points into a vector doesn't know of what, and a pair of unlike things is told apart by index only."""
    total, unknown = 0, set()
    for name in MODULES:
        for scope in ast.walk(stub(name)):
            for node in scope.body if isinstance(scope, (ast.ClassDef, ast.Module)) else []:
                if isinstance(node, ast.FunctionDef):
                    arguments = [*node.args.posonlyargs, *node.args.args, *node.args.kwonlyargs]
                    types = [node.returns, *(argument.annotation for argument in arguments if argument.arg not in ("self", "cls"))]
                    assert None not in types, f"{name}.{node.name}"
                elif isinstance(node, ast.AnnAssign):
                    types = [node.annotation]
                else:
                    continue
                total += len(types)
                unknown |= {(getattr(scope, "name", name), node.name) for known in types if "Any" in ast.unparse(known)}
    unknown -= {("Image", "asArray"), ("RenderToImage", "asArray")}  # of pixels that may be of any number type
    assert {scope for scope, _ in unknown} == {"SwigPyIterator", "GroupAndIndices"}
    assert 0 < len(unknown) < LARGEST_SHARE_OF_ANY * total


@pytest.fixture(scope="module")
def findings(tmp_path_factory):
    """mypy's complaints of the stubs, the examples and the statements above: {file: {line: messages}}."""
    folder = tmp_path_factory.mktemp("mypy")
    script = folder / "statements.py"
    imports = "".join(f"import {name}\n" for name in MODULES)
    script.write_text(imports + "\n".join(statements(RIGHT) + statements(WRONG)) + "\n")
    files = [*sorted(STUBS.glob("*.pyi")), *sorted(EXAMPLES.glob("*.py")), script]
    environment = {**os.environ, "MYPYPATH": str(STUBS)}
    environment.pop("LD_PRELOAD", None)  # sanitizers have nothing to find in it
    result = subprocess.run(
        [sys.executable, "-m", "mypy", "--strict", "--no-error-summary", "--cache-dir", folder / "cache", *files],
        capture_output=True, text=True, cwd=folder, env=environment, timeout=300)
    assert result.returncode in (0, 1), result.stdout + result.stderr
    found = {}
    for path, line, message in re.findall(r"^(.*?):(\d+): error: (.*)", result.stdout, re.M):
        first = len(MODULES) if path.endswith(script.name) else 0
        found.setdefault(pathlib.Path(path).name, {}).setdefault(int(line) - first, []).append(message)
    return found


def test_stubs_and_examples_are_accepted_strictly(findings):
    assert len(list(EXAMPLES.glob("*.py"))) >= 3
    assert {file: messages for file, messages in findings.items() if file != "statements.py"} == {}


def test_checker_refuses_what_the_modules_refuse(findings):
    right, wrong = statements(RIGHT), statements(WRONG)
    refused = findings["statements.py"]
    assert {line: (right + wrong)[line - 1] for line in refused} == \
        {line: wrong[line - len(right) - 1] for line in range(len(right) + 1, len(right) + len(wrong) + 1)}, refused


@pytest.mark.parametrize("statement", statements(RIGHT))
def test_modules_accept(statement):
    exec(statement, {name: importlib.import_module(name) for name in MODULES})


@pytest.mark.parametrize("statement", statements(WRONG))
def test_modules_refuse(statement):
    # RuntimeError: text that is none, and null pointers.
    with pytest.raises((TypeError, AttributeError, RuntimeError)):
        exec(statement, {name: importlib.import_module(name) for name in MODULES})
