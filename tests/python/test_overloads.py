"""Which prototype of a name a call reaches, and what is said when none fits."""

import random

import _probe
import _zorOSG
import osg
import probe
import zor
import zorCollide
import zorOSG
from conventions import error_text, mismatch, wrong

PICK = mismatch(
    "pick", "probe::pick(std::string const &)", "probe::pick(double)", "probe::pick(float)",
    "probe::pick(std::int64_t)", "probe::pick(std::uint64_t)", "probe::pick(int)", "probe::pick(unsigned int)",
    "probe::pick(bool)", "probe::pick(probe::First const *)", "probe::pick(probe::Both const *)")

CHOICES = [
    (True, "bool"), (5, "unsigned"), (-5, "int"), (2**32 - 1, "unsigned"), (2**32, "uint64"), (-2**31, "int"),
    (-2**31 - 1, "int64"), (2**64 - 1, "uint64"), (2**64, "float"), (-2**64, "float"), (0.5, "float"),
    (float("inf"), "float"), (float("nan"), "float"), (1e39, "double"), (2**200, "double"), ("x", "string")]


class WholeNumber(int):
    pass


class Text(str):
    pass


class TestRanking:
    def test_the_narrowest_type_comes_first_whatever_the_order(self):
        for value, chosen in CHOICES:
            assert probe.pick(value) == chosen

    def test_a_choice_does_not_depend_on_those_before(self):
        hollow = probe.First.__new__(probe.First)
        other = probe.First.__new__(probe.First)
        other.this = probe.Second().this
        choices = CHOICES + [(probe.First(), "First"), (probe.Both(), "Both"), (hollow, None), (other, None), (None, "Both"),
                             ([], None), (WholeNumber(5), "unsigned"), (WholeNumber(-5), "int"), (Text("x"), "string"),
                             ("\ud800", None), ("ä", "string"), (2**2000, None)]
        generator = random.Random(1)
        for _ in range(2000):
            value, chosen = generator.choice(choices)
            if chosen:
                assert probe.pick(value) == chosen
            else:
                assert error_text(TypeError, probe.pick, value) == PICK

    def test_the_more_derived_class_comes_first(self):
        assert probe.pick(probe.Both()) == "Both" and probe.pick(probe.First()) == "First"
        assert probe.pick(None) == "Both"

    def test_the_first_parameter_that_differs_decides(self):
        # Classes are of equal rank: order of declaration. After an equal class, bool comes before int.
        assert probe.pickReference(zor.Vec3(), True) == "Vec3 bool"
        assert probe.pickReference(zor.Vec3(), 1) == "Vec3 int 2.000000"
        assert probe.pickReference(probe.First(), 1) == "First double"
        assert probe.pickScene("a", True, True) == probe.pickScene("a", True, 1.0) == "bool float"
        assert probe.pickScene("a", 1, True) == "int bool"

    def test_scenes(self):
        application = zorOSG.ExampleApplication()
        assert application.addScene("f.py", "build", True)
        assert application.addScene("f.py", "build", 7)
        assert application.getCallback(7).isValid()
        assert not application.getCallback(1).isValid()
        assert application.getNumScenes() == 2
        assert application.addScene("f.py", "build", False, 2.5)
        assert application.getCallbackIdx(2).stopAfter == 2.5
        assert application.getCallbackIdx(2).unittest is False
        assert application.addScene("f.py", "build", 8, True)
        assert application.getCallback(8).isValid()
        assert len(error_text(TypeError, application.addScene, lambda s, a: None).splitlines()) == 2 + 18

    def test_scene_descriptions(self):
        nothing = zorOSG.SceneDescription()
        assert (nothing.isValid(), nothing.stopAfter, nothing.scene) == (False, -1.0, None)
        scene = zorOSG.SceneDescription("f.py", "build", False, 3.0, True)
        assert (scene.fileName, scene.scriptFunction, scene.unittest, scene.slowUnittest) == \
            ("f.py", "build", False, True)
        assert scene.isValid() and scene.thisown
        assert error_text(TypeError, zorOSG.SceneDescription, 5).count("SceneDescription::SceneDescription(") == 13

    def test_grids(self):
        x, y = zor.Vec3(1, 0, 0), zor.Vec3(0, 1, 0)
        root = osg.Group()
        assert isinstance(zorOSG.createGrid(2, 2, zor.Vec3(), x, y, root), osg.Geode)
        assert root.getNumChildren() == 1
        o = osg.Vec3(0, 1, 0)
        assert isinstance(zorOSG.createGrid(2, 2, osg.Vec3(), osg.Vec3(1, 0, 0), o, True), osg.Geometry)
        expected = mismatch(
            "createGrid",
            "zorOSG::createGrid(unsigned int,unsigned int,osg::Vec3 const &,osg::Vec3 const &,osg::Vec3 const &,bool)",
            "zorOSG::createGrid(unsigned int,unsigned int,osg::Vec3 const &,osg::Vec3 const &,osg::Vec3 const &)",
            "zorOSG::createGrid(unsigned int,unsigned int,zor::Vec3 const &,zor::Vec3 const &,zor::Vec3 const &,"
            "osg::Group *)")
        assert error_text(TypeError, zorOSG.createGrid, 10, 10, x, x, x, True) == expected
        assert error_text(TypeError, zorOSG.createGrid, -1, 10, o, o, o) == expected


