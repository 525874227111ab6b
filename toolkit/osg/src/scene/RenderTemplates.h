#pragma once

#include <set>

#include <osg/Geometry>
#include <osg/ref_ptr>

#include <zorOSG/RigidBodyRenderCache.h>

namespace zorOSG {

/** Holding a shared mesh keeps it in the cache of shape meshes, from where new visuals take it. */
struct RigidBodyRenderCache::Templates {
  std::set<osg::ref_ptr<osg::Geometry>> meshes;
};

} // namespace zorOSG
