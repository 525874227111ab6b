#!/usr/bin/env python3
"""20,000 grains run out of a hopper into a heap; their layers show how the hopper empties, and the flow is plotted.

./zor run examples/granular_hopper.py --screenShot hopper.png --plot flow.png
"""

import math
import sys

import numpy
import osg
import zor
import zorCollide
import zorIO
import zorOSG
import zorSDK

GRAINS = 20000
RADIUS = 0.02  # of a grain (m)
BIN_RADIUS, OUTLET_RADIUS = 0.62, 0.19
OUTLET, SHOULDER, TOP = 1.0, 1.43, 2.9  # heights (m)
OPENING_TIME = 0.8  # s: the grains have come to rest
LAYERS = [(0.91, 0.77, 0.45), (0.74, 0.32, 0.20), (0.95, 0.92, 0.84), (0.24, 0.42, 0.52), (0.85, 0.55, 0.20)]
LAYER_HEIGHT = 0.2


def make_hopper() -> zorCollide.Geometry:
    """A surface: a cylinder above a funnel."""
    profile = [(BIN_RADIUS, TOP), (BIN_RADIUS, SHOULDER), (OUTLET_RADIUS, OUTLET), (OUTLET_RADIUS, OUTLET - 0.05)]
    sides = 64
    vertices = [(radius * math.cos(2 * math.pi * k / sides), radius * math.sin(2 * math.pi * k / sides), height)
                for radius, height in profile for k in range(sides)]
    indices: list[int] = []
    for ring in range(len(profile) - 1):
        for k in range(sides):
            a, b = ring * sides + k, ring * sides + (k + 1) % sides
            indices += [a, a + sides, b, b, a + sides, b + sides]
    return zorCollide.Geometry(zorCollide.Trimesh(vertices, indices))


def fill_positions(count: int) -> numpy.ndarray:
    """Places on a lattice inside the hopper, from below, each shaken a little."""
    spacing = 2.15 * RADIUS
    chance = numpy.random.default_rng(3)
    layers = []
    height, total = OUTLET + RADIUS, 0
    while total < count:
        wide = OUTLET_RADIUS + (BIN_RADIUS - OUTLET_RADIUS) * min((height - OUTLET) / (SHOULDER - OUTLET), 1.0)
        line = numpy.arange(-BIN_RADIUS, BIN_RADIUS, spacing)
        x, y = numpy.meshgrid(line, line)
        inside = x**2 + y**2 < (wide - 1.6 * RADIUS) ** 2
        layer = numpy.column_stack([x[inside], y[inside], numpy.full(inside.sum(), height)])
        layers.append(layer + chance.uniform(-0.05, 0.05, layer.shape) * RADIUS)
        total += len(layer)
        height += spacing
    return numpy.concatenate(layers)[:count]


class Flow(zorSDK.StepEventListener):
    """Opens the outlet, and measures what has passed it."""

    def __init__(self, particles: zor.ParticleSystem, gate: zorCollide.Geometry):
        super().__init__(zorSDK.StepEventListener.POST_STEP)
        self.particles = particles
        self.gate = gate
        self.times: list[float] = []
        self.masses: list[float] = []

    def post(self, time: float) -> None:
        if time >= OPENING_TIME and self.gate.getEnable():
            self.gate.setEnable(False)
        if time < 0.25 * (len(self.times) + 1):
            return
        heights = numpy.asarray(self.particles.getPositions())[:, 2]
        masses = numpy.asarray(self.particles.getMasses())
        self.times.append(time)
        self.masses.append(float(masses[heights < OUTLET - 0.05].sum()))
        print(f"{time:5.2f} s  {self.masses[-1]:7.1f} kg out  {self.rate():6.1f} kg/s", flush=True)

    def rate(self) -> float:
        """kg/s over the last measurement."""
        if len(self.times) < 2:
            return 0.0
        return (self.masses[-1] - self.masses[-2]) / (self.times[-1] - self.times[-2])

    def plot(self, filename: str) -> None:
        """Draws flow over time beside what the empirical law of silos says for this outlet."""
        import matplotlib
        matplotlib.use("Agg")
        from matplotlib import pyplot
        figure, axes = pyplot.subplots(figsize=(7, 4))
        rates = numpy.diff(self.masses) / numpy.diff(self.times)
        axes.plot(self.times[1:], rates, color="#bd5133", label="measured")
        bulk = 0.58 * 1000.0  # kg/m3
        least, most = (0.58 * bulk * math.sqrt(9.81) * (2 * OUTLET_RADIUS - k * 2 * RADIUS) ** 2.5 for k in (3.0, 1.4))
        axes.axhspan(least, most, color="#3d6b85", alpha=0.2, label="Beverloo's law, from rough to smooth grains")
        axes.set(xlabel="time (s)", ylabel="flow (kg/s)", title="Flow through the outlet")
        axes.set_ylim(bottom=0)
        axes.legend()
        axes.grid(alpha=0.3)
        figure.tight_layout()
        figure.savefig(filename, dpi=120)


