#include "ScreenLayer.h"

#include <osg/Depth>
#include <osg/PolygonMode>
#include <osg/Program>
#include <osgUtil/CullVisitor>

namespace zorOSG {

void setScreenState(osg::StateSet& state, int order) {
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

ScreenScope::ScreenScope(osgUtil::CullVisitor& visitor, osg::Matrixd const& projection,
                         osg::Matrixd const& placement)
    : m_visitor(visitor), m_nearFar(visitor.getComputeNearFarMode()), m_culling(visitor.getCullingMode()) {
  visitor.setComputeNearFarMode(osg::CullSettings::DO_NOT_COMPUTE_NEAR_FAR);
  visitor.setCullingMode(osg::CullSettings::NO_CULLING);
  visitor.pushProjectionMatrix(new osg::RefMatrix(projection));
  visitor.pushModelViewMatrix(new osg::RefMatrix(placement), osg::Transform::ABSOLUTE_RF);
}

ScreenScope::~ScreenScope() {
  m_visitor.popModelViewMatrix();
  m_visitor.popProjectionMatrix();
  m_visitor.setCullingMode(m_culling);
  m_visitor.setComputeNearFarMode(m_nearFar);
}

ScreenLayer::ScreenLayer(Projection projection, int order) : m_projection(std::move(projection)) {
  setCullingActive(false);
  setScreenState(*getOrCreateStateSet(), order);
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
  ScreenScope const scope(*cull, m_projection(viewport->width(), viewport->height()));
  osg::Group::traverse(visitor);
}

} // namespace zorOSG
