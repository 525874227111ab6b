"""Materials: a table of spheres from rough to smooth and from plastic to metal, textures in every role, outline, wire frame, glass.

./zor run examples/materials.py --stopAfter 2 --screenShot materials.png

Every image is made here, with numpy: a sky of six sides, tiles, bricks, wood and rust. In a window the mouse turns the view.
"""

import math
import os
import sys
import tempfile
from collections.abc import Callable

import numpy
from numpy.typing import NDArray

import osg
import osgDB
import zor
import zorCollide
import zorIO
import zorOSG
import zorRender

type Field = NDArray[numpy.float64]

SUN = numpy.array([-0.50, -0.70, 1.20]) / math.sqrt(0.25 + 0.49 + 1.44)  # where the key light comes from
FACES: dict[str, Callable[[Field, Field], tuple[Field, Field, Field]]] = {
    "posx": lambda s, t: (1 + 0 * s, -t, -s), "negx": lambda s, t: (-1 + 0 * s, -t, s),
    "posy": lambda s, t: (s, 1 + 0 * s, t), "negy": lambda s, t: (s, -1 + 0 * s, -t),
    "posz": lambda s, t: (s, -t, 1 + 0 * s), "negz": lambda s, t: (-s, -t, -1 + 0 * s),
}


def noise(x: Field, y: Field, seed: int, cells: int) -> Field:
    """Smooth random numbers from 0 to 1 that repeat after `cells`."""
    grid = numpy.random.default_rng(seed).random((cells, cells))
    column, row = numpy.floor(x).astype(int), numpy.floor(y).astype(int)
    u, v = x - column, y - row
    u, v = u * u * (3 - 2 * u), v * v * (3 - 2 * v)

    def at(dx: int, dy: int) -> Field:
        found: Field = grid[(row + dy) % cells, (column + dx) % cells]
        return found

    mean: Field = at(0, 0) * (1 - u) * (1 - v) + at(1, 0) * u * (1 - v) + at(0, 1) * (1 - u) * v + at(1, 1) * u * v
    return mean


def clouds(x: Field, y: Field, seed: int, cells: int = 4, octaves: int = 5) -> Field:
    """Noise of several sizes, 0 to 1, over coordinates from 0 to 1."""
    total = numpy.zeros_like(x)
    for i in range(octaves):
        total += 0.5 ** (i + 1) * noise(x * cells * 2**i, y * cells * 2**i, seed + i, cells * 2**i)
    return total / (1 - 0.5**octaves)


def mix(a: Field | tuple[float, ...], b: Field | tuple[float, ...], share: Field) -> Field:
    return numpy.asarray(a) * (1 - share[..., None]) + numpy.asarray(b) * share[..., None]


def smooth(low: float, high: float, x: Field) -> Field:
    t = numpy.clip((x - low) / (high - low), 0, 1)
    return numpy.asarray(t * t * (3 - 2 * t))


def write(path: str, pixels: Field) -> str:
    """Stores an image whose first row is the upper one; values from 0 to 1, in one channel or three."""
    if pixels.ndim == 2:
        pixels = numpy.repeat(pixels[..., None], 3, axis=2)
    image = osg.Image()
    image.allocate(pixels.shape[1], pixels.shape[0], 3)
    numpy.asarray(image)[:] = (numpy.clip(pixels[::-1], 0, 1) * 255 + 0.5).astype("u1")
    osgDB.writeImageFile(image, path)
    return path


