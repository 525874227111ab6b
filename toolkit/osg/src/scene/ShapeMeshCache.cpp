#include "ShapeMeshCache.h"

#include <algorithm>
#include <bit>

namespace zorOSG {

namespace {

/** Carried by shared meshes as user data. */
osg::Referenced* openMark() {
  static osg::ref_ptr<osg::Referenced> const mark = new osg::Referenced;
  return mark.get();
}

/** The same, by closed ones. */
osg::Referenced* closedMark() {
  static osg::ref_ptr<osg::Referenced> const mark = new osg::Referenced;
  return mark.get();
}

/**
 * A mesh looks through all of its parents when one leaves. One that has many is followed by another that
 * draws from the same buffers.
 */
constexpr unsigned int MOST_PARENTS = 4096;

} // namespace

std::size_t ShapeKeyHash::operator()(ShapeKey const& key) const {
  std::uint64_t hash = (static_cast<std::uint64_t>(key.type) << 32u) + key.segments;
  auto const mix = [&hash](std::uint64_t word) { hash = std::rotl((hash ^ word) * 0x9E3779B97F4A7C15u, 29); };
  for (double const length : key.size)
    mix(std::bit_cast<std::uint64_t>(length + 0.0)); // equal zeros of both signs
  for (std::uint64_t const word : key.hash)
    mix(word);
  return hash;
}

ShapeMeshCache& ShapeMeshCache::instance() {
  static ShapeMeshCache& cache =
      *new ShapeMeshCache; // never destroyed: visuals in static storage may go later
  return cache;
}

osg::ref_ptr<osg::Geometry> ShapeMeshCache::get(ShapeKey const& key, Maker const& make) {
  std::lock_guard const lock(m_mutex);
  osg::ref_ptr<osg::Geometry> mesh;
  auto const place = m_meshes.find(key);
  if (place != m_meshes.end() && place->second.lock(mesh)) {
    if (mesh->getNumParents() < MOST_PARENTS)
      return mesh;
    mesh = new osg::Geometry(*mesh, osg::CopyOp::SHALLOW_COPY);
  } else {
    mesh = make();
    mesh->setUserData(key.closed ? closedMark() : openMark());
  }
  m_meshes[key] = mesh;
  if (m_meshes.size() >= m_sizeToCleanAt)
    dropDead();
  return mesh;
}

bool ShapeMeshCache::isShared(osg::Geometry const& mesh) {
  return mesh.getUserData() == openMark() || isClosed(mesh);
}

bool ShapeMeshCache::isClosed(osg::Geometry const& mesh) {
  return mesh.getUserData() == closedMark();
}

osg::ref_ptr<osg::Geometry> ShapeMeshCache::makePrivate(osg::Geometry const& mesh) {
  osg::ref_ptr<osg::Geometry> copy = new osg::Geometry(mesh, osg::CopyOp::DEEP_COPY_ALL);
  copy->setUserData(nullptr);
  return copy;
}

void ShapeMeshCache::dropDead() {
  std::erase_if(m_meshes, [](auto const& entry) { return !entry.second.valid(); });
  m_sizeToCleanAt = std::max<std::size_t>(64, 2 * m_meshes.size());
}

} // namespace zorOSG
