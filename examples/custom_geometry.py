"""A scene written with osg: an island from a numpy mesh, a crate with a texture from numpy, labels, a visitor that paints, a callback.

./zor run examples/custom_geometry.py --stopAfter 1 --screenShot island.png
"""

import math
import sys

import numpy

import osg
import osgText
import zor
import zorIO
import zorOSG

SIZE, HALF = 181, 10.0  # vertices along a side, half its length (m)
BANDS = [(-9.0, (0.78, 0.70, 0.50)), (0.35, (0.36, 0.52, 0.24)), (1.5, (0.44, 0.40, 0.36)), (2.5, (0.95, 0.96, 0.98))]


def heights() -> numpy.ndarray:
    """A few hills and waves on an island (m)."""
    y, x = numpy.mgrid[-HALF : HALF : SIZE * 1j, -HALF : HALF : SIZE * 1j]
    hills = [(-2.5, 2.5, 3.4, 2.2), (3.5, 3.0, 2.3, 1.8), (1.0, -3.5, 1.3, 2.4), (-5.0, -3.0, 1.7, 1.6)]
    z = sum((h * numpy.exp(-((x - cx) ** 2 + (y - cy) ** 2) / (2 * w**2)) for cx, cy, h, w in hills), numpy.zeros_like(x))
    z += 0.10 * numpy.sin(2.1 * x + 0.6 * y) * numpy.cos(1.7 * y - 0.4 * x) + 0.05 * numpy.sin(5.3 * x) * numpy.sin(4.7 * y)
    island: numpy.ndarray = z - 2.6 * (numpy.hypot(x, y) / HALF) ** 5 - 0.12
    return island


def terrain(z: numpy.ndarray) -> osg.Geometry:
    """The mesh: arrays are filled from numpy in one call each."""
    y, x = numpy.mgrid[-HALF : HALF : SIZE * 1j, -HALF : HALF : SIZE * 1j]
    slope_y, slope_x = numpy.gradient(z, 2 * HALF / (SIZE - 1))
    normals = numpy.dstack([-slope_x, -slope_y, numpy.ones_like(z)])
    normals /= numpy.linalg.norm(normals, axis=2, keepdims=True)
    corner = (numpy.arange(SIZE - 1)[:, None] * SIZE + numpy.arange(SIZE - 1)).ravel()
    triangles = numpy.stack([corner, corner + 1, corner + SIZE + 1, corner, corner + SIZE + 1, corner + SIZE], axis=1)

    geometry = osg.Geometry()
    geometry.setName("terrain")
    geometry.setVertexArray(osg.Vec3Array(numpy.dstack([x, y, z]).reshape(-1, 3).astype("f4")))
    geometry.setNormalArray(osg.Vec3Array(normals.reshape(-1, 3).astype("f4")))
    geometry.setColorArray(osg.Vec4ubArray(numpy.full((SIZE * SIZE, 4), 255, "u1")))
    geometry.addPrimitiveSet(osg.DrawElementsUInt(osg.PrimitiveSet.TRIANGLES, triangles.ravel().astype("u4")))
    return geometry


class Painter(osg.NodeVisitor):
    """Colours every geometry called "terrain" by height, through a view of its own memory."""

    def apply(self, node: osg.Node) -> None:
        if isinstance(node, osg.Geometry) and node.getName() == "terrain":
            height = numpy.asarray(node.getVertexArray())[:, 2]
            steep = numpy.asarray(node.getNormalArray())[:, 2] < 0.72
            colors = numpy.asarray(node.getColorArray())
            for lowest, color in BANDS:
                colors[height > lowest, :3] = numpy.array(color) * 255
            colors[steep & (height > 0.35), :3] = (118, 104, 92)
            node.dirty()
        self.traverse(node)


def crate_image(pixels: int = 256) -> osg.Image:
    """Boards in a frame, drawn by numpy."""
    y, x = numpy.mgrid[0:pixels, 0:pixels] / pixels
    grain = 0.9 + 0.1 * numpy.sin(60 * x + 4 * numpy.sin(9 * y)) * numpy.sin(7 * y)
    shade = grain * numpy.where((x * 6) % 1 < 0.06, 0.45, 1.0)
    frame = numpy.maximum(abs(x - 0.5), abs(y - 0.5)) > 0.40
    beam = abs(x - y) < 0.075
    shade = numpy.where(frame | beam, 0.72 * (0.92 + 0.08 * numpy.sin(80 * (x + y))), shade)
    colors = shade[..., None] * numpy.array([214, 160, 92])
    return osg.Image.fromArray(colors.clip(0, 255).astype("u1"))


