#include "FollowingCamera.h"

#include <osg/NodeVisitor>
#include <osg/Viewport>
#include <osgUtil/CullVisitor>

namespace zorOSG {

void RenderTarget::FollowingCamera::follow() {
  if (!m_reference.valid()) {
    return;
  }
  setViewMatrix(m_reference->getViewMatrix());
  osg::Matrixd projection = m_reference->getProjectionMatrix();
  osg::Viewport const* other = m_reference->getViewport();
  osg::Viewport const* own = getViewport();
  if (other && other->width() > 0.0 && other->height() > 0.0) {
    // Keeps the vertical field of view: only the horizontal scale changes.
    projection.postMultScale(osg::Vec3d(other->aspectRatio() / own->aspectRatio(), 1.0, 1.0));
  }
  setProjectionMatrix(projection);
}

void RenderTarget::FollowingCamera::accept(osg::NodeVisitor& visitor) {
  if (visitor.getVisitorType() == osg::NodeVisitor::CULL_VISITOR) {
    follow();
  }
  osg::Camera::accept(visitor);
}

/** Near and far plane are put into the very matrix that is on top now, once everything below has been seen.
 */
void RenderTarget::FollowingCamera::traverse(osg::NodeVisitor& visitor) {
  if (auto* const culling = visitor.asCullVisitor()) {
    m_culledProjection = culling->getProjectionMatrix();
  }
  osg::Camera::traverse(visitor);
}

void RenderTarget::FollowingCamera::keepProjection() {
  drawnProjection = m_culledProjection ? osg::Matrixd(*m_culledProjection) : getProjectionMatrix();
}

} // namespace zorOSG
