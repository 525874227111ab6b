#include <zorOSG/Text.h>

#include <osgText/String>

#include "Checks.h"
#include "Convert.h"
#include "TextFont.h"
#include "VisualState.h"

namespace zorOSG {

namespace {

constexpr float defaultCharacterSize = 0.2f;

osgText::String decoded(zor::String const& text) {
  return osgText::String(text, osgText::String::ENCODING_UTF8);
}

} // namespace

Text::Text() : m_text(new osgText::Text) {
  m_text->setDataVariance(osg::Object::DYNAMIC); // the text may change while a frame is drawn
  if (defaultTextFont())
    m_text->setFont(defaultTextFont());
  m_text->setFontResolution(48, 48);
  m_text->setCharacterSize(defaultCharacterSize);
  m_text->setAxisAlignment(osgText::TextBase::SCREEN);
  m_text->setColor(osg::Vec4(1.0f, 1.0f, 1.0f, 1.0f));
  m_text->setUseDisplayList(false);
  m_text->setUseVertexBufferObjects(true);
  addDrawable(m_text);
  drawWithoutLight(*this);
}

Text::Text(zor::String const& text) : Text() {
  setText(text);
}

Text::Text(zor::String const& text, zor::Vec3 const& position, zor::Vec4 const& color) : Text(text) {
  setPosition(position);
  m_text->setColor(toOsgFloat(color));
}

void Text::setFont(zor::String const& font) {
  m_text->setFont(font);
}

void Text::setCharacterSize(float size) {
  requirePositive("Text::setCharacterSize", "size", size);
  m_text->setCharacterSize(size);
}

void Text::setColor(zor::Vec4f const& color) {
  m_text->setColor(toOsg(color));
}

void Text::setPosition(zor::Vec3 const& position) {
  m_text->setPosition(toOsgFloat(position));
}

void Text::setAxisAlignment(AxisAlignment alignment) {
  if (alignment < XY_PLANE || alignment > USER_DEFINED_ROTATION)
    throw std::invalid_argument("Text::setAxisAlignment: no such alignment: " + std::to_string(alignment));
  m_text->setAxisAlignment(static_cast<osgText::TextBase::AxisAlignment>(alignment));
}

void Text::setBackdropType(BackdropType type) {
  if (type < DROP_SHADOW_BOTTOM_RIGHT || type > NONE)
    throw std::invalid_argument("Text::setBackdropType: no such type: " + std::to_string(type));
  m_text->setBackdropType(static_cast<osgText::Text::BackdropType>(type));
}

void Text::setDrawMode(DrawModeMask mode) {
  constexpr unsigned int all = TEXT | BOUNDINGBOX | FILLEDBOUNDINGBOX | ALIGNMENT;
  m_text->setDrawMode(static_cast<unsigned int>(mode) & all);
}

void Text::setText(zor::String const& text) {
  m_text->setText(decoded(text));
}

void Text::setAlignment(AlignmentType alignment) {
  if (alignment < LEFT_TOP || alignment > RIGHT_BOTTOM_BASE_LINE)
    throw std::invalid_argument("Text::setAlignment: no such alignment: " + std::to_string(alignment));
  m_text->setAlignment(static_cast<osgText::TextBase::AlignmentType>(alignment));
}

} // namespace zorOSG
