"""How arguments and results cross: numbers, text, objects, lists, and what is said when they can't."""

import math
import os
import weakref

import numpy
import pytest

import _osg
import _probe
import _zorOSG
import osg
import probe
import zor
import zorCollide
import zorIO
import zorOSG
from conventions import error_text, null, wrong

INF = math.inf


class WholeNumber(int):
    pass


class Index:
    """Counts as an integer everywhere else in Python, not here."""

    def __index__(self):
        return 3


class Real:
    def __float__(self):
        return 2.5


@pytest.fixture
def decorator():
    return zorOSG.SceneDecorator(320, 240)


class TestCalls:
    def test_flat_functions_and_shadow_methods_are_the_same_calls(self, decorator):
        _zorOSG.SceneDecorator_setEnableLogo(decorator, True)
        assert decorator.getEnableLogo() is True
        decorator.setEnableLogo(False)
        assert _zorOSG.SceneDecorator_getEnableLogo(decorator) is False

    def test_counts(self, decorator):
        set_logo = _zorOSG.SceneDecorator_setEnableLogo
        assert error_text(TypeError, set_logo, decorator, True, 3) == \
            "SceneDecorator_setEnableLogo expected 2 arguments, got 3"
        assert error_text(TypeError, set_logo, decorator) == "SceneDecorator_setEnableLogo expected 2 arguments, got 1"
        assert "exactly one argument (0 given)" in error_text(TypeError, _zorOSG.SceneDecorator_getEnableLogo)
        assert "no arguments (1 given)" in error_text(TypeError, _zorOSG.new_Transform, 1)
        assert "keyword" in error_text(TypeError, lambda: set_logo(decorator, flag=True))

    def test_the_first_wrong_argument_is_named(self, decorator):
        assert error_text(TypeError, _zorOSG.ExampleApplication_run, decorator) == \
            wrong("ExampleApplication_run", 1, "zorOSG::ExampleApplication *")
        assert error_text(TypeError, _probe.add, "x", "y") == wrong("add", 1, "int")
        assert error_text(TypeError, _probe.add, 1, "y") == wrong("add", 2, "double")

    def test_none_is_no_object_of_a_method(self):
        kind = "zorOSG::SceneDecorator *"
        assert error_text(TypeError, _zorOSG.SceneDecorator_setEnableLogo, None, 1) == \
            null("SceneDecorator_setEnableLogo", 1, kind)
        assert error_text(TypeError, _zorOSG.SceneDecorator_setLogoFile, None, "x") == \
            null("SceneDecorator_setLogoFile", 1, kind)
        assert error_text(TypeError, _probe.Holder_getCopy, None) == null("Holder_getCopy", 1, "probe::Holder const *")
        assert error_text(TypeError, _zorOSG.delete_GeometryNode, None) == \
            null("delete_GeometryNode", 1, "zorOSG::GeometryNode *")

    def test_toolkit_exceptions(self):
        assert error_text(RuntimeError, probe.throwError, "grüß\ndich") == "grüß\ndich"
        assert error_text(RuntimeError, probe.throwNumber) == "Unknown exception"
        assert "box" in error_text(RuntimeError, zorCollide.Box, zor.Vec3(-1, 1, 1)).lower()


class TestNumbers:
    def test_a_bool_must_be_a_bool(self, decorator):
        assert probe.passBool(True) is True and probe.passBool(False) is False
        for value in (1, 0, 1.0, None, "True", [], numpy.True_):
            assert error_text(TypeError, _zorOSG.SceneDecorator_setEnableLogo, decorator, value) == \
                wrong("SceneDecorator_setEnableLogo", 2, "bool")

    @pytest.mark.parametrize("function, kind, low, high", [
        ("passInt", "int", -2**31, 2**31 - 1), ("passMode", "probe::Mode", -2**31, 2**31 - 1),
        ("passDifference", "std::ptrdiff_t", -2**63, 2**63 - 1), ("passUnsigned", "unsigned int", 0, 2**32 - 1),
        ("passSize", "std::size_t", 0, 2**64 - 1), ("passUInt", "zor::UInt", 0, 2**64 - 1)])
    def test_integers(self, function, kind, low, high):
        call = getattr(probe, function)
        for value in (low, high, 0):
            assert call(value) == value
        for value in (True, WholeNumber(1)):
            assert call(value) == 1 and type(call(value)) is int
        for value in (low - 1, high + 1, 10**30, -10**30):
            with pytest.raises(OverflowError) as error:
                call(value)
            assert str(error.value) == wrong(function, 1, kind) and error.value.__context__ is None
        for value in (1.0, "1", None, Index(), Real(), numpy.int64(1)):
            assert error_text(TypeError, call, value) == wrong(function, 1, kind)

    def test_enumerations_are_integers_of_any_value(self):
        assert probe.ON == 5 and probe.passMode(probe.ON) == 5
        assert probe.passMode(77) == 77

    @pytest.mark.parametrize("function, kind", [("passDouble", "double"), ("passReal", "zor::Real"),
                                                ("passFloat", "float")])
    def test_real_numbers(self, function, kind):
        call = getattr(probe, function)
        for value in (0.5, 3, True, INF, -INF, numpy.float64(0.25)):
            assert call(value) == value and type(call(value)) is float
        assert math.isnan(call(math.nan))
        for value in (10**400, "1", None, 1j, Index(), Real()):
            assert error_text(TypeError, call, value) == wrong(function, 1, kind)

    def test_the_range_of_single_precision(self):
        largest = 3.4028234663852886e38
        for value in (largest, -largest):
            assert probe.passFloat(value) == value
        for value in (3.4028234663852889e38, -1e39, 2**200):
            assert error_text(OverflowError, probe.passFloat, value) == wrong("passFloat", 1, "float")
            assert probe.passDouble(value) == value


