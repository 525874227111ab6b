#pragma once

#include <osg/Geode>
#include <osg/Group>
#include <osg/Vec4>
#include <osgText/Text>

#include <string>
#include <vector>

namespace zorOSG {

/** Rows of text from the top of the view down, in pixels with the origin in the upper left corner. */
class HudText {
public:
  static constexpr int MAX_ROWS = 64;

  HudText();

  osg::Node& node() const { return *m_node; }

  /** \param color - new colour of the row; null to keep it \throws std::out_of_range for a row that does not
   * exist */
  void setText(int row, std::string const& text, osg::Vec4 const* color);
  void clear();

  /** Keeps the present font, with a warning, if the file cannot be read. */
  void setFont(std::string const& name);
  std::string const& getFont() const { return m_fontName; }

  void setFontSize(float size);
  float getFontSize() const { return m_fontSize; }

  /** \param scale - screen pixels per pixel of the layer, so that letters are drawn in full resolution */
  void setPixelScale(float scale);

private:
  struct Row {
    osg::ref_ptr<osgText::Text> drawable;
    std::string text;
    osg::Vec4 color{1.0f, 1.0f, 1.0f, 1.0f};
  };

  void show(Row& row, size_t index);
  void style(osgText::Text& text, size_t index) const;
  void restyle();

  osg::ref_ptr<osg::Geode> m_node;
  osg::ref_ptr<osgText::Font> m_font;
  std::string m_fontName;
  float m_fontSize = 18.0f;
  float m_pixelScale = 1.0f;
  std::vector<Row> m_rows;
};

} // namespace zorOSG
