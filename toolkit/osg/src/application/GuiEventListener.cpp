#include <zorOSG/GuiEventListener.h>

#include "RayPick.h"

#include <zorOSG/CameraFunctions.h>
#include <zorSDK/Simulation.h>

#include <limits>
#include <stdexcept>

namespace zorOSG {

GuiEventListener::GuiEventListener(zorSDK::GuiEventListener::ActivationMask mask)
    : zorSDK::GuiEventListener(mask) {}

zorCollide::GeometryContact GuiEventListener::intersect(float x, float y, osg::Camera const* camera,
                                                        bool onlyDynamics) {
  if (!getSimulation())
    throw std::runtime_error("GuiEventListener::intersect: the listener is in no simulation");
  zor::Vec3 end;
  getNearFarPoints(camera, m_rayOrigin, end, x, y);
  return toContact(nearestHit("GuiEventListener::intersect", *getSimulation()->getSpace(), m_rayOrigin, end,
                              onlyDynamics, camera));
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
  zorOSG::getNearFarPoints(camera, x, y, near, far);
  near = near * getInverseTransform();
  far = far * getInverseTransform();
}

} // namespace zorOSG
