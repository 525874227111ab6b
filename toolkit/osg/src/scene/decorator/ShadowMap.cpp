#include "ShadowMap.h"

#include "Defines.h"
#include "SceneSurvey.h"
#include "shaders/ScenePrograms.h"

#include <zorOSG/ExampleApplication.h>

#include <osg/ColorMask>
#include <osg/CullFace>
#include <osg/PolygonMode>
#include <osg/PolygonOffset>
#include <osgUtil/CullVisitor>
#include <osgUtil/RenderStage>

#include <array>
#include <cmath>

namespace zorOSG {

namespace {

constexpr int MAP_SIZE = 2048;

/** The scene graph's bin of what is see-through. */
constexpr int TRANSPARENT_BIN = 10;

/** Surfaces are looked up this many texels above themselves: the reach of the filter. */
constexpr double SOFT_OFFSET = 2.5;
constexpr double SHARP_OFFSET = 1.2;

/** Continues the walk that reaches the depth camera in the scene that casts the shadows. */
class ContentCallback : public osg::NodeCallback {
public:
  explicit ContentCallback(ShadowMap::Content content) : m_content(std::move(content)) {}
  void operator()(osg::Node*, osg::NodeVisitor* visitor) override {
    auto const mask = visitor->getTraversalMask();
    visitor->setTraversalMask(mask & ExampleApplication::CASTS_SHADOWS_MASK);
    m_content(*visitor);
    visitor->setTraversalMask(mask);
  }

private:
  ShadowMap::Content m_content;
};

/** Texture coordinates and depth run from 0 to 1, clip coordinates from -1 to 1. */
osg::Matrixd clipToTexture() {
  return osg::Matrixd::translate(1.0, 1.0, 1.0) * osg::Matrixd::scale(0.5, 0.5, 0.5);
}

osgUtil::RenderStage* findStage(osgUtil::CullVisitor& visitor, osg::Camera const* camera) {
  for (auto const& entry : visitor.getCurrentRenderBin()->getStage()->getPreRenderList())
    if (entry.second->getCamera() == camera)
      return entry.second.get();
  return nullptr;
}

} // namespace

ShadowMap::ShadowMap(osg::Camera& view, Content content)
    : m_view(&view), m_map(new osg::Texture2D), m_state(new osg::StateSet),
      m_matrix(new osg::Uniform(osg::Uniform::FLOAT_MAT4, "zor_shadowMatrix")),
      m_offset(new osg::Uniform("zor_shadowOffset", 0.0f)) {
  m_map->setTextureSize(MAP_SIZE, MAP_SIZE);
  m_map->setInternalFormat(GL_DEPTH_COMPONENT24);
  m_map->setSourceFormat(GL_DEPTH_COMPONENT);
  m_map->setSourceType(GL_UNSIGNED_INT);
  m_map->setShadowComparison(true);
  m_map->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR);
  m_map->setFilter(osg::Texture::MAG_FILTER, osg::Texture::LINEAR);
  m_map->setWrap(osg::Texture::WRAP_S, osg::Texture::CLAMP_TO_BORDER);
  m_map->setWrap(osg::Texture::WRAP_T, osg::Texture::CLAMP_TO_BORDER);
  m_map->setBorderColor(osg::Vec4d(1.0, 1.0, 1.0, 1.0)); // beyond the map there is light
  makeCamera(std::move(content));
  makeState();
}

