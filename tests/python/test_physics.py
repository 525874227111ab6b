"""Bodies, shapes, constraints, rays, contacts and listeners as a script uses them, against closed forms."""

import gc
import math
import weakref

import numpy
import pytest
from hypothesis import given, settings
from hypothesis import strategies as st

import osg
import zor
import zorCollide
import zorPython
import zorSDK

GRAVITY = 9.81


@pytest.fixture(autouse=True)
def no_script_errors():
    zorPython.clearErrors()
    yield
    zorPython.clearErrors()


@pytest.fixture
def simulation():
    return zorSDK.Simulation()


@pytest.fixture
def weightless():
    simulation = zorSDK.Simulation()
    simulation.setUniformGravity(zor.Vec3())
    return simulation


def body_of(shape, simulation=None, position=(0, 0, 0), name="", static=False, material=None):
    geometry = zorCollide.Geometry(shape)
    if material is not None:
        geometry.setMaterial(material)
    body = zor.RigidBody(name)
    if static:
        body.setMotionControl(zor.RigidBody.STATIC)
    body.add(geometry)
    body.setPosition(zor.Vec3(*position))
    if simulation is not None:
        simulation.add(body)
    return body


def ground(simulation, material=None):
    """Half space below z = 0."""
    geometry = zorCollide.Geometry(zorCollide.Plane(zor.Vec3(0, 0, 1), zor.Vec3()))
    if material is not None:
        geometry.setMaterial(material)
    simulation.add(geometry)
    return geometry


def run(simulation, seconds):
    for _ in range(round(seconds / simulation.getTimeStep())):
        simulation.stepForward()


def array(vector):
    return numpy.array(list(vector))


# ------------------------------------------------------------------------------------------------ values

reals = st.floats(-1e3, 1e3).map(lambda x: round(x, 6))
vectors = st.tuples(reals, reals, reals)
units = st.tuples(*[st.floats(-1, 1)] * 3).filter(lambda v: math.hypot(*v) > 0.1)
rotations = st.tuples(st.floats(-math.pi, math.pi), units).map(lambda r: zor.Quat(r[0], zor.Vec3(*r[1]).normal()))
transforms = st.tuples(rotations, vectors).map(lambda t: zor.AffineMatrix4x4(t[0], zor.Vec3(*t[1])))
quick = settings(max_examples=60, deadline=None)


class TestValues:
    @quick
    @given(vectors, vectors, reals)
    def test_vectors_agree_with_numpy(self, a, b, factor):
        v, w, m, n = zor.Vec3(*a), zor.Vec3(*b), numpy.array(a), numpy.array(b)
        assert (array(v + w) == m + n).all() and (array(v - w) == m - n).all()
        assert (array(v * factor) == m * factor).all()
        assert v.dot(w) == pytest.approx(m @ n, rel=1e-12, abs=1e-9)
        assert array(v.cross(w)) == pytest.approx(numpy.cross(m, n), rel=1e-12, abs=1e-9)
        assert v.length() == pytest.approx(numpy.linalg.norm(m))
        if v.length() > 1e-3:
            assert v.normal().length() == pytest.approx(1)
            assert v.perpendicular().dot(v) == pytest.approx(0, abs=1e-9 * (1 + v.length()))

    @quick
    @given(rotations, vectors)
    def test_rotation_keeps_length_and_its_conjugate_undoes_it(self, q, a):
        v = zor.Vec3(*a)
        turned = q.rotate(v)
        assert turned.length() == pytest.approx(v.length(), abs=1e-9)
        assert array(q.conj().rotate(turned)) == pytest.approx(a, abs=1e-8)
        assert array(q * v) == pytest.approx(array(turned), abs=1e-9)

    @quick
    @given(rotations, rotations, vectors)
    def test_a_product_applies_its_left_factor_first(self, first, second, a):
        v = zor.Vec3(*a)
        expected = array(second.rotate(first.rotate(v)))
        assert array((first * second).rotate(v)) == pytest.approx(expected, abs=1e-8)
        product = zor.AffineMatrix4x4(first) * zor.AffineMatrix4x4(second)
        assert array(v * product) == pytest.approx(expected, abs=1e-8)

    @quick
    @given(rotations, rotations, rotations)
    def test_rotations_are_associative(self, a, b, c):
        assert array((a * b) * c) == pytest.approx(array(a * (b * c)), abs=1e-12)

    @quick
    @given(units, units)
    def test_the_rotation_between_two_directions(self, a, b):
        start, end = zor.Vec3(*a).normal(), zor.Vec3(*b).normal()
        assert array(zor.Quat(start, end).rotate(start)) == pytest.approx(array(end), abs=1e-6)
        assert array(zor.Quat(start, -start).rotate(start)) == pytest.approx(array(-start), abs=1e-9)

    @quick
    @given(transforms)
    def test_a_transform_and_its_inverse_cancel(self, m):
        identity = numpy.eye(4)
        assert numpy.asarray(m * m.inverse()) == pytest.approx(identity, abs=1e-8)
        assert numpy.asarray(m.inverse() * m) == pytest.approx(identity, abs=1e-8)
        assert numpy.asarray(m.inverse()) == pytest.approx(numpy.linalg.inv(numpy.asarray(m)), abs=1e-8)

    @quick
    @given(transforms, transforms, transforms, vectors)
    def test_transforms_agree_with_numpy_rows(self, a, b, c, point):
        m, n = numpy.asarray(a), numpy.asarray(b)
        assert numpy.asarray(a * b) == pytest.approx(m @ n, rel=1e-9, abs=1e-8)
        assert numpy.asarray((a * b) * c) == pytest.approx(numpy.asarray(a * (b * c)), abs=1e-8)
        p = zor.Vec3(*point)
        assert array(p * a) == pytest.approx((numpy.array([*point, 1]) @ m)[:3], abs=1e-8)
        assert array(a.transformVector(p)) == pytest.approx(numpy.array(point) @ m[:3, :3], abs=1e-8)

    @quick
    @given(rotations, vectors)
    def test_a_transform_gives_its_parts_back(self, q, t):
        m = zor.AffineMatrix4x4(q, zor.Vec3(*t))
        assert tuple(m.getTranslate()) == t
        again = m.getRotate()
        assert abs(numpy.dot(array(again), array(q))) == pytest.approx(1, abs=1e-9)  # q and -q are the same

    @quick
    @given(rotations, vectors, vectors)
    def test_the_scene_graph_has_the_same_convention(self, q, t, point):
        m = zor.AffineMatrix4x4(q, zor.Vec3(*t))
        other = osg.Matrixd.rotate(osg.Quat(*q)) * osg.Matrixd.translate(*t)
        assert numpy.asarray(m) == pytest.approx(numpy.asarray(other), abs=1e-9)


