#include "FrameTrajectoryDrawable.h"

#include "TrailEntries.h"
#include "debug/DebugSizes.h"

namespace zorOSG {

FrameTrajectoryDrawable::FrameTrajectoryDrawable(zorSDK::Simulation& simulation, zor::UInt numPositions,
                                                 osg::Vec4 const& color)
    : TrailDrawable(simulation, numPositions), m_color(color) {
  update();
}

void FrameTrajectoryDrawable::addPositions(zorSDK::Simulation const& simulation) {
  zor::ObserverFrameRefVector const& frames = simulation.getObserverFrames();
  followObjects(m_entries, frames, [](zor::ObserverFrame& frame) {
    return Entry{zor::observer_ptr<zor::ObserverFrame>(&frame), frame.getRigidBody(), {}};
  });
  for (size_t i = 0; i < m_entries.size(); ++i) {
    Entry& entry = m_entries[i];
    zor::ObserverFrame const& frame = *frames[i];
    zor::RigidBody const* const body = frame.getRigidBody();
    if (!frame.getEnable() || entry.body != body)
      entry.head.valid = false;
    entry.body = body;
    if (!frame.getEnable())
      continue;
    zor::Vec3 const position = frame.getPosition();
    if (body)
      endIfPut(entry.head, position, frame.getVelocity().length(), [&] { return radiusOf(*body); });
    moveTo(entry.head, position, m_color);
  }
}

void FrameTrajectoryDrawable::forgetHeads() {
  for (Entry& entry : m_entries)
    entry.head.valid = false;
}

} // namespace zorOSG
