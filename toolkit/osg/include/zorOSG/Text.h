#pragma once

#include <osg/Geode>
#include <osgText/Text>

#include <zor/Types.h>
#include <zor/Vec3.h>
#include <zor/Vec4.h>

namespace zorOSG {

/** A text label in the scene. Sizes are in metres unless the axis alignment is SCREEN with a screen-sized
 * font. */
class Text : public osg::Geode {
public:
  /** Plane in which the text lies, or how it turns. */
  enum AxisAlignment : int {
    XY_PLANE,
    REVERSED_XY_PLANE,
    XZ_PLANE,
    REVERSED_XZ_PLANE,
    YZ_PLANE,
    REVERSED_YZ_PLANE,
    SCREEN,
    USER_DEFINED_ROTATION
  };

  /** What is drawn behind the letters to set them off. */
  enum BackdropType : int {
    DROP_SHADOW_BOTTOM_RIGHT,
    DROP_SHADOW_CENTER_RIGHT,
    DROP_SHADOW_TOP_RIGHT,
    DROP_SHADOW_BOTTOM_CENTER,
    DROP_SHADOW_TOP_CENTER,
    DROP_SHADOW_BOTTOM_LEFT,
    DROP_SHADOW_CENTER_LEFT,
    DROP_SHADOW_TOP_LEFT,
    OUTLINE,
    NONE
  };

  /** Point of the text that lies at its position. */
  enum AlignmentType : int {
    LEFT_TOP,
    LEFT_CENTER,
    LEFT_BOTTOM,
    CENTER_TOP,
    CENTER_CENTER,
    CENTER_BOTTOM,
    RIGHT_TOP,
    RIGHT_CENTER,
    RIGHT_BOTTOM,
    LEFT_BASE_LINE,
    CENTER_BASE_LINE,
    RIGHT_BASE_LINE,
    LEFT_BOTTOM_BASE_LINE,
    CENTER_BOTTOM_BASE_LINE,
    RIGHT_BOTTOM_BASE_LINE,
    BASE_LINE = LEFT_BASE_LINE
  };

  /** What is drawn; bits that may be combined. */
  enum DrawModeMask : int { TEXT = 1, BOUNDINGBOX = 2, FILLEDBOUNDINGBOX = 4, ALIGNMENT = 8 };

  /** Creates an empty white text at the origin that faces the screen. */
  Text();

  /**
   * Creates a white text at the origin.
   * \param text - the text (UTF-8)
   */
  explicit Text(zor::String const& text);

  /**
   * Creates a text.
   * \param text - the text (UTF-8)
   * \param position - where its alignment point lies (m)
   * \param color - red, green, blue and alpha, each 0 to 1
   */
  Text(zor::String const& text, zor::Vec3 const& position,
       zor::Vec4 const& color = zor::Vec4(1.0, 1.0, 1.0, 1.0));

  /**
   * Sets the font.
   * \param font - font file, looked up on the font path; one that cannot be read keeps the present font and
   * warns
   */
  void setFont(zor::String const& font);

  /**
   * Sets the height of the letters.
   * \param size - height (m); must be positive, else std::invalid_argument
   */
  void setCharacterSize(float size);

  /**
   * Sets the colour of the letters.
   * \param color - red, green, blue and alpha, each 0 to 1
   */
  void setColor(zor::Vec4f const& color);

  /**
   * Moves the text.
   * \param position - where its alignment point lies (m)
   */
  void setPosition(zor::Vec3 const& position);

  /**
   * Turns the text into a plane, or lets it face the screen.
   * \param alignment - the plane; SCREEN faces the viewer from wherever it is seen
   */
  void setAxisAlignment(AxisAlignment alignment);

  /**
   * Sets what is drawn behind the letters.
   * \param type - shadow direction, outline or nothing
   */
  void setBackdropType(BackdropType type);

  /**
   * Sets what is drawn.
   * \param mode - bits of DrawModeMask
   */
  void setDrawMode(DrawModeMask mode);

  /**
   * Changes the text.
   * \param text - the text (UTF-8)
   */
  void setText(zor::String const& text);

  /**
   * Sets which point of the text lies at its position.
   * \param alignment - the point
   */
  void setAlignment(AlignmentType alignment);

#ifndef SWIG
  /** \return the drawable behind this node */
  osgText::Text* getDrawableText() { return m_text.get(); }
#endif

protected:
  ~Text() override = default;

private:
  osg::ref_ptr<osgText::Text> m_text;
};

/**
 * Takes one reference on a text.
 * \param node - the text
 */
void Text_reference(zorOSG::Text* node);

/**
 * Releases one reference of a text and deletes it with the last one.
 * \param node - the text
 */
void Text_unreference(zorOSG::Text* node);

} // namespace zorOSG
