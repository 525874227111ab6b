// Vectors, quaternions, matrices and their vectors.

%define ZOR_VEC_TEMPLATE(TEMPLATE)
ZOR_VALUE_OPERATORS_HIDDEN(TEMPLATE)
%ignore TEMPLATE::x();
%ignore TEMPLATE::y();
%ignore TEMPLATE::z();
%ignore TEMPLATE::w();
%ignore TEMPLATE::value_type;
%enddef

ZOR_VEC_TEMPLATE(zor::Vec2T)
ZOR_VEC_TEMPLATE(zor::Vec3T)
ZOR_VEC_TEMPLATE(zor::Vec4T)
ZOR_VEC_TEMPLATE(zor::QuatT)
ZOR_VALUE_OPERATORS_HIDDEN(zor::AffineMatrix4x4T)
%ignore zor::AffineMatrix4x4T::AffineMatrix4x4T(T const*);
%ignore zor::AffineMatrix4x4T::AffineMatrix4x4T(double const*);
%copyctor zor::AffineMatrix4x4T;

%ignore operator*;
%ignore operator<<;

%include <zor/Vec2.h>
%include <zor/Vec3.h>
%include <zor/Vec4.h>
%include <zor/Quat.h>
%include <zor/AffineMatrix4x4.h>

%define ZOR_VEC(NAME, CLASS, SCALAR, COUNT, SPACE)
ZOR_VALUE_OF(zor::CLASS<SCALAR>, NAME, CLASS, SCALAR, COUNT)
SPACE(zor::CLASS<SCALAR>, SCALAR, COUNT)
%template(NAME) zor::CLASS<SCALAR>;
ZOR_VALUE_VECTOR(NAME ## Vector, zor::CLASS<SCALAR>, COUNT)
%enddef

// A point times a transform is the transformed point.
%extend zor::Vec3T<double> {
  zor::Vec3T<double> __mul__(zor::AffineMatrix4x4T<double> const& matrix) const {
    return matrix.transformPoint(*$self);
  }
}
ZOR_VECTOR_PRODUCT(zor::Vec3T<double>)
ZOR_VECTOR_PRODUCT(zor::Vec3T<float>)

ZOR_VEC(Vec2, Vec2T, double, 2, ZOR_REAL_VECTOR_SPACE)
ZOR_VEC(Vec2f, Vec2T, float, 2, ZOR_REAL_VECTOR_SPACE)
ZOR_VEC(Vec2i, Vec2T, int, 2, ZOR_INTEGER_VECTOR_SPACE)
ZOR_VEC(Vec2u, Vec2T, zor::UInt32, 2, ZOR_INTEGER_VECTOR_SPACE)
ZOR_VEC(Vec3, Vec3T, double, 3, ZOR_REAL_VECTOR_SPACE)
ZOR_VEC(Vec3f, Vec3T, float, 3, ZOR_REAL_VECTOR_SPACE)
ZOR_VEC(Vec3i, Vec3T, int, 3, ZOR_INTEGER_VECTOR_SPACE)
%ignore zor::Vec3T<zor::UInt32>::perpendicular; // needs a sign
ZOR_VEC(Vec3u, Vec3T, zor::UInt32, 3, ZOR_INTEGER_VECTOR_SPACE)
ZOR_VEC(Vec4, Vec4T, double, 4, ZOR_REAL_VECTOR_SPACE)
ZOR_VEC(Vec4f, Vec4T, float, 4, ZOR_REAL_VECTOR_SPACE)

%feature("python:maybecall") zor::QuatT<double>::__mul__;
%extend zor::QuatT<double> {
  zor::QuatT<double> __mul__(zor::QuatT<double> const& next) const { return *$self * next; }
  zor::Vec3T<double> __mul__(zor::Vec3T<double> const& vector) const { return $self->rotate(vector); }
  /** \return the angles about the fixed X, Y and Z axes that fromEuler() takes, in radians; Y within a quarter turn */
  zor::Vec3T<double> toEuler() const { return zorEulerAngles(*$self); }
}
%{
// Of a matrix for row vectors made of the three rotations one after the other.
static zor::Vec3 zorEulerAngles(zor::Quat const& rotation) {
  zor::Matrix3x3 const m(rotation);
  double const sine = std::clamp(-m(0, 2), -1.0, 1.0);
  // Looking along the pole, the first and the last angle turn about the same axis.
  if (std::abs(sine) > 1 - 1e-12) return zor::Vec3(std::atan2(-m(2, 1), m(1, 1)), std::asin(sine), 0);
  return zor::Vec3(std::atan2(m(1, 2), m(2, 2)), std::asin(sine), std::atan2(m(0, 1), m(0, 0)));
}
%}
ZOR_VALUE_OF(zor::QuatT<double>, Quat, QuatT, double, 4)
%template(Quat) zor::QuatT<double>;
ZOR_VALUE_VECTOR(QuatVector, zor::QuatT<double>, 4)

%ignore zor::Matrix3x3T::Matrix3x3T(QuatT<T> const&);
ZOR_VALUE_OPERATORS_HIDDEN(zor::Matrix3x3T)
%copyctor zor::Matrix3x3T;
%include <zor/Matrix3x3.h>
%extend zor::Matrix3x3T<double> {
  /** \param rotate - unit quaternion */
  Matrix3x3T(zor::QuatT<double> const& rotate) { return new zor::Matrix3x3(rotate); }
}
ZOR_MATRIX(zor::Matrix3x3T<double>, Matrix3x3, Matrix3x3T, 3, 3, 3)
%template(Matrix3x3) zor::Matrix3x3T<double>;

ZOR_MATRIX(zor::AffineMatrix4x4T<double>, AffineMatrix4x4, AffineMatrix4x4T, 4, 4, 3)
%template(AffineMatrix4x4) zor::AffineMatrix4x4T<double>;

ZOR_NUMBER_VECTOR(RealVector, double)
ZOR_NUMBER_VECTOR(FloatVector, float)
ZOR_NUMBER_VECTOR(IntVector, int64_t)
ZOR_NUMBER_VECTOR(UIntVector, uint64_t)
ZOR_NUMBER_VECTOR(UInt32Vector, uint32_t)
ZOR_NUMBER_VECTOR(UInt8Vector, uint8_t)
ZOR_TEXT_VECTOR(StringVector, Vector, zor::Vector<std::string>)

// Values that are made of other values.
%ignore zor::RangeReal::operator==;
%copyctor zor::RangeReal;
ZOR_RECORD(zor::RangeReal, RangeReal, self.lower(), self.upper())
%extend zor::RangeReal {
  %pythoncode %{
    def __contains__(self, value: float) -> bool:
        """Whether a number lies in the range, ends included."""
        return self.contains(value)
  %}
}
%include <zor/RangeReal.h>

%ignore zor::Plane::operator==;
%copyctor zor::Plane;
ZOR_RECORD(zor::Plane, Plane, self.a(), self.b(), self.c(), self.d())
ZOR_INNER_RESULT(zor::Plane::getNormal)
%include <zor/Plane.h>

%ignore zor::Line::operator==;
%copyctor zor::Line;
ZOR_RECORD(zor::Line, Line, self.getStart(), self.getEnd())
ZOR_INNER_RESULT(zor::Line::getStart)
ZOR_INNER_RESULT(zor::Line::getEnd)
%include <zor/Line.h>

%ignore zor::BoundingAABB::operator==;
%copyctor zor::BoundingAABB;
ZOR_RECORD(zor::BoundingAABB, BoundingAABB, *(() if self.isEmpty() else (self.min(), self.max())))
ZOR_INNER_RESULT(zor::BoundingAABB::min)
ZOR_INNER_RESULT(zor::BoundingAABB::max)
%extend zor::BoundingAABB {
  %pythoncode %{
    def __contains__(self, point: "Vec3") -> bool:
        """Whether a point lies in the box, its faces included."""
        return self.contains(point)
  %}
}
%include <zor/BoundingAABB.h>

// For the few parameters that are references to a truth value: `flag = BoolPointer()`, pass `flag.cast()`, read
// `flag.value()`.
%include <cpointer.i>
%pointer_class(bool, BoolPointer);
