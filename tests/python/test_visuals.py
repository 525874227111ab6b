"""What a script shows: visuals of shapes, their colours in pixels, models from files, and the decorator's settings."""

import gc
import math

import numpy
import pytest

import osg
import osgDB
import zor
import zorCollide
import zorOSG
import zorRender
import zorSDK

TETRAHEDRON = [(0, 0, 0), (1, 0, 0), (0, 1, 0), (0, 0, 1)]
TRIANGLES = [0, 2, 1, 0, 1, 3, 0, 3, 2, 1, 2, 3]
RED, GREEN, BLUE, WHITE = ((1, 0, 0, 1), (0, 1, 0, 1), (0, 0, 1, 1), (1, 1, 1, 1))


@pytest.fixture
def application(new_application):
    app = new_application("--window", "160x120")
    app.getSimulation().setUniformGravity(zor.Vec3())
    app.setCameraHome(zor.Vec3(0, -6, 0), zor.Vec3())
    return app


def body_of(shape, simulation, position=(0, 0, 0), name="", static=False):
    body = zor.RigidBody(name)
    if static:
        body.setMotionControl(zor.RigidBody.STATIC)
    body.add(zorCollide.Geometry(shape))
    body.setPosition(zor.Vec3(*position))
    simulation.add(body)
    return body


def share(image, color):
    """Share of the pixels in which the given channels (of 1 in `color`) are far above the others."""
    high = image[..., [i for i in range(3) if color[i]]].min(axis=-1)
    low = image[..., [i for i in range(3) if not color[i]]].max(axis=-1)
    return ((high > 50) & (high > 2.5 * low)).mean()


