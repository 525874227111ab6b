#include "OutlineCallback.h"

#include <algorithm>
#include <atomic>
#include <map>

#include <osg/ColorMask>
#include <osg/Depth>
#include <osg/Geometry>
#include <osg/NodeVisitor>
#include <osg/PolygonMode>
#include <osg/Stencil>
#include <osg/Transform>
#include <osgUtil/CullVisitor>
#include <osgUtil/RenderStage>

#include "ClipNumbers.h"
#include "VisualState.h"
#include "decorator/ShadowVolumes.h"
#include "shaders/OutlineProgram.h"
#include "shaders/ScenePrograms.h"

namespace zorOSG {

namespace {

/** After shadow volumes, which use the stencil buffer as well, and the sky; before what is seen through. */
constexpr int OUTLINE_BIN = 9;

constexpr unsigned int MARKS = 255;

constexpr auto ON = osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE | osg::StateAttribute::PROTECTED;
constexpr auto OFF =
    osg::StateAttribute::OFF | osg::StateAttribute::OVERRIDE | osg::StateAttribute::PROTECTED;

/** Neighbours rarely get the same mark, so that their lines show before one another. */
int nextMark() {
  static std::atomic<unsigned int> last = 0;
  return static_cast<int>(1 + last++ % MARKS);
}

bool hasTrianglesOnly(osg::Geometry const& geometry) {
  for (unsigned int i = 0; i < geometry.getNumPrimitiveSets(); ++i) {
    GLenum const mode = geometry.getPrimitiveSet(i)->getMode();
    if (mode < GL_TRIANGLES || mode > GL_POLYGON)
      return false;
  }
  return geometry.getNumPrimitiveSets() > 0;
}

/** \return the clip planes that cut what is below a node, a bit for each, from those above it */
int cutsBelow(osg::Node const& node, int cuts) {
  osg::StateSet const* const state = node.getStateSet();
  if (!state || state->getModeList().empty())
    return cuts;
  for (unsigned int i = 0; i < ClipNumbers::COUNT; ++i) {
    unsigned int const mode = state->getMode(GL_CLIP_PLANE0 + i);
    if ((mode & osg::StateAttribute::INHERIT) == 0)
      cuts = (mode & osg::StateAttribute::ON) != 0 ? cuts | 1 << i : cuts & ~(1 << i);
  }
  return cuts;
}

using Solids = std::vector<std::pair<osg::Geometry*, osg::ref_ptr<osg::RefMatrix>>>;

/** Collects the solid drawables below a node with their places, by the clip planes that cut them. */
class SolidCollector : public osg::NodeVisitor {
public:
  explicit SolidCollector(osgUtil::CullVisitor& visitor)
      : osg::NodeVisitor(TRAVERSE_ACTIVE_CHILDREN), m_place(*visitor.getModelViewMatrix()) {
    setTraversalMask(visitor.getTraversalMask() & castsShadowsMask); // labels do not
    for (osg::Node const* const node : visitor.getNodePath())
      m_cuts = cutsBelow(*node, m_cuts);
  }

  void apply(osg::Node& node) override {
    int const above = m_cuts;
    m_cuts = cutsBelow(node, m_cuts);
    traverse(node);
    m_cuts = above;
  }

  void apply(osg::Transform& transform) override {
    osg::Matrixd const above = m_place;
    transform.computeLocalToWorldMatrix(m_place, this);
    apply(static_cast<osg::Node&>(transform));
    m_place = above;
  }

  void apply(osg::Geometry& geometry) override {
    if (hasTrianglesOnly(geometry))
      solids[cutsBelow(geometry, m_cuts)].emplace_back(&geometry, new osg::RefMatrix(m_place));
  }

  void apply(osg::Drawable&) override {}

