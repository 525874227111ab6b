#include "Background.h"

#include "shaders/ScenePrograms.h"

#include <zorOSG/ExampleApplication.h>

#include <osg/Depth>
#include <osg/PolygonMode>

namespace zorOSG {

namespace {

/** Covers the view wherever the camera is, so it has no place in the scene. */
class Backdrop : public osg::Geometry {
public:
  osg::BoundingBox computeBoundingBox() const override { return {}; }
  osg::BoundingSphere computeBound() const override { return {}; }
};

constexpr int BEFORE_EVERYTHING = -1000;

} // namespace

Background::Background()
    : m_quad(new Backdrop), m_colors(new osg::Vec4Array(osg::Array::BIND_PER_VERTEX, 4)) {
  osg::ref_ptr<osg::Vec3Array> const corners = new osg::Vec3Array;
  corners->push_back({-1.0f, 1.0f, 0.0f});
  corners->push_back({1.0f, 1.0f, 0.0f});
  corners->push_back({-1.0f, -1.0f, 0.0f});
  corners->push_back({1.0f, -1.0f, 0.0f});
  m_quad->setVertexArray(corners);
  m_quad->setColorArray(m_colors);
  m_quad->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLE_STRIP, 0, 4));
  m_quad->setUseDisplayList(false);
  m_quad->setUseVertexBufferObjects(true);
  m_quad->setCullingActive(false);
  m_quad->setDataVariance(osg::Object::DYNAMIC);
  m_quad->setNodeMask(ExampleApplication::DECORATOR_MASK);

  osg::StateSet& state = *m_quad->getOrCreateStateSet();
  auto const on = osg::StateAttribute::ON | osg::StateAttribute::PROTECTED;
  auto const off = osg::StateAttribute::OFF | osg::StateAttribute::PROTECTED;
  state.setRenderBinDetails(BEFORE_EVERYTHING, "RenderBin");
  state.setAttribute(makeBackgroundProgram(), on);
  state.setAttributeAndModes(new osg::Depth(osg::Depth::ALWAYS, 0.0, 1.0, false), on);
  state.setAttributeAndModes(new osg::PolygonMode, on);
  state.setMode(GL_LIGHTING, off);
  state.setMode(GL_CULL_FACE, off);
  state.setMode(GL_BLEND, off);
}

void Background::setColors(std::array<osg::Vec4, 4> const& colors) {
  std::copy(colors.begin(), colors.end(), m_colors->begin());
  m_colors->dirty();
}

} // namespace zorOSG
