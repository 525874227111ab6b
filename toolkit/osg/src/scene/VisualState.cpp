#include "VisualState.h"

#include <osg/Group>
#include <osg/Program>
#include <osg/ValueObject>

#include <stdexcept>

#include <zorOSG/Lookup.h>
#include <zorOSG/SharedState.h>

#include "Ancestry.h"
#include "ShapeMeshCache.h"

namespace zorOSG {

namespace {

osg::ref_ptr<osg::Material> makeMaterial(osg::Vec4 const& color, float highlight) {
  constexpr osg::Material::Face faces = osg::Material::FRONT_AND_BACK;
  osg::ref_ptr<osg::Material> material = new osg::Material;
  material->setDiffuse(faces, color);
  material->setAmbient(faces, color);
  material->setSpecular(faces, osg::Vec4(highlight, highlight, highlight, 1.0f));
  material->setShininess(faces, 32.0f);
  return material;
}

osg::ref_ptr<osg::Program> makeVertexColorProgram() {
  osg::ref_ptr<osg::Program> program = new osg::Program;
  program->setName("vertex colours");
  program->addShader(new osg::Shader(osg::Shader::VERTEX, R"(#version 120
void main() {
  gl_Position = gl_ModelViewProjectionMatrix * gl_Vertex;
  gl_ClipVertex = gl_ModelViewMatrix * gl_Vertex;
  gl_FrontColor = gl_Color;
})"));
  program->addShader(new osg::Shader(osg::Shader::FRAGMENT, R"(#version 120
void main() { gl_FragColor = gl_Color; })"));
  return program;
}

osg::Program& vertexColorProgram() {
  static osg::ref_ptr<osg::Program> const program = makeVertexColorProgram();
  return *program;
}

osg::Material* materialOf(osg::StateSet& state) {
  return static_cast<osg::Material*>(state.getAttribute(osg::StateAttribute::MATERIAL));
}

osg::ref_ptr<SharedLook> makeLook(osg::Material& material) {
  return new SharedLook(LookValues(material), material);
}

/** The material that a node sets or has as its default look; null if it has none. */
osg::Material const* materialAt(osg::Node& node) {
  osg::StateSet* const state = node.getStateSet();
  if (osg::Material const* const material = state ? materialOf(*state) : nullptr)
    return material;
  GeometryNode const* const visual = asGeometryNode(&node);
  return visual && visual->getDefaultLook() ? materialOf(*visual->getDefaultLook()) : nullptr;
}

/** What a node is drawn with so far: the nearest material at or above it, along its first parents. */
osg::Material const& materialBefore(osg::Node& node) {
  for (osg::Node* at = &node;; at = at->getParent(0)) {
    if (osg::Material const* const material = materialAt(*at))
      return *material;
    if (at->getNumParents() == 0)
      return defaultMaterial();
  }
}

std::string const& overridesName() {
  static std::string const name = "zor_override";
  return name;
}

/** Remembers at a material which of its values shall win, and tells whether any does. */
bool keepOverride(osg::Material& material, MaterialValue value, bool override) {
  int before = 0;
  material.getUserValue(overridesName(), before);
  std::uint32_t const now = withOverride(static_cast<std::uint32_t>(before), value, override);
  setOverrides(material, now);
  return now != 0;
}

} // namespace

osg::StateSet& exclusiveState(osg::Node& node) {
  osg::StateSet* const state = unsharedStateSet(node);
  if (state && state->getNumParents() > 1)
    node.setStateSet(new osg::StateSet(*state, osg::CopyOp::SHALLOW_COPY));
  return *node.getOrCreateStateSet();
}

osg::StateSet& ownState(osg::Node& node) {
  osg::Geometry const* const mesh = node.asGeometry();
  if (mesh && ShapeMeshCache::isShared(*mesh))
    throw std::invalid_argument(
        "the visuals of equal shapes share this mesh: change the look of a node above it");
  return exclusiveState(node);
}

osg::Material& defaultMaterial() {
  static osg::ref_ptr<osg::Material> const blueGrey = makeMaterial({0.56f, 0.66f, 0.78f, 1.0f}, 0.25f);
  return *blueGrey;
}

SharedLook& defaultLook() {
  static osg::ref_ptr<SharedLook> const look = makeLook(defaultMaterial());
  return *look;
}

SharedLook& groundLook() {
  static osg::ref_ptr<SharedLook> const sand = makeLook(*makeMaterial({0.78f, 0.76f, 0.71f, 1.0f}, 0.05f));
  return *sand;
}

bool hasLook(osg::Node const& node) {
  return isAnyAtOrAbove(node, [](osg::Node const& at) {
    osg::StateSet const* const state = at.getStateSet();
    osg::StateAttribute const* const material =
        state ? state->getAttribute(osg::StateAttribute::MATERIAL) : nullptr;
    return material && material != &defaultMaterial();
  });
}

osg::Material& ownMaterial(osg::Node& node, bool override, MaterialValue value) {
  osg::StateSet& state = ownState(node);
  osg::ref_ptr<osg::Material> material = materialOf(state);
  if (!material) {
    material = new osg::Material(materialBefore(node));
    material->setUserDataContainer(nullptr);
  } else if (material == &defaultMaterial() || material->getNumParents() > 1) {
    material = new osg::Material(*material, osg::CopyOp::DEEP_COPY_ALL);
  }
  state.setAttributeAndModes(material, onValue(keepOverride(*material, value, override)));
  dropDefaultLooks(node);
  return *material;
}

std::uint32_t withOverride(std::uint32_t overrides, MaterialValue value, bool override) {
  auto const bit = static_cast<std::uint32_t>(value);
  return override ? overrides | bit : overrides & ~bit;
}

void setOverrides(osg::Material& material, std::uint32_t overrides) {
  int before = 0;
  material.getUserValue(overridesName(), before);
  if (static_cast<int>(overrides) != before)
    material.setUserValue(overridesName(), static_cast<int>(overrides));
}

void dropDefaultLooks(osg::Node& node, GeometryNode* visual) {
  osg::Group* const group = visual ? visual : node.asGroup();
  if (!group)
    return; // leaves hold no visual
  if (visual)
    visual->setDefaultLook(GeometryNode::DefaultLook::NONE);
  for (unsigned int i = 0; i < group->getNumChildren(); ++i)
    dropDefaultLooks(*group->getChild(i));
}

void dropDefaultLooks(osg::Node& node) {
  dropDefaultLooks(node, node.asTransform() ? asGeometryNode(&node) : nullptr);
}

std::optional<LookValues> sharedLookOf(GeometryNode& visual) {
  osg::StateSet* const state = visual.getStateSet();
  if (!state && visual.getDefaultLook())
    return static_cast<SharedLook const*>(visual.getDefaultLook())->values();
  if (auto const* const worn = dynamic_cast<SharedLook*>(state))
    return worn->values();
  osg::Material const& material = state ? defaultMaterial() : materialBefore(visual);
  if (state || !LookValues::canHold(material))
    return {};
  return LookValues(material);
}

bool isTransparent(osg::StateSet const& state) {
  return state.getRenderingHint() == osg::StateSet::TRANSPARENT_BIN;
}

void setTransparency(osg::StateSet& state, float alpha, bool override) {
  if (alpha < 1.0f) {
    state.setMode(GL_BLEND, onValue(override));
    state.setRenderingHint(osg::StateSet::TRANSPARENT_BIN);
  } else if (isTransparent(state)) {
    state.removeMode(GL_BLEND);
    state.setRenderingHint(osg::StateSet::DEFAULT_BIN);
  }
}

osg::StateAttribute::GLModeValue onValue(bool override) {
  return override ? osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE : osg::StateAttribute::ON;
}

void drawWithoutLight(osg::Node& node) {
  ownState(node).setMode(GL_LIGHTING, osg::StateAttribute::OFF | osg::StateAttribute::PROTECTED);
  node.setNodeMask(node.getNodeMask() & ~castsShadowsMask & ~receivesShadowsMask);
}

void drawWithVertexColors(osg::Node& node) {
  drawWithoutLight(node);
  node.getStateSet()->setAttributeAndModes(&vertexColorProgram(),
                                           osg::StateAttribute::ON | osg::StateAttribute::PROTECTED);
}

} // namespace zorOSG
