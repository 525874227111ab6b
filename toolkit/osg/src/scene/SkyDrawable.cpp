#include "SkyDrawable.h"

#include <cmath>
#include <numbers>

#include <osg/Depth>
#include <osg/PolygonMode>
#include <osg/RenderInfo>
#include <osg/State>

#include "VisualState.h"
#include "shaders/SkyProgram.h"

namespace zorOSG {

namespace {

constexpr GLenum SEAMLESS = 0x884F; // GL_TEXTURE_CUBE_MAP_SEAMLESS

/** After what is solid, which hides most of it, and before what is seen through. */
constexpr int SKY_BIN = 8;

void setSkyState(osg::StateSet& state, osg::TextureCubeMap& cube) {
  auto const on = osg::StateAttribute::ON | osg::StateAttribute::PROTECTED;
  auto const off = osg::StateAttribute::OFF | osg::StateAttribute::PROTECTED;
  state.setRenderBinDetails(SKY_BIN, "RenderBin");
  state.setNestRenderBins(false);
  state.setAttribute(&skyProgram(), on);
  state.setTextureAttribute(0, &cube, on);
  state.addUniform(new osg::Uniform("zor_sky", 0), on);
  state.setAttributeAndModes(new osg::Depth(osg::Depth::LEQUAL, 0.0, 1.0, false), on);
  state.setAttributeAndModes(new osg::PolygonMode, on);
  state.setMode(SEAMLESS, on);
  state.setMode(GL_LIGHTING, off);
  state.setMode(GL_CULL_FACE, off);
  state.setMode(GL_BLEND, off);
}

osg::ref_ptr<osg::Geometry> makeSurface(osg::Vec3Array* corners, osg::DrawElements* faces) {
  osg::ref_ptr<osg::Geometry> surface = new osg::Geometry;
  surface->setVertexArray(corners);
  surface->addPrimitiveSet(faces);
  surface->setUseDisplayList(false);
  surface->setUseVertexBufferObjects(true);
  return surface;
}

} // namespace

SkyDrawable::SkyDrawable(osg::Geometry* surface, osg::TextureCubeMap* cube, double offset)
    : m_surface(surface), m_cube(cube), m_offset(offset) {
  setUseDisplayList(false);
  setCullingActive(false);
  setNodeMask(getNodeMask() & ~castsShadowsMask & ~receivesShadowsMask);
  setSkyState(*getOrCreateStateSet(), *cube);
}

SkyDrawable::SkyDrawable(SkyDrawable const& other, osg::CopyOp const& copyop)
    : osg::Drawable(other, copyop), m_surface(other.m_surface), m_cube(other.m_cube),
      m_offset(other.m_offset) {}

osg::Object* SkyDrawable::cloneType() const {
  return new SkyDrawable(m_surface, m_cube, m_offset);
}

osg::Object* SkyDrawable::clone(osg::CopyOp const& copyop) const {
  return new SkyDrawable(*this, copyop);
}

void SkyDrawable::drawImplementation(osg::RenderInfo& renderInfo) const {
  osg::State& state = *renderInfo.getState();
  osg::Matrixd turned = state.getModelViewMatrix();
  osg::Matrixd const view = state.getInitialViewMatrix();
  turned.setTrans(osg::Matrixd::transform3x3(osg::Vec3d(0.0, 0.0, m_offset), view));
  osg::ref_ptr<osg::RefMatrix> const before = new osg::RefMatrix(state.getModelViewMatrix());
  state.applyModelViewMatrix(turned);
  m_surface->drawImplementation(renderInfo);
  state.applyModelViewMatrix(before);
}

void SkyDrawable::releaseGLObjects(osg::State* state) const {
  osg::Drawable::releaseGLObjects(state);
  m_surface->releaseGLObjects(state);
}

void SkyDrawable::resizeGLObjectBuffers(unsigned int maxSize) {
  osg::Drawable::resizeGLObjectBuffers(maxSize);
  m_surface->resizeGLObjectBuffers(maxSize);
}

osg::ref_ptr<osg::Geometry> makeCubeSurface(float size) {
  osg::ref_ptr<osg::Vec3Array> corners = new osg::Vec3Array;
  for (int i = 0; i < 8; ++i)
    corners->push_back(osg::Vec3((i & 1) ? 0.5f : -0.5f, (i & 2) ? 0.5f : -0.5f, (i & 4) ? 0.5f : -0.5f) *
                       size);
  osg::ref_ptr<osg::DrawElementsUByte> faces = new osg::DrawElementsUByte(GL_TRIANGLES);
  for (unsigned int axis = 0; axis < 3; ++axis)
    for (unsigned int side = 0; side < 2; ++side) {
      unsigned int const u = 1u << (axis + 1) % 3, v = 1u << (axis + 2) % 3, corner = side << axis;
      for (unsigned int const i : {corner, corner | u, corner | u | v, corner, corner | u | v, corner | v})
        faces->push_back(static_cast<GLubyte>(i));
    }
  return makeSurface(corners, faces);
}

osg::ref_ptr<osg::Geometry> makeSphereSurface(float radius) {
  constexpr unsigned int RINGS = 24, SECTORS = 48;
  osg::ref_ptr<osg::Vec3Array> corners = new osg::Vec3Array;
  for (unsigned int ring = 0; ring <= RINGS; ++ring)
    for (unsigned int sector = 0; sector <= SECTORS; ++sector) {
      double const polar = std::numbers::pi * ring / RINGS,
                   around = 2.0 * std::numbers::pi * sector / SECTORS;
      osg::Vec3d const direction(std::sin(polar) * std::cos(around), std::sin(polar) * std::sin(around),
                                 std::cos(polar));
      corners->push_back(osg::Vec3(direction * radius));
    }
  osg::ref_ptr<osg::DrawElementsUShort> faces = new osg::DrawElementsUShort(GL_TRIANGLES);
  for (unsigned int ring = 0; ring < RINGS; ++ring)
    for (unsigned int sector = 0; sector < SECTORS; ++sector) {
      unsigned int const here = ring * (SECTORS + 1) + sector, below = here + SECTORS + 1;
      for (unsigned int const i : {here, below, below + 1, here, below + 1, here + 1})
        faces->push_back(static_cast<GLushort>(i));
    }
  return makeSurface(corners, faces);
}

} // namespace zorOSG
