#include "ShadowVolumes.h"

#include "Boxes.h"
#include "SceneSurvey.h"
#include "shaders/ScenePrograms.h"

#include <zorOSG/ExampleApplication.h>

#include <osg/ColorMask>
#include <osg/Depth>
#include <osg/GraphicsContext>
#include <osg/PolygonMode>
#include <osg/PolygonOffset>
#include <osg/Stencil>
#include <osg/StencilTwoSided>
#include <osgUtil/CullVisitor>
#include <osgUtil/RenderStage>

#include <algorithm>
#include <cmath>

namespace zorOSG {

namespace {

constexpr int SIDES_BIN = 4; // after what is solid, before what is seen through
constexpr int LIDS_BIN = 5;
constexpr int IN_SHADOW_BIN = 6;
constexpr int TRANSPARENT_BIN = 10;
constexpr GLenum DEPTH_CLAMP = 0x864F;

/** Origins lie on a grid, so that volumes of bodies at rest stay when others move. */
constexpr double ORIGIN_GRID = 1024.0;

/** Draws into the stencil buffer. It lies wherever the shadows are, without a bound. */
class VolumeDrawable : public osg::Geometry {
public:
  explicit VolumeDrawable(bool isFirst) : m_isFirst(isFirst) {
    setName("shadow volumes");
    setDataVariance(osg::Object::DYNAMIC);
    setCullingActive(false);
    setUseDisplayList(false);
    setUseVertexBufferObjects(true);
    setVertexArray(new osg::Vec3Array(osg::Array::BIND_PER_VERTEX));
    addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLES));
  }

  osg::BoundingBox computeBoundingBox() const override { return {}; }
  osg::BoundingSphere computeBound() const override { return {}; }
  void drawImplementation(osg::RenderInfo& renderInfo) const override {
    if (m_isFirst)
      glClear(GL_STENCIL_BUFFER_BIT);
    osg::Geometry::drawImplementation(renderInfo);
  }

private:
  bool m_isFirst;
};

osg::Vec3Array& trianglesOf(osg::Geometry& drawable) {
  return static_cast<osg::Vec3Array&>(*drawable.getVertexArray());
}

void showTriangles(osg::Geometry& drawable) {
  osg::Vec3Array& triangles = trianglesOf(drawable);
  static_cast<osg::DrawArrays&>(*drawable.getPrimitiveSet(0)).setCount(static_cast<int>(triangles.size()));
  triangles.dirty();
}

/** Counts the surfaces of volumes that lie behind what is seen: backs up, fronts down. */
void setVolumeState(osg::StateSet& state, int bin) {
  constexpr auto on =
      osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE | osg::StateAttribute::PROTECTED;
  constexpr auto off =
      osg::StateAttribute::OFF | osg::StateAttribute::OVERRIDE | osg::StateAttribute::PROTECTED;
  osg::ref_ptr<osg::StencilTwoSided> const count = new osg::StencilTwoSided;
  for (auto const face : {osg::StencilTwoSided::FRONT, osg::StencilTwoSided::BACK}) {
    count->setFunction(face, osg::StencilTwoSided::ALWAYS, 0, ~0u);
    count->setOperation(face, osg::StencilTwoSided::KEEP,
                        face == osg::StencilTwoSided::FRONT ? osg::StencilTwoSided::DECR_WRAP
                                                            : osg::StencilTwoSided::INCR_WRAP,
                        osg::StencilTwoSided::KEEP);
  }
  state.setRenderBinDetails(bin, "RenderBin");
  state.setAttributeAndModes(count, on);
  state.setAttribute(makeDepthProgram(), on);
  state.setAttribute(new osg::ColorMask(false, false, false, false), on);
  state.setAttributeAndModes(new osg::Depth(osg::Depth::LESS, 0.0, 1.0, false), on);
  state.setAttributeAndModes(new osg::PolygonMode, on);
  state.setMode(DEPTH_CLAMP, on); // volumes reach beyond what is seen
  state.setMode(GL_CULL_FACE, off);
  state.setMode(GL_BLEND, off);
  state.setMode(GL_LIGHTING, off);
}

