#!/usr/bin/env python3
"""A six-axis arm, read from a URDF file, draws a flower in the air before a board; its tracking error is printed.

    ./zor run examples/robot_arm.py [--output FOLDER] [application options, see --help]

The joints' locks follow splines through solutions of the inverse kinematics. They are as stiff as servos of such an
arm and no stronger than the file's effort limits say, so that the arm gives way a little to its own weight.
"""

import colorsys
import math
import os
import sys

import numpy
from numpy.typing import NDArray

import osg
import zor
import zorCollide
import zorIO
import zorModel
import zorOSG
import zorSDK

type Array = NDArray[numpy.float64]

ROBOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), os.pardir, "data", "robot_arm", "robot_arm.urdf")
JOINTS = ["turn", "lean", "bend", "roll", "nod", "spin"]
HOME = [0.0, -0.35, 0.55, 0.0, 0.5, 0.0]  # rad
STIFFNESS = [6e5, 6e5, 4e5, 6e4, 4e4, 2e4]  # N m/rad
RELAXATION = 0.004  # s, in which a joint works a deviation off

TIME_STEP = 1 / 240
APPROACH, DRAWING, RETREAT = 1.6, 12.0, 1.6  # s
BOARD_CENTRE, BOARD_TILT = zor.Vec3(1.02, 0.0, 0.78), math.radians(24)
BOARD_HALF_WIDTH, BOARD_HALF_HEIGHT = 0.48, 0.40
PEN_DISTANCE = 0.012  # of the drawing from the board (m)
POINTS_PER_LINE = 60


# ---------------------------------------------------------------------------------------------- the curve


def board_frame() -> Array:
    """Rows: right, up and out of the board, as the drawing arm sees it; and its centre."""
    out = numpy.array([-math.cos(BOARD_TILT), 0, math.sin(BOARD_TILT)])
    right = numpy.array([0.0, -1.0, 0.0])
    return numpy.stack([right, numpy.cross(out, right), out, numpy.array([*BOARD_CENTRE])])


def rosette(share: Array) -> Array:
    """A flower with seven petals; `share` runs from 0 to 1."""
    turn = 2 * math.pi * share
    radius = 0.225 + 0.125 * numpy.cos(7 * turn)
    right, up, out, centre = board_frame()
    across, along = numpy.outer(radius * numpy.sin(turn), right), numpy.outer(radius * numpy.cos(turn), up)
    points: Array = centre + across + along + out * PEN_DISTANCE
    return points


class Spline:
    """A natural cubic spline through rows of numbers at equal distances in time."""

    def __init__(self, start: float, end: float, values: Array):
        self.start, self.step, self.values = start, (end - start) / (len(values) - 1), values
        count = len(values)
        system = numpy.diag(numpy.full(count, 4.0)) + numpy.diag(numpy.ones(count - 1), 1) + numpy.diag(numpy.ones(count - 1), -1)
        system[0, 0] = system[-1, -1] = 2
        slopes = numpy.empty_like(values)
        slopes[1:-1] = 3 * (values[2:] - values[:-2])
        slopes[0], slopes[-1] = 3 * (values[1] - values[0]), 3 * (values[-1] - values[-2])
        self.slopes = numpy.linalg.solve(system, slopes)

    def __call__(self, time: float) -> tuple[Array, Array]:
        """Value and speed."""
        place = min(max((time - self.start) / self.step, 0), len(self.values) - 1)
        i = min(int(place), len(self.values) - 2)
        t, a, b = place - i, self.values[i], self.values[i + 1]
        da, db = self.slopes[i], self.slopes[i + 1]
        c, d = 3 * (b - a) - 2 * da - db, 2 * (a - b) + da + db
        return a + t * (da + t * (c + t * d)), (da + t * (2 * c + t * 3 * d)) / self.step


# ------------------------------------------------------------------------------------------ the kinematics


def rows(matrix: zor.AffineMatrix4x4) -> Array:
    return numpy.array([[matrix.get(row, column) for column in range(4)] for row in range(4)])


