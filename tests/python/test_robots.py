"""Robots from URDF files, and meshes from files, in Python."""

import math
import pathlib

import numpy
import pytest

import osg
import zor
import zorModel
import zorOSG
import zorSDK

ARM = pathlib.Path(__file__).parents[2] / "data" / "robot_arm" / "robot_arm.urdf"
JOINTS = ["turn", "lean", "bend", "roll", "nod", "spin"]
AXES = {"turn": 2, "lean": 1, "bend": 1, "roll": 0, "nod": 1, "spin": 0}
# The origins in the file, which turn nothing.
ORIGINS = [(0, 0, 0.30), (0.15, 0, 0.20), (0, 0, 0.70), (0.20, 0, 0.10), (0.50, 0, 0), (0.085, 0, 0), (0.185, 0, 0)]


def tip(angles):
    """Forward kinematics of the arm, for column vectors."""
    place, turn = numpy.zeros(3), numpy.eye(3)
    for name, origin, angle in zip([*JOINTS, None], ORIGINS, [*angles, 0]):
        place = place + turn @ origin
        if name:
            a, b = [i for i in range(3) if i != AXES[name]]
            if AXES[name] == 1:
                a, b = b, a
            step = numpy.eye(3)
            step[a, a] = step[b, b] = math.cos(angle)
            step[b, a], step[a, b] = math.sin(angle), -math.sin(angle)
            turn = turn @ step
    return place


class TestArm:
    @pytest.fixture
    def reader(self):
        reader = zorModel.UrdfReader()
        reader.setFixedBase(True)
        reader.setMergeFixedLinks(True)
        return reader

    def test_the_tip_is_where_the_angles_put_it(self, reader):
        angles = [0.4, -0.5, 0.9, 1.1, -0.7, 2.0]
        for name, angle in zip(JOINTS, angles):
            reader.setJointPosition(name, angle)
        robot = reader.read(str(ARM))
        assert robot.getName() == "robot_arm"
        for name, angle in zip(JOINTS, angles):
            assert isinstance(robot.getConstraint(name), zor.Hinge)
            assert robot.getConstraint(name).getAngle() == pytest.approx(angle, abs=1e-9)
        found = robot.getObserverFrame("tip").getFrame().getTranslate()
        assert tuple(found) == pytest.approx(tuple(tip(angles)), abs=1e-9)
        joint = reader.getJoint("bend")
        assert (joint.type, joint.parent, joint.effort) == (zorModel.UrdfJoint.REVOLUTE, "upper_arm", 700)
        assert [each.name for each in reader.getJoints() if each.hasPosition()] == JOINTS

    def test_locks_hold_it_against_gravity(self, reader):
        reader.setJointPosition("lean", 0.9)
        reader.setJointPosition("bend", -0.4)
        robot, simulation = reader.read(str(ARM)), zorSDK.Simulation()
        simulation.add(robot)
        for name in JOINTS:
            robot.getConstraint(name).getLock1D().setEnable(True)
        for _ in range(120):
            simulation.stepForward()
        # Everything beyond the joint "lean" turns about it.
        pivot = robot.getConstraint("lean").getAttachmentTransform(1).getTranslate()
        torque = 0.0
        for name in ("upper_arm", "elbow", "forearm", "wrist", "flange"):
            body = robot.getRigidBody(name)
            torque += body.getMassProperties().getMass() * -simulation.getUniformGravity().z() * (body.getCmPosition().x() - pivot.x())
        assert torque > 200
        assert robot.getConstraint("lean").getLock1D().getCurrentForce() == pytest.approx(-torque, rel=0.01)

    def test_it_is_drawn_as_the_file_says(self, reader):
        root, robot = osg.Group(), reader.read(str(ARM))
        corners = numpy.asarray(zorOSG.createTrimesh(zorOSG.createVisual(robot, root)).getVertices())
        assert corners[:, 0].max() == pytest.approx(tip([0] * 6)[0], abs=1e-5)
        assert corners[:, 2].min() == pytest.approx(0, abs=1e-5)
        assert corners[:, 1].min() == pytest.approx(-0.27, abs=0.01)
        skins = [geometry for geometry in robot.getRigidBody("shoulder").getGeometries() if not geometry.getEnableCollisions()]
        colors = [tuple(skin.getShape(0).getRenderData().getRenderMaterial().getDiffuseColor()) for skin in skins]
        assert colors[0] == pytest.approx((0.96, 0.42, 0.07, 1)) and colors[1] == pytest.approx((0.13, 0.14, 0.16, 1))

    def test_errors_tell_what_and_where(self, reader, tmp_path):
        wrong = ARM.read_text().replace("meshes/elbow.obj", "meshes/missing.obj")
        (tmp_path / "wrong.urdf").write_text(wrong)
        with pytest.raises(RuntimeError, match=r"wrong\.urdf.*link \"base\".*base\.obj"):
            reader.read(str(tmp_path / "wrong.urdf"))
        with pytest.raises(RuntimeError, match=r"link \"elbow\".*missing\.obj"):
            reader.readText(wrong, str(ARM.parent))
        reader.setJointPosition("bend", 99)
        with pytest.raises(RuntimeError, match="bend.*outside"):
            reader.read(str(ARM))
        for value in (math.nan, math.inf):
            with pytest.raises(RuntimeError, match="finite"):
                reader.setJointPosition("bend", value)


PLY = """ply
format ascii 1.0
element vertex 4
property float x
property float y
property float z
element face 4
property list uchar int vertex_indices
end_header
0 0 0
1 0 0
0 1 0
0 0 1
3 0 2 1
3 0 1 3
3 0 3 2
3 1 2 3
"""


def test_meshes_of_files(tmp_path, run_python):
    file = tmp_path / "corner.ply"
    file.write_text(PLY)
    mesh = zorModel.readTrimesh(str(file), zor.Vec3(1, 2, 3))
    assert mesh.getNumTriangles() == 4 and mesh.isClosed()
    assert mesh.getVolume() == pytest.approx(1)
    data = zorModel.readMesh(str(file))
    assert len(data.getVertices()) == 4 and len(data.getIndices()) == 12
    with pytest.raises(RuntimeError, match="missing.obj"):
        zorModel.readMesh("missing.obj")
    # Without the drawing layer only the formats that the library reads itself.
    out = run_python("import sys, zorModel\ntry:\n    zorModel.readMesh(sys.argv[1])\nexcept RuntimeError as error:\n    print(error)", str(file)).stdout
    assert "import zorOSG" in out and "corner.ply" in out
