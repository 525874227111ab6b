"""Recording: a video, an animated picture, a contact sheet, and the distances that a camera sees.

./zor run examples/recording.py [--output FOLDER] [application options, see --help]

Leaves tower.mp4, tower.gif, sheet.png and depth.png in the folder.
"""

import os
import sys

import numpy
from numpy.typing import NDArray

import osg
import osgDB
import zor
import zorCollide
import zorIO
import zorOSG

PAINTS = [zor.Vec4f(0.80, 0.27, 0.20, 1), zor.Vec4f(0.93, 0.69, 0.20, 1), zor.Vec4f(0.22, 0.52, 0.74, 1),
          zor.Vec4f(0.36, 0.60, 0.33, 1)]
EYE, CENTER = zor.Vec3(4.6, -7.2, 3.4), zor.Vec3(0.2, 0, 1.1)


def add(application: zorOSG.ExampleApplication, shape: zorCollide.Shape, position: zor.Vec3, paint: zor.Vec4f) -> zor.RigidBody:
    body = zor.RigidBody(zorCollide.Geometry(shape))
    body.setPosition(position)
    application.getSimulation().add(body)
    zorOSG.setDiffuseColor(zorOSG.createVisual(body, application.getSceneRoot()), paint)
    return body


def build(application: zorOSG.ExampleApplication) -> None:
    """A tower of blocks in layers across each other, and a ball on its way to it."""
    floor = add(application, zorCollide.Box(zor.Vec3(9, 9, 0.1)), zor.Vec3(0, 0, -0.1), zor.Vec4f(0.72, 0.73, 0.74, 1))
    floor.setMotionControl(zor.RigidBody.STATIC)
    for layer in range(9):
        for side in (-0.42, 0, 0.42):
            across = layer % 2 == 1
            half = zor.Vec3(0.62, 0.19, 0.15) if across else zor.Vec3(0.19, 0.62, 0.15)
            position = zor.Vec3(0 if across else side, side if across else 0, 0.15 + 0.301 * layer)
            add(application, zorCollide.Box(half), position, PAINTS[layer % 4])
    ball = add(application, zorCollide.Sphere(0.42), zor.Vec3(-6, -0.4, 2.0), zor.Vec4f(0.15, 0.16, 0.18, 1))
    ball.getMassProperties().setMass(6000)
    ball.setVelocity(zor.Vec3(8.5, 0.35, 1.9))


def shaded(distances: NDArray[numpy.float32], nearest: float, farthest: float) -> NDArray[numpy.uint8]:
    """Near is light, far is dark, where nothing was drawn is blue."""
    part = numpy.clip((farthest - distances) / (farthest - nearest), 0, 1)
    picture = numpy.repeat((40 + 215 * part).astype(numpy.uint8)[..., None], 3, axis=2)
    picture[numpy.isinf(distances)] = (28, 38, 70)
    return picture


def main() -> int:
    arguments = zorIO.ArgumentParser(sys.argv)
    arguments.addOption("--output", "folder of what is recorded", "recording_output", "FOLDER")
    application = zorOSG.ExampleApplication()
    if not application.init(arguments):
        return application.getExitCode()
    application.initSimulation()
    application.setRealTimeSync(False)
    build(application)
    application.setCameraHome(EYE, CENTER)
    application.getSceneDecorator().calculateLightPositions()
    folder = os.path.abspath(arguments.getValue("--output"))
    os.makedirs(folder, exist_ok=True)

    # A camera of its own beside the main view, half as large and from the side: its frames become the GIF.
    small = zorOSG.RenderToImage(320, 180)
    depth = zorOSG.RenderToImage(480, 270, zorOSG.RenderTarget.DEPTH_BUFFER)
    for target in (small, depth):
        size = target.getSize()
        target.setViewMatrixAsLookAt(EYE, CENTER, zor.Vec3(0, 0, 1))
        target.setProjectionMatrixAsPerspective(40, size[0] / size[1], 0.1, 100)
        application.addRenderTarget(target, application.getSceneDecorator())

    film, animation = os.path.join(folder, "tower.mp4"), os.path.join(folder, "tower.gif")
    with application.record(film, 30, speed=0.5), small.record(animation, 15, simulation=application.getSimulation(), speed=0.5):
        application.stopAfter(2.2)
        exit_code = application.run()
    if exit_code:
        return exit_code

    frames = zorOSG.videoFrames(film, 9)
    zorOSG.contactSheet(frames, 3, width=320, gap=6, path=os.path.join(folder, "sheet.png"))
    distances = depth.depthArray(topFirst=True)
    seen = distances[numpy.isfinite(distances)]
    osgDB.writeImageFile(osg.Image.fromArray(shaded(distances, seen.min(), 14), topFirst=True), os.path.join(folder, "depth.png"))
    total = len(zorOSG.videoFrames(film))
    print(f"{total} frames in tower.mp4, {len(zorOSG.videoFrames(animation))} in tower.gif; nearest point {seen.min():.2f} m away")
    print(f"all of it is in {folder}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
