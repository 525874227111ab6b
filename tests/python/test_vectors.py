"""Vectors of values: lists of one type whose storage is a buffer."""

import copy
import random

import numpy
import pytest

import osg
import zor
import zorCollide
import zorRender
import zorUtil

# A vector's class, some of its elements, and what is no element.
KINDS = [
    (zor.RealVector, [1.0, 2.5, -3.0, 4.0], "x"), (zor.FloatVector, [0.5, 1.0, 2.0], None), (zor.IntVector, [-5, 2**40, 7], 1.5),
    (zor.UIntVector, [1, 2**63, 3], -1), (zor.UInt32Vector, [1, 2, 3], -1), (zor.UInt8Vector, [1, 2, 255], 256),
    (zor.Vec3Vector, [zor.Vec3(1, 2, 3), zor.Vec3(), zor.Vec3(7, 8, 9)], (1, 2)), (zor.Vec2iVector, [zor.Vec2i(1, 2), zor.Vec2i()], "ab"),
    (zor.QuatVector, [zor.Quat(), zor.Quat(1, 2, 3, 4)], 5), (zorRender.ColorVector, [zorRender.Color(1, 0, 0), zorRender.Color()], (1,)),
    (zor.StringVector, ["b", "a", "\u20ac"], 5), (zorUtil.StringList, ["b", "a", "\u20ac"], b"b")]


@pytest.mark.parametrize("kind, elements, wrong", KINDS, ids=lambda value: getattr(value, "__name__", ""))
def test_a_vector_does_what_a_list_does(kind, elements, wrong):
    """The same random operations on a vector and on a list."""
    chance = random.Random(kind.__name__)
    vector, model = kind(elements), list(elements)

    def bounds():
        return slice(*(chance.choice([None, *range(-9, 10)]) for _ in range(2)), chance.choice([None, 1, 2, 3, -1, -2]))

    def items():
        return [chance.choice(elements) for _ in range(chance.randrange(4))]

    operations = [
        lambda v, i, s, e, m: v.append(e), lambda v, i, s, e, m: v.insert(i, e), lambda v, i, s, e, m: v.extend(m),
        lambda v, i, s, e, m: v.pop(i), lambda v, i, s, e, m: v.pop(), lambda v, i, s, e, m: v.remove(e),
        lambda v, i, s, e, m: v.index(e), lambda v, i, s, e, m: v.index(e, i), lambda v, i, s, e, m: v.count(e),
        lambda v, i, s, e, m: v.reverse(), lambda v, i, s, e, m: v[i], lambda v, i, s, e, m: list(v[s]),
        lambda v, i, s, e, m: v.__setitem__(i, e), lambda v, i, s, e, m: v.__setitem__(s, m), lambda v, i, s, e, m: v.__delitem__(i),
        lambda v, i, s, e, m: v.__delitem__(s), lambda v, i, s, e, m: e in v, lambda v, i, s, e, m: v.__iadd__(m) is v or list,
        lambda v, i, s, e, m: list(v + type(v)(m)), lambda v, i, s, e, m: v.extend(v) if len(v) < 20 else v.clear(),
        lambda v, i, s, e, m: v.__setitem__(s, v) if len(v) < 20 else None]
    for _ in range(600):
        operation = chance.choice(operations)
        arguments = (chance.randrange(-9, 10), bounds(), chance.choice(elements), items())
        outcomes = []
        for sequence in (vector, model):
            try:
                outcomes.append(operation(sequence, *arguments))
            except (IndexError, ValueError) as error:
                outcomes.append(type(error))
        assert outcomes[0] == outcomes[1]
        assert list(vector) == model and len(vector) == len(model)


@pytest.mark.parametrize("kind, elements, wrong", KINDS, ids=lambda value: getattr(value, "__name__", ""))
def test_wrong_elements_are_refused_and_change_nothing(kind, elements, wrong):
    vector = kind(elements)
    for change in (lambda: vector.append(wrong), lambda: vector.insert(0, wrong), lambda: vector.extend([elements[0], wrong]),
                   lambda: vector.__setitem__(0, wrong), lambda: vector.__setitem__(slice(0, 1), [wrong]), lambda: kind([wrong]),
                   lambda: vector.extend(5), lambda: kind(5), lambda: vector.__setitem__("a", elements[0])):
        with pytest.raises((TypeError, ValueError, OverflowError)):
            change()
    assert list(vector) == elements
    assert vector == copy.copy(vector) == copy.deepcopy(vector) and vector != kind() and vector != elements and wrong not in vector
    with pytest.raises(IndexError, match="index out of range"):
        vector[len(elements)]
    with pytest.raises(IndexError, match="empty"):
        kind().pop()
    with pytest.raises(ValueError, match="no such element"):
        kind().index(elements[0])
    with pytest.raises(ValueError, match="sequence of size 0 to extended slice"):
        vector[::2] = []
    with pytest.raises(TypeError):
        hash(vector)


