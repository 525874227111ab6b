"""What wires, cables, soil, pressure and lidars are described by, against closed forms."""

import math

import numpy
import pytest

import zor
import zorCable
import zorModel
import zorNet
import zorSensor
import zorTerrain
import zorUtil
import zorWire


def test_force_of_pressure_is_that_of_a_fluid():
    """Corners h below a surface have the pressure rho g h; the force is that of the mean depth."""
    triangle = zorModel.TriangleData((0, 0, 0), (3, 0, 0), (0, 0, 4), 9810 * 5, 9810 * 5, 9810 * 1)
    assert triangle.getArea() == 6 and triangle.getNormal() == (0, -1, 0)
    assert triangle.getForce().equals((0, 9810 * (5 + 5 + 1) / 3 * 6, 0), 1e-6)
    # Depth of the centre: y = integral of h^2 by that of h, here sums over the corners.
    depth = 5 - triangle.getCenterOfPressure().z()
    assert depth == pytest.approx(((5 + 5 + 1) ** 2 + 5**2 + 5**2 + 1) / (4 * (5 + 5 + 1)))
    assert zorModel.TriangleData((0, 0, 0), (3, 0, 0), (0, 3, 0)).getCenterOfPressure() == (1, 1, 0)
    for wrong in (lambda: triangle.setPressure(0, math.nan), lambda: triangle.setVertex(1, (0, math.inf, 0)), lambda: triangle.getVertex(3)):
        with pytest.raises(RuntimeError, match="TriangleData"):
            wrong()


def test_stiffness_of_a_wire():
    wire = zorWire.WireParameters(0.005, 2.1e11, 7850)
    assert wire.getMassPerLength() == pytest.approx(7850 * math.pi * 0.005**2)
    assert wire.getStretchStiffness() == pytest.approx(2.1e11 * math.pi * 0.005**2)
    assert wire.getBendStiffness() == pytest.approx(2.1e11 * math.pi * 0.005**4 / 4)
    with pytest.raises(RuntimeError, match="radius must be positive"):
        zorWire.WireParameters(0)


def test_properties_of_a_cable_are_kept_by_direction():
    cable = zorCable.CableProperties()
    cable.setYoungsModulus(zorCable.CableProperties.BEND, 1e8)
    cable.setYieldPoint(zorCable.CableProperties.TWIST, 2e7)
    assert [cable.getYoungsModulus(i) for i in range(3)] == [1e8, 1e10, 1e10]
    assert [cable.getYieldPoint(i) for i in range(3)] == [math.inf, math.inf, 2e7]
    assert cable != zorCable.CableProperties() and cable == zorCable.CableProperties(cable)
    for wrong in (lambda: cable.getYieldPoint(3), lambda: cable.setYoungsModulus(-1, 1.0), lambda: cable.setYoungsModulus(0, math.inf)):
        with pytest.raises(RuntimeError, match="CableProperties"):
            wrong()


def test_soil_fails_as_mohr_and_coulomb_say():
    soil = zorTerrain.TerrainMaterial("clay")
    soil.setFrictionAngle(math.radians(30))
    soil.setCohesion(1000)
    soil.setSwellFactor(1.25)
    assert soil.getShearStrength(3000) == pytest.approx(1000 + 3000 / math.sqrt(3))
    assert soil.getShearStrength(-1e6) == 0 and soil.getLooseDensity() == 1280
    for wrong in (lambda: soil.setFrictionAngle(math.pi / 2), lambda: soil.setDensity(0), lambda: soil.setSwellFactor(math.inf)):
        with pytest.raises(RuntimeError, match="TerrainMaterial"):
            wrong()


def test_rays_of_a_lidar():
    rays = numpy.asarray(zorSensor.RayPattern(math.pi, 3, math.pi / 2, 2).getDirections())
    half = math.sqrt(0.5)
    assert rays == pytest.approx(numpy.array([(0, -half, -half), (half, 0, -half), (0, half, -half),
                                              (0, -half, half), (half, 0, half), (0, half, half)]))
    turn = numpy.asarray(zorSensor.RayPattern(2 * math.pi, 4).getDirections())
    assert turn == pytest.approx(numpy.array([(-1, 0, 0), (0, -1, 0), (1, 0, 0), (0, 1, 0)]))
    for wrong in ((0, 4), (1, 1), (1, 4, math.pi), (1, 4, 0, 0), (7, 4), (1, 2**31, 0, 2**31)):
        with pytest.raises(RuntimeError, match="RayPattern"):
            zorSensor.RayPattern(*wrong)


@pytest.mark.parametrize("text, host, port", [("localhost:80", "localhost", 80), ("[::1]:0", "::1", 0), ("10.0.0.1:65535", "10.0.0.1", 65535)])
def test_endpoints_are_read_and_written(text, host, port):
    endpoint = zorNet.Endpoint(text)
    assert (endpoint.getHost(), endpoint.getPort(), str(endpoint)) == (host, port, text)


@pytest.mark.parametrize("text", ["", "host", "host:", ":80", "host:65536", "host:-1", "host:8x", "::1:80", "a b:80", "[]:80"])
def test_what_is_no_endpoint_is_told(text):
    with pytest.raises(RuntimeError, match="Endpoint"):
        zorNet.Endpoint(text)


def test_splines_in_python():
    spline = zorUtil.NaturalSpline(numpy.array([(0, 0, 0), (1, 1, 0), (2, 0, 0)], dtype=float))
    assert len(spline) == 3 and repr(spline).startswith("<NaturalSpline of 3 points, 2.")
    assert spline.evaluate(1) == (1, 1, 0) and spline.tangent(1).equals((1, 0, 0))
    points = spline.getPoints()
    points[0] = (5, 5, 5)
    assert spline.getPoint(0) == zor.Vec3()  # it was a copy
    steps = numpy.linalg.norm(numpy.diff(numpy.asarray(spline.sample(200)), axis=0), axis=1)
    assert steps.min() == pytest.approx(steps.max(), rel=1e-3)
    for wrong in (lambda: spline.setPoint(3, (0, 0, 0)), lambda: spline.evaluate(math.nan), lambda: spline.sample(1),
                  lambda: spline.sample(2**63), lambda: zorUtil.CatmullRomSpline([], 2)):
        with pytest.raises(RuntimeError):
            wrong()


def test_objects_of_the_standard_library():
    view = zorUtil.StringView("a\0ä")
    assert str(view) == "a\0ä" and len(view) == 4
    stream = zorUtil.StringStream("one ")
    stream.write("two")
    assert stream.read() == "one two" and stream.read() == ""
    stream.write("!")
    assert stream.read() == "!" and str(stream) == "one two!"
