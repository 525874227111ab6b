"""Panels, clip planes, paths, colour maps and updaters, as scripts use them."""

import numpy
import pytest

import osg
import osgSim
import osgViewer
import zor
import zorCollide
import zorOSG
import zorRender
import zorSDK


@pytest.fixture
def scene():
    """A viewer that looks along y at a plain decorated scene over black, with a root and a simulation."""
    viewer = osgViewer.Viewer()
    viewer.setUpOffScreen(160, 120)
    viewer.getCamera().setViewMatrixAsLookAt(osg.Vec3d(0, -10, 0), osg.Vec3d(0, 0, 0), osg.Vec3d(0, 0, 1))
    decorator = zorOSG.SceneDecorator(160, 120)
    decorator.setBackgroundColor(zor.Vec3(0, 0, 0))
    decorator.setEnableLogo(False)
    viewer.setSceneData(decorator)
    root = osg.Group()
    decorator.addChild(root)
    simulation = zorSDK.Simulation()
    simulation.setUniformGravity(zor.Vec3(0, 0, 0))
    return viewer, root, simulation


def pixels(viewer):
    viewer.frame()
    return numpy.asarray(viewer.grab()).astype(int)


def test_panels_are_made_found_and_taken_away(scene):
    viewer, root, _ = scene
    body, other = zor.RigidBody(), zor.RigidBody()
    panel = zorOSG.createPanel(root, zor.Vec2(0.5, 0), zor.Vec2(0.5, 0.5), zor.Vec4(1, 0, 0, 1), body)
    assert type(root[0]) is zorOSG.Panel and root[0] == panel
    assert panel.match(body) and not panel.match(other) and not panel.match(None)
    picture = pixels(viewer)
    assert (picture[:58, 82:] == (255, 0, 0)).all() and (picture[62:] == 0).all() and (picture[:, :78] == 0).all()
    panel.setColor(zor.Vec4(0, 0, 1, 0.5))
    panel.setPosition(zor.Vec2(0, 0.5))
    assert (panel.getPosition(), panel.getSize(), panel.getColor()) == ((0, 0.5), (0.5, 0.5), (0, 0, 1, 0.5))
    assert tuple(pixels(viewer)[90, 40]) in ((0, 0, 127), (0, 0, 128))
    panel.uninitialize(root)
    assert not panel.isValid() and len(root) == 0 and (pixels(viewer) == 0).all()
    root.addChild(panel)
    assert panel.isValid()
    panel.update()
    with pytest.raises(AttributeError):
        zorOSG.Panel()
    with pytest.raises(RuntimeError, match="size must not be negative"):
        panel.setSize(zor.Vec2(-1, 0))
    with pytest.raises(TypeError, match="null reference"):
        zorOSG.Panel.setSize(None, zor.Vec2(1, 1))


def test_clip_planes_in_all_forms(scene):
    viewer, root, simulation = scene
    for plane in (zorOSG.ClipPlane(zor.Plane(0, 0, 2, -4)), zorOSG.ClipPlane(zor.Vec3(0, 0, 2), zor.Vec3(0, 0, 1)), zorOSG.ClipPlane(0, 0, 1, -2)):
        assert plane.getPlane() == zor.Plane(0, 0, 1, -2) and plane.getPosition() == (0, 0, 2) and plane.getNormal() == (0, 0, 1)
        assert isinstance(plane, osg.ClipNode) and plane.getEnable()
    with pytest.raises(TypeError, match=r"ClipPlane::ClipPlane\(zor::Plane const &\)"):
        zorOSG.ClipPlane(1)
    ball = zorCollide.Geometry(zorCollide.Sphere(1))
    root.addChild(plane)
    zorOSG.createVisual(ball, plane)
    assert (pixels(viewer) == 0).all()
    plane.setPosition(zor.Vec3(0, 0, 0))
    half = (pixels(viewer).sum(axis=2) > 30).sum(axis=1)
    plane.setEnable(False)
    whole = (pixels(viewer).sum(axis=2) > 30).sum(axis=1)
    assert (half[:58] == 0).all() and (half[62:] == whole[62:]).all() and whole[:58].sum() > 100
    particles = zor.ParticleSystem()
    plane.setParticleSystemToClip(particles)
    plane.clipAgainstParticleSystem()
    plane.setParticleSystemToClip(None)
    planes = []
    with pytest.raises(RuntimeError, match="only 8 planes can be enabled at a time"):
        planes += [zorOSG.ClipPlane(0, 0, 1, 0) for _ in range(9)]
    numbered = zorOSG.ClipPlane(0, 0, 1, 0)
    numbered.getClipPlane(0).setClipPlaneNum(100)
    del numbered


