"""A scene from end to end: bodies fall, listeners run, pixels have the colours they were given."""

import subprocess
import sys
import textwrap

import numpy
import pytest

import osg
import osgDB
import zor
import zorCollide
import zorIO
import zorOSG
import zorPython
import zorSDK


def box(name, half, position, simulation, static=False):
    body = zor.RigidBody(name)
    body.add(zorCollide.Geometry(zorCollide.Box(half)))
    body.setPosition(position)
    if static:
        body.setMotionControl(zor.RigidBody.STATIC)
    simulation.add(body)
    return body


@pytest.fixture
def application(new_application):
    return new_application()


def fill(app):
    """A red box above a grey ground."""
    simulation, root = app.getSimulation(), app.getSceneRoot()
    ground = box("ground", zor.Vec3(5, 5, 0.1), zor.Vec3(0, 0, -0.1), simulation, static=True)
    falling = box("falling", zor.Vec3(0.5, 0.5, 0.5), zor.Vec3(0, 0, 2), simulation)
    for body, color in ((ground, zor.Vec4f(0.5, 0.5, 0.5, 1)), (falling, zor.Vec4f(1, 0, 0, 1))):
        zorOSG.setDiffuseColor(zorOSG.createVisual(body, root), color)
    app.setCameraHome(zor.Vec3(0, -8, 2), zor.Vec3(0, 0, 0.5))
    return falling


class Counter(zorOSG.ExampleApplicationListener):
    def __init__(self, fail_at=None, stop_at=None):
        super().__init__()
        self.frames = []
        self.fail_at, self.stop_at = fail_at, stop_at

    def preFrame(self, app):
        self.frames.append("pre")
        assert type(app) is zorOSG.ExampleApplication and not app.thisown

    def postFrame(self, app):
        self.frames.append("post")
        if len(self.frames) == self.fail_at:
            raise ValueError("a frame failed")
        if len(self.frames) == self.stop_at:
            app.stop(3)


def test_a_box_falls_and_its_picture_is_red(application, tmp_path):
    falling = fill(application)
    listener = Counter()
    application.addListener(listener)
    picture = tmp_path / "picture.png"
    application.stopAfter(2.0)
    application.takeScreenShot(str(picture))
    assert application.run() == 0
    assert application.getTimeStamp() == pytest.approx(2.0, abs=0.05)
    assert falling.getPosition().z() == pytest.approx(0.5, abs=0.02)
    assert listener.frames[:4] == ["pre", "post", "pre", "post"]
    assert zorPython.getErrors() == []

    image = osgDB.readImageFile(str(picture))
    pixels = numpy.asarray(image).astype(int)
    red = (pixels[..., 0] > 80) & (pixels[..., 0] > 2 * pixels[..., 1]) & (pixels[..., 0] > 2 * pixels[..., 2])
    rows, columns = numpy.nonzero(red)
    assert red.sum() > 100
    assert abs(columns.mean() - image.s() / 2) < image.s() * 0.05


def test_an_exit_code_and_a_failing_listener(application):
    fill(application)
    listener = Counter(fail_at=4, stop_at=10)
    application.addListener(listener)
    assert application.run() == 3
    assert application.getExitCode() == 3
    assert len(listener.frames) == 10
    errors = zorPython.getErrors()
    assert [(e.label, e.type, e.message, e.count) for e in errors] == \
        [("zorOSG::ExampleApplicationListener::postFrame", "ValueError", "a frame failed", 1)]
    assert "test_scene.py" in errors[0].traceback


class Keyboard(zorOSG.GuiEventListener):
    """Notes keys."""

    def __init__(self):
        super().__init__()
        self.keys = []

    def keyboard(self, key, modKeyMask, x, y, keydown):
        self.keys.append((key, keydown))
        return True


def press(app, listener, key):
    app.getSimulation().add(listener)
    app.getViewer().getEventQueue().keyPress(ord(key))
    app.getViewer().getEventQueue().keyRelease(ord(key))
    timer = zor.HighAccuracyTimer(True)
    for _ in range(3):
        app.executeOneStepWithGraphics(timer)


def test_keys_reach_python(application):
    listener = Keyboard()
    press(application, listener, "k")
    assert listener.keys == [(ord("k"), True), (ord("k"), False)]
    assert zorPython.getErrors() == []


