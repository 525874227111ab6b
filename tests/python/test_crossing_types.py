"""Every type of another library that the module takes or gives: Python can make one, of that very type."""

import importlib
import pathlib

import pytest

import _zorOSG
import osg
import zorIO
import zorOSG
from conventions import MODULES
from fuzz.registry import Registry

ROWS = [line.split("\t") for line in pathlib.Path(__file__).with_name("data").joinpath("crossing_types.tsv").read_text().splitlines()
        if not line.startswith("#")]
NAMES = {name: importlib.import_module(name) for name in MODULES} | {"_zorOSG": _zorOSG}
MADE = [pytest.param(*row, id=row[0]) for row in ROWS if row[1] not in ("later", "given")]


@pytest.fixture(scope="module")
def app():
    application = zorOSG.ExampleApplication()
    assert application.init(zorIO.ArgumentParser(["test", "--window", "32x32"]))
    application.initSimulation()
    application.initScene()
    return application


@pytest.fixture(scope="module")
def registry():
    return Registry()


@pytest.mark.parametrize("kind, made, use", MADE)
def test_python_makes_one_and_the_module_takes_it(kind, made, use, app, registry):
    names = {**NAMES, "app": app, "root": osg.Group()}
    it = names["it"] = eval(made, names)
    wanted, key = registry.key(kind), registry.key_of(it)
    assert wanted and key and (key == wanted or key in registry.sources(wanted)), f"{made} makes {key}"
    if use:
        eval(use, names)


def test_what_comes_later_has_not_come_yet():
    """What has come belongs among the types that can be made."""
    assert all(len(row) == 3 for row in ROWS)
    later = [kind for kind, made, use in ROWS if made == "later" and use]
    assert len(later) == sum(made == "later" for _, made, _ in ROWS)
    for kind in later:
        module, _, name = kind.partition("::")
        thing = getattr(NAMES.get(module), name, None)
        assert thing is None or not can_be_made(thing), f"{kind}: say how it is made"


def can_be_made(kind):
    try:
        kind()
    except AttributeError:  # "No constructor defined"
        return False
    except (TypeError, RuntimeError):
        pass
    return True
