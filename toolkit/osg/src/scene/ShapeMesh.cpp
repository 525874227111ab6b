#include "ShapeMesh.h"

#include <bit>
#include <cstdint>
#include <numbers>
#include <stdexcept>
#include <vector>

#include <zorCollide/Box.h>
#include <zorCollide/Capsule.h>
#include <zorCollide/Cone.h>
#include <zorCollide/Convex.h>
#include <zorCollide/Cylinder.h>
#include <zorCollide/HeightField.h>
#include <zorCollide/Plane.h>
#include <zorCollide/Sphere.h>
#include <zorCollide/Trimesh.h>

#include "Convert.h"
#include "MeshBuilder.h"
#include "ShapeMeshCache.h"
#include "ShapeTessellator.h"

namespace zorOSG {

namespace {

using zorCollide::Shape;

constexpr int renderDataType = -1;
// Scanned and modelled surfaces look smooth, the edges of machine parts stay sharp.
constexpr float meshCreaseAngle = static_cast<float>(std::numbers::pi / 4.0);

/** Fingerprint of long data, wide enough that two different meshes never meet by chance. */
class ContentHash {
public:
  void add(std::uint64_t word) {
    m_words[0] = std::rotl((m_words[0] ^ word) * 0x9E3779B97F4A7C15u, 29);
    m_words[1] = std::rotl((m_words[1] + word) * 0xC2B2AE3D27D4EB4Fu, 31) ^ m_words[0];
  }
  void add(double value) { add(std::bit_cast<std::uint64_t>(value)); }
  void add(zor::Vec3Vector const& values) {
    add(std::uint64_t{values.size()});
    for (zor::Vec3 const& value : values) {
      add(value.x());
      add(value.y());
      add(value.z());
    }
  }
  void add(zor::UInt32Vector const& values) {
    add(std::uint64_t{values.size()});
    for (zor::UInt32 const value : values)
      add(std::uint64_t{value});
  }