def test_a_script_builds_the_scene(application, tmp_path):
    script = tmp_path / "scene.py"
    script.write_text(textwrap.dedent("""
        import osg, zor, zorCollide, zorOSG
        def build():
            app = zorOSG.getCurrentApplication()
            root = osg.Group()
            root.setName("made by the script")
            body = zor.RigidBody("from the script")
            body.add(zorCollide.Geometry(zorCollide.Sphere(0.5)))
            app.getSimulation().add(body)
            zorOSG.createVisual(body, root)
            return root
        def broken():
            raise RuntimeError("no scene today")
    """))
    assert application.addScene(str(script), "build", ord("1"))
    assert application.addScene(str(script), "broken", ord("2"))
    assert application.createSceneFromKey(ord("1")) is True
    assert application.getScene().getName() == "made by the script"
    assert application.getSimulation().getRigidBody("from the script") is not None
    assert application.createSceneFromKey(ord("2")) is False
    assert [e.message for e in zorPython.getErrors()] == ["no scene today"]
    assert application.createSceneFromKey(ord("9")) is False

    success = zor.BoolPointer()
    assert application.executePythonScript(str(script), "broken", success.cast()) is None
    assert success.value() is False


def test_every_shape_gets_a_visual_that_is_found_again():
    root, simulation = osg.Group(), zorSDK.Simulation()
    tetrahedron = [(0, 0, 0), (1, 0, 0), (0, 1, 0), (0, 0, 1)]
    triangles = [0, 2, 1, 0, 1, 3, 0, 3, 2, 1, 2, 3]
    shapes = [
        zorCollide.Box(1, 1, 1), zorCollide.Sphere(1), zorCollide.Capsule(0.5, 1), zorCollide.Cylinder(0.5, 1),
        zorCollide.Cone(0.5, 1), zorCollide.Plane(zor.Vec3(0, 0, 1), zor.Vec3()),
        zorCollide.Convex(zor.Vec3Vector(tetrahedron)),
        zorCollide.Trimesh(zor.Vec3Vector(tetrahedron), zor.UInt32Vector(triangles)),
        zorCollide.HeightField(3, 3, 2.0, 2.0)]
    for shape in shapes:
        geometry = zorCollide.Geometry(shape)
        simulation.add(geometry)
        node = zorOSG.createVisual(geometry, root)
        assert type(node) is zorOSG.GeometryNode
        assert node.computeBoundingBox().valid()
        assert zorOSG.findGeometryNode(geometry, root).this == node.this
        assert len(zorOSG.findGeometryNodes(geometry, root)) == 1
        assert node.getGeometry().this == geometry.this
    assert root.getNumChildren() == len(shapes)


def test_the_parts_of_a_body(application):
    body = zor.RigidBody()
    for x in (-1, 1):
        body.add(zorCollide.Geometry(zorCollide.Sphere(0.3)), zor.AffineMatrix4x4.translate(x, 0, 0))
    application.getSimulation().add(body)
    result = zorOSG.createVisualWithGeometryConnection(body, application.getSceneRoot())
    group, indices = result
    assert isinstance(group, osg.Group) and indices == [0, 1]
    assert result.thisown


def test_missing_files_are_named(tmp_path, capfd):
    assert zorOSG.readNodeFile(str(tmp_path / "missing.obj")) is None
    assert "missing.obj" in capfd.readouterr().err


def test_an_off_screen_target_gives_pixels(application, tmp_path):
    fill(application)
    target = zorOSG.RenderToImage(64, 48)
    target.setReferenceCamera(application.getCamera())
    application.addRenderTarget(target)
    application.stopAfter(0.2)
    assert application.run() == 0
    pixels = numpy.asarray(target.getImage())
    assert pixels.shape[:2] == (48, 64)
    assert pixels[..., :3].std() > 1  # not one colour
    path = tmp_path / "target.png"
    assert target.saveImage(str(path)) and path.stat().st_size > 0


def test_a_whole_script_ends_quietly(run_python):
    result = run_python("""
import sys, zor, zorCollide, zorIO, zorOSG, zorSDK
class Keys(zorOSG.GuiEventListener):
    def update(self, x, y):
        self.updates = getattr(self, "updates", 0) + 1
arguments = zorIO.ArgumentParser(["quiet"])
app = zorOSG.ExampleApplication()
assert app.init(arguments, True)
app.initSimulation()
body = zor.RigidBody("b")
app.getSimulation().add(body)
keys = Keys()
app.getSimulation().add(keys)
class L(zorOSG.ExampleApplicationListener):
    def postFrame(self, app): pass
listener = L()
app.addListener(listener)
app.stopAfter(0.5)
assert app.run() == 0
assert not app.hasRenderContext()
print("done", body.getPosition().z() < 0)
""")
    assert result.stdout == "done True\n"