def joint_of(robot: zorSDK.Assembly, name: str) -> zor.Constraint1DOF:
    joint = robot.getConstraint(name)
    assert isinstance(joint, zor.Constraint1DOF)
    return joint


class Kinematics:
    """Where the tip of the arm is for given angles, and which angles bring it somewhere. For row vectors: p' = p M."""

    def __init__(self, robot: zorSDK.Assembly):
        self.links: list[tuple[Array, Array]] = []  # before and after the turn of each joint, from the tip on
        for name in reversed(JOINTS):
            joint = joint_of(robot, name)
            before: Array = numpy.asarray(numpy.linalg.inv(rows(joint.getAttachment(0).getLocalMatrix())), float)
            self.links.append((before, rows(joint.getAttachment(1).getLocalMatrix())))
        self.tip = rows(robot.getObserverFrame("tip").getFrame().getLocalMatrix())
        self.base = rows(robot.getTransform())

    def forward(self, angles: Array) -> Array:
        place = self.tip
        for (before, after), angle in zip(self.links, reversed(angles)):
            turn, cosine, sine = numpy.eye(4), math.cos(angle), math.sin(angle)
            turn[:2, :2] = (cosine, sine), (-sine, cosine)
            place = place @ before @ turn @ after
        return place @ self.base

    def difference(self, angles: Array, goal: Array) -> Array:
        """What the tip lacks in place and direction."""
        place = self.forward(angles)
        turn = sum((numpy.cross(place[i, :3], goal[i, :3]) for i in range(3)), numpy.zeros(3)) / 2
        return numpy.concatenate([goal[3, :3] - place[3, :3], turn])

    def inverse(self, goal: Array, guess: Array) -> Array:
        """Damped least squares from a guess nearby."""
        angles = guess.copy()
        for _ in range(60):
            lack = self.difference(angles, goal)
            if numpy.abs(lack).max() < 1e-9:
                return angles
            jacobian = numpy.stack([(lack - self.difference(angles + step, goal)) / 1e-6 for step in 1e-6 * numpy.eye(6)], axis=1)
            square = jacobian.T @ jacobian
            change = numpy.linalg.solve(square + 1e-8 * numpy.eye(6), jacobian.T @ lack)
            angles += change * min(1, 0.3 / numpy.abs(change).max())
        raise RuntimeError(f"the arm does not reach {goal[3, :3]}")


def plan(kinematics: Kinematics) -> Spline:
    """Angles over time: to the curve, along it, and home again."""
    right, up, out, _ = board_frame()
    goal = numpy.eye(4)
    goal[:3, :3] = -out, right, numpy.cross(-out, right)  # the pen's x axis points into the board
    step = 0.05
    drawn = [rosette(numpy.array([share]))[0] for share in numpy.linspace(0, 1, round(DRAWING / step) + 1)]
    angles = numpy.array(HOME)
    goal[3, :3] = drawn[0] + 0.2 * out
    for share in numpy.linspace(0, 1, 20):  # a guess close enough for what follows
        between = goal.copy()
        between[3, :3] = (1 - share) * kinematics.forward(angles)[3, :3] + share * goal[3, :3]
        angles = kinematics.inverse(between, angles)
    curve = []
    for point in drawn:
        goal[3, :3] = point
        angles = kinematics.inverse(goal, angles)
        curve.append(angles)
    ease = [(1 - math.cos(math.pi * i * step / APPROACH)) / 2 for i in range(round(APPROACH / step))]
    to_curve = [(1 - share) * numpy.array(HOME) + share * curve[0] for share in ease]
    to_home = [(1 - share) * numpy.array(HOME) + share * curve[-1] for share in reversed(ease)]
    return Spline(0, APPROACH + DRAWING + RETREAT, numpy.array([*to_curve, *curve, *to_home]))


# ------------------------------------------------------------------------------------------- the control


