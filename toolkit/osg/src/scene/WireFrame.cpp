#include <zorOSG/RenderState.h>

#include <osg/PolygonMode>

#include "VisualState.h"

namespace zorOSG {

namespace {

osg::PolygonMode const* polygonMode(osg::Node const& node) {
  osg::StateSet const* state = node.getStateSet();
  return state ? static_cast<osg::PolygonMode const*>(state->getAttribute(osg::StateAttribute::POLYGONMODE))
               : nullptr;
}

bool isWireFrame(osg::Node const& node) {
  osg::PolygonMode const* mode = polygonMode(node);
  return mode && mode->getMode(osg::PolygonMode::FRONT_AND_BACK) == osg::PolygonMode::LINE;
}

void drawAsLines(osg::Node& node, osg::StateAttribute::OverrideValue value) {
  ownState(node).setAttributeAndModes(
      new osg::PolygonMode(osg::PolygonMode::FRONT_AND_BACK, osg::PolygonMode::LINE), value);
  // Backs are seen through the lines.
  node.getStateSet()->setMode(GL_CULL_FACE, osg::StateAttribute::OFF | osg::StateAttribute::OVERRIDE);
}

} // namespace

bool setEnableWireFrameMode(osg::Node* node, bool flag) {
  if (!node)
    return false;
  if (flag)
    drawAsLines(*node, osg::StateAttribute::ON);
  else if (isWireFrame(*node)) {
    osg::StateSet& state = ownState(*node);
    state.removeAttribute(osg::StateAttribute::POLYGONMODE);
    state.removeMode(GL_CULL_FACE);
  }
  return flag;
}

bool toggleWireFrameMode(osg::Node* node) {
  return node && setEnableWireFrameMode(node, !isWireFrame(*node));
}

bool forceWireFrameModeOn(osg::Node* node) {
  if (!node)
    return false;
  drawAsLines(*node, osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE);
  return true;
}

} // namespace zorOSG
