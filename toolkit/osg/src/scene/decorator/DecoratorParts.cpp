#include "DecoratorParts.h"

#include "Defines.h"
#include "ShadowMap.h"
#include "ShadowTexture.h"
#include "ShadowVolumes.h"
#include "SplitShadowMap.h"
#include "scene/TextureRoles.h"
#include "scene/VisualState.h"

#include <zor/Notify.h>

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
    m_techniques.clear();
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
  m_survey.setCollectMeshes(castsShadows() && shadowMethod == SHADOWVOLUME);
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
  {
    std::lock_guard const lock(m_mutex);
    lights.apply(*state);
    surveyOnce(visitor.getTraversalNumber());
  }
  cullScene(visitor);
  hud.node().accept(visitor);
}

void SceneDecorator::Parts::cullScene(osgUtil::CullVisitor& visitor) {
  osg::StateSet* viewState = nullptr;
  if (areCubeMapsUsed()) {
    std::lock_guard const lock(m_mutex);
    viewState = m_viewStates.stateFor(visitor.getCurrentCamera(), *visitor.getModelViewMatrix());
  }
  if (viewState)
    visitor.pushStateSet(viewState);
  cullShadowed(visitor);
  nonShadowed->accept(visitor);
  if (viewState)
    visitor.popStateSet();
}

void SceneDecorator::Parts::cullShadowed(osgUtil::CullVisitor& visitor) {
  osg::Camera* const view = visitor.getCurrentCamera();
  if (!castsShadows() || !view) {
    decorator.osg::Group::traverse(visitor);
    return;
  }
  auto const& light = *static_cast<osg::Light const*>(lights.source(shadowLight).getLight());
  std::unique_lock lock(m_mutex);
  ShadowTechnique& technique = techniqueFor(*view);
  osg::StateSet* const state_ = technique.begin(visitor, light, m_survey);
  lock.unlock();
  if (state_)
    visitor.pushStateSet(state_);
  decorator.osg::Group::traverse(visitor);
  if (state_)
    visitor.popStateSet();
  lock.lock();
  technique.end(visitor, light, m_survey);
}

ShadowTechnique& SceneDecorator::Parts::techniqueFor(osg::Camera& view) {
  for (auto const& technique : m_techniques)
    if (technique->belongsTo(view))
      return *technique;
  std::erase_if(m_techniques, [](auto const& technique) { return technique->isStale(); });
  m_techniques.push_back(makeTechnique(view));
  return *m_techniques.back();
}

std::unique_ptr<ShadowTechnique> SceneDecorator::Parts::makeTechnique(osg::Camera& view) {
  ShadowTechnique::Content const content = [this](osg::NodeVisitor& visitor) {
    decorator.osg::Group::traverse(visitor);
  };
  switch (shadowMethod) {
  case SHADOWVOLUME:
    if (ShadowVolumes::arePossible(view))
      return std::make_unique<ShadowVolumes>(view, content);
    zor::notify(zor::Notify::NOTIFY_WARNING)
        << "Scene decorator: a view without a stencil buffer has shadow maps in place of volumes"
        << zor::endMessage;
    return std::make_unique<ShadowMap>(view, content, ShadowMap::Style::SHARP);
  case PARALLELLSPLIT_SHADOWMAP:
    return std::make_unique<SplitShadowMap>(view, content);
  case LIGHTSPACEPERSPECTIVE_SHADOWMAP:
    return std::make_unique<ShadowMap>(view, content, ShadowMap::Style::WARPED);
  case SHADOWTEXTURE:
    return std::make_unique<ShadowTexture>(view, content);
  case SHADOWMAP:
    return std::make_unique<ShadowMap>(view, content, ShadowMap::Style::SHARP);
  case SOFT_SHADOWMAP:
  case NO_SHADOWS:
    break;
  }
  return std::make_unique<ShadowMap>(view, content, ShadowMap::Style::SOFT);
}

void SceneDecorator::Parts::releaseGLObjects(osg::State* glState) const {
  for (auto const& source : {&background.node(), &hud.node(), static_cast<osg::Node*>(nonShadowed.get())})
    source->releaseGLObjects(glState);
  state->releaseGLObjects(glState);
  for (auto const& technique : m_techniques)
    technique->releaseGLObjects(glState);
}

} // namespace zorOSG