# ------------------------------------------------------------------------------------------------ bodies


class TestMass:
    @pytest.mark.parametrize("shape, volume", [
        (lambda: zorCollide.Box(0.5, 1, 1.5), 6),
        (lambda: zorCollide.Sphere(0.5), math.pi / 6),
        (lambda: zorCollide.Cylinder(0.5, 2), math.pi / 2),
        (lambda: zorCollide.Capsule(0.5, 2), math.pi / 2 + math.pi / 6),
        (lambda: zorCollide.Cone(0.5, 3), math.pi / 4),
        (lambda: zorCollide.Convex([(0, 0, 0), (1, 0, 0), (0, 1, 0), (0, 0, 1)]), 1 / 6),
    ], ids=["box", "sphere", "cylinder", "capsule", "cone", "convex"])
    def test_mass_is_volume_times_density(self, shape, volume):
        body = body_of(shape(), material=zor.Material("m", 250.0))
        assert body.getMassProperties().getMass() == pytest.approx(250 * volume, rel=1e-6)
        assert body.getGeometries()[0].getShape(0).getVolume() == pytest.approx(volume, rel=1e-6)

    def test_inertia_of_a_box_and_a_sphere(self):
        mass = body_of(zorCollide.Box(0.5, 1, 1.5)).getMassProperties()
        x, y, z = 1.0, 2.0, 3.0
        expected = mass.getMass() / 12 * numpy.array([y * y + z * z, x * x + z * z, x * x + y * y])
        assert array(mass.getPrincipalInertiae()) == pytest.approx(expected)
        sphere = body_of(zorCollide.Sphere(0.3)).getMassProperties()
        assert array(sphere.getPrincipalInertiae()) == pytest.approx([0.4 * sphere.getMass() * 0.09] * 3)

    def test_two_parts_move_the_centre_of_mass(self):
        body = zor.RigidBody()
        for x, density in ((-1, 1000.0), (1, 3000.0)):
            geometry = zorCollide.Geometry(zorCollide.Sphere(0.2))
            geometry.setMaterial(zor.Material("m", density))
            assert body.add(geometry, zor.AffineMatrix4x4.translate(x, 0, 0))
        assert array(body.getMassProperties().getCmLocalTranslate()) == pytest.approx([0.5, 0, 0])
        one = 4 / 3 * math.pi * 0.2**3 * 1000
        parallel_axes = 4 * one * 0.4 * 0.04 + one * 1.5**2 + 3 * one * 0.5**2
        assert body.getMassProperties().getPrincipalInertiae().z() == pytest.approx(parallel_axes)

    def test_a_set_mass_stays_and_a_wrong_one_is_refused(self):
        body = body_of(zorCollide.Box(0.5, 0.5, 0.5))
        mass = body.getMassProperties()
        mass.setMass(7)
        body.updateMassProperties()
        assert (mass.getMass(), mass.getInvMass()) == (7, pytest.approx(1 / 7))
        for wrong in (0, -1, math.nan, math.inf):
            with pytest.raises(RuntimeError, match="(?i)mass"):
                mass.setMass(wrong)
        assert mass.getMass() == 7

    def test_a_material_changes_density_on_request(self):
        material = zor.Material("m", 100.0)
        body = body_of(zorCollide.Box(0.5, 0.5, 0.5), material=material)
        material.setDensity(200.0)
        body.updateMassProperties()
        assert body.getMassProperties().getMass() == pytest.approx(200)


