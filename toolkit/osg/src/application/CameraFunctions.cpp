#include <zorOSG/CameraFunctions.h>

#include "CameraControl.h"
#include "Conversion.h"
#include "RayPick.h"
#include "scene/Checks.h"

#include <osg/Camera>
#include <osgViewer/Viewer>

#include <stdexcept>

namespace zorOSG {

bool setOrbitCamera(osgViewer::Viewer* viewer, osg::Group* node, zor::Vec3 const& eye,
                    zor::Vec3 const& center, zor::Vec3 const& up, int trackerMode) {
  if (!viewer || !node)
    return false;
  CameraControl::track(*viewer, *node, {eye, center, up}, trackerMode);
  return true;
}

void getNearFarPoints(osg::Camera const* camera, float x, float y, zor::Vec3& near, zor::Vec3& far) {
  osg::Viewport const* const viewport = camera ? camera->getViewport() : nullptr;
  if (!viewport)
    throw std::invalid_argument("getNearFarPoints: camera must not be null and must have a viewport");
  osg::Matrixd const toWindow =
      camera->getViewMatrix() * camera->getProjectionMatrix() * viewport->computeWindowMatrix();
  osg::Matrixd toWorld;
  if (!toWorld.invert(toWindow))
    throw std::runtime_error("getNearFarPoints: the camera has no usable view and projection");
  near = fromOsg(osg::Vec3d(x, y, 0) * toWorld);
  far = fromOsg(osg::Vec3d(x, y, 1) * toWorld);
}

zorCollide::GeometryContact getHoveredGeometryContact(osg::Camera const* camera, zorCollide::Space* space,
                                                      float x, float y) {
  requireGiven("getHoveredGeometryContact", "space", space);
  zor::Vec3 near, far;
  getNearFarPoints(camera, x, y, near, far);
  return toContact(nearestHit("getHoveredGeometryContact", *space, near, far, false, camera));
}

} // namespace zorOSG
