#include "ShadowMap.h"

#include "Boxes.h"
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
#include <osgUtil/StateGraph>

#include <algorithm>
#include <array>
#include <cmath>

namespace zorOSG {

namespace {

/** A soft edge is four texels wide, a sharp one a single texel: half as many texels do for soft ones. */
constexpr int SOFT_MAP_SIZE = 1024;
constexpr int SHARP_MAP_SIZE = 2048;

/** A soft edge is at least this part of the view's height wide, a quarter of it a texel, or it would look
 * sharp. */
constexpr double SOFTNESS = 0.25 * 0.0065;

/** The scene graph's bin of what is see-through. */
constexpr int TRANSPARENT_BIN = 10;

/** Surfaces are looked up this many texels above themselves: the reach of the filter. */
constexpr double SOFT_OFFSET = 2.0;
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

/** The ground would fill the whole map and could darken only itself. */
void leaveOutGround(osgUtil::RenderBin& bin, osg::Matrixd const& toScene, osg::BoundingBoxd const& scene) {
  auto const isOnGround = [&](osgUtil::RenderLeaf const& leaf) {
    osg::Drawable const* const drawable = leaf.getDrawable();
    osg::Matrixd const placed = leaf._modelview ? osg::Matrixd(*leaf._modelview) : osg::Matrixd();
    return drawable && isGround(transformed(drawable->getBoundingBox(), placed * toScene), scene);
  };
  std::erase_if(bin.getRenderLeafList(), [&](auto const* leaf) { return isOnGround(*leaf); });
  for (osgUtil::StateGraph* const graph : bin.getStateGraphList())
    std::erase_if(graph->_leaves, [&](auto const& leaf) { return isOnGround(*leaf); });
}

} // namespace

ShadowMap::ShadowMap(osg::Camera& view, Content content, bool soft)
    : m_view(&view), m_soft(soft), m_size(soft ? SOFT_MAP_SIZE : SHARP_MAP_SIZE), m_map(new osg::Texture2D),
      m_state(new osg::StateSet), m_matrix(new osg::Uniform(osg::Uniform::FLOAT_MAT4, "zor_shadowMatrix")),
      m_offset(new osg::Uniform("zor_shadowOffset", 0.0f)) {
  makeTexture();
  makeCamera(std::move(content));
  makeState();
}

void ShadowMap::makeTexture() {
  m_map->setTextureSize(m_size, m_size);
  m_map->setInternalFormat(GL_DEPTH_COMPONENT24);
  m_map->setSourceFormat(GL_DEPTH_COMPONENT);
  m_map->setSourceType(GL_UNSIGNED_INT);
  m_map->setShadowComparison(!m_soft); // the soft filter compares texel by texel
  auto const filter = m_soft ? osg::Texture::NEAREST : osg::Texture::LINEAR;
  m_map->setFilter(osg::Texture::MIN_FILTER, filter);
  m_map->setFilter(osg::Texture::MAG_FILTER, filter);
  // The fit leaves a margin, so the edge of the map is light wherever the view can see beyond it.
  m_map->setWrap(osg::Texture::WRAP_S, osg::Texture::CLAMP_TO_EDGE);
  m_map->setWrap(osg::Texture::WRAP_T, osg::Texture::CLAMP_TO_EDGE);
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
  m_camera->setViewport(0, 0, m_size, m_size);
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
  auto const size = static_cast<float>(m_size);
  m_state->addUniform(new osg::Uniform("zor_shadowMapSize", osg::Vec2(size, size)));
}

osg::StateSet* ShadowMap::cull(osgUtil::CullVisitor& visitor, osg::Light const& light,
                               SceneSurvey const& survey) {
  static std::array<std::string, LIGHT_COUNT> const numbers = {"0", "1", "2"};
  osg::Matrixd const toEye = *visitor.getModelViewMatrix();
  ShadowFit const fit =
      fitShadow({osg::Vec4d(light.getPosition()), osg::Vec3d(light.getDirection()), survey.casters(),
                 survey.scene(), toEye, *visitor.getProjectionMatrix(), m_soft ? SOFTNESS : 0.0, m_size});
  if (fit.empty)
    return nullptr;
  cullDepthPass(visitor, fit, survey.scene());
  m_matrix->set(osg::Matrixf(osg::Matrixd::inverse(toEye) * fit.view * fit.projection * clipToTexture()));
  m_offset->set(static_cast<float>(fit.texel * (m_soft ? SOFT_OFFSET : SHARP_OFFSET)));
  keepDefine(*m_state, define::SHADOW, &numbers[static_cast<size_t>(light.getLightNum())]);
  keepDefine(*m_state, define::SOFT_SHADOW, m_soft ? osg::StateAttribute::ON : osg::StateAttribute::INHERIT);
  return m_state;
}

void ShadowMap::cullDepthPass(osgUtil::CullVisitor& visitor, ShadowFit const& fit,
                              osg::BoundingBoxd const& scene) {
  m_camera->setViewMatrix(fit.view);
  m_camera->setProjectionMatrix(fit.projection);
  m_camera->accept(visitor);
  osgUtil::RenderStage* const stage = findStage(visitor, m_camera);
  if (!stage)
    return;
  // Glass, labels and smoke would cast the shadow of something solid.
  stage->getRenderBinList().erase(TRANSPARENT_BIN);
  leaveOutGround(*stage, osg::Matrixd::inverse(fit.view), scene);
}

void ShadowMap::releaseGLObjects(osg::State* state) const {
  m_camera->releaseGLObjects(state);
  m_map->releaseGLObjects(state);
  m_state->releaseGLObjects(state);
}

} // namespace zorOSG
