"""Vectors of camera output values and the iterators over them."""

import gc
import itertools
import pathlib
import random
import re
import weakref

import numpy
import pytest

import _zorOSG
import zor
import zorOSG
from conventions import error_text, mismatch, wrong
from pixels import PIXELS

every_pixel = pytest.mark.parametrize("pixel", PIXELS, ids=lambda pixel: pixel.name)
CONTAINER = "__swig_container"
BYTE, BYTES, FLOAT3 = PIXELS[4], PIXELS[7], PIXELS[26]


def numbers(elements):
    return [element[0] for element in elements]


@pytest.fixture
def vector():
    return BYTE.fill(4)


def test_every_function_of_the_interface_is_there():
    rows = pathlib.Path(__file__).with_name("data").joinpath("functions.tsv").read_text().splitlines()
    names = [row.split("\t")[0] for row in rows]
    ours = [name for name in names if re.match(r"(new_|delete_)?(NeoCameraOutputValue|SwigPyIterator)", name)]
    assert len(ours) == 40 * 8 + 40 * 33 + 18
    assert [name for name in ours if not hasattr(_zorOSG, name)] == []


@every_pixel
def test_every_vector_is_a_sequence_of_its_values(pixel):
    vector = pixel.fill(5)
    rows = numpy.arange(5 * pixel.channels).reshape(5, pixel.channels).tolist()
    assert [list(element) for element in vector] == rows
    assert {type(element) for element in vector} == {pixel.value}
    vector.append(pixel.make(*[7] * pixel.channels))
    vector.insert(vector.begin(), vector[-1])
    del vector[3]
    vector[1:3] = [vector[0]] * 3
    rows[0:0] = [[7] * pixel.channels]
    rows.append(rows[0])
    del rows[3]
    rows[1:3] = [rows[0]] * 3
    assert [list(element) for element in vector] == rows == [list(element) for element in pixel.vector(vector)]
    assert numpy.asarray(vector).dtype == pixel.element.dtype and numpy.asarray(vector).tolist() == rows
    other = pixel.vector(2, pixel.value())
    vector.swap(other)
    assert (len(vector), len(other)) == (2, len(rows))
    assert list(vector.pop()) == [0] * pixel.channels and len(vector) == vector.size() == 1
    vector.resize(3, other.front())
    vector.assign(2, vector.back())
    assert numbers(vector) == [7, 7] and vector and not vector.empty()
    vector.clear()
    assert not vector and vector.__nonzero__() is False
    vector.reserve(100)
    assert vector.capacity() >= 100
    vector.get_allocator()


class TestIndices:
    def test_single_ones_may_count_from_the_end(self, vector):
        assert (vector[-1][0], vector[-4][0], vector[3][0]) == (3, 0, 3)
        vector[-1] = BYTE.make(9)
        del vector[-2]
        assert numbers(vector) == [0, 1, 9]
        for outside in (3, -4, 2**63 - 1, -2**63):
            for call in (vector.__getitem__, vector.__delitem__, lambda i: vector.__setitem__(i, BYTE.value())):
                assert error_text(IndexError, call, outside) == "index out of range"

    def test_slices_are_a_lists_but_for_a_start_past_the_end(self):
        bounds = (None, -9, -5, -4, -2, -1, 0, 1, 3, 4, 5, 9)
        steps = (None, 1, 2, 3, 2**62, -1, -2, -3, -2**62)
        for start, stop, step in itertools.product(bounds, bounds, steps):
            part, model = slice(start, stop, step), [0, 1, 2, 3]
            beyond = (step or 1) > 0 and (start or 0) >= 4
            readable = slice(0, stop, step) if beyond else part
            vector = BYTE.fill(4)
            selected = vector[part]
            assert numbers(selected) == model[readable], part
            assert selected.thisown
            del vector[part]
            del model[part]
            assert numbers(vector) == model, part

    def test_assigned_slices_are_a_lists(self):
        for part in (slice(1, 3), slice(3, 1), slice(9, None), slice(None), slice(0, 0), slice(None, None, 2),
                     slice(None, None, -1), slice(3, 0, -2), slice(2, 1, 5)):
            for count in range(4):
                vector, model = BYTE.fill(4), [0, 1, 2, 3]
                new = [10 * i for i in range(count)]
                try:
                    model[part] = new
                except ValueError as error:
                    assert error_text(ValueError, vector.__setitem__, part, [BYTE.make(i) for i in new]) == str(error)
                else:
                    vector[part] = [BYTE.make(i) for i in new]
                assert numbers(vector) == model, (part, count)

    def test_a_vector_may_go_into_itself(self, vector):
        vector[1:2] = vector
        assert numbers(vector) == [0, 0, 1, 2, 3, 2, 3]
        vector[::-1] = vector
        assert numbers(vector) == [3, 2, 3, 2, 1, 0, 0]
        vector.insert(vector.begin(), 30, vector[4])
        vector.push_back(vector.front())
        assert numbers(vector) == [1] * 30 + [3, 2, 3, 2, 1, 0, 0, 1]

    def test_old_slice_methods_do_not_count_from_the_end(self, vector):
        assert numbers(vector.__getslice__(-2, 4)) == [0, 1, 2, 3]
        assert numbers(vector.__getslice__(1, 3)) == [1, 2] and numbers(vector.__getslice__(7, 2)) == [0, 1]
        vector.__setslice__(-3, 1, [BYTE.make(8), BYTE.make(9)])
        assert numbers(vector) == [8, 9, 1, 2, 3]
        vector.__setslice__(3, 9)
        vector.__delslice__(0, 1)
        assert numbers(vector) == [9, 1]
        vector.__setitem__(slice(0, 1))
        assert numbers(vector) == [1]

    def test_wrong_slices(self, vector):
        assert error_text(ValueError, vector.__getitem__, slice(None, None, 0)) == "slice step cannot be zero"
        assert error_text(ValueError, vector.__delitem__, slice(None, None, 0)) == "slice step cannot be zero"
        assert numbers(vector[numpy.int64(1):numpy.uint8(3)]) == [1, 2]
        with pytest.raises(TypeError):
            vector["a":]
        with pytest.raises(OverflowError):
            vector[:2**64]
        with pytest.raises(TypeError):
            vector[1.0]
        assert numbers(vector) == [0, 1, 2, 3]