def sky(x: Field, y: Field, z: Field) -> Field:
    """The colour of the sky in directions of length 1, and of the plain under it."""
    up = numpy.clip(z, 0, 1)
    color = mix((0.80, 0.87, 0.93), (0.22, 0.43, 0.74), up**0.55)
    far = 1 / numpy.maximum(z, 0.05)
    cover = smooth(0.50, 0.72, clouds(0.07 * x * far + 0.3, 0.07 * y * far, 3)) * smooth(0.02, 0.22, z)
    color = mix(color, (0.97, 0.97, 0.98), 0.9 * cover)
    toward_sun = x * SUN[0] + y * SUN[1] + z * SUN[2]
    color = mix(color, (1.0, 0.98, 0.90), numpy.clip(numpy.exp((toward_sun - 1) * 60) + (toward_sun > 0.998), 0, 1))
    around = numpy.arctan2(y, x) / math.tau + 0.5
    for height, cells, ridge in ((0.085, 8, (0.64, 0.72, 0.79)), (0.055, 16, (0.50, 0.59, 0.65))):
        hills = height * (0.25 + clouds(around, 0 * x, cells, cells, 6))
        color = mix(color, ridge, smooth(0.0, 0.003, hills - z))
    return mix(color, mix((0.66, 0.67, 0.66), (0.37, 0.37, 0.36), numpy.clip(-2.5 * z, 0, 1)), smooth(0.0, 0.01, -z))


def write_sky(folder: str, size: int = 512) -> None:
    """Six sides, under the names of a folder of sides and under those of a common beginning."""
    s, t = numpy.meshgrid(*[(numpy.arange(size) + 0.5) / size * 2 - 1] * 2)
    for name, direction in FACES.items():
        right, above, ahead = direction(s, t)
        length = numpy.sqrt(right**2 + above**2 + ahead**2)
        pixels = sky(right / length, ahead / length, above / length)  # in the scene, z points up
        write(f"{folder}/{name}.png", pixels)
        write(f"{folder}/sky_{name}.png", pixels)


def normals(height: Field, steepness: float) -> Field:
    """The normal map of heights that repeat; row 0 is the upper one."""
    slope_x = (numpy.roll(height, -1, 1) - numpy.roll(height, 1, 1)) * 0.5 * height.shape[1] * steepness
    slope_y = (numpy.roll(height, 1, 0) - numpy.roll(height, -1, 0)) * 0.5 * height.shape[0] * steepness
    normal = numpy.dstack([-slope_x, -slope_y, numpy.ones_like(height)])
    return numpy.asarray(0.5 + 0.5 * normal / numpy.linalg.norm(normal, axis=2, keepdims=True))


class Images:
    """The images that are drawn on things, written to a folder."""

    def __init__(self, folder: str, size: int = 512):
        self.folder = folder
        self.x, self.y = numpy.meshgrid(*[(numpy.arange(size) + 0.5) / size] * 2)
        write_sky(folder)
        self.make_tiles()
        self.make_bricks()
        self.make_wood()
        self.make_rust()

    def path(self, name: str) -> str:
        return f"{self.folder}/{name}.png"

    def make_tiles(self) -> None:
        """Four tiles, joints between them."""
        u, v = self.x * 4 % 1, self.y * 4 % 1
        edge = numpy.minimum(numpy.minimum(u, 1 - u), numpy.minimum(v, 1 - v))
        tile = smooth(0.012, 0.03, edge)
        shade = numpy.random.default_rng(4).random((4, 4))[(self.y * 4).astype(int), (self.x * 4).astype(int)]
        stone = mix((0.60, 0.60, 0.58), (0.70, 0.69, 0.66), 0.6 * shade + 0.4 * clouds(self.x, self.y, 21, 8))
        write(self.path("tiles"), mix((0.40, 0.39, 0.38), stone, tile))
        write(self.path("tiles_normal"), normals(smooth(0.0, 0.035, edge) + 0.03 * clouds(self.x, self.y, 22, 16, 3), 0.012))
        write(self.path("tiles_rough"), 0.95 - tile * (0.5 - 0.15 * clouds(self.x, self.y, 23, 8)))

    def make_bricks(self) -> None:
        """Rows of bricks, shifted by a half; heights for their joints."""
        row = (self.y * 8).astype(int)
        along = self.x * 4 + 0.5 * (row % 2)
        u, v = along % 1, self.y * 8 % 1
        edge = numpy.minimum(numpy.minimum(u, 1 - u) * 2, numpy.minimum(v, 1 - v))
        brick = smooth(0.06, 0.14, edge)
        shade = numpy.random.default_rng(7).random((8, 4))[row, along.astype(int) % 4]
        clay = mix((0.50, 0.21, 0.15), (0.72, 0.36, 0.25), 0.6 * shade + 0.5 * clouds(self.x, self.y, 31, 16))
        write(self.path("bricks"), mix((0.62, 0.60, 0.57), clay, brick))
        write(self.path("bricks_height"), smooth(0.03, 0.17, edge) * (0.82 + 0.18 * shade) - 0.06 * clouds(self.x, self.y, 33, 32, 3))

    def make_wood(self) -> None:
        """Four boards with their grain."""
        board = (self.x * 4).astype(int)
        shift = numpy.random.default_rng(2).random(4)[board]
        grain = clouds((self.x * 4 + shift * 3) % 1, (self.y * 0.25 + shift) % 1, 41, 16, 4)
        rings = 0.5 + 0.5 * numpy.sin(40 * grain + 6 * shift)
        edge = smooth(0.0, 0.03, numpy.minimum(self.x * 4 % 1, 1 - self.x * 4 % 1))
        wood = mix((0.46, 0.29, 0.16), (0.70, 0.48, 0.28), 0.55 * rings + 0.45 * shift)
        write(self.path("wood"), wood * (0.55 + 0.45 * edge)[..., None])
        write(self.path("wood_normal"), normals(edge + 0.06 * rings, 0.010))

    def make_rust(self) -> None:
        """Steel that rusts in spots: metallic and rough maps beside the colour."""
        rust = smooth(0.46, 0.60, clouds(self.x, self.y, 51, 4, 6))
        rusty = mix((0.30, 0.15, 0.08), (0.52, 0.27, 0.12), clouds(self.x, self.y, 52, 16))
        write(self.path("rust"), mix((0.72, 0.73, 0.75), rusty, rust))
        write(self.path("rust_metallic"), 1 - rust)
        write(self.path("rust_rough"), 0.22 + 0.7 * rust)


