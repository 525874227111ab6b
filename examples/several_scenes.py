"""Several scenes in one script, each behind a key: a tower, a swing and a heap. Edit this file while a window shows it
with --watch, and the scene is built anew; --unitTests runs all of them.

./zor run examples/several_scenes.py --scene swing
./zor run examples/several_scenes.py --unitTests
./zor run examples/several_scenes.py --scene heap -- 60
"""

import random
import sys

import osg
import zor
import zorCollide
import zorIO
import zorOSG
import zorSDK


def add(simulation: zorSDK.Simulation, root: osg.Group, shape: zorCollide.Shape, at: zor.Vec3, color: zor.Vec4f,
        fixed: bool = False) -> zor.RigidBody:
    """A body with one shape and a colour."""
    body = zor.RigidBody(zorCollide.Geometry(shape))
    body.setPosition(at)
    if fixed:
        body.setMotionControl(zor.RigidBody.STATIC)
    simulation.add(body)
    zorOSG.setDiffuseColor(zorOSG.createVisual(body, root), color)
    return body


def ground(simulation: zorSDK.Simulation, application: zorOSG.ExampleApplication, root: osg.Group) -> None:
    """What the scenes stand on, seen from nearby."""
    application.setCameraHome(zor.Vec3(4.5, -8.5, 4), zor.Vec3(0, 0, 1.3))
    add(simulation, root, zorCollide.Box(8, 8, 0.1), zor.Vec3(0, 0, -0.1), zor.Vec4f(0.45, 0.5, 0.42, 1), fixed=True)


def tower(simulation: zorSDK.Simulation, application: zorOSG.ExampleApplication, root: osg.Group) -> None:
    """Bricks, and a ball that comes for them."""
    ground(simulation, application, root)
    for layer in range(10):
        for side in (-0.28, 0.28):
            across = layer % 2 == 0
            size = zorCollide.Box(0.8, 0.25, 0.2) if across else zorCollide.Box(0.25, 0.8, 0.2)
            place = zor.Vec3(0, side * 1.9, 0) if across else zor.Vec3(side * 1.9, 0, 0)
            add(simulation, root, size, place + zor.Vec3(0, 0, 0.2 + 0.4 * layer), zor.Vec4f(0.75, 0.35 + 0.03 * layer, 0.2, 1))
    ball = add(simulation, root, zorCollide.Sphere(0.4), zor.Vec3(-7, -0.4, 2), zor.Vec4f(0.15, 0.2, 0.3, 1))
    ball.getMassProperties().setMass(900)
    ball.setVelocity(zor.Vec3(9, 0.3, 2.5))
    application.getSceneDecorator().setText(0, "A tower, for a second")


def swing(simulation: zorSDK.Simulation, application: zorOSG.ExampleApplication, root: osg.Group) -> None:
    """A beam on a hinge with unequal loads."""
    ground(simulation, application, root)
    post = add(simulation, root, zorCollide.Box(0.15, 0.5, 1), zor.Vec3(0, 0, 1), zor.Vec4f(0.35, 0.3, 0.3, 1), fixed=True)
    beam = add(simulation, root, zorCollide.Box(3, 0.3, 0.08), zor.Vec3(0, 0, 2.1), zor.Vec4f(0.7, 0.55, 0.3, 1))
    simulation.add(zor.Hinge(zor.Vec3(0, 0, 2.1), zor.Vec3(0, 1, 0), post, beam))
    for x, size in ((-2.4, 0.35), (2.2, 0.3)):
        add(simulation, root, zorCollide.Sphere(size), zor.Vec3(x, 0, 2.2 + size), zor.Vec4f(0.2, 0.45, 0.7, 1))
    application.getSceneDecorator().setText(0, "A swing")


def heap(simulation: zorSDK.Simulation, application: zorOSG.ExampleApplication, root: osg.Group) -> None:
    """As many bodies as the command line says behind "--"."""
    ground(simulation, application, root)
    numbers = application.getArguments().getScriptArguments()
    chance = random.Random(3)
    for i in range(int(numbers[0]) if numbers else 40):
        size = chance.uniform(0.15, 0.35)
        shape = zorCollide.Box(size, size, size) if i % 2 else zorCollide.Sphere(size)
        place = zor.Vec3(chance.uniform(-1, 1), chance.uniform(-1, 1), 1 + 0.45 * i)
        add(simulation, root, shape, place, zor.Vec4f(0.3, 0.35 + 0.4 * (i % 3), 0.5, 1))
    application.getSceneDecorator().setText(0, "A heap")


def main() -> int:
    """Registers the scenes and runs. Returns the exit code."""
    application = zorOSG.ExampleApplication()
    if not application.init(zorIO.ArgumentParser(sys.argv)):
        return application.getExitCode()
    for key, function, seconds in (("1", "tower", 3.0), ("2", "swing", 4.0), ("3", "heap", 5.0)):
        application.addScene(__file__, function, ord(key), True, seconds)
    return application.run()


if __name__ == "__main__":
    sys.exit(main())