class TestMotion:
    def test_free_fall(self, simulation):
        body = body_of(zorCollide.Sphere(0.1), simulation, (0, 0, 100))
        body.setVelocity(zor.Vec3(3, 0, 0))
        run(simulation, 2)
        time = simulation.getTimeStamp()
        assert time == pytest.approx(2)
        # Semi-implicit steps lie g t dt / 2 off the parabola.
        error = GRAVITY * time * simulation.getTimeStep() / 2
        assert body.getPosition().z() == pytest.approx(100 - GRAVITY * time**2 / 2, abs=error * 1.05)
        assert body.getPosition().x() == pytest.approx(6)
        assert body.getVelocity().z() == pytest.approx(-GRAVITY * time)
        assert body.getAcceleration().z() == pytest.approx(-GRAVITY)

    def test_forces_last_one_step(self, weightless):
        body = body_of(zorCollide.Box(0.5, 0.5, 0.5), weightless)
        mass, dt = body.getMassProperties().getMass(), weightless.getTimeStep()
        body.addForce(zor.Vec3(100, 0, 0))
        body.addForce(zor.Vec3(20, 0, 0))
        assert body.getForce() == zor.Vec3(120, 0, 0)
        weightless.stepForward()
        assert body.getForce() == zor.Vec3()
        run(weightless, 0.5)
        assert body.getVelocity().x() == pytest.approx(120 / mass * dt)

    def test_a_force_off_the_centre_turns_the_body(self, weightless):
        body = body_of(zorCollide.Box(0.5, 0.5, 0.5), weightless)
        body.addForceAtPosition(zor.Vec3(0, 60, 0), zor.Vec3(0.5, 0, 0))
        assert array(body.getTorque()) == pytest.approx([0, 0, 30])
        weightless.stepForward()
        expected = 30 / body.getMassProperties().getPrincipalInertiae().z() * weightless.getTimeStep()
        assert array(body.getAngularVelocity()) == pytest.approx([0, 0, expected])
        assert body.getVelocityAt(zor.Vec3(1, 0, 0)).y() == pytest.approx(body.getVelocity().y() + expected, rel=1e-3)

    def test_a_turn_at_constant_speed(self, weightless):
        body = body_of(zorCollide.Sphere(0.5), weightless)
        body.setAngularVelocity(zor.Vec3(0, 0, math.pi / 2))
        run(weightless, 1)
        assert array(body.getRotation().rotate(zor.Vec3(1, 0, 0))) == pytest.approx([0, 1, 0], abs=1e-3)

    def test_motion_control(self, simulation):
        fixed = body_of(zorCollide.Sphere(0.1), simulation, (0, 0, 1), static=True)
        driven = body_of(zorCollide.Sphere(0.1), simulation, (5, 0, 1))
        driven.setMotionControl(zor.RigidBody.KINEMATICS)
        driven.setVelocity(zor.Vec3(0, 2, 0))
        off = body_of(zorCollide.Sphere(0.1), simulation, (10, 0, 1))
        off.setEnable(False)
        run(simulation, 1)
        assert fixed.getPosition() == zor.Vec3(0, 0, 1)
        assert array(driven.getPosition()) == pytest.approx([5, 2, 1], abs=1e-6)
        assert off.getPosition() == zor.Vec3(10, 0, 1)

    def test_damping_decays_the_velocity(self, weightless):
        body = body_of(zorCollide.Sphere(0.1), weightless)
        body.setVelocity(zor.Vec3(1, 0, 0))
        body.setLinearVelocityDamping(2.0)
        run(weightless, 1)
        assert body.getVelocity().x() == pytest.approx(math.exp(-2), rel=0.05)

    @pytest.mark.parametrize("setter", ["setPosition", "setVelocity", "setAngularVelocity", "addForce", "addTorque"])
    @pytest.mark.parametrize("wrong", [math.nan, math.inf])
    def test_numbers_that_are_not_finite_are_refused(self, weightless, setter, wrong):
        body = body_of(zorCollide.Sphere(0.1), weightless, (1, 2, 3))
        with pytest.raises(RuntimeError, match="finite"):
            getattr(body, setter)(zor.Vec3(0, wrong, 0))
        weightless.stepForward()
        assert body.getPosition() == zor.Vec3(1, 2, 3)

    def test_energy_of_a_swing_is_kept(self, simulation):
        """A pendulum of one metre swings with the period of small angles."""
        simulation.setTimeStep(1 / 240)
        bob = body_of(zorCollide.Sphere(0.05), simulation, (math.sin(0.05), 0, -math.cos(0.05)))
        joint = zor.Hinge(zor.Vec3(), zor.Vec3(0, 1, 0), bob)
        simulation.add(joint)
        crossings, before = [], bob.getPosition().x()
        for _ in range(240 * 6):
            simulation.stepForward()
            now = bob.getPosition().x()
            if before > 0 >= now:
                crossings.append(simulation.getTimeStamp() - simulation.getTimeStep() * now / (now - before))
            before = now
        inertia = 1 + 0.4 * 0.05**2  # over mass and squared length
        period = 2 * math.pi * math.sqrt(inertia / GRAVITY) * (1 + 0.05**2 / 16)
        assert len(crossings) == 3
        assert numpy.diff(crossings) == pytest.approx(period, rel=0.02)


# ------------------------------------------------------------------------------------------- constraints


