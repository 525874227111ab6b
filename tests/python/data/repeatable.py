"""A scene with piles, joints, motors, listeners and sleep; writes its state after 1,000 steps to a file.

    repeatable.py STATE plain
    repeatable.py STATE application|visuals [options of the application]

`plain` steps the simulation alone, `application` lets an application do it, `visuals` draws everything as well and casts
rays between the steps.
"""

import random
import sys

import zor
import zorCollide
import zorSDK

STEPS = 1000


class Recorder(zorSDK.StepEventListener):
    """Stores the state after the last step, and every contact on the way."""

    def __init__(self, path, simulation, rays):
        super().__init__(zorSDK.StepEventListener.POST_STEP)
        self.path, self.simulation, self.rays = path, simulation, rays
        self.steps = 0
        self.log = []

    def post(self, time):
        self.steps += 1
        if self.rays and self.steps % 7 == 0:
            self.simulation.getSpace().castRays([zor.Vec3(0.3, 0.2, 9)], [zor.Vec3(0.1 * i, 0.05 * i, -1) for i in range(8)])
        if self.steps == STEPS:
            state = bytes(memoryview(self.simulation.getState()))
            with open(self.path, "wb") as file:
                file.write(state + f" {self.simulation.getStateHash():016x} {' '.join(self.log)}".encode())


class Contacts(zorSDK.ContactEventListener):
    """Notes who meets whom, in the order of the calls, and lets a few pass through each other."""

    def __init__(self, log):
        super().__init__(zorSDK.ContactEventListener.IMPACT | zorSDK.ContactEventListener.SEPARATION)
        self.log = log

    def impact(self, time, contact):
        names = [contact.getGeometry(i).getName() for i in (0, 1)]
        self.log.append("+" + "/".join(names))
        ghosts = sum(name.startswith("ball 1") for name in names)
        return zorSDK.ContactEventListener.REMOVE_CONTACT if ghosts == 2 else zorSDK.ContactEventListener.KEEP_CONTACT

    def separation(self, time, first, second):
        self.log.append(f"-{first.getName()}/{second.getName()}")


def add(simulation, name, shape, position, material):
    geometry = zorCollide.Geometry(shape)
    geometry.setName(name)
    geometry.setMaterial(material)
    body = zor.RigidBody(geometry, name)
    body.setPosition(zor.Vec3(*position))
    simulation.add(body)
    return body


def build(simulation):
    chance = random.Random(5)
    simulation.setEnableAutoSleep(True)
    rubber, wood = zor.Material("rubber", 800.0, 0.8), zor.Material("wood", 600.0, 0.4)
    rubber.setRestitution(0.6)
    wood.setRollingFriction(0.002)
    bouncy = zor.ContactMaterial(rubber, wood)
    bouncy.setRestitution(0.3)
    simulation.add(bouncy)
    ground = zorCollide.Geometry(zorCollide.Box(zor.Vec3(20, 20, 0.5)))
    ground.setName("ground")
    ground.setMaterial(wood)
    ground.setPosition(zor.Vec3(0, 0, -0.5))
    simulation.add(ground)
    for i in range(120):
        place = (chance.uniform(-1.5, 1.5), chance.uniform(-1.5, 1.5), 0.4 + 0.12 * i)
        kind = i % 4
        if kind == 0:
            add(simulation, f"ball {i}", zorCollide.Sphere(0.2), place, rubber)
        elif kind == 1:
            add(simulation, f"box {i}", zorCollide.Box(zor.Vec3(0.2, 0.15, 0.25)), place, wood)
        elif kind == 2:
            add(simulation, f"can {i}", zorCollide.Cylinder(0.15, 0.4), place, wood)
        else:
            add(simulation, f"pill {i}", zorCollide.Capsule(0.12, 0.3), place, rubber)
    for i in range(8):  # a wall that comes to rest, and sleeps
        add(simulation, f"brick {i}", zorCollide.Box(zor.Vec3(0.3, 0.2, 0.2)), (8, 0, 0.2 + 0.4 * i), wood)
    mixer = add(simulation, "mixer", zorCollide.Box(zor.Vec3(1.6, 0.1, 0.2)), (0, 0, 0.3), wood)
    hinge = zor.Hinge(zor.Vec3(0, 0, 0.3), zor.Vec3(0, 0, 1), mixer)
    hinge.getMotor1D().setEnable(True)
    hinge.getMotor1D().setSpeed(1.5)
    hinge.getMotor1D().setForceRange(zor.RangeReal(3000))
    simulation.add(hinge)
    last = None
    for i in range(6):
        link = add(simulation, f"link {i}", zorCollide.Box(zor.Vec3(0.2, 0.05, 0.05)), (4.2 + 0.4 * i, 0, 3), rubber)
        simulation.add(zor.BallJoint(zor.Vec3(4 + 0.4 * i, 0, 3), link, last))
        last = link
    lift = add(simulation, "lift", zorCollide.Box(zor.Vec3(1, 1, 0.1)), (0, 5, 0.1), wood)
    lift.setMotionControl(zor.RigidBody.KINEMATICS)
    lift.moveTo(zor.AffineMatrix4x4(zor.Vec3(0, 0, 2.1)), 9.0)


def main():
    path, how = sys.argv[1:3]
    if how == "plain":
        simulation = zorSDK.Simulation()
    else:
        import zorIO
        import zorOSG
        application = zorOSG.ExampleApplication()
        assert application.init(zorIO.ArgumentParser(["repeatable", *sys.argv[3:]]))
        application.initSimulation()
        simulation = application.getSimulation()
    build(simulation)
    recorder = Recorder(path, simulation, rays=how == "visuals")
    contacts = Contacts(recorder.log)
    simulation.add(contacts)
    simulation.add(recorder)
    if how == "plain":
        for _ in range(STEPS):
            simulation.stepForward()
        return 0
    if how == "visuals":
        for body in simulation.getRigidBodies():
            zorOSG.createVisual(body, application.getSceneRoot(), 0.3)
        for geometry in simulation.getGeometries():
            if geometry.getRigidBody() is None:
                zorOSG.createVisual(geometry, application.getSceneRoot())
    application.stopAfter((STEPS + 1) * simulation.getTimeStep())
    return application.run()


if __name__ == "__main__":
    sys.exit(main())
