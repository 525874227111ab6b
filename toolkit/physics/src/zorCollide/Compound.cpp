#include <zorCollide/Compound.h>

#include <stdexcept>

#include "bullet/Check.h"
#include "bullet/CompoundImpl.h"
#include "bullet/Conversions.h"

namespace zorCollide {
namespace {

zorBullet::CompoundImpl& implOf(Compound const& compound) {
  return static_cast<zorBullet::CompoundImpl&>(compound.getImpl());
}

zorBullet::CompoundImpl::Child const& childOf(Compound const& compound, size_t index) {
  auto const& children = implOf(compound).children();
  zorBullet::checkIndex("Compound", index, children.size());
  return children[index];
}

} // namespace

Compound::Compound() : Shape(COMPOUND, std::make_unique<zorBullet::CompoundImpl>()) {}

Compound::~Compound() = default;

void Compound::add(Shape* shape, zor::AffineMatrix4x4 const& localTransform) {
  zorBullet::checkNotNull("Compound", "shape", shape);
  zorBullet::checkRigid("Compound", localTransform);
  auto const* compound = dynamic_cast<zorBullet::CompoundImpl const*>(&shape->getImpl());
  if (compound && compound->contains(getImpl()))
    throw std::invalid_argument("Compound: the shape holds this compound itself");
  implOf(*this).add(*shape, zorBullet::toBt(localTransform));
}

bool Compound::remove(Shape* shape) {
  return shape && implOf(*this).remove(*shape);
}

zor::UInt Compound::getNumShapes() const {
  return implOf(*this).children().size();
}

Shape* Compound::getShape(zor::UInt index) const {
  return childOf(*this, index).shape.get();
}

zor::AffineMatrix4x4 Compound::getLocalTransform(zor::UInt index) const {
  return zorBullet::fromBt(childOf(*this, index).local);
}

} // namespace zorCollide
