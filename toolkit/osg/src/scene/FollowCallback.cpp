#include "FollowCallback.h"

#include <algorithm>

#include <osg/MatrixTransform>
#include <osg/NodeVisitor>

#include "Convert.h"

namespace zorOSG {

void FollowCallback::operator()(osg::Node* node, osg::NodeVisitor* visitor) {
  follow(*node);
  traverse(node, visitor);
}

void FollowCallback::follow(osg::Node& node) const {
  osg::Transform* const transform = node.asTransform();
  osg::MatrixTransform* const target = transform ? transform->asMatrixTransform() : nullptr;
  zor::AffineMatrix4x4 place;
  if (!target || !m_source(place)) {
    node.setNodeMask(0);
    return;
  }
  if (!std::equal(place.ptr(), place.ptr() + 16, target->getMatrix().ptr()))
    target->setMatrix(toOsg(place));
}

void letFollow(osg::Node& node, FollowCallback::Source source) {
  osg::ref_ptr<FollowCallback> const callback = new FollowCallback(std::move(source));
  callback->follow(node);
  node.setUpdateCallback(callback);
}

} // namespace zorOSG
