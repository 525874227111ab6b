"""Arrays, indices and images: sequences of their own storage, which never moves under a buffer, and geometries that stay within it."""

import copy
import gc

import numpy
import pytest

import osg

TRIANGLE = [(0, 0, 0), (1, 0, 0), (0, 1, 0)]
ARRAYS = [(osg.Vec2Array, 2, "f"), (osg.Vec3Array, 3, "f"), (osg.Vec4Array, 4, "f"), (osg.Vec2dArray, 2, "d"), (osg.Vec3dArray, 3, "d"),
          (osg.Vec4dArray, 4, "d"), (osg.Vec4ubArray, 4, "B"), (osg.FloatArray, 1, "f"), (osg.DoubleArray, 1, "d"), (osg.UIntArray, 1, "I"),
          (osg.UShortArray, 1, "H"), (osg.UByteArray, 1, "B"), (osg.IntArray, 1, "i")]


def triangle(indices=(0, 1, 2)):
    geometry = osg.Geometry()
    geometry.setVertexArray(osg.Vec3Array(TRIANGLE))
    geometry.addPrimitiveSet(osg.DrawElementsUInt(osg.PrimitiveSet.TRIANGLES, indices))
    return geometry


@pytest.mark.parametrize("kind, columns, code", ARRAYS)
def test_arrays_are_made_of_anything_and_seen_without_a_copy(kind, columns, code):
    numbers = numpy.arange(columns * 4, dtype=code).reshape((4, columns) if columns > 1 else (4,))
    for source in (numbers, numbers.tolist(), (row for row in numbers.tolist()), numbers.astype("f8" if code in "fd" else "i8"),
                   numbers[::-1][::-1], kind(numbers)):
        array = kind(source)
        seen = numpy.asarray(array)
        assert seen.dtype == numbers.dtype and numpy.array_equal(seen, numbers)
        seen[2] = 7
        assert array.tolist()[2] == seen[2].tolist() and memoryview(array).obj is not None
        assert len(array) == array.getNumElements() == 4 and array.getDataSize() == columns


def test_arrays_behave_like_lists():
    array, mirror = osg.Vec2Array(), []
    for change in (lambda a: a.append((1, 2)), lambda a: a.extend([(3, 4), (5, 6)]), lambda a: a.insert(1, (7, 8)), lambda a: a.insert(-9, (9, 9)),
                   lambda a: a.insert(99, (0, 1)), lambda a: a.__delitem__(-2), lambda a: a.__setitem__(-1, (6, 6)), lambda a: a.__delitem__(0)):
        change(array)
        change(mirror)
        assert array.tolist() == [list(row) for row in mirror]
    assert [tuple(value) for value in array] == mirror and [tuple(v) for v in array[::2]] == mirror[::2]
    assert array[-1] == osg.Vec2(6, 6) and isinstance(array[0], osg.Vec2)
    for index in (len(array), -len(array) - 1):
        for use in (array.__getitem__, array.__delitem__, lambda i: array.__setitem__(i, (0, 0))):
            with pytest.raises(IndexError):
                use(index)
    array.assign(numpy.ones((5, 2), "f4"))
    assert len(array) == 5
    array.clear()
    assert len(array) == 0 and array and array.tolist() == []


@pytest.mark.parametrize("values, error", [([(1, 2)], ValueError), ([1, 2, 3], TypeError), (["abc"], TypeError), (5, TypeError), (None, TypeError),
                                           (numpy.ones((2, 4), "f4"), ValueError)])
def test_wrong_elements_change_nothing(values, error):
    array = osg.Vec3Array(TRIANGLE)
    for use in (array.extend, array.assign, osg.Vec3Array):
        with pytest.raises(error):
            use(values)
    assert array.tolist() == [[*map(float, row)] for row in TRIANGLE]
    for kind, number in ((osg.UShortArray, 65536), (osg.UByteArray, -1), (osg.UIntArray, 1 << 32)):
        with pytest.raises(OverflowError):
            kind([number])