class TestSequenceArguments:
    def test_any_iterable_of_values(self, vector):
        for values in ([*vector], (*vector,), iter(vector), (value for value in vector), map(BYTE.value, vector), vector,
                       vector.iterator(), dict(enumerate(vector)).values()):
            assert numbers(BYTE.vector(values)) == [0, 1, 2, 3]
        vector[4:] = (BYTE.make(i) for i in (4, 5))
        assert numbers(vector) == [0, 1, 2, 3, 4, 5]

    def test_others_are_refused(self, vector):
        name, pixel = "new_NeoCameraOutputValue3F32Vector", "zorOSG::NeoCameraOutputValue< float,3 >"
        kind = f"std::vector< {pixel} >"
        message = mismatch(name, f"{kind}::vector()", f"{kind}::vector({kind} const &)", f"{kind}::vector({kind}::size_type)",
                           f"{kind}::vector({kind}::size_type,{kind}::value_type const &)")
        for other in ([1], "a", [FLOAT3.value(), None], BYTES.vector(1), {}.items, 1.5, (0,), FLOAT3.value()):
            assert error_text(TypeError, FLOAT3.vector, other) == message
        assert error_text(TypeError, FLOAT3.vector, iter([1])) == wrong(name, 1, f"{kind} const &")
        for other in ([1], 5, iter([BYTES.value()])):
            with pytest.raises(TypeError):
                vector[1:] = other
        assert numbers(vector) == [0, 1, 2, 3]

    def test_the_error_of_an_iterable_arrives(self, vector):
        def values():
            yield BYTE.value()
            raise KeyError("mine")

        assert error_text(KeyError, BYTE.vector, values()) == "'mine'"
        assert error_text(KeyError, vector.__setitem__, slice(0, 1), values()) == "'mine'"
        assert numbers(vector) == [0, 1, 2, 3]


class TestEmptyAndLarge:
    def test_there_is_no_element(self):
        empty = BYTE.vector()
        assert error_text(IndexError, empty.pop) == error_text(IndexError, empty.pop_back) == "pop from empty container"
        assert error_text(IndexError, empty.front) == error_text(IndexError, empty.back) == "index out of range"
        for read in (empty.iterator().value, empty.begin().value, empty.end().next):
            with pytest.raises(StopIteration):
                read()
        assert numpy.asarray(FLOAT3.vector()).shape == (0, 3)

    def test_impossible_sizes(self, vector):
        for call in (vector.resize, vector.reserve):
            with pytest.raises(RuntimeError):
                call(2**63)
            with pytest.raises(TypeError if call == vector.resize else OverflowError):
                call(-1)
        assert numbers(vector) == [0, 1, 2, 3]