class TestConstraints:
    def test_a_motor_reaches_its_speed(self, weightless):
        rotor = body_of(zorCollide.Box(1, 0.1, 0.1), weightless)
        hinge = zor.Hinge(zor.Vec3(), zor.Vec3(0, 0, 1), rotor)
        weightless.add(hinge)
        hinge.getMotor1D().setEnable(True)
        hinge.getMotor1D().setSpeed(3)
        run(weightless, 2)
        assert hinge.getSpeed() == pytest.approx(3, rel=0.01)
        assert rotor.getAngularVelocity().z() == pytest.approx(3, rel=0.01)
        assert hinge.getAngle() == pytest.approx(6, rel=0.02)  # not wrapped at half a turn

    def test_a_weak_motor_gives_its_torque(self, weightless):
        rotor = body_of(zorCollide.Box(1, 0.1, 0.1), weightless)
        hinge = zor.Hinge(zor.Vec3(), zor.Vec3(0, 0, 1), rotor)
        weightless.add(hinge)
        motor = hinge.getMotor1D()
        motor.setEnable(True)
        motor.setSpeed(1000)
        motor.setForceRange(zor.RangeReal(-5, 5))
        run(weightless, 1)
        inertia = rotor.getMassProperties().getPrincipalInertiae().z()
        assert hinge.getSpeed() == pytest.approx(5 / inertia, rel=0.02)
        assert motor.getCurrentForce() == pytest.approx(5, rel=0.02)

    def test_a_range_stops_a_slider(self, simulation):
        slider = body_of(zorCollide.Box(0.1, 0.1, 0.1), simulation)
        prismatic = zor.Prismatic(zor.Vec3(0, 0, 1), slider)
        simulation.add(prismatic)
        prismatic.getRange1D().setRange(-0.5, 0.5)
        prismatic.getRange1D().setEnable(True)
        slider.setVelocity(zor.Vec3(1, 0, 0))  # across the axis: the joint takes it away
        run(simulation, 2)
        assert prismatic.getPosition() == pytest.approx(-0.5, abs=0.01)
        assert array(slider.getPosition()) == pytest.approx([0, 0, -0.5], abs=0.01)
        weight = slider.getMassProperties().getMass() * GRAVITY
        assert prismatic.getRange1D().getCurrentForce() == pytest.approx(weight, rel=0.02)

    def test_a_lock_holds_against_gravity(self, simulation):
        simulation.setTimeStep(1 / 240)
        arm = body_of(zorCollide.Box(0.1, 0.1, 0.1), simulation, (1, 0, 0))
        hinge = zor.Hinge(zor.Vec3(), zor.Vec3(0, 1, 0), arm)
        simulation.add(hinge)
        hinge.getLock1D().setEnable(True)
        run(simulation, 1)
        assert array(arm.getPosition()) == pytest.approx([1, 0, 0], abs=0.01)
        torque = arm.getMassProperties().getMass() * GRAVITY
        assert abs(hinge.getLock1D().getCurrentForce()) == pytest.approx(torque, rel=0.02)
        hinge.getLock1D().setEnable(False)
        run(simulation, 0.3)
        assert arm.getPosition().z() < -0.1

    def test_a_distance_joint_keeps_its_distance(self, simulation):
        a = body_of(zorCollide.Sphere(0.1), simulation, (0, 0, 5), static=True)
        b = body_of(zorCollide.Sphere(0.1), simulation, (2, 0, 5))
        simulation.add(zor.DistanceJoint(a, zor.Vec3(), b, zor.Vec3()))
        lengths = []
        for _ in range(120):
            simulation.stepForward()
            lengths.append((b.getPosition() - a.getPosition()).length())
        assert min(lengths) > 1.95 and max(lengths) < 2.05
        assert b.getPosition().z() < 4.9

    def test_a_lock_joint_makes_one_of_two(self, simulation):
        a = body_of(zorCollide.Box(0.1, 0.1, 0.1), simulation, (0, 0, 5))
        b = body_of(zorCollide.Box(0.1, 0.1, 0.1), simulation, (1, 0, 5))
        simulation.add(zor.LockJoint(a, b))
        a.setAngularVelocity(zor.Vec3(0, 2, 0))
        run(simulation, 1)
        assert array(b.getPosition() * a.getTransform().inverse()) == pytest.approx([1, 0, 0], abs=0.02)

    def test_a_disabled_or_removed_constraint_lets_go(self, simulation):
        for release in (lambda joint: joint.setEnable(False), simulation.remove):
            body = body_of(zorCollide.Sphere(0.1), simulation, (0, 0, 0))
            lock = zor.Hinge(zor.Vec3(0, 0, 0), zor.Vec3(0, 0, 1), body)
            simulation.add(lock)
            run(simulation, 0.2)
            assert body.getPosition().z() == pytest.approx(0, abs=0.01)
            release(lock)
            run(simulation, 0.5)
            assert body.getPosition().z() < -1
            simulation.remove(body)

    def test_a_constraint_is_found_by_its_name_and_class(self, simulation):
        body = body_of(zorCollide.Sphere(0.1), simulation, (1, 0, 0))
        hinge = zor.Hinge(zor.Vec3(), zor.Vec3(0, 0, 1), body)
        hinge.setName("door")
        simulation.add(hinge)
        assert type(simulation.getConstraint("door")) is zor.Hinge
        assert simulation.getConstraint1DOF("door").getBody(0).this == body.this
        assert simulation.getConstraint1DOF("door").getBody(1) is None
        assert simulation.getConstraint("window") is None
        with pytest.raises(RuntimeError):
            zor.Hinge(zor.Vec3(), zor.Vec3(), body)  # no axis
        with pytest.raises((RuntimeError, TypeError)):
            zor.Hinge(zor.Vec3(), zor.Vec3(0, 0, 1), None)


# ---------------------------------------------------------------------------------------------- contacts


def upward_force(simulation, body):
    """Sum of the contact forces on a body (N)."""
    total = 0.0
    for contact in simulation.getSpace().getGeometryContacts(body):
        first = contact.getGeometry1().getRigidBody()
        sign = 1 if first is not None and first.this == body.this else -1
        total += sign * contact.getForce().z()
    return total


