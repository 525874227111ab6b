#pragma once

#include <zor/Vec3.h>
#include <zorCollide/GeometryContact.h>
#include <zorSDK/GuiEventListener.h>

#include <cstddef>

namespace osg {
class Camera;
}

namespace zorOSG {

/**
 * Receives keyboard and mouse input of an application's viewer. Derive, override, and add it to the
 * simulation.
 *
 * The application's help overlay shows the name of every listener that has one: say there what its keys do,
 * such as setName("w, s: raise and lower the arm").
 */
class GuiEventListener : public zorSDK::GuiEventListener {
public:
  /**
   * Default constructor, sets the default activation mask to all (POST_STEP and PRE_STEP) events.
   * \param mask the kinds of events to receive: key, mouse and update events
   */
  explicit GuiEventListener(zorSDK::GuiEventListener::ActivationMask mask = zorSDK::GuiEventListener::ALL);

  /**
   * Shoots a ray from the mouse position into the simulation that the listener is in.
   * \param x screen position in pixels from the left edge
   * \param y screen position in pixels from the lower edge
   * \param camera the camera that shows the scene; must not be null and must have a viewport
   * \param onlyDynamics true to count geometries of dynamic bodies only
   * \return the closest hit: the geometry and one point with its normal; empty if nothing was met
   */
  zorCollide::GeometryContact intersect(float x, float y, osg::Camera const* camera,
                                        bool onlyDynamics = false);

  /**
   * Picks the contact that is nearest to where the last ray of intersect() started.
   * \param geometryContacts contacts to pick from
   * \return index of the contact; the number of contacts if none has a point
   */
  size_t findIntersectGeometryIndex(zorCollide::LocalGeometryContactVector const& geometryContacts);

  /**
   * Finds the points on the near and far planes under a screen position.
   * \param camera the camera that shows the scene; must not be null and must have a viewport
   * \param near receives the point on the near plane, in simulation coordinates
   * \param far receives the point on the far plane, in simulation coordinates
   * \param x screen position in pixels from the left edge
   * \param y screen position in pixels from the lower edge
   */
  void getNearFarPoints(osg::Camera const* camera, zor::Vec3& near, zor::Vec3& far, float x, float y) const;

protected:
  ~GuiEventListener() override = default;

private:
  zor::Vec3 m_rayOrigin;
};

} // namespace zorOSG
