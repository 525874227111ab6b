"""What importing the modules makes: functions, constants, the global variable, and one registry of types for all."""

import ctypes
import pathlib
import types

import pytest

import _zorOSG
import probe
import zor
import zorCollide
import zorOSG
from conventions import MODULES, error_text

DATA = pathlib.Path(__file__).with_name("data")
FLAGS = {0x1: "VARARGS", 0x4: "NOARGS", 0x8: "O"}


def table(name):
    """The rows of an interface table. It lists the whole interface; classes that are still to come are missing below."""
    return [line.split("\t") for line in (DATA / name).read_text().splitlines()]


class TestInterface:
    def test_functions_have_their_names_flags_and_order(self):
        flags_of = ctypes.pythonapi.PyCFunction_GetFlags
        flags_of.argtypes = [ctypes.py_object]
        present = [[name, FLAGS[flags_of(value)]] for name, value in vars(_zorOSG).items()
                   if isinstance(value, types.BuiltinFunctionType)]
        rows = table("functions.tsv")
        names = {name for name, _ in present}
        assert len(names) > 2000
        assert present == [row for row in rows if row[0] in names]

    def test_constants_have_their_values_and_order(self):
        present = [[name, "" if name == "cvar" else str(value)] for name, value in vars(_zorOSG).items()
                   if type(value) is int or name == "cvar"]
        names = {name for name, _ in present}
        assert names >= {"SWIG_MODULE_zorOSG", "cvar", "DIFFUSE_TEXTURE", "ExampleApplication_HUD_MASK"}
        assert present == [row for row in table("constants.tsv") if row[0] in names]

    def test_documentation_comes_from_the_headers(self):
        assert _zorOSG.__doc__ is None
        assert "box along the axes" in zorCollide.Box.__doc__
        assert "half the size along each axis" in zorCollide.Box.__init__.__doc__
        assert ":return:" in _zorOSG.findGeometryNode.__doc__
        documented = [name for name, value in vars(zorOSG.ExampleApplication).items()
                      if callable(value) and not name.startswith("_") and value.__doc__]
        assert len(documented) > 50

    def test_classes_are_registered_once_and_by_class(self):
        assert _zorOSG.SceneDescription_swigregister(zorOSG.SceneDescription) is None
        assert isinstance(zorOSG.SceneDescription(), zorOSG.SceneDescription)
        assert error_text(TypeError, _zorOSG.SceneDescription_swigregister, 5) == "swigregister expects a class"


class TestRunTimeTypes:
    def test_wrapped_objects(self):
        kind = type(zor.Vec3().this)
        assert (kind.__module__, kind.__name__) == ("swig_runtime_data4", "SwigPyObject")
        assert kind.__doc__ == "Swig object carries a C/C++ instance pointer"
        documentation = {name: method.__doc__ for name, method in vars(kind).items() if not name.startswith("_")}
        assert documentation == {
            "disown": "releases ownership of the pointer", "acquire": "acquires ownership of the pointer",
            "own": "returns/sets ownership of the pointer", "append": "appends another 'this' object",
            "next": "returns the next 'this' object"}

    def test_every_module_uses_its_own_of_the_same_name(self):
        # Each extension has a type object of its own; objects are recognised by its name.
        assert type(probe.Value().this).__name__ == type(zor.Vec3().this).__name__
        assert probe.length(zor.Vec3(3, 4, 0)) == 5

    def test_no_type_makes_objects_by_itself(self):
        for kind in (type(zor.Vec3().this), type(_zorOSG.cvar)):
            assert "cannot create" in error_text(TypeError, kind)


