#pragma once

#include <osg/Geometry>
#include <osg/ShapeDrawable>

#include <string>

namespace zorBinding {

/** \return what would be read outside of a geometry's arrays if it was drawn; empty if nothing is */
std::string geometryFault(osg::Geometry const& geometry);

/**
 * Warns of a geometry with a fault that is not drawn.
 * \param reported - fault of which was warned already; set to the one that there is now
 * \return true if there is none
 */
bool isSound(osg::Geometry const& geometry, std::string& reported);

/** A geometry that scripts fill: while its indices lead out of its arrays, it is neither drawn nor looked at.
 */
template <class Base>
class Checked : public Base {
public:
  using Base::Base;
  Checked() = default;
  Checked(Checked const& other, osg::CopyOp const& how) : Base(other, how) {}

  osg::Object* cloneType() const override { return new Checked; }
  osg::Object* clone(osg::CopyOp const& how) const override { return new Checked(*this, how); }

  using Base::accept;
  void accept(osg::PrimitiveFunctor& functor) const override {
    if (isSound(*this, m_reported))
      Base::accept(functor);
  }
  void accept(osg::PrimitiveIndexFunctor& functor) const override {
    if (isSound(*this, m_reported))
      Base::accept(functor);
  }
  void drawImplementation(osg::RenderInfo& renderInfo) const override {
    if (isSound(*this, m_reported))
      Base::drawImplementation(renderInfo);
  }

protected:
  ~Checked() override = default;

private:
  mutable std::string m_reported;
};

typedef Checked<osg::Geometry> CheckedGeometry;
typedef Checked<osg::ShapeDrawable> CheckedShapeDrawable;

} // namespace zorBinding
