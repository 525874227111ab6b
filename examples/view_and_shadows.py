"""What a view can show: seven kinds of shadows side by side, statistics, help, and what the simulation computes with.

./zor run examples/view_and_shadows.py [--output FOLDER] [application options, see --help]

Leaves shadows.png, statistics.png, help.png and debug.png (contacts, axes, centres of mass, wire frames) in the folder.
In a window the keys h, i, d and l show help, statistics, debug rendering and the next kind of shadows.
"""

import math
import os
import sys

import numpy
from numpy.typing import NDArray

import osgDB
import osg
import zor
import zorCollide
import zorIO
import zorOSG

type Pixels = NDArray[numpy.uint8]

SHADOWS = {
    "soft shadow map": zorOSG.SceneDecorator.SOFT_SHADOWMAP,
    "shadow map": zorOSG.SceneDecorator.SHADOWMAP,
    "shadow volumes": zorOSG.SceneDecorator.SHADOWVOLUME,
    "split shadow map": zorOSG.SceneDecorator.PARALLELLSPLIT_SHADOWMAP,
    "perspective shadow map": zorOSG.SceneDecorator.LIGHTSPACEPERSPECTIVE_SHADOWMAP,
    "shadow texture": zorOSG.SceneDecorator.SHADOWTEXTURE,
    "no shadows": zorOSG.SceneDecorator.NO_SHADOWS,
}

FLOOR, STONE = zor.Vec4f(0.62, 0.64, 0.66, 1), zor.Vec4f(0.55, 0.53, 0.50, 1)
PAINTS = [zor.Vec4f(0.80, 0.27, 0.20, 1), zor.Vec4f(0.93, 0.69, 0.20, 1), zor.Vec4f(0.22, 0.52, 0.74, 1),
          zor.Vec4f(0.36, 0.60, 0.33, 1)]


class Scene:
    """A swinging gate between posts, a row of pillars and a heap of bodies."""

    def __init__(self, application: zorOSG.ExampleApplication):
        self.application = application
        self.simulation = application.getSimulation()
        self.root = application.getSceneRoot()
        self.add("", zorCollide.Box(zor.Vec3(14, 14, 0.1)), zor.Vec3(0, 0, -0.1), FLOOR, static=True)
        self.add_gate()
        for i in range(8):
            shape = zorCollide.Cylinder(0.22, 1.6)
            pillar = self.add("", shape, zor.Vec3(-3.4, -2.4 + 1.5 * i, 0.8), STONE, static=True)
            pillar.setRotation(zor.Quat(zor.Vec3(0, 1, 0), zor.Vec3(0, 0, 1)))
        self.add_heap()

    def add(self, name: str, shape: zorCollide.Shape, position: zor.Vec3, colour: zor.Vec4f, static: bool = False) -> zor.RigidBody:
        body = zor.RigidBody(zorCollide.Geometry(shape), name)
        body.setPosition(position)
        if static:
            body.setMotionControl(zor.RigidBody.STATIC)
        self.simulation.add(body)
        zorOSG.setDiffuseColor(zorOSG.createVisual(body, self.root), colour)
        return body

    def add_gate(self) -> None:
        post = self.add("post", zorCollide.Box(zor.Vec3(0.12, 0.12, 1.1)), zor.Vec3(-1.2, -0.4, 1.1), STONE, static=True)
        gate = self.add("gate", zorCollide.Box(zor.Vec3(0.75, 0.05, 0.6)), zor.Vec3(-0.3, -0.4, 1.2), PAINTS[2])
        hinge = zor.Hinge(zor.Vec3(-1.06, -0.4, 1.2), zor.Vec3(0, 0, 1), gate, post)
        hinge.setName("hinge")
        hinge.getMotor1D().setEnable(True)
        hinge.getMotor1D().setSpeed(-0.5)
        self.simulation.add(hinge)

    def add_heap(self) -> None:
        for i in range(18):
            turn = i * 2.4
            place = zor.Vec3(1.9 + 0.55 * math.cos(turn), 0.6 + 0.55 * math.sin(turn), 0.5 + 0.33 * i)
            shapes = [zorCollide.Box(zor.Vec3(0.26, 0.26, 0.26)), zorCollide.Sphere(0.28), zorCollide.Capsule(0.17, 0.5)]
            body = self.add("", shapes[i % 3], place, PAINTS[i % 4])
            body.setRotation(zor.Quat(turn, zor.Vec3(0.3, 1, 0.2).normal()))


