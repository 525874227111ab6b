#pragma once

#include <osg/Geometry>
#include <osg/Group>
#include <osg/Material>
#include <osg/MatrixTransform>
#include <osg/observer_ptr>

namespace zorOSG {

/// What a drag with the mouse looks like: a coil between two balls, coloured by how much of its force is
/// used.
class MouseSpring {
public:
  /** Adds the hidden spring to a group. \param scale - thickness, 1 for the normal one */
  MouseSpring(osg::Group& scene, double scale);
  ~MouseSpring();
  MouseSpring(MouseSpring const&) = delete;
  MouseSpring& operator=(MouseSpring const&) = delete;

  /**
   * Shows the spring.
   * \param from - end at the body
   * \param to - end at the mouse
   * \param camera - what the spring is seen with: it is as thick on the screen at any distance
   * \param load - part of the largest force that is used, 0 to 1
   */
  void show(osg::Vec3d const& from, osg::Vec3d const& to, osg::Camera const& camera, double load);

  void hide();

private:
  void shapeCoil(osg::Vec3d const& axis, double ball);
  void setColor(double load);

  osg::observer_ptr<osg::Group> m_scene;
  osg::ref_ptr<osg::MatrixTransform> m_root; // placed at the body's end, for exact places far from the origin
  osg::ref_ptr<osg::MatrixTransform> m_bodyBall;
  osg::ref_ptr<osg::MatrixTransform> m_mouseBall;
  osg::ref_ptr<osg::Geometry> m_coil;
  osg::ref_ptr<osg::Material> m_material;
  double const m_scale;
};

} // namespace zorOSG