class Sneaky:
    """A row that takes a view of the array while it is read."""

    def __init__(self, array):
        self.array = array

    def __len__(self):
        return 3

    def __getitem__(self, index):
        self.view = memoryview(self.array)
        return [1.0, 2.0, 3.0][index]


def test_storage_never_moves_under_a_view():
    array = osg.Vec3Array(TRIANGLE)
    geometry = osg.Geometry()
    geometry.setVertexArray(array)
    view = numpy.asarray(array)
    other = geometry.getVertexArray()  # another proxy of the same array
    for change in (lambda: array.append((0, 0, 0)), lambda: other.extend(TRIANGLE), other.clear, lambda: other.__delitem__(0),
                   lambda: array.assign([]), lambda: osg.smooth(geometry)):
        with pytest.raises(BufferError):
            change()
    other[1] = (5, 5, 5)
    assert view[1].tolist() == [5, 5, 5]
    del view
    gc.collect()
    other.append((0, 0, 0))
    assert len(array) == 4
    row = Sneaky(array)
    with pytest.raises(BufferError):
        array.append(row)
    del row
    array.append((1, 1, 1))


def test_views_outlive_everything_else():
    geometry = triangle()
    view = numpy.asarray(geometry.getVertexArray())
    del geometry
    gc.collect()
    assert view.tolist() == [list(map(float, row)) for row in TRIANGLE]


@pytest.mark.parametrize("kind, largest", [(osg.DrawElementsUInt, 2**32 - 1), (osg.DrawElementsUShort, 65535), (osg.DrawElementsUByte, 255)])
def test_indices(kind, largest):
    indices = kind(osg.PrimitiveSet.LINES, numpy.array([0, 1, largest], "u8"))
    assert [*indices] == [0, 1, largest] and indices[-1] == largest and indices.getNumIndices() == 3
    indices.append(5)
    numpy.asarray(indices)[0] = 9
    assert indices.tolist() == [9, 1, largest, 5]
    with pytest.raises(OverflowError):
        indices.append(largest + 1)
    assert len(kind(osg.PrimitiveSet.POINTS)) == 0


def test_bindings_follow_from_the_number_of_elements():
    geometry = triangle()
    geometry.setNormalArray(osg.Vec3Array([(0, 0, 1)]))
    geometry.setColorArray(osg.Vec4ubArray([(255, 0, 0, 255)] * 3))
    assert geometry.getNormalArray().getBinding() == osg.Array.BIND_OVERALL
    assert geometry.getColorArray().getBinding() == osg.Array.BIND_PER_VERTEX and geometry.getColorArray().getNormalize()
    geometry.setColorArray(osg.Vec4Array([(1, 0, 0, 1)]), osg.Array.BIND_PER_PRIMITIVE_SET)
    geometry.setTexCoordArray(0, osg.Vec2Array([(0, 0)] * 3))
    geometry.setVertexAttribArray(5, osg.FloatArray([1, 2, 3]))
    assert type(geometry.getTexCoordArray(0)) is osg.Vec2Array and type(geometry.getVertexAttribArray(5)) is osg.FloatArray
    assert geometry.getTexCoordArray(7) is None and geometry.getFault() == ""
    with pytest.raises(RuntimeError, match="texture unit"):
        geometry.setTexCoordArray(1 << 31, None)


@pytest.mark.parametrize("spoil, what", [
    (lambda g: g.getPrimitiveSet(0).append(2**31), "vertices are needed"),
    (lambda g: g.addPrimitiveSet(osg.DrawArrays(osg.PrimitiveSet.POINTS, -1, 2)), "before the first vertex"),
    (lambda g: g.addPrimitiveSet(osg.DrawArrays(osg.PrimitiveSet.POINTS, 2**31 - 1, 2**31 - 1)), "vertices are needed"),
    (lambda g: g.addPrimitiveSet(osg.DrawArrayLengths(osg.PrimitiveSet.LINES, 0, [2, 2])), "4 vertices are needed"),
    (lambda g: g.getVertexArray().clear(), "3 vertices are needed, there are 0"),
    (lambda g: g.setNormalArray(osg.Vec3Array(TRIANGLE[:2])), "3 normals are needed"),
    (lambda g: g.setColorArray(osg.Vec4Array(), osg.Array.BIND_OVERALL), "1 colours are needed"),
    (lambda g: g.setTexCoordArray(1, osg.Vec2Array([(0, 0)])), "texture coordinates"),
    (lambda g: g.setVertexAttribArray(6, osg.FloatArray([1, 2])), "attribute")])