class TestShapes:
    @pytest.mark.parametrize("shape, lower, upper", [
        (lambda: zorCollide.Box(1, 2, 3), (-1, -2, -3), (1, 2, 3)),
        (lambda: zorCollide.Sphere(1.5), (-1.5,) * 3, (1.5,) * 3),
        (lambda: zorCollide.Capsule(0.5, 2), (-0.5, -1.5, -0.5), (0.5, 1.5, 0.5)),
        (lambda: zorCollide.Cylinder(0.5, 2), (-0.5, -1, -0.5), (0.5, 1, 0.5)),
        (lambda: zorCollide.Cone(0.5, 2), (-0.5, -1, -0.5), (0.5, 1, 0.5)),
        (lambda: zorCollide.Convex(TETRAHEDRON), (0, 0, 0), (1, 1, 1)),
        (lambda: zorCollide.Trimesh(TETRAHEDRON, TRIANGLES), (0, 0, 0), (1, 1, 1)),
        (lambda: zorCollide.HeightField(3, 3, 4.0, 2.0, zor.RealVector(range(9))), (-2, -1, 0), (2, 1, 8)),
    ], ids=["box", "sphere", "capsule", "cylinder", "cone", "convex", "trimesh", "height field"])
    def test_a_visual_is_as_large_as_its_shape(self, shape, lower, upper):
        geometry, root = zorCollide.Geometry(shape()), osg.Group()
        node = zorOSG.createVisual(geometry, root)
        box = node.computeBoundingBox()
        for i, axis in enumerate("xyz"):
            # Round shapes are drawn with flat faces inside the exact ones.
            size = upper[i] - lower[i]
            assert getattr(box, axis + "Min")() == pytest.approx(lower[i], abs=0.03 * size)
            assert getattr(box, axis + "Max")() == pytest.approx(upper[i], abs=0.03 * size)

    def test_detail_decides_on_the_number_of_triangles(self):
        def count(detail):
            root, geometry = osg.Group(), zorCollide.Geometry(zorCollide.Sphere(1))
            node = zorOSG.createVisual(geometry, root, detail)
            return zorOSG.createTrimesh(node).getNumTriangles()

        assert 50 < count(0.5) < count(1.0) < count(2.0)

    def test_a_visual_follows_its_body(self, application, shot):
        body = body_of(zorCollide.Sphere(0.5), application.getSimulation())
        zorOSG.setDiffuseColor(zorOSG.createVisual(body, application.getSceneRoot()), zor.Vec4f(*RED))
        columns = []
        for x in (-1.5, 0, 1.5):
            body.setPosition(zor.Vec3(x, 0, 0))
            image = shot()
            found = numpy.nonzero((image[..., 0] > 60) & (image[..., 0] > 2 * image[..., 1]))[1]
            columns.append(found.mean())
        assert columns[1] == pytest.approx(80, abs=2)
        assert columns[2] - columns[1] == pytest.approx(columns[1] - columns[0], abs=3) and columns[2] > 100

    def test_a_changed_shape_changes_its_visual(self):
        simulation, root, box = zorSDK.Simulation(), osg.Group(), zorCollide.Box(1, 1, 1)
        body = body_of(box, simulation)
        zorOSG.createVisual(body, root)
        box.setHalfExtents(zor.Vec3(3, 1, 1))
        node = zorOSG.findGeometryNode(body.getGeometries()[0], root)
        assert node.computeBoundingBox().xMax() == pytest.approx(3)

    def test_parts_stand_where_the_body_has_them(self):
        body, root = zor.RigidBody("pair"), osg.Group()
        for x in (-2, 2):
            body.add(zorCollide.Geometry(zorCollide.Box(0.5, 0.5, 0.5)), zor.AffineMatrix4x4.translate(x, 0, 0))
        zorSDK.Simulation().add(body)
        group = zorOSG.createVisual(body, root)
        bound = group.getBound()
        assert bound.radius() == pytest.approx(math.hypot(2.5, 0.5, 0.5), rel=0.3)
        assert tuple(bound.center()) == pytest.approx((0, 0, 0), abs=1e-5)

    def test_nothing_is_made_of_nothing_or_with_a_wrong_detail(self):
        geometry, root = zorCollide.Geometry(zorCollide.Sphere(1)), osg.Group()
        assert zorOSG.createVisual(geometry, None) is None
        for wrong in (-1.0, math.nan):
            with pytest.raises(RuntimeError, match="(?i)detail"):
                zorOSG.createVisual(geometry, root, wrong)
        with pytest.raises(TypeError, match="createVisual"):
            zorOSG.createVisual(zorCollide.Sphere(1), root)
        geometry.setSensor(True)
        assert zorOSG.createVisual(geometry, root, 1.0, False, False) is None
        assert root.getNumChildren() == 0

    def test_every_kind_of_object_has_its_forms(self):
        """Wrong arguments are answered with all of them, in the order of their declarations."""
        def forms(arguments, optional):
            return ["".join(f",{each}" for each in arguments + optional[:n]) for n in range(len(optional), -1, -1)]

        detail, root = ["float", "bool"], ["osg::Group *"]
        particle = [f"zorOSG::ParticleSystemDrawable::Particle{kind}Mode" for kind in ("Rendering", "Shader")]
        stress = ["zorRender::Color const &", "bool", "zorRender::Color const &", "zor::Real"]
        expected = [kind + form for kind, optional in [
            ("zorCollide::Geometry const *", [*detail, "bool"]), ("zor::ParticleSystem *", particle),
            ("zor::RigidBodyEmitter *", []), ("zor::Emitter *", []), ("zorSDK::TerrainInstance *", []),
            ("zor::ObserverFrame *", ["float"]), ("zor::RigidBody *", detail), ("zorSDK::Assembly *", detail),
            ("zorSDK::Simulation *", detail), ("zorModel::DeformableObject const *", stress),
        ] for form in forms(root, optional)]
        assert len(expected) == 26
        geometry, root = zorCollide.Geometry(zorCollide.Sphere(1)), osg.Group()
        with pytest.raises(TypeError) as error:
            zorOSG.createVisual(geometry, root, 1.0, 1)  # a flag is no number
        assert str(error.value) == (
            "Wrong number or type of arguments for overloaded function 'createVisual'.\n  Possible C/C++ prototypes are:\n"
            + "".join(f"    zorOSG::createVisual({form})\n" for form in expected))
        assert root.getNumChildren() == 0 and zorOSG.createVisual(None, root) is None

    def test_a_sensor_is_drawn_unless_told_otherwise(self):
        geometry, root = zorCollide.Geometry(zorCollide.Sphere(1)), osg.Group()
        geometry.setSensor(True)
        assert zorOSG.createVisual(geometry, root) and zorOSG.createVisual(geometry, root, 1.0, False)
        assert zorOSG.createVisual(geometry, root, 1.0, False, False) is None
        body = zor.RigidBody()
        body.add(geometry)
        body.add(zorCollide.Geometry(zorCollide.Box(1, 1, 1)))
        group, indices = zorOSG.createVisualWithGeometryConnection(body, root)
        assert list(indices) == list(range(group.getNumChildren())) == [0, 1]


