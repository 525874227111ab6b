#include <zorOSG/Text.h>

#include <osgText/String>
#include <zor/Notify.h>

#include "Checks.h"
#include "Convert.h"
#include "TextFont.h"
#include "VisualState.h"

namespace zorOSG {

namespace {

constexpr float defaultCharacterSize = 0.2f;

/** Half of black behind bright letters, half of white behind dark ones. */
osg::Vec4 behind(osg::Vec4 const& letters) {
  bool const isBright = 0.3f * letters.r() + 0.59f * letters.g() + 0.11f * letters.b() > 0.5f;
  return isBright ? osg::Vec4(0, 0, 0, 0.5f) : osg::Vec4(1, 1, 1, 0.5f);
}

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
  setColor(zor::Vec4f(1.0f, 1.0f, 1.0f, 1.0f));
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
  setColor(zor::Vec4f(color));
}

void Text::setFont(zor::String const& font) {
  osg::ref_ptr<osgText::Font> const read = readTextFont(font);
  if (read)
    m_text->setFont(read);
  else
    zor::notify(zor::Notify::NOTIFY_WARNING)
        << "Text: font '" << font << "' cannot be read, the present one stays" << zor::endMessage;
}

void Text::setCharacterSize(float size) {
  requirePositive("Text::setCharacterSize", "size", size);
  m_text->setCharacterSize(size);
}

void Text::setColor(zor::Vec4f const& color) {
  requireFinite("Text::setColor", "color", color);
  m_text->setColor(toOsg(color));
  m_text->setBoundingBoxColor(behind(toOsg(color)));
}

void Text::setPosition(zor::Vec3 const& position) {
  requireFinite("Text::setPosition", "position", position);
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
  m_text->update(); // else boxes and crosses appear with the next text only
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
