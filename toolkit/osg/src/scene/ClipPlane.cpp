#include <zorOSG/ClipPlane.h>

#include <vector>

#include "Checks.h"
#include "ClipNumbers.h"
#include "ParticleClips.h"
#include "VisualState.h"

namespace zorOSG {

namespace {

GLenum modeOf(osg::ClipPlane const& clip) {
  return GL_CLIP_PLANE0 + clip.getClipPlaneNum();
}

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
    ClipNumbers::instance().giveBack(m_clip->getClipPlaneNum());
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
    m_clip = new osg::ClipPlane(ClipNumbers::instance().take(), equationOf(m_plane));
    getClipPlaneList().push_back(m_clip);
    state.setMode(modeOf(*m_clip), osg::StateAttribute::ON);
    state.setMode(GL_CULL_FACE,
                  osg::StateAttribute::OFF | osg::StateAttribute::OVERRIDE); // cut bodies show their inside
    return;
  }
  state.removeMode(modeOf(*m_clip));
  state.removeMode(GL_CULL_FACE);
  std::erase(getClipPlaneList(), m_clip);
  ClipNumbers::instance().giveBack(m_clip->getClipPlaneNum());
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
