#pragma once

#include <osg/Geode>
#include <osg/Geometry>
#include <osg/Group>
#include <osg/ref_ptr>

#include <zor/Vec2.h>
#include <zor/Vec4.h>

namespace zorOSG {

/**
 * A coloured rectangle on the screen, drawn over the scene and under the texts of the HUD, wherever it stands
 * in the scene graph. Its place is given as parts of the picture: (0, 0) is the lower left corner, (1, 1) the
 * upper right one, so that it keeps its place when the window is resized and in pictures of any size.
 * Drawables that are added to it have coordinates of the panel itself, again from (0, 0) to (1, 1).
 *
 * createPanel() makes one. A panel may belong to an object, by which it is recognised.
 */
class Panel : public osg::Geode {
public:
#ifndef SWIG
  /**
   * \param position - of the lower left corner
   * \param size - width and height
   * \param color - red, green, blue and alpha
   * \param object - what it belongs to; only compared, may be null
   */
  Panel(zor::Vec2 const& position, zor::Vec2 const& size, zor::Vec4 const& color,
        void const* object = nullptr);
  void traverse(osg::NodeVisitor& visitor) override;
  osg::BoundingSphere computeBound() const override;
#endif

  /**
   * \param position - of the lower left corner, as parts of the picture's width and height; not finite throws
   * std::invalid_argument
   */
  void setPosition(zor::Vec2 const& position);

  /** \return position of the lower left corner, as parts of the picture's width and height */
  zor::Vec2 getPosition() const { return m_position; }

  /**
   * \param size - width and height, as parts of the picture's; negative or not finite throws
   * std::invalid_argument
   */
  void setSize(zor::Vec2 const& size);

  /** \return width and height, as parts of the picture's */
  zor::Vec2 getSize() const { return m_size; }

  /** \param color - red, green, blue and alpha, each 0 to 1; not finite throws std::invalid_argument */
  void setColor(zor::Vec4 const& color);

  /** \return red, green, blue and alpha */
  zor::Vec4 getColor() const { return m_color; }

  /**
   * Takes the panel out of a scene: out of all groups at or below the given one. The panel can be added
   * again.
   * \param sceneData - where it is taken out; null for everywhere
   */
  void uninitialize(osg::Group* sceneData);

  /** \return true if the panel is in a scene, that is, in some group */
  bool isValid() const { return getNumParents() > 0; }

  /** Has what has been set drawn from the next frame on. Setters do so themselves: scripts need not call it.
   */
  void update();

  /** \param obj - an object \return true if the panel belongs to it; a panel of nothing belongs to none */
  bool match(void const* obj) const { return obj && obj == m_object; }

protected:
  ~Panel() override = default;

private:
  zor::Vec2 m_position;
  zor::Vec2 m_size;
  zor::Vec4 m_color;
  void const* m_object;
  osg::ref_ptr<osg::Geometry> m_background;
};

/**
 * Creates a panel.
 * \param root - the group that gets and owns it; null gives null
 * \param position - of the lower left corner, as parts of the picture's width and height
 * \param size - width and height, as parts of the picture's; not negative
 * \param color - red, green, blue and alpha, each 0 to 1
 * \param object - what the panel belongs to, for Panel::match; it is only compared
 * \return the panel, owned by root
 */
zorOSG::Panel* createPanel(osg::Group* root, zor::Vec2 const& position, zor::Vec2 const& size,
                           zor::Vec4 const& color, void const* object = nullptr);

} // namespace zorOSG
