"""10,000 bodies of five shapes, set as the seeds of a sunflower; a wave goes through them, and only what it lifts takes time.

./zor run examples/many_bodies.py [--count 10000] [application options, see --help]
"""

import argparse
import colorsys
import math
import sys
import time
from collections.abc import Callable

import zor
import zorCollide
import zorIO
import zorOSG
import zorSDK

GOLDEN_ANGLE = math.pi * (3 - math.sqrt(5))
SPACING = 0.62  # m; seed n lies SPACING * sqrt(n) from the middle
WAVE_WIDTH = 4.0
WAVE_HEIGHT = 2.2
WAVE_SPEED = 14.0  # m/s

SHAPES: list[Callable[[], zorCollide.Shape]] = [
    lambda: zorCollide.Sphere(0.42),
    lambda: zorCollide.Box(zor.Vec3(0.33, 0.33, 0.33)),
    lambda: zorCollide.Cylinder(0.34, 0.7),
    lambda: zorCollide.Capsule(0.3, 0.35),
    lambda: zorCollide.Cone(0.42, 0.8),
]
UPRIGHT = zor.Quat(math.pi / 2, zor.Vec3(1, 0, 0))  # round shapes stand about y


class Field:
    """The bodies, in the order of their distance from the middle."""

    def __init__(self, simulation: zorSDK.Simulation, count: int):
        shapes = [make() for make in SHAPES]
        self.bodies: list[zor.RigidBody] = []
        self.places: list[tuple[float, float]] = []
        for number in range(count):
            radius, angle = SPACING * math.sqrt(number + 0.5), number * GOLDEN_ANGLE
            self.places.append((radius * math.cos(angle), radius * math.sin(angle)))
            body = zor.RigidBody(zorCollide.Geometry(shapes[number % len(shapes)]))
            body.setMotionControl(zor.RigidBody.STATIC)
            body.setRotation(UPRIGHT * zor.Quat(angle, zor.Vec3(0, 0, 1)))
            self.bodies.append(body)
        self.lifted = range(0)
        self.place(range(count), -1e9)
        for body in self.bodies:  # when they have their places: ten thousand bodies at one place all touch each other
            simulation.add(body)

    def reach(self) -> float:
        return SPACING * math.sqrt(len(self.bodies))

    def place(self, numbers: range, front: float) -> None:
        """Puts some of the bodies where a wave has them whose front stands at a distance from the middle."""
        for number in numbers:
            x, y = self.places[number]
            phase = min(abs(math.hypot(x, y) - front) / WAVE_WIDTH, 1.0)
            self.bodies[number].setPosition(zor.Vec3(x, y, 0.25 * WAVE_HEIGHT * (1 + math.cos(math.pi * phase)) ** 2 / 2))

    def let_wave_stand(self, front: float) -> None:
        """Moves what the wave lifts, and what it lifted before; the others rest."""
        edges = [max(front + side * WAVE_WIDTH, 0.0) / SPACING for side in (-1, 1)]
        now = range(*(min(math.ceil(edge * edge), len(self.bodies)) for edge in edges))
        before, self.lifted = self.lifted, now
        self.place(range(min(before.start, now.start), max(before.stop, now.stop)), front)


class Display(zorOSG.ExampleApplicationListener):
    """Lets the wave run with the simulation's time."""

    def __init__(self, field: Field):
        super().__init__()
        self.field = field

    def preFrame(self, application: zorOSG.ExampleApplication) -> None:
        way = WAVE_SPEED * application.getSimulation().getTimeStamp()
        self.field.let_wave_stand(way % (self.field.reach() + WAVE_WIDTH))
        text = f"{len(self.field.bodies)} bodies, {len(self.field.lifted)} of them moving"
        application.getSceneDecorator().setText(0, text)


def main() -> int:
    parser = argparse.ArgumentParser(add_help=False)
    parser.add_argument("--count", type=int, default=10000)
    options, rest = parser.parse_known_args(sys.argv)
    arguments = zorIO.ArgumentParser(rest)
    if options.count < 1:
        parser.error("--count must be 1 or more")

    application = zorOSG.ExampleApplication()
    if not application.init(arguments):
        return application.getExitCode()
    application.initSimulation()
    simulation, root = application.getSimulation(), application.getSceneRoot()
    field = Field(simulation, options.count)

    start = time.monotonic()
    visuals = zorOSG.createVisual(simulation, root, 0.4)  # small on the screen: fewer triangles do
    made = time.monotonic()
    for number, body in enumerate(field.bodies):
        hue = 0.02 + 0.62 * number / len(field.bodies)
        color = zor.Vec4f(*colorsys.hsv_to_rgb(hue, 0.72, 0.95), 1)
        zorOSG.setDiffuseColor(body.getGeometries()[0], color, visuals)
    print(f"{options.count} visuals made in {1000 * (made - start):.0f} ms, found and coloured in {1000 * (time.monotonic() - made):.0f} ms")

    reach = field.reach()
    display = Display(field)
    application.addListener(display)
    application.setCameraHome(zor.Vec3(0, -1.5 * reach, 1.05 * reach), zor.Vec3(0, -0.12 * reach, 0), zor.Vec3(0, 0, 1))
    application.getSceneDecorator().setBackgroundColor(zor.Vec3(0.10, 0.12, 0.17), zor.Vec3(0.03, 0.03, 0.05))
    if not arguments.has("--stopAfter"):
        application.stopAfter(20)
    return application.run()


if __name__ == "__main__":
    sys.exit(main())
