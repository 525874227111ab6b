"""The pixel types of camera outputs, as tests go through them."""

from typing import NamedTuple

import numpy

import zorOSG


class Element(NamedTuple):
    suffix: str
    dtype: type
    format: str  # of the struct module
    spelling: str  # in messages
    argument: str  # as the template's argument is spelled


ELEMENTS = [
    Element("I8", numpy.int8, "b", "signed char", "int8_t"),
    Element("U8", numpy.uint8, "B", "unsigned char", "uint8_t"),
    Element("I16", numpy.int16, "h", "short", "int16_t"),
    Element("U16", numpy.uint16, "H", "unsigned short", "uint16_t"),
    Element("I32", numpy.int32, "i", "int", "int32_t"),
    Element("U32", numpy.uint32, "I", "unsigned int", "uint32_t"),
    Element("F32", numpy.float32, "f", "float", "float"),
    Element("I64", numpy.int64, "l", "long", "int64_t"),
    Element("U64", numpy.uint64, "L", "unsigned long", "uint64_t"),
    Element("F64", numpy.float64, "d", "double", "double"),
]


class Pixel(NamedTuple):
    element: Element
    channels: int

    @property
    def name(self):
        return f"NeoCameraOutputValue{self.channels}{self.element.suffix}"

    @property
    def value(self):
        return getattr(zorOSG, self.name)

    @property
    def vector(self):
        return getattr(zorOSG, self.name + "Vector")

    def make(self, *numbers):
        """A value of the given channels."""
        value = self.value()
        memoryview(value)[:] = numpy.array(numbers, self.element.dtype)
        return value

    def fill(self, count):
        """A vector whose elements count up."""
        vector = self.vector(count)
        numpy.asarray(vector)[:] = numpy.arange(count * self.channels).reshape(count, self.channels)
        return vector


PIXELS = [Pixel(element, channels) for element in ELEMENTS for channels in (1, 2, 3, 4)]
