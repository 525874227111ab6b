#pragma once

#include <osg/Camera>
#include <osg/Geometry>
#include <osg/MatrixTransform>
#include <osgText/Text>

#include <string>

namespace zorOSG {

/**
 * A dark panel with texts and drawables over the picture, hidden until it is shown. Its coordinates are
 * pixels from the upper left corner of the panel, x to the right and y down as negative numbers;
 * high-resolution screens scale it up, and a panel that would not fit into the window is scaled down.
 */
class OverlayPanel {
public:
  enum class Corner { UPPER_LEFT, UPPER_RIGHT, LOWER_LEFT };

  explicit OverlayPanel(Corner corner);

  /** \return the node to put under the root of the viewer's graph */
  osg::Node* node() const { return m_camera.get(); }

  void setVisible(bool visible);
  bool isVisible() const;

  /**
   * \param width, height size of the window in pixels
   * \param pixelScale pixels of the screen for one of the panel
   */
  void resize(int width, int height, double pixelScale);

  /** Takes away all texts and drawables. */
  void clear();

  /** \return a new text, whose first line starts at a point; owned by the panel */
  osgText::Text& addText(std::string const& text, osg::Vec2 const& at, osg::Vec4 const& color,
                         float size = 15);

  void add(osg::Drawable* drawable);

  /** \param width, height of what the panel shows, margins included */
  void setSize(float width, float height);

private:
  void place();
  double scale() const;

  osg::ref_ptr<osg::Camera> m_camera;
  osg::ref_ptr<osg::MatrixTransform> m_placement;
  osg::ref_ptr<osg::Geode> m_content;
  osg::ref_ptr<osg::Geometry> m_background;
  Corner m_corner;
  osg::Vec2 m_size{1, 1};
  osg::Vec2i m_window{1, 1};
  double m_pixelScale = 1;
};

} // namespace zorOSG
