#pragma once

#include <osg/Array>
#include <osg/Geometry>
#include <osg/ref_ptr>

#include <array>

namespace zorOSG {

/** A gradient between four colours behind everything else in the view. */
class Background {
public:
  enum Corner { UPPER_LEFT, UPPER_RIGHT, LOWER_LEFT, LOWER_RIGHT };

  Background();

  osg::Node& node() const { return *m_quad; }

  /** \param colors - colours in the order of Corner */
  void setColors(std::array<osg::Vec4, 4> const& colors);

private:
  osg::ref_ptr<osg::Geometry> m_quad;
  osg::ref_ptr<osg::Vec4Array> m_colors;
};

} // namespace zorOSG
