#pragma once

#include "HudText.h"
#include "Logo.h"

#include <osg/Group>
#include <osg/MatrixTransform>
#include <osg/ref_ptr>

#include <memory>

namespace zorOSG {

/** All that is drawn over the scene: logo, texts, nodes of the user and the mouse cursor. */
class Hud {
public:
  Hud(int width, int height);

  osg::Node& node() const { return *m_node; }
  HudText& text() { return *m_text; }
  HudText const& text() const { return *m_text; }
  Logo& logo() { return m_logo; }
  Logo const& logo() const { return m_logo; }

  /** \return the group of the user's nodes */
  osg::Group& group() const { return *m_group; }

  /** Starts over with an empty group and empty rows of text. */
  void reset();

  void setWindowSize(int width, int height);
  int width() const { return m_size->width; }
  int height() const { return m_size->height; }
  void setPixelScale(float scale);
  float pixelScale() const { return m_size->pixelScale; }

  void setCursorShown(bool shown);
  bool isCursorShown() const { return m_cursor->getNodeMask() != 0; }
  void moveCursor(float x, float y);

private:
  struct Size {
    int width;
    int height;
    float pixelScale = 1.0f;
  };

  void sizeChanged();
  void placeCursor();

  std::shared_ptr<Size> m_size; ///< shared with the layers' projections
  osg::ref_ptr<osg::Group> m_node;
  osg::ref_ptr<osg::Group> m_unitLayer;
  osg::ref_ptr<osg::Group> m_pixelLayer;
  osg::ref_ptr<osg::Group> m_group;
  osg::ref_ptr<osg::MatrixTransform> m_cursor;
  std::unique_ptr<HudText> m_text;
  Logo m_logo;
  osg::Vec2 m_cursorPosition{0.5f, 0.5f};
};

} // namespace zorOSG