class TestLookup:
    def test_the_same_node_comes_back(self):
        simulation, root = zorSDK.Simulation(), osg.Group()
        bodies = [body_of(zorCollide.Box(0.5, 0.5, 0.5), simulation, (i, 0, 0), f"b{i}") for i in range(5)]
        zorOSG.createVisual(simulation, root)
        for body in bodies:
            geometry = body.getGeometries()[0]
            node = zorOSG.findGeometryNode(geometry, root)
            again = zorOSG.findGeometryNodes(geometry, root)
            assert len(again) == 1 and again[0].this == node.this
            assert node.getGeometry().this == geometry.this
            assert zorOSG.asGeometryNode(node).this == node.this
        assert zorOSG.asGeometryNode(osg.Group()) is None
        assert zorOSG.findGeometryNode(zorCollide.Geometry(zorCollide.Sphere(1)), root) is None

    def test_two_visuals_of_one_geometry(self):
        simulation, root = zorSDK.Simulation(), osg.Group()
        body = body_of(zorCollide.Sphere(1), simulation)
        for _ in range(2):
            zorOSG.createVisual(body, root)
        assert len(zorOSG.findGeometryNodes(body.getGeometries()[0], root)) == 2

    def test_a_removed_body_takes_its_visual_away(self, application, shot):
        simulation, root = application.getSimulation(), application.getSceneRoot()
        body = body_of(zorCollide.Sphere(1), simulation)
        geometry = body.getGeometries()[0]
        zorOSG.setDiffuseColor(zorOSG.createVisual(body, root), zor.Vec4f(*RED))
        assert share(shot(), RED) > 0.02
        simulation.remove(body)
        assert zorOSG.findGeometryNode(geometry, root) is None
        assert share(shot(), RED) == 0

    def test_a_visual_outlives_its_simulation(self):
        def build(root):
            zorOSG.createVisual(body_of(zorCollide.Box(1, 1, 1), zorSDK.Simulation()), root)

        root = osg.Group()
        build(root)
        gc.collect()
        assert root.getBound().radius() < 3  # what is left of it can still be visited


