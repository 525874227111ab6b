"""Stored simulations: in files, as bytes, pickled, and read with their visuals."""

import copy
import json
import pathlib
import pickle
import subprocess
import sys

import pytest

import _zorOSG
import osg
import zor
import zorCollide
import zorOSG
import zorSDK

EXAMPLES = pathlib.Path(__file__).parents[2] / "examples"


def make_simulation():
    simulation = zorSDK.Simulation()
    simulation.add(zorCollide.Geometry(zorCollide.Plane(zor.Vec3(0, 0, 1), zor.Vec3())))
    for i in range(3):
        body = zor.RigidBody(zorCollide.Geometry(zorCollide.Box(zor.Vec3(0.5, 0.5, 0.5))), f"box {i}")
        body.setPosition(zor.Vec3(0.1 * i, 0, 0.6 + 1.1 * i))
        simulation.add(body)
    simulation.stepTo(0.5)
    return simulation


def state(simulation):
    return [(repr(body.getTransform()), repr(body.getVelocity())) for body in simulation.getRigidBodies()]


@pytest.mark.parametrize("ending", ["zor", "azor"])
def test_a_file_goes_on_as_the_original(tmp_path, ending):
    original, restored = make_simulation(), zorSDK.Simulation()
    path = str(tmp_path / f"scene.{ending}")
    original.write(path)
    restored.read(path)
    assert state(restored) == state(original)
    original.stepTo(2)
    restored.stepTo(2)
    assert state(restored) == state(original)


def test_bytes_pickles_and_copies():
    original = make_simulation()
    data = original.toBytes()
    assert type(data) is bytes
    for other in (pickle.loads(pickle.dumps(original)), copy.deepcopy(original)):
        assert type(other) is zorSDK.Simulation and other.toBytes() == data
    restored = zorSDK.Simulation()
    restored.fromBytes(memoryview(original.toBytes(True)))
    assert restored.toBytes() == data
    for wrong in ("text", None, 5):
        with pytest.raises(TypeError):
            restored.fromBytes(wrong)
    with pytest.raises(RuntimeError, match="no simulation file"):
        restored.fromBytes(b"something else")


def make_rain():
    """Grains that an emitter lets fall on a slab."""
    simulation = zorSDK.Simulation()
    simulation.add(zorCollide.Geometry(zorCollide.Box(zor.Vec3(0.5, 0.5, 0.1))))
    grains = zor.ParticleSystem("grains")
    simulation.add(grains)
    cloud = zorCollide.Geometry(zorCollide.Box(zor.Vec3(0.3, 0.3, 0.1)))
    cloud.setSensor(True)
    cloud.setPosition(zor.Vec3(0, 0, 1))
    sizes = zor.ParticleDistribution(zor.ParticleModel(zor.RandomReal.uniform(0.02, 0.04)))
    simulation.add(zor.Emitter(grains, sizes, cloud, 120.0))
    simulation.stepTo(1.5)
    return simulation


def test_particles_and_emitters_go_on(tmp_path):
    original = make_rain()
    root, drawn = osg.Group(), zorSDK.Simulation()
    original.write(str(tmp_path / "rain.azor"))
    assert zorOSG.readFile(str(tmp_path / "rain.azor"), drawn, root, None, 0.35, False, 15)
    assert zorOSG.findParticleSystemDrawable(root).getParticleSystem().getName() == "grains"
    copies = [drawn, pickle.loads(pickle.dumps(original))]
    original.stepTo(3)
    for other in copies:
        other.stepTo(3)
        grains = other.getParticleSystem("grains")
        assert 300 < grains.getNumParticles() == other.getEmitters()[0].getNumEmitted()
        assert bytes(grains.getPositions()) == bytes(original.getParticleSystem().getPositions())
        assert other.getStateHash() == original.getStateHash()
        assert len(other.getState()) == 1 + 1 + 14 * grains.getNumParticles()
    grains.setVelocity(0, zor.Vec3(0, 0, 1))
    assert other.getStateHash() != original.getStateHash(), "particles are part of the state"