class TestGlobalVariable:
    NAME = "VideoFFMPEGPipeCapture_OutputCodecStrings"
    MESSAGE = ("in variable 'zorOSG::VideoFFMPEGPipeCapture::OutputCodecStrings' of type "
               "'zorOSG::VideoFFMPEGPipeCapture::CodecStringConversionMap'")

    def test_the_object(self):
        assert repr(_zorOSG.cvar) == "<Swig global variables>"
        assert str(_zorOSG.cvar) == f"({self.NAME})"
        kind = type(_zorOSG.cvar)
        assert (kind.__module__, kind.__name__, kind.__doc__) == (
            "swig_runtime_data4", "swigvarlink", "Swig var link object")
        for call in (lambda: _zorOSG.cvar.NoSuchName, lambda: setattr(_zorOSG.cvar, "NoSuchName", None)):
            assert error_text(AttributeError, call) == "Unknown C global variable 'NoSuchName'"

    def test_the_table_is_lent_by_every_way_to_it(self):
        table = getattr(_zorOSG.cvar, self.NAME)
        assert table.own() is False
        get = _zorOSG.VideoFFMPEGPipeCapture_OutputCodecStrings_get
        assert get() == get(1, "ignored") == table == zorOSG.cvar.VideoFFMPEGPipeCapture_OutputCodecStrings

    def test_assignment(self):
        def assign(value):
            setattr(_zorOSG.cvar, self.NAME, value)

        setter = _zorOSG.VideoFFMPEGPipeCapture_OutputCodecStrings_set
        assert setter(getattr(_zorOSG.cvar, self.NAME)) is None  # the table to itself
        assign(getattr(_zorOSG.cvar, self.NAME))
        for set_table in (setter, assign):
            assert error_text(TypeError, set_table, 5) == self.MESSAGE
            assert error_text(TypeError, set_table, None) == "invalid null reference " + self.MESSAGE


class TestImport:
    @pytest.mark.parametrize("name", MODULES)
    def test_each_module_imports_alone_without_a_warning(self, run_python, name):
        result = run_python(f"import {name}")
        assert result.stdout + result.stderr == ""

    @pytest.mark.parametrize("names", [MODULES, MODULES[::-1], ["_zorOSG", "zorSDK", "osg", "zorOSG"]],
                             ids=["in order", "in reverse", "extension first"])
    def test_modules_share_one_registry_in_any_order(self, run_python, names):
        run_python("import sys\n" + "".join(f"import {name}\n" for name in names) + """
capsule = sys.modules["swig_runtime_data4"].type_pointer_capsule
assert '"swig_runtime_data4.type_pointer_capsule"' in repr(capsule)
import osg, zor, zorOSG
transform = zorOSG.Transform()
transform.setTranslate(zor.Vec3(1, 2, 3))
group = osg.Group()
assert group.addChild(transform) and type(group.getChild(0)) is zorOSG.Transform
""")

    def test_importing_again_changes_nothing(self, run_python):
        run_python("""
import sys
import osg, zorOSG
old = zorOSG.Transform()
capsule = sys.modules["swig_runtime_data4"].type_pointer_capsule
for name in ("zorOSG", "_zorOSG"):
    del sys.modules[name]
import zorOSG
assert sys.modules["swig_runtime_data4"].type_pointer_capsule is capsule
group = osg.Group()
for child in (old, zorOSG.Transform()):
    assert group.addChild(child)
assert type(group.getChild(1)) is zorOSG.Transform
assert zorOSG.cvar.VideoFFMPEGPipeCapture_OutputCodecStrings
""")

    @pytest.mark.parametrize("kind", ["isolated", "legacy"])
    def test_a_second_interpreter_is_refused(self, run_python, kind):
        # Its classes would stay in the registry when it ends.
        result = run_python("""
import sys, _interpreters
def use():
    import osg, zorOSG
    group = osg.Group()
    group.addChild(zorOSG.Transform())
    assert type(group.getChild(0)) is zorOSG.Transform
for first in (True, False):
    other = _interpreters.create(sys.argv[1])
    error = _interpreters.run_string(other, "import zorOSG")
    print(error.type.__name__, error.msg)
    _interpreters.destroy(other)
    use()
""", kind)
        text = {"isolated": "module _osg does not support loading in subinterpreters",
                "legacy": "the simulation modules can be used in the main interpreter only"}[kind]
        assert result.stdout == f"ImportError {text}\n" * 2
