"""One stream of grains, drawn eleven times: everything that particles can look like, side by side.

./zor run examples/particle_looks.py --stopAfter 2.5 --screenShot looks.png
"""

import math
import sys

import osg
import zor
import zorCollide
import zorIO
import zorOSG
import zorSDK

GRAINS = 420
SPACING = zor.Vec3(3.1, 3.2, 0)  # from cell to cell
HALF = 0.7  # of a tray (m)
COLOURS = [(0.88, 0.35, 0.22), (0.96, 0.72, 0.22), (0.25, 0.55, 0.72), (0.92, 0.90, 0.82)]

Drawable = zorOSG.ParticleSystemDrawable
MADE_OF = [("points", Drawable.SPRITES), ("squares", Drawable.QUAD_SPRITES), ("triangles", Drawable.TRIANGLES)]
COLOURED = [("plain", Drawable.SIMPLE_SPRITES), ("banded", Drawable.ROTATION_SPRITES), ("soft", Drawable.ALPHA_SPRITES)]


def add_fixed(simulation: zorSDK.Simulation, half: zor.Vec3, place: zor.AffineMatrix4x4) -> zorCollide.Geometry:
    geometry = zorCollide.Geometry(zorCollide.Box(half))
    geometry.setTransform(place)
    simulation.add(geometry)
    return geometry


def add_tray(simulation: zorSDK.Simulation) -> list[zorCollide.Geometry]:
    """A floor, four walls, and a slide that the grains come down."""
    parts = [add_fixed(simulation, zor.Vec3(HALF, HALF, 0.05), zor.AffineMatrix4x4(zor.Vec3(0, 0, 0.05)))]
    for turn in range(4):
        rotation = zor.Quat(turn * math.pi / 2, zor.Vec3(0, 0, 1))
        place = rotation.rotate(zor.Vec3(HALF + 0.04, 0, 0.15))
        parts.append(add_fixed(simulation, zor.Vec3(0.04, HALF + 0.08, 0.15), zor.AffineMatrix4x4(rotation, place)))
    slide = zor.Quat(math.radians(35), zor.Vec3(1, 0, 0))
    parts.append(add_fixed(simulation, zor.Vec3(0.35, 0.45, 0.02), zor.AffineMatrix4x4(slide, zor.Vec3(0, 0.55, 0.75))))
    return parts


def add_grains(simulation: zorSDK.Simulation) -> zor.ParticleSystem:
    """An emitter above the slide pours grains of four colours."""
    particles = zor.ParticleSystem("grains")
    particles.setRollingResistance(0.05)
    simulation.add(particles)
    mixture = zor.ParticleDistribution()
    for colour in COLOURS:
        mixture.add(zor.ParticleModel(zor.RandomReal.uniform(0.04, 0.075), None, zor.Vec4f(*colour, 1)))
    spout = zorCollide.Geometry(zorCollide.Box(zor.Vec3(0.22, 0.1, 0.1)))
    spout.setSensor(True)
    spout.setPosition(zor.Vec3(0, 0.75, 1.3))
    emitter = zor.Emitter(particles, mixture, spout, 200)
    emitter.setMaximumEmitted(GRAINS)
    simulation.add(emitter)
    return particles


def cell(root: osg.Group, row: float, column: float, text: str, fixed: list[zorCollide.Geometry]) -> osg.Group:
    """A place on the sheet, with the tray and a label; what is drawn below it stands there."""
    place = osg.MatrixTransform(osg.Matrixd.translate(SPACING.x() * (column - 1.5), SPACING.y() * (1 - row), 0))
    root.addChild(place)
    for geometry in fixed:
        zorOSG.setDiffuseColor(zorOSG.createVisual(geometry, place), zor.Vec4f(0.40, 0.45, 0.52, 1))
    place.addChild(zorOSG.createText(text, zor.Vec3(-HALF - 0.08, -HALF - 0.36, 0.05), zor.Vec4f(0.08, 0.10, 0.14, 1), 0.22))
    return place


def build(application: zorOSG.ExampleApplication) -> None:
    simulation, root = application.getSimulation(), application.getSceneRoot()
    fixed = add_tray(simulation)
    particles = add_grains(simulation)
    ground = add_fixed(simulation, zor.Vec3(12, 10, 0.1), zor.AffineMatrix4x4(zor.Vec3(0, 0, -0.1)))
    zorOSG.setDiffuseColor(zorOSG.createVisual(ground, root), zor.Vec4f(0.62, 0.65, 0.66, 1))

    for row, (made_of, rendering) in enumerate(MADE_OF):
        for column, (coloured, shader) in enumerate(COLOURED):
            zorOSG.createVisual(particles, cell(root, row, column, f"{made_of}, {coloured}", fixed), rendering, shader)
    zorOSG.createParticleTrajectoriesVisual(particles, cell(root, 0.5, 3, "trajectories", fixed), 0.5, 40)
    zorOSG.createParticleContactGraph(particles, cell(root, 1.5, 3, "contact forces", fixed), 0.0, 60.0)


def main() -> int:
    application = zorOSG.ExampleApplication()
    arguments = zorIO.ArgumentParser(sys.argv)
    if not application.init(arguments):
        return application.getExitCode()
    application.initSimulation()
    build(application)
    application.setCameraHome(zor.Vec3(0, -6.5, 9.9), zor.Vec3(0, -0.35, 0))
    if not arguments.has("--stopAfter"):
        application.stopAfter(6)
    return application.run()


if __name__ == "__main__":
    sys.exit(main())
