#include <zorOSG/RigidBodyRenderCache.h>

#include "RenderTemplates.h"

namespace zorOSG {

RigidBodyRenderCache::RigidBodyRenderCache() : m_templates(std::make_unique<Templates>()) {}
RigidBodyRenderCache::~RigidBodyRenderCache() = default;

size_t RigidBodyRenderCache::size() const {
  return m_templates->meshes.size();
}
void RigidBodyRenderCache::clear() {
  m_templates->meshes.clear();
}

} // namespace zorOSG