class TestElements:
    def test_a_proxy_keeps_its_vector(self):
        vector = BYTE.fill(4)
        elements = [vector[0], vector.front(), vector.back()]
        assert all(getattr(element, CONTAINER) is vector and not element.thisown for element in elements)
        alive = weakref.ref(vector)
        del vector
        gc.collect()
        assert numbers(elements) == [0, 0, 3] and alive() is not None
        elements.clear()
        gc.collect()
        assert alive() is None

    def test_a_proxy_stands_for_its_position(self, vector):
        first, last = vector[0], vector[-1]
        for i in range(1000):
            vector.append(BYTE.make(i % 200))
        vector[0] = BYTE.make(50)
        assert numbers((first, last)) == [50, 3]
        del vector[0]
        assert numbers((first, last)) == [1, 0]
        other = BYTE.vector(1)
        vector.swap(other)
        assert numbers((first, last)) == [0, 0] and last.thisown and not first.thisown

    def test_a_proxy_whose_position_is_gone_owns_a_copy(self):
        vector = BYTE.fill(4)
        first, last, plain = vector[0], vector[3], vector[3].this
        vector.pop_back()
        assert last[0] == 3 and last.thisown and not first.thisown
        memoryview(last)[0] = 8
        vector.clear()
        vector.resize(4)
        assert numbers((first, last)) == [0, 8] and first.thisown
        assert _zorOSG.NeoCameraOutputValue1U8___getitem__(plain, 0) == 3
        kept = vector[0]
        plain = vector[1].this
        delattr(kept, CONTAINER)
        del vector, first, last
        gc.collect()
        assert kept[0] == 0 and kept.thisown and _zorOSG.NeoCameraOutputValue1U8___getitem__(plain, 0) == 0

    def test_any_sequence_of_changes(self):
        draw = random.Random(1)
        vector, model, proxies = BYTE.vector(), [], []  # proxies: [proxy, position or None, value once it is gone]
        changes = {
            "append": lambda i, j, new: (vector.append(BYTE.make(*new[:1])), model.append(new[0])),
            "insert": lambda i, j, new: (vector.insert(vector.begin() + i, j, BYTE.make(new[0])),
                                         model.__setitem__(slice(i, i), new[:1] * j)),
            "erase": lambda i, j, new: (vector.erase(vector.begin() + i, vector.begin() + j), model.__delitem__(slice(i, j))),
            "assign": lambda i, j, new: (vector.__setitem__(slice(i, j), map(BYTE.make, new)),
                                         model.__setitem__(slice(i, j), new)),
            "delete": lambda i, j, new: (vector.__delitem__(slice(i, None, 3)), model.__delitem__(slice(i, None, 3))),
            "reserve": lambda i, j, new: vector.reserve(vector.capacity() + j),
            "clear": lambda i, j, new: (vector.clear(), model.clear())}
        names = draw.choices([*changes], [9, 5, 5, 5, 3, 3, 1], k=3000)
        for name in names:
            i, j = sorted((draw.randint(0, len(model)), draw.randint(0, len(model))))
            if model and len(proxies) < 40:
                position = draw.randrange(len(model))
                proxies.append([vector[position], position, None])
            before = model[:]
            changes[name](i, min(j, i + 9) if name == "insert" else j, draw.choices(range(256), k=draw.randint(1, 9)))
            assert numbers(vector) == model
            for entry in proxies:
                if entry[1] is not None and entry[1] >= len(model):
                    entry[1:] = [None, before[entry[1]]]
                assert entry[0][0] == (entry[2] if entry[1] is None else model[entry[1]]), name
                assert entry[0].thisown == (entry[1] is None)
            if len(proxies) == 40:
                del proxies[:draw.randint(1, 40)]

    def test_pop_and_iteration_copy(self, vector):
        for value in (vector.pop(), next(iter(vector)), vector.begin().value()):
            assert value.thisown and not hasattr(value, CONTAINER)


