#include "DecoratorParts.h"

#include "Defines.h"
#include "scene/VisualState.h"

#include <osg/LightModel>
#include <osgUtil/CullVisitor>

#include <algorithm>

namespace zorOSG {

namespace {

std::array<osg::Vec4, 4> const SKY = {{{0.56f, 0.66f, 0.77f, 1.0f},
                                       {0.56f, 0.66f, 0.77f, 1.0f},
                                       {0.90f, 0.92f, 0.94f, 1.0f},
                                       {0.90f, 0.92f, 0.94f, 1.0f}}};

osg::Vec4 const AMBIENT(0.34f, 0.34f, 0.35f, 1.0f);

} // namespace

SceneDecorator::Parts::Parts(SceneDecorator& owner, int width, int height, int enabledLights)
    : decorator(owner), hud(width, height), nonShadowed(new AttachedGroup), state(new osg::StateSet),
      m_program(makeSceneProgram()) {
  lights.setEnabled(enabledLights);
  while (shadowLight + 1 < LIGHT_COUNT && !lights.isEnabled(shadowLight))
    ++shadowLight;
  background.setColors(SKY);
  nonShadowed->setName("non-shadowed scene");
  keepDefine(*nonShadowed->getOrCreateStateSet(), define::UNSHADOWED, osg::StateAttribute::ON);
  nonShadowed->attach(decorator);
  makeState();
}

SceneDecorator::Parts::~Parts() {
  nonShadowed->detach(decorator);
}

void SceneDecorator::Parts::makeState() {
  osg::ref_ptr<osg::LightModel> const model = new osg::LightModel;
  model->setAmbientIntensity(AMBIENT);
  model->setColorControl(osg::LightModel::SEPARATE_SPECULAR_COLOR);
  state->setName("scene decorator");
  state->setDataVariance(osg::Object::DYNAMIC);
  state->setAttributeAndModes(model);
  state->setAttribute(const_cast<osg::Material*>(getDefaultDecoratorMaterial()));
  state->setMode(GL_LIGHTING, osg::StateAttribute::ON);
  state->setMode(GL_NORMALIZE, osg::StateAttribute::ON);
  state->addUniform(new osg::Uniform("zor_texture", 0));
  setProgram(true, false);
}

void SceneDecorator::Parts::setProgram(bool enable, bool override) {
  shaderEnabled = enable;
  if (enable)
    state->setAttribute(m_program, onValue(override));
  else
    state->removeAttribute(m_program);
}

void SceneDecorator::Parts::setShadowMethod(ShadowMethod method) {
  std::lock_guard const lock(m_mutex);
  if (method != shadowMethod)
    m_shadowMaps.clear();
  shadowMethod = method;
}

bool SceneDecorator::Parts::castsShadows() const {
  return shadowsEnabled && shaderEnabled && shadowMethod != NO_SHADOWS && lights.isEnabled(shadowLight);
}

void SceneDecorator::Parts::visit(osg::NodeVisitor& visitor) {
  nonShadowed->accept(visitor);
  auto const type = visitor.getVisitorType();
  // Searches and picking find the scene, not what is drawn on the glass in front of it.
  if (type == osg::NodeVisitor::UPDATE_VISITOR || type == osg::NodeVisitor::EVENT_VISITOR)
    hud.node().accept(visitor);
}

void SceneDecorator::Parts::surveyOnce(unsigned int frame) {
  if (frame == m_surveyedFrame && frame != ~0u)
    return;
  m_surveyedFrame = frame;
  m_survey.begin();
  m_survey.setTraversalNumber(frame);
  decorator.osg::Group::traverse(m_survey);
  m_survey.setShadowed(false);
  nonShadowed->accept(m_survey);
}

void SceneDecorator::Parts::cull(osgUtil::CullVisitor& visitor) {
  if (!enabled) {
    decorator.osg::Group::traverse(visitor);
    nonShadowed->accept(visitor);
    return;
  }
  background.node().accept(visitor);
  lights.cull(visitor);
  osg::StateSet* shadows = nullptr;
  {
    std::lock_guard const lock(m_mutex);
    lights.apply(*state);
    surveyOnce(visitor.getTraversalNumber());
    shadows = cullShadows(visitor);
  }
  if (shadows)
    visitor.pushStateSet(shadows);
  decorator.osg::Group::traverse(visitor);
  if (shadows)
    visitor.popStateSet();
  nonShadowed->accept(visitor);
  hud.node().accept(visitor);
}

osg::StateSet* SceneDecorator::Parts::cullShadows(osgUtil::CullVisitor& visitor) {
  osg::Camera* const view = visitor.getCurrentCamera();
  if (!castsShadows() || !view)
    return nullptr;
  auto const& light = *static_cast<osg::Light const*>(lights.source(shadowLight).getLight());
  return shadowMapOf(*view).cull(visitor, light, m_survey);
}

ShadowMap& SceneDecorator::Parts::shadowMapOf(osg::Camera& view) {
  for (auto const& map : m_shadowMaps)
    if (map->belongsTo(view))
      return *map;
  std::erase_if(m_shadowMaps, [](auto const& map) { return map->isStale(); });
  auto const content = [this](osg::NodeVisitor& visitor) { decorator.osg::Group::traverse(visitor); };
  m_shadowMaps.push_back(std::make_unique<ShadowMap>(view, content, shadowMethod != SHADOWMAP));
  return *m_shadowMaps.back();
}

void SceneDecorator::Parts::releaseGLObjects(osg::State* glState) const {
  for (auto const& source : {&background.node(), &hud.node(), static_cast<osg::Node*>(nonShadowed.get())})
    source->releaseGLObjects(glState);
  state->releaseGLObjects(glState);
  for (auto const& map : m_shadowMaps)
    map->releaseGLObjects(glState);
}

} // namespace zorOSG
