"""Value types and their vectors as Python sees them."""

import copy
import pickle

import numpy
import pytest

import osg
import zor
import zorRender

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
    with pytest.raises(RuntimeError, match="row 4"):
        move[4, 0]
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


def test_vectors_are_lists_of_one_type():
    points = zor.Vec3Vector([(1, 2, 3), zor.Vec3(4, 5, 6)])
    points.append(zor.Vec3(7, 8, 9))
    points.insert(0, zor.Vec3())
    assert [p.x() for p in points] == [0, 1, 4, 7]
    assert len(points[1:3]) == 2 and points[1:3][0] == zor.Vec3(1, 2, 3)
    assert zor.Vec3(4, 5, 6) in points
    del points[0]
    points.extend([zor.Vec3(1, 1, 1)])
    assert points == zor.Vec3Vector([(1, 2, 3), (4, 5, 6), (7, 8, 9), (1, 1, 1)])
    assert repr(zor.RealVector([1, 2])) == "RealVector([1.0, 2.0])"
    for change, wrong in ((points.__getitem__, 4), (points.__delitem__, -5)):
        with pytest.raises(IndexError):
            change(wrong)


@pytest.mark.parametrize("values, kind", [
    ([(1, 2)], ValueError), ([1], TypeError), (["abc"], TypeError), ([(1, 2, "x")], TypeError), (5, TypeError)])
def test_wrong_rows_are_told(values, kind):
    with pytest.raises(kind):
        zor.Vec3Vector(values)


def test_wrong_numbers_are_told():
    with pytest.raises(OverflowError):
        zor.UInt32Vector([-1])
    with pytest.raises(OverflowError):
        zor.UInt32Vector([2**32])
    with pytest.raises(TypeError):
        zor.UInt32Vector([1.5])
    assert list(zor.UInt32Vector(i for i in range(3))) == [0, 1, 2]


def test_buffers_go_both_ways():
    rows = numpy.arange(30, dtype=float).reshape(10, 3)
    points = zor.Vec3Vector(rows)
    assert len(points) == 10 and points[9] == zor.Vec3(27, 28, 29)
    view = numpy.asarray(points)
    assert view.shape == (10, 3) and (view == rows).all()
    view[0, 0] = -1
    assert points[0].x() == -1
    with pytest.raises(BufferError):
        points.append(zor.Vec3())
    assert len(points) == 10
    del view
    points.append(zor.Vec3())
    assert len(points) == 11
    assert numpy.asarray(zor.RealVector()).size == 0


def test_ranges_planes_and_names():
    assert zor.RangeReal(2) == zor.RangeReal(-2, 2)
    assert repr(zor.RangeReal(-1, 1)) == "RangeReal(-1, 1)"
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
    zor.Callback().call()
