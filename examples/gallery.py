#!/usr/bin/env python3
"""Everything that can be drawn, each in a small scene of its own, on one sheet.

./zor run examples/gallery.py [--output FILE] [--only WORD] [--columns NUMBER]

Leaves gallery.png. --only draws the cells whose captions contain a word, --cells FOLDER also stores each by itself.
"""

import argparse
import math
import os
import sys
import tempfile
from collections.abc import Callable, Iterable, Iterator
from functools import cache
from typing import NamedTuple

import numpy
from numpy.typing import NDArray

from materials import Images

import osg
import osgDB
import osgText
import osgViewer
import zor
import zorCollide
import zorOSG
import zorRender
import zorSDK

type Pixels = NDArray[numpy.uint8]
type Point = tuple[float, float, float]

WIDTH, HEIGHT, FINER = 236, 178, 2  # pixels of a cell, and how much finer it is drawn
STRIP = 0.115  # height of a caption, as a part of the cell
SKY, HORIZON = zor.Vec3(0.56, 0.66, 0.77), zor.Vec3(0.90, 0.92, 0.94)
FLOOR, INK = zor.Vec4f(0.66, 0.68, 0.70, 1), zor.Vec4f(0.08, 0.10, 0.14, 1)
RED, GOLD, BLUE, GREEN, WHITE = (zor.Vec4f(*rgb, 1) for rgb in
                                 [(0.80, 0.27, 0.20), (0.95, 0.70, 0.22), (0.22, 0.50, 0.74), (0.33, 0.60, 0.35), (0.95, 0.95, 0.93)])
PAINTS = [RED, GOLD, BLUE, GREEN]
PURE_WHITE = zor.Vec4f(1, 1, 1, 1)
Drawable = zorOSG.ParticleSystemDrawable


def text_on_panel(text: str, panel_height: float, size: float, color: zor.Vec4f, panel_width: float = 1.0) -> osgText.Text:
    """Letters in the middle of a panel, as high as a part of it, and not distorted by its shape."""
    label = osgText.Text()
    label.setFont("DejaVuSans.ttf")
    label.setFontResolution(48, 48)
    label.setText(text)
    label.setCharacterSize(size, panel_width * WIDTH / (panel_height * HEIGHT))
    label.setAlignment(osgText.Text.CENTER_CENTER)
    label.setPosition(osg.Vec3(0.5, 0.5, 0))
    label.setColor(osg.Vec4(*color))
    return label


