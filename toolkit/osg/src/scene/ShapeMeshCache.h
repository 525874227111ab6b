#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <mutex>
#include <unordered_map>

#include <osg/Geometry>
#include <osg/observer_ptr>
#include <osg/ref_ptr>

namespace zorOSG {

/** What decides how a shape's mesh looks: equal keys, equal meshes. */
struct ShapeKey {
  int type = 0;
  bool closed = false;                 // a surface without holes or inner sides, as solid shapes have
  unsigned int segments = 0;           // 0 where the detail makes no difference
  std::array<double, 4> size{};        // dimensions
  std::array<std::uint64_t, 2> hash{}; // of vertices and indices, where there are such
  bool operator==(ShapeKey const&) const = default;
};

/** Mixes the numbers of a key. */
struct ShapeKeyHash {
  std::size_t operator()(ShapeKey const& key) const;
};

/**
 * The meshes of the shapes that are drawn now, so that equal shapes share one set of vertex buffers. It holds
 * no references: a mesh goes with the last visual that draws it.
 */
class ShapeMeshCache {
public:
  using Maker = std::function<osg::ref_ptr<osg::Geometry>()>;

  static ShapeMeshCache& instance();

  osg::ref_ptr<osg::Geometry> get(ShapeKey const& key, Maker const& make);

  /** True for meshes from here, which must not be changed. */
  static bool isShared(osg::Geometry const& mesh);

  /** True for meshes from here of which nobody sees the back. */
  static bool isClosed(osg::Geometry const& mesh);

  /** A deep copy that may be changed. */
  static osg::ref_ptr<osg::Geometry> makePrivate(osg::Geometry const& mesh);

private:
  void dropDead();

  std::mutex m_mutex;
  std::unordered_map<ShapeKey, osg::observer_ptr<osg::Geometry>, ShapeKeyHash> m_meshes;
  std::size_t m_sizeToCleanAt = 64;
};

} // namespace zorOSG
