#pragma once

#include <zor/Vec3.h>

namespace osg {
class Camera;
}

namespace osgViewer {
class Viewer;
}

namespace zorOSG {

/// Pose and projection of a camera as a plain value: read, modify, apply.
class CameraData {
public:
  /**
   * Uses camera view matrix for eye, center and up.
   * \param camera the camera to read; null gives a record that is not valid
   */
  explicit CameraData(osg::Camera const* camera);

  /**
   * Uses camera manipulator for eye, center and up.
   * \param viewer the viewer to read; null gives a record that is not valid. A viewer without a manipulator
   * is read as its camera.
   */
  explicit CameraData(osgViewer::Viewer const* viewer);

  zor::Vec3 eye;                ///< camera position, metres
  zor::Vec3 center;             ///< point looked at, metres
  zor::Vec3 up;                 ///< up direction
  double fieldOfView = 0;       ///< vertical field of view, degrees; 0 for a parallel projection
  double aspectRatio = 0;       ///< width over height
  double nearClippingPlane = 0; ///< distance of the near plane, metres
  double farClippingPlane = 0;  ///< distance of the far plane, metres
  double nearFarRatio = 0;      ///< smallest near over far when the planes are computed from the scene
  bool valid = false;           ///< the record holds data

  /**
   * Applies the settings to a camera.
   * \param camera receives view and projection
   * Throws std::invalid_argument if camera is null, std::runtime_error if the record is not valid.
   */
  void applyTo(osg::Camera* camera) const;

  /**
   * Applies the settings to a viewer, assigning the home position of its camera manipulator.
   * \param viewer receives view and projection
   * Throws std::invalid_argument if viewer is null, std::runtime_error if the record is not valid.
   */
  void applyTo(osgViewer::Viewer* viewer) const;
};

} // namespace zorOSG
