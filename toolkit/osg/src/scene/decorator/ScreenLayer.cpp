#include "ScreenLayer.h"

#include <osg/Depth>
#include <osg/PolygonMode>
#include <osg/Program>
#include <osgUtil/CullVisitor>

namespace zorOSG {

ScreenLayer::ScreenLayer(Projection projection, int order) : m_projection(std::move(projection)) {
  setCullingActive(false);
  osg::StateSet& state = *getOrCreateStateSet();
  auto const off = osg::StateAttribute::OFF | osg::StateAttribute::PROTECTED;
  auto const on = osg::StateAttribute::ON | osg::StateAttribute::PROTECTED;
  state.setRenderBinDetails(order, "TraversalOrderBin");
  state.setNestRenderBins(false);
  state.setMode(GL_LIGHTING, off);
  state.setMode(GL_CULL_FACE, off);
  state.setMode(GL_BLEND, on);
  state.setAttributeAndModes(new osg::Depth(osg::Depth::ALWAYS, 0.0, 1.0, false), on);
  state.setAttributeAndModes(new osg::PolygonMode, on);
  state.setAttribute(new osg::Program, on); // the fixed pipeline, whatever the scene uses
}

void ScreenLayer::traverse(osg::NodeVisitor& visitor) {
  osgUtil::CullVisitor* const cull = visitor.asCullVisitor();
  if (!cull) {
    osg::Group::traverse(visitor);
    return;
  }
  osg::Viewport const* const viewport = cull->getViewport();
  if (!viewport)
    return;
  auto const nearFar = cull->getComputeNearFarMode();
  auto const culling = cull->getCullingMode();
  cull->setComputeNearFarMode(osg::CullSettings::DO_NOT_COMPUTE_NEAR_FAR);
  cull->setCullingMode(osg::CullSettings::NO_CULLING);
  cull->pushProjectionMatrix(new osg::RefMatrix(m_projection(viewport->width(), viewport->height())));
  cull->pushModelViewMatrix(new osg::RefMatrix, osg::Transform::ABSOLUTE_RF);
  osg::Group::traverse(visitor);
  cull->popModelViewMatrix();
  cull->popProjectionMatrix();
  cull->setCullingMode(culling);
  cull->setComputeNearFarMode(nearFar);
}

} // namespace zorOSG
