// Arrays of a geometry: sequences whose storage is a buffer, of one row an element.

OSG_BASE_CLASS(osg, BufferData)
OSG_BASE_CLASS(osg, Array)

%{
#include "runtime/SceneArrays.h"

template <class Container>
static PyObject* zorReadElements(Container& container, PyObject* values) {
  std::string const elements = zorBinding::readElements(zorBinding::storageOf(container), values);
  return PyBytes_FromStringAndSize(elements.data(), static_cast<Py_ssize_t>(elements.size()));
}

// Puts elements, as they were read, in the place of those from first to last - 1.
template <class Container>
static void zorSpliceElements(Container& container, std::ptrdiff_t first, std::ptrdiff_t last, PyObject* elements) {
  zorBinding::Storage const storage = zorBinding::storageOf(container);
  if (first < 0 || last < first || last > static_cast<std::ptrdiff_t>(storage.size)) throw std::out_of_range("index out of range");
  if (!PyBytes_Check(elements) || static_cast<std::size_t>(PyBytes_GET_SIZE(elements)) % storage.elementSize() != 0)
    throw std::invalid_argument("elements are expected as they lie in memory");
  std::string const bytes(PyBytes_AS_STRING(elements), static_cast<std::size_t>(PyBytes_GET_SIZE(elements)));
  zorBinding::spliceElements(container, static_cast<std::size_t>(first), static_cast<std::size_t>(last - first), bytes);
}
%}

// Buffers over memory that may move: who moves it asks first. Counted by object, for each may have several proxies.
%pythoncode %{
_buffers: dict[int, int] = {}


def _check_unused(what: Referenced) -> None:
    """Raises BufferError while a buffer shows the memory of an object."""
    if what._address() in _buffers:
        raise BufferError("a buffer of this array or image is in use: its memory can't be moved")


def _lend_buffer(owner: Referenced) -> None:
    address = owner._address()
    _buffers[address] = _buffers.get(address, 0) + 1


def _take_buffer_back(owner: Referenced) -> None:
    address = owner._address()
    _buffers[address] -= 1
    if not _buffers[address]:
        del _buffers[address]
%}

// What arrays and primitive sets with indices have in common.
%define OSG_ELEMENTS(CLASS, ELEMENT)
ZOR_SEQUENCE_GUARD(osg::CLASS::_splice)
%extend osg::CLASS {
  PyObject* _memory() { return zorBinding::viewOf(zorBinding::storageOf(*$self)); }
  PyObject* _read(PyObject* values) { return zorReadElements(*$self, values); }
  void _splice(ptrdiff_t first, ptrdiff_t last, PyObject* elements) { zorSpliceElements(*$self, first, last, elements); }
  %pythoncode %{
    def _place(self, index: int) -> int:
        if not -len(self) <= index < len(self):
            raise IndexError("index out of range")
        return index % len(self)

    def _change(self, first: int, last: int, values: Iterable[ELEMENT]) -> None:
        elements = self._read(values)
        _check_unused(self)
        self._splice(first, last, elements)

    def append(self, value: ELEMENT) -> None:
        """Adds an element at the end."""
        self._change(len(self), len(self), [value])

    def extend(self, values: Iterable[ELEMENT]) -> None:
        """Adds the elements of an iterable, or of a buffer, at the end."""
        self._change(len(self), len(self), values)

    def insert(self, index: int, value: ELEMENT) -> None:
        """Inserts an element before a position."""
        first = min(max(index + len(self) if index < 0 else index, 0), len(self))
        self._change(first, first, [value])

    def assign(self, values: Iterable[ELEMENT]) -> None:
        """Replaces all elements by those of an iterable or of a buffer."""
        self._change(0, len(self), values)

    def clear(self) -> None:
        """Removes all elements."""
        self._change(0, len(self), [])

    def __bool__(self) -> bool:
        return True

    def __setitem__(self, index: int, value: ELEMENT, /) -> None:
        place = self._place(index)
        self._splice(place, place + 1, self._read([value]))

    def __delitem__(self, index: int, /) -> None:
        place = self._place(index)
        self._change(place, place + 1, [])

    def __buffer__(self, flags):
        view = self._memory()
        _lend_buffer(self)
        return view

    def __release_buffer__(self, view):
        _take_buffer_back(self)
  %}
}
%enddef