def test_json_is_for_editing(tmp_path):
    path = tmp_path / "scene.azor"
    make_simulation().write(str(path))
    document = json.loads(path.read_text())
    document["settings"]["gravity"] = [0, 0, 1]
    document["materials"][0]["friction"] = 0.125
    path.write_text(json.dumps(document, sort_keys=True))  # the order of members does not matter
    simulation = zorSDK.Simulation()
    simulation.read(str(path))
    assert simulation.getUniformGravity() == zor.Vec3(0, 0, 1)
    assert simulation.getGeometries()[0].getMaterial().getFriction() == 0.125
    document["bodies"][1]["frame"]["transform"][0] = "east"
    path.write_text(json.dumps(document))
    with pytest.raises(RuntimeError, match=r"scene\.azor.*bodies\[1\]\.frame\.transform\[0\].*must be a number"):
        zorSDK.Simulation().read(str(path))


def test_read_file_finds_files_and_makes_visuals(tmp_path, monkeypatch):
    make_simulation().write(str(tmp_path / "scene.zor"))
    simulation, root = zorSDK.Simulation(), osg.Group()
    result = zorOSG.readFile(str(tmp_path / "scene.zor"), simulation, root)
    assert result is True
    assert len(simulation.getRigidBodies()) == 3
    assert simulation.getTimeStamp() == 0, "the default selection leaves the time"
    assert root.getNumChildren() == 1
    assert zorOSG.findGeometryNode(simulation.getGeometries()[1], root) is not None
    # Once more beside it, into an assembly: only what is new gets a visual.
    parent = zorSDK.Assembly("second")
    more = osg.Group()
    assert zorOSG.readFile(str(tmp_path / "scene.zor"), simulation, more, parent, 1.0, True, 15, None)
    assert len(parent.getRigidBodies()) == 3 and len(simulation.getRigidBodies()) == 6
    assert zorOSG.findGeometryNode(simulation.getGeometries()[1], more) is None
    assert zorOSG.findGeometryNode(parent.getRigidBodies()[0].getGeometries()[0], more) is not None
    assert simulation.getTimeStamp() == pytest.approx(0.5)
    script = ("import osg, zorOSG, zorSDK\n"
              "simulation = zorSDK.Simulation()\n"
              "assert zorOSG.readFile('scene.zor', simulation, osg.Group())\n"
              "assert len(simulation.getRigidBodies()) == 3\n")
    monkeypatch.setenv("ZOR_FILE_PATH", str(tmp_path))
    subprocess.run([sys.executable, "-c", script], check=True, cwd="/")


def test_read_file_says_what_is_wrong(tmp_path, capfd):
    simulation, root = make_simulation(), osg.Group()
    before = simulation.toBytes()
    bad = tmp_path / "bad.zor"
    bad.write_bytes(before[:-1])
    assert zorOSG.readFile(str(bad), simulation, root) is False
    assert zorOSG.readFile(str(tmp_path / "missing.zor"), simulation, root) is False
    messages = capfd.readouterr().err
    assert "bad.zor" in messages and "truncated" in messages and "missing.zor" in messages
    assert simulation.toBytes() == before and root.getNumChildren() == 0
    with pytest.raises(TypeError, match="Wrong number or type of arguments for overloaded function 'readFile'"):
        _zorOSG.readFile(str(bad), simulation)
    with pytest.raises(RuntimeError, match="simulation is null"):
        zorOSG.readFile(str(bad), None, root)


def test_the_example_shows_equality(tmp_path):
    result = subprocess.run([sys.executable, EXAMPLES / "save_and_continue.py", tmp_path], capture_output=True, text=True, timeout=120)
    assert result.returncode == 0, result.stderr
    assert result.stdout.count("equal in every bit") == 2