class Controller(zorSDK.StepEventListener):
    """Sets what the locks of the joints hold in every step, and measures how far the tip is from the curve."""

    def __init__(self, robot: zorSDK.Assembly, effort: list[float]):
        super().__init__(zorSDK.StepEventListener.PRE_COLLIDE | zorSDK.StepEventListener.POST_STEP)
        self.locks = [joint_of(robot, name).getLock1D() for name in JOINTS]
        self.tip = robot.getObserverFrame("tip").getFrame()
        self.effort = effort
        self.kinematics = Kinematics(robot)
        self.path = plan(self.kinematics)
        self.trace: list[zor.Vec3] = []
        self.errors: list[float] = []
        self.greatest_load = numpy.zeros(6)
        for lock, stiffness in zip(self.locks, STIFFNESS):
            lock.setCompliance(1 / stiffness)
            lock.setDamping(RELAXATION)
            lock.setEnable(True)

    def preCollide(self, time: float) -> None:
        angles, speeds = self.path(time + TIME_STEP)
        for lock, angle, speed in zip(self.locks, angles, speeds):
            lock.setPosition(angle + RELAXATION * speed)  # what it would lag behind is added

    def post(self, time: float) -> None:
        self.greatest_load = numpy.maximum(self.greatest_load, [abs(lock.getCurrentForce()) for lock in self.locks])
        if APPROACH <= time <= APPROACH + DRAWING:
            tip = self.tip.getTranslate()
            wanted = rosette(numpy.array([(time - APPROACH) / DRAWING]))[0]
            self.trace.append(tip)
            self.errors.append(float(numpy.linalg.norm(numpy.array([*tip]) - wanted)))

    def report(self) -> None:
        if self.errors:
            millimetres = 1000 * numpy.array(self.errors)
            print(f"tracking error along {len(millimetres)} steps: {math.sqrt((millimetres**2).mean()):.2f} mm (root mean square), "
                  f"{millimetres.max():.2f} mm (greatest)")
        loads = [f"{name} {load:.0f} of {limit:.0f}" for name, load, limit in zip(JOINTS, self.greatest_load, self.effort)]
        print("greatest torques (N m): " + ", ".join(loads))


# ---------------------------------------------------------------------------------------------- the scene


class Drawing(zorOSG.ExampleApplicationListener):
    """Shows the way that the tip has gone, in the colours of a rainbow; takes a picture when it is complete."""

    def __init__(self, controller: Controller, root: osg.Group, picture: str | None):
        super().__init__()
        self.controller = controller
        self.root = root
        self.line: osg.Node | None = None
        self.first = 0  # point of the line that is being drawn
        self.picture = picture

    def preFrame(self, application: zorOSG.ExampleApplication) -> None:
        if self.line:  # grows until it is long enough
            self.root.removeChild(self.line)
        piece = self.controller.trace[self.first : self.first + POINTS_PER_LINE + 1]
        if len(piece) > 1:
            color = zor.Vec4(*colorsys.hsv_to_rgb(self.first * TIME_STEP / DRAWING, 0.9, 0.85), 1)
            self.line = zorOSG.createPolyline(zor.Vec3Vector(piece), color, 5)
            self.root.addChild(self.line)
        if len(piece) > POINTS_PER_LINE:
            self.first += POINTS_PER_LINE
            self.line = None
        decorator = application.getSceneDecorator()
        decorator.setText(0, f"time {application.getTimeStamp():5.2f} s", zor.Vec4f(0.1, 0.1, 0.12, 1))
        if self.controller.errors:
            decorator.setText(1, f"error {1000 * self.controller.errors[-1]:4.2f} mm", zor.Vec4f(0.1, 0.1, 0.12, 1))
        if self.picture and application.getTimeStamp() > APPROACH + 0.86 * DRAWING:
            application.takeScreenShot(self.picture)
            self.picture = None


def add_box(simulation: zorSDK.Simulation, root: osg.Group, half: zor.Vec3, place: zor.AffineMatrix4x4, color: zor.Vec4f) -> osg.Node:
    box = zorCollide.Geometry(zorCollide.Box(half))
    box.setTransform(place)
    simulation.add(box)
    visual = zorOSG.createVisual(box, root)
    zorOSG.setDiffuseColor(visual, color)
    return visual


