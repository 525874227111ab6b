"""Value types and their vectors as Python sees them."""

import copy
import math
import pickle

import numpy
import pytest

import osg
import zor
import zorCollide
import zorNet
import zorModel
import zorRender
import zorSensor
import zorUtil
import zorWire

VECTORS = [(zor.Vec2, 2), (zor.Vec3, 3), (zor.Vec4, 4), (zor.Vec2f, 2), (zor.Vec3f, 3), (zor.Vec4f, 4),
           (osg.Vec2d, 2), (osg.Vec3d, 3), (osg.Vec4d, 4), (osg.Vec2, 2), (osg.Vec3, 3), (osg.Vec4, 4)]


@pytest.mark.parametrize("kind, count", VECTORS)
def test_vectors_calculate(kind, count):
    numbers = [1.0, 2.0, 4.0, 8.0][:count]
    v = kind(*numbers)
    assert list(v) == numbers and len(v) == count
    assert v[-1] == numbers[-1]
    assert v + v == v * 2 == 2 * v == v - (-v)
    assert v / 2 == kind(*(n / 2 for n in numbers))
    assert v != kind() and not v == 5
    v[0] = 7
    first, *_ = v
    assert first == 7.0
    for wrong in (count, -count - 1):
        with pytest.raises(IndexError, match="index out of range"):
            v[wrong]
    with pytest.raises(ZeroDivisionError):
        v / 0
    with pytest.raises(TypeError):
        v + 1
    with pytest.raises(TypeError):
        hash(v)


@pytest.mark.parametrize("kind, count", VECTORS)
def test_vectors_print_copy_and_travel(kind, count):
    v = kind(*[1.0, 2.5, 1e-7, -3.0][:count])
    numbers = "(1, 2.5, 1e-07, -3)"[1:-1].split(", ")[:count]
    assert repr(v) == f"{kind.__name__}({', '.join(numbers)})"
    for other in (copy.copy(v), copy.deepcopy(v), pickle.loads(pickle.dumps(v)), kind(v)):
        assert other == v and other.this != v.this
        other[0] = 9
        assert v[0] == 1.0


def test_a_vector_shows_its_memory():
    v = zor.Vec3(1, 2, 3)
    view = numpy.asarray(v)
    view[1] = 20
    assert v == zor.Vec3(1, 20, 3)
    assert numpy.asarray(zor.Vec4f(1, 2, 3, 4)).dtype == numpy.float32
    del v
    assert view[1] == 20  # the view keeps the vector


def test_products():
    x, y, z = zor.Vec3(1, 0, 0), zor.Vec3(0, 1, 0), zor.Vec3(0, 0, 1)
    assert x.cross(y) == z and x.dot(y) == 0
    assert osg.Vec3(1, 0, 0).cross(osg.Vec3(0, 1, 0)) == osg.Vec3(0, 0, 1)
    assert zor.Vec3(3, 4, 0).length() == 5


def test_rotations_and_transforms():
    quarter = zor.Quat(1.5707963267948966, zor.Vec3(0, 0, 1))
    assert (quarter * zor.Vec3(1, 0, 0)).equals(zor.Vec3(0, 1, 0))
    move = zor.AffineMatrix4x4(quarter, zor.Vec3(10, 0, 0))
    point = zor.Vec3(1, 0, 0) * move
    assert point.equals(zor.Vec3(10, 1, 0))
    assert (point * move.inverse()).equals(zor.Vec3(1, 0, 0))
    assert (move * move.inverse()).equals(zor.AffineMatrix4x4())
    assert move[3, 0] == 10 and numpy.asarray(move).shape == (4, 4)
    for wrong in ((4, 0), (0, -5), 4):
        with pytest.raises(IndexError):
            move[wrong]
    matrix = osg.Matrixd.translate(1, 2, 3) * osg.Matrixd.scale(2, 2, 2)
    assert matrix.getTrans() == osg.Vec3d(2, 4, 6)
    with pytest.raises(IndexError):
        matrix[0, 4]