class TestBuffer:
    RESIZING = {
        "append": lambda v: v.append(v[0]), "push_back": lambda v: v.push_back(v[0]), "pop": lambda v: v.pop(),
        "pop_back": lambda v: v.pop_back(), "clear": lambda v: v.clear(), "resize": lambda v: v.resize(9),
        "resize with": lambda v: v.resize(1, v[0]), "reserve": lambda v: v.reserve(1000),
        "assign": lambda v: v.assign(2, v[0]), "insert": lambda v: v.insert(v.begin(), v[0]),
        "insert many": lambda v: v.insert(v.begin(), 5, v[0]), "erase": lambda v: v.erase(v.begin()),
        "erase range": lambda v: v.erase(v.begin(), v.end()), "delete": lambda v: v.__delitem__(0),
        "delete slice": lambda v: v.__delitem__(slice(0, 2)), "delete by assignment": lambda v: v.__setitem__(slice(2)),
        "grow": lambda v: v.__setitem__(slice(0, 1), v), "shrink": lambda v: v.__setitem__(slice(0, 2), [v[0]]),
        "old delete": lambda v: v.__delslice__(0, 1), "old assignment": lambda v: v.__setslice__(0, 1),
        "swap": lambda v: v.swap(BYTES.vector(1)), "swap from": lambda v: BYTES.vector(1).swap(v)}

    @pytest.mark.parametrize("resize", RESIZING.values(), ids=RESIZING)
    def test_what_would_move_the_storage_is_refused(self, resize):
        vector = BYTES.fill(4)
        rows, array = numpy.asarray(vector).tolist(), numpy.asarray(vector)
        with pytest.raises(BufferError):
            resize(vector)
        assert array.tolist() == rows and len(vector) == 4
        vector[0], vector[1:3] = vector[1], vector[2:4]
        vector[4:] = []
        del vector[9:]
        assert array.tolist() == [rows[1], rows[2], rows[3], rows[3]]
        del array
        resize(vector)

    def test_pixels_in_rows(self):
        vector = FLOAT3.fill(4)
        view = memoryview(vector)
        assert (view.shape, view.strides, view.format, view.readonly) == ((4, 3), (12, 4), "f", False)
        assert view.obj is vector and view.c_contiguous and view.nbytes == 48
        array = numpy.asarray(vector)
        array[2] = (7, 8, 9)
        assert list(vector[2]) == [7, 8, 9] and array.ctypes.data == int(vector[0].this)
        assert bytes(vector) == array.tobytes()
        assert numpy.frombuffer(vector, numpy.float32).tolist() == array.ravel().tolist()

    def test_it_keeps_the_vector(self):
        vector = FLOAT3.fill(2)
        alive = weakref.ref(vector)
        first, second = numpy.asarray(vector), memoryview(vector)
        del vector
        gc.collect()
        second.release()
        assert first.sum() == 15 and alive() is not None
        del first, second
        gc.collect()
        assert alive() is None

    def test_an_elements_buffer_holds_the_storage(self):
        vector = FLOAT3.fill(2)
        view = memoryview(vector[1])
        assert error_text(BufferError, vector.clear) == "a buffer of this vector is in use: it can't be resized"
        view[0] = 50
        assert vector[1][0] == 50
        view.release()
        element = vector[1]
        vector.clear()
        with memoryview(element):
            vector.resize(5)

    def test_subclasses(self):
        class Image(FLOAT3.vector):
            pass

        image = Image(2)
        with memoryview(image) as view:
            assert view.shape == (2, 3) and view.obj is image
            with pytest.raises(BufferError):
                image.append(image[0])
        image.append(image[0])


