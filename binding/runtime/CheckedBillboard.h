#pragma once

#include <osg/Billboard>

namespace zorBinding {

/**
 * A billboard that scripts fill, and the toolkit through the group that it is: culling takes every child for
 * a drawable and looks for its position.
 */
class CheckedBillboard : public osg::Billboard {
public:
  CheckedBillboard() = default;
  CheckedBillboard(CheckedBillboard const& other, osg::CopyOp const& how) : osg::Billboard(other, how) {}

  osg::Object* cloneType() const override { return new CheckedBillboard; }
  osg::Object* clone(osg::CopyOp const& how) const override { return new CheckedBillboard(*this, how); }

  /** All throw std::invalid_argument for a child that is no drawable; a drawable gets the origin as its
   * position.
   */
  bool addChild(osg::Node* child) override { return insertChild(getNumChildren(), child); }
  bool insertChild(unsigned int index, osg::Node* child) override;
  bool setChild(unsigned int index, osg::Node* child) override;
  bool replaceChild(osg::Node* old, osg::Node* child) override;

  using osg::Billboard::addDrawable;
  bool addDrawable(osg::Drawable* drawable, osg::Vec3 const& position) override;

protected:
  ~CheckedBillboard() override = default;
};

} // namespace zorBinding
