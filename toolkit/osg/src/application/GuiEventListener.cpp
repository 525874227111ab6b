#include <zorOSG/GuiEventListener.h>

#include "Conversion.h"

#include <zorSDK/Simulation.h>

#include <osg/Camera>

#include <limits>
#include <stdexcept>

namespace zorOSG {

namespace {

bool isDynamic(zorCollide::Geometry const& geometry) {
  zor::RigidBody const* const body = geometry.getRigidBody();
  return body && body->getMotionControl() == zor::RigidBody::DYNAMICS;
}

zorCollide::GeometryContact toContact(zorCollide::RayHit const& hit) {
  zorCollide::GeometryContact contact(hit.getGeometry(), nullptr);
  contact.addPoint(zorCollide::ContactPoint(hit.getPoint(), hit.getNormal(), 0));
  return contact;
}

} // namespace

GuiEventListener::GuiEventListener(zorSDK::GuiEventListener::ActivationMask mask)
    : zorSDK::GuiEventListener(mask) {}

zorCollide::GeometryContact GuiEventListener::intersect(float x, float y, osg::Camera const* camera,
                                                        bool onlyDynamics) {
  if (!getSimulation())
    throw std::runtime_error("GuiEventListener::intersect: the listener is in no simulation");
  zor::Vec3 end;
  getNearFarPoints(camera, m_rayOrigin, end, x, y);
  zor::Vec3 const ray = end - m_rayOrigin;
  for (auto const& hit : getSimulation()->getSpace()->castRayAll(m_rayOrigin, ray, ray.length()))
    if (!onlyDynamics || isDynamic(*hit.getGeometry()))
      return toContact(hit);
  return {};
}

size_t
GuiEventListener::findIntersectGeometryIndex(zorCollide::LocalGeometryContactVector const& geometryContacts) {
  size_t nearest = geometryContacts.size();
  double best = std::numeric_limits<double>::infinity();
  for (size_t i = 0; i < geometryContacts.size(); ++i)
    for (auto const& point : geometryContacts[i].getPoints()) {
      double const distance = point.getPoint().distance(m_rayOrigin);
      if (distance < best) {
        best = distance;
        nearest = i;
      }
    }
  return nearest;
}

void GuiEventListener::getNearFarPoints(osg::Camera const* camera, zor::Vec3& near, zor::Vec3& far, float x,
                                        float y) const {
  osg::Viewport const* const viewport = camera ? camera->getViewport() : nullptr;
  if (!viewport)
    throw std::invalid_argument("getNearFarPoints: camera must not be null and must have a viewport");
  osg::Matrixd const toWindow =
      camera->getViewMatrix() * camera->getProjectionMatrix() * viewport->computeWindowMatrix();
  osg::Matrixd toWorld;
  if (!toWorld.invert(toWindow))
    throw std::runtime_error("getNearFarPoints: the camera has no usable view and projection");
  zor::AffineMatrix4x4 const& toSimulation = getInverseTransform();
  near = fromOsg(osg::Vec3d(x, y, 0) * toWorld) * toSimulation;
  far = fromOsg(osg::Vec3d(x, y, 1) * toWorld) * toSimulation;
}

} // namespace zorOSG
