#pragma once

#include <zorOSG/RenderTarget.h>

namespace zorOSG {

/** Copies view and projection of a reference camera each time it is culled. */
class RenderTarget::FollowingCamera : public osg::Camera {
public:
  void setReference(osg::Camera const* reference) { m_reference = reference; }

  /** Takes over the reference's matrices, with the projection adapted to this camera's own aspect ratio. */
  void follow();

  void accept(osg::NodeVisitor& visitor) override;

protected:
  ~FollowingCamera() override = default;

private:
  osg::ref_ptr<osg::Camera const> m_reference;
};

} // namespace zorOSG
