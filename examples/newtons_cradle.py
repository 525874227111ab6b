"""A Newton's cradle: five steel balls hand momentum on, and a diagram shows where the energy is.

./zor run examples/newtons_cradle.py [--balls 2] [--diagram energy.png] [application options, see --help]
"""

import argparse
import math
import sys

import osg
import zor
import zorCollide
import zorIO
import zorOSG
import zorSDK

BALLS = 5
RADIUS = 0.25
LENGTH = 2.0  # of the strings, in height
SPREAD = 0.7  # half the distance of the two rails
START = math.radians(35)
GAP = 2e-4  # between balls at rest: each blow is over before the next begins
GRAVITY = 9.81

type Row = tuple[float, float, float]


class Cradle:
    """Balls on two strings each, which are springy enough not to be felt and stiff enough not to be seen."""

    def __init__(self, simulation: zorSDK.Simulation, root: osg.Group, lifted: int):
        self.balls: list[zor.RigidBody] = []
        steel = zor.Material("steel", 7800.0, 0.0)
        steel.setRestitution(1.0)
        wire = zor.Material("wire", 1.0)
        for i in range(BALLS):
            x = (2 * RADIUS + GAP) * (i - (BALLS - 1) / 2)
            ball = zor.RigidBody(f"ball {i}")
            sphere = zorCollide.Geometry(zorCollide.Sphere(RADIUS))
            sphere.setMaterial(steel)
            ball.add(sphere)
            strings = [self.string(ball, side, wire) for side in (-1, 1)]
            angle = START if i < lifted else 0.0
            turn = zor.Quat(angle, zor.Vec3(0, 1, 0))
            ball.setRotation(turn)
            ball.setPosition(zor.Vec3(x, 0, LENGTH) + turn.rotate(zor.Vec3(0, 0, -LENGTH)))
            simulation.add(ball)
            hinge = zor.Hinge(zor.Vec3(x, 0, LENGTH), zor.Vec3(0, 1, 0), ball)
            simulation.add(hinge)
            for geometry, color in [(sphere, zor.Vec4f(0.75, 0.78, 0.82, 1))] + [(s, zor.Vec4f(0.15, 0.15, 0.17, 1)) for s in strings]:
                visual = zorOSG.createVisual(geometry, root, 2.0)
                zorOSG.setDiffuseColor(visual, color)
                zorOSG.setShininess(visual, 110)
            self.balls.append(ball)

    @staticmethod
    def string(ball: zor.RigidBody, side: int, wire: zor.Material) -> zorCollide.Geometry:
        """A wire from a rail to the ball, without weight worth speaking of, that meets nothing."""
        end = zor.Vec3(0, side * SPREAD, LENGTH)
        start = end * (RADIUS / end.length())
        string = zorCollide.Geometry(zorCollide.Cylinder(0.008, (end - start).length()))
        string.setMaterial(wire)
        string.setEnableCollisions(False)
        ball.add(string, zor.AffineMatrix4x4(zor.Quat(zor.Vec3(0, 1, 0), end), (start + end) * 0.5))
        return string

    def energies(self) -> tuple[float, float]:
        """Kinetic and potential energy, in J."""
        kinetic = sum(ball.getKineticEnergy() for ball in self.balls)
        potential = sum(ball.getMassProperties().getMass() * GRAVITY * ball.getCmPosition().z() for ball in self.balls)
        return kinetic, potential


