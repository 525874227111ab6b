#!/usr/bin/env python3
"""A car with suspension, steering and four driven wheels follows a track over hills; the camera follows the car.

    ./zor run examples/car.py [--output FOLDER] [application options, see --help]

Each wheel hangs on a slider with a spring, the front ones can turn about their pillars as well; hinges with motors
drive them. The landscape is a height field made with numpy. In a window the car goes round until it is closed.
"""

import math
import os
import random
import sys

import numpy
from numpy.typing import NDArray

import osg
import zor
import zorCollide
import zorIO
import zorOSG
import zorRender
import zorSDK

type Array = NDArray[numpy.float64]
type Triple = tuple[float, float, float]

TIME_STEP = 1 / 60
DURATION = 30.0  # s
PICTURE_TIME = 7.0  # s

SIZE, SAMPLES, TEXELS = 160.0, 257, 1024  # landscape: metres, heights and pixels a side
TRACK_WIDTH = 5.0

WHEEL_RADIUS, WHEEL_WIDTH = 0.38, 0.26
AXLES = {"front": 1.32, "rear": -1.30}  # x of the axles in the car's frame (m)
HALF_TRACK = 0.82
CHASSIS_MASS, PILLAR_MASS, KNUCKLE_MASS, WHEEL_MASS = 1100.0, 18.0, 14.0, 20.0
SPRING_STIFFNESS, SPRING_DAMPING = 36000.0, 3200.0  # N/m, N s/m
SPRING_TRAVEL = (-0.10, 0.14)
SPRING_PRELOAD = CHASSIS_MASS * 9.81 / 4 / SPRING_STIFFNESS  # m, so that the car rests at the middle
GREATEST_TORQUE = 420.0  # N m at each wheel
MOTOR_SLACK = 0.005  # rad/s per N m, so that wheels in curves may turn at different speeds
GREATEST_STEER = math.radians(32)
SPEED = 11.0  # m/s on straights

PAINT, DARK, GLASS = (0.80, 0.08, 0.06), (0.06, 0.06, 0.07), (0.10, 0.13, 0.17)
CHROME, LAMP, TAIL = (0.75, 0.76, 0.78), (1.0, 0.97, 0.85), (0.6, 0.02, 0.02)


# ---------------------------------------------------------------------------------------------- the landscape


def track(turn: Array) -> Array:
    """Points of the track's middle, a closed curve; `turn` runs from 0 to 2 pi."""
    radius = 46 + 9 * numpy.sin(2 * turn + 0.6) + 6 * numpy.cos(3 * turn)
    return numpy.stack([radius * numpy.cos(turn), radius * numpy.sin(turn)], axis=-1)


