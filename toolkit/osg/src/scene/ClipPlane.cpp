#include <zorOSG/ClipPlane.h>

#include <vector>

#include "Checks.h"
#include "ClipNumbers.h"
#include "ParticleClips.h"
#include "VisualState.h"

namespace zorOSG {

namespace {

osg::Vec4d equationOf(zor::Plane const& plane) {
  return {plane.a(), plane.b(), plane.c(), plane.d()};
}

zor::Plane planeAt(zor::Vec3 const& position, zor::Vec3 const& normal) {
  requireFinite("ClipPlane", "position", position);
  requireFinite("ClipPlane", "normal", normal);
  return zor::Plane(normal, position);
}

} // namespace

ClipPlane::ClipPlane(zor::Plane const& plane) {
  place(plane, plane.getPoint());
  setEnable(true);
}

ClipPlane::ClipPlane(zor::Vec3 const& position, zor::Vec3 const& normal) {
  place(planeAt(position, normal), position);
  setEnable(true);
}

ClipPlane::ClipPlane(zor::Real a, zor::Real b, zor::Real c, zor::Real d)
    : ClipPlane(zor::Plane(a, b, c, d)) {}

ClipPlane::~ClipPlane() {
  removeParticleClip(*this);
  if (m_clip)
    ClipNumbers::instance().giveBack(*this);
}

void ClipPlane::place(zor::Plane const& plane, zor::Vec3 const& position) {
  m_plane = plane;
  m_position = position;
  if (m_clip)
    m_clip->setClipPlane(equationOf(plane));
}

void ClipPlane::setClipPlane(zor::Plane const& plane) {
  place(plane, plane.getPoint());
}

void ClipPlane::setPosition(zor::Vec3 const& position) {
  place(planeAt(position, getNormal()), position);
}

void ClipPlane::setNormal(zor::Vec3 const& normal) {
  place(planeAt(m_position, normal), m_position);
}

void ClipPlane::setEnable(bool enable) {
  if (enable == getEnable())
    return;
  osg::StateSet& state = ownState(*this);
  if (enable) {
    unsigned int const number = ClipNumbers::instance().take(*this);
    m_clip = new osg::ClipPlane(number, equationOf(m_plane));
    getClipPlaneList().push_back(m_clip);
    state.setMode(GL_CLIP_PLANE0 + number, osg::StateAttribute::ON);
    state.setMode(GL_CULL_FACE,
                  osg::StateAttribute::OFF | osg::StateAttribute::OVERRIDE); // cut bodies show their inside
    return;
  }
  state.removeMode(GL_CLIP_PLANE0 + ClipNumbers::instance().giveBack(*this));
  state.removeMode(GL_CULL_FACE);
  std::erase(getClipPlaneList(), m_clip);
  m_clip = nullptr;
}

void ClipPlane::setParticleSystemToClip(zor::ParticleSystem* system) {
  removeParticleClip(*this);
  m_particles = system;
}

void ClipPlane::clipAgainstParticleSystem() {
  if (m_particles)
    addParticleClip(*m_particles, *this);
}

} // namespace zorOSG
