"""How calls, values and objects cross between Python and the toolkit: the rules that every module follows."""

import gc
import os

import numpy
import pytest

import _osg
import _zor
import _zorOSG
import osg
import zor
import zorCollide
import zorIO
import zorOSG
import zorSDK

MODULES = ["osg", "osgDB", "osgGA", "osgText", "osgViewer", "zor", "zorCollide", "zorIO", "zorOSG", "zorPython",
           "zorRender", "zorSDK", "zorStream"]


def mismatch(function, *prototypes):
    lines = "".join(f"    {prototype}\n" for prototype in prototypes)
    return (f"Wrong number or type of arguments for overloaded function '{function}'.\n"
            f"  Possible C/C++ prototypes are:\n{lines}")


def error_text(kind, function, *arguments):
    with pytest.raises(kind) as error:
        function(*arguments)
    return str(error.value)


@pytest.fixture
def decorator():
    return zorOSG.SceneDecorator(320, 240)


class TestModules:
    @pytest.mark.parametrize("name", MODULES)
    def test_each_imports_alone_without_a_warning(self, run_python, name):
        result = run_python(f"import {name}")
        assert result.stdout + result.stderr == ""

    def test_all_import_in_any_order_into_one_registry(self, run_python):
        for names in (MODULES, MODULES[::-1]):
            run_python("import sys\n" + "".join(f"import {name}\n" for name in names) +
                       "capsule = sys.modules['swig_runtime_data4'].type_pointer_capsule\n"
                       "assert 'swig_runtime_data4.type_pointer_capsule' in repr(capsule)\n"
                       "import importlib\n"
                       "assert importlib.import_module('_zorOSG') is sys.modules['_zorOSG']\n")

    def test_run_time_types_have_their_module(self):
        wrapped = zor.Vec3().this
        assert type(wrapped).__module__ == "swig_runtime_data4"
        assert type(wrapped).__name__ == "SwigPyObject"
        assert type(_zorOSG.cvar).__name__ == "swigvarlink"
        assert repr(wrapped).startswith("<Swig Object of type 'zor::Vec3T< double > *' at 0x")

    def test_constants_and_variables(self):
        assert _zorOSG.SWIG_MODULE_zorOSG == 1
        assert repr(_zorOSG.cvar) == "<Swig global variables>"
        assert error_text(AttributeError, getattr, _zorOSG.cvar, "NoSuchName") == \
            "Unknown C global variable 'NoSuchName'"
        table = _zorOSG.cvar.VideoFFMPEGPipeCapture_OutputCodecStrings
        assert table is not None
        _zorOSG.cvar.VideoFFMPEGPipeCapture_OutputCodecStrings = table
        assert _zorOSG.VideoFFMPEGPipeCapture_OutputCodecStrings_get() == table

    def test_documentation_comes_from_the_headers(self):
        assert "box along the axes" in zorCollide.Box.__doc__
        assert "half the size along each axis" in zorCollide.Box.__init__.__doc__
        assert ":return:" in _zorOSG.findGeometryNode.__doc__
        documented = [name for name, value in vars(zorOSG.ExampleApplication).items()
                      if callable(value) and not name.startswith("_") and value.__doc__]
        assert len(documented) > 50

    def test_no_wrapper_takes_keywords(self):
        with pytest.raises(TypeError):
            _zorOSG.SceneDecorator_setEnableLogo(None, flag=True)


