// Vectors, quaternions, matrices and bounds.

%define OSG_VEC_DECLARATION(NAME, SCALAR, COUNT)
ZOR_VALUE(osg::NAME, NAME, SCALAR, COUNT)
ZOR_REAL_VECTOR_SPACE(osg::NAME, SCALAR, COUNT)
%enddef

%define OSG_VEC2(NAME, SCALAR)
%copyctor osg::NAME;
OSG_VEC_DECLARATION(NAME, SCALAR, 2)
namespace osg {
class NAME {
public:
  NAME();
  NAME(SCALAR x, SCALAR y);
  SCALAR x() const;
  SCALAR y() const;
  void set(SCALAR x, SCALAR y);
  SCALAR length() const;
  SCALAR length2() const;
  SCALAR normalize();
};
}
%enddef

%define OSG_VEC3(NAME, SCALAR)
%copyctor osg::NAME;
OSG_VEC_DECLARATION(NAME, SCALAR, 3)
namespace osg {
class NAME {
public:
  NAME();
  NAME(SCALAR x, SCALAR y, SCALAR z);
  SCALAR x() const;
  SCALAR y() const;
  SCALAR z() const;
  void set(SCALAR x, SCALAR y, SCALAR z);
  SCALAR length() const;
  SCALAR length2() const;
  SCALAR normalize();
};
}
%extend osg::NAME {
  /** \return the scalar product */
  SCALAR dot(osg::NAME const& other) const { return *$self * other; }
  /** \return the vector product */
  osg::NAME cross(osg::NAME const& other) const { return *$self ^ other; }
}
%enddef

%define OSG_VEC4(NAME, SCALAR)
%copyctor osg::NAME;
OSG_VEC_DECLARATION(NAME, SCALAR, 4)
namespace osg {
class NAME {
public:
  NAME();
  NAME(SCALAR x, SCALAR y, SCALAR z, SCALAR w);
  SCALAR x() const;
  SCALAR y() const;
  SCALAR z() const;
  SCALAR w() const;
  void set(SCALAR x, SCALAR y, SCALAR z, SCALAR w);
};
}
%enddef

OSG_VEC2(Vec2f, float)
OSG_VEC2(Vec2d, double)
OSG_VEC3(Vec3f, float)
OSG_VEC3(Vec3d, double)
OSG_VEC4(Vec4f, float)
OSG_VEC4(Vec4d, double)

%copyctor osg::Vec4ub;
ZOR_VALUE(osg::Vec4ub, Vec4ub, unsigned char, 4)
namespace osg {
/** Four numbers from 0 to 255: red, green, blue and alpha. */
class Vec4ub {
public:
  Vec4ub();
  Vec4ub(unsigned char r, unsigned char g, unsigned char b, unsigned char a);
  unsigned char r() const;
  unsigned char g() const;
  unsigned char b() const;
  unsigned char a() const;
};
}

namespace osg {
typedef Vec2f Vec2;
typedef Vec3f Vec3;
typedef Vec4f Vec4;
}

%pythoncode %{
Vec2 = Vec2f
Vec3 = Vec3f
Vec4 = Vec4f
%}

%copyctor osg::Quat;
%feature("python:maybecall") osg::Quat::__mul__;
%feature("python:maybecall") osg::Quat::__eq__;
%feature("python:maybecall") osg::Quat::__ne__;
ZOR_VALUE(osg::Quat, Quat, double, 4)
%extend osg::Quat {
  /** \return the rotation by this quaternion, followed by the one by next */
  osg::Quat __mul__(osg::Quat const& next) const { return *$self * next; }
  /** \return the rotated vector */
  osg::Vec3d __mul__(osg::Vec3d const& vector) const { return *$self * vector; }
}
namespace osg {
/** Rotation as a quaternion x i + y j + z k + w. */
class Quat {
public:
  Quat();
  Quat(double x, double y, double z, double w);
  /** \param angle radians \param axis any length */
  Quat(double angle, osg::Vec3d const& axis);
  double x() const;
  double y() const;
  double z() const;
  double w() const;
  double length() const;
  osg::Quat inverse() const;
  /** Makes the shortest rotation between two directions. */
  void makeRotate(osg::Vec3d const& from, osg::Vec3d const& to);
};
}

