#pragma once

#include <vector>

#include <zor/ObserverFrame.h>
#include <zor/observer_ptr.h>

#include "TrailDrawable.h"
#include "scene/SceneIndex.h"

namespace zorOSG {

/** Draws where the origins of a simulation's observer frames have been, as far as these are enabled. */
class FrameTrajectoryDrawable : public TrailDrawable {
public:
  FrameTrajectoryDrawable(zorSDK::Simulation& simulation, zor::UInt numPositions, osg::Vec4 const& color);

  char const* libraryName() const override { return "zorOSG"; }
  char const* className() const override { return "FrameTrajectoryDrawable"; }

protected:
  ~FrameTrajectoryDrawable() override = default;

private:
  struct Entry {
    zor::observer_ptr<zor::ObserverFrame> object;
    zor::RigidBody const* body; // only compared
    Head head;
  };

  void addPositions(zorSDK::Simulation const& simulation) override;
  void forgetHeads() override;

  osg::Vec4 m_color;
  std::vector<Entry> m_entries; // in the order of the simulation's frames
  IndexEntry<FrameTrajectoryDrawable> m_indexEntry{*this};
};

} // namespace zorOSG