OSG_ELEMENTS(Array, float | Iterable[float])

namespace osg {

class BufferData : public Object {
public:
  /** Has what the graphics card holds replaced before the next frame: after changes through a buffer. */
  virtual void dirty();
};

/**
 * Values of the vertices of a geometry: a sequence, whose storage numpy.asarray() shows without a copy. After changing numbers
 * through such a view call dirty() of the geometry. While a view is alive the number of elements can't change.
 */
class Array : public BufferData {
public:
  enum Binding { BIND_UNDEFINED = -1, BIND_OFF = 0, BIND_OVERALL = 1, BIND_PER_PRIMITIVE_SET = 2, BIND_PER_VERTEX = 4 };
  unsigned int getNumElements() const;
  /** \return numbers in an element */
  int getDataSize() const;
  /** \return whether there is an element for each vertex, for each primitive set, or one for all */
  Binding getBinding() const;
  void setBinding(Binding binding);
  /** \param normalize - true: integers stand for numbers from 0, or -1, to 1 */
  void setNormalize(bool normalize);
  bool getNormalize() const;
};
%extend Array {
  size_t __len__() const { return $self->getNumElements(); }
}

} // namespace osg

%define OSG_ARRAY(NAME, VALUE, DESCRIPTION)
OSG_OWNED(NAME)
ZOR_SEQUENCE_GUARD(osg::NAME::_get)
namespace osg {
/** DESCRIPTION */
class NAME : public Array {
public:
  NAME();
};
%extend NAME {
  /** \param values - elements from an iterable, or rows of a buffer; one of the same kind of number is copied at once */
  NAME(PyObject* values) {
    osg::ref_ptr<osg::NAME> array = new osg::NAME;
    zorBinding::spliceElements(*array, 0, 0, zorBinding::readElements(zorBinding::storageOf(*array), values));
    return array.release();
  }
  VALUE _get(ptrdiff_t index) const { return (*$self)[zorBinding::checkedIndex(index, $self->size())]; }
  %pythoncode %{
    def __getitem__(self, index):
        if isinstance(index, slice):
            return type(self)([self._get(i) for i in range(*index.indices(len(self)))])
        return self._get(index)

    def tolist(self):
        """Returns the elements as a list of numbers, or of lists of numbers."""
        return self._memory().tolist()
  %}
}
}
%enddef

OSG_ARRAY(Vec2Array, osg::Vec2f, Pairs of numbers of single precision: texture coordinates.)
OSG_ARRAY(Vec3Array, osg::Vec3f, Triples of numbers of single precision: vertices and normals and colours.)
OSG_ARRAY(Vec4Array, osg::Vec4f, Quadruples of numbers of single precision: colours with an alpha value.)
OSG_ARRAY(Vec2dArray, osg::Vec2d, Pairs of numbers of double precision.)
OSG_ARRAY(Vec3dArray, osg::Vec3d, Triples of numbers of double precision: vertices far from the origin.)
OSG_ARRAY(Vec4dArray, osg::Vec4d, Quadruples of numbers of double precision.)
OSG_ARRAY(Vec4ubArray, osg::Vec4ub, Quadruples of numbers from 0 to 255: colours in a quarter of the memory; which a geometry takes for numbers from 0 to 1.)
OSG_ARRAY(FloatArray, float, Numbers of single precision.)
OSG_ARRAY(DoubleArray, double, Numbers of double precision.)
OSG_ARRAY(UIntArray, unsigned int, Integers from 0 to 2^32 - 1.)
OSG_ARRAY(UShortArray, unsigned short, Integers from 0 to 65535.)
OSG_ARRAY(UByteArray, unsigned char, Integers from 0 to 255.)
OSG_ARRAY(IntArray, int, Integers of 32 bits.)