def build_workshop(simulation: zorSDK.Simulation, root: osg.Group) -> None:
    """Floor, pedestal, and the board on its easel."""
    move = zor.AffineMatrix4x4.translate
    floor = add_box(simulation, root, zor.Vec3(8, 8, 0.1), move(0, 0, -0.1), zor.Vec4f(1, 1, 1, 1))
    tile = osg.Image()
    tile.allocate(128, 128, 3)
    pixels = numpy.asarray(tile)
    pixels[:] = (150, 156, 162)
    pixels[:2] = pixels[:, :2] = (112, 118, 124)
    zorOSG.setTexture(floor, osg.Texture2D(tile), True, zorOSG.DIFFUSE_TEXTURE, 32, 32)
    tilt = zor.AffineMatrix4x4.rotate(BOARD_TILT, zor.Vec3(0, 1, 0)) * move(BOARD_CENTRE)

    def local(x: float, y: float, z: float) -> zor.AffineMatrix4x4:
        return move(x, y, z) * tilt

    white, wood = zor.Vec4f(0.93, 0.93, 0.90, 1), zor.Vec4f(0.50, 0.33, 0.18, 1)
    add_box(simulation, root, zor.Vec3(0.012, BOARD_HALF_WIDTH, BOARD_HALF_HEIGHT), local(0.012, 0, 0), white)
    for side in (-1, 1):
        add_box(simulation, root, zor.Vec3(0.02, 0.02, BOARD_HALF_HEIGHT + 0.02), local(0.012, side * (BOARD_HALF_WIDTH + 0.02), 0), wood)
        add_box(simulation, root, zor.Vec3(0.02, BOARD_HALF_WIDTH, 0.02), local(0.012, 0, side * (BOARD_HALF_HEIGHT + 0.0)), wood)
        add_box(simulation, root, zor.Vec3(0.025, 0.025, 0.44), move(1.12, side * 0.36, 0.44), wood)


def main() -> int:
    arguments = zorIO.ArgumentParser(sys.argv)
    arguments.setDescription(__doc__.splitlines()[0])
    arguments.addOption("--output", "folder for the picture and the video", "robot_arm_output", "FOLDER")
    application = zorOSG.ExampleApplication()
    if not application.init(arguments):
        return application.getExitCode()
    application.initSimulation()
    application.setTimeStep(TIME_STEP)
    simulation, root = application.getSimulation(), application.getSceneRoot()

    reader = zorModel.UrdfReader()
    reader.setFixedBase(True)
    reader.setMergeFixedLinks(True)
    for name, angle in zip(JOINTS, HOME):
        reader.setJointPosition(name, angle)
    robot = reader.read(ROBOT)
    simulation.add(robot)
    zorOSG.createVisual(robot, root, 1.5)
    build_workshop(simulation, root)

    controller = Controller(robot, [reader.getJoint(name).effort for name in JOINTS])
    simulation.add(controller)

    output = os.path.abspath(arguments.getValue("--output"))
    recorded = application.hasRenderContext() and application.hasOffscreenWindow()
    drawing = Drawing(controller, root, os.path.join(output, "robot_arm.png") if recorded else None)
    if recorded:
        capture = application.getVideoServerCapture()
        capture.setFilename(os.path.join(output, "robot_arm.mp4"))
        capture.setVideoFPS(30)
        capture.setImageCaptureFPS(30)
        capture.startCapture()
    application.addListener(drawing)
    decorator = application.getSceneDecorator()
    decorator.setBackgroundColor(zor.Vec3(0.62, 0.70, 0.78), zor.Vec3(0.90, 0.92, 0.94))
    application.setCameraHome(zor.Vec3(-0.55, -1.75, 1.50), zor.Vec3(0.52, 0.05, 0.66), zor.Vec3(0, 0, 1))
    if not arguments.has("--stopAfter"):
        application.stopAfter(APPROACH + DRAWING + RETREAT)

    exit_code = application.run()
    controller.report()
    return exit_code


if __name__ == "__main__":
    sys.exit(main())
