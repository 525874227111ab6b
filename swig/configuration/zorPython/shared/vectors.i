// The toolkit's vector for element types that Python knows by value. It behaves like a list that holds one type:
// made from any iterable, indexed, sliced, iterated; numbers and vectors of numbers show their storage as a buffer
// (numpy.asarray copies nothing). While such a view is alive, whatever would move the storage raises BufferError.

%{
#include <zor/Vec2.h>
#include <zor/Vec3.h>
#include <zor/Vector.h>
#include "runtime/VectorRuntime.h"
%}

namespace zor {

template <class T>
class Vector {
public:
  Vector();
  Vector(Vector const& other);
  ~Vector();
  size_t capacity() const;
};

typedef Vector<double> RealVector;
typedef Vector<float> FloatVector;
typedef Vector<uint32_t> UInt32Vector;
typedef Vector<uint8_t> UInt8Vector;

} // namespace zor

// Shared by all element types.
%define ZOR_VECTOR_COMMON(VECTOR)
ZOR_SEQUENCE_GUARD(VECTOR::__getitem__)
ZOR_SEQUENCE_GUARD(VECTOR::_set)
ZOR_SEQUENCE_GUARD(VECTOR::_remove)
ZOR_SEQUENCE_GUARD(VECTOR::_insert)
ZOR_SEQUENCE_GUARD(VECTOR::pop)
%extend VECTOR {
  size_t __len__() const { return $self->size(); }
  void _clear() { $self->clear(); }
  void _reserve(size_t capacity) { $self->reserve(capacity); }
  void _remove(ptrdiff_t index) {
    $self->erase($self->begin() + zorBinding::checkedIndex(index, $self->size()));
  }
  %pythoncode %{
    def _check_resizable(self):
        if self.__dict__.get("_views"):
            raise BufferError("a buffer of this vector is in use: it can't be resized")

    def clear(self):
        """Removes all elements."""
        self._check_resizable()
        self._clear()

    def reserve(self, capacity):
        """Makes room for a number of elements."""
        self._check_resizable()
        self._reserve(capacity)

    def append(self, value):
        """Adds an element at the end."""
        self._check_resizable()
        self._append(value)

    def extend(self, values):
        """Adds the elements of an iterable at the end."""
        for value in values:
            self.append(value)

    def insert(self, index, value):
        """Inserts an element before a position."""
        self._check_resizable()
        self._insert(index, value)

    def __getitem__(self, index):
        if isinstance(index, slice):
            part = type(self)()
            part.extend(self._get(i) for i in range(*index.indices(len(self))))
            return part
        return self._get(index)

    def __setitem__(self, index, value):
        self._set(index, value)

    def __delitem__(self, index):
        self._check_resizable()
        self._remove(index)

    def __contains__(self, value):
        return any(value == element for element in self)

    def __repr__(self):
        if len(self) > 12:
            return f"{type(self).__name__}(<{len(self)} elements>)"
        return f"{type(self).__name__}({[*self]!r})"

    def __reduce__(self):
        return (type(self), ([*self],))
  %}
}
ZOR_SEQUENCE_GUARD(VECTOR::_get)
%enddef

%define ZOR_BUFFER_METHODS(VECTOR)
%extend VECTOR {
  %pythoncode %{
    def __buffer__(self, flags):
        view = self._memory()
        self.__dict__["_views"] = self.__dict__.get("_views", 0) + 1
        return view

    def __release_buffer__(self, view):
        self.__dict__["_views"] -= 1
  %}
}
%enddef

%define ZOR_VECTOR_EQUALITY(VECTOR)
%feature("python:maybecall") VECTOR::__eq__;
%feature("python:maybecall") VECTOR::__ne__;
%extend VECTOR {
  bool __eq__(VECTOR const& other) const { return *$self == other; }
  bool __ne__(VECTOR const& other) const { return !(*$self == other); }
}
%enddef

// A vector of numbers.
%define ZOR_NUMBER_VECTOR(NAME, SCALAR)
ZOR_VECTOR_COMMON(zor::Vector<SCALAR>)
ZOR_VECTOR_EQUALITY(zor::Vector<SCALAR>)
%extend zor::Vector<SCALAR> {
  Vector(PyObject* values) { return zorBinding::newNumberVector<SCALAR>(values); }
  SCALAR _get(ptrdiff_t index) const { return (*$self)[zorBinding::checkedIndex(index, $self->size())]; }
  void _set(ptrdiff_t index, SCALAR value) { (*$self)[zorBinding::checkedIndex(index, $self->size())] = value; }
  void _append(SCALAR value) { $self->push_back(value); }
  void _insert(ptrdiff_t index, SCALAR value) {
    $self->insert($self->begin() + zorBinding::insertionIndex(index, $self->size()), value);
  }
  PyObject* _memory() { return zorBinding::memoryOf($self->data(), {static_cast<long>($self->size())}); }
}
ZOR_BUFFER_METHODS(zor::Vector<SCALAR>)
%template(NAME) zor::Vector<SCALAR>;
%enddef