  std::array<std::uint64_t, 2> words() const { return m_words; }

private:
  std::array<std::uint64_t, 2> m_words{0x243F6A8885A308D3u, 0x13198A2E03707344u};
};

std::vector<osg::Vec3> toFloat(zor::Vec3Vector const& values) {
  std::vector<osg::Vec3> result;
  result.reserve(values.size());
  for (zor::Vec3 const& value : values)
    result.push_back(toOsgFloat(value));
  return result;
}

osg::ref_ptr<osg::Geometry> shared(ShapeKey const& key, ShapeMeshCache::Maker const& make) {
  return ShapeMeshCache::instance().get(key, make);
}

osg::ref_ptr<osg::Geometry> boxMesh(zorCollide::Box const& box) {
  zor::Vec3 const half = box.getHalfExtents();
  return shared({.type = Shape::BOX, .closed = true, .size = {half.x(), half.y(), half.z()}},
                [&] { return tessellateBox(toOsgFloat(half)); });
}

osg::ref_ptr<osg::Geometry> sphereMesh(zorCollide::Sphere const& sphere, unsigned int segments) {
  double const radius = sphere.getRadius();
  return shared({.type = Shape::SPHERE, .closed = true, .segments = segments, .size = {radius}},
                [&] { return tessellateSphere(static_cast<float>(radius), segments); });
}

/** Capsule, cylinder and cone: round about y, with a radius and a height. */
template <class RoundShape, class Tessellate>
osg::ref_ptr<osg::Geometry> roundMesh(RoundShape const& shape, unsigned int segments, Tessellate tessellate) {
  return shared({.type = shape.getType(),
                 .closed = true,
                 .segments = segments,
                 .size = {shape.getRadius(), shape.getHeight()}},
                [&] {
                  return tessellate(static_cast<float>(shape.getRadius()),
                                    static_cast<float>(shape.getHeight()), segments);
                });
}

osg::ref_ptr<osg::Geometry> planeMesh(zorCollide::Plane const& plane) {
  zor::Vec3 const normal = plane.getNormal();
  double const offset = -(normal * plane.getPoint());
  return shared({.type = Shape::PLANE, .size = {normal.x(), normal.y(), normal.z(), offset}},
                [&] { return tessellatePlane(osg::Plane(toOsg(normal), offset)); });
}

/** Convex and triangle mesh. */
template <class MeshShape>
osg::ref_ptr<osg::Geometry> triangleMesh(MeshShape const& shape, float creaseAngle) {
  ContentHash hash;
  hash.add(shape.getVertices());
  hash.add(shape.getIndices());
  return shared({.type = shape.getType(), .hash = hash.words()}, [&] {
    zor::UInt32Vector const& indices = shape.getIndices();
    return tessellateTriangles(toFloat(shape.getVertices()), {indices.data(), indices.size()}, creaseAngle);
  });
}

osg::ref_ptr<osg::Geometry> heightFieldMesh(zorCollide::HeightField const& field) {
  auto const resolutionX = static_cast<unsigned int>(field.getResolutionX());
  auto const resolutionY = static_cast<unsigned int>(field.getResolutionY());
  zor::RealVector const& heights = field.getHeights();
  ContentHash hash;
  for (double const height : heights)
    hash.add(height);
  ShapeKey const key{.type = Shape::HEIGHT_FIELD,
                     .segments = resolutionX,
                     .size = {field.getSizeX(), field.getSizeY(), static_cast<double>(resolutionY)},
                     .hash = hash.words()};
  return shared(key, [&] {
    std::vector<float> const values(heights.begin(), heights.end());
    return tessellateHeightField(resolutionX, resolutionY, static_cast<float>(field.getSizeX()),
                                 static_cast<float>(field.getSizeY()), values);
  });
}

osg::ref_ptr<osg::Geometry> tessellateRenderData(zorRender::RenderData const& data) {
  std::vector<osg::Vec3> const positions = toFloat(data.getVertices());
  zor::UInt32Vector const& indices = data.getIndices();
  zor::Vec3Vector const& normals = data.getNormals();
  zor::Vec2Vector const& texCoords = data.getTexCoords();
  if (normals.empty() && texCoords.empty())
    return tessellateTriangles(positions, {indices.data(), indices.size()}, meshCreaseAngle);

  osg::ref_ptr<osg::Vec3Array> area; // where normals are missing: sums of the triangles' normals
  if (normals.empty())
    area = new osg::Vec3Array(static_cast<unsigned int>(positions.size()));
  for (std::size_t i = 0; area && i + 2 < indices.size(); i += 3) {
    osg::Vec3 const& origin = positions[indices[i]];
    osg::Vec3 const normal = (positions[indices[i + 1]] - origin) ^ (positions[indices[i + 2]] - origin);
    for (std::size_t corner = 0; corner < 3; ++corner)
      (*area)[indices[i + corner]] += normal;
  }

  MeshBuilder mesh;
  mesh.reserve(positions.size(), indices.size() / 3);
  for (std::size_t i = 0; i < positions.size(); ++i) {
    osg::Vec3 normal = area ? (*area)[i] : toOsgFloat(normals[i]);
    normal.normalize();
    mesh.vertex(positions[i], normal,
                texCoords.empty()
                    ? osg::Vec2()
                    : osg::Vec2(static_cast<float>(texCoords[i].x()), static_cast<float>(texCoords[i].y())));
  }
  for (std::size_t i = 0; i + 2 < indices.size(); i += 3)
    mesh.triangle(indices[i], indices[i + 1], indices[i + 2]);
  return mesh.finish();
}

} // namespace

osg::ref_ptr<osg::Geometry> shapeMesh(zorCollide::Shape const& shape, float detailRatio) {
  unsigned int const segments = segmentsForDetail(detailRatio);
  switch (shape.getType()) {
  case Shape::BOX:
    return boxMesh(static_cast<zorCollide::Box const&>(shape));
  case Shape::SPHERE:
    return sphereMesh(static_cast<zorCollide::Sphere const&>(shape), segments);
  case Shape::CAPSULE:
    return roundMesh(static_cast<zorCollide::Capsule const&>(shape), segments, tessellateCapsule);
  case Shape::CYLINDER:
    return roundMesh(static_cast<zorCollide::Cylinder const&>(shape), segments, tessellateCylinder);
  case Shape::CONE:
    return roundMesh(static_cast<zorCollide::Cone const&>(shape), segments, tessellateCone);
  case Shape::PLANE:
    return planeMesh(static_cast<zorCollide::Plane const&>(shape));
  case Shape::CONVEX:
    return triangleMesh(static_cast<zorCollide::Convex const&>(shape), 0.0f);
  case Shape::TRIMESH:
    return triangleMesh(static_cast<zorCollide::Trimesh const&>(shape), meshCreaseAngle);
  case Shape::HEIGHT_FIELD:
    return heightFieldMesh(static_cast<zorCollide::HeightField const&>(shape));
  case Shape::COMPOUND:
    break;
  }
  throw std::invalid_argument(std::string("createVisual: no single mesh for a shape of type ") +
                              shape.getTypeName());
}

osg::ref_ptr<osg::Geometry> renderDataMesh(zorRender::RenderData const& data) {
  data.validate();
  ContentHash hash;
  hash.add(data.getVertices());
  hash.add(data.getNormals());
  hash.add(data.getIndices());
  hash.add(std::uint64_t{data.getTexCoords().size()});
  for (zor::Vec2 const& value : data.getTexCoords()) {
    hash.add(value.x());
    hash.add(value.y());
  }
  return shared({.type = renderDataType, .hash = hash.words()}, [&] { return tessellateRenderData(data); });
}

} // namespace zorOSG