def test_sorting():
    numbers = zor.RealVector([3, float("nan"), 1, 2])
    numbers.sort()
    assert list(numbers[:3]) == [1, 2, 3] and numbers[3] != numbers[3]
    numbers.sort(True)
    assert list(numbers[:3]) == [3, 2, 1]
    texts = zor.StringVector(["b", "a"])
    texts.sort()
    assert list(texts) == ["a", "b"]


def test_long_vectors_print_their_size():
    assert repr(zor.RealVector(range(1001))) == "<RealVector of 1001 elements>"
    assert repr(zor.RealVector([1, 2])) == "RealVector([1.0, 2.0])"


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
    for change in (lambda: points.append(zor.Vec3()), points.clear, points.pop, lambda: points.extend([(1, 2, 3)]),
                   lambda: points.insert(0, (1, 2, 3)), lambda: points.reserve(100), lambda: points.__delitem__(0),
                   lambda: points.__delitem__(slice(2)), lambda: points.__setitem__(slice(1), []), lambda: points.remove(points[0])):
        with pytest.raises(BufferError):
            change()
    points[:2] = [(1, 1, 1), (2, 2, 2)]  # as many: nothing moves
    points.extend([])
    assert len(points) == 10 and view[1, 0] == 2
    del view
    points.append(zor.Vec3())
    assert len(points) == 11
    assert numpy.asarray(zor.RealVector()).size == 0


def test_a_buffer_keeps_what_it_shows():
    for thing in (zor.RealVector([1, 2, 3]), zor.Vec3(1, 2, 3), zor.Quat(1, 2, 3, 4), zor.Matrix3x3()):
        views = [memoryview(thing), thing._memory()]
        before = [view.tolist() for view in views]
        del thing.this, thing
        assert [view.tolist() for view in views] == before
    points = zor.Vec3Vector([(1, 2, 3)])
    with memoryview(points):
        pass
    points.append((4, 5, 6))  # the view is released
    kept = points._memory()
    with pytest.raises(BufferError):
        points.append((4, 5, 6))
    kept.release()
    points.append((4, 5, 6))


@pytest.mark.parametrize("kind, values", [
    (zor.RealVector, numpy.arange(6.0)[::2]), (zor.RealVector, numpy.arange(3, dtype=numpy.float32)), (zor.RealVector, numpy.arange(3)),
    (zor.UInt8Vector, b"abc"), (zor.UInt32Vector, numpy.arange(3, dtype=numpy.int64)), (zor.FloatVector, numpy.arange(3.0)),
    (zor.IntVector, memoryview(numpy.arange(3))), (zor.UIntVector, numpy.arange(3, dtype=numpy.uint64)),
    (zor.Vec3Vector, numpy.arange(9.0).reshape(3, 3).T), (zor.Vec3fVector, numpy.arange(9.0).reshape(3, 3)),
    (zor.Vec2Vector, zor.Vec2fVector([(1, 2), (3, 4), (5, 6)]))])
def test_arrays_of_any_layout_are_read(kind, values):
    assert numpy.array_equal(numpy.asarray(kind(values)), numpy.asarray(memoryview(values)))


def test_vectors_of_objects():
    pixels = [osg.Image() for _ in range(3)]
    images = osg.ImageVector(pixels)
    count = pixels[0].referenceCount()
    assert len(images) == 3 and images.index(pixels[1]) == 1 and pixels[2] in images
    images.append(pixels[0])
    assert pixels[0].referenceCount() == count + 1
    taken = images.pop(0)
    del images[:], pixels
    assert taken.referenceCount() == 1 and not len(images)
    with pytest.raises(TypeError, match="osg__Image"):
        osg.ImageVector([osg.Group()])
    contacts = zorCollide.LocalGeometryContactVector([zorCollide.GeometryContact()])
    contacts += [zorCollide.GeometryContact(zorCollide.Geometry(), None)]
    assert len(contacts) == 2 and contacts[1].getGeometry1() and contacts[:1][0].isEmpty()
