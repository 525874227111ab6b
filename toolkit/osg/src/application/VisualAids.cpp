#include "VisualAids.h"

#include "Conversion.h"

#include <zorOSG/CreateAxes.h>

#include <osg/Geode>
#include <osg/Geometry>

#include <stdexcept>

namespace zorOSG {

namespace {

constexpr unsigned MAX_CELLS = 10000;

osg::ref_ptr<osg::Node> makeGrid(zor::Vec2 const& size, zor::Vec2u const& cells) {
  osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array;
  double const x = size.x() / 2;
  double const y = size.y() / 2;
  for (unsigned i = 0; i <= cells.x(); ++i) {
    double const at = size.x() * i / cells.x() - x;
    vertices->push_back(osg::Vec3d(at, -y, 0));
    vertices->push_back(osg::Vec3d(at, y, 0));
  }
  for (unsigned i = 0; i <= cells.y(); ++i) {
    double const at = size.y() * i / cells.y() - y;
    vertices->push_back(osg::Vec3d(-x, at, 0));
    vertices->push_back(osg::Vec3d(x, at, 0));
  }
  osg::ref_ptr<osg::Vec4Array> color = new osg::Vec4Array;
  color->push_back(osg::Vec4(0.35f, 0.35f, 0.4f, 1));
  osg::ref_ptr<osg::Geometry> lines = new osg::Geometry;
  lines->setVertexArray(vertices);
  lines->setColorArray(color, osg::Array::BIND_OVERALL);
  lines->addPrimitiveSet(new osg::DrawArrays(GL_LINES, 0, static_cast<int>(vertices->size())));
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  geode->addDrawable(lines);
  geode->getOrCreateStateSet()->setMode(GL_LIGHTING,
                                        osg::StateAttribute::OFF | osg::StateAttribute::OVERRIDE);
  return geode;
}

/** Shows or hides a child without making the caller know whether it is there already. */
void setChild(osg::Group& parent, osg::Node* child, bool shown) {
  if (!child)
    return;
  if (shown && !parent.containsNode(child))
    parent.addChild(child);
  else if (!shown)
    parent.removeChild(child);
}

} // namespace

VisualAids::VisualAids() : m_root(new osg::MatrixTransform) {
  m_root->setName("VisualAids");
}

void VisualAids::setGridEnabled(bool flag) {
  m_gridEnabled = flag;
  if (flag && !m_grid)
    m_grid = makeGrid(m_size, m_resolution);
  setChild(*m_root, m_grid, flag);
}

void VisualAids::setGridSize(zor::Vec2 const& size) {
  if (!(size.x() > 0 && size.y() > 0))
    throw std::invalid_argument("setGridSize: both lengths must be above zero");
  m_size = size;
  rebuildGrid();
}

void VisualAids::setGridResolution(zor::Vec2u const& resolution) {
  if (resolution.x() < 1 || resolution.y() < 1 || resolution.x() > MAX_CELLS || resolution.y() > MAX_CELLS)
    throw std::invalid_argument("setGridResolution: both numbers of cells must be 1 to 10000");
  m_resolution = resolution;
  rebuildGrid();
}

void VisualAids::rebuildGrid() {
  setChild(*m_root, m_grid, false);
  m_grid = nullptr;
  setGridEnabled(m_gridEnabled);
}

void VisualAids::setAxesEnabled(bool flag) {
  m_axesEnabled = flag;
  if (flag && !m_axes)
    m_axes = createAxes();
  setChild(*m_root, m_axes, flag);
}

void VisualAids::setTransform(zor::AffineMatrix4x4 const& transform) {
  m_transform = transform;
  m_root->setMatrix(toOsg(transform));
}

} // namespace zorOSG
