#pragma once

#include <memory>

#include <zor/Referenced.h>

namespace zorOSG {

/**
 * Keeps tessellated shapes alive so that visuals made later share their vertex buffers. Hold one while many
 * equal bodies come and go; visuals that are in use share their buffers in any case.
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
  struct Templates;
  Templates& templates() { return *m_templates; }
#endif

protected:
  ~RigidBodyRenderCache() override;

private:
  std::unique_ptr<Templates> m_templates;
};

} // namespace zorOSG