class Photographer:
    """Draws frames and takes their pictures."""

    def __init__(self, application: zorOSG.ExampleApplication, folder: str):
        self.application = application
        self.folder = folder
        self.timer = zor.HighAccuracyTimer(True)

    def frames(self, count: int) -> None:
        for _ in range(count):
            self.application.executeOneStepWithGraphics(self.timer)

    def press(self, key: int) -> None:
        queue = self.application.getViewer().getEventQueue()
        queue.keyPress(key)
        queue.keyRelease(key)

    def shoot(self, name: str) -> str:
        path = os.path.join(self.folder, name)
        self.application.takeScreenShot(path)
        self.frames(2)
        return path


def pixels(path: str) -> Pixels:
    image = osgDB.readImageFile(path)
    assert image, path
    return numpy.asarray(image)[::-1]


def contact_sheet(pictures: list[Pixels], columns: int) -> Pixels:
    """Pictures of one size in rows, the last one filled up with grey."""
    height, width = pictures[0].shape[:2]
    rows = -(-len(pictures) // columns)
    sheet = numpy.full((rows * height, columns * width, 3), 40, numpy.uint8)
    for i, picture in enumerate(pictures):
        y, x = i // columns * height, i % columns * width
        sheet[y:y + height, x:x + width] = picture[..., :3]
    return sheet


def write(sheet: Pixels, path: str) -> None:
    osgDB.writeImageFile(osg.Image.fromArray(sheet, topFirst=True), path)
    print(f"{path} written")


def main() -> int:
    arguments = zorIO.ArgumentParser(sys.argv)
    arguments.addOption("--output", "folder of the pictures", ".", "FOLDER")
    application = zorOSG.ExampleApplication()
    if not application.init(arguments):
        return application.getExitCode()
    application.initSimulation()
    folder = arguments.getValue("--output")
    os.makedirs(folder, exist_ok=True)
    Scene(application)
    application.setCameraHome(zor.Vec3(1.5, -8.5, 5.2), zor.Vec3(-0.3, 1.0, 0.5))
    decorator = application.getSceneDecorator()
    decorator.calculateLightPositions()
    if not application.hasOffscreenWindow():
        return application.run()

    photographer = Photographer(application, folder)
    photographer.frames(240)
    application.setAutoStepping(False)
    pictures = []
    for name, method in SHADOWS.items():
        decorator.setShadowMethod(method)
        decorator.setText(0, name)
        path = photographer.shoot("shadow.png")
        pictures.append(pixels(path))
    os.remove(path)
    print(f"{len(SHADOWS)} kinds of shadows")
    write(contact_sheet(pictures, 2), os.path.join(folder, "shadows.png"))

    decorator.setShadowMethod(zorOSG.SceneDecorator.SOFT_SHADOWMAP)
    decorator.setText(0, "the gate turns with half a radian a second", zor.Vec4f(1, 0.85, 0.4, 1))
    application.setAutoStepping(True)
    photographer.press(ord("i"))
    photographer.frames(150)
    print(photographer.shoot("statistics.png"), "written")
    decorator.clearText()
    for key in "ih":
        photographer.press(ord(key))
    photographer.frames(2)
    print(photographer.shoot("help.png"), "written")
    for key in "hd":
        photographer.press(ord(key))
    application.setEnableTextDebugRendering(True)
    photographer.frames(2)
    print(photographer.shoot("debug.png"), "written")
    return 0


if __name__ == "__main__":
    sys.exit(main())
