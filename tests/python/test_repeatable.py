"""The same script gives the same bits of state in every process, whatever is drawn and however fast."""

import pathlib
import random
import struct
import subprocess
import sys
import time

import numpy
import pytest

import zor
import zorCollide
import zorIO
import zorOSG
import zorSDK

SCRIPT = pathlib.Path(__file__).parent / "data" / "repeatable.py"


def run(path, *how):
    """State of all bodies and the log of contacts, as the script wrote them. The addresses of objects differ in each
    process, and some memory is taken in between."""
    environment = {"PYTHONPATH": ":".join(sys.path), "PYTHONHASHSEED": str(random.randrange(1000)),
                   "MALLOC_PERTURB_": str(random.randrange(1, 255)), "PATH": "/usr/bin:/bin", "HOME": str(path.parent)}
    result = subprocess.run([sys.executable, SCRIPT, path, *map(str, how)], capture_output=True, text=True, timeout=600, env=environment)
    assert result.returncode == 0, result.stderr
    return path.read_bytes()


@pytest.fixture(scope="module")
def expected(tmp_path_factory):
    return run(tmp_path_factory.mktemp("plain") / "state", "plain")


def test_the_scene_has_come_to_life(expected):
    numbers = struct.unpack("<d", expected[:8])
    assert numbers[0] == pytest.approx(1000 / 60)
    log = expected.decode("ascii", "ignore")
    assert log.count(" +") > 500 and log.count(" -") > 100
    body_count = 120 + 8 + 1 + 6 + 1
    state = struct.unpack(f"<{1 + 14 * body_count}d", expected[:8 * (1 + 14 * body_count)])
    asleep = state[14::14]
    assert 5 < sum(asleep) < body_count


def test_another_process(expected, tmp_path):
    assert run(tmp_path / "state", "plain") == expected


def test_an_application_without_pictures(expected, tmp_path):
    assert run(tmp_path / "state", "application", "--window", "64x48") == expected


def test_with_visuals_rays_and_a_screen_shot(expected, tmp_path):
    assert run(tmp_path / "state", "visuals", "--window", "64x48", "--screenShot", tmp_path / "shot.png") == expected


# ------------------------------------------------------------------------------- one process, many ways to show it

STEPS, STEP = 1000, 1 / 400


def build_mixture(simulation):
    """A motor stirs grains and bodies in a box, a chain swings into them."""
    simulation.setTimeStep(STEP)
    chance = random.Random(9)

    def body(name, shape, place):
        made = zor.RigidBody(zorCollide.Geometry(shape), name)
        made.setPosition(zor.Vec3(*place))
        simulation.add(made)
        return made

    for half, place in (((1.2, 1.2, 0.1), (0, 0, -0.1)), ((0.1, 1.2, 0.4), (1.1, 0, 0.4)), ((0.1, 1.2, 0.4), (-1.1, 0, 0.4)),
                        ((1.2, 0.1, 0.4), (0, 1.1, 0.4)), ((1.2, 0.1, 0.4), (0, -1.1, 0.4))):
        side = zorCollide.Geometry(zorCollide.Box(zor.Vec3(*half)))
        side.setPosition(zor.Vec3(*place))
        simulation.add(side)
    for i in range(24):
        shape = (zorCollide.Sphere(0.12), zorCollide.Box(zor.Vec3(0.12, 0.1, 0.08)), zorCollide.Capsule(0.08, 0.15))[i % 3]
        body(f"body {i}", shape, (chance.uniform(-0.8, 0.8), chance.uniform(-0.8, 0.8), 0.6 + 0.06 * i))
    mixer = body("mixer", zorCollide.Box(zor.Vec3(0.6, 0.04, 0.1)), (0, 0, 0.35))
    hinge = zor.Hinge(zor.Vec3(0, 0, 0.35), zor.Vec3(0, 0, 1), mixer)
    hinge.getMotor1D().setSpeed(3)
    hinge.getMotor1D().setForceRange(zor.RangeReal(5000))
    hinge.getMotor1D().setEnable(True)
    hinge.setName("stirrer")
    simulation.add(hinge)
    last = None
    for i in range(5):
        link = body(f"link {i}", zorCollide.Capsule(0.05, 0.2), (0.15 + 0.3 * i, 0, 1.7))
        link.setRotation(zor.Quat(zor.Vec3(0, 1, 0), zor.Vec3(1, 0, 0)))
        simulation.add(zor.BallJoint(zor.Vec3(0.3 * i, 0, 1.7), link, last))
        last = link
    grains = zor.ParticleSystem("grains")
    line = numpy.arange(-0.7, 0.7, 0.13)
    grains.addParticles(numpy.stack(numpy.meshgrid(line, line, [0.5, 0.65]), axis=-1).reshape(-1, 3), 0.05)
    simulation.add(grains)


