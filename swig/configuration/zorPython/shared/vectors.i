// The toolkit's vector for element types that Python knows by value. It behaves like a list that holds one type:
// made from any iterable, indexed, sliced, changed; numbers and vectors of numbers show their storage as a buffer
// (numpy.asarray copies nothing). While such a view is alive, whatever would move the storage raises BufferError.

%{
#include <zor/Vec2.h>
#include <zor/Vec3.h>
#include <zor/Vector.h>
#include "runtime/DynamicType.h"
#include "runtime/VectorRuntime.h"
#include <memory>
%}

namespace zor {

template <class T>
class Vector {
public:
  Vector();
  ~Vector();
  size_t capacity() const;
};

typedef Vector<double> RealVector;
typedef Vector<float> FloatVector;
typedef Vector<int64_t> IntVector;
typedef Vector<uint64_t> UIntVector;
typedef Vector<uint32_t> UInt32Vector;
typedef Vector<uint8_t> UInt8Vector;
typedef Vector<std::string> StringVector;

} // namespace zor

// Where a vector is read, an iterable may stand in its place: MAKER makes a vector of it.
%define ZOR_ITERABLE_TYPEMAPS(MAKER, PARAMETER...)
%typemap(in) PARAMETER (void* argp = nullptr, std::unique_ptr<$*1_ltype> made) {
  int const res = SWIG_ConvertPtr($input, &argp, $descriptor, 0);
  if (SWIG_IsOK(res) && !argp) {
    SWIG_exception_fail(SWIG_NullReferenceError, "invalid null reference in method '$symname', argument $argnum of type '$1_type'");
  }
  if (SWIG_IsOK(res)) {
    $1 = reinterpret_cast<$1_ltype>(argp);
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
%typemap(freearg) PARAMETER ""
%typemap(typecheck, precedence=SWIG_TYPECHECK_POINTER) PARAMETER {
  void* pointer = nullptr;
  $1 = (SWIG_IsOK(SWIG_ConvertPtr($input, &pointer, $descriptor, SWIG_POINTER_NO_NULL)) || zorIsIterable($input)) ? 1 : 0;
}
%enddef

// The modules of simulation objects take any iterable or buffer wherever they read a vector of this type. (The
// visualisation layer only takes wrapped vectors, but for the functions that say otherwise.)
%define ZOR_ITERABLE_ARGUMENT(TYPE, MAKER...)
#ifndef ZOR_BORROWED_RESULTS
ZOR_ITERABLE_TYPEMAPS(%arg(MAKER), TYPE const&)
#endif
%enddef

%typemap(out) void __iadd__ "$result = Py_NewRef(swig_obj[0]);"

// What lists can do, for a VECTOR of elements that come out as OUT and go in as IN; `values` is read by MAKER.
%define ZOR_SEQUENCE(VECTOR, NAME, OUT, IN, MAKER...)
#ifndef ZOR_BORROWED_RESULTS
ZOR_ITERABLE_TYPEMAPS(%arg(MAKER), VECTOR const& values)
#endif
ZOR_SEQUENCE_GUARD(VECTOR::__getitem__)
ZOR_SEQUENCE_GUARD(VECTOR::__setitem__)
ZOR_SEQUENCE_GUARD(VECTOR::__delitem__)
%typemap(out) VECTOR* __getitem__, VECTOR* __add__ "$result = SWIG_NewPointerObj($1, $descriptor, SWIG_POINTER_OWN);"
%feature("python:maybecall") VECTOR::__add__;
%extend VECTOR {
  /** \param values - elements; another vector, an array or any iterable */
  NAME(VECTOR const& values) { return new VECTOR(values); }
  size_t __len__() const { return $self->size(); }
  OUT __getitem__(ptrdiff_t index) const {
    return zorBinding::elementOf<OUT>((*$self)[zorBinding::checkedIndex(index, $self->size())]);
  }
  VECTOR* __getitem__(PyObject* slice) const { return zorBinding::newSlice(*$self, slice); }
  void __setitem__(ptrdiff_t index, IN element) {
    (*$self)[zorBinding::checkedIndex(index, $self->size())] = VECTOR::value_type(element);
  }
  void __setitem__(PyObject* slice, VECTOR const& values) { zorBinding::assignElements(*$self, slice, values); }
  void __delitem__(ptrdiff_t index) { zorBinding::popElement(*$self, index); }
  void __delitem__(PyObject* slice) { zorBinding::eraseSlice(*$self, slice); }
  VECTOR* __add__(VECTOR const& values) const {
    auto sum = std::make_unique<VECTOR>(*$self);
    zorBinding::insertAll(*sum, sum->size(), values);
    return sum.release();
  }
  /** Removes all elements. */
  void clear() {
    zorBinding::refuseIfShown($self);
    $self->clear();
  }
  /** Makes room for a number of elements. */
  void reserve(size_t capacity) {
    zorBinding::refuseIfShown($self);
    $self->reserve(capacity);
  }
  /** Adds an element at the end. */
  void append(IN element) {
    zorBinding::refuseIfShown($self);
    $self->push_back(VECTOR::value_type(element));
  }
  /** Adds the elements of an iterable at the end. */
  void extend(VECTOR const& values) { zorBinding::insertAll(*$self, $self->size(), values); }
  /** Inserts an element before a position. */
  void insert(ptrdiff_t index, IN element) {
    zorBinding::insertElement(*$self, index, VECTOR::value_type(element));
  }
  /** Reverses the order of the elements. */
  void reverse() { std::reverse($self->begin(), $self->end()); }
  void __iadd__(VECTOR const& values) { zorBinding::insertAll(*$self, $self->size(), values); }
}
ZOR_COPIED(%arg(VECTOR))
%enddef

%define ZOR_POP(VECTOR, OUT)
ZOR_SEQUENCE_GUARD(VECTOR::pop)
%extend VECTOR {
  /** Removes an element, by default the last, and returns it. */
  OUT pop(ptrdiff_t index = -1) { return zorBinding::popElement(*$self, index); }
}
%enddef

// What depends on the equality of elements.
%define ZOR_SEQUENCE_EQUALITY(VECTOR, IN)
ZOR_SEQUENCE_GUARD(VECTOR::index)
ZOR_SEQUENCE_GUARD(VECTOR::remove)
%feature("python:maybecall") VECTOR::__eq__;
%feature("python:maybecall") VECTOR::__ne__;
%extend VECTOR {
  bool __eq__(VECTOR const& other) const { return *$self == other; }
  bool __ne__(VECTOR const& other) const { return !(*$self == other); }
  bool __contains__(IN sought) const {
    return std::find($self->begin(), $self->end(), VECTOR::value_type(sought)) != $self->end();
  }
  bool __contains__(PyObject* anything) const {
    (void)$self, (void)anything;
    return false;
  }
  /** \return position of the first equal element in a range; ValueError if there is none */
  size_t index(IN element, ptrdiff_t start = 0, ptrdiff_t stop = PTRDIFF_MAX) const {
    return zorBinding::indexOf(*$self, VECTOR::value_type(element), start, stop);
  }
  /** \return number of equal elements */
  size_t count(IN element) const {
    return static_cast<size_t>(std::count($self->begin(), $self->end(), VECTOR::value_type(element)));
  }
  /** Removes the first equal element; ValueError if there is none. */
  void remove(IN element) { zorBinding::removeElement(*$self, VECTOR::value_type(element)); }
}
%enddef

%define ZOR_SORTED(VECTOR)
%extend VECTOR {
  /** Sorts the elements, ascending unless reverse is True; what is no number comes last. */
  void sort(bool reverse = false) { zorBinding::sortElements(*$self, reverse); }
}
%enddef

%define ZOR_PICKLED_MEMORY(VECTOR)
%extend VECTOR {
  %pythoncode %{
    def __buffer__(self, flags):
        return self._memory()

    def tolist(self):
        """Returns the numbers as lists of Python."""
        return memoryview(self).tolist()

    def __reduce__(self):
        return (type(self), (self.tolist(),))
  %}
}
%enddef

// A vector of numbers.
%define ZOR_NUMBER_VECTOR(NAME, SCALAR)
ZOR_SEQUENCE(zor::Vector<SCALAR>, Vector, SCALAR, SCALAR, zorBinding::newNumberVector<SCALAR>)
ZOR_POP(zor::Vector<SCALAR>, SCALAR)
ZOR_SEQUENCE_EQUALITY(zor::Vector<SCALAR>, SCALAR)
ZOR_SORTED(zor::Vector<SCALAR>)
ZOR_PICKLED_MEMORY(zor::Vector<SCALAR>)
%extend zor::Vector<SCALAR> {
  std::string __repr__() const { return zorBinding::numberVectorText(#NAME, *$self); }
  PyObject* _memory(PyObject* OWNER) { return zorBinding::memoryOfNumbers(*$self, OWNER); }
}
%template(NAME) zor::Vector<SCALAR>;
%enddef

// A vector of values that hold COUNT numbers each; its buffer has two dimensions. An element may be given as any
// iterable of numbers.
%define ZOR_VALUE_VECTOR(NAME, VALUE, COUNT)
ZOR_SEQUENCE(zor::Vector< VALUE >, Vector, VALUE, VALUE const&, %arg(zorBinding::newValueVector< VALUE, COUNT >))
ZOR_POP(zor::Vector< VALUE >, VALUE)
ZOR_SEQUENCE_EQUALITY(zor::Vector< VALUE >, VALUE const&)
ZOR_PICKLED_MEMORY(zor::Vector< VALUE >)
%extend zor::Vector< VALUE > {
  std::string __repr__() const { return zorBinding::valueVectorText<COUNT>(#NAME, *$self); }
  PyObject* _memory(PyObject* OWNER) { return zorBinding::memoryOfValues< VALUE, COUNT >(*$self, OWNER); }
}
%template(NAME) zor::Vector< VALUE >;
%enddef

// A vector of texts; VECTOR is the toolkit's or the standard library's.
%define ZOR_TEXT_VECTOR(NAME, CONSTRUCTOR, VECTOR...)
ZOR_SEQUENCE(%arg(VECTOR), CONSTRUCTOR, std::string, std::string const&, zorBinding::newTextVector< VECTOR >)
ZOR_POP(%arg(VECTOR), std::string)
ZOR_SEQUENCE_EQUALITY(%arg(VECTOR), std::string const&)
ZOR_SORTED(%arg(VECTOR))
%extend VECTOR {
  std::string __repr__() const { return zorBinding::vectorText(#NAME, *$self, zorBinding::quotedText); }
  %pythoncode %{
    def __reduce__(self):
        return (type(self), ([*self],))
  %}
}
%template(NAME) VECTOR;
%enddef

// Objects of an iterable as a new vector of copies or of references.
%{
template <class Vector>
static Vector* zorNewObjectVector(PyObject* values) {
  typedef typename Vector::value_type Element;
  typedef zorBinding::ObjectOf<Element> Object;
  static std::string const name = zorBinding::pointerTypeName(typeid(Object));
  auto vector = std::make_unique<Vector>();
  PyObject* const iterator = PyObject_GetIter(values);
  PyObject* item = nullptr;
  while (iterator && (item = PyIter_Next(iterator))) {
    void* object = nullptr;
    if (SWIG_IsOK(SWIG_ConvertPtr(item, &object, SWIG_TypeQuery(name.c_str()), SWIG_POINTER_NO_NULL))) {
      vector->push_back(zorBinding::elementFor<Element>(static_cast<Object*>(object)));
    } else {
      PyErr_Format(PyExc_TypeError, "an element of type '%s' is expected, not %s", name.c_str(), Py_TYPE(item)->tp_name);
    }
    Py_DECREF(item);
    if (PyErr_Occurred()) break;
  }
  Py_XDECREF(iterator);
  if (PyErr_Occurred()) throw std::runtime_error("the Python error says what is wrong");
  return vector.release();
}
%}

%define ZOR_OBJECT_SEQUENCE(NAME, ELEMENT, OUT, IN)
ZOR_SEQUENCE(zor::Vector< ELEMENT >, Vector, OUT, IN, zorNewObjectVector<zor::Vector< ELEMENT > >)
%extend zor::Vector< ELEMENT > {
  %pythoncode %{
    def __repr__(self):
        return f"{type(self).__name__}({[*self]!r})" if len(self) <= 12 else f"<{type(self).__name__} of {len(self)} elements>"
  %}
}
%template(NAME) zor::Vector< ELEMENT >;
%enddef

// A vector of objects that are copied in and out.
%define ZOR_OBJECT_VECTOR(NAME, VALUE)
ZOR_POP(zor::Vector< VALUE >, VALUE)
ZOR_OBJECT_SEQUENCE(NAME, VALUE, VALUE, VALUE const&)
%enddef

// A vector that holds references to shared objects; POINTER is zor::ref_ptr or osg::ref_ptr.
%define ZOR_REFERENCE_VECTOR(NAME, POINTER, CLASS)
ZOR_SEQUENCE_EQUALITY(zor::Vector<POINTER<CLASS> >, CLASS*)
%extend zor::Vector<POINTER<CLASS> > {
  %pythoncode %{
    def pop(self, index=-1):
        """Removes an element, by default the last, and returns it."""
        element = self[index]
        del self[index]
        return element
  %}
}
ZOR_OBJECT_SEQUENCE(NAME, POINTER<CLASS>, CLASS*, CLASS*)
%enddef

ZOR_ITERABLE_ARGUMENT(zor::RealVector, zorBinding::newNumberVector<double>)
ZOR_ITERABLE_ARGUMENT(zor::UInt32Vector, zorBinding::newNumberVector<uint32_t>)
ZOR_ITERABLE_ARGUMENT(zor::UInt8Vector, zorBinding::newNumberVector<uint8_t>)
ZOR_ITERABLE_ARGUMENT(zor::StringVector, zorBinding::newTextVector<zor::Vector<std::string> >)
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