void setInShadowState(osg::StateSet& state) {
  constexpr auto on = osg::StateAttribute::ON | osg::StateAttribute::PROTECTED;
  state.setDataVariance(osg::Object::DYNAMIC);
  state.setRenderBinDetails(IN_SHADOW_BIN, "RenderBin");
  osg::ref_ptr<osg::Stencil> const inside = new osg::Stencil;
  inside->setFunction(osg::Stencil::NOTEQUAL, 0, ~0u);
  inside->setOperation(osg::Stencil::KEEP, osg::Stencil::KEEP, osg::Stencil::KEEP);
  state.setAttributeAndModes(inside, on);
  state.setAttributeAndModes(new osg::Depth(osg::Depth::LEQUAL, 0.0, 1.0, false),
                             on | osg::StateAttribute::OVERRIDE);
}

unsigned int revisionOf(osg::Geometry const& mesh) {
  unsigned int revision = mesh.getVertexArray() ? mesh.getVertexArray()->getModifiedCount() : 0;
  for (unsigned int i = 0; i < mesh.getNumPrimitiveSets(); ++i)
    revision = revision * 31 + mesh.getPrimitiveSet(i)->getModifiedCount() +
               mesh.getPrimitiveSet(i)->getNumIndices();
  return revision;
}

/** Planes as they are below a matrix. */
std::vector<osg::Plane> inCoordinatesOf(osg::Matrixd const& matrix, std::vector<osg::Plane> planes) {
  for (osg::Plane& plane : planes)
    plane.transformProvidingInverse(matrix);
  return planes;
}

osg::Vec3d onGrid(osg::Vec3d const& point) {
  osg::Vec3d result;
  for (int i = 0; i < 3; ++i)
    result[i] = std::round(point[i] / ORIGIN_GRID) * ORIGIN_GRID;
  return result;
}

} // namespace

ShadowVolumes::ShadowVolumes(osg::Camera& view, Content content)
    : ShadowTechnique(view), m_content(std::move(content)), m_sides(new VolumeDrawable(true)),
      m_lids(new VolumeDrawable(false)), m_inShadow(new osg::StateSet) {
  setVolumeState(*m_sides->getOrCreateStateSet(), SIDES_BIN);
  setVolumeState(*m_lids->getOrCreateStateSet(), LIDS_BIN);
  // Lids lie on the lit faces of bodies, which must not be inside.
  m_lids->getStateSet()->setAttributeAndModes(new osg::PolygonOffset(1.0f, 8.0f),
                                              osg::StateAttribute::ON | osg::StateAttribute::PROTECTED);
  setInShadowState(*m_inShadow);
}

bool ShadowVolumes::arePossible(osg::Camera const& view) {
  auto const& attachments = view.getBufferAttachmentMap();
  if (!attachments.empty())
    return attachments.contains(osg::Camera::STENCIL_BUFFER) ||
           attachments.contains(osg::Camera::PACKED_DEPTH_STENCIL_BUFFER);
  osg::GraphicsContext const* const context = view.getGraphicsContext();
  return context && context->getTraits() && context->getTraits()->stencil > 0;
}

osg::StateSet* ShadowVolumes::begin(osgUtil::CullVisitor&, osg::Light const&, SceneSurvey const&) {
  return nullptr;
}

