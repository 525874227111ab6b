"""View functions and the scene decorator as scripts use them."""

import numpy
import pytest

import osg
import osgDB
import zor
import zorCollide
import zorOSG


@pytest.fixture
def application(new_application):
    app = new_application("--window", "160x120")
    app.getSceneDecorator().setBackgroundColor(zor.Vec3(0, 0, 0))
    app.setCameraHome(zor.Vec3(0, -6, 1), zor.Vec3(0, 0, 0))
    return app


def picture(app, folder, name):
    """Rows from below, values 0 to 255."""
    path = folder / f"{name}.png"
    app.takeScreenShot(str(path))
    timer = zor.HighAccuracyTimer(True)
    for _ in range(2):
        app.executeOneStepWithGraphics(timer)
    return numpy.asarray(osgDB.readImageFile(str(path))).astype(int)


def test_debug_rendering_is_switched_as_a_whole_and_by_kind(application, tmp_path):
    body = zor.RigidBody(zorCollide.Geometry(zorCollide.Box(zor.Vec3(1, 1, 1))), "box")
    body.setMotionControl(zor.RigidBody.STATIC)
    application.getSimulation().add(body)
    assert not application.getEnableDebugRenderer() and not picture(application, tmp_path, "off").any()
    application.setEnableDebugRenderer(True)
    frame = picture(application, tmp_path, "shapes")
    assert application.getEnableDebugRenderer() and 100 < (frame.max(axis=2) > 60).sum() < 5000

    names = []

    class Hide(osg.NodeVisitor):
        def apply(self, node):
            names.append(node.getName())
            if node.getName() == "CollisionShapes":
                node.setNodeMask(0)
            self.traverse(node)

    application.getSceneZorOSGRoot().accept(Hide(osg.NodeVisitor.TRAVERSE_ALL_CHILDREN))
    assert "CollisionShapes" in names
    assert not picture(application, tmp_path, "hidden").any()
    application.setEnableTextDebugRendering(True)
    assert picture(application, tmp_path, "named").any()
    assert application.getRenderProxyFactory().own() is False


def test_a_capture_reads_a_target_of_its_own(application):
    assert application.getVideoCaptureRendertoTexture() is None
    application.setupVideoCaptureRenderTotexture()
    target = application.getVideoCaptureRendertoTexture()
    assert type(target) is zorOSG.RenderToTexture and tuple(target.getSize()) == (160, 120)


def test_the_decorators_children(application):
    decorator = zorOSG.SceneDecorator(320, 240)
    children = [osg.Group() for _ in range(4)]
    assert all(decorator.addChild(child) for child in children[:3])
    assert decorator.insertChild(0, children[3]) and decorator.getNumChildren() == 4
    assert decorator.removeChild(0) and decorator.getNumChildren() == 3
    assert decorator.removeChild(children[0]) and decorator.removeChildren(0, 2)
    assert not decorator.addChild(None)
    with pytest.raises(TypeError, match=r"in method 'SceneDecorator_addChild', argument 2 of type 'osg::Node \*'"):
        decorator.addChild("node")
    with pytest.raises(TypeError, match=r"overloaded function 'SceneDecorator_removeChild'.\n.*\n    zorOSG::SceneDecorator::removeChild\(osg::Node \*\)"):
        decorator.removeChild("node")
    with pytest.raises(RuntimeError, match="shadow method"):
        decorator.setShadowMethod(7)
    for method in range(7):
        decorator.setShadowMethod(method)
        assert decorator.getShadowMethod() == method


def test_the_scene_graphs_log_level_is_a_number(application):
    application.setOsgNotifyLevel(2)
    with pytest.raises(TypeError, match="argument 2 of type 'osg::NotifySeverity'"):
        application.setOsgNotifyLevel("warnings")