class TestArguments:
    def test_flat_functions_and_shadow_methods_are_the_same_calls(self, decorator):
        _zorOSG.SceneDecorator_setEnableLogo(decorator, True)
        assert decorator.getEnableLogo() is True
        decorator.setEnableLogo(False)
        assert _zorOSG.SceneDecorator_getEnableLogo(decorator) is False

    def test_a_bool_must_be_a_bool(self, decorator):
        for wrong in (1, 0, None, "True"):
            assert error_text(TypeError, _zorOSG.SceneDecorator_setEnableLogo, decorator, wrong) == \
                "in method 'SceneDecorator_setEnableLogo', argument 2 of type 'bool'"

    def test_counts(self, decorator):
        assert error_text(TypeError, _zorOSG.SceneDecorator_setEnableLogo, decorator, True, 3) == \
            "SceneDecorator_setEnableLogo expected 2 arguments, got 3"
        assert error_text(TypeError, _zorOSG.SceneDecorator_setLogoFile, decorator, "x", 0.5, 1) == \
            "SceneDecorator_setLogoFile expected at most 3 arguments, got 4\nAdditional information:\n" + mismatch(
                "SceneDecorator_setLogoFile",
                "zorOSG::SceneDecorator::setLogoFile(std::string const &,float)",
                "zorOSG::SceneDecorator::setLogoFile(std::string const &)")

    def test_the_first_wrong_argument_is_named(self, decorator):
        assert error_text(TypeError, _zorOSG.ExampleApplication_run, decorator) == \
            "in method 'ExampleApplication_run', argument 1 of type 'zorOSG::ExampleApplication *'"
        assert error_text(TypeError, _zorOSG.SceneDecorator_setLogoPosition, decorator, "x", "y") == \
            "in method 'SceneDecorator_setLogoPosition', argument 2 of type 'float'"

    def test_null_is_refused_where_a_reference_is_needed(self):
        transform = zorOSG.Transform()
        assert error_text(TypeError, _zorOSG.Transform_setMatrix, transform, None) == \
            "invalid null reference in method 'Transform_setMatrix', argument 2 of type 'zor::AffineMatrix4x4 const &'"
        assert error_text(TypeError, _zorOSG.Transform_setMatrix, transform, (1, 2, 3)) == \
            "in method 'Transform_setMatrix', argument 2 of type 'zor::AffineMatrix4x4 const &'"

    def test_none_is_null_for_a_pointer(self):
        assert zorOSG.asGeometryNode(None) is None

    def test_integer_ranges(self, decorator):
        assert error_text(OverflowError, _zorOSG.SceneDecorator_updateWindowSize, decorator, 2**31, 1) == \
            "in method 'SceneDecorator_updateWindowSize', argument 2 of type 'int'"
        assert error_text(TypeError, _zorOSG.SceneDecorator_updateWindowSize, decorator, 1.0, 1) == \
            "in method 'SceneDecorator_updateWindowSize', argument 2 of type 'int'"
        capture = zorOSG.ImageCapture()
        assert error_text(OverflowError, _zorOSG.ImageCaptureBase_setImageResolution, capture, -1, 1) == \
            "in method 'ImageCaptureBase_setImageResolution', argument 2 of type 'zor::UInt'"
        capture.setMaxImages(True)  # a bool is an int

    def test_float_range(self, decorator):
        assert error_text(OverflowError, _zorOSG.SceneDecorator_setFontSize, decorator, 1e39) == \
            "in method 'SceneDecorator_setFontSize', argument 2 of type 'float'"

    def test_toolkit_exceptions(self):
        assert "box" in error_text(RuntimeError, zorCollide.Box, zor.Vec3(-1, 1, 1)).lower()
        assert error_text(RuntimeError, zorOSG.setDiffuseColor, None, zor.Vec4f(1, 1, 1, 1))


class TestText:
    def test_both_kinds_of_text_keep_any_character(self):
        body = zor.RigidBody("Käse 😀")
        assert body.getName() == "Käse 😀"
        capture = zorOSG.VideoFFMPEGPipeCapture(16, 16, 30.0)
        capture.setFilename("vidéo 😀.mp4")
        assert capture.getFilename() == "vidéo 😀.mp4"

    def test_bytes_and_others_are_refused(self, decorator):
        assert error_text(TypeError, _zorOSG.SceneDecorator_setFontName, decorator, b"x") == \
            "in method 'SceneDecorator_setFontName', argument 2 of type 'std::string const &'"
        capture = zorOSG.VideoFFMPEGPipeCapture(16, 16, 30.0)
        for wrong in (None, 5, b"x"):
            assert error_text(RuntimeError, capture.setFilename, wrong) == \
                "basic_string: construction from null is not valid"

    def test_undecodable_bytes_survive_as_surrogates(self):
        name = os.fsdecode(b"caf\xe9.mp4")
        capture = zorOSG.VideoFFMPEGPipeCapture(16, 16, 30.0)
        capture.setFilename(name)
        assert capture.getFilename() == name
        assert "\udce9" in name

    def test_text_ends_at_a_nul(self):
        capture = zorOSG.VideoFFMPEGPipeCapture(16, 16, 30.0)
        capture.setFilename("a.mp4\0b")
        assert capture.getFilename() == "a.mp4"


