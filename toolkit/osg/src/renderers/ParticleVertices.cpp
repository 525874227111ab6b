#include "ParticleVertices.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>
#include <vector>

#include <osg/GLExtensions>
#include <osg/Program>
#include <osg/Viewport>

#include <zorOSG/ParticleSystemDrawable.h>

#include "scene/ColorByte.h"
#include "scene/ParticleClips.h"

namespace zorOSG {

namespace {

/** A sphere of 80 triangles: an icosahedron with each face cut in four. */
struct UnitSphere {
  std::vector<osg::Vec3> corners;
  std::vector<unsigned int> indices;

  UnitSphere() {
    float const t = (1 + std::sqrt(5.0f)) / 2;
    for (osg::Vec3 const& corner :
         {osg::Vec3(-1, t, 0), osg::Vec3(1, t, 0), osg::Vec3(-1, -t, 0), osg::Vec3(1, -t, 0),
          osg::Vec3(0, -1, t), osg::Vec3(0, 1, t), osg::Vec3(0, -1, -t), osg::Vec3(0, 1, -t),
          osg::Vec3(t, 0, -1), osg::Vec3(t, 0, 1), osg::Vec3(-t, 0, -1), osg::Vec3(-t, 0, 1)})
      add(corner);
    constexpr unsigned int faces[20][3] = {{0, 11, 5}, {0, 5, 1},  {0, 1, 7},   {0, 7, 10}, {0, 10, 11},
                                           {1, 5, 9},  {5, 11, 4}, {11, 10, 2}, {10, 7, 6}, {7, 1, 8},
                                           {3, 9, 4},  {3, 4, 2},  {3, 2, 6},   {3, 6, 8},  {3, 8, 9},
                                           {4, 9, 5},  {2, 4, 11}, {6, 2, 10},  {8, 6, 7},  {9, 8, 1}};
    for (auto const& face : faces) {
      unsigned int const a = middle(face[0], face[1]), b = middle(face[1], face[2]),
                         c = middle(face[2], face[0]);
      indices.insert(indices.end(), {face[0], a, c, face[1], b, a, face[2], c, b, a, b, c});
    }
  }

private:
  unsigned int add(osg::Vec3 corner) {
    corner.normalize();
    corners.push_back(corner);
    return static_cast<unsigned int>(corners.size() - 1);
  }
  unsigned int middle(unsigned int a, unsigned int b) {
    auto const [at, isNew] = m_middles.try_emplace(std::minmax(a, b), 0);
    if (isNew)
      at->second = add(corners[a] + corners[b]);
    return at->second;
  }

  std::map<std::pair<unsigned int, unsigned int>, unsigned int> m_middles;
};

UnitSphere const& unitSphere() {
  static UnitSphere const sphere;
  return sphere;
}

size_t verticesOf(int mode) {
  return mode == ParticleSystemDrawable::TRIANGLES      ? unitSphere().corners.size()
         : mode == ParticleSystemDrawable::QUAD_SPRITES ? 4
                                                        : 1;
}

struct Buffers {
  osg::Vec3Array& positions;
  osg::Vec3Array& normals; // for sprites, the axis about which the band runs
  osg::Vec4ubArray& colors;
  osg::Vec3Array& corners; // of sprites: place on the square, and the radius; for triangles, the axis

  explicit Buffers(osg::Geometry& geometry)
      : positions(static_cast<osg::Vec3Array&>(*geometry.getVertexArray())),
        normals(static_cast<osg::Vec3Array&>(*geometry.getNormalArray())),
        colors(static_cast<osg::Vec4ubArray&>(*geometry.getColorArray())),
        corners(static_cast<osg::Vec3Array&>(*geometry.getTexCoordArray(0))) {}

  void resize(size_t count) {
    positions.resize(count);
    normals.resize(count);
    colors.resize(count);
    corners.resize(count);
  }

