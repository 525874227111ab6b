#include <zorOSG/CameraData.h>

#include "Conversion.h"

#include <osg/Camera>
#include <osgGA/StandardManipulator>
#include <osgViewer/Viewer>

#include <stdexcept>

namespace zorOSG {

namespace {

void readPose(CameraData& data, osg::Matrixd const& view) {
  osg::Vec3d eye, center, up;
  view.getLookAt(eye, center, up);
  data.eye = fromOsg(eye);
  data.center = fromOsg(center);
  data.up = fromOsg(up);
}

void readProjection(CameraData& data, osg::Camera const& camera) {
  double left, right, bottom, top;
  data.nearFarRatio = camera.getNearFarRatio();
  if (camera.getProjectionMatrixAsPerspective(data.fieldOfView, data.aspectRatio, data.nearClippingPlane,
                                              data.farClippingPlane))
    return;
  data.fieldOfView = 0;
  if (!camera.getProjectionMatrixAsOrtho(left, right, bottom, top, data.nearClippingPlane,
                                         data.farClippingPlane))
    return;
  data.aspectRatio = top != bottom ? (right - left) / (top - bottom) : 0;
}

void requireValid(CameraData const& data) {
  if (!data.valid)
    throw std::runtime_error("CameraData::applyTo: the camera data is not valid");
  if ((data.center - data.eye).length() <= 0)
    throw std::runtime_error("CameraData::applyTo: eye and center are the same point");
}

void applyProjection(CameraData const& data, osg::Camera& camera) {
  camera.setNearFarRatio(data.nearFarRatio);
  // A parallel projection keeps the extent that the camera has: the record does not hold one.
  if (data.fieldOfView > 0)
    camera.setProjectionMatrixAsPerspective(data.fieldOfView, data.aspectRatio, data.nearClippingPlane,
                                            data.farClippingPlane);
}

} // namespace

CameraData::CameraData(osg::Camera const* camera) {
  if (!camera)
    return;
  readPose(*this, camera->getViewMatrix());
  readProjection(*this, *camera);
  valid = true;
}

CameraData::CameraData(osgViewer::Viewer const* viewer) : CameraData(viewer ? viewer->getCamera() : nullptr) {
  if (!viewer || !viewer->getCameraManipulator())
    return;
  auto* manipulator = viewer->getCameraManipulator();
  if (auto const* standard = dynamic_cast<osgGA::StandardManipulator const*>(manipulator)) {
    osg::Vec3d pose[3];
    standard->getTransformation(pose[0], pose[1], pose[2]);
    eye = fromOsg(pose[0]);
    center = fromOsg(pose[1]);
    up = fromOsg(pose[2]);
  } else {
    readPose(*this, manipulator->getInverseMatrix());
  }
}

void CameraData::applyTo(osg::Camera* camera) const {
  if (!camera)
    throw std::invalid_argument("CameraData::applyTo: camera must not be null");
  requireValid(*this);
  camera->setViewMatrixAsLookAt(toOsg(eye), toOsg(center), toOsg(up));
  applyProjection(*this, *camera);
}

void CameraData::applyTo(osgViewer::Viewer* viewer) const {
  if (!viewer)
    throw std::invalid_argument("CameraData::applyTo: viewer must not be null");
  requireValid(*this);
  applyTo(viewer->getCamera());
  if (auto* manipulator = viewer->getCameraManipulator()) {
    manipulator->setHomePosition(toOsg(eye), toOsg(center), toOsg(up));
    viewer->home();
  }
}

} // namespace zorOSG