class Bookkeeper(zorSDK.StepEventListener):
    """Writes down the energies of every step."""

    def __init__(self, cradle: Cradle, application: zorOSG.ExampleApplication):
        super().__init__(zorSDK.StepEventListener.POST_STEP)
        self.cradle = cradle
        self.application = application
        self.rest = sum(ball.getMassProperties().getMass() for ball in cradle.balls) * GRAVITY * cradle.balls[-1].getCmPosition().z()
        self.rows: list[Row] = []

    def post(self, time: float) -> None:
        kinetic, potential = self.cradle.energies()
        self.rows.append((time, kinetic, potential - self.rest))
        total = kinetic + potential - self.rest
        self.application.getSceneDecorator().setText(0, f"{time:5.2f} s   kinetic {kinetic:6.1f} J   potential {potential - self.rest:6.1f} J")
        self.application.getSceneDecorator().setText(1, f"of the energy at the start {100 * total / sum(self.rows[0][1:]):6.2f} %")

    def plot(self, path: str) -> None:
        import matplotlib
        matplotlib.use("Agg")
        from matplotlib import pyplot
        times = [row[0] for row in self.rows]
        figure, axes = pyplot.subplots(figsize=(9, 4.5), layout="constrained")
        axes.plot(times, [row[1] for row in self.rows], color="#d1495b", label="kinetic", linewidth=1.4)
        axes.plot(times, [row[2] for row in self.rows], color="#00798c", label="potential", linewidth=1.4)
        axes.plot(times, [row[1] + row[2] for row in self.rows], color="#30343f", label="sum", linewidth=1.8)
        axes.set(xlabel="time (s)", ylabel="energy (J)", title=f"Newton's cradle, {BALLS} balls", xlim=(0, times[-1]), ylim=(0, None))
        axes.grid(alpha=0.3)
        axes.legend(loc="center right")
        figure.savefig(path, dpi=120)


def build_frame(root: osg.Group, simulation: zorSDK.Simulation) -> None:
    """Two rails on four legs, and a table."""
    reach = RADIUS * BALLS + 0.5
    dark, wood = zor.Vec4f(0.2, 0.21, 0.24, 1), zor.Vec4f(0.45, 0.29, 0.18, 1)
    bars: list[tuple[zorCollide.Shape, tuple[float, float, float], tuple[float, float, float], zor.Vec4f]] = []
    for side in (-1, 1):
        bars.append((zorCollide.Capsule(0.04, 2 * reach), (0, side * SPREAD, LENGTH), (1, 0, 0), dark))
        for end in (-1, 1):
            bars.append((zorCollide.Capsule(0.04, LENGTH + 0.6), (end * reach, side * SPREAD, LENGTH / 2 - 0.3), (0, 0, 1), dark))
    bars.append((zorCollide.Box(zor.Vec3(reach + 0.3, SPREAD + 0.3, 0.08)), (0, 0, -0.68), (0, 1, 0), wood))
    for shape, place, axis, color in bars:
        bar = zorCollide.Geometry(shape)
        bar.setEnableCollisions(False)
        bar.setRotation(zor.Quat(zor.Vec3(0, 1, 0), zor.Vec3(*axis)))
        bar.setPosition(zor.Vec3(*place))
        simulation.add(bar)
        zorOSG.setDiffuseColor(zorOSG.createVisual(bar, root), color)


def main() -> int:
    parser = argparse.ArgumentParser(add_help=False)
    parser.add_argument("--balls", type=int, default=1, choices=range(1, BALLS), help="lifted at the start")
    parser.add_argument("--diagram", help="picture of the energies over time")
    options, rest = parser.parse_known_args(sys.argv)
    arguments = zorIO.ArgumentParser(rest)

    application = zorOSG.ExampleApplication()
    if not application.init(arguments):
        return application.getExitCode()
    application.initSimulation()
    simulation, root = application.getSimulation(), application.getSceneRoot()
    simulation.setTimeStep(1 / 960)
    simulation.setNumSolverIterations(100)
    application.setTargetFPS(30)  # not a picture of each of the 960 steps a second
    build_frame(root, simulation)
    cradle = Cradle(simulation, root, options.balls)
    bookkeeper = Bookkeeper(cradle, application)
    simulation.add(bookkeeper)
    application.setCameraHome(zor.Vec3(2.2, -6.2, 2.2), zor.Vec3(0, 0, 0.75), zor.Vec3(0, 0, 1))
    if not arguments.has("--stopAfter"):
        application.stopAfter(12)
    status = application.run()
    if options.diagram and bookkeeper.rows:
        bookkeeper.plot(options.diagram)
    if bookkeeper.rows:
        last = bookkeeper.rows[-1]
        print(f"after {last[0]:.2f} s {100 * (last[1] + last[2]) / sum(bookkeeper.rows[0][1:]):.2f} % of the energy is left")
    return status


if __name__ == "__main__":
    sys.exit(main())
