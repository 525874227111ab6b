"""Callbacks in Python: balls run down a stepped pyramid and glow with their speed; b adds another row of balls.

./zor run examples/listeners.py --stopAfter 1.8 --screenShot balls.png
"""

import colorsys
import random
import sys

import osg
import zor
import zorCollide
import zorIO
import zorOSG
import zorSDK

STEPS = 6
RADIUS = 0.14
FASTEST = 4.5  # m/s, drawn red


def colour_of_speed(speed: float) -> zor.Vec4f:
    """Blue at rest, over green and yellow, to red."""
    hue = 0.62 * (1 - min(speed / FASTEST, 1))
    return zor.Vec4f(*colorsys.hsv_to_rgb(hue, 0.85, 1), 1)


class Balls(zorOSG.ExampleApplicationListener):
    """Adds balls above the top and colours each by its speed before every frame."""

    def __init__(self, simulation: zorSDK.Simulation, root: osg.Group):
        super().__init__()
        self.simulation = simulation
        self.root = root
        self.chance = random.Random(1)
        self.balls: list[tuple[zor.RigidBody, osg.Node]] = []

    def add_row(self) -> None:
        height = STEPS * 0.4 + 0.5 + 0.3 * (len(self.balls) % 192) / 8
        for i in range(8):
            body = zor.RigidBody(f"ball {len(self.balls)}")
            body.add(zorCollide.Geometry(zorCollide.Sphere(RADIUS)))
            body.setPosition(zor.Vec3(0.31 * (i - 3.5), self.chance.uniform(-0.8, 0.8), height))
            body.setVelocity(zor.Vec3(*(self.chance.gauss(0, 0.6) for _ in range(3))))
            self.simulation.add(body)
            node = zorOSG.createVisual(body, self.root)
            zorOSG.setShininess(node, 80)
            self.balls.append((body, node))

    def preFrame(self, application: zorOSG.ExampleApplication) -> None:
        for body, node in self.balls:
            zorOSG.setDiffuseColor(node, colour_of_speed(body.getVelocity().length()))
        application.getSceneDecorator().setText(0, f"{len(self.balls)} balls   {self.simulation.getTimeStamp():4.1f} s")


class Keys(zorOSG.GuiEventListener):
    """Adds balls at a key."""

    def __init__(self, balls: Balls):
        super().__init__(zorOSG.GuiEventListener.KEYBOARD)
        self.setName("b: add a row of balls")  # a line of the help overlay
        self.balls = balls

    def keyboard(self, key: int, modKeyMask: int, x: float, y: float, keydown: bool) -> bool:
        if keydown and key == ord("b"):
            self.balls.add_row()
            return True
        return False


def build_pyramid(simulation: zorSDK.Simulation, root: osg.Group) -> None:
    for step in range(STEPS):
        half = 1.3 + 0.55 * (STEPS - 1 - step)
        slab = zorCollide.Geometry(zorCollide.Box(zor.Vec3(half, half, 0.2)))
        slab.setPosition(zor.Vec3(0, 0, 0.2 + 0.4 * step))
        simulation.add(slab)
        shade = 0.35 + 0.06 * step
        zorOSG.setDiffuseColor(zorOSG.createVisual(slab, root), zor.Vec4f(shade, shade, shade + 0.05, 1))
    ground = zorCollide.Geometry(zorCollide.Box(zor.Vec3(12, 12, 0.1)))
    ground.setPosition(zor.Vec3(0, 0, -0.1))
    simulation.add(ground)
    zorOSG.setDiffuseColor(zorOSG.createVisual(ground, root), zor.Vec4f(0.55, 0.58, 0.6, 1))


def main() -> int:
    application = zorOSG.ExampleApplication()
    arguments = zorIO.ArgumentParser(sys.argv)
    if not application.init(arguments):
        return application.getExitCode()
    application.initSimulation()
    simulation, root = application.getSimulation(), application.getSceneRoot()
    build_pyramid(simulation, root)

    balls = Balls(simulation, root)
    for _ in range(24):
        balls.add_row()
    application.addListener(balls)
    keys = Keys(balls)  # kept here: a listener is called as long as its Python object lives
    simulation.add(keys)
    application.setCameraHome(zor.Vec3(7.5, -9, 6.5), zor.Vec3(0, 0, 0.8), zor.Vec3(0, 0, 1))
    if not arguments.has("--stopAfter"):
        application.stopAfter(10)
    return application.run()


if __name__ == "__main__":
    sys.exit(main())
