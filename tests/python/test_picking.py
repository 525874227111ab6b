"""Picking, embedded windows and cameras from Python; input as a viewer, a host and an X server hand it on."""

import ctypes
import os
import subprocess
import sys
import time

import numpy
import pytest

import _zorOSG
import osg
import zor
import zorCollide
import zorOSG
import zorSDK
from conventions import error_text, mismatch

SHIFT = 0xFFE1
EYE, MIDDLE, UP = zor.Vec3(0, -10, 0), zor.Vec3(), zor.Vec3(0, 0, 1)


def add_box(simulation, root):
    """A red box that floats in the middle of the view."""
    simulation.setUniformGravity(zor.Vec3())
    body = zor.RigidBody(zorCollide.Geometry(zorCollide.Box(zor.Vec3(0.5, 0.5, 0.5))), "box")
    simulation.add(body)
    zorOSG.setDiffuseColor(zorOSG.createVisual(body, root), zor.Vec4f(1, 0, 0, 1))
    return body


@pytest.fixture
def scene(new_application):
    app = new_application("--window", "320x240")
    box = add_box(app.getSimulation(), app.getSceneRoot())
    app.setCameraHome(EYE, MIDDLE, UP)
    timer = zor.HighAccuracyTimer()
    timer.start()

    def frames(count):
        for _ in range(count):
            app.executeOneStepWithGraphics(timer)

    frames(1)
    return app, box, frames


class Keys(zorOSG.GuiEventListener):
    def __init__(self):
        super().__init__()
        self.seen = []

    def keyboard(self, key, modKeyMask, x, y, keydown):
        self.seen.append((key, keydown))
        return False

    def mouse(self, buttonMask, state, x, y):
        self.seen.append((buttonMask, state, round(x), round(y), self.getModKeyMask()))
        return False


def test_a_drag_through_the_event_queue_moves_the_body(scene):
    app, box, frames = scene
    keys = Keys()
    app.getSimulation().add(keys)
    queue, handler = app.getViewer().getEventQueue(), app.getPickHandler()
    queue.keyPress(SHIFT)
    queue.mouseButtonPress(160, 120, 1)
    frames(1)
    assert (SHIFT, True) in keys.seen
    button, state, x, y, modifiers = keys.seen[-1]
    assert (button, state, modifiers) == (zorSDK.GuiEventListener.LEFT_BUTTON, zorSDK.GuiEventListener.DOWN, 1)
    assert abs(x - 160) <= 1 and abs(y - 120) <= 1
    assert handler.getPickedBody().getName() == "box"
    queue.mouseMotion(240, 120)
    frames(60)
    assert box.getPosition().x() > 1
    queue.mouseButtonRelease(240, 120, 1)
    frames(1)
    assert handler.getPickedBody() is None and handler.getForce() == zor.Vec3()


def test_results_of_picking(scene):
    app, box, _ = scene
    handler = zorOSG.PickHandler(app.getViewer())
    assert "no simulation" in error_text(RuntimeError, handler.pick, 1, 1)
    handler.setSimulation(app.getSimulation())
    hit = handler.pick(160, 120)
    assert isinstance(hit, zorSDK.PickResult) and hit.thisown
    assert hit.hasHit() and hit.isDynamic() and hit.getRigidBody().getName() == "box"
    assert abs(hit.getPoint().y() + 0.5) < 0.01 and hit.getNormal().equals(zor.Vec3(0, -1, 0), 1e-6)
    assert hit.getGeometry().getRigidBody().getName() == "box" and isinstance(hit.getShape(), zorCollide.Box)
    handler.reset()
    assert handler.getPickedBody() is None
    miss = handler.intersect(zor.Vec3(0, 5, 5), zor.Vec3(0, -5, 5), False)
    assert not miss.hasHit() and miss.getRigidBody() is None and miss.getGeometry() is None
    assert handler.intersect(160, 120, True).hasHit()

    near, far, same_near, same_far = zor.Vec3(), zor.Vec3(), zor.Vec3(), zor.Vec3()
    handler.getNearFarPoints(app.getCamera(), near, far, 160, 120)
    zorOSG.getNearFarPoints(app.getCamera(), 160, 120, same_near, same_far)
    assert near == same_near and far == same_far and near.y() < -0.5 < far.y()
    handler.setInverseTransform(zor.AffineMatrix4x4(zor.Vec3(7, 0, 0)))
    handler.getNearFarPoints(app.getCamera(), near, far, 160, 120, True)
    assert abs(near.x() - same_near.x() - 7) < 1e-9
    handler.getNearFarPoints(app.getCamera(), near, far, 160, 120, False)
    assert near == same_near
    assert error_text(TypeError, _zorOSG.getNearFarPoints, app.getCamera(), 1, 1, None, far) == (
        "invalid null reference in method 'getNearFarPoints', argument 4 of type 'zor::Vec3 &'")

    contact = zorOSG.getHoveredGeometryContact(app.getCamera(), app.getSimulation().getSpace(), 160, 120)
    assert contact.thisown and contact.getGeometry1().getRigidBody().getName() == "box"
    app = None  # the handler outlives the application
    box.setPosition(zor.Vec3(0, 0, 1))
    handler.updateRenderState()


