"""Particle systems and emitters from Python: shared memory, contacts, visuals."""

import gc

import numpy
import pytest

import osg
import zor
import zorCollide
import zorOSG
import zorSDK


@pytest.fixture
def scene():
    simulation = zorSDK.Simulation()
    ground = zorCollide.Geometry(zorCollide.Plane(zor.Vec3(0, 0, 1), zor.Vec3()))
    simulation.add(ground)
    particles = zor.ParticleSystem("grains")
    assert simulation.add(particles) and not simulation.add(particles)
    return simulation, particles


def lattice(count, radius):
    line = numpy.arange(count) * 2.2 * radius + radius * 1.1
    return numpy.stack(numpy.meshgrid(line, line, line), axis=-1).reshape(-1, 3)


class TestMemory:
    def test_numpy_shares_it(self, scene):
        simulation, particles = scene
        positions = lattice(5, 0.1)
        assert particles.addParticles(positions, numpy.full(125, 0.1), [[0, 0, 1]]) == 0
        shown = numpy.asarray(particles.getPositions())
        assert shown.shape == (125, 3) and (shown == positions).all()
        shown[7] = 1, 2, 30
        assert particles.getPosition(7) == zor.Vec3(1, 2, 30)
        assert (numpy.asarray(particles.getVelocities()) == [0, 0, 1]).all()
        numpy.asarray(particles.getColors())[:] = 0.25, 0.5, 0.75, 1
        assert particles.getColor(124) == zor.Vec4f(0.25, 0.5, 0.75, 1)
        simulation.stepForward()
        assert shown[7, 2] == particles.getPosition(7).z() != 30
        for locked in (particles.getRadii(), particles.getMasses(), particles.getRotations(), particles.getParticleIds()):
            with pytest.raises(ValueError):
                numpy.asarray(locked)[0] = 1

    def test_an_old_array_stays_memory(self, scene):
        _, particles = scene
        particles.addParticles(lattice(4, 0.1), 0.1)
        old = numpy.asarray(particles.getPositions())
        before = old.copy()
        particles.addParticles(lattice(20, 0.1), 0.1)  # moves to larger memory
        assert (old == before).all() and numpy.asarray(particles.getPositions()).shape == (8064, 3)
        particles.clear()
        del particles
        gc.collect()
        assert old.sum() == pytest.approx(before.sum())

    def test_what_a_script_spoils_is_switched_off(self, scene):
        simulation, particles = scene
        particles.addParticles(lattice(3, 0.1), 0.1)
        numpy.asarray(particles.getVelocities())[4, 1] = numpy.nan
        numpy.asarray(particles.getPositions())[5, 1] = 1e300
        numpy.asarray(particles.getLifetimes())[0] = 0.1
        simulation.stepTo(0.5)
        assert len(particles) == 26 and numpy.asarray(particles.getEnabled()).sum() == 24
        assert numpy.isfinite(numpy.asarray(particles.getPositions())[numpy.asarray(particles.getEnabled()) == 1]).all()

    @pytest.mark.parametrize("call", [
        lambda p: p.addParticles([[0, 0]], 0.1), lambda p: p.addParticles([[0, 0, numpy.inf]], 0.1),
        lambda p: p.addParticle(zor.Vec3(), -1.0), lambda p: p.addParticles([[0, 0, 0]], [0.1, 0.1]),
        lambda p: p.removeParticles([5]), lambda p: p.setPosition(2**40, zor.Vec3()), lambda p: p.getPositions()[3]])
    def test_bad_input(self, scene, call):
        particles = scene[1]
        particles.addParticle(zor.Vec3(0, 0, 1), 0.1)
        with pytest.raises((RuntimeError, ValueError, TypeError, IndexError, OverflowError)):
            call(particles)
        assert len(particles) == 1