class TestColors:
    @pytest.mark.parametrize("color", [RED, GREEN, BLUE], ids=["red", "green", "blue"])
    def test_three_ways_to_the_same_colour(self, application, shot, color):
        simulation, root = application.getSimulation(), application.getSceneRoot()
        body = body_of(zorCollide.Box(1, 1, 1), simulation)
        node = zorOSG.createVisual(body, root)
        value, neutral = zor.Vec4f(*color), zor.Vec4f(*WHITE)
        geometry = body.getGeometries()[0]
        shares = []
        for paint in (lambda c: zorOSG.setDiffuseColor(node, c), lambda c: zorOSG.setDiffuseColor(body, c, root),
                      lambda c: zorOSG.setDiffuseColor(geometry, c, root)):
            paint(neutral)
            assert share(shot(), color) == 0
            paint(value)
            shares.append(share(shot(), color))
        assert min(shares) > 0.04 and max(shares) - min(shares) < 0.002

    def test_each_body_has_its_own(self, application, shot):
        simulation, root = application.getSimulation(), application.getSceneRoot()
        for x, color in ((-1.2, RED), (0, GREEN), (1.2, BLUE)):
            body = body_of(zorCollide.Sphere(0.5), simulation, (x, 0, 0))
            zorOSG.setDiffuseColor(zorOSG.createVisual(body, root), zor.Vec4f(*color))
        image = shot()
        assert share(image[:, :68], RED) > 0.01 and share(image[:, 68:], RED) == 0
        assert share(image[:, 60:100], GREEN) > 0.01
        assert share(image[:, 92:], BLUE) > 0.01 and share(image[:, :92], BLUE) == 0

    def test_alpha_lets_the_background_through(self, application, shot):
        body = body_of(zorCollide.Box(1, 1, 1), application.getSimulation())
        node = zorOSG.createVisual(body, application.getSceneRoot())
        background = shot()[60, 5]
        zorOSG.setDiffuseColor(node, zor.Vec4f(0, 0, 0, 1))
        solid = shot()[60, 80]
        zorOSG.setAlpha(node, 0.3)
        mixed = shot()[60, 80]
        assert (solid < mixed).all() and (mixed < background + 5).all()

    def test_wire_frames_leave_gaps(self, application, shot):
        body = body_of(zorCollide.Box(1, 1, 1), application.getSimulation())
        node = zorOSG.createVisual(body, application.getSceneRoot())
        zorOSG.setDiffuseColor(node, zor.Vec4f(*RED))
        filled = share(shot(), RED)
        zorOSG.setEnableWireFrameMode(node, True)
        lines = share(shot(), RED)
        zorOSG.setEnableWireFrameMode(node, False)
        assert lines < filled / 2 and share(shot(), RED) == pytest.approx(filled, abs=0.002)

    def test_a_texture_from_a_file(self, application, shot, tmp_path):
        image = osg.Image()
        image.allocate(4, 4, 3)
        numpy.asarray(image)[:] = (0, 255, 0)
        osgDB.writeImageFile(image, str(tmp_path / "green.png"))
        body = body_of(zorCollide.Box(1, 1, 1), application.getSimulation())
        node = zorOSG.createVisual(body, application.getSceneRoot())
        zorOSG.setDiffuseColor(node, zor.Vec4f(*WHITE))
        assert zorOSG.setTexture(node, str(tmp_path / "green.png")) is True
        assert share(shot(), GREEN) > 0.04
        assert zorOSG.setTexture(node, str(tmp_path / "missing.png")) is False

    def test_the_texture_of_a_render_material(self, application, shot, tmp_path):
        image = osg.Image()
        image.allocate(8, 8, 3)
        pixels = numpy.asarray(image)
        pixels[:, :4], pixels[:, 4:] = (255, 0, 0), (0, 255, 0)
        osgDB.writeImageFile(image, str(tmp_path / "halves.png"))

        def shares(texture, tint):
            material = zorRender.RenderMaterial()
            material.setDiffuseTexture(str(tmp_path / texture))
            material.setDiffuseColor(zorRender.Color(*tint))
            data = zorRender.RenderData()
            data.setRenderMaterial(material)
            box = zorCollide.Box(1, 1, 1)
            box.setRenderData(data)
            body = body_of(box, application.getSimulation())
            assert zorOSG.createVisual(body, application.getSceneRoot())
            seen = shot()
            application.getSimulation().remove(body)
            return share(seen, RED), share(seen, GREEN)

        red, green = shares("halves.png", WHITE)
        assert red > 0.02 and green == pytest.approx(red, rel=0.2)
        assert shares("halves.png", GREEN) == (0, pytest.approx(green, rel=0.4))
        assert shares("missing.png", WHITE) == (0, 0)

    def test_null_is_refused(self):
        for function, value in ((zorOSG.setAlpha, 0.5), (zorOSG.setShininess, 3.0), (zorOSG.setAmbientColor, zor.Vec4f(*RED)),
                                (zorOSG.setSpecularColor, zor.Vec4f(*RED))):
            with pytest.raises(RuntimeError, match=function.__name__):
                function(None, value)


OBJ = """
v 0 0 0
v 2 0 0
v 0 2 0
v 0 0 2
f 1 3 2
f 1 2 4
f 1 4 3
f 2 3 4
"""


