#include "TrailDrawable.h"

#include <algorithm>

#include <osg/BlendFunc>
#include <osg/Depth>
#include <osg/GLExtensions>
#include <osg/LineWidth>
#include <osg/NodeVisitor>
#include <osg/Program>

#include "scene/ColorByte.h"
#include "scene/Convert.h"
#include "scene/LineBuilder.h"
#include "scene/VisualState.h"
#include "shaders/ScenePrograms.h"

namespace zorOSG {

namespace {

class TrailUpdate : public osg::NodeCallback {
public:
  void operator()(osg::Node* node, osg::NodeVisitor* visitor) override {
    if (auto* trails = dynamic_cast<TrailDrawable*>(node))
      trails->update();
    traverse(node, visitor);
  }
};

osg::Program& trailProgram() {
  static osg::ref_ptr<osg::Program> const program = makeTrailProgram();
  return *program;
}

/** Where the program that is in use wants how much is left of a layer's older and newer ends. */
int fadeLocation(osg::State& state) {
  osg::Program::PerContextProgram const* const program = state.getLastAppliedProgramObject();
  return program ? program->getUniformLocation(osg::Uniform::getNameID("zor_trailFade")) : -1;
}

} // namespace

TrailDrawable::TrailDrawable(zorSDK::Simulation& simulation, zor::UInt numPositions)
    : m_simulation(&simulation), m_numLayers(numPositions < 2 ? 0 : numPositions - 1) {
  setUseDisplayList(false);
  setDataVariance(osg::Object::DYNAMIC);
  setUpdateCallback(new TrailUpdate);
  drawWithoutLight(*this);
  drawEvenIfSmall(*this);
  osg::StateSet& state = *getOrCreateStateSet();
  state.setAttributeAndModes(&trailProgram(), osg::StateAttribute::ON | osg::StateAttribute::PROTECTED);
  state.setAttributeAndModes(new osg::LineWidth(2));
  state.setAttributeAndModes(new osg::BlendFunc);
  state.setAttributeAndModes(new osg::Depth(osg::Depth::LESS, 0, 1, false));
  state.setRenderingHint(osg::StateSet::TRANSPARENT_BIN);
}

void TrailDrawable::update() {
  zor::ref_ptr<zorSDK::Simulation> const simulation = m_simulation.lock();
  if (!simulation || m_numLayers == 0 || simulation->getTimeStamp() == m_time)
    return;
  if (simulation->getTimeStamp() < m_time) // set back: no lines to where things are again
    clear();
  m_reach = {simulation->getTimeStamp() - m_time, simulation->getUniformGravity().length()};
  m_time = simulation->getTimeStamp();
  TrailLayer& layer = nextLayer();
  layer.begin();
  addPositions(*simulation);
  layer.end();
  m_box.init();
  for (osg::ref_ptr<TrailLayer> const& each : m_layers)
    m_box.expandBy(each->box());
  dirtyBound();
}

TrailLayer& TrailDrawable::nextLayer() {
  if (m_layers.size() < m_numLayers) {
    m_newest = m_layers.size();
    m_layers.push_back(new TrailLayer);
  } else {
    m_newest = (m_newest + 1) % m_layers.size();
  }
  return *m_layers[m_newest];
}

void TrailDrawable::moveTo(Head& head, zor::Vec3 const& position, osg::Vec4 const& color) {
  osg::Vec3 const place = toOsgFloat(position);
  if (!position.isFinite()) {
    head.valid = false;
    return;
  }
  if (head.valid)
    m_layers[m_newest]->add(head.position, place,
                            {toByte(color.r()), toByte(color.g()), toByte(color.b()), toByte(color.a())});
  head.position = place;
  head.valid = true;
}

void TrailDrawable::clear() {
  for (osg::ref_ptr<TrailLayer> const& layer : m_layers) {
    layer->begin();
    layer->end();
  }
  forgetHeads();
}

void TrailDrawable::drawImplementation(osg::RenderInfo& renderInfo) const {
  osg::State* const state = renderInfo.getState();
  int const location = state ? fadeLocation(*state) : -1;
  auto const* const gl = state ? state->get<osg::GLExtensions>() : nullptr;
  size_t const count = m_layers.size();
  for (size_t k = 0; k < count; ++k) { // the oldest first, as newer ones are drawn over it
    TrailLayer const& layer = *m_layers[(m_newest + 1 + k) % count];
    if (layer.isEmpty())
      continue;
    float const older = static_cast<float>(k) / static_cast<float>(count),
                newer = static_cast<float>(k + 1) / static_cast<float>(count);
    if (location >= 0)
      gl->glUniform2f(location, older, newer);
    layer.drawImplementation(renderInfo);
  }
}

void TrailDrawable::releaseGLObjects(osg::State* state) const {
  osg::Drawable::releaseGLObjects(state);
  for (osg::ref_ptr<TrailLayer> const& layer : m_layers)
    layer->releaseGLObjects(state);
}

void TrailDrawable::resizeGLObjectBuffers(unsigned int size) {
  osg::Drawable::resizeGLObjectBuffers(size);
  for (osg::ref_ptr<TrailLayer> const& layer : m_layers)
    layer->resizeGLObjectBuffers(size);
}

} // namespace zorOSG
