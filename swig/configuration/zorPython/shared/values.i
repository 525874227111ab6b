// Python manners of small value types that hold COUNT components in a row: made from components or from any sequence of
// them, repr that reads back, comparison, indexing, slices, unpacking, arithmetic, copying, pickling, and a buffer over
// their own memory. Tuples and lists take part in operators like values.
// A type that compares by value and can change has no hash.

%{
#include "runtime/BufferView.h"
#include "runtime/VectorRuntime.h"

static bool zorIsIterable(PyObject* object) {
  return !PyUnicode_Check(object) && (Py_TYPE(object)->tp_iter || PySequence_Check(object));
}

static bool zorIsPlainSequence(PyObject* object) {
  return PyTuple_Check(object) || PyList_Check(object);
}

// Whether overloads may take a tuple or list for a value: it holds as many numbers as that has components.
static bool zorIsLikeValue(PyObject* object, int fewest, int count) {
  if (!zorIsPlainSequence(object)) return false;
  Py_ssize_t const size = PySequence_Fast_GET_SIZE(object);
  bool isLike = fewest <= size && size <= count;
  for (Py_ssize_t i = 0; isLike && i < size; ++i) {
    PyObject* const item = PySequence_Fast_GET_ITEM(object, i);
    isLike = PyNumber_Check(item) && !PySequence_Check(item);
  }
  return isLike;
}

// The wrapped value of an argument, or `read` made of the components that it holds, where `isTaken` says that it may be.
// False, with a Python error set, if it is neither.
template <int Count, class Value>
static bool zorReadValue(PyObject* object, swig_type_info* type, Value*& value, Value& read, bool isTaken,
                         char const* message) {
  void* wrapped = nullptr;
  if (SWIG_IsOK(SWIG_ConvertPtr(object, &wrapped, type, 0))) {
    if (!wrapped) PyErr_Format(PyExc_TypeError, "invalid null reference %s", message);
    value = static_cast<Value*>(wrapped);
    return wrapped != nullptr;
  }
  if (!isTaken) {
    PyErr_SetString(PyExc_TypeError, message);
    return false;
  }
  try {
    zorBinding::readValue<Count>(object, read);
  } catch (...) {
    zorBinding::setToolkitError();
    return false;
  }
  value = &read;
  return true;
}

// A view of memory keeps the proxy alive, and the wrapped object, which a script might take away from the proxy.
static PyObject* zorMemoryOwner(PyObject* proxy) {
  SwigPyObject* const wrapped = SWIG_Python_GetSwigThis(proxy);
  return PyTuple_Pack(2, proxy, wrapped ? reinterpret_cast<PyObject*>(wrapped) : Py_None);
}
%}

// The object of a method as Python has it; looked at when all arguments have been read.
%typemap(in, numinputs=0) PyObject* OWNER "$1 = nullptr;"
%typemap(check) PyObject* OWNER {
  $1 = zorMemoryOwner(swig_obj[0]);
  if (!$1) SWIG_fail;
}
%typemap(freearg) PyObject* OWNER "Py_XDECREF($1);"

%typemap(in) PyObject* slice {
  if (!PySlice_Check($input)) {
    SWIG_exception_fail(SWIG_TypeError, "in method '$symname', argument $argnum of type 'slice'");
  }
  $1 = $input;
}
%typemap(typecheck, precedence=SWIG_TYPECHECK_POINTER) PyObject* slice "$1 = PySlice_Check($input) ? 1 : 0;"

// Anything else: chosen when no other prototype fits.
%typemap(typecheck, precedence=1000) PyObject* anything "$1 = 1;"

#ifndef ZOR_BORROWED_RESULTS
// A position may be any integer of Python's; one that no vector can have is out of range.
%typemap(in) ptrdiff_t index {
  $1 = PyIndex_Check($input) ? PyNumber_AsSsize_t($input, PyExc_IndexError) : -1;
  if (!PyIndex_Check($input)) {
    SWIG_exception_fail(SWIG_TypeError, "in method '$symname', argument $argnum of type 'int'");
  }
  if ($1 == -1 && PyErr_Occurred()) SWIG_fail;
}
%typemap(typecheck, precedence=SWIG_TYPECHECK_INT64) ptrdiff_t index "$1 = PyIndex_Check($input) ? 1 : 0;"
#endif

