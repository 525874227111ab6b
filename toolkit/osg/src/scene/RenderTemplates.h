#pragma once

#include <array>
#include <set>
#include <string>
#include <tuple>
#include <unordered_map>

#include <osg/Geometry>
#include <osg/StateSet>
#include <osg/ref_ptr>

#include <zor/observer_ptr.h>
#include <zorCollide/Shape.h>
#include <zorOSG/RigidBodyRenderCache.h>
#include <zorRender/RenderData.h>

namespace zorOSG {

/**
 * What visuals are made of, kept by what it was made from: meshes by the very shape or render data, so that
 * long lists of vertices need not be compared with those of other shapes, and states by the values of render
 * materials, so that texture files need not be looked for. Held meshes stay in the cache of shape meshes,
 * from where all visuals take them.
 */
class RigidBodyRenderCache::Templates {
public:
  osg::ref_ptr<osg::Geometry> mesh(zorCollide::Shape const& shape, float detailRatio);
  osg::ref_ptr<osg::Geometry> mesh(zorRender::RenderData const& data);

  /** Gives a node the look of a render material. The node must have no state set yet. */
  void applyMaterial(osg::Node& node, zorRender::RenderMaterial const& material);

  std::size_t size() const { return m_held.size(); }
  void clear();

private:
  template <class Source>
  struct Made {
    zor::observer_ptr<Source const> source; // another object may come to lie where this one was
    unsigned int revision;
    float detailRatio;
    osg::ref_ptr<osg::Geometry> mesh;
  };
  template <class Source>
  using MeshesOf = std::unordered_map<Source const*, Made<Source>>;
  using MaterialKey = std::tuple<std::array<float, 19>, std::string>;

  template <class Source, class Make>
  osg::ref_ptr<osg::Geometry> meshOf(MeshesOf<Source>& meshes, Source const& source, float detailRatio,
                                     Make make);
  static MaterialKey keyOf(zorRender::RenderMaterial const& material);

  MeshesOf<zorCollide::Shape> m_ofShapes;
  MeshesOf<zorRender::RenderData> m_ofRenderData;
  std::map<MaterialKey, osg::ref_ptr<osg::StateSet>> m_states;
  std::set<osg::ref_ptr<osg::Geometry>> m_held;
};

} // namespace zorOSG