ZOR_SEQUENCE_GUARD(osg::Matrixd::get)
ZOR_SEQUENCE_GUARD(osg::Matrixd::set)
%copyctor osg::Matrixd;
ZOR_MATRIX(osg::Matrixd, Matrixd, Matrixd, 4, 4, 4)
namespace osg {
/** Transform for row vectors: p' = p * M, the translation in the last row; A * B applies A first. */
class Matrixd {
public:
  Matrixd();
  Matrixd(double a00, double a01, double a02, double a03, double a10, double a11, double a12, double a13,
          double a20, double a21, double a22, double a23, double a30, double a31, double a32, double a33);
  static osg::Matrixd identity();
  static osg::Matrixd translate(double x, double y, double z);
  static osg::Matrixd translate(osg::Vec3d const& v);
  static osg::Matrixd scale(double x, double y, double z);
  /** \param angle radians */
  static osg::Matrixd rotate(double angle, osg::Vec3d const& axis);
  static osg::Matrixd rotate(osg::Quat const& quat);
  static osg::Matrixd lookAt(osg::Vec3d const& eye, osg::Vec3d const& center, osg::Vec3d const& up);
  static osg::Matrixd perspective(double fovy, double aspectRatio, double zNear, double zFar);
  static osg::Matrixd ortho(double left, double right, double bottom, double top, double zNear, double zFar);
  static osg::Matrixd inverse(osg::Matrixd const& matrix);
  bool isIdentity() const;
  void makeIdentity();
  osg::Vec3d getTrans() const;
  void setTrans(osg::Vec3d const& v);
  osg::Quat getRotate() const;
  osg::Vec3d getScale() const;
  osg::Vec3d preMult(osg::Vec3d const& v) const;
  osg::Vec3d postMult(osg::Vec3d const& v) const;
};
typedef Matrixd Matrix;
}
%extend osg::Matrixd {
  /** \return an element; IndexError unless row and column are 0 to 3 */
  double get(ptrdiff_t row, ptrdiff_t column) const {
    return (*$self)(zorBinding::checkedIndex(row, 4), zorBinding::checkedIndex(column, 4));
  }
  /** Sets an element; IndexError unless row and column are 0 to 3. */
  void set(ptrdiff_t row, ptrdiff_t column, double value) {
    (*$self)(zorBinding::checkedIndex(row, 4), zorBinding::checkedIndex(column, 4)) = value;
  }
  static osg::Matrixd translate(osg::Vec3f const& v) { return osg::Matrixd::translate(v); }
  static osg::Matrixd rotate(double angle, osg::Vec3f const& axis) { return osg::Matrixd::rotate(angle, axis); }
}
%pythoncode %{
Matrix = Matrixd
%}

%copyctor osg::BoundingBox;
%copyctor osg::BoundingSphere;
namespace osg {
/** Box along the axes. */
class BoundingBox {
public:
  BoundingBox();
  BoundingBox(float xmin, float ymin, float zmin, float xmax, float ymax, float zmax);
  BoundingBox(osg::Vec3f const& min, osg::Vec3f const& max);
  bool valid() const;
  float xMin() const;
  float yMin() const;
  float zMin() const;
  float xMax() const;
  float yMax() const;
  float zMax() const;
  osg::Vec3f center() const;
  float radius() const;
  bool contains(osg::Vec3f const& v) const;
  void expandBy(osg::Vec3f const& v);
};

class BoundingSphere {
public:
  BoundingSphere();
  BoundingSphere(osg::Vec3f const& center, float radius);
  bool valid() const;
  osg::Vec3f const& center() const;
  float radius() const;
  bool contains(osg::Vec3f const& v) const;
};
}
%extend osg::BoundingBox {
  %pythoncode %{
    def __repr__(self):
        if not self.valid():
            return "BoundingBox()"
        return (f"BoundingBox({self.xMin():g}, {self.yMin():g}, {self.zMin():g}, "
                f"{self.xMax():g}, {self.yMax():g}, {self.zMax():g})")
  %}
}