class TestContacts:
    @pytest.mark.parametrize("shape, height", [
        (lambda: zorCollide.Box(0.5, 0.4, 0.3), 0.3), (lambda: zorCollide.Sphere(0.4), 0.4)], ids=["box", "sphere"])
    def test_the_ground_carries_the_weight(self, simulation, shape, height):
        ground(simulation)
        body = body_of(shape(), simulation, (0, 0, height))
        simulation.setEnableAutoSleep(False)
        run(simulation, 2)
        weight = body.getMassProperties().getMass() * GRAVITY
        assert upward_force(simulation, body) == pytest.approx(weight, rel=0.02)
        assert body.getPosition().z() == pytest.approx(height, abs=0.01)
        point = simulation.getSpace().getGeometryContacts(body)[0].getPoints()[0]
        assert abs(point.getNormal().z()) == pytest.approx(1, abs=1e-3)
        assert point.getPoint().z() == pytest.approx(0, abs=0.02)

    @pytest.mark.parametrize("friction, slides", [(0.2, True), (0.8, False)])
    def test_friction_decides_on_a_slope(self, simulation, friction, slides):
        """A box on a slope of 30 degrees, whose tangent is 0.58."""
        stone = zor.Material("stone", 1000.0)
        pair = zor.ContactMaterial(stone, stone)
        pair.setFriction(friction)
        simulation.add(pair)
        angle = math.radians(30)
        simulation.setUniformGravity(zor.Vec3(GRAVITY * math.sin(angle), 0, -GRAVITY * math.cos(angle)))
        ground(simulation, stone)
        box = body_of(zorCollide.Box(0.5, 0.5, 0.1), simulation, (0, 0, 0.1), material=stone)
        run(simulation, 2)
        if slides:
            expected = GRAVITY * (math.sin(angle) - friction * math.cos(angle))
            assert box.getVelocity().x() / simulation.getTimeStamp() == pytest.approx(expected, rel=0.05)
        else:
            assert box.getPosition().x() == pytest.approx(0, abs=0.03)

    def test_restitution_decides_how_high_a_ball_bounces(self, simulation):
        rubber = zor.Material("rubber", 1000.0)
        pair = zor.ContactMaterial(rubber, rubber)
        pair.setRestitution(0.8)
        simulation.add(pair)
        simulation.setTimeStep(1 / 480)
        ground(simulation, rubber)
        ball = body_of(zorCollide.Sphere(0.1), simulation, (0, 0, 1.1), material=rubber)
        highest = 0.0
        for _ in range(480):
            simulation.stepForward()
            if simulation.getTimeStamp() > 0.5:
                highest = max(highest, ball.getPosition().z() - 0.1)
        assert highest == pytest.approx(0.64, rel=0.08)

    def test_momentum_is_kept_when_bodies_meet(self, weightless):
        a = body_of(zorCollide.Sphere(0.5), weightless, (-2, 0, 0))
        b = body_of(zorCollide.Sphere(0.8), weightless, (2, 0.3, 0))
        a.setVelocity(zor.Vec3(3, 0, 0))
        masses = [body.getMassProperties().getMass() for body in (a, b)]
        run(weightless, 2)
        total = array(a.getVelocity()) * masses[0] + array(b.getVelocity()) * masses[1]
        assert total == pytest.approx([3 * masses[0], 0, 0], abs=masses[0] * 1e-6)
        assert b.getVelocity().x() > 0.1  # they did meet

    def test_sensors_groups_and_pairs_let_bodies_through(self, simulation):
        floor = ground(simulation)
        space = simulation.getSpace()
        sensor, grouped, paired, solid = (body_of(zorCollide.Sphere(0.2), simulation, (i * 2, 0, 0.5)) for i in range(4))
        sensor.getGeometries()[0].setSensor(True)
        grouped.getGeometries()[0].addGroup(7)
        floor.addGroup(8)
        space.setEnablePair(7, 8, False)
        paired.getGeometries()[0].setEnableCollisions(floor, False)
        assert not space.canCollide(grouped.getGeometries()[0], floor)
        assert space.canCollide(solid.getGeometries()[0], floor)
        run(simulation, 0.6)
        assert [b.getPosition().z() < 0 for b in (sensor, grouped, paired, solid)] == [True, True, True, False]

    def test_bodies_rest_and_wake(self, simulation):
        ground(simulation)
        simulation.setEnableAutoSleep(True)
        box = body_of(zorCollide.Box(0.2, 0.2, 0.2), simulation, (0, 0, 0.2))
        run(simulation, 4)
        assert box.isSleeping() and simulation.getStatistics().sleepingBodies == 1
        box.setVelocity(zor.Vec3(0, 0, 3))
        run(simulation, 0.1)
        assert not box.isSleeping() and box.getPosition().z() > 0.3


# ------------------------------------------------------------------------------------------------- rays


