#!/usr/bin/env python3
"""300 bodies and a rabbit of 70,000 triangles tumble down a stepped ramp into a motor-driven turnstile.

Run it with a display for a window (press h for its keys), without one for a picture and a video:

    ./zor run examples/first_scene.py [--output FOLDER] [--model FILE] [application options, see --help]

The rabbit is `bunny.obj` of the Debian package glmark2-data. Any closed mesh that the scene graph can read
will do in its place.
"""

import math
import os
import random
import shutil
import sys
import time

import osg
import zor
import zorCollide
import zorIO
import zorOSG
import zorSDK

DURATION = 6.0  # simulated seconds
PICTURE_TIME = 3.5  # simulated seconds
VIDEO_FPS = 30.0
NUM_BODIES = 300
NUM_STEPS = 7
STEP_LENGTH, STEP_DROP, RAMP_WIDTH = 1.5, 0.75, 6.0
MODEL = "/usr/share/glmark2/models/bunny.obj"
DETAIL = 0.6  # how finely round shapes are tessellated; they are small in this picture
MODEL_SIZE = 2.0  # height of the rabbit (m)

SLATE, SAND, STEEL = (0.36, 0.40, 0.46), (0.80, 0.74, 0.62), (0.62, 0.66, 0.70)
ORANGE, CREAM = (0.95, 0.45, 0.10), (0.93, 0.88, 0.78)
PALETTE = [(0.84, 0.24, 0.22), (0.20, 0.50, 0.82), (0.98, 0.74, 0.18), (0.24, 0.64, 0.42), (0.58, 0.36, 0.70)]

type Triple = tuple[float, float, float]
type Color = tuple[float, float, float]
type Part = tuple[zorCollide.Shape, zor.Vec3, zor.Quat]


# ---------------------------------------------------------------------------------------------- the scene


class Scene:
    """Adds bodies to a simulation and their coloured visuals to a group."""

    def __init__(self, simulation: zorSDK.Simulation):
        self.simulation = simulation
        self.root = osg.Group()
        self.rubber = zor.Material("rubber", 400.0, 0.28)

    def add(self, name: str, parts: list[Part], position: zor.Vec3, color: Color, static: bool = False) -> zor.RigidBody:
        """One body of (shape, local position, local rotation) parts."""
        body = zor.RigidBody(name)
        for shape, offset, rotation in parts:
            geometry = zorCollide.Geometry(shape)
            geometry.setMaterial(self.rubber)
            body.add(geometry, zor.AffineMatrix4x4(rotation, offset))
        if static:
            body.setMotionControl(zor.RigidBody.STATIC)
        body.setPosition(position)
        self.simulation.add(body)
        visual = zorOSG.createVisual(body, self.root, DETAIL)
        zorOSG.setDiffuseColor(visual, zor.Vec4f(*color, 1.0))
        return body


def part(shape: zorCollide.Shape, offset: Triple = (0, 0, 0), angle: float = 0.0, axis: Triple = (0, 1, 0)) -> Part:
    return shape, zor.Vec3(*offset), zor.Quat(angle, zor.Vec3(*axis))