class TestOverloads:
    def test_prototypes_are_listed_as_declared(self):
        v = zor.Vec3()
        expected = mismatch(
            "createGrid",
            "zorOSG::createGrid(unsigned int,unsigned int,osg::Vec3 const &,osg::Vec3 const &,osg::Vec3 const &,bool)",
            "zorOSG::createGrid(unsigned int,unsigned int,osg::Vec3 const &,osg::Vec3 const &,osg::Vec3 const &)",
            "zorOSG::createGrid(unsigned int,unsigned int,zor::Vec3 const &,zor::Vec3 const &,zor::Vec3 const &,"
            "osg::Group *)")
        assert error_text(TypeError, zorOSG.createGrid, 10, 10, v, v, v, True) == expected
        o = osg.Vec3()
        assert error_text(TypeError, zorOSG.createGrid, -1, 10, o, o, o) == expected

    def test_types_choose_the_form(self):
        x, y = zor.Vec3(1, 0, 0), zor.Vec3(0, 1, 0)
        root = osg.Group()
        assert isinstance(zorOSG.createGrid(2, 2, zor.Vec3(), x, y, root), osg.Geode)
        assert root.getNumChildren() == 1
        flat = zorOSG.createGrid(2, 2, osg.Vec3(), osg.Vec3(1, 0, 0), osg.Vec3(0, 1, 0), True)
        assert isinstance(flat, osg.Geometry)

    def test_bool_ranks_before_int(self):
        application = zorOSG.ExampleApplication()
        assert application.addScene("f.py", "build", True)
        assert application.addScene("f.py", "build", 7)
        assert application.getCallback(7).isValid()
        assert not application.getCallback(1).isValid()
        assert application.getNumScenes() == 2
        assert application.addScene("f.py", "build", False, 2.5)
        assert application.getCallbackIdx(2).stopAfter == 2.5
        assert application.getCallbackIdx(2).unittest is False
        assert len(error_text(TypeError, application.addScene, lambda s, a: None).splitlines()) == 2 + 18

    def test_scene_descriptions(self):
        nothing = zorOSG.SceneDescription()
        assert (nothing.isValid(), nothing.stopAfter, nothing.scene) == (False, -1.0, None)
        scene = zorOSG.SceneDescription("f.py", "build", False, 3.0, True)
        assert (scene.fileName, scene.scriptFunction, scene.unittest, scene.slowUnittest) == \
            ("f.py", "build", False, True)
        assert scene.isValid() and scene.thisown
        assert error_text(TypeError, zorOSG.SceneDescription, 5).count("SceneDescription::SceneDescription(") == 13


