"""2,000 dominoes fall along ten arms of a spiral, all set off at once from the middle.

./zor run examples/domino_run.py [--count 2000] [application options, see --help]
"""

import argparse
import colorsys
import math
import sys
import time

import osg
import zor
import zorCollide
import zorIO
import zorOSG
import zorSDK

ARMS = 10
HALF = zor.Vec3(0.05, 0.22, 0.4)  # thickness, width and height, halved
SPACING = 0.32
INNER = 2.2  # radius where the arms begin
TURN = 1.3  # radius gained in one radian: with ten arms their lines stay apart

PUSH = 2.2  # rad/s of the first dominoes


def spiral(count: int) -> list[tuple[float, float, float]]:
    """Position and heading of `count` dominoes along one arm, equally far apart."""
    angle = 0.0
    places = []
    for _ in range(count):
        radius = INNER + TURN * angle
        heading = angle + math.atan2(radius, TURN)
        places.append((radius * math.cos(angle), radius * math.sin(angle), heading))
        angle += SPACING / math.hypot(radius, TURN)
    return places


class Run:
    """The dominoes, and how many of them have fallen."""

    def __init__(self, simulation: zorSDK.Simulation, root: osg.Group, count: int):
        self.dominoes: list[zor.RigidBody] = []
        plastic = zor.Material("plastic", 1100.0, 0.35)
        shape = zorCollide.Box(HALF)
        per_arm = math.ceil(count / ARMS)
        path = spiral(per_arm)
        for number in range(count):
            arm, place = number % ARMS, number // ARMS
            turn = 2 * math.pi * arm / ARMS
            x, y, heading = path[place]
            geometry = zorCollide.Geometry(shape)
            geometry.setMaterial(plastic)
            domino = zor.RigidBody(geometry, f"domino {number}")
            domino.setPosition(zor.Vec3(x * math.cos(turn) - y * math.sin(turn), x * math.sin(turn) + y * math.cos(turn), HALF.z()))
            domino.setRotation(zor.Quat(heading + turn, zor.Vec3(0, 0, 1)))
            simulation.add(domino)
            if place == 0:
                domino.setLocalAngularVelocity(zor.Vec3(0, PUSH, 0))
                domino.setVelocity(domino.getTransform().transformVector(zor.Vec3(PUSH * HALF.z(), 0, 0)))
            else:
                domino.sleep()  # until its neighbour falls on it
            hue = (arm / ARMS + 0.25 * place / per_arm) % 1.0
            visual = zorOSG.createVisual(domino, root)
            zorOSG.setDiffuseColor(visual, zor.Vec4f(*colorsys.hsv_to_rgb(hue, 0.75, 0.95), 1))
            self.dominoes.append(domino)

    def count_fallen(self) -> int:
        """Those whose height axis leans by more than 45 degrees."""
        up = zor.Vec3(0, 0, 1)
        return sum(domino.getTransform().transformVector(up).z() < 0.7 for domino in self.dominoes)


class Display(zorOSG.ExampleApplicationListener):
    """Text over the picture."""

    def __init__(self, run: Run):
        super().__init__()
        self.run = run

    def preFrame(self, application: zorOSG.ExampleApplication) -> None:
        seconds = application.getSimulation().getTimeStamp()
        application.getSceneDecorator().setText(0, f"{self.run.count_fallen()} of {len(self.run.dominoes)} dominoes have fallen   {seconds:4.1f} s")


def main() -> int:
    parser = argparse.ArgumentParser(add_help=False)
    parser.add_argument("--count", type=int, default=2000)
    options, rest = parser.parse_known_args(sys.argv)
    arguments = zorIO.ArgumentParser(rest)
    if options.count < ARMS:
        parser.error(f"--count must be {ARMS} or more")

    application = zorOSG.ExampleApplication()
    if not application.init(arguments):
        return application.getExitCode()
    application.initSimulation()
    simulation, root = application.getSimulation(), application.getSceneRoot()
    simulation.setEnableAutoSleep(True)
    simulation.setNumSolverIterations(12)
    floor = zorCollide.Geometry(zorCollide.Box(zor.Vec3(40, 40, 0.5)))
    floor.setPosition(zor.Vec3(0, 0, -0.5))
    simulation.add(floor)
    zorOSG.setDiffuseColor(zorOSG.createVisual(floor, root), zor.Vec4f(0.30, 0.33, 0.38, 1))

    run = Run(simulation, root, options.count)
    display = Display(run)
    application.addListener(display)
    reach = run.dominoes[-1].getPosition().length()
    application.setTargetFPS(10)  # as many bodies take their time to draw
    application.setCameraHome(zor.Vec3(0.25 * reach, -1.75 * reach, 1.65 * reach), zor.Vec3(0, -0.16 * reach, 0), zor.Vec3(0, 0, 1))
    if not arguments.has("--stopAfter"):
        application.stopAfter(30)
    start = time.monotonic()
    status = application.run()
    seconds = time.monotonic() - start
    print(f"{run.count_fallen()} of {len(run.dominoes)} dominoes fell in {simulation.getTimeStamp():.1f} s, computed and drawn in {seconds:.1f} s")
    return status


if __name__ == "__main__":
    sys.exit(main())
