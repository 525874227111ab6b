#pragma once

#include <osg/Array>
#include <osg/Geometry>
#include <osg/ref_ptr>

namespace zorOSG {

/** Collects coloured line segments into one unlit drawable. */
class LineBuilder {
public:
  LineBuilder();

  void segment(osg::Vec3 const& from, osg::Vec3 const& to, osg::Vec4 const& color);

  /** The finished drawable. The builder must not be used afterwards. \param width - pixels */
  osg::ref_ptr<osg::Geometry> finish(float width);

private:
  osg::ref_ptr<osg::Vec3Array> m_positions;
  osg::ref_ptr<osg::Vec4Array> m_colors;
};

} // namespace zorOSG
