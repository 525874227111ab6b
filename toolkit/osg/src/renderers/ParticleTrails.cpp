#include "ParticleTrails.h"

#include <algorithm>
#include <cmath>

#include <osg/BlendFunc>
#include <osg/Depth>

#include <zorSDK/Simulation.h>

#include "Sampling.h"
#include "scene/ColorByte.h"
#include "scene/Convert.h"

namespace zorOSG {

namespace {

void drawBlended(osg::StateSet& state) {
  state.setAttributeAndModes(new osg::BlendFunc);
  state.setAttributeAndModes(new osg::Depth(osg::Depth::LESS, 0, 1, false));
  state.setRenderingHint(osg::StateSet::TRANSPARENT_BIN);
}

} // namespace

ParticleTrails::ParticleTrails(zor::ParticleSystem& particles, zor::Real sampling, zor::UInt numPositions)
    : m_particles(&particles), m_sampling(sampling), m_numPositions(numPositions), m_lines(2) {
  drawBlended(*geometry().getOrCreateStateSet());
  update();
}

void ParticleTrails::operator()(osg::Node* node, osg::NodeVisitor* visitor) {
  update();
  traverse(node, visitor);
}

void ParticleTrails::update() {
  zorSDK::Simulation const* const simulation = m_particles->getSimulation();
  double const time = simulation ? simulation->getTimeStamp() : m_time;
  if (time == m_time)
    return;
  if (time < m_time) // set back: no lines to where things are again
    m_trails.clear();
  double const gravity = simulation ? simulation->getUniformGravity().length() : 0.0;
  addPositions({time - m_time, gravity});
  m_time = time;
  write();
}

void ParticleTrails::addPositions(TrailReach const& reach) {
  if (m_numPositions < 2 || m_sampling <= 0)
    return;
  ++m_round;
  for (zor::UInt i = 0; i < m_particles->getNumParticles(); ++i) {
    zor::UInt const id = m_particles->getParticleId(i);
    osg::Vec3 const position = toOsgFloat(m_particles->getPosition(i));
    if (!isSampled(id, m_sampling) || !m_particles->getEnable(i) || !position.valid())
      continue;
    Trail& trail = m_trails[id];
    double const speed = m_particles->getVelocity(i).length();
    double const most = reach.of(std::max(speed, trail.speed), m_particles->getRadius(i));
    bool const begins = trail.places.empty() || (position - trail.places.front().position).length() > most;
    trail.round = m_round;
    trail.speed = std::isfinite(speed) ? speed : 0.0;
    if (trail.places.size() == m_numPositions)
      trail.places.pop_back();
    trail.places.push_front({position, begins});
  }
  std::erase_if(m_trails, [this](auto const& entry) { return entry.second.round != m_round; });
}

void ParticleTrails::write() {
  m_lines.begin();
  for (zor::UInt i = 0; i < m_particles->getNumParticles(); ++i)
    if (auto const found = m_trails.find(m_particles->getParticleId(i)); found != m_trails.end())
      writeTrail(found->second, m_particles->getColor(i));
  m_lines.end();
}

void ParticleTrails::writeTrail(Trail const& trail, zor::Vec4f const& color) {
  size_t const count = trail.places.size();
  if (count < 2)
    return;
  for (size_t k = 0; k < count; ++k) {
    float const age = static_cast<float>(k) / static_cast<float>(count - 1);
    m_lines.corner(trail.places[k].position,
                   {toByte(color.x()), toByte(color.y()), toByte(color.z()), toByte(color.w() * (1 - age))});
    if (trail.places[k].begins && k + 1 < count)
      m_lines.endStrip();
  }
  m_lines.endStrip();
}

} // namespace zorOSG
