#include "LightRig.h"

#include "Defines.h"

#include <osgUtil/CullVisitor>

#include <algorithm>

namespace zorOSG {

namespace {

struct LightLook {
  osg::Vec3 towards;
  osg::Vec4 diffuse;
  osg::Vec4 specular;
};

std::array<LightLook, LIGHT_COUNT> const LOOKS = {{
    {{-0.50f, -0.70f, 1.20f}, {0.74f, 0.72f, 0.69f, 1.0f}, {0.60f, 0.60f, 0.58f, 1.0f}},
    {{0.90f, -0.40f, 0.50f}, {0.20f, 0.22f, 0.26f, 1.0f}, {0.0f, 0.0f, 0.0f, 1.0f}},
    {{0.10f, 0.90f, 0.60f}, {0.18f, 0.19f, 0.22f, 1.0f}, {0.0f, 0.0f, 0.0f, 1.0f}},
}};

/** Distance of the lights in radii of the scene: near enough to matter, far enough to light it evenly. */
constexpr double DISTANCE = 3.0;

osg::Vec3d direction(unsigned int index) {
  osg::Vec3d towards = LOOKS[index].towards;
  towards.normalize();
  return towards;
}

bool fades(osg::Light const& light) {
  return light.getConstantAttenuation() != 1.0f || light.getLinearAttenuation() != 0.0f ||
         light.getQuadraticAttenuation() != 0.0f;
}

define::LightKind kindOf(osg::Light const& light) {
  if (light.getPosition().w() == 0.0f)
    return define::LightKind::DIRECTIONAL;
  if (light.getSpotCutoff() < 180.0f)
    return define::LightKind::SPOT;
  return fades(light) ? define::LightKind::ATTENUATED : define::LightKind::POSITIONAL;
}

bool shines(osg::Light const& light) {
  osg::Vec4 const& specular = light.getSpecular();
  return specular.r() > 0.0f || specular.g() > 0.0f || specular.b() > 0.0f;
}

std::array<std::string, LIGHT_COUNT> const LIGHT_DEFINES = {define::light(0), define::light(1),
                                                            define::light(2)};
std::array<std::string, LIGHT_COUNT> const SPECULAR_DEFINES = {define::specular(0), define::specular(1),
                                                               define::specular(2)};
std::array<std::string, 5> const KINDS = {"0", "1", "2", "3", "4"};

} // namespace

LightRig::LightRig() {
  for (unsigned int i = 0; i < LIGHT_COUNT; ++i) {
    osg::ref_ptr<osg::Light> const light = new osg::Light(i);
    light->setDataVariance(osg::Object::DYNAMIC);
    m_sources[i] = new osg::LightSource;
    m_sources[i]->setLight(light);
    m_sources[i]->setCullingActive(false);
  }
  m_placed.fill(true);
  reset();
}

void LightRig::reset() {
  for (unsigned int i = 0; i < LIGHT_COUNT; ++i) {
    osg::Light& light = *static_cast<osg::Light*>(m_sources[i]->getLight());
    light.setAmbient({0.0f, 0.0f, 0.0f, 1.0f});
    light.setDiffuse(LOOKS[i].diffuse);
    light.setSpecular(LOOKS[i].specular);
    light.setPosition(osg::Vec4(osg::Vec3(direction(i)), 0.0f));
    light.setDirection(osg::Vec3(-direction(i)));
    light.setConstantAttenuation(1.0f);
    light.setLinearAttenuation(0.0f);
    light.setQuadraticAttenuation(0.0f);
    light.setSpotExponent(0.0f);
    light.setSpotCutoff(180.0f);
  }
}

void LightRig::place(osg::BoundingSphered const& bound) {
  double const distance = DISTANCE * std::max(bound.radius(), 1e-3);
  for (unsigned int i = 0; i < LIGHT_COUNT; ++i) {
    if (!m_placed[i])
      continue;
    osg::Light& light = *static_cast<osg::Light*>(m_sources[i]->getLight());
    light.setPosition(osg::Vec4(osg::Vec3(bound.center() + direction(i) * distance), 1.0f));
    light.setDirection(osg::Vec3(-direction(i)));
  }
}

void LightRig::apply(osg::StateSet& state) const {
  for (unsigned int i = 0; i < LIGHT_COUNT; ++i) {
    osg::Light const& light = *static_cast<osg::Light const*>(m_sources[i]->getLight());
    bool const on = isEnabled(i);
    state.setMode(GL_LIGHT0 + i, on ? osg::StateAttribute::ON : osg::StateAttribute::OFF);
    keepDefine(state, LIGHT_DEFINES[i], on ? &KINDS[static_cast<size_t>(kindOf(light))] : nullptr);
    keepDefine(state, SPECULAR_DEFINES[i], on && shines(light) ? &KINDS[1] : nullptr);
  }
}

void LightRig::cull(osgUtil::CullVisitor& visitor) const {
  for (unsigned int i = 0; i < LIGHT_COUNT; ++i)
    if (isEnabled(i))
      m_sources[i]->accept(visitor);
}

} // namespace zorOSG
