#pragma once

#include <zorOSG/SceneDecorator.h>

#include <osg/Geometry>
#include <osg/ref_ptr>

namespace zorOSG {

/** An image in a corner of the view. Its coordinates are parts of the view, from 0 to 1. */
class Logo {
public:
  Logo();

  osg::Node& node() const { return *m_quad; }

  void setTexture(osg::Texture2D* texture, float pixelDensity);
  osg::Texture2D* getTexture() const { return m_texture.get(); }

  void setEnable(bool enable);
  bool getEnable() const { return m_enable; }

  void setLocation(SceneDecorator::LogoLocation location);
  SceneDecorator::LogoLocation getLocation() const { return m_location; }

  void setPosition(osg::Vec2 const& position);
  static osg::Vec2 defaultPosition() { return {MARGIN, MARGIN}; }

  void setMaximumSize(osg::Vec2 const& size);
  osg::Vec2 const& getMaximumSize() const { return m_maximum; }

  /** \return size as drawn */
  osg::Vec2 getSize() const;

  /** \param size - pixels of the window, scaled down by its pixel scale */
  void setWindow(osg::Vec2 const& size);

private:
  static constexpr float MARGIN = 0.02f;

  osg::Vec2 place(osg::Vec2 const& size) const;
  void update();

  osg::ref_ptr<osg::Geometry> m_quad;
  osg::ref_ptr<osg::Vec3Array> m_corners;
  osg::ref_ptr<osg::Texture2D> m_texture;
  float m_density = 1.0f;
  bool m_enable = true;
  SceneDecorator::LogoLocation m_location = SceneDecorator::LOWER_LEFT;
  osg::Vec2 m_position = defaultPosition();
  osg::Vec2 m_maximum{0.25f, 0.25f};
  osg::Vec2 m_window{1.0f, 1.0f};
};

} // namespace zorOSG