def build_ramp(scene: Scene) -> None:
    """Steps that fall away along +x, each tilted a little, between two walls."""
    half = zor.Vec3(STEP_LENGTH * 0.53, RAMP_WIDTH / 2, 0.15)
    for i in range(NUM_STEPS):
        height = (NUM_STEPS - i) * STEP_DROP + 0.3
        tread = part(zorCollide.Box(half), (i * STEP_LENGTH, 0, height), angle=math.radians(17))
        scene.add(f"step {i}", [tread], zor.Vec3(0, 0, 0), SAND if i % 2 else SLATE, static=True)

    length = NUM_STEPS * STEP_LENGTH
    slope = math.atan2(STEP_DROP, STEP_LENGTH)
    wall = zor.Vec3(length / math.cos(slope) / 2 + 0.6, 0.08, 0.55)
    middle = ((NUM_STEPS - 1) * STEP_LENGTH / 2, (NUM_STEPS + 1) * STEP_DROP / 2 + 0.75)
    for side in (-1, 1):
        board = part(zorCollide.Box(wall), (middle[0], side * (RAMP_WIDTH / 2 + 0.08), middle[1]), angle=slope)
        scene.add("wall", [board], zor.Vec3(0, 0, 0), STEEL, static=True)
    back = part(zorCollide.Box(zor.Vec3(0.08, RAMP_WIDTH / 2, 1.7)), (-0.9, 0, NUM_STEPS * STEP_DROP + 1.7))
    scene.add("back wall", [back], zor.Vec3(0, 0, 0), STEEL, static=True)

    ground = part(zorCollide.Box(zor.Vec3(40, 40, 0.5)), (8, 0, -0.5))
    scene.add("ground", [ground], zor.Vec3(0, 0, 0), (0.55, 0.60, 0.56), static=True)


def build_turnstile(scene: Scene) -> None:
    """Four arms on a hinge with a vertical axis; a motor turns it where the ramp ends."""
    arm = 2.2
    parts = [part(zorCollide.Cylinder(0.35, 1.4), (0, 0, 0), angle=math.pi / 2, axis=(1, 0, 0))]
    for quarter in range(4):
        angle = quarter * math.pi / 2
        offset = (arm / 2 * math.cos(angle), arm / 2 * math.sin(angle), -0.15)
        parts.append(part(zorCollide.Box(zor.Vec3(arm / 2, 0.07, 0.4)), offset, angle=angle, axis=(0, 0, 1)))
    position = zor.Vec3(NUM_STEPS * STEP_LENGTH + 2.0, 0, 0.72)
    turnstile = scene.add("turnstile", parts, position, ORANGE)
    hinge = zor.Hinge(position, zor.Vec3(0, 0, 1), turnstile)
    hinge.setName("turnstile hinge")
    motor = hinge.getMotor1D()
    motor.setEnable(True)
    motor.setSpeed(2.5)
    motor.setForceRange(zor.RangeReal(-20000, 20000))
    scene.simulation.add(hinge)


def build_rabbit(scene: Scene, model: str) -> int:
    """Reads a mesh of any size, turns its y axis up and makes it a dynamic body."""
    node = zorOSG.readNodeFile(model)
    if node is None:
        raise RuntimeError(f"cannot read the model '{model}'; is the package glmark2-data installed?")
    bound = node.getBound()
    scale = MODEL_SIZE / (2.0 * bound.radius())
    upright = osg.MatrixTransform(
        osg.Matrixd.translate(-bound.center()) * osg.Matrixd.scale(scale, scale, scale)
        * osg.Matrixd.rotate(math.pi / 2, osg.Vec3d(1, 0, 0)) * osg.Matrixd.rotate(math.pi / 2, osg.Vec3d(0, 0, 1)))
    upright.addChild(node)
    mesh = zorOSG.createTrimesh(upright)
    rabbit = scene.add("rabbit", [part(mesh)], zor.Vec3(0.9, 0, NUM_STEPS * STEP_DROP + 1.7), CREAM)
    rabbit.setVelocity(zor.Vec3(1.0, 0, 0))
    return mesh.getNumTriangles()


