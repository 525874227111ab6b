#pragma once

#include <osg/Array>
#include <osg/BoundingBox>
#include <osg/Geometry>
#include <osg/PrimitiveSet>
#include <osg/ref_ptr>

namespace zorOSG {

/** One piece of every path: lines that are written anew, in memory that is kept. */
class TrailLayer : public osg::Geometry {
public:
  TrailLayer();

  bool isEmpty() const { return m_pieces->getCount() == 0; }
  osg::BoundingBox const& box() const { return m_box; }

  /** Takes all lines away. */
  void begin();
  /** \param from - the older end */
  void add(osg::Vec3 const& from, osg::Vec3 const& to, osg::Vec4ub const& color);
  /** Hands what was written to the graphics. */
  void end();

private:
  osg::ref_ptr<osg::Vec3Array> m_positions;
  osg::ref_ptr<osg::Vec4ubArray> m_colors;
  osg::ref_ptr<osg::DrawArrays> m_pieces;
  osg::BoundingBox m_box;
};

} // namespace zorOSG
