#pragma once

#include <osg/Geometry>
#include <osg/Matrixd>
#include <osg/ref_ptr>

#include <cstddef>
#include <string>
#include <vector>

namespace zorOSG {

/**
 * Coloured lines and points in one drawable, written anew whenever they may have changed. The arrays keep
 * their memory, and what is written again as it was is not uploaded again.
 */
class DebugLines {
public:
  enum class Layer {
    IN_SCENE, ///< hidden by what is in front
    ON_TOP    ///< in front of everything
  };

  DebugLines(std::string const& name, Layer layer, float lineWidth, float pointSize = 1);

  osg::Node* node() const { return m_drawable.get(); }

  /** Starts over. \param toDrawn takes what is written to the coordinates that are drawn */
  void begin(osg::Matrixd const& toDrawn);

  void line(osg::Vec3d const& from, osg::Vec3d const& to, osg::Vec4ub const& color);
  void point(osg::Vec3d const& at, osg::Vec4ub const& color);

  /** Shows what was written since begin(). */
  void end();

  std::size_t lineCount() const { return m_lineCount; }

private:
  struct Vertex {
    osg::Vec3 position;
    osg::Vec4ub color;
  };

  void write(osg::Vec3 const& position, osg::Vec4ub const& color);

  osg::ref_ptr<osg::Geometry> m_drawable;
  osg::ref_ptr<osg::Vec3Array> m_positions;
  osg::ref_ptr<osg::Vec4ubArray> m_colors;
  osg::ref_ptr<osg::DrawArrays> m_lines;
  osg::ref_ptr<osg::DrawArrays> m_points;
  std::vector<Vertex> m_collectedPoints; // they follow the lines in the arrays
  osg::Matrixd m_toDrawn;
  std::size_t m_written = 0;
  std::size_t m_lineCount = 0;
  bool m_changed = false;
};

} // namespace zorOSG
