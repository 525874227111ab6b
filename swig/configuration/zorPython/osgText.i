%module(threads="1", docstring="Text as a drawable.") osgText

// Siblings first: a type is known by the module that wraps it.
%pythonbegin %{
import osg
%}

%{
#include <cmath>
#include "headers/osg.h"
#include "headers/osgText.h"
%}

%include "shared/common.i"
%include "shared/scene_graph.i"
%import "osg.i"

%{
static void zorCheckCharacterSize(float height) {
  if (!(height > 0 && std::isfinite(height))) throw std::invalid_argument("characters have a height above 0");
}
%}

OSG_OWNED_CLASS(osgText, Text)
OSG_HELD_CLASS(osgText, Font)
OSG_BASE_CLASS(osgText, TextBase)
OSG_SHARED_CLASS(osgText::Font)
ZOR_INNER_RESULT(osgText::TextBase::getPosition)
ZOR_INNER_RESULT(osgText::TextBase::getColor)
ZOR_INNER_RESULT(osgText::TextBase::getRotation)
ZOR_INNER_RESULT(osgText::TextBase::getBoundingBoxColor)
ZOR_INNER_RESULT(osgText::Text::getBackdropColor)
%nodefaultctor osgText::Font;

namespace osgText {

/** The shapes of characters; readFontFile() makes one. */
class Font : public osg::Object {
public:
  std::string getFileName() const;
  void setMinFilterHint(osg::Texture::FilterMode mode);
  void setMagFilterHint(osg::Texture::FilterMode mode);
};

/** Base of texts. */
class TextBase : public osg::Drawable {
public:
  enum CharacterSizeMode { OBJECT_COORDS, SCREEN_COORDS, OBJECT_COORDS_WITH_MAXIMUM_SCREEN_SIZE_CAPPED_BY_FONT_HEIGHT };
  enum AlignmentType {
    LEFT_TOP, LEFT_CENTER, LEFT_BOTTOM, CENTER_TOP, CENTER_CENTER, CENTER_BOTTOM, RIGHT_TOP, RIGHT_CENTER, RIGHT_BOTTOM,
    LEFT_BASE_LINE, CENTER_BASE_LINE, RIGHT_BASE_LINE, LEFT_BOTTOM_BASE_LINE, CENTER_BOTTOM_BASE_LINE, RIGHT_BOTTOM_BASE_LINE
  };
  enum AxisAlignment { XY_PLANE, REVERSED_XY_PLANE, XZ_PLANE, REVERSED_XZ_PLANE, YZ_PLANE, REVERSED_YZ_PLANE, SCREEN, USER_DEFINED_ROTATION };
  enum Layout { LEFT_TO_RIGHT, RIGHT_TO_LEFT, VERTICAL };
  enum DrawModeMask { TEXT = 1, BOUNDINGBOX = 2, FILLEDBOUNDINGBOX = 4, ALIGNMENT = 8 };
  void setColor(osg::Vec4f const& color);
  osg::Vec4f const& getColor() const;
  osgText::Font* getFont();
  float getCharacterHeight() const;
  /** \param mode - SCREEN_COORDS: the height of characters is in pixels */
  void setCharacterSizeMode(CharacterSizeMode mode);
  CharacterSizeMode getCharacterSizeMode() const;
  /** \param width - lines are broken at this width; 0: nowhere */
  void setMaximumWidth(float width);
  float getMaximumWidth() const;
  void setMaximumHeight(float height);
  float getMaximumHeight() const;
  /** \param spacing - between lines, as a share of the height of characters */
  void setLineSpacing(float spacing);
  float getLineSpacing() const;
  void setPosition(osg::Vec3f const& position);
  osg::Vec3f const& getPosition() const;
  /** \param alignment - which point of the text is at its position */
  void setAlignment(AlignmentType alignment);
  AlignmentType getAlignment() const;
  /** \param axes - the plane in which the text lies; SCREEN: it turns to the viewer */
  void setAxisAlignment(AxisAlignment axes);
  AxisAlignment getAxisAlignment() const;
  void setRotation(osg::Quat const& rotation);
  osg::Quat const& getRotation() const;
  void setAutoRotateToScreen(bool rotate);
  bool getAutoRotateToScreen() const;
  void setLayout(Layout layout);
  Layout getLayout() const;
  unsigned int getDrawMode() const;
  void setBoundingBoxMargin(float margin);
  float getBoundingBoxMargin() const;
  void setBoundingBoxColor(osg::Vec4f const& color);
  osg::Vec4f const& getBoundingBoxColor() const;
  unsigned int getLineCount() const;
};
%extend TextBase {
  /** \param mode - what is drawn: DrawModeMask, added up */
  void setDrawMode(unsigned int mode) {
    $self->setDrawMode(mode);
    $self->update(); // else boxes and crosses appear with the next text only
  }
  /** \param text - any characters that the font has; "\n" begins a line */
  void setText(std::string const& text) { $self->setText(text, osgText::String::ENCODING_UTF8); }
  /** \return the text */
  std::string getText() const { return $self->getText().createUTF8EncodedString(); }
  /** \param height - of characters, in the units of the scene or in pixels; see setCharacterSizeMode() */
  void setCharacterSize(float height) {
    zorCheckCharacterSize(height);
    $self->setCharacterSize(height);
  }
  /** \param aspectRatio - height of characters divided by their width */
  void setCharacterSize(float height, float aspectRatio) {
    zorCheckCharacterSize(height);
    zorCheckCharacterSize(aspectRatio);
    $self->setCharacterSize(height, aspectRatio);
  }
  /** \param font - None for the one that is built in */
  void setFont(osgText::Font* font) { $self->setFont(osg::ref_ptr<osgText::Font>(font)); }
  /** \param filename - font file, or name of a font: the nearest that is installed is taken; RuntimeError with the name if there is none */
  void setFont(std::string const& filename) {
    osg::ref_ptr<osgText::Font> const font = osgText::readRefFontFile(filename);
    if (!font) throw std::runtime_error("can't read font file '" + filename + "'");
    $self->setFont(font);
  }
  /** Sets how finely characters are kept (pixels, 1 to 512). */
  void setFontResolution(unsigned int width, unsigned int height) {
    if (width < 1 || width > 512 || height < 1 || height > 512) throw std::invalid_argument("the resolution of a font is 1 to 512 pixels");
    $self->setFontResolution(width, height);
  }
}

/** Text as a drawable. */
class Text : public TextBase {
public:
  enum BackdropType {
    DROP_SHADOW_BOTTOM_RIGHT, DROP_SHADOW_CENTER_RIGHT, DROP_SHADOW_TOP_RIGHT, DROP_SHADOW_BOTTOM_CENTER, DROP_SHADOW_TOP_CENTER,
    DROP_SHADOW_BOTTOM_LEFT, DROP_SHADOW_CENTER_LEFT, DROP_SHADOW_TOP_LEFT, OUTLINE, NONE
  };
  Text();
  /** \param type - a shadow or outline, which makes the text readable on any ground */
  void setBackdropType(BackdropType type);
  BackdropType getBackdropType() const;
  void setBackdropColor(osg::Vec4f const& color);
  osg::Vec4f const& getBackdropColor() const;
  void setBackdropOffset(float offset = 0.07f);
};

} // namespace osgText

%inline %{
/** \param filename - font file, or name of a font: the nearest that is installed is taken; RuntimeError with the name if there is none \return the font */
static osgText::Font* readFontFile(std::string const& filename) {
  osg::ref_ptr<osgText::Font> font = osgText::readRefFontFile(filename);
  if (!font) throw std::runtime_error("can't read font file '" + filename + "'");
  return font.release();
}
%}
