"""A viewer without a display: what is drawn, events, files."""

import gc

import numpy
import pytest

import osg
import osgDB
import osgGA
import osgText
import osgViewer
import zorOSG
import zorPython

WIDTH, HEIGHT = 160, 120


@pytest.fixture
def viewer():
    viewer = osgViewer.Viewer()
    viewer.setUpOffScreen(WIDTH, HEIGHT)
    camera = viewer.getCamera()
    camera.setClearColor(osg.Vec4(0, 0, 0, 1))
    camera.setProjectionMatrixAsOrtho(-1, 1, -1, 1, 0.1, 10)
    camera.setViewMatrixAsLookAt(osg.Vec3d(0, 0, 5), osg.Vec3d(), osg.Vec3d(0, 1, 0))
    return viewer


def square(color=(255, 0, 0, 255)):
    """The left half of the picture."""
    geometry = osg.Geometry()
    geometry.setVertexArray(osg.Vec3Array([(-1, -1, 0), (0, -1, 0), (0, 1, 0), (-1, 1, 0)]))
    geometry.setColorArray(osg.Vec4ubArray([color]))
    geometry.addPrimitiveSet(osg.DrawElementsUShort(osg.PrimitiveSet.TRIANGLES, [0, 1, 2, 0, 2, 3]))
    geometry.getOrCreateStateSet().setMode(osg.GL_LIGHTING, osg.StateAttribute.OFF)
    return geometry


def picture(viewer):
    pixels = numpy.asarray(viewer.grab()).astype(int)
    assert pixels.shape == (HEIGHT, WIDTH, 3)
    return pixels