  std::map<int, Solids> solids;

private:
  osg::Matrixd m_place;
  int m_cuts = 0;
};

/** Takes away what others have left in the stencil buffer. */
class StencilClear : public osg::Drawable {
public:
  StencilClear() {
    setUseDisplayList(false);
    setCullingActive(false);
  }
  osg::Object* cloneType() const override { return new StencilClear; }
  osg::Object* clone(osg::CopyOp const&) const override { return new StencilClear; }
  osg::BoundingBox computeBoundingBox() const override { return {}; }
  osg::BoundingSphere computeBound() const override { return {}; }
  void drawImplementation(osg::RenderInfo&) const override { glClear(GL_STENCIL_BUFFER_BIT); }
};

StencilClear& stencilClear() {
  static osg::ref_ptr<StencilClear> const clear = new StencilClear;
  return *clear;
}

osg::Program& depthProgram() {
  static osg::ref_ptr<osg::Program> const program = makeDepthProgram();
  return *program;
}

osg::ref_ptr<osg::Stencil> makeStencil(osg::Stencil::Function function, int mark) {
  osg::ref_ptr<osg::Stencil> stencil = new osg::Stencil;
  stencil->setFunction(function, mark, ~0u);
  stencil->setOperation(osg::Stencil::KEEP, osg::Stencil::KEEP, osg::Stencil::REPLACE);
  stencil->setWriteMask(~0u);
  return stencil;
}

osg::ref_ptr<osg::StateSet> makeState() {
  osg::ref_ptr<osg::StateSet> state = new osg::StateSet;
  state->setRenderBinDetails(OUTLINE_BIN, "TraversalOrderBin", osg::StateSet::OVERRIDE_RENDERBIN_DETAILS);
  state->setNestRenderBins(false);
  state->setAttributeAndModes(new osg::PolygonMode, ON);
  state->setMode(GL_CULL_FACE, OFF);
  state->setMode(GL_LIGHTING, OFF);
  return state;
}

osg::ref_ptr<osg::StateSet> makeMarkState(int mark) {
  osg::ref_ptr<osg::StateSet> state = makeState();
  state->setAttribute(&depthProgram(), ON);
  state->setAttributeAndModes(makeStencil(osg::Stencil::ALWAYS, mark), ON);
  state->setAttribute(new osg::ColorMask(false, false, false, false), ON);
  state->setAttributeAndModes(new osg::Depth(osg::Depth::ALWAYS, 0.0, 1.0, false), ON);
  state->setMode(GL_BLEND, OFF);
  return state;
}

/** Has exactly some clip planes cut. \return null where none does */
osg::ref_ptr<osg::StateSet> makeCutState(int cuts) {
  if (cuts == 0)
    return nullptr;
  osg::ref_ptr<osg::StateSet> state = new osg::StateSet;
  for (unsigned int i = 0; i < ClipNumbers::COUNT; ++i)
    state->setMode(GL_CLIP_PLANE0 + i, (cuts & 1 << i) != 0 ? ON : OFF);
  return state;
}

bool isFirstHere(osgUtil::CullVisitor& visitor) {
  return !visitor.getCurrentRenderBin()->getStage()->getRenderBinList().contains(OUTLINE_BIN);
}

void add(osgUtil::CullVisitor& visitor, osg::StateSet* state, osg::StateSet* more, Solids const& drawn) {
  visitor.pushStateSet(state);
  if (more)
    visitor.pushStateSet(more);
  for (auto const& [geometry, place] : drawn)
    visitor.addDrawable(geometry, place);
  if (more)
    visitor.popStateSet();
  visitor.popStateSet();
}

} // namespace

OutlineCallback::OutlineCallback(osg::Vec4 const& color, float width)
    : m_color(color), m_width(width), m_mark(nextMark()), m_markState(makeMarkState(m_mark)) {}

void OutlineCallback::operator()(osg::Node* node, osg::NodeVisitor* visitor) {
  traverse(node, visitor);
  osgUtil::CullVisitor* const cull = visitor->asCullVisitor();
  bool const drawsShadows = (visitor->getTraversalMask() & ~castsShadowsMask) == 0;
  if (cull && cull->getViewport() && !drawsShadows && m_width > 0.0f)
    draw(*node, *cull);
}

void OutlineCallback::draw(osg::Node& node, osgUtil::CullVisitor& visitor) {
  SolidCollector collector(visitor);
  if (osg::Geometry* const geometry = node.asGeometry())
    collector.apply(*geometry);
  else
    node.traverse(collector);
  osg::Camera const* const view = visitor.getCurrentCamera();
  bool const marked = view && ShadowVolumes::arePossible(*view);
  if (marked) {
    if (isFirstHere(visitor)) {
      visitor.pushStateSet(m_markState);
      visitor.addDrawable(&stencilClear(), visitor.getModelViewMatrix());
      visitor.popStateSet();
    }
    for (auto const& [cuts, solids] : collector.solids)
      add(visitor, m_markState, makeCutState(cuts), solids);
  }
  for (auto const& [cuts, solids] : collector.solids)
    add(visitor, stateFor(visitor, marked, cuts), nullptr, solids);
}

osg::ref_ptr<osg::StateSet> OutlineCallback::stateFor(osgUtil::CullVisitor& visitor, bool marked, int cuts) {
  constexpr size_t MOST_LINES = 16;
  double const width = visitor.getViewport()->width(), height = visitor.getViewport()->height();
  std::lock_guard const lock(m_mutex);
  for (Line const& line : m_lines)
    if (line.width == width && line.height == height && line.marked == marked && line.cuts == cuts)
      return line.state;
  if (m_lines.size() == MOST_LINES) // a window that is being resized
    m_lines.erase(m_lines.begin());
  m_lines.push_back({width, height, marked, cuts, makeLineState(width, height, marked, cuts)});
  return m_lines.back().state;
}

osg::ref_ptr<osg::StateSet> OutlineCallback::makeLineState(double width, double height, bool marked,
                                                           int cuts) const {
  osg::ref_ptr<osg::StateSet> state = makeState();
  osg::Vec2d const reach(2.0 * m_width / std::max(width, 1.0), 2.0 * m_width / std::max(height, 1.0));
  state->setAttribute(cuts ? &cutOutlineProgram() : &outlineProgram(), ON);
  if (cuts) {
    state->addUniform(new osg::Uniform("zor_outlineCuts", cuts), ON);
    for (unsigned int i = 0; i < ClipNumbers::COUNT; ++i)
      state->setMode(GL_CLIP_PLANE0 + i, OFF); // the program cuts itself
  }
  state->addUniform(new osg::Uniform("zor_outlineReach", osg::Vec2(reach)), ON);
  state->addUniform(new osg::Uniform("zor_outlineColor", m_color), ON);
  state->addUniform(new osg::Uniform("zor_outlineAll", marked), ON);
  if (marked)
    state->setAttributeAndModes(makeStencil(osg::Stencil::NOTEQUAL, m_mark), ON);
  state->setAttributeAndModes(new osg::Depth(osg::Depth::LEQUAL, 0.0, 1.0, false), ON);
  state->setMode(GL_BLEND, m_color.a() < 1.0f ? ON : OFF);
  return state;
}

} // namespace zorOSG
