#include "runtime/CheckedBillboard.h"

#include <algorithm>
#include <stdexcept>

namespace zorBinding {
namespace {

void requireDrawable(osg::Node const* child) {
  if (!child || !child->asDrawable())
    throw std::invalid_argument("a billboard takes drawables only");
}

} // namespace

bool CheckedBillboard::insertChild(unsigned int index, osg::Node* child) {
  requireDrawable(child);
  if (!osg::Billboard::insertChild(index, child))
    return false;
  auto const at = std::min<std::size_t>(index, _positionList.size());
  _positionList.insert(_positionList.begin() + static_cast<std::ptrdiff_t>(at), osg::Vec3());
  _positionList.resize(getNumChildren());
  return true;
}

bool CheckedBillboard::setChild(unsigned int index, osg::Node* child) {
  requireDrawable(child);
  return osg::Billboard::setChild(index, child);
}

bool CheckedBillboard::replaceChild(osg::Node* old, osg::Node* child) {
  requireDrawable(child);
  return osg::Billboard::replaceChild(old, child);
}

bool CheckedBillboard::addDrawable(osg::Drawable* drawable, osg::Vec3 const& position) {
  if (!addChild(drawable))
    return false;
  _positionList.back() = position;
  dirtyBound();
  return true;
}

} // namespace zorBinding