def test_a_geometry_from_numpy_is_drawn_and_redrawn(viewer):
    geometry = square()
    viewer.setSceneData(geometry)
    pixels = picture(viewer)
    assert (pixels[:, : WIDTH // 2 - 1] == (255, 0, 0)).all() and (pixels[:, WIDTH // 2 + 1 :] == 0).all()
    numpy.asarray(geometry.getVertexArray())[:, 0] += 1
    numpy.asarray(geometry.getColorArray())[:] = (0, 255, 0, 255)
    geometry.dirty()
    pixels = picture(viewer)
    assert (pixels[:, WIDTH // 2 + 1 :] == (0, 255, 0)).all() and (pixels[:, : WIDTH // 2 - 1] == 0).all()


@pytest.mark.parametrize("use_buffers", [False, True])
def test_what_leads_out_of_the_arrays_is_not_drawn(viewer, use_buffers, capfd):
    root, geometry = osg.Group(), square()
    geometry.setName("spoilt")
    geometry.setUseVertexBufferObjects(use_buffers)
    root.addChild(geometry)
    viewer.setSceneData(root)
    picture(viewer)
    numpy.asarray(geometry.getPrimitiveSet(0))[:] = 60000
    geometry.dirty()
    root.addChild(square((0, 0, 255, 255)))
    pixels = picture(viewer)
    assert (pixels[:, : WIDTH // 2 - 1] == (0, 0, 255)).all()
    assert "'spoilt' is not drawn: 60001 vertices are needed, there are 4" in capfd.readouterr().err


def test_a_texture_from_numpy(viewer):
    geometry = square((255, 255, 255, 255))
    geometry.setTexCoordArray(0, osg.Vec2Array([(0, 0), (1, 0), (1, 1), (0, 1)]))
    texture = osg.Texture2D(osg.Image.fromArray(numpy.array([[[255, 0, 0], [0, 255, 0]], [[0, 0, 255], [255, 255, 0]]], "B")))
    texture.setFilter(osg.Texture.MIN_FILTER, osg.Texture.NEAREST)
    texture.setFilter(osg.Texture.MAG_FILTER, osg.Texture.NEAREST)
    geometry.getOrCreateStateSet().setTextureAttributeAndModes(0, texture)
    viewer.setSceneData(geometry)
    pixels = picture(viewer)
    # The first row of the array is the lowest.
    assert [pixels[y, x].tolist() for y, x in ((10, 10), (10, 70), (110, 10), (110, 70))] == \
        [[255, 0, 0], [0, 255, 0], [0, 0, 255], [255, 255, 0]]


def test_a_shader_with_a_uniform(viewer):
    geometry, program = square(), osg.Program()
    program.addShader(osg.Shader(osg.Shader.FRAGMENT, "uniform vec3 color; void main() { gl_FragColor = vec4(color, 1.0); }"))
    state = geometry.getOrCreateStateSet()
    state.setAttributeAndModes(program)
    state.addUniform(osg.Uniform("color", osg.Vec3(0, 1, 1)))
    viewer.setSceneData(geometry)
    assert picture(viewer)[60, 20].tolist() == [0, 255, 255]
    state.getUniform("color").set(osg.Vec3(1, 0, 1))
    assert picture(viewer)[60, 20].tolist() == [255, 0, 255]


def test_text_with_umlauts(viewer):
    text = osgText.Text()
    text.setText("Grüße")
    text.setCharacterSize(0.5)
    text.setAlignment(osgText.Text.CENTER_CENTER)
    assert text.getText() == "Grüße" and text.getLineCount() <= 1
    root = osg.Group()
    root.addChild(text)
    assert type(root[0]) is osgText.Text and root[0] == text
    viewer.setSceneData(root)
    assert picture(viewer).max() > 200
    for wrong in (0, -1, float("nan"), float("inf")):
        with pytest.raises(RuntimeError):
            text.setCharacterSize(wrong)


def test_callbacks_of_nodes_and_cameras_run_in_a_frame(viewer):
    order = []

    class Drawn(osg.CameraDrawCallback):
        def __call__(self, info):
            order.append(("drawn", info.getCurrentCamera() == viewer.getCamera()))

    drawn = Drawn()
    root = osg.Group()
    root.addChild(square())
    root.setUpdateCallback(lambda node, visitor: order.append("updated"))
    root.setCullCallback(lambda node, visitor: order.append("culled"))
    viewer.getCamera().setPostDrawCallback(drawn)
    viewer.setSceneData(root)
    viewer.frame(5.0)
    assert order == ["updated", "culled", ("drawn", True)] and viewer.getFrameStamp().getSimulationTime() == 5
    root.setCullCallback(lambda node, visitor: False)
    assert picture(viewer).max() == 0

    def nested(node, visitor):
        order.append("nested")
        with pytest.raises(RuntimeError, match="already"):
            viewer.frame()
        with pytest.raises(RuntimeError, match="afterwards"):
            osg.optimize(root)

    root.setUpdateCallback(nested)
    viewer.frame()
    assert order[-2:] == ["nested", ("drawn", True)]


class Keys(osgGA.GUIEventHandler):
    def __init__(self):
        super().__init__()
        self.events = []

    def handle(self, event, view):
        if event.getEventType() == osgGA.GUIEventAdapter.KEYDOWN:
            self.events.append((event.getKey(), event, view))
            view.requestRedraw()
            return True
        return False


def test_events_reach_handlers_and_may_be_kept(viewer):
    viewer.setSceneData(osg.Group())
    keys = Keys()
    viewer.addEventHandler(keys)
    viewer.addEventHandler(Keys())  # dies at once
    viewer.getEventQueue().keyPress(ord("a"))
    viewer.getEventQueue().keyPress(osgGA.GUIEventAdapter.KEY_F1)
    viewer.frame()
    assert [key for key, *_ in keys.events] == [ord("a"), osgGA.GUIEventAdapter.KEY_F1]
    _, event, view = keys.events[0]
    assert event.getKey() == ord("a")
    with pytest.raises(TypeError, match="null reference"):
        view.requestRedraw()
    viewer.removeEventHandler(keys)
    viewer.getEventQueue().keyPress(ord("b"))
    viewer.frame()
    assert len(keys.events) == 2 and zorPython.getErrors() == []
    with pytest.raises(TypeError):
        viewer.addEventHandler(None)


def test_manipulators_move_the_camera(viewer):
    viewer.setSceneData(square())
    manipulator = osgGA.TrackballManipulator()
    viewer.setCameraManipulator(manipulator)
    manipulator.setTransformation(osg.Vec3d(0, -10, 0), osg.Vec3d(), osg.Vec3d(0, 0, 1))
    viewer.frame()
    eye, _, up = viewer.getCamera().getViewMatrixAsLookAt()
    assert tuple(eye) == pytest.approx((0, -10, 0)) and tuple(up) == pytest.approx((0, 0, 1))
    assert manipulator.getDistance() == pytest.approx(10) and viewer.getCameraManipulator() == manipulator


def test_statistics(viewer):
    viewer.setSceneData(square())
    stats = viewer.getViewerStats()
    stats.collectStats("update", True)
    for _ in range(3):
        viewer.frame()
    numbers = stats.getAttributes(stats.getLatestFrameNumber() - 1)
    assert numbers["Update traversal time taken"] >= 0
    assert stats.getAttributes(1 << 30) == {} and stats.getAveragedAttribute("nothing") is None


def test_a_viewer_without_a_window_says_so():
    viewer = osgViewer.Viewer()
    for use in (viewer.frame, viewer.grab, lambda: viewer.setUpViewInWindow(0, 0, 100, 100), lambda: viewer.setUpOffScreen(0, 100),
                lambda: viewer.setUpOffScreen(1 << 30, 1 << 30)):
        with pytest.raises(RuntimeError):
            use()


def test_a_manipulator_outlives_its_viewer():
    manipulator = osgGA.OrbitManipulator()
    viewer = osgViewer.Viewer()
    viewer.setCameraManipulator(manipulator)
    elevation = manipulator.getElevation()
    del viewer
    gc.collect()
    assert manipulator.getElevation() == elevation


def test_files_and_bytes(tmp_path):
    image = osg.Image.fromArray(numpy.random.default_rng(1).integers(0, 255, (5, 7, 3), dtype="B"))
    data = osgDB.writeImage(image, "png")
    assert data.startswith(b"\x89PNG") and numpy.array_equal(osgDB.readImage(data, "png"), image)
    root = osg.Group()
    root.addChild(square())
    root.setUserValue("kept", "yes")
    again = osgDB.readNode(osgDB.writeNode(root, "osgt"), "osgt")
    assert type(again[0]) is osg.Geometry and again.getUserValue("kept") == "yes"
    assert again[0].getVertexArray().tolist() == root[0].getVertexArray().tolist() and again[0].getPrimitiveSet(0).tolist() == [0, 1, 2, 0, 2, 3]
    (tmp_path / "models").mkdir()
    osgDB.writeNodeFile(root, str(tmp_path / "models" / "square.osgb"))
    options = osgDB.Options("noRotation")
    options.setDatabasePathList([str(tmp_path / "models")])
    assert len(osgDB.readNodeFile("square.osgb", options)) == 1
    folders = osgDB.getDataFilePathList()
    try:
        osgDB.setDataFilePathList([*folders, str(tmp_path / "models")])
        assert osgDB.findDataFile("square.osgb") == str(tmp_path / "models" / "square.osgb")
    finally:
        osgDB.setDataFilePathList(folders)
    # The visualisation layer takes the same options.
    assert zorOSG.readNodeFile(str(tmp_path / "models" / "square.osgb"), options).asGroup().getNumChildren() == 1
    assert zorOSG.readNodeFile(str(tmp_path / "models" / "square.osgb"), None, False) is not None


def test_files_that_cannot_be_read_are_named(tmp_path):
    broken = tmp_path / "broken.png"
    broken.write_bytes(b"no picture")
    for use, what in ((lambda: osgDB.readImageFile(str(broken)), "broken.png"), (lambda: osgDB.readNodeFile("none.osgt"), "none.osgt"),
                      (lambda: osgDB.readImage(b"no picture", "png"), "png"), (lambda: osgDB.readNode(b"", "osgt"), "osgt"),
                      (lambda: osgDB.readImage(b"", "unheardof"), "unheardof"), (lambda: osgDB.writeImage(osg.Image(), "png"), "no pixels"),
                      (lambda: osgDB.writeNodeFile(osg.Node(), str(tmp_path / "no" / "x.osgt")), "x.osgt")):
        with pytest.raises(RuntimeError, match=what):
            use()
    for wrong in ("text", None, 5):
        with pytest.raises(TypeError):
            osgDB.readImage(wrong, "png")


def test_the_camera_is_no_part_of_its_scene():
    viewer = osgViewer.Viewer()
    viewer.setUpOffScreen(16, 16)
    group = osg.Group()
    group.addChild(viewer.getCamera())
    for scene in (viewer.getCamera(), group):
        with pytest.raises(RuntimeError, match="the viewer's own camera can't be in the scene"):
            viewer.setSceneData(scene)
    viewer.setSceneData(osg.Group())
    viewer.frame()
