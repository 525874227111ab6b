#include "FrameTrajectoryDrawable.h"

#include "TrailEntries.h"

namespace zorOSG {

FrameTrajectoryDrawable::FrameTrajectoryDrawable(zorSDK::Simulation& simulation, zor::UInt numPositions,
                                                 osg::Vec4 const& color)
    : TrailDrawable(simulation, numPositions), m_color(color) {
  update();
}

void FrameTrajectoryDrawable::addPositions(zorSDK::Simulation const& simulation) {
  zor::ObserverFrameRefVector const& frames = simulation.getObserverFrames();
  followObjects(m_entries, frames, [](zor::ObserverFrame& frame) {
    return Entry{zor::observer_ptr<zor::ObserverFrame>(&frame), {}};
  });
  for (size_t i = 0; i < m_entries.size(); ++i) {
    if (frames[i]->getEnable())
      moveTo(m_entries[i].head, frames[i]->getPosition(), m_color);
    else
      m_entries[i].head.valid = false;
  }
}

void FrameTrajectoryDrawable::forgetHeads() {
  for (Entry& entry : m_entries)
    entry.head.valid = false;
}

} // namespace zorOSG
