"""Drag bodies with the mouse: a wrecking ball on a chain is pulled back by a spring and let go at a wall of blocks.

In a window, hold shift and drag with the left button. Without a display the script moves the mouse itself:

./zor run examples/pick_and_drag.py --stopAfter 2.2 --screenShot held.png
"""

import sys

import osg
import osgGA
import zor
import zorCollide
import zorIO
import zorOSG
import zorSDK

LINKS = 8
LINK = 0.3  # length in m
BALL_RADIUS = 0.32
TOP = zor.Vec3(0, 0, 3.4)  # where the chain hangs
PRESS, PULLED, RELEASE = 0.4, 1.6, 2.3  # s
PULL_TO = zor.Vec3(-3.1, 0, 3.0)  # farther than the chain reaches
SHIFT = 0xFFE1  # key code of the left shift key

STEEL, RUST, GROUND = zor.Vec4f(0.42, 0.46, 0.52, 1), zor.Vec4f(0.85, 0.38, 0.12, 1), zor.Vec4f(0.55, 0.58, 0.6, 1)
BLOCKS = [zor.Vec4f(0.93, 0.84, 0.66, 1), zor.Vec4f(0.30, 0.55, 0.78, 1), zor.Vec4f(0.88, 0.34, 0.30, 1)]


class Scene:
    """Adds bodies to a simulation and their visuals to a group."""

    def __init__(self, simulation: zorSDK.Simulation, root: osg.Group):
        self.simulation = simulation
        self.root = root

    def add(self, name: str, shape: zorCollide.Shape, position: zor.Vec3, colour: zor.Vec4f, density: float = 400,
            static: bool = False) -> zor.RigidBody:
        geometry = zorCollide.Geometry(shape)
        geometry.setMaterial(zor.Material(name, density, 0.1))
        body = zor.RigidBody(geometry, name)
        body.setPosition(position)
        if static:
            body.setMotionControl(zor.RigidBody.STATIC)
        self.simulation.add(body)
        zorOSG.setDiffuseColor(zorOSG.createVisual(body, self.root), colour)
        return body

    def add_wall(self) -> None:
        for row in range(8):
            for column in range(5):
                half = zor.Vec3(0.12, 0.22, 0.12)
                shift = 0.16 if row % 2 else 0.0
                place = zor.Vec3(1.1, (column - 2.17) * 0.46 + shift, 0.12 + row * 0.241)
                self.add(f"block {row} {column}", zorCollide.Box(half), place, BLOCKS[(row + column) % 3], 60)

    def add_wrecking_ball(self) -> zor.RigidBody:
        """The ball below a chain of capsules, which are joined end to end. (A capsule lies along its y axis.)"""
        hook = self.add("hook", zorCollide.Box(zor.Vec3(0.12, 0.12, 0.12)), TOP, STEEL, static=True)
        above, end = hook, TOP
        for i in range(LINKS):
            link = self.add(f"link {i}", zorCollide.Capsule(0.035, LINK - 0.07), end - zor.Vec3(0, 0, LINK / 2), STEEL, 7800)
            link.setRotation(zor.Quat(zor.Vec3(0, 1, 0), zor.Vec3(0, 0, 1)))
            self.simulation.add(zor.BallJoint(end, link, above))
            above, end = link, end - zor.Vec3(0, 0, LINK)
        ball = self.add("ball", zorCollide.Sphere(BALL_RADIUS), end - zor.Vec3(0, 0, BALL_RADIUS), RUST, 300)
        self.simulation.add(zor.BallJoint(end, ball, above))
        return ball


class Hand(zorOSG.ExampleApplicationListener):
    """Presses, moves and releases the mouse in place of a person."""

    def __init__(self, application: zorOSG.ExampleApplication, body: zor.RigidBody):
        super().__init__()
        self.queue: osgGA.EventQueue = application.getViewer().getEventQueue()
        self.start = body.getPosition()
        self.is_down = False

    def preFrame(self, application: zorOSG.ExampleApplication) -> None:
        time = application.getTimeStamp()
        part = min(max((time - PRESS) / (PULLED - PRESS), 0), 1)
        x, y = pixel(application.getCamera(), self.start + (PULL_TO - self.start) * (part * part * (3 - 2 * part)))
        if not self.is_down and PRESS <= time < RELEASE:
            self.queue.keyPress(SHIFT)
            self.queue.mouseButtonPress(x, y, 1)
            self.is_down = True
        elif self.is_down and time < RELEASE:
            self.queue.mouseMotion(x, y)
        elif self.is_down:
            self.queue.mouseButtonRelease(x, y, 1)
            self.queue.keyRelease(SHIFT)
            self.is_down = False


def pixel(camera: osg.Camera, point: zor.Vec3) -> tuple[float, float]:
    """Where a camera shows a point, counted as the mouse does: from the upper left corner."""
    viewport = camera.getViewport()
    assert viewport, "the camera of a window has one"
    _, _, width, height = viewport
    shown = camera.getProjectionMatrix().preMult(camera.getViewMatrix().preMult(osg.Vec3d(point.x(), point.y(), point.z())))
    return (shown.x() + 1) / 2 * width, (1 - shown.y()) / 2 * height


class Status(zorOSG.ExampleApplicationListener):
    """Tells what is held and with which force."""

    def preFrame(self, application: zorOSG.ExampleApplication) -> None:
        handler = application.getPickHandler()
        body = handler.getPickedBody()
        text = f"{body.getName()}: {handler.getForce().length():.0f} N" if body else "Shift and the left button drag a body"
        application.getSceneDecorator().setText(0, text)


def main() -> int:
    application = zorOSG.ExampleApplication()
    arguments = zorIO.ArgumentParser(sys.argv)
    if not application.init(arguments):
        return application.getExitCode()
    application.initSimulation()
    application.setSolverType(zorOSG.ExampleApplication.MULTI)  # a stiff chain
    scene = Scene(application.getSimulation(), application.getSceneRoot())
    scene.add("ground", zorCollide.Box(zor.Vec3(12, 12, 0.1)), zor.Vec3(0, 0, -0.1), GROUND, static=True)
    scene.add_wall()
    ball = scene.add_wrecking_ball()
    application.getPickHandler().createMouseSpringRendering(1.5)
    application.setCameraHome(zor.Vec3(-3.6, -6.6, 3.6), zor.Vec3(-0.6, 0, 1.6), zor.Vec3(0, 0, 1))

    listeners: list[zorOSG.ExampleApplicationListener] = [Status()]
    if application.hasOffscreenWindow():
        listeners.append(Hand(application, ball))
        if not arguments.has("--stopAfter"):
            application.stopAfter(4)
    for listener in listeners:
        application.addListener(listener)
    return application.run()


if __name__ == "__main__":
    sys.exit(main())
