#include "OverlayPanel.h"

#include "scene/MeshBuilder.h"
#include "scene/TextFont.h"

#include <zorOSG/ExampleApplication.h>

#include <osg/Geode>

#include <algorithm>
#include <cmath>

namespace zorOSG {

namespace {

constexpr double MARGIN = 16; // to the edges of the window
osg::Vec4 const BACKGROUND(0.05f, 0.07f, 0.10f, 0.82f);

osg::ref_ptr<osg::Geometry> makeBackground() {
  osg::ref_ptr<osg::Geometry> quad = new osg::Geometry;
  quad->setDataVariance(osg::Object::DYNAMIC);
  quad->setVertexArray(new osg::Vec3Array(osg::Array::BIND_PER_VERTEX, 4));
  osg::ref_ptr<osg::Vec4Array> color = new osg::Vec4Array(osg::Array::BIND_OVERALL);
  color->push_back(BACKGROUND);
  quad->setColorArray(color);
  quad->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLE_STRIP, 0, 4));
  useVertexBuffers(*quad);
  return quad;
}

} // namespace

OverlayPanel::OverlayPanel(Corner corner)
    : m_camera(new osg::Camera), m_placement(new osg::MatrixTransform), m_content(new osg::Geode),
      m_background(makeBackground()), m_corner(corner) {
  m_camera->setReferenceFrame(osg::Transform::ABSOLUTE_RF);
  m_camera->setRenderOrder(osg::Camera::POST_RENDER);
  m_camera->setClearMask(GL_DEPTH_BUFFER_BIT);
  m_camera->setAllowEventFocus(false);
  m_camera->setComputeNearFarMode(osg::CullSettings::DO_NOT_COMPUTE_NEAR_FAR);
  osg::StateSet& state = *m_camera->getOrCreateStateSet();
  state.setMode(GL_LIGHTING, osg::StateAttribute::OFF);
  state.setMode(GL_DEPTH_TEST, osg::StateAttribute::OFF);
  state.setMode(GL_BLEND, osg::StateAttribute::ON);
  state.setRenderBinDetails(0, "TraversalOrderBin"); // what is added later lies on top
  state.setNestRenderBins(false);
  m_content->addDrawable(m_background);
  m_placement->addChild(m_content);
  m_camera->addChild(m_placement);
  setVisible(false);
}

void OverlayPanel::setVisible(bool visible) {
  m_camera->setNodeMask(visible ? static_cast<osg::Node::NodeMask>(ExampleApplication::HUD_MASK) : 0u);
}

bool OverlayPanel::isVisible() const {
  return m_camera->getNodeMask() != 0;
}

void OverlayPanel::resize(int width, int height, double pixelScale) {
  osg::Vec2i const window(std::max(width, 1), std::max(height, 1));
  if (window == m_window && pixelScale == m_pixelScale)
    return;
  m_window = window;
  m_pixelScale = pixelScale;
  m_camera->setProjectionMatrixAsOrtho2D(0, m_window.x(), 0, m_window.y());
  place();
}

void OverlayPanel::clear() {
  m_content->removeDrawables(1, m_content->getNumDrawables() - 1);
}

osgText::Text& OverlayPanel::addText(std::string const& text, osg::Vec2 const& at, osg::Vec4 const& color,
                                     float size) {
  osg::ref_ptr<osgText::Text> drawable = new osgText::Text;
  drawable->setDataVariance(osg::Object::DYNAMIC);
  drawable->setUseDisplayList(false);
  if (defaultTextFont())
    drawable->setFont(defaultTextFont());
  auto const resolution = static_cast<unsigned int>(std::lround(size * std::max(m_pixelScale, 1.0)));
  drawable->setFontResolution(resolution, resolution);
  drawable->setCharacterSize(size);
  drawable->setLineSpacing(0.32f);
  drawable->setColor(color);
  drawable->setAlignment(osgText::Text::LEFT_BASE_LINE);
  drawable->setPosition({at.x(), std::round(at.y() - size), 0});
  drawable->setText(text, osgText::String::ENCODING_UTF8);
  m_content->addDrawable(drawable);
  return *drawable;
}

void OverlayPanel::add(osg::Drawable* drawable) {
  m_content->addDrawable(drawable);
}

void OverlayPanel::setSize(float width, float height) {
  m_size.set(width, height);
  auto& corners = static_cast<osg::Vec3Array&>(*m_background->getVertexArray());
  corners[0].set(0, 0, 0);
  corners[1].set(width, 0, 0);
  corners[2].set(0, -height, 0);
  corners[3].set(width, -height, 0);
  corners.dirty();
  m_background->dirtyBound();
  place();
}

double OverlayPanel::scale() const {
  return std::min({m_pixelScale, (m_window.x() - 2) / static_cast<double>(m_size.x()),
                   (m_window.y() - 2) / static_cast<double>(m_size.y())});
}

void OverlayPanel::place() {
  double const size = std::max(scale(), 0.01);
  double const room = m_window.x() - m_size.x() * size;
  double const margin = std::min({MARGIN * m_pixelScale, room / 2, (m_window.y() - m_size.y() * size) / 2});
  double const x = m_corner == Corner::UPPER_RIGHT ? room - margin : margin;
  double const y = m_corner == Corner::LOWER_LEFT ? m_size.y() * size + margin : m_window.y() - margin;
  m_placement->setMatrix(osg::Matrixd::scale(size, size, 1) *
                         osg::Matrixd::translate(std::round(x), std::round(y), 0));
}

} // namespace zorOSG
