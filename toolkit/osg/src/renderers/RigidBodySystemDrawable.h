#pragma once

#include <vector>

#include <zor/RigidBody.h>
#include <zor/observer_ptr.h>
#include <zor/ref_ptr.h>
#include <zorOSG/ScalarColorMap.h>

#include "TrailDrawable.h"
#include "scene/SceneIndex.h"

namespace zorOSG {

/** Draws where some of a simulation's bodies have been: the paths of their centres of mass. */
class RigidBodySystemDrawable : public TrailDrawable {
public:
  /**
   * \param sampling - part of the bodies that leave a path, 0 to 1
   * \param colorMap - gives colours to speeds (m/s); null for a hue of its own for each body
   */
  RigidBodySystemDrawable(zorSDK::Simulation& simulation, double sampling, zor::UInt numPositions,
                          ScalarColorMap* colorMap);

  char const* libraryName() const override { return "zorOSG"; }
  char const* className() const override { return "RigidBodySystemDrawable"; }

protected:
  ~RigidBodySystemDrawable() override = default;

private:
  struct Entry {
    zor::observer_ptr<zor::RigidBody> object;
    bool sampled = false;
    osg::Vec4 color;
    Head head;
  };

  void addPositions(zorSDK::Simulation const& simulation) override;
  void forgetHeads() override;
  Entry makeEntry(zor::RigidBody& body);

  double m_sampling;
  zor::ref_ptr<ScalarColorMap> m_colorMap;
  std::vector<Entry> m_entries; // in the order of the simulation's bodies
  zor::UInt m_numSeen = 0;
  IndexEntry<RigidBodySystemDrawable> m_indexEntry{*this};
};

} // namespace zorOSG