def test_prototypes():
    prefix = "zorOSG::PickHandler::"
    assert error_text(TypeError, _zorOSG.new_PickHandler, 5) == mismatch(
        "new_PickHandler", prefix + "PickHandler(osgViewer::Viewer *,osg::Group *)", prefix + "PickHandler(osgViewer::Viewer *)")
    handler = zorOSG.PickHandler(None)
    assert error_text(TypeError, _zorOSG.PickHandler_intersect, handler, 5) == mismatch(
        "PickHandler_intersect", prefix + "intersect(zor::Vec3 const &,zor::Vec3 const &,bool)", prefix + "intersect(float,float,bool)")
    assert error_text(TypeError, _zorOSG.PickHandler_getNearFarPoints, handler, 5) == mismatch(
        "PickHandler_getNearFarPoints",
        prefix + "getNearFarPoints(osg::Camera const *,zor::Vec3 &,zor::Vec3 &,float,float,bool) const",
        prefix + "getNearFarPoints(osg::Camera const *,zor::Vec3 &,zor::Vec3 &,float,float) const")
    form = "zorOSG::setOrbitCamera(osgViewer::Viewer *,osg::Group *,zor::Vec3 const &,zor::Vec3 const &,zor::Vec3 const &"
    assert error_text(TypeError, _zorOSG.setOrbitCamera, 5) == mismatch("setOrbitCamera", form + ",int)", form + ")")
    assert zorOSG.setOrbitCamera(None, None, EYE, MIDDLE, UP) is False
    assert error_text(TypeError, _zorOSG.PickHandler_mouse, handler, None, 0, 1, 1) == (
        "in method 'PickHandler_mouse', argument 2 of type 'zorSDK::GuiEventListener::MouseButtonMask'")
    assert handler.getActivateModKeyMask() == 3 and handler.mouse(1, 0, 1, 1) is False
    assert handler.getCamera() is None and "no camera" in error_text(RuntimeError, picker_without_camera().pick, 1, 1)


def picker_without_camera():
    handler = zorOSG.PickHandler(None)
    handler.kept = zorSDK.Simulation()  # only observed
    handler.setSimulation(handler.kept)
    return handler


class Host:
    """A program with an OpenGL context of its own, made by EGL's C functions."""

    def __init__(self, width, height):
        self.egl, self.gl = ctypes.CDLL("libEGL.so.1"), ctypes.CDLL("libGL.so.1")
        for name in ("eglGetPlatformDisplay", "eglCreateContext", "eglCreatePbufferSurface"):
            getattr(self.egl, name).restype = ctypes.c_void_p
        self.display = ctypes.c_void_p(self.egl.eglGetPlatformDisplay(0x31DD, None, None))
        assert self.egl.eglInitialize(self.display, None, None)
        self.egl.eglBindAPI(0x30A2)
        wanted = (ctypes.c_int32 * 11)(0x3033, 1, 0x3040, 8, 0x3024, 8, 0x3025, 24, 0x3021, 8, 0x3038)
        config, count = ctypes.c_void_p(), ctypes.c_int32()
        assert self.egl.eglChooseConfig(self.display, wanted, ctypes.byref(config), 1, ctypes.byref(count)) and count.value
        self.context = ctypes.c_void_p(self.egl.eglCreateContext(self.display, config, None, None))
        self.surface = ctypes.c_void_p(self.egl.eglCreatePbufferSurface(
            self.display, config, (ctypes.c_int32 * 5)(0x3057, width, 0x3056, height, 0x3038)))
        self.width, self.height = width, height
        self.make_current(True)

    def make_current(self, flag):
        used = (self.surface, self.surface, self.context) if flag else (None, None, None)
        assert self.egl.eglMakeCurrent(self.display, *used)

    def pixels(self):
        picture = numpy.zeros((self.height, self.width, 4), numpy.uint8)
        self.gl.glReadPixels(0, 0, self.width, self.height, 0x1908, 0x1401, picture.ctypes.data_as(ctypes.c_void_p))
        return picture.astype(int)

    def close(self):
        self.make_current(False)
        self.egl.eglDestroySurface(self.display, self.surface)
        self.egl.eglDestroyContext(self.display, self.context)