// A vector of values that hold COUNT numbers each; its buffer has two dimensions.
%define ZOR_VALUE_VECTOR(NAME, VALUE, COUNT)
ZOR_VECTOR_COMMON(zor::Vector< VALUE >)
ZOR_VECTOR_EQUALITY(zor::Vector< VALUE >)
%extend zor::Vector< VALUE > {
  Vector(PyObject* values) { return zorBinding::newValueVector< VALUE, COUNT >(values); }
  VALUE _get(ptrdiff_t index) const { return (*$self)[zorBinding::checkedIndex(index, $self->size())]; }
  void _set(ptrdiff_t index, VALUE const& value) {
    (*$self)[zorBinding::checkedIndex(index, $self->size())] = value;
  }
  void _append(VALUE const& value) { $self->push_back(value); }
  void _insert(ptrdiff_t index, VALUE const& value) {
    $self->insert($self->begin() + zorBinding::insertionIndex(index, $self->size()), value);
  }
  PyObject* _memory() { return zorBinding::memoryOfValues< VALUE, COUNT >(*$self); }
}
ZOR_BUFFER_METHODS(zor::Vector< VALUE >)
%template(NAME) zor::Vector< VALUE >;
%enddef

// A vector of objects that are copied in and out.
%define ZOR_OBJECT_VECTOR(NAME, VALUE)
ZOR_VECTOR_COMMON(zor::Vector< VALUE >)
%extend zor::Vector< VALUE > {
  VALUE _get(ptrdiff_t index) const { return (*$self)[zorBinding::checkedIndex(index, $self->size())]; }
  void _set(ptrdiff_t index, VALUE const& value) {
    (*$self)[zorBinding::checkedIndex(index, $self->size())] = value;
  }
  void _append(VALUE const& value) { $self->push_back(value); }
  void _insert(ptrdiff_t index, VALUE const& value) {
    $self->insert($self->begin() + zorBinding::insertionIndex(index, $self->size()), value);
  }
}
%template(NAME) zor::Vector< VALUE >;
%enddef

// Where a vector of numbers or values is read, the modules of simulation objects take any iterable or buffer in its
// place. (The visualisation layer only takes wrapped vectors, but for the functions that say otherwise.)
%{
#include <memory>

static bool zorIsIterable(PyObject* object) {
  return !PyUnicode_Check(object) && (Py_TYPE(object)->tp_iter || PySequence_Check(object));
}
%}

%define ZOR_ITERABLE_ARGUMENT(TYPE, MAKER...)
#ifndef ZOR_BORROWED_RESULTS
%typemap(in) TYPE const& (void* argp = nullptr, std::unique_ptr<TYPE> made) {
  int const res = SWIG_ConvertPtr($input, &argp, $descriptor, 0);
  if (SWIG_IsOK(res) && !argp) {
    SWIG_exception_fail(SWIG_NullReferenceError, "invalid null reference in method '$symname', argument $argnum of type '$1_type'");
  }
  if (SWIG_IsOK(res)) {
    $1 = reinterpret_cast<TYPE*>(argp);
  } else if (zorIsIterable($input)) {
    try {
      made.reset(MAKER($input));
    } catch (...) {
      zorBinding::setToolkitError();
      SWIG_fail;
    }
    $1 = made.get();
  } else {
    SWIG_exception_fail(SWIG_TypeError, "in method '$symname', argument $argnum of type '$1_type'");
  }
}
%typemap(freearg) TYPE const& ""
%typemap(typecheck, precedence=SWIG_TYPECHECK_POINTER) TYPE const& {
  void* pointer = nullptr;
  $1 = (SWIG_IsOK(SWIG_ConvertPtr($input, &pointer, $descriptor, SWIG_POINTER_NO_NULL)) || zorIsIterable($input)) ? 1 : 0;
}
#endif
%enddef

ZOR_ITERABLE_ARGUMENT(zor::RealVector, zorBinding::newNumberVector<double>)
ZOR_ITERABLE_ARGUMENT(zor::UInt32Vector, zorBinding::newNumberVector<uint32_t>)
ZOR_ITERABLE_ARGUMENT(zor::Vec2Vector, zorBinding::newValueVector<zor::Vec2T<double>, 2>)
ZOR_ITERABLE_ARGUMENT(zor::Vec3Vector, zorBinding::newValueVector<zor::Vec3T<double>, 3>)

// What an object shows of its own data is a copy: a script that changed the numbers of a mesh behind its back would
// lead the engine astray.
%define ZOR_COPIED_RESULT(TYPE)
#ifndef ZOR_BORROWED_RESULTS
%typemap(out) TYPE const& {
  $result = SWIG_NewPointerObj(new TYPE(*$1), $descriptor, SWIG_POINTER_OWN);
}
#endif
%enddef

ZOR_COPIED_RESULT(zor::RealVector)
ZOR_COPIED_RESULT(zor::FloatVector)
ZOR_COPIED_RESULT(zor::UInt32Vector)
ZOR_COPIED_RESULT(zor::UInt8Vector)
ZOR_COPIED_RESULT(zor::Vec2Vector)
ZOR_COPIED_RESULT(zor::Vec3Vector)