class TestModels:
    @pytest.fixture
    def model(self, tmp_path):
        (tmp_path / "corner.obj").write_text(OBJ)
        return str(tmp_path / "corner.obj")

    def test_a_mesh_of_a_file_is_a_shape(self, model):
        node = zorOSG.readNodeFile(model)
        mesh = zorOSG.createTrimesh(node)
        assert mesh.getNumTriangles() == 4
        corners = numpy.asarray(mesh.getVertices())
        assert (corners.min(axis=0) == 0).all() and corners.max() == pytest.approx(2)
        assert mesh.getVolume() == pytest.approx(8 / 6)
        body = zor.RigidBody(zorCollide.Geometry(mesh))
        assert body.getMassProperties().getMass() == pytest.approx(1000 * 8 / 6)

    def test_a_mesh_outlives_the_geometry_that_had_it(self, model):
        mesh = zorOSG.createTrimesh(zorOSG.readNodeFile(model))
        assert mesh.thisown is False and mesh.getReferenceCount() == 1
        geometry = zorCollide.Geometry(mesh)
        del geometry
        assert mesh.getReferenceCount() == 1 and mesh.getNumTriangles() == 4

    def test_transforms_above_the_mesh_count(self, model):
        scaled = osg.MatrixTransform(osg.Matrixd.scale(2, 2, 2) * osg.Matrixd.translate(10, 0, 0))
        scaled.addChild(zorOSG.readNodeFile(model))
        mesh = zorOSG.createTrimesh(scaled)
        corners = numpy.asarray(mesh.getVertices())
        assert corners[:, 0].min() == pytest.approx(10) and corners[:, 0].max() == pytest.approx(14)
        assert mesh.getVolume() == pytest.approx(8 * 8 / 6)

    def test_a_model_lands_on_the_ground(self, model):
        simulation = zorSDK.Simulation()
        simulation.add(zorCollide.Geometry(zorCollide.Plane(zor.Vec3(0, 0, 1), zor.Vec3())))
        body = body_of(zorOSG.createTrimesh(zorOSG.readNodeFile(model)), simulation, (0, 0, 0.5))
        for _ in range(180):
            simulation.stepForward()
        assert body.getPosition().z() == pytest.approx(0, abs=0.03)

    def test_a_model_is_found_by_the_resource_path(self, run_python, model, tmp_path):
        run_python("import zorOSG\nassert zorOSG.readNodeFile('corner.obj') is not None",
                   environment={"ZOR_FILE_PATH": str(tmp_path)})

    def test_what_has_no_triangles_is_refused(self, tmp_path, capfd):
        with pytest.raises(RuntimeError, match="createTrimesh"):
            zorOSG.createTrimesh(None)
        try:
            empty = zorOSG.createTrimesh(osg.Group())
        except RuntimeError as error:
            assert "triangle" in str(error)
        else:
            assert empty is None
        (tmp_path / "broken.osgt").write_text("this is no scene")
        assert zorOSG.readNodeFile(str(tmp_path / "broken.osgt")) is None
        assert "broken.osgt" in capfd.readouterr().err


