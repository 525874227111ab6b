// Simple shapes and what draws them.

OSG_BASE_CLASS(osg, Shape)
OSG_OWNED(Box)
OSG_OWNED(Sphere)
OSG_OWNED(Cylinder)
OSG_OWNED(Cone)
OSG_OWNED(Capsule)
OSG_OWNED(TessellationHints)
OSG_OWNED(ShapeDrawable)

%define OSG_SHAPE_PROPERTY(CLASS, NAME, TYPE)
ZOR_INNER_RESULT(osg::CLASS::get##NAME)
%enddef
OSG_SHAPE_PROPERTY(Box, Center, osg::Vec3f)
OSG_SHAPE_PROPERTY(Box, HalfLengths, osg::Vec3f)
OSG_SHAPE_PROPERTY(Box, Rotation, osg::Quat)
OSG_SHAPE_PROPERTY(Sphere, Center, osg::Vec3f)
ZOR_INNER_RESULT(osg::ShapeDrawable::getColor)

%define OSG_ROUND_SHAPE(CLASS, DESCRIPTION)
OSG_SHAPE_PROPERTY(CLASS, Center, osg::Vec3f)
OSG_SHAPE_PROPERTY(CLASS, Rotation, osg::Quat)
namespace osg {
/** DESCRIPTION */
class CLASS : public Shape {
public:
  CLASS(osg::Vec3f const& center, float radius, float height);
  osg::Vec3f const& getCenter() const;
  void setCenter(osg::Vec3f const& center);
  float getRadius() const;
  void setRadius(float radius);
  float getHeight() const;
  void setHeight(float height);
  osg::Quat const& getRotation() const;
  void setRotation(osg::Quat const& rotation);
};
}
%enddef

namespace osg {

/** Base of shapes, which ShapeDrawable draws. */
class Shape : public Object {};

class Box : public Shape {
public:
  /** \param center - its middle \param lengthX - whole length along x \param lengthY - along y \param lengthZ - along z */
  Box(osg::Vec3f const& center, float lengthX, float lengthY, float lengthZ);
  osg::Vec3f const& getCenter() const;
  void setCenter(osg::Vec3f const& center);
  osg::Vec3f const& getHalfLengths() const;
  void setHalfLengths(osg::Vec3f const& halfLengths);
  osg::Quat const& getRotation() const;
  void setRotation(osg::Quat const& rotation);
};

class Sphere : public Shape {
public:
  Sphere(osg::Vec3f const& center, float radius);
  osg::Vec3f const& getCenter() const;
  void setCenter(osg::Vec3f const& center);
  float getRadius() const;
  void setRadius(float radius);
};

} // namespace osg

OSG_ROUND_SHAPE(Cylinder, A cylinder along z.)
OSG_ROUND_SHAPE(Cone, A cone along z; a quarter of its height lies below its centre.)
OSG_ROUND_SHAPE(Capsule, A cylinder along z with half a sphere at both ends.)

namespace osg {

/** How finely shapes are drawn. */
class TessellationHints : public Object {
public:
  TessellationHints();
  float getDetailRatio() const;
};
%extend TessellationHints {
  /** \param ratio - 1 is usual, 2 twice as fine; 0.01 to 20 */
  void setDetailRatio(float ratio) {
    if (!(ratio >= 0.01f && ratio <= 20)) throw std::invalid_argument("a detail ratio is 0.01 to 20");
    $self->setDetailRatio(ratio);
  }
}

/** Draws a shape. */
class ShapeDrawable : public Geometry {
public:
  void setColor(osg::Vec4f const& color);
  osg::Vec4f const& getColor() const;
  osg::Shape* getShape();
  void setShape(osg::Shape* shape);
  /** Makes the vertices anew: after changing the shape. */
  void build();
};
%extend ShapeDrawable {
  ShapeDrawable(osg::Shape* shape, osg::TessellationHints* hints = nullptr) {
    return new zorBinding::CheckedShapeDrawable(shape, hints);
  }
}

} // namespace osg
