#include "DebugLines.h"

#include "scene/MeshBuilder.h"
#include "scene/VisualState.h"

#include <osg/Depth>
#include <osg/LineWidth>
#include <osg/Point>

namespace zorOSG {

namespace {

/** Lines on a surface are pulled this far, in window depth, in front of it. */
constexpr double PULL = 1.5e-3;
constexpr int BEFORE_HUD = 900;

void setUpState(osg::Geometry& drawable, DebugLines::Layer layer, float lineWidth, float pointSize) {
  drawWithVertexColors(drawable);
  osg::StateSet& state = *drawable.getOrCreateStateSet();
  state.setAttributeAndModes(new osg::LineWidth(lineWidth));
  state.setAttributeAndModes(new osg::Point(pointSize));
  if (layer == DebugLines::Layer::ON_TOP) {
    state.setAttributeAndModes(new osg::Depth(osg::Depth::ALWAYS, 0, 1, false));
    state.setRenderBinDetails(BEFORE_HUD, "RenderBin");
  } else {
    state.setAttributeAndModes(new osg::Depth(osg::Depth::LEQUAL, 0, 1 - PULL));
  }
}

} // namespace

DebugLines::DebugLines(std::string const& name, Layer layer, float lineWidth, float pointSize)
    : m_drawable(new osg::Geometry), m_positions(new osg::Vec3Array(osg::Array::BIND_PER_VERTEX)),
      m_colors(new osg::Vec4ubArray(osg::Array::BIND_PER_VERTEX)), m_lines(new osg::DrawArrays(GL_LINES)),
      m_points(new osg::DrawArrays(GL_POINTS)) {
  m_drawable->setName(name);
  m_drawable->setDataVariance(osg::Object::DYNAMIC);
  m_colors->setNormalize(true);
  m_drawable->setVertexArray(m_positions);
  m_drawable->setColorArray(m_colors);
  m_drawable->addPrimitiveSet(m_lines);
  m_drawable->addPrimitiveSet(m_points);
  useVertexBuffers(*m_drawable);
  setUpState(*m_drawable, layer, lineWidth, pointSize);
}

void DebugLines::begin(osg::Matrixd const& toDrawn) {
  m_toDrawn = toDrawn;
  m_written = 0;
  m_changed = false;
  m_collectedPoints.clear();
}

void DebugLines::write(osg::Vec3 const& position, osg::Vec4ub const& color) {
  if (m_written == m_positions->size()) {
    m_positions->push_back(position);
    m_colors->push_back(color);
    m_changed = true;
  } else if ((*m_positions)[m_written] != position || (*m_colors)[m_written] != color) {
    (*m_positions)[m_written] = position;
    (*m_colors)[m_written] = color;
    m_changed = true;
  }
  ++m_written;
}

void DebugLines::line(osg::Vec3d const& from, osg::Vec3d const& to, osg::Vec4ub const& color) {
  write(from * m_toDrawn, color);
  write(to * m_toDrawn, color);
}

void DebugLines::point(osg::Vec3d const& at, osg::Vec4ub const& color) {
  m_collectedPoints.push_back({at * m_toDrawn, color});
}

void DebugLines::end() {
  auto const lineVertices = static_cast<int>(m_written);
  for (Vertex const& point : m_collectedPoints)
    write(point.position, point.color);
  m_lineCount = static_cast<std::size_t>(lineVertices) / 2;
  auto const pointVertices = static_cast<int>(m_collectedPoints.size());
  bool const sameSize = m_lines->getCount() == lineVertices && m_points->getCount() == pointVertices;
  if (sameSize && !m_changed)
    return;
  // What lies beyond would count for the bound.
  m_positions->resize(m_written);
  m_colors->resize(m_written);
  m_lines->setCount(lineVertices);
  m_points->setFirst(lineVertices);
  m_points->setCount(pointVertices);
  m_positions->dirty();
  m_colors->dirty();
  m_drawable->dirtyBound();
}

} // namespace zorOSG