class Scene:
    """Bodies in rows, each with a material of its own."""

    def __init__(self, application: zorOSG.ExampleApplication, images: Images):
        self.simulation, self.root, self.images = application.getSimulation(), application.getSceneRoot(), images
        zorOSG.setCubeMapTexture(self.root, images.folder, ".png")
        zorOSG.setEnvMapReflectionCoefficient(self.root, 0)  # what reflects says so
        sides = osg.ImageVector()
        zorOSG.loadCubeMapImages(images.folder + "/sky", "png", sides)
        self.root.addChild(zorOSG.createSkySphere("sky", sides, 1000.0))
        self.add_floor()
        self.add_spheres()
        self.add_textured()
        self.add_drawn_otherwise()

    def add(self, shape: zorCollide.Shape, position: zor.Vec3, colour: tuple[float, ...] = (1, 1, 1, 1), turn: float = 0,
            detail: float = 3) -> osg.Group:
        body = zor.RigidBody(zorCollide.Geometry(shape))
        body.setPosition(position)
        body.setRotation(zor.Quat(turn, zor.Vec3(0, 0, 1)))
        body.setMotionControl(zor.RigidBody.STATIC)
        self.simulation.add(body)
        visual = zorOSG.createVisual(body, self.root, detail)
        zorOSG.setDiffuseColor(visual, zor.Vec4f(*colour))
        return visual

    def paint(self, visual: osg.Group, name: str, role: int = zorOSG.DIFFUSE_TEXTURE, scale: float = 1) -> None:
        assert zorOSG.setTexture(visual, self.images.path(name), True, role, scale, scale)

    def add_floor(self) -> None:
        floor = self.add(zorCollide.Box(zor.Vec3(32, 32, 0.1)), zor.Vec3(0, 20, -0.1))
        for name, role in (("tiles", zorOSG.DIFFUSE_TEXTURE), ("tiles_normal", zorOSG.NORMALMAP_TEXTURE), ("tiles_rough", zorOSG.ROUGHNESS_TEXTURE)):
            self.paint(floor, name, role, 16)
        zorOSG.setEnvMapReflectionCoefficient(floor, 0.6)

    def add_spheres(self) -> None:
        """Smooth to rough from the left to the right; plastic, in between and metal, each on a higher step."""
        colours = [(0.70, 0.12, 0.10, 1), (0.85, 0.55, 0.40, 1), (1.00, 0.78, 0.36, 1)]
        for row, colour in enumerate(colours):
            height = 0.6 * row
            if row:
                step = self.add(zorCollide.Box(zor.Vec3(3.1, 0.5, height / 2)), zor.Vec3(0, 1.2 + row, height / 2), (0.58, 0.57, 0.55, 1))
                zorOSG.setRoughness(step, 0.9)
            for column in range(6):
                ball = self.add(zorCollide.Sphere(0.42), zor.Vec3(column - 2.5, 1.2 + row, height + 0.42), colour)
                zorOSG.setMetallic(ball, row / 2)
                zorOSG.setRoughness(ball, column / 5)
                zorOSG.setEnvMapReflectionCoefficient(ball, 1)

    def add_textured(self) -> None:
        wall = self.add(zorCollide.Box(zor.Vec3(1.1, 0.15, 1.1)), zor.Vec3(4.9, 1.2, 1.1), turn=-0.55)
        self.paint(wall, "bricks")
        self.paint(wall, "bricks_height", zorOSG.HEIGHTMAP_TEXTURE)
        crate = self.add(zorCollide.Box(zor.Vec3(0.5, 0.5, 0.5)), zor.Vec3(-4.3, 0.6, 0.5), turn=0.5)
        self.paint(crate, "wood")
        self.paint(crate, "wood_normal", zorOSG.NORMALMAP_TEXTURE)
        zorOSG.setRoughness(crate, 0.6)
        drum = self.add(zorCollide.Sphere(0.7), zor.Vec3(-4.6, 2.6, 0.7))
        for name, role in (("rust", zorOSG.DIFFUSE_TEXTURE), ("rust_metallic", zorOSG.METALLIC_TEXTURE), ("rust_rough", zorOSG.ROUGHNESS_TEXTURE)):
            self.paint(drum, name, role, 2)
        zorOSG.setEnvMapReflectionCoefficient(drum, 1)

    def add_drawn_otherwise(self) -> None:
        chosen = self.add(zorCollide.Capsule(0.32, 0.7), zor.Vec3(-2.3, -0.5, 0.32), (0.25, 0.55, 0.75, 1), 1.1)
        zorOSG.setEnableOutline(chosen, True, zorRender.Color(1.0, 0.72, 0.1), 3)
        cage = self.add(zorCollide.Sphere(0.5), zor.Vec3(-0.8, -0.7, 0.5), (0.1, 0.2, 0.3, 1), detail=0.6)
        zorOSG.setEnableWireFrameMode(cage, True)
        glass = self.add(zorCollide.Sphere(0.5), zor.Vec3(0.7, -0.7, 0.5), (0.10, 0.35, 0.30, 1))
        zorOSG.setAlpha(glass, 0.25)
        zorOSG.setMetallic(glass, 0)
        zorOSG.setRoughness(glass, 0.05)
        zorOSG.setEnvMapReflectionCoefficient(glass, 1)
        lacquer = self.add(zorCollide.Sphere(0.5), zor.Vec3(2.2, -0.7, 0.5), (0.45, 0.10, 0.45, 1))
        zorOSG.setEnvMapReflectionCoefficient(lacquer, 0.5)  # without physics: a share of the colour


def main() -> int:
    application = zorOSG.ExampleApplication()
    if not application.init(zorIO.ArgumentParser(sys.argv)):
        return application.getExitCode()
    application.initSimulation()
    with tempfile.TemporaryDirectory() as folder:
        Scene(application, Images(folder))
        application.setCameraHome(zor.Vec3(0.2, -7.0, 2.9), zor.Vec3(0.1, 1.0, 0.9))
        application.getSceneDecorator().setEnableLogo(False)
        print(f"{len(application.getSimulation().getRigidBodies())} bodies under a sky of six images, {len(os.listdir(folder))} images in all")
        return application.run()


if __name__ == "__main__":
    sys.exit(main())