// Where a value is read, the modules of simulation objects take a tuple or list of its components too (the visualisation
// layer only takes wrapped values). By the name of the parameter: `components` and `element` may be any iterable of
// numbers; `compared` may be anything, which is just not equal.
%define ZOR_VALUE_PARAMETER(TYPE, COUNT, PARAMETER, TEST, PRECEDENCE)
%typemap(in) TYPE const& PARAMETER (TYPE read) {
  if (!zorReadValue<COUNT>($input, $descriptor, $1, read, TEST($input),
                           "in method '$symname', argument $argnum of type '$1_type'")) SWIG_fail;
}
%typemap(freearg) TYPE const& PARAMETER ""
%typemap(typecheck, precedence=PRECEDENCE) TYPE const& PARAMETER {
  $1 = (SWIG_IsOK(SWIG_ConvertPtr($input, nullptr, $descriptor, SWIG_POINTER_NO_NULL)) || TEST($input)) ? 1 : 0;
}
%enddef

%define ZOR_VALUE_PARAMETERS(TYPE, COUNT)
#ifndef ZOR_BORROWED_RESULTS
ZOR_VALUE_PARAMETER(TYPE, COUNT, components, zorIsIterable, 900)
ZOR_VALUE_PARAMETER(TYPE, COUNT, element, zorIsIterable, 900)
ZOR_VALUE_PARAMETER(TYPE, COUNT, , zorIsPlainSequence, 800)
%typemap(typecheck, precedence=800) TYPE const& {
  bool const isWrapped = SWIG_IsOK(SWIG_ConvertPtr($input, nullptr, $descriptor, SWIG_POINTER_NO_NULL));
  $1 = isWrapped || zorIsLikeValue($input, zorBinding::FEWEST_COMPONENTS< TYPE, COUNT >, COUNT) ? 1 : 0;
}
%typemap(in) TYPE const& compared (TYPE read) {
  if (!zorReadValue<COUNT>($input, $descriptor, $1, read, zorIsPlainSequence($input), "")) {
    if (zorBinding::clearConversionError()) PyErr_SetString(PyExc_TypeError, "not comparable");
    SWIG_fail;
  }
}
%typemap(freearg) TYPE const& compared ""
#endif
%enddef

%define ZOR_VALUE_OPERATORS_HIDDEN(TYPE)
%ignore TYPE::operator=;
%ignore TYPE::operator[];
%ignore TYPE::operator();
%ignore TYPE::operator+;
%ignore TYPE::operator-;
%ignore TYPE::operator*;
%ignore TYPE::operator/;
%ignore TYPE::operator+=;
%ignore TYPE::operator-=;
%ignore TYPE::operator*=;
%ignore TYPE::operator/=;
%ignore TYPE::operator==;
%ignore TYPE::operator!=;
%ignore TYPE::operator<;
%ignore TYPE::operator^;
%ignore TYPE::operator~;
%ignore TYPE::operator bool;
%ignore TYPE::ptr;
%ignore TYPE::data;
%ignore TYPE::begin;
%ignore TYPE::end;
%enddef

// Copies of Python's.
%define ZOR_COPIED(TYPE)
%extend TYPE {
  %pythoncode %{
    def __copy__(self):
        return type(self)(self)

    def __deepcopy__(self, memo):
        return type(self)(self)
  %}
}
%enddef

