#include "Hud.h"

#include "ScreenLayer.h"

#include <zorOSG/ExampleApplication.h>

#include <osg/Geometry>

#include <cmath>
#include <stdexcept>
#include <string>

namespace zorOSG {

namespace {

constexpr int UNIT_ORDER = 1000;
constexpr int PIXEL_ORDER = 1001;

osg::Geometry* polygon(std::initializer_list<osg::Vec3> outline, osg::Vec4 const& color) {
  osg::Geometry* const geometry = new osg::Geometry;
  osg::Vec3Array* const vertices = new osg::Vec3Array(outline.begin(), outline.end());
  osg::Vec4Array* const colors = new osg::Vec4Array(osg::Array::BIND_OVERALL);
  colors->push_back(color);
  geometry->setVertexArray(vertices);
  geometry->setColorArray(colors);
  geometry->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLE_FAN, 0, static_cast<GLsizei>(vertices->size())));
  geometry->setCullingActive(false);
  return geometry;
}

/** An arrow whose tip is at the origin: a dark outline and a light inside, seen on any background. */
osg::ref_ptr<osg::MatrixTransform> makeCursor() {
  osg::ref_ptr<osg::MatrixTransform> cursor = new osg::MatrixTransform;
  cursor->addChild(
      polygon({{4.5f, -13.0f, 0.0f}, {0.0f, 0.0f, 0.0f}, {13.5f, -13.0f, 0.0f}}, {0.0f, 0.0f, 0.0f, 1.0f}));
  cursor->addChild(
      polygon({{0.0f, 0.0f, 0.0f}, {0.0f, -18.0f, 0.0f}, {4.5f, -13.0f, 0.0f}}, {0.0f, 0.0f, 0.0f, 1.0f}));
  cursor->addChild(
      polygon({{4.5f, -11.5f, 0.0f}, {1.2f, -3.2f, 0.0f}, {10.5f, -11.9f, 0.0f}}, {1.0f, 1.0f, 1.0f, 1.0f}));
  cursor->addChild(
      polygon({{1.2f, -3.2f, 0.0f}, {1.2f, -15.2f, 0.0f}, {4.5f, -11.5f, 0.0f}}, {1.0f, 1.0f, 1.0f, 1.0f}));
  cursor->setNodeMask(0);
  cursor->setCullingActive(false);
  return cursor;
}

} // namespace

Hud::Hud(int width, int height)
    : m_size(new Size{width, height}), m_node(new osg::Group), m_cursor(makeCursor()) {
  m_unitLayer =
      new ScreenLayer([](double, double) { return osg::Matrixd::ortho2D(0.0, 1.0, 0.0, 1.0); }, UNIT_ORDER);
  // Texts keep their part of the picture in views of another size, and are pixel for pixel in the window.
  m_pixelLayer = new ScreenLayer(
      [size = m_size](double viewWidth, double viewHeight) {
        double const high = size->height / static_cast<double>(size->pixelScale);
        return osg::Matrixd::ortho2D(0.0, high * viewWidth / viewHeight, -high, 0.0);
      },
      PIXEL_ORDER);
  m_node->setNodeMask(ExampleApplication::HUD_MASK);
  m_node->setCullingActive(false);
  m_node->addChild(m_unitLayer);
  m_node->addChild(m_pixelLayer);
  setWindowSize(width, height);
  reset();
}

void Hud::reset() {
  float const fontSize = m_text ? m_text->getFontSize() : 0.0f;
  std::string const font = m_text ? m_text->getFont() : std::string();
  auto text = std::make_unique<HudText>();
  if (m_text && font != text->getFont())
    text->setFont(font);
  if (m_text)
    text->setFontSize(fontSize);
  text->setPixelScale(m_size->pixelScale);
  m_text = std::move(text);
  m_group = new osg::Group;
  m_unitLayer->removeChildren(0, m_unitLayer->getNumChildren());
  m_unitLayer->addChild(&m_logo.node());
  m_unitLayer->addChild(m_group);
  m_pixelLayer->removeChildren(0, m_pixelLayer->getNumChildren());
  m_pixelLayer->addChild(&m_text->node());
  m_pixelLayer->addChild(m_cursor);
}

void Hud::setWindowSize(int width, int height) {
  if (width < 1 || height < 1)
    throw std::invalid_argument("Scene decorator: window of " + std::to_string(width) + " x " +
                                std::to_string(height) + " pixels; both must be positive");
  m_size->width = width;
  m_size->height = height;
  sizeChanged();
}

void Hud::setPixelScale(float scale) {
  if (!(scale > 0.0f && std::isfinite(scale)))
    throw std::invalid_argument("Scene decorator: pixel scale " + std::to_string(scale) + " is not positive");
  m_size->pixelScale = scale;
  m_text->setPixelScale(scale);
  sizeChanged();
}

void Hud::sizeChanged() {
  osg::Vec2 const size(static_cast<float>(m_size->width), static_cast<float>(m_size->height));
  m_logo.setWindow(size / m_size->pixelScale);
  placeCursor();
}

void Hud::setCursorShown(bool shown) {
  m_cursor->setNodeMask(shown ? ~0u : 0u);
}

void Hud::moveCursor(float x, float y) {
  if (!std::isfinite(x) || !std::isfinite(y))
    throw std::invalid_argument("Scene decorator: the cursor's position is not a number");
  m_cursorPosition = {x, y};
  placeCursor();
}

void Hud::placeCursor() {
  float const width = static_cast<float>(m_size->width) / m_size->pixelScale;
  float const height = static_cast<float>(m_size->height) / m_size->pixelScale;
  m_cursor->setMatrix(
      osg::Matrixd::translate(m_cursorPosition.x() * width, (m_cursorPosition.y() - 1.0f) * height, 0.0));
}

} // namespace zorOSG