class Landscape:
    """Rolling hills, flattened a little across the track."""

    def __init__(self, simulation: zorSDK.Simulation, root: osg.Group):
        side = numpy.linspace(-SIZE / 2, SIZE / 2, SAMPLES)
        self.x, self.y = numpy.meshgrid(side, side)  # rows run along y, as a height field has them
        self.away = distance_to_track(self.x, self.y)
        self.heights = self.make_heights()
        self.shape = zorCollide.HeightField(SAMPLES, SAMPLES, SIZE, SIZE, zor.RealVector(self.heights.ravel()))
        geometry = zorCollide.Geometry(self.shape)
        soil = zor.Material("soil", 1500.0, 1.0)
        geometry.setMaterial(soil)
        simulation.add(geometry)
        visual = zorOSG.createVisual(geometry, root)
        zorOSG.setDiffuseColor(visual, zor.Vec4f(1, 1, 1, 1))
        zorOSG.setTexture(visual, osg.Texture2D(self.make_picture()))

    def make_heights(self) -> Array:
        x, y = self.x, self.y
        hills = (2.2 * numpy.sin(x / 13 + 0.5) * numpy.cos(y / 15) + 1.1 * numpy.sin(x / 7.1 - y / 9.3) + 0.5 * numpy.cos(x / 4.1 + y / 5.2))
        rim = 10 * numpy.clip((numpy.hypot(x, y) - 62) / 30, 0, 1) ** 2  # mountains around
        rough = 0.25 * numpy.sin(x * 0.9) * numpy.sin(y * 0.8)
        share = numpy.clip((self.away - TRACK_WIDTH / 2) / 6, 0, 1)
        share = share * share * (3 - 2 * share)
        return hills * (0.55 + 0.45 * share) + (rim * (1 + 0.3 * numpy.sin(x / 5) * numpy.cos(y / 6)) + rough) * share

    def make_picture(self) -> osg.Image:
        """Grass that is lighter on hills, rock where it is steep, and the track."""
        height, away = refined(self.heights, TEXELS), refined(self.away, TEXELS)
        slope = numpy.hypot(*numpy.gradient(height, SIZE / TEXELS))
        noise = numpy.random.default_rng(3)
        grain = numpy.zeros((TEXELS, TEXELS))
        for n in (1, 2, 4, 16):
            grain += numpy.kron(noise.uniform(-0.25, 0.25, (TEXELS // n, TEXELS // n)), numpy.ones((n, n)))

        def mixed(a: Array, b: Triple, share: Array) -> Array:
            return a + (numpy.array(b) - a) * numpy.clip(share, 0, 1)[..., None]

        color = mixed(numpy.full((TEXELS, TEXELS, 3), (0.17, 0.27, 0.09)), (0.42, 0.44, 0.19), (height + 2.5) / 6)
        color = mixed(color, (0.42, 0.38, 0.33), (slope - 0.45) * 3)
        color = mixed(color, (0.80, 0.82, 0.84), (height - 9) / 3)
        color = mixed(color, (0.47, 0.37, 0.25), (TRACK_WIDTH / 2 + 0.5 - away + 0.4 * grain) / 0.8)
        ruts = numpy.exp(-(((numpy.abs(away) - HALF_TRACK) / 0.28) ** 2))
        color = mixed(color, (0.36, 0.27, 0.18), 0.7 * ruts)
        color *= 1 + 0.16 * grain[..., None]
        image = osg.Image()
        image.allocate(TEXELS, TEXELS, 3)
        numpy.asarray(image)[:] = (255 * numpy.clip(color, 0, 1)).astype(numpy.uint8)
        return image

    def height(self, x: float, y: float) -> float:
        column, row = ((v + SIZE / 2) / SIZE * (SAMPLES - 1) for v in (x, y))
        i, j = (min(max(int(v), 0), SAMPLES - 2) for v in (column, row))
        u, v, patch = column - i, row - j, self.heights[j : j + 2, i : i + 2]
        return float((1 - v) * ((1 - u) * patch[0, 0] + u * patch[0, 1]) + v * ((1 - u) * patch[1, 0] + u * patch[1, 1]))


def refined(values: Array, count: int) -> Array:
    """Values of a square grid, interpolated at `count` places a side."""
    known, wanted = numpy.arange(len(values)), numpy.linspace(0, len(values) - 1, count)
    for _ in range(2):
        values = numpy.array([numpy.interp(wanted, known, row) for row in values]).T
    return values


def distance_to_track(x: Array, y: Array) -> Array:
    """Distance of points from the middle of the track."""
    middle = track(numpy.linspace(0, 2 * math.pi, 720, endpoint=False))
    flat = numpy.stack([x.ravel(), y.ravel()], axis=1)
    result = numpy.full(len(flat), numpy.inf)
    # The curve goes once around: only the points of about the same direction are near.
    direction = numpy.mod(numpy.arctan2(flat[:, 1], flat[:, 0]), 2 * math.pi)
    nearest = (direction / (2 * math.pi) * 720).astype(int)
    for offset in range(-60, 61, 2):
        result = numpy.minimum(result, numpy.linalg.norm(flat - middle[(nearest + offset) % 720], axis=1))
    return result.reshape(x.shape)


def add_trees(landscape: Landscape, simulation: zorSDK.Simulation, root: osg.Group) -> None:
    chance = random.Random(11)
    upright = zor.AffineMatrix4x4.rotate(math.pi / 2, zor.Vec3(1, 0, 0))  # round shapes stand along y
    planted = 0
    while planted < 90:
        x, y = chance.uniform(-72, 72), chance.uniform(-72, 72)
        if distance_to_track(numpy.array([x]), numpy.array([y]))[0] < 6:
            continue
        size, ground = chance.uniform(0.7, 1.5), landscape.height(x, y)
        tree = zor.RigidBody("tree")
        tree.setMotionControl(zor.RigidBody.STATIC)
        trunk = zorCollide.Geometry(zorCollide.Cylinder(0.16 * size, 1.6 * size))
        tree.add(trunk, upright * zor.AffineMatrix4x4.translate(0, 0, 0.6 * size))
        crowns = []
        for radius, height, place in ((1.15, 1.9, 1.9), (0.9, 1.6, 2.8), (0.6, 1.3, 3.6)):
            crown = zorCollide.Geometry(zorCollide.Cone(radius * size, height * size))
            tree.add(crown, upright * zor.AffineMatrix4x4.translate(0, 0, place * size))
            crowns.append(crown)
        tree.setPosition(zor.Vec3(x, y, ground))
        simulation.add(tree)
        zorOSG.createVisual(tree, root, 0.4)
        zorOSG.setDiffuseColor(trunk, zor.Vec4f(0.28, 0.18, 0.10, 1), root)
        shade = chance.uniform(0.8, 1.25)
        for crown in crowns:
            zorOSG.setDiffuseColor(crown, zor.Vec4f(0.08 * shade, 0.24 * shade, 0.09 * shade, 1), root)
        planted += 1


# ------------------------------------------------------------------------------------------------ the car


def coloured(shape: zorCollide.Shape, color: Triple, shine: bool = True) -> zorCollide.Shape:
    """A shape that is drawn in a colour."""
    material = zorRender.RenderMaterial()
    material.setDiffuseColor(zorRender.Color(*color))
    if shine:
        material.setSpecularColor(zorRender.Color(0.5, 0.5, 0.5))
        material.setShininess(60)
    data = zorRender.RenderData()
    data.setRenderMaterial(material)
    shape.setRenderData(data)
    return shape


def prism(outline: list[tuple[float, float]], bottom: float, top: float) -> zorCollide.Convex:
    """A convex block: (x, z) corners, as wide as `bottom` where z is lowest and as `top` where it is highest."""
    low, high = min(z for _, z in outline), max(z for _, z in outline)
    corners = []
    for x, z in outline:
        half = bottom + (top - bottom) * (z - low) / (high - low)
        corners += [zor.Vec3(x, half, z), zor.Vec3(x, -half, z)]
    return zorCollide.Convex(zor.Vec3Vector(corners))


class Car:
    """Chassis, and on each corner a pillar that slides, a knuckle that steers and a wheel that turns."""

    def __init__(self, simulation: zorSDK.Simulation, root: osg.Group, place: zor.AffineMatrix4x4):
        self.rubber = zor.Material("rubber", 1100.0, 1.0)
        self.assembly = zorSDK.Assembly("car")
        self.chassis = self.make_chassis()
        self.steering: list[zor.Constraint1DOF] = []
        self.springs: list[zor.Constraint1DOF] = []
        self.drives: list[zor.Constraint1DOF] = []
        self.wheels: list[zor.RigidBody] = []
        for axle in AXLES:
            for side in (1, -1):
                self.add_wheel(axle, side)
        self.assembly.setTransform(place)
        simulation.add(self.assembly)
        zorOSG.createVisual(self.assembly, root, 1.2)

    def body(self, name: str, mass: float, position: zor.Vec3) -> zor.RigidBody:
        body = zor.RigidBody(name)
        body.getMassProperties().setMass(mass)
        body.setPosition(position)
        self.assembly.add(body)
        return body

    def show(self, body: zor.RigidBody, shape: zorCollide.Shape, color: Triple, place: zor.AffineMatrix4x4 | None = None) -> None:
        """Adds a part that is seen and collides with nothing."""
        geometry = zorCollide.Geometry(coloured(shape, color))
        geometry.setEnableCollisions(False)
        body.add(geometry, place or zor.AffineMatrix4x4())

    def make_chassis(self) -> zor.RigidBody:
        chassis = self.body("chassis", CHASSIS_MASS, zor.Vec3(0, 0, 0.62))
        box = zorCollide.Geometry(coloured(zorCollide.Box(zor.Vec3(1.75, 0.62, 0.16)), DARK))
        chassis.add(box)
        move = zor.AffineMatrix4x4.translate
        hull = [(-2.0, 0.02), (-2.05, 0.30), (-1.85, 0.42), (0.75, 0.42), (1.85, 0.30), (2.05, 0.12), (2.0, -0.02)]
        self.show(chassis, prism(hull, 0.66, 0.66), PAINT)
        self.show(chassis, zorCollide.Box(zor.Vec3(0.78, 0.80, 0.16)), PAINT, move(0, 0, 0.06))
        for x in (1.32, -1.30):  # over the wheels
            self.show(chassis, zorCollide.Box(zor.Vec3(0.56, 0.86, 0.05)), PAINT, move(x, 0, 0.345))
        self.show(chassis, prism([(-1.55, 0.42), (-1.05, 0.88), (0.05, 0.90), (0.75, 0.42)], 0.66, 0.52), GLASS)
        self.show(chassis, prism([(-1.08, 0.84), (-1.0, 0.92), (0.0, 0.94), (0.08, 0.86)], 0.55, 0.52), PAINT)
        for x, height in ((2.04, 0.0), (-2.04, 0.02)):
            self.show(chassis, zorCollide.Box(zor.Vec3(0.07, 0.74, 0.09)), DARK, move(x, 0, height))
        for side in (1, -1):
            lamp = zor.AffineMatrix4x4.rotate(math.pi / 2, zor.Vec3(0, 0, 1)) * move(1.98, side * 0.48, 0.18)
            self.show(chassis, zorCollide.Cylinder(0.11, 0.10), LAMP, lamp)
            self.show(chassis, zorCollide.Box(zor.Vec3(0.03, 0.13, 0.06)), TAIL, move(-2.03, side * 0.50, 0.26))
        mass = chassis.getMassProperties()
        mass.setInertiaTensor(zor.Vec3(380, 1500, 1700))
        mass.setCmLocalTranslate(zor.Vec3(0, 0, -0.08))
        return chassis

    def add_wheel(self, axle: str, side: int) -> None:
        centre = zor.Vec3(AXLES[axle], side * HALF_TRACK, WHEEL_RADIUS)
        up, across = zor.Vec3(0, 0, 1), zor.Vec3(0, 1, 0)
        name = f"{axle} {'left' if side > 0 else 'right'}"
        pillar = self.body(name + " pillar", PILLAR_MASS, centre)
        pillar.getMassProperties().setInertiaTensor(zor.Vec3(2, 2, 2))
        spring = self.join(zor.Prismatic(centre, up, pillar, self.chassis), name + " spring")
        spring.getLock1D().setEnable(True)
        spring.getLock1D().setPosition(-SPRING_PRELOAD)  # downwards: the slider moves the pillar
        spring.getLock1D().setCompliance(1 / SPRING_STIFFNESS)
        spring.getLock1D().setDamping(SPRING_DAMPING / SPRING_STIFFNESS)
        spring.getRange1D().setEnable(True)
        spring.getRange1D().setRange(*SPRING_TRAVEL)
        self.springs.append(spring)

        holder = pillar
        if axle == "front":
            holder = self.body(name + " knuckle", KNUCKLE_MASS, centre)
            holder.getMassProperties().setInertiaTensor(zor.Vec3(2, 2, 2))
            pin = self.join(zor.Hinge(centre, up, holder, pillar), name + " steering")
            pin.getLock1D().setEnable(True)
            self.steering.append(pin)
        wheel = self.make_wheel(name + " wheel", centre, side)
        drive = self.join(zor.Hinge(centre, across, wheel, holder), name + " drive")
        drive.getMotor1D().setEnable(True)
        drive.getMotor1D().setForceRange(zor.RangeReal(-GREATEST_TORQUE, GREATEST_TORQUE))
        drive.getMotor1D().setCompliance(MOTOR_SLACK)
        self.drives.append(drive)

    def join(self, constraint: zor.Constraint1DOF, name: str) -> zor.Constraint1DOF:
        constraint.setName(name)
        self.assembly.add(constraint)
        return constraint

    def make_wheel(self, name: str, centre: zor.Vec3, side: int) -> zor.RigidBody:
        wheel = self.body(name, WHEEL_MASS, centre)
        tyre = zorCollide.Geometry(coloured(zorCollide.Cylinder(WHEEL_RADIUS, WHEEL_WIDTH), (0.05, 0.05, 0.055), shine=False))
        tyre.setMaterial(self.rubber)
        wheel.add(tyre)
        inertia = wheel.getMassProperties().getInertiaTensor()
        wheel.getMassProperties().setInertiaTensor(inertia)
        face = side * (WHEEL_WIDTH / 2 + 0.004)
        self.show(wheel, zorCollide.Cylinder(0.25, 0.012), (0.20, 0.20, 0.21), zor.AffineMatrix4x4.translate(0, face, 0))
        self.show(wheel, zorCollide.Cylinder(0.06, 0.04), CHROME, zor.AffineMatrix4x4.translate(0, face, 0))
        for spoke in range(5):
            turn = zor.AffineMatrix4x4.rotate(2 * math.pi * spoke / 5, zor.Vec3(0, 1, 0))
            place = zor.AffineMatrix4x4.translate(0, face + side * 0.008, 0.135) * turn
            self.show(wheel, zorCollide.Box(zor.Vec3(0.028, 0.008, 0.115)), CHROME, place)
        self.wheels.append(wheel)
        return wheel

    def control(self, steer: float, speed: float) -> None:
        """\\param steer - angle of the front wheels, positive to the left \\param speed - wanted speed (m/s)"""
        for pin in self.steering:
            pin.getLock1D().setPosition(steer)
        for drive in self.drives:
            drive.getMotor1D().setSpeed(speed / WHEEL_RADIUS)

    def speed(self) -> float:
        return self.chassis.getVelocity().length()


class Driver(zorSDK.StepEventListener):
    """Steers towards a point of the track ahead, and goes slower the more it has to steer."""

    def __init__(self, car: Car):
        super().__init__(zorSDK.StepEventListener.PRE_COLLIDE)
        self.car = car
        self.middle = track(numpy.linspace(0, 2 * math.pi, 720, endpoint=False))
        self.steer = 0.0
        self.distances: list[float] = []  # from the middle of the track
        self.lean = 0.0  # greatest tilt of the car (rad)

    def preCollide(self, time: float) -> None:
        frame = self.car.chassis.getTransform()
        place, ahead = frame.getTranslate(), frame.transformVector(zor.Vec3(1, 0, 0))
        away = numpy.linalg.norm(self.middle - (place.x(), place.y()), axis=1)
        nearest = int(away.argmin())
        self.distances.append(float(away[nearest]))
        self.lean = max(self.lean, math.acos(min(1.0, frame.transformVector(zor.Vec3(0, 0, 1)).z())))
        look = 4.5 + 0.45 * self.car.speed()
        step = 0
        while away[(nearest + step) % len(away)] < look and step < len(away) // 2:
            step += 1
        goal = self.middle[(nearest + step) % len(away)]
        dx, dy = goal[0] - place.x(), goal[1] - place.y()
        bearing = math.atan2(ahead.x() * dy - ahead.y() * dx, ahead.x() * dx + ahead.y() * dy)
        wheelbase = AXLES["front"] - AXLES["rear"]
        wanted = math.atan2(2 * wheelbase * math.sin(bearing), math.hypot(dx, dy))
        wanted = min(max(wanted, -GREATEST_STEER), GREATEST_STEER)
        self.steer += min(max(wanted - self.steer, -0.03), 0.03)  # nobody turns the wheel at once
        self.car.control(self.steer, SPEED * (1 - 0.75 * abs(wanted) / GREATEST_STEER) if time > 0.6 else 0.0)


class Follower(zorOSG.ExampleApplicationListener):
    """Keeps the camera behind the car, and takes the picture."""

    def __init__(self, car: Car, landscape: Landscape, picture: str | None):
        super().__init__()
        self.car = car
        self.landscape = landscape
        self.picture = picture
        self.eye: zor.Vec3 | None = None

    def preFrame(self, application: zorOSG.ExampleApplication) -> None:
        frame, time = self.car.chassis.getTransform(), application.getTimeStamp()
        place, ahead = frame.getTranslate(), frame.transformVector(zor.Vec3(1, 0, 0))
        turn = 2.25 + 0.75 * math.cos(0.42 * time)  # from behind to the side and back
        direction = math.atan2(ahead.y(), ahead.x()) + turn
        wanted = place + zor.Vec3(5.4 * math.cos(direction), 5.4 * math.sin(direction), 1.9)
        self.eye = wanted if self.eye is None else self.eye + (wanted - self.eye) * 0.06
        ground = self.landscape.height(self.eye.x(), self.eye.y())
        self.eye = zor.Vec3(self.eye.x(), self.eye.y(), max(self.eye.z(), ground + 0.9))
        application.setCameraHome(self.eye, place + zor.Vec3(0, 0, 0.35), zor.Vec3(0, 0, 1))
        decorator = application.getSceneDecorator()
        decorator.setText(0, f"{time:5.1f} s   {3.6 * self.car.speed():3.0f} km/h", zor.Vec4f(1, 1, 1, 1))
        if self.picture and time >= PICTURE_TIME:
            application.takeScreenShot(self.picture)
            self.picture = None


def main() -> int:
    arguments = zorIO.ArgumentParser(sys.argv)
    arguments.setDescription(__doc__.splitlines()[0])
    arguments.addOption("--output", "folder for the picture and the video", "car_output", "FOLDER")
    application = zorOSG.ExampleApplication()
    if not application.init(arguments):
        return application.getExitCode()
    application.initSimulation()
    application.setTimeStep(TIME_STEP)
    simulation, root = application.getSimulation(), application.getSceneRoot()

    landscape = Landscape(simulation, root)
    add_trees(landscape, simulation, root)
    start, further = track(numpy.array([0.0, 0.02]))
    heading = math.atan2(*(further - start)[::-1])
    place = zor.AffineMatrix4x4.rotate(heading, zor.Vec3(0, 0, 1)) * zor.AffineMatrix4x4.translate(
        start[0], start[1], max(landscape.height(start[0] + dx, start[1] + dy) for dx in (-2, 0, 2) for dy in (-2, 0, 2)) + 0.1)
    car = Car(simulation, root, place)
    driver = Driver(car)
    simulation.add(driver)

    output = os.path.abspath(arguments.getValue("--output"))
    recorded = application.hasRenderContext() and application.hasOffscreenWindow()
    follower = Follower(car, landscape, os.path.join(output, "car.png") if recorded else None)
    application.addListener(follower)
    if recorded:
        capture = application.getVideoServerCapture()
        capture.setFilename(os.path.join(output, "car.mp4"))
        capture.setVideoFPS(30)
        capture.setImageCaptureFPS(30)
        capture.startCapture()
    decorator = application.getSceneDecorator()
    decorator.setBackgroundColor(zor.Vec3(0.36, 0.56, 0.86), zor.Vec3(0.82, 0.88, 0.93))
    if not arguments.has("--stopAfter") and (recorded or not application.hasRenderContext()):
        application.stopAfter(DURATION)

    exit_code = application.run()
    if driver.distances:
        print(f"{car.speed():.1f} m/s at the end; on average {numpy.mean(driver.distances):.2f} m from the middle of the track, "
              f"at most {max(driver.distances):.2f} m; greatest tilt {math.degrees(driver.lean):.0f} degrees")
    return exit_code


if __name__ == "__main__":
    sys.exit(main())
