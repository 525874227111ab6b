#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include <osg/Vec3f>

namespace zorOSG {

/** The colours of a cube map in one size. Rows begin with the upper one, as in cube maps. */
class CubeLevel {
public:
  explicit CubeLevel(int side);

  int side() const { return m_side; }
  osg::Vec3f& at(int face, int column, int row) { return m_colors[index(face, column, row)]; }
  osg::Vec3f const& at(int face, int column, int row) const { return m_colors[index(face, column, row)]; }

  /** \return direction of a place on a face, in parts of its side from the upper left; not normalized */
  static osg::Vec3f directionOf(int face, float s, float t);
  osg::Vec3f directionOf(int face, int column, int row) const;

  /** \return colour in a direction, interpolated also over the edges of the cube */
  osg::Vec3f look(osg::Vec3f const& direction) const;

  /** \return the same in half the size, each colour the mean of those it stands for */
  CubeLevel halved() const;

  /** \return the same in another size, interpolated */
  CubeLevel resized(int side) const;

private:
  size_t index(int face, int column, int row) const {
    return (static_cast<size_t>(face) * static_cast<size_t>(m_side) + static_cast<size_t>(row)) *
               static_cast<size_t>(m_side) +
           static_cast<size_t>(column);
  }
  osg::Vec3f const& around(int face, int column, int row) const;

  int m_side;
  std::vector<osg::Vec3f> m_colors;
};

} // namespace zorOSG
