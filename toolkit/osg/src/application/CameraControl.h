#pragma once

#include <zor/Vec3.h>

#include <osg/BoundingSphere>
#include <osgGA/StandardManipulator>
#include <osgViewer/Viewer>

namespace zorOSG {

/** \return centre of a node's bound in the world */
osg::Vec3d worldCenter(osg::Node& node);

/// Moves the camera of a viewer: home position, orbit manipulator, fitting to the scene.
class CameraControl {
public:
  struct Pose {
    zor::Vec3 eye{10, -14, 8};
    zor::Vec3 center{0, 0, 0};
    zor::Vec3 up{0, 0, 1};
  };

  /** \return true if the pose can be that of a camera: finite, with a direction, and up not along it */
  static bool givesDirection(Pose const& pose);

  /** Gives the viewer, which must outlive this object, the orbit manipulator. */
  void attach(osgViewer::Viewer* viewer);

  void detach() { m_viewer = nullptr; }

  Pose const& home() const { return m_home; }
  bool isHomeSet() const { return m_homeSet; }

  /** Throws std::invalid_argument for a pose that gives no direction. */
  void setHome(Pose const& pose);

  /** Has the mouse turn the camera about any axis, from where it is. */
  void useTrackball();

  /** Goes from turning about the scene to flying through it and back, and lets go of a node that is followed.
   * \param bound of the scene, which sets the speed */
  void switchMode(osg::BoundingSphere const& bound);

  /** Moves to a pose, letting go of a node that is followed. */
  void show(Pose const& pose);

  /** \return true while a node is followed */
  bool isTracking() const;

  /** Stays where it is and follows no node any more. */
  void letGo();

  /** Returns to a home position fitted to each scene, and to the orbit manipulator. */
  void reset();

  /** Moves to the home position, which is fitted to the bound unless it has been set. */
  void goHome(osg::BoundingSphere const& bound);

  /** Moves along the view direction until the bound fills the view. */
  void fit(osg::BoundingSphere const& bound);

  /** Turns to the centre of the bound. */
  void lookAt(osg::BoundingSphere const& bound);

  /** Follows a node. */
  void track(osg::Group& node, Pose const& pose, int trackerMode);

  /** Gives any viewer a camera that follows a node. Throws std::invalid_argument for a pose that gives no
   * direction and for a mode that the library's node tracker does not have. */
  static void track(osgViewer::Viewer& viewer, osg::Group& node, Pose const& pose, int trackerMode);

  /** \return the pose of the camera */
  Pose current() const;

private:
  void moveTo(Pose const& pose);
  void useOrbit();
  void install(osgGA::StandardManipulator* manipulator);
  double fitDistance(double radius) const;

  osgViewer::Viewer* m_viewer = nullptr;
  Pose m_home;
  bool m_homeSet = false;
};

} // namespace zorOSG