def random_parts(chance: random.Random, size: float) -> list[Part]:
    """One of eight kinds of bodies, about `size` metres across."""
    r = size / 2
    top = zor.Vec3Vector([zor.Vec3(r * math.cos(a), r * math.sin(a), -r / 2) for a in (0.3, 1.7, 3.1, 4.4, 5.5)])
    top.append(zor.Vec3(0, 0, r))
    kinds = [
        lambda: [part(zorCollide.Box(zor.Vec3(r, r * 0.8, r * 0.6)))],
        lambda: [part(zorCollide.Sphere(r))],
        lambda: [part(zorCollide.Capsule(r * 0.55, r * 1.2))],
        lambda: [part(zorCollide.Cylinder(r * 0.8, r * 1.3))],
        lambda: [part(zorCollide.Cone(r * 0.95, r * 1.9))],
        lambda: [part(zorCollide.Convex(top))],
        lambda: [part(zorCollide.Box(zor.Vec3(r, r * 0.3, r * 0.3))), part(zorCollide.Box(zor.Vec3(r * 0.3, r, r * 0.3)))],
        lambda: [part(zorCollide.Sphere(r * 0.55), (-r * 0.6, 0, 0)), part(zorCollide.Sphere(r * 0.55), (r * 0.6, 0, 0)),
                 part(zorCollide.Capsule(r * 0.25, r), angle=math.pi / 2, axis=(0, 0, 1))],
    ]
    return chance.choice(kinds)()


def build_bodies(scene: Scene) -> None:
    """A loose block of bodies above the upper steps."""
    chance = random.Random(7)
    for i in range(NUM_BODIES):
        column, row, layer = i % 6, i // 6 % 10, i // 60
        position = zor.Vec3(
            0.1 + column * 0.62 + chance.uniform(-0.05, 0.05),
            (row - 4.5) * 0.56 + chance.uniform(-0.05, 0.05),
            NUM_STEPS * STEP_DROP + 3.4 + layer * 0.62)
        body = scene.add(f"body {i}", random_parts(chance, chance.uniform(0.40, 0.58)), position,
                         chance.choice(PALETTE))
        axis = zor.Vec3(*(chance.uniform(-1, 1) for _ in range(3)))
        body.setRotation(zor.Quat(chance.uniform(0, math.pi), axis.normal()))


def build_scene() -> osg.Group:
    """Builds the scene; the application calls it at the start and on every reset."""
    application = zorOSG.getCurrentApplication()
    simulation = application.getSimulation()
    scene = Scene(simulation)
    build_ramp(scene)
    build_turnstile(scene)
    build_bodies(scene)
    triangles = build_rabbit(scene, application.getArguments().getValue("--model"))
    simulation.add(Keys(simulation).__disown__())

    decorator = application.getSceneDecorator()
    decorator.setBackgroundColor(zor.Vec3(0.50, 0.66, 0.84), zor.Vec3(0.90, 0.93, 0.95))
    application.setCameraHome(zor.Vec3(20.5, -11.5, 8.0), zor.Vec3(6.9, -0.3, 2.0))
    print(f"built {len(simulation.getRigidBodies())} bodies, the rabbit has {triangles} triangles", flush=True)
    return scene.root


# ------------------------------------------------------------------------------------------ the listeners


class Keys(zorOSG.GuiEventListener):
    """m reverses the turnstile, k kicks the rabbit into the air."""

    def __init__(self, simulation: zorSDK.Simulation):
        super().__init__(zorOSG.GuiEventListener.KEYBOARD)
        self.setName("m: reverse the turnstile, k: kick the rabbit")  # a line of the help overlay
        self.simulation = simulation

    def keyboard(self, key: int, modKeyMask: int, x: float, y: float, keydown: bool) -> bool:
        if keydown and key == ord("m"):
            motor = self.simulation.getConstraint1DOF("turnstile hinge").getMotor1D()
            motor.setSpeed(-motor.getSpeed())
            return True
        if keydown and key == ord("k"):
            rabbit = self.simulation.getRigidBody("rabbit")
            rabbit.setVelocity(rabbit.getVelocity() + zor.Vec3(0, 0, 8))
            return True
        return False


