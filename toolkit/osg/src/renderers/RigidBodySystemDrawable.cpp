#include "RigidBodySystemDrawable.h"

#include <algorithm>
#include <cmath>

#include "Sampling.h"
#include "TrailEntries.h"
#include "debug/DebugSizes.h"

namespace zorOSG {

namespace {

/** Colours far apart for numbers that follow one another. */
osg::Vec4 hueOf(zor::UInt number) {
  double const hue = 6.0 * std::fmod(static_cast<double>(number) * 0.6180339887498949 + 0.05, 1.0);
  auto const part = [hue](double shift) {
    double const at = std::fmod(hue + shift, 6.0);
    return static_cast<float>(0.25 + 0.70 * std::clamp(std::abs(at - 3.0) - 1.0, 0.0, 1.0));
  };
  return {part(0), part(4), part(2), 1.0f};
}

} // namespace

RigidBodySystemDrawable::RigidBodySystemDrawable(zorSDK::Simulation& simulation, double sampling,
                                                 zor::UInt numPositions, ScalarColorMap* colorMap)
    : TrailDrawable(simulation, numPositions), m_sampling(sampling), m_colorMap(colorMap) {
  update();
}

RigidBodySystemDrawable::Entry RigidBodySystemDrawable::makeEntry(zor::RigidBody& body) {
  zor::UInt const number = m_numSeen++;
  return {zor::observer_ptr<zor::RigidBody>(&body), isSampled(number, m_sampling), hueOf(number), {}};
}

void RigidBodySystemDrawable::addPositions(zorSDK::Simulation const& simulation) {
  zor::RigidBodyRefVector const& bodies = simulation.getRigidBodies();
  followObjects(m_entries, bodies, [this](zor::RigidBody& body) { return makeEntry(body); });
  for (size_t i = 0; i < m_entries.size(); ++i) {
    Entry& entry = m_entries[i];
    if (!entry.sampled)
      continue;
    zor::RigidBody const& body = *bodies[i];
    zor::Vec3 const position = body.getCmPosition();
    zor::Real const speed = body.getVelocity().length();
    bool const colored = m_colorMap && !std::isnan(speed);
    endIfPut(entry.head, position, speed, [&] { return radiusOf(body); });
    moveTo(entry.head, position, colored ? m_colorMap->getColorOSG(speed) : entry.color);
  }
}

void RigidBodySystemDrawable::forgetHeads() {
  for (Entry& entry : m_entries)
    entry.head.valid = false;
}

} // namespace zorOSG