class Stage:
    """A decorated scene with a simulation, and the camera that looks at it."""

    def __init__(self, viewer: osgViewer.Viewer):
        self.viewer = viewer
        self.decorator = zorOSG.SceneDecorator(WIDTH * FINER, HEIGHT * FINER)
        self.decorator.setBackgroundColor(SKY, HORIZON)
        self.decorator.setEnableLogo(False)
        self.root = osg.Group()
        self.decorator.addChild(self.root)
        self.simulation = zorSDK.Simulation()
        viewer.setSceneData(self.decorator)
        self.look((2.6, -4.2, 2.7), (0, 0, 0.45))

    def look(self, eye: Point, center: Point = (0, 0, 0)) -> None:
        self.viewer.getCamera().setViewMatrixAsLookAt(osg.Vec3d(*eye), osg.Vec3d(*center), osg.Vec3d(0, 0, 1))

    def look_from_front(self, distance: float = 4.0, height: float = 0.0) -> None:
        self.look((0, -distance, height), (0, 0, height))

    def floor(self, half: float = 30.0) -> zorCollide.Geometry:
        """A ground that bodies come to rest on."""
        ground = zorCollide.Geometry(zorCollide.Box(zor.Vec3(half, half, 0.1)))
        ground.setPosition(zor.Vec3(0, 0, -0.1))
        self.simulation.add(ground)
        zorOSG.setDiffuseColor(zorOSG.createVisual(ground, self.root), FLOOR)
        return ground

    def show(self, shape: zorCollide.Shape, position: Point = (0, 0, 0.5), turn: float = 0.0, detail: float = 1.0,
             root: osg.Group | None = None) -> zorOSG.GeometryNode:
        """Something that stands still. `turn` is about the vertical (rad)."""
        geometry = zorCollide.Geometry(shape)
        geometry.setTransform(zor.AffineMatrix4x4(zor.Quat(turn, zor.Vec3(0, 0, 1)), zor.Vec3(*position)))
        self.simulation.add(geometry)
        return zorOSG.createVisual(geometry, root or self.root, detail)

    def upright(self, shape: zorCollide.Shape, height: float) -> zorOSG.GeometryNode:
        """A shape whose axis is y, with the axis up."""
        geometry = zorCollide.Geometry(shape)
        geometry.setTransform(zor.AffineMatrix4x4(zor.Quat(math.pi / 2, zor.Vec3(1, 0, 0)), zor.Vec3(0, 0, height)))
        self.simulation.add(geometry)
        return zorOSG.createVisual(geometry, self.root)

    def body(self, shape: zorCollide.Shape, position: Point, color: zor.Vec4f | None = None, root: osg.Group | None = None) -> zor.RigidBody:
        body = zor.RigidBody(zorCollide.Geometry(shape))
        body.setPosition(zor.Vec3(*position))
        self.simulation.add(body)
        visual = zorOSG.createVisual(body, root or self.root)
        if color:
            zorOSG.setDiffuseColor(visual, color)
        return body

    def label(self, text: str, position: Point, size: float = 0.3, color: zor.Vec4f = INK) -> zorOSG.Text:
        label = zorOSG.Text(text, zor.Vec3(*position))
        label.setColor(color)
        label.setCharacterSize(size)
        label.setAlignment(zorOSG.Text.CENTER_CENTER)
        self.root.addChild(label)
        return label

    def run(self, seconds: float, every: int = 6) -> None:
        """Steps the simulation, and draws a frame every few steps."""
        for step in range(round(seconds / self.simulation.getTimeStep())):
            self.simulation.stepForward()
            if step % every == 0:
                self.viewer.frame()

    def picture(self) -> Pixels:
        """What is drawn, the upper row first, smoothed by drawing it finer."""
        self.viewer.frame()
        fine = numpy.asarray(self.viewer.grab())[::-1].astype(numpy.uint16)
        parts = fine.reshape(HEIGHT, FINER, WIDTH, FINER, 3)
        mean: Pixels = ((parts.sum(axis=(1, 3)) + FINER * FINER // 2) // (FINER * FINER)).astype(numpy.uint8)
        return mean

    def caption(self, text: str) -> None:
        """A text on a bright strip below the picture."""
        strip = zorOSG.createPanel(self.root, zor.Vec2(0, 0), zor.Vec2(1, STRIP), zor.Vec4(1, 1, 1, 0.82))
        strip.addDrawable(text_on_panel(text, STRIP, 0.62, INK))


class Cell(NamedTuple):
    caption: str
    build: Callable[[Stage], None]


CELLS: list[Cell] = []


def cell(caption: str) -> Callable[[Callable[[Stage], None]], Callable[[Stage], None]]:
    """Puts a function that builds a scene on the sheet."""

    def add(build: Callable[[Stage], None]) -> Callable[[Stage], None]:
        CELLS.append(Cell(caption, build))
        return build

    return add


# What things are made of: images and meshes.

@cache
def images() -> Images:
    """The images of the materials example, made when they are wanted."""
    return Images(tempfile.mkdtemp(prefix="gallery-"))


def image_file(pixels: NDArray[numpy.float64]) -> str:
    """Stores a picture, numbers from 0 to 1, and tells where."""
    path = os.path.join(tempfile.mkdtemp(prefix="gallery-"), "image.png")
    store((pixels.clip(0, 1) * 255).astype(numpy.uint8), path)
    return path


def checks(first: Point, second: Point, count: int = 8) -> NDArray[numpy.float64]:
    y, x = numpy.mgrid[0:256, 0:256] * count // 256
    return numpy.where(((x + y) % 2 == 0)[..., None], numpy.array(first), numpy.array(second))


def gear(teeth: int = 12) -> tuple[list[Point], list[int]]:
    """Corners and triangles of a toothed wheel."""
    rim = [(0.8 if k % 4 in (1, 2) else 0.62) for k in range(4 * teeth)]
    corners: list[Point] = []
    for z in (0.0, 0.35):
        corners += [(r * math.cos(2 * math.pi * k / len(rim)), r * math.sin(2 * math.pi * k / len(rim)), z) for k, r in enumerate(rim)]
    count = len(rim)
    corners += [(0, 0, 0), (0, 0, 0.35)]
    triangles: list[int] = []
    for k in range(count):
        n = (k + 1) % count
        triangles += [k, n, count + n, k, count + n, count + k, 2 * count, n, k, 2 * count + 1, count + k, count + n]
    return corners, triangles


def hills(count: int = 33, size: float = 4.0) -> zorCollide.HeightField:
    line = numpy.linspace(-math.pi, math.pi, count)
    x, y = numpy.meshgrid(line, line)
    heights = 0.35 * numpy.cos(x) * numpy.cos(y * 1.3) + 0.12 * numpy.sin(2.3 * x + y)
    return zorCollide.HeightField(count, count, size, size, heights.ravel())


# Shapes.

def shape_cell(caption: str, make: Callable[[], zorCollide.Shape], height: float = 0.5, upright: bool = False) -> None:
    color = PAINTS[len(CELLS) % len(PAINTS)]

    def build(stage: Stage) -> None:
        stage.floor()
        node = stage.upright(make(), height) if upright else stage.show(make(), (0, 0, height), 0.5)
        zorOSG.setDiffuseColor(node, color)

    cell(caption)(build)


def compound() -> zorCollide.Compound:
    parts = zorCollide.Compound()
    parts.add(zorCollide.Box(zor.Vec3(0.6, 0.25, 0.12)))
    parts.add(zorCollide.Box(zor.Vec3(0.12, 0.25, 0.45)), zor.AffineMatrix4x4(zor.Vec3(0, 0, 0.4)))
    parts.add(zorCollide.Sphere(0.28), zor.AffineMatrix4x4(zor.Vec3(0, 0, 1.0)))
    return parts


def crystal() -> zorCollide.Convex:
    ring = [(0.6 * math.cos(k * math.pi / 3), 0.6 * math.sin(k * math.pi / 3), 0.1) for k in range(6)]
    return zorCollide.Convex([*ring, (0, 0, 0.75), (0, 0, -0.5)])


shape_cell("box", lambda: zorCollide.Box(zor.Vec3(0.6, 0.45, 0.5)))
shape_cell("sphere", lambda: zorCollide.Sphere(0.65), 0.65)
shape_cell("capsule", lambda: zorCollide.Capsule(0.35, 0.8), 0.75, upright=True)
shape_cell("cylinder", lambda: zorCollide.Cylinder(0.55, 1.1), 0.55, upright=True)
shape_cell("cone", lambda: zorCollide.Cone(0.65, 1.3), 0.65, upright=True)
shape_cell("convex", crystal, 0.52)
shape_cell("triangle mesh", lambda: zorCollide.Trimesh(*gear()), 0.02)
shape_cell("compound", compound, 0.13)


@cell("height field")
def height_field(stage: Stage) -> None:
    zorOSG.setDiffuseColor(stage.show(hills(), (0, 0, 0)), zor.Vec4f(0.48, 0.60, 0.36, 1))
    stage.look((3.4, -4.6, 3.4))


@cell("plane")
def plane(stage: Stage) -> None:
    stage.show(zorCollide.Plane(zor.Vec3(0, 0, 1), zor.Vec3()), (0, 0, 0))
    stage.body(zorCollide.Sphere(0.4), (0, 0, 0.4), RED)


@cell("mesh drawn in place of a box")
def render_data(stage: Stage) -> None:
    stage.floor()
    corners, triangles = gear(9)
    data = zorRender.RenderData()
    data.setVertices(corners)
    data.setIndices(triangles)
    material = zorRender.RenderMaterial()
    material.setDiffuseColor(zorRender.Color(0.85, 0.62, 0.25))
    data.setRenderMaterial(material)
    box = zorCollide.Box(zor.Vec3(0.8, 0.8, 0.18))
    box.setRenderData(data)
    stage.show(box, (0, 0, 0.05))
    stage.root.addChild(zorOSG.createCubeLines(zor.Vec3(0, 0, 0.22), zor.Vec3(0.8, 0.8, 0.18)))


@cell("sensor")
def sensor(stage: Stage) -> None:
    stage.floor()
    geometry = zorCollide.Geometry(zorCollide.Box(zor.Vec3(0.8, 0.6, 0.5)))
    geometry.setSensor(True)
    geometry.setPosition(zor.Vec3(0, 0, 0.5))
    stage.simulation.add(geometry)
    stage.show(zorCollide.Sphere(0.3), (0, 0, 0.4))
    zorOSG.createVisual(geometry, stage.root)


@cell("detail 0.3, 1 and 3")
def detail(stage: Stage) -> None:
    stage.floor()
    for x, ratio in ((-1.05, 0.3), (0, 1), (1.05, 3)):
        zorOSG.setDiffuseColor(stage.show(zorCollide.Sphere(0.48), (x, 0, 0.48), detail=ratio), BLUE)


@cell("axes of each geometry")
def axes_of_geometries(stage: Stage) -> None:
    stage.floor()
    for x, shape in ((-0.7, zorCollide.Box(zor.Vec3(0.35, 0.35, 0.35))), (0.7, zorCollide.Sphere(0.4))):
        body = zor.RigidBody(zorCollide.Geometry(shape))
        body.setPosition(zor.Vec3(x, 0, 0.4))
        stage.simulation.add(body)
        zorOSG.setAlpha(zorOSG.createVisual(body, stage.root, 1.0, True), 0.5)


# Particles, and what is drawn of them.

def pour(stage: Stage, count: int = 260) -> zor.ParticleSystem:
    """Grains of four colours in a heap, on a tray."""
    stage.floor()
    for turn in range(4):
        rotation = zor.Quat(turn * math.pi / 2, zor.Vec3(0, 0, 1))
        wall = zorCollide.Geometry(zorCollide.Box(zor.Vec3(0.04, 0.78, 0.14)))
        wall.setTransform(zor.AffineMatrix4x4(rotation, rotation.rotate(zor.Vec3(0.74, 0, 0.14))))
        stage.simulation.add(wall)
        zorOSG.setDiffuseColor(zorOSG.createVisual(wall, stage.root), zor.Vec4f(0.42, 0.46, 0.52, 1))
    chance = numpy.random.default_rng(4)
    particles = zor.ParticleSystem("grains")
    particles.setRollingResistance(0.2)
    for number in range(count):
        particles.setDefaultColor(PAINTS[number % 4])
        particles.addParticle(zor.Vec3(*chance.uniform((-0.3, -0.3, 0.2), (0.3, 0.3, 3.2))), float(chance.uniform(0.06, 0.10)))
    stage.simulation.add(particles)
    stage.look((1.6, -2.6, 2.2), (0, 0, 0.25))
    return particles


def particle_cell(caption: str, rendering: int, shader: int) -> None:
    def build(stage: Stage) -> None:
        zorOSG.createVisual(pour(stage), stage.root, rendering, shader)
        stage.run(1.2, 1000)

    cell(caption)(build)


for made_of, rendering in (("points", Drawable.SPRITES), ("squares", Drawable.QUAD_SPRITES), ("triangles", Drawable.TRIANGLES)):
    for looks, shader in (("plain", Drawable.SIMPLE_SPRITES), ("banded", Drawable.ROTATION_SPRITES), ("soft", Drawable.ALPHA_SPRITES)):
        particle_cell(f"particles: {made_of}, {looks}", rendering, shader)


@cell("forces between particles")
def contact_graph(stage: Stage) -> None:
    zorOSG.createParticleContactGraph(pour(stage), stage.root, 0.0, 40.0)
    stage.run(1.2, 1000)


@cell("paths of particles")
def particle_paths(stage: Stage) -> None:
    particles = pour(stage, 90)
    zorOSG.createVisual(particles, stage.root)
    zorOSG.createParticleTrajectoriesVisual(particles, stage.root, 0.6, 25)
    stage.run(0.55, 1)


@cell("emitter of particles")
def emitter(stage: Stage) -> None:
    stage.floor()
    particles = zor.ParticleSystem("grains")
    particles.setRollingResistance(0.2)
    stage.simulation.add(particles)
    mixture = zor.ParticleDistribution()
    for color in PAINTS:
        mixture.add(zor.ParticleModel(zor.RandomReal.uniform(0.04, 0.07), None, color))
    spout = zorCollide.Geometry(zorCollide.Box(zor.Vec3(0.3, 0.3, 0.15)))
    spout.setSensor(True)
    spout.setPosition(zor.Vec3(0, 0, 1.5))
    source = zor.Emitter(particles, mixture, spout, 300)
    stage.simulation.add(source)
    zorOSG.createVisual(particles, stage.root)
    zorOSG.createVisual(source, stage.root)
    stage.run(1.3, 1000)


@cell("emitter of bodies")
def body_emitter(stage: Stage) -> None:
    stage.floor()
    mixture = zor.RigidBodyDistribution()
    for shape in (zorCollide.Box(zor.Vec3(0.13, 0.1, 0.1)), zorCollide.Sphere(0.12), zorCollide.Capsule(0.08, 0.14)):
        mixture.add(zor.RigidBody(zorCollide.Geometry(shape)))
    volume = zorCollide.Geometry(zorCollide.Cylinder(0.5, 0.4))
    volume.setSensor(True)
    volume.setTransform(zor.AffineMatrix4x4(zor.Quat(math.pi / 2, zor.Vec3(1, 0, 0)), zor.Vec3(0, 0, 1.6)))
    source = zor.RigidBodyEmitter(mixture, volume, 22)
    zorOSG.createVisual(source, stage.root)
    stage.simulation.add(source)
    stage.run(1.8)


# Paths, contacts, frames.

def throw(stage: Stage, count: int = 14) -> None:
    """Balls thrown up from the middle, as a fountain."""
    stage.floor()
    for k in range(count):
        angle = 2 * math.pi * k / count
        ball = stage.body(zorCollide.Sphere(0.07), (0.3 * math.cos(angle), 0.3 * math.sin(angle), 0.3), PAINTS[k % 4])
        ball.setVelocity(zor.Vec3(1.05 * math.cos(angle), 1.05 * math.sin(angle), 4.4 + 0.8 * (k % 3)))


@cell("paths of bodies")
def body_paths(stage: Stage) -> None:
    throw(stage)
    zorOSG.createRigidBodyTrajectoriesVisual(stage.simulation, stage.root, 1.0, 80)
    stage.run(0.95, 1)
    stage.look((2.6, -4.0, 1.9), (0, 0, 0.75))


@cell("paths coloured by speed")
def coloured_paths(stage: Stage) -> None:
    throw(stage)
    zorOSG.createRigidBodyTrajectoriesVisual(stage.simulation, stage.root, 1.0, 200, zorOSG.ScalarColorMap(zorOSG.ScalarColorMap.PLASMA, 0.8, 6))
    stage.run(0.95, 1)
    stage.look((2.6, -4.0, 1.9), (0, 0, 0.75))


@cell("paths of frames, on a wheel")
def frame_paths(stage: Stage) -> None:
    stage.floor()
    wheel = zor.RigidBody(zorCollide.Geometry(zorCollide.Cylinder(0.5, 0.15)))
    wheel.setPosition(zor.Vec3(-1.9, 0, 0.5))
    stage.simulation.add(wheel)
    zorOSG.setDiffuseColor(zorOSG.createVisual(wheel, stage.root), BLUE)
    for angle in (0.0, 2.1, 4.2):
        frame = zor.ObserverFrame(wheel, zor.AffineMatrix4x4(zor.Vec3(0.48 * math.sin(angle), -0.1, 0.48 * math.cos(angle))))
        stage.simulation.add(frame)
        zorOSG.createVisual(frame, stage.root, 0.25)
    wheel.setVelocity(zor.Vec3(1.5, 0, 0))
    wheel.setAngularVelocity(zor.Vec3(0, 3.0, 0))
    zorOSG.createFrameTrajectoryDrawable(stage.simulation, stage.root, 200, zor.Vec4f(0.85, 0.25, 0.15, 1))
    stage.run(1.9, 1)
    stage.look((-0.1, -5.6, 1.5), (-0.3, 0, 0.5))


@cell("contacts that a listener hears of")
def contacts(stage: Stage) -> None:
    stage.floor()
    listener = zorSDK.ContactEventListener()
    stage.simulation.add(listener)
    stage.simulation.add(zorOSG.createVisualUpdater(listener, stage.root))
    for k in range(5):
        body = stage.body(zorCollide.Box(zor.Vec3(0.3, 0.25, 0.2)), (0.1 * k - 0.2, 0.06 * k, 0.25 + 0.45 * k))
        body.setRotation(zor.Quat(0.6 * k, zor.Vec3(0, 0, 1)))
    stage.run(1.5)
    stage.look((2.6, -4.2, 2.4), (0, 0, 0.85))


@cell("observer frame")
def observer_frame(stage: Stage) -> None:
    stage.floor()
    body = stage.body(zorCollide.Box(zor.Vec3(0.5, 0.3, 0.25)), (0, 0, 0.25), GOLD)
    frame = zor.ObserverFrame(body, zor.AffineMatrix4x4(zor.Vec3(0.5, -0.3, 0.25)))
    stage.simulation.add(frame)
    zorOSG.createVisual(frame, stage.root, 0.6)


@cell("axes of a constraint")
def constraint_axes(stage: Stage) -> None:
    stage.floor()
    post = stage.body(zorCollide.Box(zor.Vec3(0.1, 0.1, 0.6)), (-0.6, 0, 0.6))
    post.setMotionControl(zor.RigidBody.STATIC)
    door = stage.body(zorCollide.Box(zor.Vec3(0.45, 0.05, 0.5)), (0, 0, 0.65), RED)
    hinge = zor.Hinge(zor.Vec3(-0.48, 0, 0.65), zor.Vec3(0, 0, 1), door, post)
    stage.simulation.add(hinge)
    door.setAngularVelocity(zor.Vec3(0, 0, 2))
    zorOSG.createAxes(hinge, stage.root, 0.8)
    stage.run(0.3)


@cell("axes: scale and line width")
def plain_axes(stage: Stage) -> None:
    stage.floor()
    for x, scale, width in ((-1.3, 0.5, 2), (-0.5, 0.7, 5), (0.4, 0.9, 9)):
        zorOSG.createAxes(zor.AffineMatrix4x4(zor.Vec3(x, 0, 0.05)), stage.root, scale, width)


# Grids, lines and simple bodies.

@cell("grid of lines, grid of faces")
def grids(stage: Stage) -> None:
    zorOSG.createGrid(10, 10, zor.Vec3(-1.5, -1.5, 0), zor.Vec3(3, 0, 0), zor.Vec3(0, 3, 0), stage.root)
    upright = osg.Geode()
    upright.addDrawable(zorOSG.createGrid(8, 8, osg.Vec3(-1.5, 1.5, 0), osg.Vec3(3, 0, 0), osg.Vec3(0, 0, 1.5), True))
    zorOSG.setDiffuseColor(upright, zor.Vec4f(0.55, 0.62, 0.72, 1))
    stage.root.addChild(upright)


@cell("grid in three dimensions")
def grid_3d(stage: Stage) -> None:
    stage.floor()
    zorOSG.create3DGrid(5, 4, 4, zor.Vec3(-0.75, -0.6, 0.02), zor.Vec3(1.5, 0, 0), zor.Vec3(0, 1.2, 0), zor.Vec3(0, 0, 1.2), 1.5, stage.root)


@cell("edges of boxes")
def cube_lines(stage: Stage) -> None:
    stage.floor()
    stage.show(zorCollide.Sphere(0.4), (0, 0, 0.5))
    stage.root.addChild(zorOSG.createCubeLines(zor.Vec3(0, 0, 0.5), zor.Vec3(0.45, 0.45, 0.45)))
    stage.root.addChild(zorOSG.createCubeLines(zor.Vec3(0, 0, 0.5), zor.Vec3(0.8, 0.7, 0.5), zorRender.Color(0.9, 0.45, 0.1), 4.0))


@cell("lines of many widths, polylines")
def lines(stage: Stage) -> None:
    stage.look_from_front(5.2)
    for k in range(6):
        stage.root.addChild(zorOSG.createLine(zor.Vec3(-1.5, 0, 1.05 - 0.2 * k), zor.Vec3(-0.3, 0, 1.05 - 0.2 * k), zor.Vec4(*INK), 2.0 * k + 1))
    spiral = [(0.75 + 0.065 * a * math.cos(a), 0, 0.55 + 0.065 * a * math.sin(a)) for a in numpy.arange(0, 10, 0.1)]
    stage.root.addChild(zorOSG.createPolyline(zor.Vec3Vector(spiral), zor.Vec4(*RED), 4.0))
    wave = [(-1.5 + 0.03 * k, 0, -0.75 + 0.3 * math.sin(0.3 * k)) for k in range(101)]
    stage.root.addChild(zorOSG.createPolyline(zor.Vec3Vector(wave), zor.Vec4(*BLUE), 6.0))


@cell("sphere and cylinder, see-through")
def primitives(stage: Stage) -> None:
    stage.floor()
    upright = zor.Quat(math.pi / 2, zor.Vec3(1, 0, 0))
    stage.root.addChild(zorOSG.createSphere(zor.Vec3(-0.6, 0.2, 0.5), zor.Vec4(*RED), 0.5))
    stage.root.addChild(zorOSG.createCylinder(zor.AffineMatrix4x4(upright, zor.Vec3(0.7, 0.2, 0.5)), zor.Vec4(*BLUE), 0.35, 1.0))
    stage.root.addChild(zorOSG.createSphere(zor.Vec3(0.1, -0.9, 0.35), zor.Vec4(0.95, 0.7, 0.2, 0.45), 0.35))


# Texts and panels.

@cell("text: planes that it lies in")
def text_planes(stage: Stage) -> None:
    Text = zorOSG.Text
    zorOSG.createGrid(4, 4, zor.Vec3(-1, -1, 0), zor.Vec3(2, 0, 0), zor.Vec3(0, 2, 0), stage.root)
    zorOSG.createGrid(4, 3, zor.Vec3(-1, 1, 0), zor.Vec3(2, 0, 0), zor.Vec3(0, 0, 1.5), stage.root)
    zorOSG.createGrid(4, 3, zor.Vec3(-1, -1, 0), zor.Vec3(0, 2, 0), zor.Vec3(0, 0, 1.5), stage.root)
    for text, place, plane, color in (("XY", (0.2, -0.2, 0.01), Text.XY_PLANE, RED), ("XZ", (0.2, 0.98, 0.8), Text.XZ_PLANE, BLUE),
                                      ("YZ", (-0.98, 0.0, 0.8), Text.YZ_PLANE, GREEN), ("screen", (0.3, -0.6, 0.7), Text.SCREEN, INK)):
        stage.label(text, place, 0.55 if plane != Text.SCREEN else 0.3, color).setAxisAlignment(plane)
    stage.look((3.4, -4.2, 2.9), (-0.1, 0, 0.5))


@cell("text: shadows and outline behind it")
def text_backdrops(stage: Stage) -> None:
    Text = zorOSG.Text
    stage.look_from_front(5.4)
    names = ["BOTTOM_RIGHT", "CENTER_RIGHT", "TOP_RIGHT", "BOTTOM_CENTER", "TOP_CENTER", "BOTTOM_LEFT", "CENTER_LEFT", "TOP_LEFT"]
    for k, name in enumerate(names):
        text = stage.label("Abg", (-0.95 + 0.95 * (k % 3), 0, 0.75 - 0.62 * (k // 3)), 0.45, GOLD)
        text.setBackdropType(getattr(Text, f"DROP_SHADOW_{name}"))
    stage.label("Abg", (0.95, 0, 0.75 - 0.62 * 2), 0.45, GOLD).setBackdropType(Text.OUTLINE)


@cell("text: what is drawn")
def text_modes(stage: Stage) -> None:
    Text = zorOSG.Text
    stage.look_from_front(5.4)
    modes = [("letters", Text.TEXT), ("box", Text.TEXT | Text.BOUNDINGBOX), ("filled box", Text.TEXT | Text.FILLEDBOUNDINGBOX),
             ("position", Text.TEXT | Text.ALIGNMENT), ("all", Text.TEXT | Text.BOUNDINGBOX | Text.FILLEDBOUNDINGBOX | Text.ALIGNMENT)]
    for k, (name, mode) in enumerate(modes):
        stage.label(name, (0, 0, 1.05 - 0.44 * k), 0.32, RED).setDrawMode(mode)


@cell("text: fifteen alignments")
def text_alignments(stage: Stage) -> None:
    stage.look_from_front(6.0, -0.1)
    for k in range(15):
        text = stage.label("pq\nXy", (-1.5 + 0.75 * (k // 3), 0, 0.85 - 0.85 * (k % 3)), 0.22, INK)
        text.setAlignment(k)
        text.setDrawMode(zorOSG.Text.TEXT | zorOSG.Text.ALIGNMENT)


@cell("text: fonts, sizes, many scripts")
def text_fonts(stage: Stage) -> None:
    stage.look_from_front(5.4)
    for text, height, size, font in (("DejaVu Sans 0.3 m", 0.95, 0.3, "DejaVuSans.ttf"), ("bold, 0.25 m", 0.5, 0.25, "DejaVuSans-Bold.ttf"),
                                     ("fixed width", 0.1, 0.25, "DejaVuSansMono.ttf"), ("Ελληνικά, Кириллица", -0.3, 0.25, ""),
                                     ("∑ √2 → 45° µm, żółć", -0.72, 0.22, "")):
        label = stage.label(text, (0, 0, height), size)
        if font:
            label.setFont(font)


@cell("texts that follow bodies")
def texts_on_bodies(stage: Stage) -> None:
    stage.floor()
    for k, (name, color) in enumerate((("red", RED), ("gold", GOLD), ("blue", BLUE))):
        body = stage.body(zorCollide.Box(zor.Vec3(0.25, 0.25, 0.25)), (0.8 * k - 0.8, 0, 0.3 + 0.3 * k), color)
        body.setAngularVelocity(zor.Vec3(0, 1, 0))
        zorOSG.addText(body.getGeometries()[0], stage.root, name, zor.Vec3(0, 0, 0.5), INK, 0.28)
    stage.run(0.25)


@cell("panels on the screen")
def panels(stage: Stage) -> None:
    stage.floor()
    stage.show(zorCollide.Box(zor.Vec3(0.6, 0.5, 0.5)))
    zorOSG.createPanel(stage.root, zor.Vec2(0.04, 0.15), zor.Vec2(0.92, 0.16), zor.Vec4(0.1, 0.12, 0.16, 0.6))
    for k, color in enumerate(PAINTS):
        zorOSG.createPanel(stage.root, zor.Vec2(0.08 + 0.22 * k, 0.18), zor.Vec2(0.18, 0.10), zor.Vec4(*color))
    tall = zorOSG.createPanel(stage.root, zor.Vec2(0.7, 0.45), zor.Vec2(0.24, 0.4), zor.Vec4(1, 1, 1, 0.55))
    tall.addDrawable(text_on_panel("Panel", 0.4, 0.2, INK, 0.24))


# Clip planes.

@cell("clip plane")
def clip_plane(stage: Stage) -> None:
    stage.floor()
    cut = zorOSG.ClipPlane(zor.Vec3(0, -0.1, 0), zor.Vec3(0.2, 1, 0))
    stage.root.addChild(cut)
    for k, radius in enumerate((0.75, 0.55, 0.35)):
        zorOSG.setDiffuseColor(stage.show(zorCollide.Sphere(radius), (0, 0, 0.75), detail=2, root=cut), PAINTS[k])


@cell("clip planes, one below the other")
def clip_planes(stage: Stage) -> None:
    stage.floor()
    first = zorOSG.ClipPlane(zor.Vec3(0, 0, 0.9), zor.Vec3(0, 0, -1))
    second = zorOSG.ClipPlane(zor.Vec3(0.25, 0, 0), zor.Vec3(-1, 0, 0))
    stage.root.addChild(first)
    first.addChild(second)
    stage.show(zorCollide.Box(zor.Vec3(0.25, 0.6, 0.6)), (-0.75, 0, 0.63), root=first)
    zorOSG.setDiffuseColor(stage.show(zorCollide.Box(zor.Vec3(0.5, 0.6, 0.6)), (0.2, 0, 0.63), root=second), RED)


@cell("clip plane for particles")
def clip_particles(stage: Stage) -> None:
    particles = pour(stage)
    zorOSG.createVisual(particles, stage.root)
    cut = zorOSG.ClipPlane(zor.Vec3(), zor.Vec3(0.3, 1, 0))
    cut.setParticleSystemToClip(particles)
    cut.clipAgainstParticleSystem()
    stage.root.addChild(cut)
    stage.run(1.2, 1000)


# Colours, materials and light.

@cell("colour maps")
def color_maps(stage: Stage) -> None:
    Map = zorOSG.ScalarColorMap
    stage.look_from_front(3.1)
    names = ["RAINBOW", "COOLWARM", "VIRIDIS", "INFERNO", "PLASMA", "GRAYSCALE", "BLUE_WHITE_RED", "CIVIDIS", "BONE", "COPPER", "AFMHOT"]
    for row, name in enumerate(names):
        colours = Map(getattr(Map, name), 0, 63)
        for k in range(64):
            color = colours.getColor(k)
            zorOSG.createPanel(stage.root, zor.Vec2(0.42 + 0.0085 * k, 0.90 - 0.072 * row), zor.Vec2(0.0087, 0.055), zor.Vec4(*color))
        stage.label(name.lower().replace("_", " "), (-0.68, 0, 0.711 - 0.1197 * row), 0.085)


@cell("diffuse, ambient, specular")
def fixed_materials(stage: Stage) -> None:
    stage.floor()
    for x, color in ((-1.05, RED), (0, GOLD), (1.05, BLUE)):
        node = stage.show(zorCollide.Sphere(0.48), (x, 0, 0.48), detail=2)
        zorOSG.setDiffuseColor(node, color)
        zorOSG.setAmbientColor(node, zor.Vec4f(0.5 * color[0], 0.5 * color[1], 0.5 * color[2], 1))
        zorOSG.setSpecularColor(node, PURE_WHITE)
        zorOSG.setShininess(node, {-1.05: 8.0, 0: 40.0}.get(x, 110.0))


@cell("see-through: 0.2 to 1")
def alpha(stage: Stage) -> None:
    stage.floor()
    for k in range(4):
        node = stage.show(zorCollide.Box(zor.Vec3(0.3, 0.3, 0.45)), (0.75 * k - 1.1, 0.2 * k, 0.45))
        zorOSG.setDiffuseColor(node, BLUE)
        zorOSG.setAlpha(node, 0.2 + 0.8 * k / 3)


@cell("texture, repeated and scaled")
def textures(stage: Stage) -> None:
    stage.floor()
    for x, scale in ((-0.7, 1.0), (0.7, 2.0)):
        node = stage.show(zorCollide.Box(zor.Vec3(0.45, 0.45, 0.45)), (x, 0.2, 0.45))
        zorOSG.setDiffuseColor(node, PURE_WHITE)
        zorOSG.setTexture(node, images().path("bricks"), True, zorOSG.DIFFUSE_TEXTURE, scale, scale)


@cell("texture on round shapes")
def round_textures(stage: Stage) -> None:
    stage.floor()
    board = image_file(checks((0.15, 0.35, 0.55), (0.92, 0.92, 0.88)))
    for node in (stage.show(zorCollide.Sphere(0.5), (-0.7, 0, 0.5), detail=2), stage.show(zorCollide.Cylinder(0.45, 0.9), (0.65, 0, 0.45))):
        zorOSG.setDiffuseColor(node, PURE_WHITE)
        zorOSG.setTexture(node, board, True)


@cell("wire frame, outline")
def drawn_otherwise(stage: Stage) -> None:
    stage.floor()
    wire = stage.show(zorCollide.Trimesh(*gear()), (-1.1, 0.2, 0.3))
    zorOSG.setDiffuseColor(wire, zor.Vec4f(0.1, 0.2, 0.4, 1))
    zorOSG.setEnableWireFrameMode(wire, True)
    chosen = stage.upright(zorCollide.Capsule(0.3, 0.6), 0.6)
    zorOSG.setDiffuseColor(chosen, BLUE)
    zorOSG.setEnableOutline(chosen, True, zorRender.Color(1.0, 0.72, 0.1), 4 * FINER)
    stage.look((1.6, -4.6, 2.7), (-0.5, 0, 0.4))


@cell("normals, and smoothed ones")
def smooth(stage: Stage) -> None:
    stage.floor()
    ring = [(0.5 * math.cos(k * math.pi / 3), 0.5 * math.sin(k * math.pi / 3)) for k in range(6)]
    barrel = [(x, y, z) for z in (0.0, 1.0) for x, y in ring]
    sides = [i for k in range(6) for i in (k, (k + 1) % 6, 6 + (k + 1) % 6, k, 6 + (k + 1) % 6, 6 + k)]
    for x in (-0.7, 0.7):
        node = stage.show(zorCollide.Trimesh(barrel, sides), (x, 0, 0.02), 0.4)
        zorOSG.setDiffuseColor(node, GREEN)
        if x > 0:
            zorOSG.smoothNormals(node, 1.5)


@cell("plastic to metal, rough to smooth")
def physical(stage: Stage) -> None:
    surroundings(stage)
    for row, color in enumerate((RED, GOLD, zor.Vec4f(1.0, 0.78, 0.36, 1))):
        for column in range(4):
            ball = stage.show(zorCollide.Sphere(0.29), (0.66 * column - 1, 0, 0.32 + 0.62 * row), detail=2)
            zorOSG.setDiffuseColor(ball, color)
            zorOSG.setMetallic(ball, row / 2)
            zorOSG.setRoughness(ball, 1 - column / 3.2)
            zorOSG.setEnvMapReflectionCoefficient(ball, 1)
    stage.look((0, -5.2, 1.1), (0, 0, 0.85))


def surroundings(stage: Stage) -> None:
    """A sky of six images that what is below the root can reflect, and a floor."""
    zorOSG.setCubeMapTexture(stage.root, images().folder, ".png")
    zorOSG.setEnvMapReflectionCoefficient(stage.root, 0)  # what reflects says so
    stage.floor()


def role_cell(caption: str, shape: Callable[[], zorCollide.Shape], layers: list[tuple[str, int]], reflection: float = 0.0) -> None:
    """Two of a thing: with the first image alone, and with all of them."""

    def build(stage: Stage) -> None:
        surroundings(stage)
        for x, shown in ((-0.68, layers[:1]), (0.68, layers)):
            node = stage.show(shape(), (x, 0.1, 0.52), 0.4, 2)
            zorOSG.setDiffuseColor(node, PURE_WHITE)
            zorOSG.setRoughness(node, 0.55 if len(layers) == 2 else 1.0)
            for name, role in shown:
                zorOSG.setTexture(node, images().path(name), True, role, 1, 1)
            zorOSG.setEnvMapReflectionCoefficient(node, reflection)

    cell(caption)(build)


def cube() -> zorCollide.Shape:
    return zorCollide.Box(zor.Vec3(0.45, 0.45, 0.45))


role_cell("texture, with normal map", cube, [("wood", zorOSG.DIFFUSE_TEXTURE), ("wood_normal", zorOSG.NORMALMAP_TEXTURE)])
role_cell("texture, with height map", cube, [("bricks", zorOSG.DIFFUSE_TEXTURE), ("bricks_height", zorOSG.HEIGHTMAP_TEXTURE)])
role_cell("metallic and rough maps", lambda: zorCollide.Sphere(0.5),
          [("rust", zorOSG.DIFFUSE_TEXTURE), ("rust_metallic", zorOSG.METALLIC_TEXTURE), ("rust_rough", zorOSG.ROUGHNESS_TEXTURE)], 1.0)


@cell("stored shadows, noise at edges")
def shadow_textures(stage: Stage) -> None:
    y, x = numpy.mgrid[0:256, 0:256] / 256.0
    stripes = image_file(numpy.repeat((numpy.sin(x * 40) > 0)[..., None], 3, axis=2).astype(float))
    noise = image_file(numpy.random.default_rng(2).random((64, 64, 3)))
    wall = stage.show(zorCollide.Box(zor.Vec3(0.6, 0.08, 0.6)), (-0.8, 0.4, 0.6))
    zorOSG.setDiffuseColor(wall, WHITE)
    zorOSG.setTexture(wall, stripes, True, zorOSG.SHADOW_TEXTURE)
    stage.floor()
    zorOSG.setTexture(stage.root, noise, True, zorOSG.SHADOW_JITTER_TEXTURE)
    zorOSG.setDiffuseColor(stage.show(zorCollide.Sphere(0.4), (0.5, 0, 0.45), detail=2), RED)


@cell("cube map: mirror, glass, a share")
def cube_map(stage: Stage) -> None:
    surroundings(stage)
    for x, color, share, alpha in ((-1.0, WHITE, 1.0, 1.0), (0, zor.Vec4f(0.55, 0.8, 0.75, 1), 1.0, 0.35), (1.0, BLUE, 0.5, 1.0)):
        ball = stage.show(zorCollide.Sphere(0.46), (x, 0, 0.48), detail=3)
        zorOSG.setDiffuseColor(ball, color)
        if x < 1:
            zorOSG.setMetallic(ball, 1.0 if x < 0 else 0.0)
            zorOSG.setRoughness(ball, 0.03)
        zorOSG.setAlpha(ball, alpha)
        zorOSG.setEnvMapReflectionCoefficient(ball, share)


@cell("gamma 0.5, 1 and 2")
def gamma(stage: Stage) -> None:
    stage.floor()
    for x, value in ((-1.05, 0.5), (0, 1), (1.05, 2)):
        node = stage.show(zorCollide.Sphere(0.46), (x, 0, 0.48), detail=2)
        zorOSG.setDiffuseColor(node, GOLD)
        zorOSG.setGamma(node, value)


@cell("light switched off for one of three")
def light_off(stage: Stage) -> None:
    stage.floor()
    for x in (-1.05, 0, 1.05):
        node = stage.show(zorCollide.Sphere(0.46), (x, 0, 0.48), detail=2)
        zorOSG.setDiffuseColor(node, GREEN)
        if x == 0:
            zorOSG.setEnableLight(False, 0, node)


@cell("sky box")
def sky_box(stage: Stage) -> None:
    stage.root.addChild(zorOSG.SkyBox("sky", images().folder + "/sky", ".png"))
    stage.floor(3)
    stage.body(zorCollide.Box(zor.Vec3(0.5, 0.5, 0.5)), (0, 0, 0.5), RED)
    stage.look((1.5, -4.2, 1.2), (0, 0, 0.9))


@cell("sky sphere, horizon moved down")
def sky_sphere(stage: Stage) -> None:
    sides = osg.ImageVector()
    zorOSG.loadCubeMapImages(images().folder + "/sky", "png", sides)
    stage.root.addChild(zorOSG.createSkySphere("sky", sides, 1000.0, -150.0))
    stage.floor(3)
    stage.body(zorCollide.Sphere(0.5), (0, 0, 0.5), GOLD)
    stage.look((-4.0, 1.5, 1.2), (0, 0, 0.9))


@cell("spot light")
def spot_light(stage: Stage) -> None:
    stage.decorator.setEnableLights(zorOSG.SceneDecorator.LIGHT0)
    light = stage.decorator.getLightSource(zorOSG.SceneDecorator.LIGHT0)
    stage.decorator.setEnableCalculateLightPositions(zorOSG.SceneDecorator.LIGHT0, False)
    light.setPosition(zor.Vec4(-1.5, -1.5, 4, 1))
    light.setDirection(zor.Vec3(1.5, 1.5, -4))
    light.setSpotCutoff(18)
    light.setSpotExponent(6)
    light.setDiffuse(zor.Vec4f(1.0, 0.93, 0.8, 1))
    light.setAmbient(zor.Vec4f(0.15, 0.16, 0.2, 1))
    stage.floor()
    stage.show(zorCollide.Box(zor.Vec3(0.4, 0.4, 0.4)), (0, 0, 0.4), 0.4)


# The sheet.

def draw(cells: Iterable[Cell]) -> Iterator[tuple[Cell, Pixels]]:
    """The picture of each cell."""
    viewer = osgViewer.Viewer()
    viewer.setUpOffScreen(WIDTH * FINER, HEIGHT * FINER)
    viewer.getCamera().setProjectionMatrixAsPerspective(30, WIDTH / HEIGHT, 0.1, 1000)
    for one in cells:
        stage = Stage(viewer)
        one.build(stage)
        stage.caption(one.caption)
        yield one, stage.picture()


def sheet_of(pictures: list[Pixels], columns: int) -> Pixels:
    gap = 4
    rows = -(-len(pictures) // columns)
    sheet = numpy.full((rows * (HEIGHT + gap) + gap, columns * (WIDTH + gap) + gap, 3), 255, numpy.uint8)
    for i, picture in enumerate(pictures):
        y, x = gap + i // columns * (HEIGHT + gap), gap + i % columns * (WIDTH + gap)
        sheet[y:y + HEIGHT, x:x + WIDTH] = picture
    return sheet


def store(pixels: Pixels, path: str) -> None:
    if not osgDB.writeImageFile(osg.Image.fromArray(numpy.ascontiguousarray(pixels[::-1])), path):
        raise OSError(f"can't write {path}")


def main() -> int:
    parser = argparse.ArgumentParser(description=(__doc__ or "").splitlines()[0])
    parser.add_argument("--output", default="gallery.png", help="the picture")
    parser.add_argument("--only", default="", help="a word in the captions of the cells to draw")
    parser.add_argument("--cells", default="", help="folder for a picture of each cell")
    parser.add_argument("--columns", type=int, default=10, help="cells in a row")
    options = parser.parse_args()
    cells = [one for one in CELLS if options.only in one.caption]
    if not cells:
        parser.error(f"no caption contains '{options.only}'")
    pictures = []
    for number, (one, picture) in enumerate(draw(cells)):
        pictures.append(picture)
        if options.cells:
            os.makedirs(options.cells, exist_ok=True)
            store(picture, os.path.join(options.cells, f"{number:02d}.png"))
    store(sheet_of(pictures, min(options.columns, len(pictures))), options.output)
    print(f"{len(pictures)} pictures in {options.output}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