def crate() -> osg.MatrixTransform:
    drawable = osg.ShapeDrawable(osg.Box(osg.Vec3(), 1.5, 1.5, 1.5))
    texture = osg.Texture2D(crate_image())
    texture.setFilter(osg.Texture.MIN_FILTER, osg.Texture.LINEAR_MIPMAP_LINEAR)
    texture.setMaxAnisotropy(8)
    drawable.getOrCreateStateSet().setTextureAttributeAndModes(0, texture)
    place = osg.MatrixTransform()
    place.addChild(drawable)
    return place


def sea() -> osg.Geode:
    """A sheet that the ground shines through."""
    drawable = osg.ShapeDrawable(osg.Box(osg.Vec3(0, 0, -0.05), 400, 400, 0.1))
    drawable.setColor(osg.Vec4(0.08, 0.32, 0.48, 0.92))
    state = drawable.getOrCreateStateSet()
    state.setMode(osg.GL_BLEND, osg.StateAttribute.ON)
    state.setRenderBinDetails(9, "DepthSortedBin")  # before the labels, which are see-through as well
    geode = osg.Geode()
    geode.addDrawable(drawable)
    return geode


def label(text: str, position: osg.Vec3) -> osgText.Text:
    sign = osgText.Text()
    try:
        sign.setFont("DejaVu Sans")  # or the nearest that is installed
    except RuntimeError:
        pass  # the font that is built in does for letters without dots
    sign.setFontResolution(64, 64)
    sign.setText(text)
    sign.setPosition(position)
    sign.setCharacterSize(0.55)
    sign.setAxisAlignment(osgText.Text.SCREEN)
    sign.setAlignment(osgText.Text.CENTER_BOTTOM)
    sign.setColor(osg.Vec4(1, 1, 1, 1))
    sign.setBackdropType(osgText.Text.OUTLINE)
    sign.setBackdropColor(osg.Vec4(0.1, 0.12, 0.15, 1))
    sign.getOrCreateStateSet().setMode(osg.GL_LIGHTING, osg.StateAttribute.OFF)
    return sign


def float_on_water(node: osg.Node, visitor: osg.NodeVisitor) -> None:
    """Called for the crate before every frame."""
    assert isinstance(node, osg.MatrixTransform)
    t = visitor.getFrameStamp().getSimulationTime()
    turn = osg.Matrixd.rotate(0.35 + 0.2 * math.sin(t), osg.Vec3d(0.3, 0.2, 1)) * osg.Matrixd.rotate(0.12, osg.Vec3d(1, 0, 0))
    node.setMatrix(turn * osg.Matrixd.translate(3.9, -7.9, 0.2 + 0.1 * math.sin(1.7 * t)))


def build(root: osg.Group) -> None:
    z = heights()
    island = osg.Group()
    island.addChildren([terrain(z), sea()])
    root.addChild(island)
    island.accept(Painter())

    drifting = crate()
    drifting.setUpdateCallback(float_on_water)
    root.addChild(drifting)

    # The ground below a point is found by a line that falls on it.
    for name, x, y in (("Großer Gipfel", -2.5, 2.5), ("Osthorn", 3.5, 3.0), ("Südhügel", 1.0, -3.5)):
        ground = osg.intersect(island[0], osg.Vec3d(x, y, 50), osg.Vec3d(x, y, -50))[0].point
        root.addChild(label(f"{name} {ground.z():.1f} m", osg.Vec3(x, y, ground.z() + 0.35)))


def main() -> int:
    application = zorOSG.ExampleApplication()
    arguments = zorIO.ArgumentParser(sys.argv)
    if not application.init(arguments):
        return application.getExitCode()
    application.initSimulation()
    build(application.getSceneRoot())
    application.setCameraHome(zor.Vec3(10.0, -15.5, 5.6), zor.Vec3(0.5, -1.4, 0.4))
    if not arguments.has("--stopAfter"):
        application.stopAfter(20)
    return application.run()


if __name__ == "__main__":
    sys.exit(main())