def test_contacts_carry_the_weight(scene):
    simulation, particles = scene
    particles.addParticles([[0, 0, 0.1], [3, 0, 0.1], [3, 0, 0.3]], 0.1)
    simulation.stepTo(2)
    contacts = particles.getContacts()
    forces, normals = numpy.asarray(contacts.getNormalForces()), numpy.asarray(contacts.getNormals())
    on_ground = [i for i in range(len(contacts)) if contacts.getGeometry(i) is not None]
    assert len(contacts) == 3 and len(on_ground) == 2
    assert (forces[on_ground] @ normals[on_ground])[2] == pytest.approx(particles.getTotalMass() * 9.81, rel=0.01)
    assert {zor.ParticleContacts.NO_PARTICLE, 2} == set(contacts.getParticles2())


def test_emitters(scene):
    simulation, particles = scene
    volume = zorCollide.Geometry(zorCollide.Box(zor.Vec3(0.5, 0.5, 0.2)))
    volume.setSensor(True)
    volume.setPosition(zor.Vec3(0, 0, 3))
    table = zor.ParticleDistribution()
    table.add(zor.ParticleModel(zor.RandomReal.logNormal(0.03, 0.01, 0.02, 0.06), None, zor.Vec4f(1, 0, 0, 1)), 2)
    table.add(zor.ParticleModel(zor.RandomReal(0.04), zor.Material("lead", 11000)), 1)
    emitter = zor.Emitter(particles, table, volume, 90)
    body = zor.RigidBody(zorCollide.Geometry(zorCollide.Sphere(0.1)))
    bodies = zor.RigidBodyEmitter(zor.RigidBodyDistribution(body), volume, 5)
    for each in (emitter, bodies):
        each.setVelocity(zor.Vec3(0, 0, -2))
        assert simulation.add(each)
    simulation.stepTo(2)
    assert emitter.getNumEmitted() == len(particles) == 180
    assert len(bodies.getBodies()) == len(simulation.getRigidBodies()) == 10
    assert simulation.getEmitters() == [emitter, bodies] or len(simulation.getEmitters()) == 2
    group = zorOSG.createVisual(bodies, osg.Group())
    assert isinstance(group, osg.Group) and zorOSG.createVisual(emitter, osg.Group()).getNumChildren() == 1
    simulation.remove(emitter)
    simulation.stepTo(3)
    assert emitter.getNumEmitted() == 180


class TestVisuals:
    def test_drawable(self, scene):
        simulation, particles = scene
        root = osg.Group()
        geode = zorOSG.createVisual(particles, root)
        assert isinstance(geode, osg.Geode)
        drawable = zorOSG.findParticleSystemDrawable(root)
        assert (drawable.libraryName(), drawable.className()) == ("zorOSG", "ParticleSystemDrawable")
        assert drawable.getParticleShaderMode() == zorOSG.ParticleSystemDrawable.ROTATION_SPRITES == 1
        assert drawable.getParticleSystem().getName() == "grains"
        drawable.setParticleShaderMode(zorOSG.ParticleSystemDrawable.ALPHA_SPRITES)
        assert drawable.getParticleShaderMode() == 2
        assert drawable.isSameKindAs(drawable.cloneType()) and not drawable.isSameKindAs(root)
        assert drawable.isSameKindAs(drawable.clone(osg.CopyOp()))
        drawable.setEnable(False)
        assert not drawable.getEnable()
        assert zorOSG.findParticleSystemDrawable(osg.Group()) is None
        assert zorOSG.createVisual(particles, None) is None

    def test_allowed_mode_is_shared(self):
        kind = zorOSG.ParticleSystemDrawable
        assert kind.getAllowedRenderMode() == kind.SPRITES
        kind.setAllowedRenderMode(kind.TRIANGLES)
        assert kind.getAllowedRenderMode() == kind.TRIANGLES
        kind.setAllowedRenderMode(kind.SPRITES)

    def test_new_drawables_die(self, scene):
        for arguments in ((), (0,), (2, 0)):
            assert zorOSG.ParticleSystemDrawable(scene[1], *arguments).getEnable()
        assert zorOSG.ParticleSystemDrawable(None).getParticleSystem() is None