class TestText:
    def test_any_character_comes_back(self):
        text = "a\0Käse 😀"
        assert probe.passText(text) == probe.passTextReference(text) == text
        assert probe.passCharacters(text) == "a"
        assert zor.RigidBody("Käse 😀").getName() == "Käse 😀"

    @pytest.mark.parametrize("value", [b"x", 5, ["x"], "\ud800", "\udce9"])
    def test_what_is_not_text(self, value):
        for function, kind in (("passText", "std::string"), ("passTextReference", "std::string const &"),
                               ("passCharacters", "char const *")):
            with pytest.raises(TypeError) as error:
                getattr(probe, function)(value)
            assert str(error.value) == wrong(function, 1, kind)

    def test_none(self):
        assert probe.passCharacters(None) is None and probe.noCharacters() is None
        assert error_text(TypeError, probe.passText, None) == wrong("passText", 1, "std::string")
        assert error_text(TypeError, probe.passTextReference, None) == \
            null("passTextReference", 1, "std::string const &")

    def test_undecodable_text_comes_back_with_surrogates(self):
        assert probe.undecodable() == "caf\udce9 \udcff"

    def test_paths(self):
        capture = zorOSG.VideoFFMPEGPipeCapture(16, 16, 30.0)
        for name in ("vidéo 😀.mp4", os.fsdecode(b"caf\xe9.mp4")):
            capture.setFilename(name)
            assert capture.getFilename() == name
        capture.setFilename("a.mp4\0b")
        assert capture.getFilename() == "a.mp4"
        for value in (None, 5, b"x", "\ud800"):
            for call in (capture.setFilename, probe.passPath):
                assert error_text(RuntimeError, call, value) == "basic_string: construction from null is not valid"


class TestObjects:
    def test_pointers(self):
        assert probe.firstOf(probe.Both()) == 1 and probe.firstOf(None) == -1
        assert probe.secondOf(probe.Both()) == 2  # the second base lies at another address
        assert probe.asSecond(None) is None
        both = probe.Both()
        second = probe.asSecond(both)
        assert type(second) is probe.Second and second.second == 2 and second.this != both.this
        for value in (probe.First(), zor.Vec3(), 5, "x", probe.Second, object()):
            assert error_text(TypeError, probe.secondOf, value) == wrong("secondOf", 1, "probe::Second const *")

    def test_references_and_values(self):
        assert probe.secondOfReference(probe.Both()) == 2
        assert error_text(TypeError, probe.secondOfReference, None) == null("secondOfReference", 1, "probe::Second &")
        value = probe.Value(3)
        assert probe.increment(value).number == 4 and value.number == 3
        assert error_text(TypeError, probe.increment, None) == null("increment", 1, "probe::Value")
        assert error_text(TypeError, probe.increment, 3) == wrong("increment", 1, "probe::Value")

    def test_values_of_siblings_are_taken_wrapped_only(self):
        assert probe.length(zor.Vec3(3, 4, 0)) == 5
        for value in ((3, 4, 0), [3, 4, 0], zor.Vec3f(3, 4, 0), osg.Vec3d(3, 4, 0)):
            assert error_text(TypeError, probe.length, value) == wrong("length", 1, "zor::Vec3 const &")
        transform = zorOSG.Transform()
        kind = "zor::AffineMatrix4x4 const &"
        assert error_text(TypeError, _zorOSG.Transform_setMatrix, transform, None) == null("Transform_setMatrix", 2, kind)

    def test_an_object_of_another_module_is_taken_for_its_base(self):
        node = zorOSG.GeometryNode(zorCollide.Geometry(zorCollide.Sphere(1.0)))
        group = osg.Group()
        assert group.addChild(node) is True
        assert type(group.getChild(0)) is zorOSG.GeometryNode
        assert error_text(TypeError, _osg.Group_addChild, group, zor.RigidBody()) == \
            wrong("Group_addChild", 2, "osg::Node *")

    def test_proxies_without_an_object(self):
        class Forgot(probe.Value):
            def __init__(self):
                pass

        circular = Forgot()
        circular.this = circular
        for value in (Forgot(), circular):
            assert error_text(TypeError, probe.increment, value) == wrong("increment", 1, "probe::Value")
        value = probe.Value(1)
        assert probe.increment(weakref.proxy(value)).number == 2