def test_indices_out_of_the_arrays_are_refused(spoil, what, capfd):
    for geometry in (triangle(), copy.deepcopy(triangle()), copy.copy(triangle())):
        spoil(geometry)
        assert what in geometry.getFault()
        geometry.dirty()
        assert not geometry.computeBoundingBox().valid()
        assert osg.intersect(geometry, osg.Vec3d(0.2, 0.2, 1), osg.Vec3d(0.2, 0.2, -1)) == []
        for tool in (osg.smooth, osg.tessellate, osg.optimize):
            with pytest.raises(RuntimeError, match="can't be used"):
                tool(geometry)
    assert "is not drawn" in capfd.readouterr().err


def test_shapes_are_geometries():
    drawable = osg.ShapeDrawable(osg.Box(osg.Vec3(1, 0, 0), 2, 4, 6))
    assert drawable.computeBoundingBox().yMax() == 2 and isinstance(drawable, osg.Geometry) and type(drawable.getShape()) is osg.Box
    drawable.getShape().setHalfLengths(osg.Vec3(1, 1, 1))
    drawable.build()
    drawable.dirtyBound()
    assert drawable.computeBoundingBox().yMax() == 1
    drawable.setVertexArray(osg.Vec3Array())
    assert "are needed" in drawable.getFault()


def test_images_take_and_show_arrays():
    pixels = numpy.random.default_rng(1).integers(0, 255, (5, 7, 3), dtype="B")
    image = osg.Image.fromArray(pixels)
    assert (image.s(), image.t(), image.getPixelFormat()) == (7, 5, osg.GL_RGB)
    assert numpy.array_equal(numpy.asarray(image), pixels)
    assert tuple(image.getColor(6, 1)) == pytest.approx((*(pixels[1, 6] / 255), 1))
    assert numpy.array_equal(numpy.asarray(osg.Image.fromArray(pixels, topFirst=True)), pixels[::-1])
    image.flipVertical()
    image.flipHorizontal()
    assert numpy.array_equal(numpy.asarray(image), pixels[::-1, ::-1])
    for strange in (pixels[:, ::2], pixels[..., :1], pixels[..., 0], numpy.asfortranarray(pixels), pixels.astype("f4"), pixels.astype("u2")):
        again = numpy.asarray(osg.Image.fromArray(strange))
        assert again.dtype == strange.dtype and numpy.array_equal(again.squeeze(), strange.squeeze())
    image.setPixels(image)
    assert numpy.array_equal(numpy.asarray(image), pixels[::-1, ::-1])


def test_images_refuse_what_they_cannot_hold():
    image = osg.Image.fromArray(numpy.zeros((2, 3), "B"))
    for wrong, error in ((numpy.zeros((2, 3, 5), "B"), RuntimeError), (numpy.zeros(4, "B"), RuntimeError), (numpy.zeros((0, 3), "B"), RuntimeError),
                         (numpy.zeros((2, 3), "c8"), RuntimeError), (numpy.zeros((1, 40000), "B"), RuntimeError), ([[1, 2]], TypeError), (None, TypeError)):
        with pytest.raises(error):
            image.setPixels(wrong)
    assert (image.s(), image.t()) == (3, 2)
    view = memoryview(image)
    for change in (lambda: image.setPixels(numpy.zeros((4, 4), "B")), lambda: image.scale(9, 9), lambda: image.allocate(1, 1)):
        with pytest.raises(BufferError):
            change()
    view.release()
    image.scale(9, 9)
    assert numpy.asarray(image).shape == (9, 9, 1)