class TestRays:
    def test_the_nearest_hit_and_all_hits(self, simulation):
        near = body_of(zorCollide.Sphere(1), simulation, (5, 0, 0), "near", static=True)
        far = body_of(zorCollide.Box(1, 1, 1), simulation, (10, 0, 0), "far", static=True)
        space = simulation.getSpace()
        hit = space.castRay(zor.Vec3(), zor.Vec3(2, 0, 0))  # the direction's length does not matter
        assert hit.hasHit() and hit.getGeometry().getRigidBody().this == near.this
        assert hit.getDistance() == pytest.approx(4, abs=1e-3)
        assert array(hit.getPoint()) == pytest.approx([4, 0, 0], abs=1e-3)
        assert array(hit.getNormal()) == pytest.approx([-1, 0, 0], abs=1e-3)
        assert type(hit.getShape()) is zorCollide.Sphere
        hits = space.castRayAll(zor.Vec3(), zor.Vec3(1, 0, 0))
        assert [h.getGeometry().getRigidBody().getName() for h in hits] == ["near", "far"]
        assert hits[1].getDistance() == pytest.approx(9, abs=1e-3)
        assert far.getPosition().x() == 10

    def test_misses_are_told(self, simulation):
        body_of(zorCollide.Sphere(1), simulation, (5, 0, 0), static=True)
        for direction, reach in (((0, 1, 0), 100), ((1, 0, 0), 3.9), ((-1, 0, 0), 100)):
            hit = simulation.getSpace().castRay(zor.Vec3(), zor.Vec3(*direction), reach)
            assert not hit.hasHit() and hit.getGeometry() is None and hit.getDistance() == -1
        with pytest.raises(RuntimeError):
            simulation.getSpace().castRay(zor.Vec3(), zor.Vec3())

    def test_many_rays_give_the_profile_of_a_sphere(self, simulation):
        body_of(zorCollide.Sphere(1), simulation, (0, 0, 0), static=True)
        x = numpy.linspace(-1.5, 1.5, 31)
        origins = numpy.stack([x, 0 * x, 0 * x + 5], axis=1)
        directions = numpy.tile([0.0, 0.0, -1.0], (31, 1))
        hits = simulation.getSpace().castRays(zor.Vec3Vector(origins), zor.Vec3Vector(directions))
        assert len(hits) == 31
        for position, hit in zip(x, hits):
            if abs(position) > 1.01:
                assert not hit.hasHit()
            elif abs(position) < 0.99:
                assert hit.getPoint().z() == pytest.approx(math.sqrt(1 - position**2), abs=2e-3)
        with pytest.raises(RuntimeError):
            simulation.getSpace().castRays(zor.Vec3Vector(origins), zor.Vec3Vector(directions[:3]))
        columns = simulation.getSpace().castRayTable(origins, directions)
        points = numpy.asarray(columns.getPoints())
        assert (numpy.asarray(columns.getDistances()) == [hit.getDistance() if hit.hasHit() else -1 for hit in hits]).all()
        assert columns.getNumHits() == sum(hit.hasHit() for hit in hits) == (numpy.asarray(columns.getGeometryIndices()) == 0).sum()
        top = points[15].copy()
        del columns
        gc.collect()
        assert (points[15] == top).all()  # the table lives as long as what looks at it

    def test_sensors_are_seen_on_request(self, simulation):
        body = body_of(zorCollide.Sphere(1), simulation, (5, 0, 0), static=True)
        body.getGeometries()[0].setSensor(True)
        space = simulation.getSpace()
        assert not space.castRay(zor.Vec3(), zor.Vec3(1, 0, 0)).hasHit()
        assert space.castRay(zor.Vec3(), zor.Vec3(1, 0, 0), 100.0, True).hasHit()

    def test_a_triangle_is_named(self, simulation):
        corners = [(0, 0, 0), (2, 0, 0), (2, 2, 0), (0, 2, 0)]
        mesh = zorCollide.Trimesh(zor.Vec3Vector(corners), zor.UInt32Vector([0, 1, 2, 0, 2, 3]))
        body_of(mesh, simulation, static=True)
        down = zor.Vec3(0, 0, -1)
        found = [simulation.getSpace().castRay(zor.Vec3(x, y, 1), down).getTriangleIndex() for x, y in ((1.5, 0.5), (0.5, 1.5))]
        assert found == [0, 1]


# -------------------------------------------------------------------------------------------- listeners


class Steps(zorSDK.StepEventListener):
    def __init__(self, mask=zorSDK.StepEventListener.STEP_ALL):
        super().__init__(mask)
        self.calls = []

    def preCollide(self, time):
        self.calls.append(("preCollide", time))

    def pre(self, time):
        self.calls.append(("pre", time))

    def post(self, time):
        self.calls.append(("post", time))

    def last(self, time):
        self.calls.append(("last", time))


class Touches(zorSDK.ContactEventListener):
    def __init__(self, policy=zorSDK.ContactEventListener.KEEP_CONTACT):
        super().__init__()
        self.policy = policy
        self.events = []

    def impact(self, time, contact):
        self.events.append("impact")
        self.pair = (contact.getGeometry1().getName(), contact.getGeometry2().getName())
        return self.policy

    def contact(self, time, contact):
        self.events.append("contact")
        return self.policy

    def separation(self, time, geometry1, geometry2):
        self.events.append("separation")


class TestListeners:
    def test_the_order_within_a_step(self, simulation):
        listener = Steps()
        simulation.add(listener)
        simulation.stepForward()
        assert [name for name, _ in listener.calls] == ["preCollide", "pre", "post", "last"]
        times = [time for _, time in listener.calls]
        assert times[0] == 0 and times[-1] == pytest.approx(simulation.getTimeStep())

    def test_a_mask_chooses_the_calls(self, simulation):
        listener = Steps(zorSDK.StepEventListener.PRE_STEP | zorSDK.StepEventListener.LAST_STEP)
        simulation.add(listener)
        simulation.stepForward()
        assert [name for name, _ in listener.calls] == ["pre", "last"]
        listener.setMask(zorSDK.StepEventListener.POST_STEP)
        simulation.stepForward()
        assert [name for name, _ in listener.calls] == ["pre", "last", "post"]

    def test_a_controller_in_a_script(self, simulation):
        """A force in `pre` holds a body against its weight."""
        body = body_of(zorCollide.Sphere(0.1), simulation, (0, 0, 1))
        weight = body.getMassProperties().getMass() * GRAVITY

        class Hover(zorSDK.StepEventListener):
            def pre(self, time):
                body.addForce(zor.Vec3(0, 0, weight))

        hover = Hover()
        simulation.add(hover)
        run(simulation, 1)
        assert body.getPosition().z() == pytest.approx(1, abs=1e-6)

    def test_impact_contact_and_separation(self, simulation):
        floor = ground(simulation)
        floor.setName("floor")
        ball = body_of(zorCollide.Sphere(0.2), simulation, (0, 0, 0.25))
        ball.getGeometries()[0].setName("ball")
        touches = Touches()
        simulation.add(touches)
        run(simulation, 0.5)
        assert touches.events[0] == "impact" and touches.events.count("impact") == 1
        assert "contact" in touches.events and sorted(touches.pair) == ["ball", "floor"]
        ball.setPosition(zor.Vec3(0, 0, 5))
        run(simulation, 0.1)
        assert touches.events[-1] == "separation"

    def test_a_listener_can_take_the_contact_away(self, simulation):
        ground(simulation)
        ghost, solid = (body_of(zorCollide.Sphere(0.2), simulation, (x, 0, 0.3)) for x in (0, 2))
        touches = Touches(zorSDK.ContactEventListener.REMOVE_CONTACT)
        touches.addFilter(ghost)
        simulation.add(touches)
        run(simulation, 0.6)
        assert ghost.getPosition().z() < -0.2
        assert solid.getPosition().z() == pytest.approx(0.2, abs=0.01)

    def test_a_body_removes_itself_and_others_in_a_callback(self, simulation):
        ground(simulation)
        bodies = [body_of(zorCollide.Sphere(0.2), simulation, (i, 0, 0.2 + 0.2 * i)) for i in range(4)]

        class Reaper(zorSDK.ContactEventListener):
            def impact(self, time, contact):
                for index in (0, 1):
                    body = contact.getRigidBody(index)
                    if body is not None:
                        simulation.remove(body)
                return zorSDK.ContactEventListener.KEEP_CONTACT

        reaper = Reaper()
        simulation.add(reaper)
        run(simulation, 1)
        assert len(simulation.getRigidBodies()) == 0
        assert zorPython.getErrors() == []
        assert all(body.getSimulation() is None for body in bodies)

    def test_a_listener_removes_itself_and_adds_bodies(self, simulation):
        class Once(zorSDK.StepEventListener):
            count = 0

            def post(self, time):
                self.count += 1
                body_of(zorCollide.Sphere(0.1), simulation, (0, 0, 9), "added")
                assert simulation.remove(self)

        once = Once()
        simulation.add(once)
        run(simulation, 0.2)
        assert once.count == 1 and once.getSimulation() is None
        assert simulation.getRigidBody("added").getPosition().z() < 9
        assert len(simulation.getListeners()) == 0

    def test_an_exception_is_noted_once_with_its_place(self, simulation):
        class Broken(zorSDK.StepEventListener):
            def pre(self, time):
                raise LookupError("nothing there")

        broken = Broken()
        simulation.add(broken)
        run(simulation, 0.1)
        error, = zorPython.getErrors()
        assert (error.type, error.message, error.count) == ("LookupError", "nothing there", 6)
        assert "test_physics.py" in error.traceback
        assert simulation.getTimeStamp() == pytest.approx(0.1)