def test_colour_maps(scene):
    colours = zorOSG.ScalarColorMap(zorRender.ColorVector([(0, 0, 0, 1), (1, 0.5, 0, 1)]), 10, 0)
    assert (colours.getMinScalar(), colours.getMaxScalar()) == (0, 10)
    colours.setMinScalar(20)
    assert colours.getMinScalar() == 0
    assert colours.getColor(5) == zor.Vec4f(0.5, 0.25, 0, 1) and colours.getColor(5, True) == zor.Vec4f(0.5, 0.25, 0, 0.5)
    assert type(colours.getColorOSG(5)) is type(osg.Vec4(0, 0, 0, 0)) and tuple(colours.getColorOSG(10, True)) == (1, 0.5, 0, 1)
    assert zorOSG.ScalarColorMap(zorOSG.ScalarColorMap.GRAYSCALE, 1.5e-323, 2.5e-323).getColor(2e-323) == zor.Vec4f(0.5, 0.5, 0.5, 1)
    assert len(colours.getColors()) == 2 and len(zorOSG.ScalarColorMap().getColors()) > 20
    colours.setColorsFromPreset(zorOSG.ScalarColorMap.GRAYSCALE)
    kept = colours.getOsgColorRange()
    assert type(kept) is osgSim.ColorRangeRef and kept.valid() and (kept.get().getMin(), kept.get().getMax()) == (0, 10)
    assert tuple(kept.get().getColor(2.5)) == (0.25, 0.25, 0.25, 1)
    for call in (lambda: colours.getColor(float("nan")), lambda: colours.setColors(zorRender.ColorVector()), lambda: colours.setColorsFromPreset(11),
                 lambda: colours.setScalarInterval(0, float("inf")), lambda: kept.get().getColor(float("nan")),
                 lambda: osgSim.ColorRange(-3e38, 3e38).getColor(1)):
        with pytest.raises(RuntimeError):
            call()
    with pytest.raises(TypeError, match="zorOSG::ScalarColorMap::ColorRangePreset,zor::Real,zor::Real"):
        zorOSG.ScalarColorMap(1, 2)


def test_paths_are_drawn_and_found(scene):
    viewer, root, simulation = scene
    body = zor.RigidBody(zorCollide.Geometry(zorCollide.Sphere(0.1)))
    body.setPosition(zor.Vec3(-1.5, 0, 0))
    body.setVelocity(zor.Vec3(3, 0, 0))
    simulation.add(body)
    simulation.add(zor.ObserverFrame(body, zor.AffineMatrix4x4(zor.Vec3(0, 0, 1))))
    assert zorOSG.findRigidBodySystemDrawable(root) is None and zorOSG.findFrameTrajectoryDrawable(None) is None
    red = zorOSG.ScalarColorMap(zorRender.ColorVector([(1, 0, 0, 1)]), 0, 1)
    trails = zorOSG.createRigidBodyTrajectoriesVisual(simulation, root, 1.0, 100, red)
    frames = zorOSG.createFrameTrajectoryDrawable(simulation, root, 100, zor.Vec4f(0, 1, 0, 1))
    assert type(trails) is type(frames) is osg.Geode and [child.getName() for child in root] == ["body trajectories", "frame trajectories"]
    for _ in range(60):
        simulation.stepForward()
        viewer.frame()
    picture = pixels(viewer)
    reds, greens = (numpy.argwhere(picture[..., k] > 40) for k in (0, 1))
    assert abs(numpy.median(reds[:, 0]) - 60) < 3 and reds[:, 1].max() - reds[:, 1].min() > 50
    assert abs(numpy.median(greens[:, 0]) - 82) < 4 and len(greens) > 50
    for find, name in ((zorOSG.findRigidBodySystemDrawable, "RigidBodySystemDrawable"), (zorOSG.findFrameTrajectoryDrawable, "FrameTrajectoryDrawable")):
        assert name in repr(find(root))
    root.removeChildren()
    assert zorOSG.findRigidBodySystemDrawable(root) is None
    for arguments in ((2.0, 5), (0.5, 10001)):
        with pytest.raises(RuntimeError, match="createRigidBodyTrajectoriesVisual: "):
            zorOSG.createRigidBodyTrajectoriesVisual(simulation, root, *arguments)
    assert zorOSG.createRigidBodyTrajectoriesVisual(None, root, 1, 5) is None and len(root) == 0


def test_updaters_of_listeners(scene):
    viewer, root, simulation = scene
    simulation.setUniformGravity(zor.Vec3(0, 0, -10))
    simulation.add(zorCollide.Geometry(zorCollide.Plane(zor.Vec3(0, 0, 1), zor.Vec3())))
    ball = zor.RigidBody(zorCollide.Geometry(zorCollide.Sphere(0.5)))
    ball.setPosition(zor.Vec3(0, 0, 0.5))
    simulation.add(ball)

    class Touches(zorSDK.ContactEventListener):
        def impact(self, time, contact):
            return zorSDK.ContactEventListener.KEEP_CONTACT

    listener = Touches()
    simulation.add(listener)
    updater = zorOSG.createVisualUpdater(listener, root)
    assert isinstance(updater, zorSDK.EventListener)
    simulation.add(updater)
    del updater
    for _ in range(10):
        simulation.stepForward()
    assert (pixels(viewer).max(axis=2) > 100).sum() > 20
    assert zorOSG.createVisualUpdater(zorSDK.StepEventListener(), root) is None
    assert zorOSG.createVisualUpdater(listener, None) is None


def test_grids_in_three_dimensions(scene):
    viewer, root, _ = scene
    axes = [osg.Vec3(-1, -1, -1), osg.Vec3(2, 0, 0), osg.Vec3(0, 2, 0), osg.Vec3(0, 0, 2)]
    drawable = zorOSG.create3DGrid(1, 2, 3, *axes, 2.0)
    assert type(drawable) is osg.Geometry and drawable.getVertexArray().getNumElements() == 2 * (12 + 8 + 6)
    geode = zorOSG.create3DGrid(1, 2, 3, *(zor.Vec3(*axis) for axis in axes), 2.0, root)
    assert root[0] == geode and (pixels(viewer).max(axis=2) > 60).sum() > 200
    with pytest.raises(TypeError, match="create3DGrid"):
        zorOSG.create3DGrid(1, 2, 3, *axes)
    with pytest.raises(RuntimeError, match="create3DGrid: root is null"):
        zorOSG.create3DGrid(1, 2, 3, *(zor.Vec3(*axis) for axis in axes), 2.0, None)
