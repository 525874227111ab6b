#pragma once

#include <zorOSG/RenderTarget.h>

namespace zorOSG {

/** Copies view and projection of a reference camera each time it is culled, and notes what it is drawn with.
 */
class RenderTarget::FollowingCamera : public osg::Camera {
public:
  void setReference(osg::Camera const* reference) { m_reference = reference; }

  /** Takes over the reference's matrices, with the projection adapted to this camera's own aspect ratio. */
  void follow();

  void accept(osg::NodeVisitor& visitor) override;
  void traverse(osg::NodeVisitor& visitor) override;

  /** Keeps the projection of the frame that has just been drawn. */
  void keepProjection();

  osg::Matrixd drawnProjection;

protected:
  ~FollowingCamera() override = default;

private:
  osg::ref_ptr<osg::Camera const> m_reference;
  osg::ref_ptr<osg::RefMatrix const> m_culledProjection;
};

} // namespace zorOSG
