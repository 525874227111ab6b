#include "SceneSurvey.h"

#include "Boxes.h"
#include "Defines.h"
#include "scene/ShapeMeshCache.h"
#include "scene/VisualState.h"

#include <zorOSG/ExampleApplication.h>
#include <zorOSG/GeometryNode.h>

#include <osg/Texture2D>
#include <osg/Transform>

#include <cmath>
#include <typeinfo>
#include <utility>

namespace zorOSG {

namespace {

std::array<std::string, LIGHT_COUNT> const LIGHTS_OFF = {define::lightOff(0), define::lightOff(1),
                                                         define::lightOff(2)};

constexpr unsigned int STRENGTH = osg::StateAttribute::OVERRIDE | osg::StateAttribute::PROTECTED;

bool inherits(unsigned int mode) {
  return (mode & osg::StateAttribute::INHERIT) != 0;
}

unsigned int inverted(unsigned int mode) {
  return inherits(mode) ? mode : (mode & STRENGTH) | ((mode & osg::StateAttribute::ON) ? 0u : 1u);
}

void mirrorLights(osg::StateSet& state) {
  keepDefine(state, define::UNLIT, inverted(state.getMode(GL_LIGHTING)));
  // Which kind of light it is stands at the decorator; nodes can switch it off, and on again further down.
  for (unsigned int i = 0; i < LIGHT_COUNT; ++i)
    keepDefine(state, LIGHTS_OFF[i], inverted(state.getMode(GL_LIGHT0 + i)));
}

void mirrorTexture(osg::StateSet& state) {
  unsigned int mode = osg::StateAttribute::INHERIT;
  if (state.getNumTextureModeLists() > 0 || state.getNumTextureAttributeLists() > 0) {
    mode = state.getTextureMode(0, GL_TEXTURE_2D);
    bool const has = state.getTextureAttribute(0, osg::StateAttribute::TEXTURE) != nullptr;
    if ((mode & osg::StateAttribute::ON) != 0 && !has)
      mode = osg::StateAttribute::INHERIT;
  }
  keepDefine(state, define::TEXTURE, mode);
}

/** False for state sets with nothing that the shader has to be told of, and nothing that it was told before.
 */
bool hasMirrored(osg::StateSet const& state) {
  if (!state.getDefineList().empty() || state.getNumTextureModeLists() > 0 ||
      state.getNumTextureAttributeLists() > 0)
    return true;
  for (auto const& [mode, value] : state.getModeList())
    if (mode == GL_LIGHTING || (mode >= GL_LIGHT0 && mode < GL_LIGHT0 + LIGHT_COUNT))
      return true;
  return false;
}

/** Sets a define on the node's own state set, and makes one only where there is something to say. */
void keepOwnDefine(osg::Node& node, std::string const& name, bool set) {
  osg::StateSet const* const state = node.getStateSet();
  bool const present = state && state->getDefinePair(name);
  if (present != set)
    keepDefine(exclusiveState(node), name, set ? osg::StateAttribute::ON : osg::StateAttribute::INHERIT);
}

void mirrorReceiving(osg::Node& node) {
  bool const receives = (node.getNodeMask() & ExampleApplication::RECIEVES_SHADOWS_MASK) != 0;
  keepOwnDefine(node, define::UNSHADOWED, !receives);
}

bool hasElements(osg::Array const* array) {
  return array && array->getNumElements() > 0;
}

bool isFilled(osg::Geometry const& geometry) {
  for (unsigned int i = 0; i < geometry.getNumPrimitiveSets(); ++i) {
    GLenum const mode = geometry.getPrimitiveSet(i)->getMode();
    if (mode >= GL_TRIANGLES)
      return true;
  }
  return false;
}

} // namespace

SceneSurvey::SceneSurvey() : osg::NodeVisitor(TRAVERSE_ACTIVE_CHILDREN) {
  m_matrices.reserve(32);
}

void SceneSurvey::begin() {
  m_casters.clear();
  m_meshes.clear();
  m_shadowed = true;
  m_scene.init();
  m_planes.clear();
  m_matrices.assign(1, osg::Matrixd());
  m_inherited = {};
}

void SceneSurvey::enter(osg::Node& node) {
  mirrorReceiving(node);
  m_inherited.casts = m_inherited.casts && (node.getNodeMask() & ExampleApplication::CASTS_SHADOWS_MASK) != 0;
  osg::StateSet* const state = node.getStateSet();
  if (!state)
    return;
  if (hasMirrored(*state)) {
    mirrorLights(*state);
    mirrorTexture(*state);
  }
  m_inherited.transparent = m_inherited.transparent || isTransparent(*state);
  takeMaterial(*state);
}

void SceneSurvey::takeMaterial(osg::StateSet const& state) {
  auto const* const found = state.getAttributePair(osg::StateAttribute::MATERIAL);
  if (!found || (m_inherited.materialOverrides && (found->second & osg::StateAttribute::PROTECTED) == 0))
    return;
  m_inherited.material = static_cast<osg::Material const*>(found->first.get());
  m_inherited.materialOverrides = (found->second & osg::StateAttribute::OVERRIDE) != 0;
}

void SceneSurvey::apply(osg::Node& node) {
  Inherited const saved = m_inherited;
  enter(node);
  traverse(node);
  m_inherited = saved;
}

void SceneSurvey::apply(osg::ClipNode& clip) {
  std::size_t const above = m_planes.size();
  if (m_collectsMeshes)
    for (auto const& plane : clip.getClipPlaneList()) {
      m_planes.emplace_back(plane->getClipPlane());
      m_planes.back().transform(m_matrices.back());
    }
  apply(static_cast<osg::Node&>(clip));
  m_planes.resize(above);
}

void SceneSurvey::apply(osg::Transform& transform) {
  auto* const visual =
      typeid(transform) == typeid(GeometryNode) ? static_cast<GeometryNode*>(&transform) : nullptr;
  if (visual && applyPlain(*visual))
    return;
  Inherited const saved = m_inherited;
  if (visual && visual->getDefaultLook())
    takeMaterial(*visual->getDefaultLook());
  enter(transform);
  osg::Matrixd matrix = m_matrices.back();
  transform.computeLocalToWorldMatrix(matrix, this);
  m_matrices.push_back(matrix);
  traverse(transform);
  m_matrices.pop_back();
  m_inherited = saved;
}

/**
 * Most visuals of bodies have nothing of their own but a shared mesh, of which everything is known, and maybe
 * a colour: they only take part in boxes. False for others.
 */
bool SceneSurvey::applyPlain(GeometryNode& visual) {
  constexpr osg::Node::NodeMask shadows =
      ExampleApplication::CASTS_SHADOWS_MASK | ExampleApplication::RECIEVES_SHADOWS_MASK;
  osg::Geometry* const mesh = visual.getOnlyMesh();
  osg::StateSet const* const state = visual.getStateSet();
  if (!mesh || !ShapeMeshCache::isShared(*mesh) || mesh->getStateSet() ||
      (visual.getNodeMask() & mesh->getNodeMask() & shadows) != shadows)
    return false;
  if (state && (hasMirrored(*state) || isTransparent(*state)))
    return false;
  if (m_shadowed && mesh->getBoundingBox().valid())
    collect(*mesh, visual.getMatrix() * m_matrices.back());
  return true;
}

void SceneSurvey::apply(osg::Drawable& drawable) {
  Inherited const saved = m_inherited;
  enter(drawable);
  collect(drawable, m_matrices.back());
  m_inherited = saved;
}

void SceneSurvey::apply(osg::Geometry& geometry) {
  Inherited const saved = m_inherited;
  enter(geometry);
  bool const colored = hasElements(geometry.getColorArray());
  osg::Material const* const material = m_inherited.material;
  bool const usesColors = !material || material->getColorMode() != osg::Material::OFF;
  keepOwnDefine(geometry, define::VERTEX_COLOR, colored && usesColors);
  keepOwnDefine(geometry, define::FLAT, !hasElements(geometry.getNormalArray()) && isFilled(geometry));
  collect(geometry, m_matrices.back());
  m_inherited = saved;
}

void SceneSurvey::collect(osg::Drawable& drawable, osg::Matrixd const& matrix) {
  osg::BoundingBox const& box = drawable.getBoundingBox();
  if (!m_shadowed || !box.valid())
    return;
  osg::BoundingBoxd const placed = transformed(box, matrix);
  m_scene.expandBy(placed);
  if (!m_inherited.casts)
    return;
  m_casters.push_back(placed);
  osg::Geometry* const mesh = m_collectsMeshes ? drawable.asGeometry() : nullptr;
  if (mesh && !m_inherited.transparent)
    collectMesh(*mesh, matrix, placed);
}

void SceneSurvey::collectMesh(osg::Geometry& mesh, osg::Matrixd const& matrix, osg::BoundingBoxd const& box) {
  Mesh found{&mesh, matrix, box, {}};
  for (osg::Plane const& plane : m_planes) {
    osg::Vec3d const normal(plane[0], plane[1], plane[2]), half = (box._max - box._min) * 0.5;
    double const height = plane.distance(box.center());
    double const reach =
        half.x() * std::abs(normal.x()) + half.y() * std::abs(normal.y()) + half.z() * std::abs(normal.z());
    if (height < -reach)
      return; // there is nothing left of it
    if (height < reach)
      found.cuts.push_back(plane);
  }
  m_meshes.push_back(std::move(found));
}

} // namespace zorOSG
