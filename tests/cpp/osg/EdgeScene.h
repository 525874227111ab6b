#pragma once

#include "Offscreen.h"

#include <osg/Geometry>

#include <limits>

namespace zorTest {

/** \return a triangle that is white in any light */
inline osg::ref_ptr<osg::Geometry> whiteTriangle(osg::Vec3 const& a, osg::Vec3 const& b, osg::Vec3 const& c) {
  osg::ref_ptr<osg::Geometry> triangle = new osg::Geometry;
  auto* const corners = new osg::Vec3Array;
  corners->push_back(a);
  corners->push_back(b);
  corners->push_back(c);
  triangle->setVertexArray(corners);
  auto* const white = new osg::Vec4Array(osg::Array::BIND_OVERALL);
  white->push_back({1.0f, 1.0f, 1.0f, 1.0f});
  triangle->setColorArray(white);
  triangle->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLES, 0, 3));
  triangle->getOrCreateStateSet()->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
  return triangle;
}

/** \return how many pixels are brighter than one value and darker than another, both 0 to 1 */
inline int countShades(osg::Image const& image, double above,
                       double below = std::numeric_limits<double>::infinity()) {
  int count = 0;
  for (int y = 0; y < image.t(); ++y)
    for (int x = 0; x < image.s(); ++x) {
      double const value = brightness(image, osg::Vec2d(x, y));
      count += value > above && value < below ? 1 : 0;
    }
  return count;
}

} // namespace zorTest
