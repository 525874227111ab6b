#pragma once

#include <memory>

#include <zor/Referenced.h>

namespace zorOSG {

/**
 * Keeps what visuals are made of: visuals made later from the same meshes and render data take it from here,
 * without a look at their vertices, and share its vertex buffers even if none is in use any more. Hold one
 * while many bodies with such shapes come and go. Shapes and render data that were changed are taken anew.
 */
class RigidBodyRenderCache : public zor::Referenced {
public:
  /** Creates an empty cache. */
  RigidBodyRenderCache();

  /** \return the number of shape templates held */
  size_t size() const;

  /** Lets go of all templates; visuals that use them are not touched. */
  void clear();

#ifndef SWIG
  class Templates;
  Templates& templates() { return *m_templates; }
#endif

protected:
  ~RigidBodyRenderCache() override;

private:
  std::unique_ptr<Templates> m_templates;
};

} // namespace zorOSG
