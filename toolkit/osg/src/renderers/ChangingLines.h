#pragma once

#include <osg/Array>
#include <osg/Geometry>
#include <osg/PrimitiveSet>
#include <osg/ref_ptr>

namespace zorOSG {

/** Unlit line strips that are written anew whenever what they show has changed. */
class ChangingLines {
public:
  /** \param width - pixels */
  explicit ChangingLines(float width);

  osg::Geometry& geometry() const { return *m_geometry; }

  /** Takes all strips away. */
  void begin();
  /** Adds a corner to the strip that is being written. */
  void corner(osg::Vec3 const& position, osg::Vec4ub const& color);
  /** Ends a strip. */
  void endStrip();
  /** Hands what was written to the graphics. */
  void end();

private:
  osg::ref_ptr<osg::Geometry> m_geometry;
  osg::ref_ptr<osg::Vec3Array> m_positions;
  osg::ref_ptr<osg::Vec4ubArray> m_colors;
  osg::ref_ptr<osg::DrawElementsUInt> m_pieces; // one draw call, however many strips there are
  size_t m_ended = 0; // corners of the strips that have ended
};

} // namespace zorOSG