def red(picture):
    return ((picture[..., 0] > 80) & (picture[..., 0] > 2 * picture[..., 1])).sum()


def test_a_window_embedded_in_another_program():
    window = zorOSG.EmbeddedGLWindow()
    assert window.init(0, 0, 100, 80) is False and window.getRoot() is None  # there is no context
    assert "call init() first" in error_text(RuntimeError, window.frame)
    host = Host(100, 80)
    try:
        assert window.init(0, 0, 100, 80) is True
        simulation = zorSDK.Simulation()
        window.setSimulation(simulation)
        add_box(simulation, window.getRoot())
        window.fitSceneIntoView()
        window.initGL()
        for _ in range(2):
            window.frame()
        shown = red(host.pixels())
        assert shown > 500
        window.wheelEvent(0)
        for _ in range(3):
            window.frame()
        assert abs(red(host.pixels()) - shown) > 50  # nearer or farther
        before = zorOSG.CameraData(window.getCamera()).eye
        window.mousePressEvent(50, 40, 0)
        window.frame()
        for x in (55, 60, 70):
            window.mouseMoveEvent(x, 45)
            window.frame()
        assert (zorOSG.CameraData(window.getCamera()).eye - before).length() > 0.1
        window.getEventQueue().keyPress(ord("k"))
        window.frame()
        host.make_current(False)
        assert "no OpenGL context is current" in error_text(RuntimeError, window.frame)
        host.make_current(True)
        camera, root, decorator = window.getCamera(), window.getRoot(), window.getSceneDecorator()
        window.clear()
        assert window.getSimulation() is None and window.getWidth() == 0
        assert window.init(0, 0, 100, 80)
        window.frame()
        assert red(host.pixels()) == 0  # the scene is gone
        del window  # with the context, and what it lent stays usable
        assert root.getNumChildren() == 1 and camera.getViewport() and decorator.getNumChildren() == 1
        left = zorOSG.EmbeddedGLWindow()
        assert left.init(0, 0, 100, 80)
        left.frame()
    finally:
        host.close()
    del left  # after its context


WINDOW = """
import sys
import zor, zorCollide, zorIO, zorOSG, zorSDK
sys.path.insert(0, sys.argv.pop(1))
from test_picking import Keys, add_box, EYE, MIDDLE, UP

class Talk(zorOSG.ExampleApplicationListener):
    def __init__(self):
        super().__init__()
        self.frames = 0

    def postFrame(self, app):
        self.frames += 1
        if self.frames == 10:
            print("window", app.getHWND(), flush=True)
        if app.getPickHandler().getPickedBody() and box.getPosition().x() > 0.8:
            print("dragged", flush=True)

app = zorOSG.ExampleApplication()
assert app.init(zorIO.ArgumentParser(["test", "--window", "320x240", "--stopAfter", "120"]))
app.initSimulation()
app.setAllowWindowResizing(False)
keys, talk = Keys(), Talk()
app.getSimulation().add(keys)
box = add_box(app.getSimulation(), app.getSceneRoot())
app.setCameraHome(EYE, MIDDLE, UP)
app.addListener(talk)
app.run()
print("keys", [key for key in keys.seen if len(key) == 2])
print("grid", app.getEnableGrid(), "turned", (app.getCameraData().eye - EYE).length() > 0.01, "box", box.getPosition(), "stopped", app.shouldStop())
"""


def test_a_person_at_a_window(x_server):
    environment = {**os.environ, "DISPLAY": x_server, "PYTHONUNBUFFERED": "1"}
    script = subprocess.Popen([sys.executable, "-c", WINDOW, os.path.dirname(__file__)], env=environment, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE)

    def read_until(word):
        while line := script.stdout.readline():
            if line.startswith(word):
                return line.split()
        pytest.fail(script.stderr.read())

    def do(*words):
        subprocess.run(["xdotool", *map(str, words)], env=environment, check=True, timeout=60)

    try:
        handle = read_until("window")[1]
        do("windowfocus", handle)
        do("mousemove", "--window", handle, 160, 120)
        do("keydown", "shift", "mousedown", 1)
        time.sleep(0.3)
        for x in range(170, 250, 10):
            do("mousemove", "--window", handle, x, 120)
        read_until("dragged")
        do("mouseup", 1, "keyup", "shift")
        do("key", "g")
        do("key", "Escape")
        out, err = script.communicate(timeout=120)
    finally:
        script.kill()
    assert script.returncode == 0 and "Drawing in a window" in err and "Traceback" not in err, err
    pressed = out.split("keys", 1)[1].splitlines()[0]
    assert "(65505, True)" in pressed and f"({ord('g')}, True)" in pressed and "(65307, True)" in pressed
    assert "grid True" in out and "turned False" in out and "stopped False" in out, out