def test_colors():
    color = zorRender.Color(0.25, 0.5, 1.0)
    assert list(color) == [0.25, 0.5, 1.0, 1.0] and color.g() == 0.5
    assert repr(color) == "Color(0.25, 0.5, 1, 1)"
    colors = zorRender.ColorVector([color, (0, 0, 0, 1)])
    assert numpy.asarray(colors).shape == (2, 4)


SEQUENCES = [list, tuple, iter, numpy.array, lambda numbers: numpy.array([numbers, numbers])[1],
             lambda numbers: memoryview(numpy.array(numbers)), lambda numbers: (number for number in numbers)]


@pytest.mark.parametrize("kind, count", [*VECTORS, (zor.Quat, 4), (zor.Vec3i, 3), (zor.Vec2u, 2), (zorRender.Color, 4), (osg.Quat, 4)])
def test_values_are_made_of_any_sequence(kind, count):
    numbers = [1, 2, 4, 8][:count]
    for sequence in SEQUENCES:
        assert kind(sequence(numbers)) == kind(*numbers)
    for wrong, error in ((numbers[1:], ValueError if count > 2 and kind is not zorRender.Color else None), ([*numbers, 1], ValueError),
                         (["x"] * count, TypeError), ("1234"[:count], TypeError), (5, TypeError), (None, TypeError),
                         ([numbers] * count, TypeError)):
        if error:
            with pytest.raises(error):
                kind(wrong)


def test_values_mix_with_tuples_and_lists():
    v = zor.Vec3(1, 2, 3)
    assert v + (1, 1, 1) == [1, 1, 1] + v == (2, 3, 4)
    assert (5, 5, 5) - v == (4, 3, 2) and v - [1, 2, 3] == zor.Vec3()
    assert v == (1, 2, 3) and v == [1, 2, 3] and (1, 2, 3) == v
    assert v != (1, 2) and v != (1, 2, "x") and v != (1, 2, 4) and v != None
    assert zor.Vec3f(0.1, 0.2, 0.3) == (0.1, 0.2, 0.3)  # as far as single precision goes
    assert v.dot((1, 0, 0)) == 1 and v.equals((1, 2, 3 + 1e-7)) and not v.equals((1, 2, 3 + 1e-7), 1e-8)
    assert isinstance(numpy.ones(3) + v, numpy.ndarray) and (v + numpy.ones(3)).tolist() == [2, 3, 4]
    body = zor.RigidBody()
    body.setPosition((1, 2, 3))
    assert body.getPosition() == v
    assert zor.AffineMatrix4x4((0, 0, 0, 1), (1, 2, 3)) == zor.AffineMatrix4x4(v)
    assert zor.Quat(math.pi / 2, (0, 0, 1)).equals(zor.Quat((1, 0, 0), (0, 1, 0)))
    with pytest.raises(ValueError, match="row of 3 numbers"):
        body.setPosition((1, 2))
    with pytest.raises(TypeError, match="argument 2 of type 'zor::Vec3 const &'"):
        body.setPosition("123")


def test_slices_of_values():
    v = zor.Vec4(1, 2, 3, 4)
    assert v[:3] == (1, 2, 3) and v[::-1] == (4, 3, 2, 1) and v[9:] == () and v[numpy.int64(1)] == 2
    v[1:3] = (20, 30)
    v[::3] = iter([10, 40])
    assert v == (10, 20, 30, 40)
    for numbers in ((1,), (1, 2, 3), ("x", 1)):
        with pytest.raises((ValueError, TypeError)):
            v[:2] = numbers
    assert v == (10, 20, 30, 40)