class TestTests:
    """What passes for an argument before anything is converted."""

    def test_references_are_not_none_and_pointers_may_be(self):
        expected = mismatch("pickReference", "probe::pickReference(zor::Vec3 const &,bool)",
                            "probe::pickReference(probe::First const &,double)",
                            "probe::pickReference(zor::Vec3 const &,int,double)",
                            "probe::pickReference(zor::Vec3 const &,int)")
        assert error_text(TypeError, probe.pickReference, None, True) == expected
        assert "null" in error_text(RuntimeError, zorOSG.setDiffuseColor, None, zor.Vec4f(1, 1, 1, 1))  # from the toolkit
        texture = zorCollide.Box(zor.Vec3(1, 1, 1))
        assert "zorOSG::setTexture(osg::Node *,zorCollide::TextureDataRef const,bool," in \
            error_text(TypeError, zorOSG.setTexture, texture, texture)

    def test_ranges_are_part_of_the_test(self):
        expected = mismatch("pickMode", "probe::pickMode(probe::Mode)", "probe::pickMode(probe::Second const &)")
        assert probe.pickMode(77) == "Mode 77" and probe.pickMode(probe.Both()) == "Second"
        for value in (2**31, 1.0, "x", probe.First()):
            assert error_text(TypeError, probe.pickMode, value) == expected
        assert probe.pickMode(-2**31) == "Mode -2147483648"

    def test_any_list_passes_where_a_list_is_taken(self):
        assert probe.pickList([3, 4]) == probe.pickList(zor.Vec2i(3, 4)) == "Vec2i 3"
        assert probe.pickList([1, 2, 3], True) == "RealVector 3" and probe.pickList(0.5) == "double"
        # The chosen prototype converts for itself, and no other is tried when that fails.
        assert error_text(ValueError, probe.pickList, [1]) == "Vec2i expected a sequence of size 2"
        assert error_text(TypeError, probe.pickList, [None], True) == wrong("pickList", 1, "zor::RealVector const &")
        expected = mismatch("pickList", "probe::pickList(double)", "probe::pickList(zor::Vec2i const &)",
                            "probe::pickList(zor::RealVector const &,bool)")
        for arguments in ([None], [(1, 2)], [zor.Vec2i(), True]):
            assert error_text(TypeError, probe.pickList, *arguments) == expected

    def test_text_is_a_str_where_other_forms_exist(self):
        decorator = zorOSG.SceneDecorator(8, 8)
        for value in (None, 5, b"x"):
            assert error_text(TypeError, decorator.setText, 0, value) == mismatch(
                "SceneDecorator_setText", "zorOSG::SceneDecorator::setText(int,zor::String const &)",
                "zorOSG::SceneDecorator::setText(int,zor::String const &,zor::Vec4f const &)")

    def test_a_scene_function_is_no_python_function(self):
        assert error_text(TypeError, _zorOSG.new_SceneDescription, lambda s, a: None).startswith(
            "Wrong number or type of arguments for overloaded function 'new_SceneDescription'.")


class TestMessages:
    def test_types(self):
        for value in ([], b"x", probe.Second(), 1j, "\ud800"):
            assert error_text(TypeError, probe.pick, value) == PICK

    def test_counts(self):
        assert error_text(TypeError, probe.pick) == PICK
        assert error_text(TypeError, probe.pick, 1, 2) == \
            "pick expected at most 1 arguments, got 2\nAdditional information:\n" + PICK
        assert error_text(TypeError, _zorOSG.SceneDecorator_setLogoFile, zorOSG.SceneDecorator(8, 8), "x", 0.5, 1) == \
            "SceneDecorator_setLogoFile expected at most 3 arguments, got 4\nAdditional information:\n" + mismatch(
                "SceneDecorator_setLogoFile",
                "zorOSG::SceneDecorator::setLogoFile(std::string const &,float)",
                "zorOSG::SceneDecorator::setLogoFile(std::string const &)")

    def test_a_count_that_only_other_forms_have(self):
        assert error_text(TypeError, _probe.pickScene, "a", True).startswith("Wrong number or type of arguments")
