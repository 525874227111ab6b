#pragma once

#include <functional>
#include <utility>

#include <osg/Callback>

#include <zor/AffineMatrix4x4.h>

namespace zorOSG {

/** Keeps a matrix node at a place that it asks for in every update traversal. */
class FollowCallback : public osg::NodeCallback {
public:
  /** Gives the place; false once there is none any more, which hides the node. */
  using Source = std::function<bool(zor::AffineMatrix4x4& place)>;

  explicit FollowCallback(Source source) : m_source(std::move(source)) {}

  void operator()(osg::Node* node, osg::NodeVisitor* visitor) override;

  /** Moves the node now. */
  void follow(osg::Node& node) const;

private:
  Source m_source;
};

/** Makes a matrix node follow a place from now on. */
void letFollow(osg::Node& node, FollowCallback::Source source);

} // namespace zorOSG
