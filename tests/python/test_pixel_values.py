"""Values of camera outputs: forty classes that hold the channels of one pixel."""

import gc
import weakref
from collections.abc import Buffer

import numpy
import pytest

import _zorOSG
import zorOSG
from conventions import error_text, mismatch, wrong
from pixels import ELEMENTS, PIXELS, Pixel

every_pixel = pytest.mark.parametrize("pixel", PIXELS, ids=lambda pixel: pixel.name)
every_element = pytest.mark.parametrize("element", ELEMENTS, ids=lambda element: element.suffix)


def flat(pixel, method):
    return getattr(_zorOSG, f"{pixel.name}_{method}")


@every_pixel
def test_a_new_value_is_zero_and_nothing_but_its_channels(pixel):
    value = pixel.value()
    assert list(value) == [0] * pixel.channels and value.thisown
    assert len(value) == flat(pixel, "__len__")(value) == pixel.channels
    assert {type(channel) for channel in value} == {float if pixel.element.format in "fd" else int}
    view = memoryview(value)
    assert (view.shape, view.format) == ((pixel.channels,), pixel.element.format)
    assert view.nbytes == pixel.channels * numpy.dtype(pixel.element.dtype).itemsize
    assert error_text(IndexError, flat(pixel, "__getitem__"), value, pixel.channels) == "index"


@every_pixel
def test_channels_keep_the_whole_range(pixel):
    limits = numpy.iinfo if numpy.issubdtype(pixel.element.dtype, numpy.integer) else numpy.finfo
    ends = [limits(pixel.element.dtype).max, limits(pixel.element.dtype).min, 1, 0][:pixel.channels]
    value = pixel.make(*ends)
    assert list(value) == ends
    twin = pixel.value(value)
    memoryview(value)[0] = 0
    assert list(twin) == ends and list(value) != ends


def test_single_precision_is_widened():
    assert Pixel(ELEMENTS[6], 1).make(0.1)[0] == 0.10000000149011612


@every_element
def test_channels_cross_as_a_pointer(element):
    pixel, other = Pixel(element, 2), Pixel(ELEMENTS[ELEMENTS.index(element) - 1], 2)
    value, source = pixel.make(1, 2), pixel.make(3, 4)
    pointer = flat(pixel, "channels_get")(source)
    assert pointer.own() == 0 and numpy.asarray(source).ctypes.data == int(pointer)
    flat(pixel, "channels_set")(value, pointer)
    assert list(value) == [3, 4]
    kind = f"{element.spelling} [2]"
    name = f"{pixel.name}_channels_set"
    for refused in (flat(other, "channels_get")(other.value()), [1, 2], value):
        assert error_text(TypeError, flat(pixel, "channels_set"), value, refused) == wrong(name, 2, kind)
    assert error_text(TypeError, flat(pixel, "channels_set"), value, None) == \
        f"invalid null reference in variable 'channels' of type '{kind}'"
    assert list(value) == [3, 4]


@every_element
def test_messages_spell_the_type(element):
    pixel = Pixel(element, 1)
    kind = f"zorOSG::NeoCameraOutputValue< {element.argument},1 >"
    assert error_text(TypeError, pixel.value, 5) == mismatch(
        f"new_{pixel.name}", f"{kind}::NeoCameraOutputValue()", f"{kind}::NeoCameraOutputValue({kind} const &)")
    for other in (5, Pixel(element, 2).value()):
        assert error_text(TypeError, flat(pixel, "__getitem__"), other, 0) == \
            wrong(f"{pixel.name}___getitem__", 1, f"{kind} const *")
    value = pixel.value()
    index = wrong(f"{pixel.name}___getitem__", 2, "size_t")
    assert error_text(OverflowError, value.__getitem__, -1) == index
    assert error_text(OverflowError, value.__getitem__, 2**64) == index
    assert error_text(TypeError, value.__getitem__, 0.0) == index


class TestBuffer:
    def test_it_is_writable_without_a_copy_and_keeps_the_value(self):
        value = zorOSG.NeoCameraOutputValue3F32()
        view = memoryview(value)
        assert view.obj is value and not view.readonly and view.c_contiguous and isinstance(value, Buffer)
        array = numpy.asarray(value)
        array[:] = (1, 2, 3)
        view[0] = 9
        alive = weakref.ref(value)
        del value, view
        gc.collect()
        assert list(alive()) == array.tolist() == [9, 2, 3]
        del array
        gc.collect()
        assert alive() is None

    def test_subclasses_have_it_and_may_replace_it(self):
        class Named(zorOSG.NeoCameraOutputValue2U8):
            pass

        class Other(Named):
            def __buffer__(self, flags):
                return memoryview(b"other")

        class Unmade(Named):
            def __init__(self):
                pass

        named = Named()
        assert memoryview(named).obj is named and bytes(named) == b"\0\0"
        assert bytes(Other()) == b"other"
        with pytest.raises(BufferError):
            memoryview(Unmade())

    def test_simple_buffers(self):
        assert bytes(zorOSG.NeoCameraOutputValue2U16()) == bytes(4)
        assert bytearray(Pixel(ELEMENTS[1], 3).make(1, 2, 3)) == b"\x01\x02\x03"