void ShadowMap::makeCamera(Content content) {
  m_camera = new osg::Camera;
  m_camera->setName("shadow map");
  m_camera->setReferenceFrame(osg::Camera::ABSOLUTE_RF_INHERIT_VIEWPOINT);
  m_camera->setRenderOrder(osg::Camera::PRE_RENDER, -1000);
  m_camera->setRenderTargetImplementation(osg::Camera::FRAME_BUFFER_OBJECT);
  m_camera->setImplicitBufferAttachmentMask(0, 0);
  m_camera->attach(osg::Camera::DEPTH_BUFFER, m_map);
  m_camera->setDrawBuffer(GL_NONE);
  m_camera->setReadBuffer(GL_NONE);
  m_camera->setViewport(0, 0, MAP_SIZE, MAP_SIZE);
  m_camera->setClearMask(GL_DEPTH_BUFFER_BIT);
  m_camera->setComputeNearFarMode(osg::Camera::DO_NOT_COMPUTE_NEAR_FAR);
  m_camera->setCullingMode(osg::CullSettings::VIEW_FRUSTUM_CULLING);
  m_camera->setCullingActive(false);
  m_camera->setCullCallback(new ContentCallback(std::move(content)));

  osg::StateSet& state = *m_camera->getOrCreateStateSet();
  auto const on = osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE | osg::StateAttribute::PROTECTED;
  auto const off = osg::StateAttribute::OFF | osg::StateAttribute::OVERRIDE | osg::StateAttribute::PROTECTED;
  state.setAttribute(makeDepthProgram(), osg::StateAttribute::ON | osg::StateAttribute::PROTECTED);
  state.setAttributeAndModes(new osg::PolygonOffset(1.1f, 4.0f), on);
  state.setAttributeAndModes(new osg::PolygonMode, on);
  state.setAttribute(new osg::ColorMask(false, false, false, false), on);
  state.setMode(GL_CULL_FACE, off);
  state.setMode(GL_BLEND, off);
  state.setMode(GL_LIGHTING, off);
}

void ShadowMap::makeState() {
  m_state->setDataVariance(osg::Object::DYNAMIC);
  m_state->setTextureAttribute(SHADOW_UNIT, m_map);
  m_state->addUniform(m_matrix);
  m_state->addUniform(m_offset);
  m_state->addUniform(new osg::Uniform("zor_shadowMap", static_cast<int>(SHADOW_UNIT)));
  auto const size = static_cast<float>(MAP_SIZE);
  m_state->addUniform(new osg::Uniform("zor_shadowMapSize", osg::Vec2(size, size)));
}

osg::StateSet* ShadowMap::cull(osgUtil::CullVisitor& visitor, osg::Light const& light,
                               SceneSurvey const& survey, bool soft) {
  static std::array<std::string, LIGHT_COUNT> const numbers = {"0", "1", "2"};
  osg::Matrixd const toEye = *visitor.getModelViewMatrix();
  ShadowFit const fit =
      fitShadow({osg::Vec4d(light.getPosition()), osg::Vec3d(light.getDirection()), survey.casters(),
                 survey.scene(), toEye, *visitor.getProjectionMatrix(), MAP_SIZE});
  if (fit.empty)
    return nullptr;
  cullDepthPass(visitor, fit);
  m_matrix->set(osg::Matrixf(osg::Matrixd::inverse(toEye) * fit.view * fit.projection * clipToTexture()));
  m_offset->set(static_cast<float>(fit.texel * (soft ? SOFT_OFFSET : SHARP_OFFSET)));
  keepDefine(*m_state, define::SHADOW, &numbers[static_cast<size_t>(light.getLightNum())]);
  keepDefine(*m_state, define::SOFT_SHADOW, soft ? osg::StateAttribute::ON : osg::StateAttribute::INHERIT);
  return m_state;
}

void ShadowMap::cullDepthPass(osgUtil::CullVisitor& visitor, ShadowFit const& fit) {
  m_camera->setViewMatrix(fit.view);
  m_camera->setProjectionMatrix(fit.projection);
  m_camera->accept(visitor);
  // Glass, labels and smoke would cast the shadow of something solid.
  if (osgUtil::RenderStage* const stage = findStage(visitor, m_camera))
    stage->getRenderBinList().erase(TRANSPARENT_BIN);
}

void ShadowMap::releaseGLObjects(osg::State* state) const {
  m_camera->releaseGLObjects(state);
  m_map->releaseGLObjects(state);
  m_state->releaseGLObjects(state);
}

} // namespace zorOSG