class Monitor(zorOSG.ExampleApplicationListener):
    """Shows time, frame rate and body count in the picture, and a progress bar in the terminal."""

    def __init__(self, duration: float, picture: str | None = None):
        super().__init__()
        self.duration = duration
        self.picture_time = min(PICTURE_TIME, duration / 2)
        self.picture = picture
        self.started: float | None = None
        self.counted_since = (0.0, 0)
        self.frames = 0
        self.rate = 0.0

    def preFrame(self, application: zorOSG.ExampleApplication) -> None:
        if self.started is None:
            self.started = time.perf_counter()
            self.counted_since = (self.started, 0)
        simulation = application.getSimulation()
        if self.picture and simulation.getTimeStamp() >= self.picture_time:
            application.takeScreenShot(self.picture)
            self.picture = None
        white = zor.Vec4f(1, 1, 1, 1)
        decorator = application.getSceneDecorator()
        decorator.setText(0, f"time {simulation.getTimeStamp():5.2f} s", white)
        decorator.setText(1, f"{self.rate:5.1f} frames/s", white)
        decorator.setText(2, f"{simulation.getStatistics().bodies} bodies", white)

    def postFrame(self, application: zorOSG.ExampleApplication) -> None:
        self.frames += 1
        now = time.perf_counter()
        since, count = self.counted_since
        if now - since > 0.5:
            self.rate = (self.frames - count) / (now - since)
            self.counted_since = (now, self.frames)
            self.show_progress(application.getTimeStamp())

    def show_progress(self, simulated: float, end: str = "\r") -> None:
        if not math.isfinite(self.duration) or not sys.stdout.isatty() and end == "\r":
            return
        done = min(simulated / self.duration, 1.0)
        width = max(shutil.get_terminal_size().columns - 50, 10)
        bar = "#" * round(done * width)
        print(f"[{bar:<{width}}] {simulated:4.1f} of {self.duration:.1f} s, {self.rate:5.1f} frames/s ", end=end, flush=True)

    def summary(self, simulated: float) -> None:
        if self.started is None:
            return
        elapsed = time.perf_counter() - self.started
        self.show_progress(simulated, end="\n")
        print(f"{simulated:.2f} simulated seconds in {elapsed:.1f} s (real-time factor {simulated / elapsed:.2f}), "
              f"{self.frames} frames ({self.frames / elapsed:.1f} a second)")


# ---------------------------------------------------------------------------------------------- the main


def main() -> int:
    arguments = zorIO.ArgumentParser(sys.argv)
    arguments.setDescription(__doc__.splitlines()[0])
    arguments.addOption("--output", "folder for the picture and the video", "first_scene_output", "FOLDER")
    arguments.addOption("--model", "mesh to drop with the bodies", MODEL, "FILE")

    application = zorOSG.ExampleApplication()
    if not application.init(arguments):
        return application.getExitCode()
    application.addScene(__file__, "build_scene", ord("1"))
    application.setTimeStep(1.0 / 60.0)

    duration = arguments.getReal("--stopAfter") if arguments.has("--stopAfter") else DURATION

    application.initSimulation()
    if not application.hasRenderContext() or not application.hasOffscreenWindow():
        # In a window the scene runs until it is closed; without graphics there is nothing to record.
        monitor = Monitor(duration if not application.hasRenderContext() else math.inf)
        files: list[str] = []
        if application.hasRenderContext():
            print("press h in the window for its keys, Esc to leave; --offscreen makes a picture and a video instead")
    else:
        output = os.path.abspath(arguments.getValue("--output"))
        files = [os.path.join(output, "first_scene.png"), os.path.join(output, "first_scene.mp4")]
        monitor = Monitor(duration, files[0])
        capture = application.getVideoServerCapture()
        capture.setFilename(files[1])
        capture.setVideoFPS(VIDEO_FPS)
        capture.setImageCaptureFPS(VIDEO_FPS)
        capture.startCapture()
    if math.isfinite(monitor.duration):
        application.stopAfter(monitor.duration)
    application.addListener(monitor)

    exit_code = application.run()
    monitor.summary(application.getTimeStamp())
    if files and exit_code == 0:
        print(f"picture and video are in {output}")
    return exit_code


if __name__ == "__main__":
    sys.exit(main())