def test_numbers_of_values_have_limits():
    assert zor.Vec3i(-7, 7, 8) // 2 == (-4, 3, 4) and zor.Vec3i(1, 2, 3) * zor.Vec3i(4, 5, 6) == 32
    large = zor.Vec2i(2**31 - 1, -2**31)
    for fails in (lambda: large + large, lambda: -large, lambda: large * 2, lambda: large * large, lambda: large // -1,
                  lambda: zor.Vec2u(1, 1) - zor.Vec2u(2, 0), lambda: zor.Vec3f([1e39, 0, 0]), lambda: zor.Vec3i([2**31, 0, 0])):
        with pytest.raises(OverflowError):
            fails()
    assert abs(zor.Vec2i(-30000, -40000) * 40000 // 40000) == 50000
    with pytest.raises(ZeroDivisionError):
        zor.Vec3i() // 0


READ_BACK = [
    zor.Vec3(1, -0.0, 1e300), zor.Vec2(math.inf, -math.inf), zor.Vec3f(0.1, 1e-7, 16777217), zor.Vec2i(-1, 2), zor.Vec3u(1, 2, 3),
    zor.Quat(1, zor.Vec3(1, 2, 3)), zor.AffineMatrix4x4(zor.Quat(1, zor.Vec3(1, 2, 3)), zor.Vec3(4, 5, 6)),
    zor.Matrix3x3(zor.Quat(0.1, zor.Vec3(0, 1, 0))), zor.Plane(0.1, 0.2, 0.3, 0.4), zor.RangeReal(), zor.RangeReal(-0.1, 1 / 3),
    zor.Line(zor.Vec3(), zor.Vec3(1, 2, 3)), zor.BoundingAABB(), zor.BoundingAABB((0, 0, 0), (1, 2, 3)), zor.Name("it's"),
    zor.RealVector([1, 0.1, -math.inf]), zor.FloatVector([0.1]), zor.IntVector([-2**63]), zor.UIntVector([2**64 - 1]),
    zor.UInt8Vector(b"abc"), zor.UInt32Vector(range(20)), zor.Vec3Vector([(1, 2, 3)]), zor.QuatVector([zor.Quat()]),
    zor.StringVector(["a", "\n'\u20ac"]), zorRender.Color(0.1, 0.2, 0.3), zorRender.ColorVector([(1, 0, 0)]),
    osg.Vec3(1, 2, 3), osg.Vec4d(1, 2, 3, 0.1), osg.Quat(0, 0, 0, 1), osg.Matrixd.translate(0.1, 2, 3),
    zorModel.TriangleData((0, 0, 0), (1, 0, 0), (0, 1, 0), 1, 2, 3), zorSensor.RayPattern(1.5, 3, 0.5, 2), zorNet.Endpoint("::1", 80),
    zorWire.WireParameters(0.1), zorUtil.StringList(["a"])]


@pytest.mark.parametrize("value", READ_BACK, ids=repr)
def test_texts_and_copies_of_values_are_the_same_values(value):
    names = {}
    for module in (zor, zorModel, zorNet, zorRender, zorSensor, zorUtil, zorWire):
        names |= vars(module)
    names |= vars(osg) if type(value).__module__ == "osg" else {}
    again = eval(repr(value), names)
    assert again == value and repr(again) == repr(value) and type(again) is type(value)
    for other in (copy.copy(value), copy.deepcopy(value), pickle.loads(pickle.dumps(value)), type(value)(value)):
        assert other == value and other is not value and type(other) is type(value)


def test_matrices_read_rows_and_numbers():
    m = zor.AffineMatrix4x4(zor.Quat(0.3, zor.Vec3(0, 0, 1)), zor.Vec3(1, 2, 3))
    array = numpy.asarray(m)
    for rows in (array, array.ravel(), array.tolist(), [tuple(row) for row in m], iter(array)):
        assert zor.AffineMatrix4x4(rows) == m
    assert m[3] == (1, 2, 3, 1) and m[-1, 0] == 1 and len(m) == 4
    m[3, 0] = 7
    assert array[3, 0] == 7
    for wrong in (numpy.ones((4, 4)), numpy.ones((3, 3)), numpy.ones(15), [[1, 2, 3, 0]] * 3 + [[1, 2, 3]]):
        with pytest.raises(ValueError):
            zor.AffineMatrix4x4(wrong)
    with pytest.raises(ValueError, match="last column"):
        m[0, 3] = 1.0
    assert osg.Matrixd(numpy.ones((4, 4)))[0, 3] == 1
    assert zor.Matrix3x3([[0, 1, 0], [-1, 0, 0], [0, 0, 1]]).getRotate().equals(zor.Quat(math.pi / 2, (0, 0, 1)))


@pytest.mark.parametrize("angles", [(0.3, -0.4, 1.2), (-3, 1.5, 3), (0.5, math.pi / 2, 0.2), (0.5, -math.pi / 2, 0.2), (0, 0, 0)])
def test_euler_angles_come_back(angles):
    rotation = zor.Quat.fromEuler(*angles)
    again = zor.Quat.fromEuler(*rotation.toEuler())
    for axis in ((1, 0, 0), (0, 1, 0), (0, 0, 1)):
        assert again.rotate(axis).equals(rotation.rotate(axis), 1e-6)


def test_ranges_planes_and_names():
    assert zor.RangeReal(2) == zor.RangeReal(-2, 2)
    assert repr(zor.RangeReal(-1, 1)) == "RangeReal(-1, 1)" and 1 in zor.RangeReal(-1, 1)
    box = zor.BoundingAABB()
    for corner in ((1, 2, 3), (-1, 5, 0)):
        box.expand(corner)
    assert box.min() == (-1, 2, 0) and (0, 3, 1) in box and (0, 0, 0) not in box and box == zor.BoundingAABB((-1, 2, 0), (1, 5, 3))
    with pytest.raises(RuntimeError):
        zor.RangeReal(2, 1)
    plane = zor.Plane(zor.Vec3(0, 0, 2), zor.Vec3(5, 5, 1))
    assert plane.distance(zor.Vec3(0, 0, 3)) == 2
    assert {zor.Name("a"): 1}[zor.Name("a")] == 1
    assert str(zor.Name("a")) == "a"


def test_images():
    image = osg.Image()
    image.allocate(4, 3, 3)
    pixels = numpy.asarray(image)
    assert pixels.shape == (3, 4, 3) and pixels.dtype == numpy.uint8
    pixels[2, 1] = (255, 0, 0)
    assert image.getColor(1, 2) == osg.Vec4(1, 0, 0, 1)
    with pytest.raises(BufferError):
        image.scale(2, 2)
    del pixels
    image.scale(2, 2)
    assert len(image.tobytes()) == image.getTotalSizeInBytes()
    with pytest.raises(IndexError):
        image.getColor(2, 0)
    with pytest.raises(RuntimeError, match="1 to 4"):
        image.allocate(2, 2, 5)


def test_events_and_callbacks_call_python():
    event, calls = zor.Event(), []
    listener = event.add(lambda: calls.append(1))
    event.raise_()
    assert calls == [1] and event.getNumListeners() == 1
    del listener
    event.raise_()
    assert calls == [1]
    callback = zor.Callback(lambda: calls.append(2))
    callback.call()
    assert calls == [1, 2]
    with pytest.raises(RuntimeError, match="callable"):
        zor.Callback(5)
    zor.Callback()()
    assert callback and not zor.Callback()
    shape, changed = zorCollide.Sphere(1), []
    geometry = zorCollide.Geometry(shape)
    listener = geometry.getShapeChangeEvent().add(changed.append)
    shape.setRadius(2)
    assert [other.getReferenceCount() for other in changed] == [geometry.getReferenceCount()]
    listener.reset()
    shape.setRadius(3)
    assert len(changed) == 1
    mutex = zor.Mutex()
    with mutex:
        assert mutex.tryLock()
        mutex.unlock()
    assert [repr(thing) for thing in (event, callback, zor.Callback(), listener)] == \
        ["<Event, 0 listening>", "<Callback, valid>", "<Callback, empty>", "<ShapeChangeListener, reset>"]
