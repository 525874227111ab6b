#pragma once

#include <osg/Array>
#include <osg/Geometry>
#include <osg/ref_ptr>

namespace zorOSG {

/** Has a drawable drawn however small it is: lines have a width in pixels. It is still left out when out of
 * view. */
void drawEvenIfSmall(osg::Drawable& drawable);

/** Collects coloured line segments into one unlit drawable. */
class LineBuilder {
public:
  LineBuilder();

  void segment(osg::Vec3 const& from, osg::Vec3 const& to, osg::Vec4 const& color);

  enum class Ends {
    PLAIN,
    DOTS ///< a dot of the line's width at each, which fills corners and shows lines shorter than a pixel
  };

  /** The finished drawable. The builder must not be used afterwards. \param width - pixels */
  osg::ref_ptr<osg::Geometry> finish(float width, Ends ends = Ends::PLAIN);

private:
  osg::ref_ptr<osg::Vec3Array> m_positions;
  osg::ref_ptr<osg::Vec4Array> m_colors;
};

} // namespace zorOSG