class Numbers(list):
    pass


class TestLists:
    def test_sizes(self):
        for value in ([640, 480.9], Numbers([640.5, 480]), zor.Vec2i(640, 480), [Real(), numpy.float32(1)]):
            size = probe.passSizeList(value)
            assert type(size) is zor.Vec2i and size.thisown
            assert list(size) == ([2, 1] if isinstance(value[0], Real) else [640, 480])
        assert list(probe.passSizeList([-1.9, True])) == [-1, 1]
        assert list(probe.passSizeList([-2**31 - 0.5, 2**31 - 0.5])) == [-2**31, 2**31 - 1]
        for value in ([], [1], [1, 2, 3]):
            assert error_text(ValueError, probe.passSizeList, value) == "Vec2i expected a sequence of size 2"

    def test_numbers(self):
        for value in ([1, 2.5, True], zor.RealVector([1, 2.5, 1]), Numbers([4.5])):
            assert probe.sumOfList(value) == 4.5
        assert probe.sumOfList([]) == 0 and probe.sumOfList([INF]) == INF
        assert probe.sumOfList(list(range(1000))) == 499500

    @pytest.mark.parametrize("function, kind", [("passSizeList", "zor::Vec2i const &"),
                                                ("sumOfList", "zor::RealVector const &")])
    def test_what_is_refused(self, function, kind):
        call = getattr(probe, function)
        assert error_text(TypeError, call, None) == null(function, 1, kind)
        for value in ((1, 2), "ab", 5, zor.Vec2(1, 2), iter([1, 2]), [None, 1], [1, "2"], [1, 2j]):
            assert error_text(TypeError, call, value) == wrong(function, 1, kind)
        assert error_text(ValueError, call, [1, math.nan]) == wrong(function, 1, kind)
        assert error_text(OverflowError, call, [1, 10**400]) == wrong(function, 1, kind)

    def test_sizes_are_whole_numbers_of_their_range(self):
        for value in ([INF, 1], [1, 2**31], [-2**31 - 1, 1]):
            assert error_text(OverflowError, probe.passSizeList, value) == wrong("passSizeList", 1, "zor::Vec2i const &")

    def test_a_list_may_change_while_it_is_read(self):
        class Clearing:
            def __float__(self):
                values.clear()
                return 1.0

        values = [Clearing(), object()]
        assert error_text(TypeError, probe.passSizeList, values) == wrong("passSizeList", 1, "zor::Vec2i const &")
        values = [Clearing(), 2.0, 3.0]
        assert probe.sumOfList(values) == 6

    def test_an_error_of_an_item_is_what_the_caller_gets(self):
        class Failing:
            def __float__(self):
                raise KeyError("mine")

        assert error_text(KeyError, probe.sumOfList, [Failing()]) == "'mine'"


class TestIterables:
    def test_argument_parser_takes_a_list(self):
        arguments = zorIO.ArgumentParser(["program", "--size", "3"])
        arguments.addOption("--size", "how large")
        arguments.parse()
        assert arguments.getInt("--size") == 3
        assert list(arguments.getArguments()) == ["program", "--size", "3"]
        assert "--size" in arguments.getUsage()
        assert list(zorIO.ArgumentParser(iter(["a", "b"])).getArguments()) == ["a", "b"]
        with pytest.raises(TypeError):
            zorIO.ArgumentParser("not a list")

    def test_simulation_objects_take_any_iterable(self):
        corners = [(0, 0, 0), (1, 0, 0), (0, 1, 0), (0, 0, 1)]
        triangles = (0, 2, 1, 0, 1, 3, 0, 3, 2, 1, 2, 3)
        mesh = zorCollide.Trimesh(numpy.array(corners, dtype=float), iter(triangles))
        assert mesh.getNumTriangles() == 4 and mesh.getVertices()[3] == zor.Vec3(0, 0, 1)
        assert zorCollide.Convex(corners).getVolume() == pytest.approx(1 / 6)
        assert "zorCollide::Trimesh::Trimesh(zor::Vec3Vector const &,zor::UInt32Vector const &)" in \
            error_text(TypeError, zorCollide.Trimesh, 5, triangles)
        assert "row of 3 numbers" in error_text(ValueError, zorCollide.Trimesh, [(1, 2)], triangles)

    def test_the_visualisation_layer_takes_wrapped_vectors_only(self):
        color = zor.Vec4(1, 1, 1, 1)
        points = [(0, 0, 0), (1, 0, 0)]
        assert error_text(TypeError, zorOSG.createPolyline, points, color, 1.0) == \
            wrong("createPolyline", 1, "zor::Vec3Vector const &")
        assert isinstance(zorOSG.createPolyline(zor.Vec3Vector(points), color, 1.0), osg.Geode)
