#include "HudText.h"

#include "scene/TextFont.h"

#include <zor/Notify.h>

#include <osgText/Font>

#include <cmath>
#include <stdexcept>

namespace zorOSG {

namespace {

constexpr float MARGIN = 12.0f;
constexpr float LINE_SPACING = 1.35f;

char const* const DEFAULT_FONT = "DejaVuSans.ttf";

} // namespace

HudText::HudText() : m_node(new osg::Geode) {
  m_font = readTextFont(DEFAULT_FONT);
  m_fontName = m_font ? DEFAULT_FONT : "built-in";
  if (!m_font)
    m_font = osgText::Font::getDefaultFont();
}

void HudText::setText(int row, std::string const& text, osg::Vec4 const* color) {
  if (row < 0 || row >= MAX_ROWS)
    throw std::out_of_range("HUD text: row " + std::to_string(row) + " is not 0 to " +
                            std::to_string(MAX_ROWS - 1));
  auto const index = static_cast<size_t>(row);
  if (index >= m_rows.size())
    m_rows.resize(index + 1);
  Row& target = m_rows[index];
  bool const changed = target.text != text || (color && *color != target.color);
  if (!changed)
    return;
  target.text = text;
  if (color)
    target.color = *color;
  show(target, index);
}

void HudText::show(Row& row, size_t index) {
  if (!row.drawable && row.text.empty())
    return;
  if (!row.drawable) {
    row.drawable = new osgText::Text;
    style(*row.drawable, index);
    m_node->addDrawable(row.drawable);
  }
  row.drawable->setNodeMask(row.text.empty() ? 0u : ~0u);
  row.drawable->setText(row.text, osgText::String::ENCODING_UTF8);
  row.drawable->setColor(row.color);
}

void HudText::style(osgText::Text& text, size_t index) const {
  auto const resolution = static_cast<unsigned int>(std::lround(m_fontSize * m_pixelScale));
  text.setDataVariance(osg::Object::DYNAMIC);
  text.setCullingActive(false);
  text.setUseDisplayList(false);
  text.setFont(m_font);
  text.setFontResolution(resolution, resolution);
  text.setCharacterSize(m_fontSize);
  text.setAlignment(osgText::Text::LEFT_BASE_LINE);
  text.setBackdropType(osgText::Text::DROP_SHADOW_BOTTOM_RIGHT);
  text.setBackdropColor({0.0f, 0.0f, 0.0f, 0.65f});
  text.setBackdropOffset(0.06f, 0.06f);
  float const line = std::round(m_fontSize * LINE_SPACING);
  text.setPosition({MARGIN, -MARGIN - std::round(m_fontSize) - line * static_cast<float>(index), 0.0f});
}

void HudText::restyle() {
  for (size_t i = 0; i < m_rows.size(); ++i)
    if (m_rows[i].drawable)
      style(*m_rows[i].drawable, i);
}

void HudText::clear() {
  for (size_t i = 0; i < m_rows.size(); ++i)
    setText(static_cast<int>(i), {}, nullptr);
}

void HudText::setFont(std::string const& name) {
  osg::ref_ptr<osgText::Font> const font = readTextFont(name);
  if (!font) {
    zor::notify(zor::Notify::NOTIFY_WARNING)
        << "HUD text: font '" << name << "' cannot be read, '" << m_fontName << "' stays" << zor::endMessage;
    return;
  }
  m_font = font;
  m_fontName = name;
  restyle();
}

void HudText::setFontSize(float size) {
  if (!(size > 0.0f && size <= 1000.0f))
    throw std::invalid_argument("HUD text: font size " + std::to_string(size) +
                                " is not above 0 and up to 1000");
  m_fontSize = size;
  restyle();
}

void HudText::setPixelScale(float scale) {
  m_pixelScale = scale;
  restyle();
}

} // namespace zorOSG
