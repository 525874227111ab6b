#include "SeamSmoother.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include <osg/Array>
#include <osg/TriangleIndexFunctor>

#include "VertexWelder.h"

namespace zorOSG {

namespace {

struct Triangle {
  std::array<unsigned int, 3> corners;
};

struct TriangleList {
  std::vector<Triangle> triangles;
  void operator()(unsigned int a, unsigned int b, unsigned int c) { triangles.push_back({{a, b, c}}); }
};

/** A face as it is seen from one of its corners. */
struct FaceAtCorner {
  osg::Vec3 normal;
  float angle;
};

float angleAt(osg::Vec3 corner, osg::Vec3 a, osg::Vec3 b) {
  a -= corner;
  b -= corner;
  a.normalize();
  b.normalize();
  return std::acos(std::clamp(a * b, -1.0f, 1.0f));
}

using FacesByPlace = std::vector<std::vector<FaceAtCorner>>;

FacesByPlace facesByPlace(osg::Vec3Array const& positions, std::vector<unsigned int> const& places,
                          std::size_t placeCount, std::vector<Triangle> const& triangles) {
  FacesByPlace faces(placeCount);
  for (Triangle const& triangle : triangles) {
    auto const& [a, b, c] = triangle.corners;
    osg::Vec3 normal = (positions[b] - positions[a]) ^ (positions[c] - positions[a]);
    if (!(normal.normalize() > 0.0f))
      continue;
    for (std::size_t i = 0; i < 3; ++i) {
      unsigned int const corner = triangle.corners[i];
      float const angle = angleAt(positions[corner], positions[triangle.corners[(i + 1) % 3]],
                                  positions[triangle.corners[(i + 2) % 3]]);
      faces[places[corner]].push_back({normal, angle});
    }
  }
  return faces;
}

osg::Vec3 smoothed(osg::Vec3 const& present, std::vector<FaceAtCorner> const& faces, float creaseCosine) {
  osg::Vec3 sum;
  for (FaceAtCorner const& face : faces)
    if (face.normal * present >= creaseCosine)
      sum += face.normal * face.angle;
  return sum.normalize() > 0.0f ? sum : present;
}

} // namespace

void smoothSeams(osg::Geometry& mesh, float creaseAngle) {
  auto const* positions = dynamic_cast<osg::Vec3Array const*>(mesh.getVertexArray());
  auto* normals = dynamic_cast<osg::Vec3Array*>(mesh.getNormalArray());
  if (!positions || !normals || normals->size() != positions->size())
    return;
  osg::TriangleIndexFunctor<TriangleList> list;
  mesh.accept(list);

  VertexWelder<osg::Vec3> welder(positions->size());
  std::vector<unsigned int> places;
  places.reserve(positions->size());
  for (osg::Vec3 const& position : *positions)
    places.push_back(welder.number(position));
  FacesByPlace const faces = facesByPlace(*positions, places, welder.positions().size(), list.triangles);

  float const creaseCosine = std::cos(creaseAngle);
  for (std::size_t i = 0; i < normals->size(); ++i)
    (*normals)[i] = smoothed((*normals)[i], faces[places[i]], creaseCosine);
  normals->dirty();
}

} // namespace zorOSG
