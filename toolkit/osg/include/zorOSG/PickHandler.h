#pragma once

#include <zor/Vec3.h>
#include <zorSDK/PickHandler.h>
#include <zorSDK/PickResult.h>

#include <osg/observer_ptr>
#include <osg/ref_ptr>

#include <memory>

namespace osg {
class Camera;
class Group;
} // namespace osg

namespace osgViewer {
class Viewer;
}

namespace zorSDK {
class Simulation;
}

namespace zorOSG {

class MouseSpring;

/**
 * Picks bodies with the mouse and drags them by a spring.
 *
 * A press of the activation button with the activation keys takes hold of the dynamic body under the mouse.
 * The body is pulled to the mouse, at the depth at which it was picked, until the button is released. Other
 * bodies stay where they are, and the press is left to the camera.
 *
 * The application has a handler of its own. Another one gets its events from the simulation that it is added
 * to as a listener. Screen positions are pixels from the lower left corner.
 */
class PickHandler : public zorSDK::PickHandler {
public:
  /**
   * Creates a handler for the main camera of a viewer.
   * \param viewer - only observed; null for a handler that gets its camera from setCamera()
   * \param scene - group to draw the spring in, shared by the handler; null to draw none unless
   * createMouseSpringRendering() is called
   */
  PickHandler(osgViewer::Viewer* viewer, osg::Group* scene = nullptr);

  /**
   * Takes hold of the body at a screen position, leaving the one held before.
   * \param screenX - pixels from the left edge
   * \param screenY - pixels from the lower edge
   * \return the nearest geometry met, whether its body can be held or not
   * Throws std::runtime_error without a simulation or a camera.
   */
  zorSDK::PickResult pick(float screenX, float screenY);

  /**
   * Finds what is between two points.
   * \param start - in simulation coordinates, metres
   * \param end - in simulation coordinates, metres; another point than start
   * \param onlyDynamics - true to see through whatever is not part of a dynamic body
   * \return the geometry met that is nearest to start, by its exact shape, or a miss. What clip planes have
   * cut away in the picture of the camera is not met
   * Throws std::runtime_error without a simulation.
   */
  zorSDK::PickResult intersect(zor::Vec3 const& start, zor::Vec3 const& end, bool onlyDynamics);

  /**
   * Finds what is seen at a screen position.
   * \param screenX - pixels from the left edge
   * \param screenY - pixels from the lower edge
   * \param onlyDynamics - true to see through whatever is not part of a dynamic body
   * \return the geometry met that is nearest to the camera, by its exact shape, or a miss. What clip planes
   * have cut away is not met
   * Throws std::runtime_error without a simulation or a camera.
   */
  zorSDK::PickResult intersect(float screenX, float screenY, bool onlyDynamics);

  /**
   * Finds the points on the near and far planes under a screen position, for the current pose of a camera.
   * \param camera - must not be null and must have a viewport
   * \param near - receives the point on the near plane
   * \param far - receives the point on the far plane
   * \param x - pixels from the left edge
   * \param y - pixels from the lower edge
   * \param inSimulation - true for points in simulation coordinates; false for those that the viewer draws
   * in, which differ where setInverseTransform() was called
   */
  void getNearFarPoints(osg::Camera const* camera, zor::Vec3& near, zor::Vec3& far, float x, float y,
                        bool inSimulation = true) const;

  /** Takes no keys; they go on to other listeners. \return false */
  bool keyboard(int key, unsigned int modKeyMask, float x, float y, bool keydown) override;
  /** Picks up what is under the mouse, or lets it go. \return true if a body was picked up or let go */
  bool mouse(zorSDK::GuiEventListener::MouseButtonMask button, zorSDK::GuiEventListener::MouseState state,
             float x, float y) override;
  /** Pulls what was picked up towards the mouse. \return true if something is held */
  bool mouseDragged(zorSDK::GuiEventListener::MouseButtonMask buttonMask, float x, float y) override;
  /** Keeps pulling towards the mouse where it stays; called in every frame. */
  void update(float x, float y) override;

  /** Detaches the body that is held. */
  void reset() override;

  /**
   * Chooses the mouse buttons that activate picking.
   * \param button - combination of zorSDK::GuiEventListener::MouseButtonMask; 0 for none
   * Throws std::invalid_argument for another value.
   */
  void setActivateMouseButton(unsigned int button);

  /** \return the mouse buttons that activate picking; the left one by default */
  int getActivateMouseButton() const;

  /**
   * Chooses the modifier keys that must be down for a press to pick. Of each kind (shift, control, alt) that
   * the mask names, one of the named keys must be down; other keys may be.
   * \param mask - combination of zorSDK::GuiEventListener::ModKeyMask; 0 for no key
   * Throws std::invalid_argument for another value.
   */
  void setActivateModKeyMask(unsigned int mask);

  /** \return the modifier keys that must be down; either shift key by default */
  int getActivateModKeyMask() const;

  /** \param camera - the camera whose picture is picked in, shared by the handler; null for the viewer's main
   * camera */
  void setCamera(osg::Camera* camera);

  /** \return the camera whose picture is picked in, borrowed; null if there is none */
  osg::Camera* getCamera() const;

  /** \param simulation - whose bodies are picked, only observed; null for the one that the handler has been
   * added to as a listener. A body of another simulation is let go of. */
  void setSimulation(zorSDK::Simulation* simulation) override;

  /**
   * Draws the spring while a body is held: a coil between two balls, green without force and red at the limit
   * of it. Its thickness is the same on the screen at any distance.
   * \param scale - thickness, 1 for the normal one; above zero
   * Throws std::runtime_error if there is neither a scene nor a viewer with one.
   */
  void createMouseSpringRendering(float scale);

  /** Brings the drawn spring up to date; done once a frame for a handler that gets events. */
  void updateRenderState();

protected:
  ~PickHandler() override;

private:
  bool areKeysDown() const;
  zor::Vec3 targetAt(float x, float y) const;
  void follow(float x, float y);
  void showSpring();

  osg::observer_ptr<osgViewer::Viewer> m_viewer;
  osg::ref_ptr<osg::Camera> m_camera;
  osg::ref_ptr<osg::Group> m_scene;
  std::unique_ptr<MouseSpring> m_spring;
  unsigned int m_button = LEFT_BUTTON;
  unsigned int m_keys = MODKEY_SHIFT;
  double m_depth = 0; // of the grab point, along the view direction
  float m_x = 0;      // of the mouse while a body is held
  float m_y = 0;
};

} // namespace zorOSG
