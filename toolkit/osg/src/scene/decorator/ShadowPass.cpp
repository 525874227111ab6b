#include "ShadowPass.h"

#include "Boxes.h"
#include "shaders/ScenePrograms.h"

#include <zorOSG/ExampleApplication.h>

#include <osg/BlendEquation>
#include <osg/ColorMask>
#include <osg/CullFace>
#include <osg/Depth>
#include <osg/PolygonMode>
#include <osg/PolygonOffset>
#include <osgUtil/CullVisitor>
#include <osgUtil/RenderStage>
#include <osgUtil/StateGraph>

namespace zorOSG {

namespace {

/** The scene graph's bin of what is see-through. */
constexpr int TRANSPARENT_BIN = 10;

constexpr auto ON = osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE | osg::StateAttribute::PROTECTED;
constexpr auto OFF =
    osg::StateAttribute::OFF | osg::StateAttribute::OVERRIDE | osg::StateAttribute::PROTECTED;

/** Continues the walk that reaches the camera in the scene that casts the shadows. */
class ContentCallback : public osg::NodeCallback {
public:
  explicit ContentCallback(ShadowTechnique::Content content) : m_content(std::move(content)) {}
  void operator()(osg::Node*, osg::NodeVisitor* visitor) override {
    auto const mask = visitor->getTraversalMask();
    visitor->setTraversalMask(mask & ExampleApplication::CASTS_SHADOWS_MASK);
    m_content(*visitor);
    visitor->setTraversalMask(mask);
  }

private:
  ShadowTechnique::Content m_content;
};

void setDepthState(osg::Camera& camera, osg::Texture2D* target) {
  camera.attach(osg::Camera::DEPTH_BUFFER, target);
  camera.setDrawBuffer(GL_NONE);
  camera.setReadBuffer(GL_NONE);
  camera.setClearMask(GL_DEPTH_BUFFER_BIT);
  osg::StateSet& state = *camera.getOrCreateStateSet();
  state.setAttribute(makeDepthProgram(), osg::StateAttribute::ON | osg::StateAttribute::PROTECTED);
  state.setAttributeAndModes(new osg::PolygonOffset(1.1f, 4.0f), ON);
  state.setAttribute(new osg::ColorMask(false, false, false, false), ON);
  state.setMode(GL_BLEND, OFF);
}

void setSilhouetteState(osg::Camera& camera, osg::Texture2D* target) {
  camera.attach(osg::Camera::COLOR_BUFFER, target);
  camera.setClearMask(GL_COLOR_BUFFER_BIT);
  camera.setClearColor({0.0f, 0.0f, 0.0f, 0.0f});
  osg::StateSet& state = *camera.getOrCreateStateSet();
  state.setAttribute(makeSilhouetteProgram(), osg::StateAttribute::ON | osg::StateAttribute::PROTECTED);
  state.setAttributeAndModes(new osg::Depth(osg::Depth::ALWAYS, 0.0, 1.0, false), ON);
  state.setAttribute(new osg::BlendEquation(osg::BlendEquation::RGBA_MAX), ON);
  state.setMode(GL_BLEND, ON);
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

ShadowPass::ShadowPass(ShadowTechnique::Content content, osg::Texture2D* target, Tile tile, Kind kind)
    : m_camera(new osg::Camera) {
  m_camera->setName("shadow pass");
  m_camera->setReferenceFrame(osg::Camera::ABSOLUTE_RF_INHERIT_VIEWPOINT);
  m_camera->setRenderOrder(osg::Camera::PRE_RENDER, -1000);
  m_camera->setRenderTargetImplementation(osg::Camera::FRAME_BUFFER_OBJECT);
  m_camera->setImplicitBufferAttachmentMask(0, 0);
  m_camera->setViewport(tile.x, 0, tile.size, tile.size);
  m_camera->setComputeNearFarMode(osg::Camera::DO_NOT_COMPUTE_NEAR_FAR);
  m_camera->setCullingMode(osg::CullSettings::VIEW_FRUSTUM_CULLING);
  m_camera->setCullingActive(false);
  m_camera->setCullCallback(new ContentCallback(std::move(content)));
  osg::StateSet& state = *m_camera->getOrCreateStateSet();
  state.setAttributeAndModes(new osg::PolygonMode, ON);
  state.setMode(GL_CULL_FACE, OFF);
  state.setMode(GL_LIGHTING, OFF);
  if (kind == Kind::DEPTH)
    setDepthState(*m_camera, target);
  else
    setSilhouetteState(*m_camera, target);
}

void ShadowPass::cull(osgUtil::CullVisitor& visitor, ShadowFit const& fit, osg::BoundingBoxd const& scene) {
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

} // namespace zorOSG