# -------------------------------------------------------------------------------------------- ownership


class TestOwnership:
    def test_a_simulation_goes_on_without_its_proxies(self, simulation):
        def build():
            body = body_of(zorCollide.Box(0.2, 0.2, 0.2), simulation, (0, 0, 1), "box", material=zor.Material("m", 500.0))
            joint = zor.Hinge(zor.Vec3(-1, 0, 1), zor.Vec3(0, 1, 0), body)
            joint.setName("joint")
            simulation.add(joint)
            ground(simulation)

        build()
        gc.collect()
        run(simulation, 1)
        box = simulation.getRigidBody("box")
        assert (box.getPosition() - zor.Vec3(-1, 0, 1)).length() == pytest.approx(1, abs=0.02)
        geometry = box.getGeometries()[0]
        assert type(geometry.getShape(0)) is zorCollide.Box
        assert geometry.getMaterial().getName() == "m"

    def test_a_listener_runs_as_long_as_its_python_part_lives(self, simulation):
        class Counter(zorSDK.StepEventListener):
            def post(self, time):
                counts.append(time)

        counts = []
        dropped, given_away = Counter(), Counter()
        gone = weakref.ref(dropped)
        simulation.add(dropped)
        simulation.add(given_away.__disown__())
        del dropped, given_away
        gc.collect()
        assert gone() is None
        run(simulation, 0.1)
        assert len(counts) == 6

    def test_vectors_keep_what_they_are_a_part_of(self, simulation):
        corners, triangles = [(0, 0, 0), (1, 0, 0), (0, 1, 0), (0, 0, 1)], [0, 2, 1, 0, 1, 3, 0, 3, 2, 1, 2, 3]
        lent = [zorCollide.Trimesh(corners, triangles).getIndices(), zorCollide.Trimesh(corners, triangles).getVertices(),
                zorCollide.HeightField(3, 3, 1.0, 1.0, zor.RealVector(range(9))).getHeights(),
                zor.Plane(zor.Vec3(1, 0, 0), zor.Vec3()).getNormal()]
        gc.collect()
        others = [zorCollide.Trimesh(corners[::-1], triangles[::-1]) for _ in range(20)]  # take freed memory
        assert list(lent[0]) == triangles
        assert [tuple(corner) for corner in lent[1]] == corners
        assert list(lent[2]) == list(range(9))
        assert lent[3] == zor.Vec3(1, 0, 0) and len(others) == 20

    def test_numbers_of_a_mesh_are_shown_as_a_copy(self):
        corners, triangles = [(0, 0, 0), (1, 0, 0), (0, 1, 0), (0, 0, 1)], [0, 2, 1, 0, 1, 3, 0, 3, 2, 1, 2, 3]
        mesh = zorCollide.Trimesh(corners, triangles)
        mesh.getIndices()[0] = 4_000_000_000
        mesh.getVertices().clear()
        assert list(mesh.getIndices()) == triangles and len(mesh.getVertices()) == 4
        assert mesh.isClosed() and mesh.getVertices().thisown

    def test_parts_outlive_their_whole(self, simulation):
        body = body_of(zorCollide.Sphere(0.5), simulation)
        geometry = body.getGeometries()[0]
        shape = geometry.getShape(0)
        contacts_before = simulation.getSpace().castRay(zor.Vec3(0, 0, 5), zor.Vec3(0, 0, -1))
        simulation.remove(body)
        del simulation, body
        gc.collect()
        assert geometry.getRigidBody() is None or geometry.getRigidBody().getGeometries()[0].this == geometry.this
        assert shape.getRadius() == 0.5
        assert contacts_before.getGeometry().this == geometry.this

    def test_a_thousand_bodies_come_and_go(self, simulation):
        ground(simulation)
        for round_ in range(5):
            for i in range(200):
                body_of(zorCollide.Sphere(0.1), simulation, (i % 20, i // 20, 0.5))
            run(simulation, 0.05)
            bodies = list(simulation.getRigidBodies())
            references = bodies[0].getReferenceCount()
            for body in bodies:
                assert simulation.remove(body)
            assert bodies[0].getReferenceCount() < references
        assert len(simulation.getRigidBodies()) == 0
        assert simulation.getStatistics().steps == 15

    def test_adding_twice_and_to_two_is_refused(self, simulation):
        body = body_of(zorCollide.Sphere(0.5), simulation, name="b")
        assert simulation.add(body) is False
        other = zorSDK.Simulation()
        with_other = None
        try:
            with_other = other.add(body)
        except RuntimeError as error:
            assert "b" in str(error)
        assert with_other in (None, False)
        assert body.getSimulation().this == simulation.this
        assert simulation.remove(body) is True and simulation.remove(body) is False

    def test_null_is_refused(self, simulation):
        with pytest.raises((RuntimeError, TypeError)):
            simulation.add(None)
        with pytest.raises(RuntimeError):
            zor.RigidBody().add(None)
        with pytest.raises(RuntimeError):
            zorCollide.Geometry().add(None)


# ------------------------------------------------------------------------------------------ height field


def hills(resolution, size):
    """Heights as rows of y, columns of x."""
    ticks = numpy.linspace(-size / 2, size / 2, resolution)
    x, y = numpy.meshgrid(ticks, ticks)
    return ticks, 0.3 * numpy.sin(x) + 0.1 * y


class TestHeightField:
    def test_heights_come_from_numpy_and_lie_where_rays_meet_them(self, simulation):
        resolution, size = 21, 8.0
        ticks, heights = hills(resolution, size)
        field = zorCollide.HeightField(resolution, resolution, size, size, zor.RealVector(heights.ravel()))
        assert field.getHeight(3, 5) == heights[5, 3]
        body_of(field, simulation, static=True)
        for i, j in ((3, 5), (10, 10), (17, 2), (1, 19)):
            hit = simulation.getSpace().castRay(zor.Vec3(ticks[i], ticks[j], 5), zor.Vec3(0, 0, -1))
            assert hit.getPoint().z() == pytest.approx(heights[j, i], abs=0.01)

    def test_a_ball_rests_in_the_bowl(self, simulation):
        ticks = numpy.linspace(-2, 2, 41)
        x, y = numpy.meshgrid(ticks, ticks)
        field = zorCollide.HeightField(41, 41, 4.0, 4.0, zor.RealVector((0.3 * (x**2 + y**2)).ravel()))
        body_of(field, simulation, static=True)
        ball = body_of(zorCollide.Sphere(0.2), simulation, (0.8, 0.5, 0.8))
        ball.setLinearVelocityDamping(1.0)
        ball.setAngularVelocityDamping(1.0)
        run(simulation, 8)
        assert array(ball.getPosition()) == pytest.approx([0, 0, 0.2], abs=0.08)

    def test_changed_heights_count_at_once(self, simulation):
        field = zorCollide.HeightField(5, 5, 4.0, 4.0)
        body_of(field, simulation, static=True)
        down = (zor.Vec3(0, 0, 5), zor.Vec3(0, 0, -1))
        assert simulation.getSpace().castRay(*down).getPoint().z() == pytest.approx(0, abs=1e-6)
        field.setHeight(2, 2, 1.5)
        assert simulation.getSpace().castRay(*down).getPoint().z() == pytest.approx(1.5, abs=1e-3)
        field.setHeights(zor.RealVector(numpy.full(25, 0.5)))
        assert simulation.getSpace().castRay(*down).getPoint().z() == pytest.approx(0.5, abs=1e-3)

    @pytest.mark.parametrize("arguments", [(1, 5, 1.0, 1.0), (5, 5, 0.0, 1.0), (5, 5, 1.0, math.nan)])
    def test_wrong_sizes_are_refused(self, arguments):
        with pytest.raises(RuntimeError):
            zorCollide.HeightField(*arguments)

    def test_wrong_heights_are_refused_and_change_nothing(self):
        field = zorCollide.HeightField(3, 3, 1.0, 1.0, zor.RealVector(numpy.arange(9.0)))
        for wrong in (numpy.zeros(8), numpy.full(9, numpy.nan)):
            with pytest.raises(RuntimeError):
                field.setHeights(zor.RealVector(wrong))
        for i, j in ((3, 0), (0, 3)):
            with pytest.raises((RuntimeError, IndexError)):
                field.getHeight(i, j)
        assert [field.getHeight(i, 1) for i in range(3)] == [3, 4, 5]


class TestTime:
    def test_step_to_a_time(self, simulation):
        assert simulation.stepTo(0.5) == 30
        assert simulation.getTimeStamp() == pytest.approx(0.5)
        assert simulation.stepTo(0.2) == 0
        simulation.setTimeStep(0.01)
        simulation.stepForward()
        assert simulation.getTimeStamp() == pytest.approx(0.51)
        for wrong in (0, -1, math.nan, math.inf):
            with pytest.raises(RuntimeError):
                simulation.setTimeStep(wrong)
        assert simulation.getTimeStep() == 0.01

    def test_runs_are_repeatable(self):
        def result():
            simulation = zorSDK.Simulation()
            ground(simulation)
            bodies = [body_of(zorCollide.Box(0.2, 0.2, 0.2), simulation, (0.05 * i, 0, 0.3 + 0.5 * i)) for i in range(8)]
            run(simulation, 2)
            return numpy.array([array(body.getPosition()) for body in bodies])

        assert (result() == result()).all()
