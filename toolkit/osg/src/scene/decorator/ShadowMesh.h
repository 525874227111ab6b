#pragma once

#include <osg/Geometry>
#include <osg/Matrixd>
#include <osg/Plane>
#include <osg/Vec3d>
#include <osg/Vec4d>

#include <array>
#include <vector>

namespace zorOSG {

/** A light as shadow volumes need it. */
struct VolumeLight {
  osg::Vec4d position; ///< homogeneous
  double reach;        ///< how far behind bodies their shadows go (m)
  bool operator==(VolumeLight const&) const = default;
};

/** Triangles of a volume's surface, which face outwards; three vertices each. */
struct VolumeSurface {
  std::vector<osg::Vec3> lids;  ///< lit faces of the body, where the volume begins
  std::vector<osg::Vec3> sides; ///< all others
};

/** Triangles of a drawable with their neighbourhood, from which the outline seen from a light is found. */
class ShadowMesh {
public:
  explicit ShadowMesh(osg::Geometry const& mesh);

  /** \return the triangles on the positive side of all planes, which are in the drawable's coordinates */
  ShadowMesh cut(std::vector<osg::Plane> const& planes) const;

  /**
   * Makes the surface of the space that the body keeps light from, which is closed. Bodies with an open
   * surface are taken for sheets that keep light off on both sides.
   * \param place - takes the drawable to the coordinates of light and result
   */
  VolumeSurface makeVolume(osg::Matrixd const& place, VolumeLight const& light) const;

private:
  using Triangle = std::array<unsigned int, 3>;

  ShadowMesh() = default;

  /** A side of a triangle. Sides of one edge lie one after the other. */
  struct Side {
    unsigned int low, high; ///< vertices
    unsigned int triangle;
    int direction; ///< 1 if the triangle goes from low to high
  };

  void addTriangle(Triangle const& corners);
  void matchSides();
  std::vector<int> weighTriangles(std::vector<osg::Vec3d> const& points, VolumeLight const& light,
                                  bool isMirrored) const;

  std::vector<osg::Vec3> m_positions;
  std::vector<Triangle> m_triangles;
  std::vector<Side> m_sides;
  bool m_isClosed = true;
};

} // namespace zorOSG