class LastState(zorSDK.StepEventListener):
    """Keeps every bit of what moves, as it is after the last step, and counts touches."""

    def __init__(self, simulation):
        super().__init__(zorSDK.StepEventListener.POST_STEP)
        self.simulation, self.steps, self.touches, self.bits = simulation, 0, 0, b""
        simulation.add(self)

    def post(self, time):
        self.steps += 1
        grains = self.simulation.getParticleSystem("grains")
        self.touches += grains.getNumContacts() > 0 and self.simulation.getStatistics().contacts > 0
        if self.steps == STEPS:
            arrays = [self.simulation.getState(), grains.getPositions(), grains.getVelocities(), grains.getRotations()]
            self.bits = b"".join(numpy.asarray(array).tobytes() for array in arrays)


def play(application, is_drawn):
    simulation = application.getSimulation()
    build_mixture(simulation)
    recorder = LastState(simulation)
    if is_drawn:
        zorOSG.createVisual(simulation, application.getSceneRoot())
        application.setCameraHome(zor.Vec3(2, -3, 2.5), zor.Vec3(0, 0, 0.4))
    application.stopAfter((STEPS + 1) * STEP)
    assert application.run() == 0
    return recorder.bits


@pytest.fixture(scope="module")
def mixture():
    simulation = zorSDK.Simulation()
    build_mixture(simulation)
    recorder = LastState(simulation)
    for _ in range(STEPS):
        simulation.stepForward()
    assert recorder.touches > 800
    assert simulation.getConstraint1DOF("stirrer").getAngle() > 5
    assert simulation.getRigidBody("link 4").getPosition().z() < 1
    return recorder.bits


@pytest.mark.parametrize("is_drawn, options", [
    (False, ["--fps", "0"]), (False, ["--realTime", "--fps", "200"]), (False, ["--zorOnly"]), (True, ["--fps", "100"]), (True, ["--fps", "15"]),
    (True, ["--realTime", "--fps", "60"]), (True, ["--captureImages", "images", "--captureFps", "20"]),
    (True, ["--captureVideo", "video.mp4", "--captureFps", "30"]),
], ids=lambda value: " ".join(value) if isinstance(value, list) else "drawn" if value else "not drawn")
def test_however_it_is_shown(mixture, is_drawn, options, tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    application = zorOSG.ExampleApplication()
    arguments = zorIO.ArgumentParser(["repeatable", "--window", "96x64", *options])
    assert application.init(arguments)
    application.initSimulation()
    assert application.getRealTimeSync() == ("--realTime" in options)
    started = time.monotonic()
    assert play(application, is_drawn) == mixture
    if "--realTime" in options:
        assert time.monotonic() - started > 0.9 * STEPS * STEP
    if "--captureImages" in options:
        assert len(list((tmp_path / "images").iterdir())) >= 49
    if "--captureVideo" in options:
        assert (tmp_path / "video.mp4").stat().st_size > 5000