// CLASS is the class's own name: that of the template where it is an instance.
%define ZOR_VALUE_OF(TYPE, NAME, CLASS, SCALAR, COUNT)
ZOR_VALUE_PARAMETERS(TYPE, COUNT)
ZOR_SEQUENCE_GUARD(TYPE::__getitem__)
ZOR_SEQUENCE_GUARD(TYPE::__setitem__)
%feature("python:maybecall") TYPE::__eq__;
%feature("python:maybecall") TYPE::__ne__;
%extend TYPE {
  /** \param components - another value, or any iterable of numbers such as a row of an array */
  CLASS(TYPE const& components) { return new TYPE(components); }
  std::string __repr__() const { return zorBinding::valueText(#NAME, *$self, COUNT); }
  size_t __len__() const { (void)$self; return COUNT; }
  PyObject* __iter__() const {
    return zorBinding::newNumberIterator(zorBinding::components(*$self), zorBinding::formatOf<SCALAR>()[0], COUNT);
  }
  SCALAR __getitem__(ptrdiff_t index) const {
    return zorBinding::components(*$self)[zorBinding::checkedIndex(index, COUNT)];
  }
  PyObject* __getitem__(PyObject* slice) const {
    return zorBinding::newTupleSlice(zorBinding::components(*$self), zorBinding::formatOf<SCALAR>()[0], COUNT, slice);
  }
  void __setitem__(ptrdiff_t index, SCALAR value) {
    zorBinding::components(*$self)[zorBinding::checkedIndex(index, COUNT)] = value;
  }
  void __setitem__(PyObject* slice, PyObject* values) {
    zorBinding::assignNumbers(zorBinding::components(*$self), zorBinding::formatOf<SCALAR>()[0], COUNT, slice, values);
  }
  bool __eq__(TYPE const& compared) const { return zorBinding::equalValues<COUNT>(*$self, compared); }
  bool __ne__(TYPE const& compared) const { return !zorBinding::equalValues<COUNT>(*$self, compared); }
  /**
   * \param other - another value
   * \param tolerance - greatest difference of a component
   * \return true if no component differs by more
   */
  bool equals(TYPE const& other, double tolerance = 1e-6) const {
    return zorBinding::nearlyEqual<COUNT>(*$self, other, tolerance);
  }
  PyObject* _memory(PyObject* OWNER) { return zorBinding::memoryOf(zorBinding::components(*$self), {COUNT}, OWNER); }
  %pythoncode %{
    def __buffer__(self, flags):
        return self._memory()

    def __reduce__(self):
        return (type(self), (tuple(self),))

    def __format__(self, spec: str) -> str:
        """Formats every component, as in f"{vector:.3f}"."""
        return f"{type(self).__name__}({', '.join(format(number, spec) for number in self)})" if spec else repr(self)
  %}
}
ZOR_COPIED(TYPE)
%enddef

%define ZOR_VALUE(TYPE, NAME, SCALAR, COUNT)
ZOR_VALUE_OF(TYPE, NAME, NAME, SCALAR, COUNT)
%enddef

// Sums, differences, scaling, the scalar product and the length, for values that form a vector space.
%define ZOR_VECTOR_SPACE(TYPE, SCALAR, COUNT)
%feature("python:maybecall") TYPE::__add__;
%feature("python:maybecall") TYPE::__radd__;
%feature("python:maybecall") TYPE::__sub__;
%feature("python:maybecall") TYPE::__rsub__;
%feature("python:maybecall") TYPE::__mul__;
%feature("python:maybecall") TYPE::__rmul__;
%extend TYPE {
  TYPE __add__(TYPE const& other) const { return zorBinding::combined<COUNT>(*$self, other, std::plus<>()); }
  TYPE __radd__(TYPE const& other) const { return zorBinding::combined<COUNT>(other, *$self, std::plus<>()); }
  TYPE __sub__(TYPE const& other) const { return zorBinding::combined<COUNT>(*$self, other, std::minus<>()); }
  TYPE __rsub__(TYPE const& other) const { return zorBinding::combined<COUNT>(other, *$self, std::minus<>()); }
  TYPE __neg__() const { return zorBinding::mapped<COUNT>(*$self, std::negate<>()); }
  TYPE __pos__() const { return *$self; }
  double __abs__() const { return zorBinding::lengthOf<COUNT>(*$self); }
  TYPE __mul__(SCALAR factor) const { return zorBinding::scaled<COUNT>(*$self, factor); }
  SCALAR __mul__(TYPE const& vector) const { return zorBinding::dotProduct<COUNT>(*$self, vector); }
  TYPE __rmul__(SCALAR factor) const { return zorBinding::scaled<COUNT>(*$self, factor); }
}
%enddef

%define ZOR_DIVISION(TYPE, SCALAR, COUNT, METHOD, FUNCTION)
%feature("python:maybecall") TYPE::METHOD;
%exception TYPE::METHOD {
  if (arg2 == 0) SWIG_exception_fail(SWIG_DivisionByZero, "division by zero");
  try {
    $action
  } catch (...) {
    zorBinding::setToolkitError();
    SWIG_fail;
  }
}
%extend TYPE {
  TYPE METHOD(SCALAR divisor) const { return FUNCTION; }
}
%enddef

// With division, where the components are real numbers.
%define ZOR_REAL_VECTOR_SPACE(TYPE, SCALAR, COUNT)
ZOR_VECTOR_SPACE(TYPE, SCALAR, COUNT)
ZOR_DIVISION(TYPE, SCALAR, COUNT, __truediv__,
             %arg(zorBinding::mapped<COUNT>(*$self, [divisor](auto component) { return component / divisor; })))
%enddef

// With division as Python's `//`, where they are integers.
%define ZOR_INTEGER_VECTOR_SPACE(TYPE, SCALAR, COUNT)
ZOR_VECTOR_SPACE(TYPE, SCALAR, COUNT)
ZOR_DIVISION(TYPE, SCALAR, COUNT, __floordiv__, %arg(zorBinding::floorDivided<COUNT>(*$self, divisor)))
%enddef

// The vector product of three components, as `a ^ b`.
%define ZOR_VECTOR_PRODUCT(TYPE)
%feature("python:maybecall") TYPE::__xor__;
%extend TYPE {
  TYPE __xor__(TYPE const& other) const { return *$self ^ other; }
}
%enddef

// Matrices, whose numbers `(*matrix)(row, column)` lie row after row; the first CHANGEABLE columns can be set. Python
// reads a row by `matrix[row]` and a number by `matrix[row, column]`, and makes one from rows or from all the numbers.
%define ZOR_MATRIX(TYPE, NAME, CLASS, ROWS, COLUMNS, CHANGEABLE)
ZOR_SEQUENCE_GUARD(TYPE::_at)
ZOR_SEQUENCE_GUARD(TYPE::_row)
ZOR_SEQUENCE_GUARD(TYPE::_set_at)
ZOR_SEQUENCE_GUARD(TYPE::CLASS)
%feature("python:maybecall") TYPE::__mul__;
%feature("python:maybecall") TYPE::__eq__;
%feature("python:maybecall") TYPE::__ne__;
%typemap(typecheck, precedence=900) PyObject* rows "$1 = zorIsIterable($input) ? 1 : 0;"
%extend TYPE {
  /** \param rows - rows of numbers, or all the numbers row after row; any iterables, such as an array */
  CLASS(PyObject* rows) {
    double numbers[ROWS * COLUMNS];
    zorBinding::readMatrix(rows, ROWS, COLUMNS, numbers);
    auto matrix = std::make_unique<TYPE>();
    for (int i = 0; i < ROWS * COLUMNS; ++i) {
      if (i % COLUMNS < CHANGEABLE) {
        (*matrix)(i / COLUMNS, i % COLUMNS) = numbers[i];
      } else if (numbers[i] != (*matrix)(i / COLUMNS, i % COLUMNS)) {
        throw std::invalid_argument("the last column of an affine matrix is 0, 0, 0, 1");
      }
    }
    return matrix.release();
  }
  std::string __repr__() const {
    std::string text;
    for (int i = 0; i < ROWS * COLUMNS; ++i) {
      text += i == 0 ? "[" : i % COLUMNS == 0 ? "], [" : ", ";
      text += zorBinding::numberText((*$self)(i / COLUMNS, i % COLUMNS));
    }
    return #NAME "([" + text + "]])";
  }
  size_t __len__() const { (void)$self; return ROWS; }
  double _at(ptrdiff_t row, ptrdiff_t column) const {
    return (*$self)(zorBinding::checkedIndex(row, ROWS), zorBinding::checkedIndex(column, COLUMNS));
  }
  PyObject* _row(ptrdiff_t index) const {
    return zorBinding::newTuple(&(*const_cast<TYPE*>($self))(zorBinding::checkedIndex(index, ROWS), 0), 'd', COLUMNS);
  }
  void _set_at(ptrdiff_t row, ptrdiff_t column, double value) {
    auto const at = zorBinding::checkedIndex(column, COLUMNS);
    if (at >= CHANGEABLE) throw std::invalid_argument("the last column of an affine matrix is 0, 0, 0, 1");
    (*$self)(zorBinding::checkedIndex(row, ROWS), at) = value;
  }
  TYPE __mul__(TYPE const& next) const { return *$self * next; }
  bool __eq__(TYPE const& other) const { return *$self == other; }
  bool __ne__(TYPE const& other) const { return !(*$self == other); }
  /**
   * \param other - another matrix
   * \param tolerance - greatest difference of an element
   * \return true if no element differs by more
   */
  bool equals(TYPE const& other, double tolerance = 1e-6) const {
    for (int i = 0; i < ROWS * COLUMNS; ++i) {
      if (!(std::abs((*$self)(i / COLUMNS, i % COLUMNS) - other(i / COLUMNS, i % COLUMNS)) <= tolerance)) return false;
    }
    return true;
  }
  PyObject* _memory(PyObject* OWNER) { return zorBinding::memoryOf(&(*$self)(0, 0), {ROWS, COLUMNS}, OWNER); }
  %pythoncode %{
    def __buffer__(self, flags):
        return self._memory()

    def __getitem__(self, at):
        return self._at(*at) if isinstance(at, tuple) else self._row(at)

    def __setitem__(self, at, value):
        row, column = at
        self._set_at(row, column, value)

    def __reduce__(self):
        return (type(self), ([self._row(i) for i in range(len(self))],))
  %}
}
ZOR_COPIED(TYPE)
%enddef

// Values that Python makes and prints as NAME(parts): PARTS are expressions of a tuple, such as `self.lower()`. Their
// constructors take copies too, with %copyctor.
%define ZOR_RECORD(TYPE, NAME, PARTS...)
%feature("python:maybecall") TYPE::__eq__;
%feature("python:maybecall") TYPE::__ne__;
%extend TYPE {
  bool __eq__(TYPE const& other) const { return *$self == other; }
  bool __ne__(TYPE const& other) const { return !(*$self == other); }
  static std::string _numberText(double number) { return zorBinding::numberText(number); }
  %pythoncode %{
    def _parts(self):
        return (PARTS,)

    def __repr__(self):
        return f"NAME({', '.join(self._numberText(part) if isinstance(part, float) else repr(part) for part in self._parts())})"

    def __reduce__(self):
        return (type(self), self._parts())
  %}
}
ZOR_COPIED(TYPE)
%enddef
