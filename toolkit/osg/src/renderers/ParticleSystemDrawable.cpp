#include <zorOSG/ParticleSystemDrawable.h>

#include <algorithm>
#include <atomic>

#include <osg/BlendFunc>
#include <osg/Depth>
#include <osg/Material>
#include <osg/NodeVisitor>
#include <osg/PointSprite>
#include <osg/Program>

#include "ParticleVertices.h"
#include "scene/SceneIndex.h"
#include "shaders/ScenePrograms.h"

namespace zorOSG {

namespace {

std::atomic<ParticleSystemDrawable::ParticleRenderingMode> allowedMode = ParticleSystemDrawable::SPRITES;

class ParticleUpdate : public osg::NodeCallback {
public:
  void operator()(osg::Node* node, osg::NodeVisitor* visitor) override {
    if (auto* drawable = dynamic_cast<ParticleSystemDrawable*>(node))
      drawable->updateParticles();
    traverse(node, visitor);
  }
};

ParticleSystemDrawable::ParticleRenderingMode valid(ParticleSystemDrawable::ParticleRenderingMode mode) {
  return mode >= ParticleSystemDrawable::SPRITES && mode <= ParticleSystemDrawable::TRIANGLES
             ? mode
             : ParticleSystemDrawable::QUAD_SPRITES;
}

ParticleSystemDrawable::ParticleShaderMode valid(ParticleSystemDrawable::ParticleShaderMode mode) {
  return mode >= ParticleSystemDrawable::SIMPLE_SPRITES && mode <= ParticleSystemDrawable::ALPHA_SPRITES
             ? mode
             : ParticleSystemDrawable::ROTATION_SPRITES;
}

osg::Program& particleProgram() {
  static osg::ref_ptr<osg::Program> const program = makeParticleProgram();
  return *program;
}

osg::Program& ballProgram() {
  static osg::ref_ptr<osg::Program> const program = makeBallProgram();
  return *program;
}

/** The colours of the vertices stand for ambient and diffuse light; a faint highlight makes them round. */
osg::ref_ptr<osg::Material> makeMaterial() {
  osg::ref_ptr<osg::Material> material = new osg::Material;
  material->setColorMode(osg::Material::AMBIENT_AND_DIFFUSE);
  material->setAmbient(osg::Material::FRONT_AND_BACK, osg::Vec4(1, 1, 1, 1));
  material->setDiffuse(osg::Material::FRONT_AND_BACK, osg::Vec4(1, 1, 1, 1));
  material->setSpecular(osg::Material::FRONT_AND_BACK, osg::Vec4(0.08f, 0.08f, 0.08f, 1));
  material->setShininess(osg::Material::FRONT_AND_BACK, 24);
  return material;
}

} // namespace

ParticleSystemDrawable::ParticleSystemDrawable() : ParticleSystemDrawable(nullptr) {}

ParticleSystemDrawable::ParticleSystemDrawable(zor::ParticleSystem* particleSystem,
                                               ParticleRenderingMode renderMode,
                                               ParticleShaderMode particleShaderMode)
    : m_particles(particleSystem), m_renderMode(valid(renderMode)), m_shaderMode(valid(particleShaderMode)) {
  setUp();
}

ParticleSystemDrawable::ParticleSystemDrawable(ParticleSystemDrawable const& other, osg::CopyOp const& copyop)
    : osg::Drawable(other, copyop), m_particles(other.m_particles), m_renderMode(other.m_renderMode),
      m_shaderMode(other.m_shaderMode), m_enabled(other.m_enabled) {
  setStateSet(nullptr); // each has its own, which says how it is drawn
  setUp();
}

ParticleSystemDrawable::~ParticleSystemDrawable() = default;

void ParticleSystemDrawable::setUp() {
  m_indexEntry = std::make_unique<IndexEntry<ParticleSystemDrawable>>(*this);
  setUseDisplayList(false);
  setDataVariance(osg::Object::DYNAMIC);
  setUpdateCallback(new ParticleUpdate);
  updateParticles();
}

void ParticleSystemDrawable::setUpMode() {
  m_mode = usedMode();
  m_geometry = makeParticleGeometry(m_mode);
  osg::StateSet& state = *getOrCreateStateSet();
  state.clear();
  state.setDataVariance(osg::Object::DYNAMIC);
  state.setAttributeAndModes(makeMaterial());
  m_shader = new osg::Uniform("zor_particleShader", static_cast<int>(m_shaderMode));
  state.addUniform(m_shader);
  if (m_mode == TRIANGLES) {
    state.setDefine(define::VERTEX_COLOR);
    state.setMode(GL_CULL_FACE, osg::StateAttribute::ON);
    if (m_shaderMode != SIMPLE_SPRITES) // plain spheres need no program of their own
      state.setAttributeAndModes(&ballProgram());
  } else {
    state.addUniform(new osg::Uniform("zor_particlePoints", m_mode == SPRITES));
    state.setAttributeAndModes(&particleProgram());
  }
  if (m_mode == SPRITES) {
    state.setTextureAttributeAndModes(0, new osg::PointSprite);
    state.setMode(GL_VERTEX_PROGRAM_POINT_SIZE, osg::StateAttribute::ON);
  }
  if (m_shaderMode == ALPHA_SPRITES) {
    state.setAttributeAndModes(new osg::BlendFunc);
    state.setAttributeAndModes(new osg::Depth(osg::Depth::LESS, 0, 1, false));
    state.setRenderingHint(osg::StateSet::TRANSPARENT_BIN);
  }
}

ParticleSystemDrawable::ParticleRenderingMode ParticleSystemDrawable::usedMode() const {
  return std::max(m_renderMode, allowedMode.load());
}

void ParticleSystemDrawable::setParticleShaderMode(ParticleShaderMode flag) {
  m_shaderMode = valid(flag);
  setUpMode();
  updateParticles();
}

osg::Object* ParticleSystemDrawable::cloneType() const {
  return new ParticleSystemDrawable(m_particles.get());
}

osg::Object* ParticleSystemDrawable::clone(osg::CopyOp const& copyop) const {
  return new ParticleSystemDrawable(*this, copyop);
}

bool ParticleSystemDrawable::isSameKindAs(osg::Object const* obj) const {
  return dynamic_cast<ParticleSystemDrawable const*>(obj) != nullptr;
}

void ParticleSystemDrawable::updateParticles() {
  if (m_mode != usedMode())
    setUpMode();
  m_box = osg::BoundingBox();
  if (m_particles && m_enabled)
    m_box = fillParticleGeometry(*m_geometry, m_mode, *m_particles);
  dirtyBound();
}

void ParticleSystemDrawable::drawImplementation(osg::RenderInfo& renderInfo) const {
  if (!m_enabled || !m_box.valid())
    return;
  osg::State* const state = renderInfo.getState();
  if (!state)
    return;
  if (m_mode == SPRITES)
    setPointScale(*state);
  m_geometry->drawImplementation(renderInfo);
}

void ParticleSystemDrawable::setEnable(bool enable) {
  m_enabled = enable;
  updateParticles();
}

void ParticleSystemDrawable::setAllowedRenderMode(ParticleRenderingMode mode) {
  allowedMode = valid(mode);
}

ParticleSystemDrawable::ParticleRenderingMode ParticleSystemDrawable::getAllowedRenderMode() {
  return allowedMode;
}

osg::BoundingBox ParticleSystemDrawable::computeBoundingBox() const {
  return m_box;
}

void ParticleSystemDrawable::releaseGLObjects(osg::State* state) const {
  osg::Drawable::releaseGLObjects(state);
  if (m_geometry)
    m_geometry->releaseGLObjects(state);
}

void ParticleSystemDrawable::resizeGLObjectBuffers(unsigned int size) {
  osg::Drawable::resizeGLObjectBuffers(size);
  if (m_geometry)
    m_geometry->resizeGLObjectBuffers(size);
}

} // namespace zorOSG