class Display(zorOSG.ExampleApplicationListener):
    """Shows time and flow in the picture."""

    def __init__(self, flow: Flow):
        super().__init__()
        self.flow = flow

    def preFrame(self, application: zorOSG.ExampleApplication) -> None:
        decorator = application.getSceneDecorator()
        decorator.setText(0, f"{self.flow.particles.getNumParticles()} grains   {application.getTimeStamp():4.1f} s")
        decorator.setText(1, f"{self.flow.rate():.0f} kg/s")


def add_fixed(simulation: zorSDK.Simulation, root: osg.Group, geometry: zorCollide.Geometry, color: zor.Vec4f) -> None:
    simulation.add(geometry)
    zorOSG.setDiffuseColor(zorOSG.createVisual(geometry, root, 2.0), color)


def build_scene(application: zorOSG.ExampleApplication, count: int) -> Flow:
    simulation = application.getSimulation()
    root = application.getSceneRoot()
    sand = zor.Material("sand", 1000.0, 0.5)

    particles = zor.ParticleSystem("grains")
    particles.setMaterial(sand)
    particles.setRollingResistance(0.15)
    positions = fill_positions(count)
    particles.addParticles(positions, RADIUS)
    layer = ((positions[:, 2] - OUTLET) / LAYER_HEIGHT).astype(int) % len(LAYERS)
    numpy.asarray(particles.getColors())[:, :3] = numpy.array(LAYERS)[layer]
    simulation.add(particles)
    zorOSG.createVisual(particles, root)

    ground = zorCollide.Geometry(zorCollide.Box(zor.Vec3(6, 6, 0.1)))
    ground.setPosition(zor.Vec3(0, 0, -0.1))
    add_fixed(simulation, root, ground, zor.Vec4f(0.50, 0.54, 0.52, 1))
    for angle in (0.25, 0.75, 1.25, 1.75):
        leg = zorCollide.Geometry(zorCollide.Box(zor.Vec3(0.03, 0.03, SHOULDER / 2)))
        x, y = (0.68 * f(angle * math.pi) for f in (math.cos, math.sin))
        leg.setTransform(zor.AffineMatrix4x4(zor.Quat(angle * math.pi, zor.Vec3(0, 0, 1)), zor.Vec3(x, y, SHOULDER / 2)))
        add_fixed(simulation, root, leg, zor.Vec4f(0.35, 0.38, 0.42, 1))
    gate = zorCollide.Geometry(zorCollide.Cylinder(OUTLET_RADIUS, 0.04))
    gate.setTransform(zor.AffineMatrix4x4(zor.Quat(math.pi / 2, zor.Vec3(1, 0, 0)), zor.Vec3(0, 0, OUTLET - 0.02)))
    add_fixed(simulation, root, gate, zor.Vec4f(0.8, 0.3, 0.2, 1))
    # Last, as what is seen through is drawn over what is there.
    add_fixed(simulation, root, make_hopper(), zor.Vec4f(0.65, 0.72, 0.80, 0.25))

    flow = Flow(particles, gate)
    simulation.add(flow)
    application.addListener(Display(flow))
    decorator = application.getSceneDecorator()
    decorator.setBackgroundColor(zor.Vec3(0.52, 0.66, 0.80), zor.Vec3(0.92, 0.94, 0.95))
    application.setCameraHome(zor.Vec3(1.7, -4.6, 2.3), zor.Vec3(0, 0, 1.25))
    return flow


def main() -> int:
    arguments = zorIO.ArgumentParser(sys.argv)
    arguments.setDescription((__doc__ or "").splitlines()[0])
    arguments.addOption("--grains", "number of grains", str(GRAINS), "COUNT")
    arguments.addOption("--plot", "picture of the flow over time", "", "FILE")
    application = zorOSG.ExampleApplication()
    if not application.init(arguments):
        return application.getExitCode()
    application.initSimulation()
    flow = build_scene(application, int(arguments.getValue("--grains")))
    if not arguments.has("--stopAfter"):
        application.stopAfter(18)  # when it has run out
    exit_code = application.run()
    if arguments.getValue("--plot") and len(flow.times) > 1:
        flow.plot(arguments.getValue("--plot"))
    return exit_code


if __name__ == "__main__":
    sys.exit(main())