class TestOwnership:
    def test_a_constructor_holds_one_reference(self):
        body = zor.RigidBody()
        assert body.thisown and body.getReferenceCount() == 1
        node = zorOSG.GeometryNode()
        assert node.thisown and node.referenceCount() == 1
        decorator = zorOSG.SceneDecorator(10, 10)
        assert decorator.referenceCount() == 1

    def test_the_toolkit_keeps_what_it_holds(self):
        simulation = zorSDK.Simulation()
        body = zor.RigidBody("kept")
        simulation.add(body)
        assert body.getReferenceCount() > 1
        del body
        gc.collect()
        assert simulation.getRigidBody("kept").getName() == "kept"
        assert len(simulation.getRigidBodies()) == 1

    def test_results_of_the_visualisation_layer_are_borrowed(self):
        application = zorOSG.ExampleApplication()
        application.initSimulation()
        before = application.getSimulation().getReferenceCount()
        simulation = application.getSimulation()
        assert not simulation.thisown
        assert simulation.getReferenceCount() == before

    def test_what_an_application_lends_keeps_it(self):
        def lend():
            application = zorOSG.ExampleApplication()
            application.initSimulation()
            return application.getSimulation()

        simulation = lend()
        gc.collect()
        simulation.stepForward()
        assert simulation.getTimeStamp() > 0

    def test_results_of_the_simulation_outlive_it(self):
        simulation = zorSDK.Simulation()
        simulation.add(zor.RigidBody("survivor"))
        body = simulation.getRigidBody("survivor")
        bodies = simulation.getRigidBodies()
        del simulation
        gc.collect()
        assert body.getName() == bodies[0].getName() == "survivor"

    def test_concrete_classes_come_back(self):
        geometry = zorCollide.Geometry(zorCollide.Sphere(0.5))
        assert type(geometry.getShape(0)) is zorCollide.Sphere
        group = osg.Group()
        group.addChild(osg.MatrixTransform())
        assert type(group.getChild(0)) is osg.MatrixTransform

    def test_shared_nodes_by_hand(self):
        group = osg.Group()
        _zorOSG.Group_reference(group)
        assert group.referenceCount() == 2
        _zorOSG.Group_unreference(group)
        assert group.referenceCount() == 1

    def test_values_are_copies(self):
        application = zorOSG.ExampleApplication()
        application.setGridSize(zor.Vec2(3, 4))
        size = application.getGridSize()
        assert size.thisown
        size[0] = 100
        assert application.getGridSize() == zor.Vec2(3, 4)

    def test_flag_of_the_wrapped_object(self):
        vector = zor.Vec3(1, 2, 3)
        assert vector.this.own() is True
        vector.this.disown()
        assert vector.thisown is False
        vector.this.acquire()
        assert vector.this == vector.this and int(vector.this) != 0

    def test_an_object_of_another_module_is_taken_for_its_base(self):
        node = zorOSG.GeometryNode(zorCollide.Geometry(zorCollide.Sphere(1.0)))
        group = osg.Group()
        assert group.addChild(node) is True
        assert type(group.getChild(0)) is zorOSG.GeometryNode
        assert error_text(TypeError, _osg.Group_addChild, group, zor.RigidBody()) == \
            "in method 'Group_addChild', argument 2 of type 'osg::Node *'"


class TestSequences:
    def test_node_vector_counts_from_the_start(self):
        vector = zorOSG.GeometryNodePtrVector()
        nodes = [zorOSG.GeometryNode() for _ in range(4)]
        for node in nodes:
            vector.append(node)
        assert len(vector) == 4 and vector.capacity() >= 4
        assert error_text(IndexError, vector.__getitem__, -1) == "index"
        assert error_text(ValueError, vector.GetRange, 2, 3) == "invalid range"
        assert error_text(IndexError, vector.GetRange, 0, -1) == "count"
        assert error_text(ValueError, vector.GetRange, 1, 2**31 - 1) == "invalid range"
        last = vector.GetRange(1, 3)
        assert len(last) == 3 and not last.thisown
        assert vector.IndexOf(nodes[2]) == 2 and vector.IndexOf(None) == -1
        assert vector.__delitem__(nodes[1]) is True and vector.__delitem__(nodes[1]) is False
        vector.Reverse()
        assert vector[0].this == nodes[3].this
        vector.InsertRange(1, vector)
        assert len(vector) == 6
        assert error_text(IndexError, zorOSG.GeometryNodePtrVector, -5) == "capacity"
        with pytest.raises(SystemError):
            iter(vector)

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
            "in method 'createPolyline', argument 1 of type 'zor::Vec3Vector const &'"
        assert isinstance(zorOSG.createPolyline(zor.Vec3Vector(points), color, 1.0), osg.Geode)