class TestIterators:
    def test_reading_and_moving(self, vector):
        at = vector.iterator()
        assert isinstance(at, zorOSG.SwigPyIterator) and iter(at) is at
        assert (at.value()[0], at.next()[0], next(at)[0], at.value()[0], at.previous()[0]) == (0, 0, 1, 2, 1)
        assert at.incr().value()[0] == 2 and at.incr(1).value()[0] == 3 and at.decr(3).value()[0] == 0
        assert at.advance(2).value()[0] == 2 and at.advance(-1).value()[0] == 1 and at.advance(0).value()[0] == 1
        assert at.incr().thisown is False and at.copy().thisown is True
        moved = at = vector.begin()
        at += 3
        assert at is moved and at.thisown and at.value()[0] == 3
        at -= 2
        assert (at.value()[0], (at + 1).value()[0], (at - 1).value()[0], at.value()[0]) == (1, 2, 0, 1)

    def test_a_closed_one_stops_at_its_ends(self, vector):
        at = vector.iterator()
        for stop in (lambda: at.incr(5), at.value, at.next, at.__next__, lambda: at.advance(1), lambda: at + 1):
            with pytest.raises(StopIteration) as error:
                stop()
            assert error.value.value is None
        assert at.previous()[0] == 3
        for stop in (lambda: at.decr(2**64 - 1), at.previous, lambda: at - 1, lambda: at.__isub__(1)):
            with pytest.raises(StopIteration):
                stop()
        assert at.value()[0] == 0 and at.thisown

    def test_an_open_one_is_safe_anywhere(self, vector):
        at = vector.end()
        for outside in (at, at + 5, vector.begin() - 1, at + 2**62, at - 2**62, at.copy().advance(-2**63)):
            with pytest.raises(StopIteration):
                outside.value()
        assert (at + 5 - 6).value()[0] == 3

    def test_distance_and_comparison(self, vector):
        begin, end = vector.begin(), vector.end()
        assert end - begin == begin.distance(end) == 4 and begin - end == -4
        assert begin == vector.begin() and begin != end and begin + 4 == end and begin.equal(vector.iterator())
        assert begin != BYTE.vector(4).begin()
        assert (begin == 5, begin != 5) == (False, True)
        for operation in ("__eq__", "__ne__", "__add__", "__sub__"):
            assert getattr(begin, operation)("x") is NotImplemented
            assert getattr(_zorOSG, f"SwigPyIterator_{operation}")(begin, 1, 1) is NotImplemented
        with pytest.raises(TypeError):
            begin + "x"

    def test_kinds_do_not_mix(self, vector):
        at, other = vector.begin(), BYTES.vector(1).begin()
        for call in (at.equal, at.distance):
            with pytest.raises(zor.invalid_argument, match="^bad iterator type$") as error:
                call(other)
            assert isinstance(error.value, RuntimeError)
        for call in (lambda: at == other, lambda: at != other, lambda: at - other):
            assert error_text(RuntimeError, call) == "bad iterator type"

    def test_they_keep_the_vector_and_survive_its_changes(self):
        opened, closed = BYTE.fill(3).begin() + 1, BYTE.fill(3).iterator()
        gc.collect()
        assert opened.value()[0] == 1 and numbers(closed) == [0, 1, 2]
        vector = BYTE.fill(3)
        opened, closed = vector.begin() + 2, vector.iterator()
        vector.resize(5000)
        assert opened.value()[0] == 2 and len([*closed.copy()]) == 3
        vector.resize(1)
        assert numbers(closed) == [0]
        with pytest.raises(StopIteration):
            opened.value()

    def test_handles_keep_the_iterator(self, vector):
        assert vector.iterator().incr().incr().value()[0] == 2
        handle = vector.begin()
        for _ in range(5000):
            handle = handle.incr(0)
        gc.collect()
        assert handle.value()[0] == 0

    def test_insert_and_erase(self, vector):
        place = vector.insert(vector.begin() + 1, BYTE.make(9))
        assert place.value()[0] == 9 and numbers(vector) == [0, 9, 1, 2, 3]
        assert vector.insert(vector.iterator(), 2, BYTE.make(7)) is None
        assert vector.erase(vector.begin() + 2).value()[0] == 9
        assert vector.erase(vector.begin(), vector.begin() + 3).value()[0] == 1
        assert vector.erase(vector.begin(), vector.begin()) == vector.begin() and numbers(vector) == [1, 2, 3]

    def test_positions_must_lie_in_the_vector(self, vector):
        value, foreign, kind = BYTE.value(), BYTE.fill(4).begin(), BYTES.vector(1).begin()
        outside, begin, end = vector.end() + 1, vector.begin(), vector.end()
        for call in (lambda: vector.insert(foreign, value), lambda: vector.insert(foreign, 3, value),
                     lambda: vector.erase(foreign), lambda: vector.erase(begin, foreign), lambda: vector.erase(end, begin)):
            with pytest.raises(ValueError):
                call()
        for call in (lambda: vector.insert(outside, value), lambda: vector.erase(end), lambda: vector.erase(begin - 1),
                     lambda: vector.erase(begin, outside)):
            with pytest.raises(IndexError):
                call()
        for call in (lambda: vector.insert(kind, value), lambda: vector.insert(0, value), lambda: vector.erase(None)):
            assert "Wrong number or type of arguments" in error_text(TypeError, call)
        assert numbers(vector) == [0, 1, 2, 3]

    def test_arguments(self, vector):
        at = vector.begin()
        assert error_text(TypeError, _zorOSG.SwigPyIterator_incr, at, -1) == mismatch(
            "SwigPyIterator_incr", "swig::SwigPyIterator::incr(size_t)", "swig::SwigPyIterator::incr()")
        assert error_text(OverflowError, at.advance, 2**63) == wrong("SwigPyIterator_advance", 2, "ptrdiff_t")
        assert error_text(TypeError, at.equal, 5) == wrong("SwigPyIterator_equal", 2, "swig::SwigPyIterator const &")
        with pytest.raises(TypeError):
            at += "x"
        assert at.thisown
        with pytest.raises(AttributeError):
            zorOSG.SwigPyIterator()