void ShadowVolumes::end(osgUtil::CullVisitor& visitor, osg::Light const& light, SceneSurvey const& survey) {
  osg::BoundingBoxd const& scene = survey.scene();
  if (!scene.valid())
    return;
  osg::Vec3d const origin = onGrid(scene.center());
  osg::Vec4d position(light.getPosition());
  if (position.w() != 0.0)
    position = {osg::Vec3d(position.x(), position.y(), position.z()) / position.w() - origin, 1.0};
  // In steps, so that a scene that grows a little does not change every volume.
  double const reach = std::exp2(std::ceil(std::log2(4.0 * scene.radius() + 1e-6)));
  VolumeLight const volumeLight{position, reach};
  bool const isNew = !(volumeLight == m_light) || origin != m_origin;
  if (isNew)
    m_volumes.clear();
  m_light = volumeLight;
  m_origin = origin;
  if (updateVolumes(volumeLight, survey))
    showVolumes();
  if (trianglesOf(*m_lids).empty())
    return;
  drawVolumes(visitor);
  drawInShadow(visitor, light);
}

std::shared_ptr<ShadowMesh const> ShadowVolumes::shadowOf(osg::Geometry& mesh) {
  Known& known = m_known[&mesh];
  unsigned int const revision = revisionOf(mesh);
  if (known.mesh.get() != &mesh || known.revision != revision)
    known = {&mesh, revision, std::make_shared<ShadowMesh>(mesh)};
  return known.shadow;
}

/** \return true if anything has changed */
bool ShadowVolumes::updateVolumes(VolumeLight const& light, SceneSurvey const& survey) {
  bool changed = false;
  std::size_t count = 0;
  for (auto const& [mesh, matrix, box, cuts] : survey.meshes()) {
    if (isGround(box, survey.scene()))
      continue;
    if (count == m_volumes.size()) {
      m_volumes.emplace_back();
      changed = true;
    }
    Volume& volume = m_volumes[count++];
    auto shadow = shadowOf(*mesh);
    osg::Matrixd const place = matrix * osg::Matrixd::translate(-m_origin);
    if (volume.shadow == shadow && volume.place == place && volume.cuts == cuts)
      continue;
    changed = true;
    volume.shadow = std::move(shadow);
    volume.place = place;
    volume.cuts = cuts;
    volume.surface = cuts.empty()
                         ? volume.shadow->makeVolume(place, light)
                         : volume.shadow->cut(inCoordinatesOf(matrix, cuts)).makeVolume(place, light);
  }
  changed = changed || count != m_volumes.size();
  m_volumes.resize(count);
  std::erase_if(m_known, [](auto const& entry) { return !entry.second.mesh.valid(); });
  return changed;
}

void ShadowVolumes::showVolumes() {
  osg::Vec3Array &sides = trianglesOf(*m_sides), &lids = trianglesOf(*m_lids);
  sides.clear();
  lids.clear();
  for (Volume const& volume : m_volumes) {
    sides.insert(sides.end(), volume.surface.sides.begin(), volume.surface.sides.end());
    lids.insert(lids.end(), volume.surface.lids.begin(), volume.surface.lids.end());
  }
  showTriangles(*m_sides);
  showTriangles(*m_lids);
}

void ShadowVolumes::drawVolumes(osgUtil::CullVisitor& visitor) {
  osg::ref_ptr<osg::RefMatrix> const matrix =
      new osg::RefMatrix(osg::Matrixd::translate(m_origin) * *visitor.getModelViewMatrix());
  visitor.pushModelViewMatrix(matrix, osg::Transform::RELATIVE_RF);
  m_sides->accept(visitor);
  m_lids->accept(visitor);
  visitor.popModelViewMatrix();
}

void ShadowVolumes::drawInShadow(osgUtil::CullVisitor& visitor, osg::Light const& light) {
  setShadowDefines(*m_inShadow, light, define::IN_SHADOW);
  visitor.pushStateSet(m_inShadow);
  m_content(visitor);
  // What is seen through was drawn in front of its background, not into it.
  visitor.getCurrentRenderBin()->getRenderBinList().erase(TRANSPARENT_BIN);
  visitor.popStateSet();
}

void ShadowVolumes::releaseGLObjects(osg::State* state) const {
  m_sides->releaseGLObjects(state);
  m_lids->releaseGLObjects(state);
  m_inShadow->releaseGLObjects(state);
}

} // namespace zorOSG
