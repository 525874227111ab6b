// Python manners of small value types that hold COUNT components in a row: repr, comparison, indexing, unpacking,
// copying, pickling, and a buffer over their own memory.
// A type that compares by value and can change has no hash.

%{
#include "runtime/BufferView.h"
#include "runtime/Values.h"
%}

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

%define ZOR_VALUE(TYPE, NAME, SCALAR, COUNT)
ZOR_SEQUENCE_GUARD(TYPE::__getitem__)
ZOR_SEQUENCE_GUARD(TYPE::__setitem__)
%feature("python:maybecall") TYPE::__eq__;
%feature("python:maybecall") TYPE::__ne__;
%extend TYPE {
  std::string __repr__() const { return zorBinding::valueText(#NAME, *$self, COUNT); }
  size_t __len__() const { (void)$self; return COUNT; }
  SCALAR __getitem__(ptrdiff_t index) const {
    return zorBinding::components(*$self)[zorBinding::checkedIndex(index, COUNT)];
  }
  void __setitem__(ptrdiff_t index, SCALAR value) {
    zorBinding::components(*$self)[zorBinding::checkedIndex(index, COUNT)] = value;
  }
  bool __eq__(TYPE const& other) const { return zorBinding::equalValues<COUNT>(*$self, other); }
  bool __ne__(TYPE const& other) const { return !zorBinding::equalValues<COUNT>(*$self, other); }
  PyObject* _memory() { return zorBinding::memoryOf(zorBinding::components(*$self), {COUNT}); }
  %pythoncode %{
    def __buffer__(self, flags):
        return self._memory()

    def __copy__(self):
        return type(self)(self)

    def __deepcopy__(self, memo):
        return type(self)(self)

    def __reduce__(self):
        return (type(self), tuple(self))
  %}
}
%enddef

// Sums, differences and scaling, for values that form a vector space.
%define ZOR_VECTOR_SPACE(TYPE, SCALAR, COUNT)
%feature("python:maybecall") TYPE::__add__;
%feature("python:maybecall") TYPE::__sub__;
%feature("python:maybecall") TYPE::__mul__;
%feature("python:maybecall") TYPE::__rmul__;
%extend TYPE {
  TYPE __add__(TYPE const& other) const { return zorBinding::combined<COUNT>(*$self, other, std::plus<>()); }
  TYPE __sub__(TYPE const& other) const { return zorBinding::combined<COUNT>(*$self, other, std::minus<>()); }
  TYPE __neg__() const { return zorBinding::mapped<COUNT>(*$self, std::negate<>()); }
  TYPE __mul__(SCALAR factor) const { return zorBinding::scaled<COUNT>(*$self, factor); }
  TYPE __rmul__(SCALAR factor) const { return zorBinding::scaled<COUNT>(*$self, factor); }
}
%enddef

// Division and length, where the components are real numbers.
%define ZOR_REAL_VECTOR_SPACE(TYPE, SCALAR, COUNT)
ZOR_VECTOR_SPACE(TYPE, SCALAR, COUNT)
%feature("python:maybecall") TYPE::__truediv__;
%exception TYPE::__truediv__ {
  if (arg2 == 0) SWIG_exception_fail(SWIG_DivisionByZero, "division by zero");
  $action
}
%extend TYPE {
  TYPE __truediv__(SCALAR divisor) const { return zorBinding::scaled<COUNT>(*$self, 1 / divisor); }
}
%enddef
