// Vectors, quaternions, matrices and their vectors.

%define ZOR_VEC_TEMPLATE(TEMPLATE)
ZOR_VALUE_OPERATORS_HIDDEN(TEMPLATE)
%ignore TEMPLATE::x();
%ignore TEMPLATE::y();
%ignore TEMPLATE::z();
%ignore TEMPLATE::w();
%ignore TEMPLATE::value_type;
%copyctor TEMPLATE;
%enddef

ZOR_VEC_TEMPLATE(zor::Vec2T)
ZOR_VEC_TEMPLATE(zor::Vec3T)
ZOR_VEC_TEMPLATE(zor::Vec4T)
ZOR_VEC_TEMPLATE(zor::QuatT)
ZOR_VALUE_OPERATORS_HIDDEN(zor::AffineMatrix4x4T)
%ignore zor::AffineMatrix4x4T::AffineMatrix4x4T(T const*);
%ignore zor::AffineMatrix4x4T::AffineMatrix4x4T(double const*);
%ignore zor::AffineMatrix4x4T::AffineMatrix4x4T(Matrix3x3T<T> const&, Vec3T<T> const&);
%ignore zor::AffineMatrix4x4T::getLinear;
%ignore zor::AffineMatrix4x4T::setLinear;
%copyctor zor::AffineMatrix4x4T;

%ignore operator*;
%ignore operator<<;

%include <zor/Vec2.h>
%include <zor/Vec3.h>
%include <zor/Vec4.h>
%include <zor/Quat.h>
%include <zor/AffineMatrix4x4.h>

%define ZOR_VEC(NAME, TYPE, SCALAR, COUNT)
ZOR_VALUE(TYPE, NAME, SCALAR, COUNT)
ZOR_VECTOR_SPACE(TYPE, SCALAR, COUNT)
%template(NAME) TYPE;
ZOR_VALUE_VECTOR(NAME ## Vector, TYPE, COUNT)
%enddef

%define ZOR_REAL_VEC(NAME, TYPE, SCALAR, COUNT)
ZOR_VALUE(TYPE, NAME, SCALAR, COUNT)
ZOR_REAL_VECTOR_SPACE(TYPE, SCALAR, COUNT)
%template(NAME) TYPE;
ZOR_VALUE_VECTOR(NAME ## Vector, TYPE, COUNT)
%enddef

// A point times a transform is the transformed point.
%extend zor::Vec3T<double> {
  zor::Vec3T<double> __mul__(zor::AffineMatrix4x4T<double> const& matrix) const {
    return matrix.transformPoint(*$self);
  }
}

ZOR_REAL_VEC(Vec2, zor::Vec2T<double>, double, 2)
ZOR_REAL_VEC(Vec2f, zor::Vec2T<float>, float, 2)
ZOR_VEC(Vec2i, zor::Vec2T<int>, int, 2)
ZOR_VEC(Vec2u, zor::Vec2T<zor::UInt32>, unsigned int, 2)
ZOR_REAL_VEC(Vec3, zor::Vec3T<double>, double, 3)
ZOR_REAL_VEC(Vec3f, zor::Vec3T<float>, float, 3)
ZOR_VEC(Vec3i, zor::Vec3T<int>, int, 3)
ZOR_REAL_VEC(Vec4, zor::Vec4T<double>, double, 4)
ZOR_REAL_VEC(Vec4f, zor::Vec4T<float>, float, 4)

ZOR_VALUE(zor::QuatT<double>, Quat, double, 4)
%feature("python:maybecall") zor::QuatT<double>::__mul__;
%extend zor::QuatT<double> {
  zor::QuatT<double> __mul__(zor::QuatT<double> const& next) const { return *$self * next; }
  zor::Vec3T<double> __mul__(zor::Vec3T<double> const& vector) const { return $self->rotate(vector); }
}
%template(Quat) zor::QuatT<double>;

%feature("python:maybecall") zor::AffineMatrix4x4T<double>::__mul__;
%feature("python:maybecall") zor::AffineMatrix4x4T<double>::__eq__;
%feature("python:maybecall") zor::AffineMatrix4x4T<double>::__ne__;
%extend zor::AffineMatrix4x4T<double> {
  zor::AffineMatrix4x4T<double> __mul__(zor::AffineMatrix4x4T<double> const& next) const { return *$self * next; }
  bool __eq__(zor::AffineMatrix4x4T<double> const& other) const { return *$self == other; }
  bool __ne__(zor::AffineMatrix4x4T<double> const& other) const { return !(*$self == other); }
  PyObject* _memory() { return zorBinding::memoryOf($self->ptr(), {4, 4}); }
  %pythoncode %{
    def __buffer__(self, flags):
        return self._memory()

    def __getitem__(self, at):
        row, column = at
        return self.get(row, column)

    def __setitem__(self, at, value):
        row, column = at
        self.set(row, column, value)

    def __copy__(self):
        return type(self)(self)

    def __deepcopy__(self, memo):
        return type(self)(self)

    def __repr__(self):
        rows = memoryview(self).tolist()
        return "AffineMatrix4x4(" + ", ".join(f"[{', '.join(f'{n:g}' for n in row)}]" for row in rows) + ")"
  %}
}
%template(AffineMatrix4x4) zor::AffineMatrix4x4T<double>;

ZOR_NUMBER_VECTOR(RealVector, double)
ZOR_NUMBER_VECTOR(FloatVector, float)
ZOR_NUMBER_VECTOR(UInt32Vector, uint32_t)
ZOR_NUMBER_VECTOR(UInt8Vector, uint8_t)

ZOR_VALUE_OPERATORS_HIDDEN(zor::Matrix3x3T)
%copyctor zor::Matrix3x3T;
%include <zor/Matrix3x3.h>
%extend zor::Matrix3x3T<double> {
  %pythoncode %{
    def __getitem__(self, at):
        row, column = at
        return self.getRow(row)[column]

    def __repr__(self):
        rows = (", ".join(f"{n:g}" for n in self.getRow(i)) for i in range(3))
        return "Matrix3x3(" + ", ".join(f"[{row}]" for row in rows) + ")"
  %}
}
%template(Matrix3x3) zor::Matrix3x3T<double>;

%ignore zor::RangeReal::operator==;
%feature("python:maybecall") zor::RangeReal::__eq__;
%extend zor::RangeReal {
  bool __eq__(zor::RangeReal const& other) const { return *$self == other; }
  %pythoncode %{
    def __repr__(self):
        return f"RangeReal({self.lower():g}, {self.upper():g})"
  %}
}
%include <zor/RangeReal.h>

// For the few parameters that are references to a truth value: `flag = BoolPointer()`, pass `flag.cast()`, read
// `flag.value()`.
%include <cpointer.i>
%pointer_class(bool, BoolPointer);