class TestDecorator:
    def test_the_background_runs_from_colour_to_colour(self, application, shot):
        application.getSceneDecorator().setBackgroundColor(zor.Vec3(0, 0, 1), zor.Vec3(1, 0, 0))
        image = shot()
        column = image[:, 5]
        assert column[2, 2] > 220 and column[2, 0] < 35
        assert column[-3, 0] > 220 and column[-3, 2] < 35
        assert (numpy.diff(column[:, 0]) >= -1).all() and (numpy.diff(column[:, 2]) <= 1).all()

    def test_four_corners(self, application, shot):
        colors = [(1, 0, 0), (0, 1, 0), (0, 0, 1), (1, 1, 0)]
        application.getSceneDecorator().setBackgroundColor(*(zor.Vec3(*color) for color in colors))
        image = shot()
        for (row, column), color in zip(((1, 1), (1, -2), (-2, 1), (-2, -2)), colors):
            assert image[row, column] == pytest.approx(numpy.array(color) * 255, abs=12)

    def test_shadows_darken_the_ground(self, application, shot):
        simulation, root = application.getSimulation(), application.getSceneRoot()
        ground = body_of(zorCollide.Box(8, 8, 0.1), simulation, (0, 0, -1.1), static=True)
        ball = body_of(zorCollide.Sphere(0.8), simulation, (0, 0, 0.8), static=True)
        zorOSG.setDiffuseColor(zorOSG.createVisual(ground, root), zor.Vec4f(0.7, 0.7, 0.7, 1))
        zorOSG.createVisual(ball, root)
        application.setCameraHome(zor.Vec3(0, -9, 6), zor.Vec3())
        decorator = application.getSceneDecorator()
        images = {}
        for enable in (False, True):
            decorator.setEnableShadows(enable)
            decorator.calculateLightPositions(root)
            images[enable] = shot().mean(axis=-1)
        darker = images[False] - images[True]
        assert 0.005 < (darker > 25).mean() < 0.4  # a part of the picture, not all of it
        assert (darker < -25).mean() < 0.005

    def test_text_stands_in_its_row_and_colour(self, application, shot):
        decorator = application.getSceneDecorator()
        decorator.setBackgroundColor(zor.Vec3(), zor.Vec3())
        before = shot()
        assert share(before, GREEN) == 0
        decorator.setText(0, "first row", zor.Vec4f(*GREEN))
        decorator.setText(2, "third row", zor.Vec4f(*RED))
        image = shot()
        rows = [numpy.nonzero((image[..., i] > 80) & (image[..., 1 - i] < 60))[0] for i in (1, 0)]
        assert min(len(found) for found in rows) > 20
        assert rows[0].mean() < rows[1].mean()
        decorator.setText(0, "")
        decorator.setText(2, "")
        assert abs(shot() - before).max() < 10

    def test_a_disabled_decorator_and_lights(self, application, shot):
        body = body_of(zorCollide.Sphere(1), application.getSimulation())
        zorOSG.setDiffuseColor(zorOSG.createVisual(body, application.getSceneRoot()), zor.Vec4f(*WHITE))
        decorator = application.getSceneDecorator()
        bright = shot()[50:70, 70:90].mean()
        decorator.setEnableLights(0)
        dark = shot()[50:70, 70:90].mean()
        decorator.setEnableLights(zorOSG.SceneDecorator.ALL)
        assert dark < bright - 40 and shot()[50:70, 70:90].mean() == pytest.approx(bright, abs=3)


def test_what_is_lent_outlives_what_it_came_from():
    """Temporaries as arguments: the visual's geometry, its root or the object asked die before the result."""
    from_geometry = zorOSG.createVisual(zorCollide.Geometry(zorCollide.Sphere(1)), osg.Group())
    body = zor.RigidBody()
    body.add(zorCollide.Geometry(zorCollide.Box(zor.Vec3(1, 1, 1))))
    from_body = zorOSG.createVisual(body, osg.Group()).getChild(0)
    image = zorOSG.RenderToImage(8, 4).getImage()
    bound = zorOSG.createVisual(zorCollide.Geometry(zorCollide.Box(zor.Vec3(1, 1, 1))), osg.Group()).getBound()
    matrix = osg.MatrixTransform(osg.Matrixd.translate(1, 2, 3)).getMatrix()
    inverse = zorOSG.GuiEventListener().getInverseTransform()
    del body
    gc.collect()
    assert from_geometry.thisown is False
    zorOSG.setDiffuseColor(from_geometry, zor.Vec4f(1, 0, 0, 1))
    assert zorOSG.createTrimesh(from_geometry).getNumTriangles() > 100
    assert from_body.getBound().valid()
    assert (image.s(), image.t()) == (8, 4)
    assert bound.radius() == pytest.approx(math.sqrt(3), rel=1e-5)
    assert matrix == osg.Matrixd.translate(1, 2, 3)
    assert inverse == zor.AffineMatrix4x4()
