#pragma once

#include <osg/Camera>
#include <osgText/Text>

#include <string>

namespace zorOSG {

/// A panel of text over the picture, hidden until it is shown.
class TextOverlay {
public:
  enum class Corner { UPPER_LEFT, UPPER_RIGHT, LOWER_LEFT };

  explicit TextOverlay(Corner corner);

  /** \return the node to put under the root of the viewer's graph */
  osg::Node* node() const { return m_camera.get(); }

  void setVisible(bool visible);
  bool isVisible() const;

  void setText(std::string const& text);

  /** \param width, height size of the window in pixels */
  void resize(int width, int height);

private:
  void place();

  osg::ref_ptr<osg::Camera> m_camera;
  osg::ref_ptr<osgText::Text> m_text;
  Corner m_corner;
  int m_width = 1;
  int m_height = 1;
};

} // namespace zorOSG
