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
    XY_PLANE,             ///< In the xy plane, read from above (+z).
    REVERSED_XY_PLANE,    ///< In the xy plane, read from below.
    XZ_PLANE,             ///< In the xz plane, read from -y.
    REVERSED_XZ_PLANE,    ///< In the xz plane, read from +y.
    YZ_PLANE,             ///< In the yz plane, read from +x.
    REVERSED_YZ_PLANE,    ///< In the yz plane, read from -x.
    SCREEN,               ///< Always faces the viewer.
    USER_DEFINED_ROTATION ///< As the rotation says.
  };

  /** What is drawn behind the letters to set them off. */
  enum BackdropType : int {
    DROP_SHADOW_BOTTOM_RIGHT,  ///< A shadow below and to the right.
    DROP_SHADOW_CENTER_RIGHT,  ///< A shadow to the right.
    DROP_SHADOW_TOP_RIGHT,     ///< A shadow above and to the right.
    DROP_SHADOW_BOTTOM_CENTER, ///< A shadow below.
    DROP_SHADOW_TOP_CENTER,    ///< A shadow above.
    DROP_SHADOW_BOTTOM_LEFT,   ///< A shadow below and to the left.
    DROP_SHADOW_CENTER_LEFT,   ///< A shadow to the left.
    DROP_SHADOW_TOP_LEFT,      ///< A shadow above and to the left.
    OUTLINE,                   ///< An outline around the letters.
    NONE                       ///< Nothing.
  };

  /** Point of the text that lies at its position. */
  enum AlignmentType : int {
    LEFT_TOP,                  ///< Left end, top of the text.
    LEFT_CENTER,               ///< Left end, middle of the height.
    LEFT_BOTTOM,               ///< Left end, bottom of the text.
    CENTER_TOP,                ///< Middle of the width, top of the text.
    CENTER_CENTER,             ///< Middle of width and height.
    CENTER_BOTTOM,             ///< Middle of the width, bottom of the text.
    RIGHT_TOP,                 ///< Right end, top of the text.
    RIGHT_CENTER,              ///< Right end, middle of the height.
    RIGHT_BOTTOM,              ///< Right end, bottom of the text.
    LEFT_BASE_LINE,            ///< Left end, base line of the first line.
    CENTER_BASE_LINE,          ///< Middle of the width, base line of the first line.
    RIGHT_BASE_LINE,           ///< Right end, base line of the first line.
    LEFT_BOTTOM_BASE_LINE,     ///< Left end, base line of the last line.
    CENTER_BOTTOM_BASE_LINE,   ///< Middle of the width, base line of the last line.
    RIGHT_BOTTOM_BASE_LINE,    ///< Right end, base line of the last line.
    BASE_LINE = LEFT_BASE_LINE ///< The same as LEFT_BASE_LINE.
  };

  /** What is drawn; bits that may be combined. */
  enum DrawModeMask : int {
    TEXT = 1,              ///< The letters.
    BOUNDINGBOX = 2,       ///< The outline of the bounding box, in the colour of the letters.
    FILLEDBOUNDINGBOX = 4, ///< The bounding box, filled half black, or half white behind dark letters.
    ALIGNMENT = 8          ///< A cross at the position.
  };

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
   * \param font - font file, looked up on the font path, or the name of a family; where it cannot be read the
   * present font stays, and the log tells of it
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
   * \param position - where its alignment point lies (m); not finite throws std::invalid_argument
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