  void dirty() {
    positions.dirty();
    normals.dirty();
    colors.dirty();
    corners.dirty();
  }
};

osg::Vec3 axisOf(double const* q) { // the z axis, turned
  return osg::Vec3(static_cast<float>(2 * (q[0] * q[2] + q[1] * q[3])),
                   static_cast<float>(2 * (q[1] * q[2] - q[0] * q[3])),
                   static_cast<float>(1 - 2 * (q[0] * q[0] + q[1] * q[1])));
}

void setPrimitives(osg::Geometry& geometry, int mode, size_t count) {
  if (mode != ParticleSystemDrawable::TRIANGLES) {
    auto& primitives = static_cast<osg::DrawArrays&>(*geometry.getPrimitiveSet(0));
    primitives.setCount(static_cast<int>(count * verticesOf(mode)));
    primitives.dirty();
    return;
  }
  auto& primitives = static_cast<osg::DrawElementsUInt&>(*geometry.getPrimitiveSet(0));
  std::vector<unsigned int> const& sphere = unitSphere().indices;
  size_t const before = primitives.size() / sphere.size();
  if (before == count)
    return;
  primitives.resize(count * sphere.size());
  for (size_t i = before; i < count; ++i)
    for (size_t k = 0; k < sphere.size(); ++k)
      primitives[i * sphere.size() + k] = static_cast<unsigned int>(i * verticesOf(mode)) + sphere[k];
  primitives.dirty();
}

} // namespace

osg::ref_ptr<osg::Geometry> makeParticleGeometry(int mode) {
  osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
  geometry->setUseDisplayList(false);
  geometry->setUseVertexBufferObjects(true);
  geometry->setDataVariance(osg::Object::DYNAMIC);
  geometry->setVertexArray(new osg::Vec3Array);
  geometry->setNormalArray(new osg::Vec3Array, osg::Array::BIND_PER_VERTEX);
  osg::ref_ptr<osg::Vec4ubArray> const colors = new osg::Vec4ubArray;
  colors->setNormalize(true);
  geometry->setColorArray(colors, osg::Array::BIND_PER_VERTEX);
  geometry->setTexCoordArray(0, new osg::Vec3Array, osg::Array::BIND_PER_VERTEX);
  if (mode == ParticleSystemDrawable::TRIANGLES)
    geometry->addPrimitiveSet(new osg::DrawElementsUInt(GL_TRIANGLES));
  else
    geometry->addPrimitiveSet(
        new osg::DrawArrays(mode == ParticleSystemDrawable::SPRITES ? GL_POINTS : GL_QUADS, 0, 0));
  return geometry;
}

osg::BoundingBox fillParticleGeometry(osg::Geometry& geometry, int mode,
                                      zor::ParticleSystem const& particles) {
  zor::ParticleArray const positions = particles.getPositions(), rotations = particles.getRotations(),
                           radii = particles.getRadii(), colors = particles.getColors(),
                           enabled = particles.getEnabled();
  auto const* const position = static_cast<double const*>(positions.data());
  auto const* const rotation = static_cast<double const*>(rotations.data());
  auto const* const radius = static_cast<double const*>(radii.data());
  auto const* const color = static_cast<float const*>(colors.data());
  auto const* const isEnabled = static_cast<uint8_t const*>(enabled.data());
  size_t const each = verticesOf(mode), total = positions.getNumRows();
  Buffers buffers(geometry);
  buffers.resize(total * each);
  std::vector<osg::Vec3> const* const sphere =
      mode == ParticleSystemDrawable::TRIANGLES ? &unitSphere().corners : nullptr;
  std::vector<zor::Plane> const clips = particleClips(particles);
  auto const isCutAway = [&clips](zor::Vec3 const& place) {
    return std::any_of(clips.begin(), clips.end(),
                       [&place](zor::Plane const& plane) { return plane.distance(place) < 0; });
  };
  osg::BoundingBox box;
  size_t at = 0;
  for (size_t i = 0; i < total; ++i) {
    osg::Vec3 const center(osg::Vec3d(position[3 * i], position[3 * i + 1], position[3 * i + 2]));
    if (!isEnabled[i] || !center.valid() ||
        (!clips.empty() && isCutAway({position[3 * i], position[3 * i + 1], position[3 * i + 2]})))
      continue;
    auto const r = static_cast<float>(radius[i]);
    box.expandBy(center - osg::Vec3(r, r, r));
    box.expandBy(center + osg::Vec3(r, r, r));
    osg::Vec4ub const tint(toByte(color[4 * i]), toByte(color[4 * i + 1]), toByte(color[4 * i + 2]),
                           toByte(color[4 * i + 3]));
    osg::Vec3 const axis = axisOf(rotation + 4 * i);
    for (size_t k = 0; k < each; ++k, ++at) {
      buffers.colors[at] = tint;
      buffers.positions[at] = sphere ? center + (*sphere)[k] * r : center;
      buffers.normals[at] = sphere ? (*sphere)[k] : axis;
      buffers.corners[at] =
          sphere ? axis : osg::Vec3(k == 1 || k == 2 ? 1.0f : -1.0f, k >= 2 ? 1.0f : -1.0f, r);
    }
  }
  setPrimitives(geometry, mode, at / each);
  buffers.dirty();
  return box;
}

void setPointScale(osg::State& state) {
  osg::Viewport const* const viewport = state.getCurrentViewport();
  osg::Program::PerContextProgram const* const program = state.getLastAppliedProgramObject();
  if (!viewport || !program)
    return;
  int const location = program->getUniformLocation(osg::Uniform::getNameID("zor_pointScale"));
  if (location >= 0)
    state.get<osg::GLExtensions>()->glUniform1f(location, static_cast<float>(viewport->height()));
}

} // namespace zorOSG
