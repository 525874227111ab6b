#include "ParticleContactGraph.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "scene/Convert.h"

namespace zorOSG {

namespace {

constexpr std::array<std::array<double, 3>, 4> RAMP = {
    {{0.13, 0.29, 0.76}, {0.10, 0.68, 0.48}, {0.97, 0.80, 0.16}, {0.86, 0.12, 0.10}}};

unsigned char mixed(double from, double to, double part) {
  return static_cast<unsigned char>(std::lround((from + (to - from) * part) * 255));
}

} // namespace

ParticleContactGraph::ParticleContactGraph(zor::ParticleSystem& particles, zor::Real minForce,
                                           zor::Real maxForce)
    : m_particles(&particles), m_minForce(minForce), m_maxForce(maxForce), m_lines(2) {
  write();
}

void ParticleContactGraph::operator()(osg::Node* node, osg::NodeVisitor* visitor) {
  write();
  traverse(node, visitor);
}

osg::Vec4ub ParticleContactGraph::colorOf(zor::Real force) const {
  double const at =
      std::clamp((force - m_minForce) / (m_maxForce - m_minForce), 0.0, 1.0) * (RAMP.size() - 1);
  auto const below = std::min(static_cast<size_t>(at), RAMP.size() - 2);
  double const part = at - static_cast<double>(below);
  auto const& [r0, g0, b0] = RAMP[below];
  auto const& [r1, g1, b1] = RAMP[below + 1];
  return {mixed(r0, r1, part), mixed(g0, g1, part), mixed(b0, b1, part), 255};
}

void ParticleContactGraph::write() {
  zor::ParticleContacts const contacts = m_particles->getContacts();
  zor::UInt const count = m_particles->getNumParticles(); // some may have been removed since the step
  m_lines.begin();
  for (size_t i = 0; i < contacts.getNumContacts(); ++i) {
    zor::Real const force = contacts.normalForces[i];
    zor::UInt32 const first = contacts.particles1[i], second = contacts.particles2[i];
    bool const onGeometry = second == zor::ParticleContacts::NO_PARTICLE;
    if (!(force >= m_minForce) || first >= count || (!onGeometry && second >= count))
      continue;
    osg::Vec3 const from = toOsgFloat(m_particles->getPosition(first)),
                    to = toOsgFloat(onGeometry ? contacts.points[i] : m_particles->getPosition(second));
    if (!from.valid() || !to.valid())
      continue;
    osg::Vec4ub const color = colorOf(force);
    m_lines.corner(from, color);
    m_lines.corner(to, color);
    m_lines.endStrip();
  }
  m_lines.end();
}

} // namespace zorOSG
