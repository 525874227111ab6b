#include "Logo.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

namespace zorOSG {

namespace {

osg::Vec2 pixels(osg::Texture2D const& texture) {
  if (osg::Image const* const image = texture.getImage())
    return {static_cast<float>(image->s()), static_cast<float>(image->t())};
  return {static_cast<float>(texture.getTextureWidth()), static_cast<float>(texture.getTextureHeight())};
}

} // namespace

Logo::Logo() : m_quad(new osg::Geometry), m_corners(new osg::Vec3Array(osg::Array::BIND_PER_VERTEX, 4)) {
  osg::ref_ptr<osg::Vec2Array> const image = new osg::Vec2Array(osg::Array::BIND_PER_VERTEX);
  image->push_back({0.0f, 1.0f});
  image->push_back({1.0f, 1.0f});
  image->push_back({0.0f, 0.0f});
  image->push_back({1.0f, 0.0f});
  osg::ref_ptr<osg::Vec4Array> const white = new osg::Vec4Array(osg::Array::BIND_OVERALL);
  white->push_back({1.0f, 1.0f, 1.0f, 1.0f});
  m_quad->setVertexArray(m_corners);
  m_quad->setTexCoordArray(0, image);
  m_quad->setColorArray(white);
  m_quad->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLE_STRIP, 0, 4));
  m_quad->setUseDisplayList(false);
  m_quad->setUseVertexBufferObjects(true);
  m_quad->setDataVariance(osg::Object::DYNAMIC);
  m_quad->setCullingActive(false);
  m_quad->setNodeMask(0);
}

void Logo::setTexture(osg::Texture2D* texture, float pixelDensity) {
  if (!(pixelDensity > 0.0f && std::isfinite(pixelDensity)))
    throw std::invalid_argument("Logo: pixel density " + std::to_string(pixelDensity) + " is not positive");
  m_texture = texture;
  m_density = pixelDensity;
  update();
}

void Logo::setEnable(bool enable) {
  m_enable = enable;
  update();
}

void Logo::setLocation(SceneDecorator::LogoLocation location) {
  if (location < SceneDecorator::UPPER_LEFT || location > SceneDecorator::FREE)
    throw std::invalid_argument("Logo: " + std::to_string(location) + " is no location, 1 to 5 are");
  m_location = location;
  update();
}

void Logo::setPosition(osg::Vec2 const& position) {
  if (!position.valid())
    throw std::invalid_argument("Logo: the position is not a number");
  m_position = {std::clamp(position.x(), 0.0f, 1.0f), std::clamp(position.y(), 0.0f, 1.0f)};
  update();
}

void Logo::setMaximumSize(osg::Vec2 const& size) {
  if (!(size.x() >= 0.0f && size.x() <= 1.0f && size.y() >= 0.0f && size.y() <= 1.0f))
    throw std::invalid_argument("Logo: the largest size must be 0 to 1 of the window in both directions");
  m_maximum = size;
  update();
}

void Logo::setWindow(osg::Vec2 const& size) {
  m_window = size;
  update();
}

osg::Vec2 Logo::getSize() const {
  if (!m_texture)
    return {};
  osg::Vec2 const image = pixels(*m_texture);
  osg::Vec2 const size(image.x() / m_density / m_window.x(), image.y() / m_density / m_window.y());
  if (!(size.x() > 0.0f && size.y() > 0.0f))
    return {};
  return size * std::min({1.0f, m_maximum.x() / size.x(), m_maximum.y() / size.y()});
}

osg::Vec2 Logo::place(osg::Vec2 const& size) const {
  float const right = 1.0f - MARGIN - size.x();
  float const top = 1.0f - MARGIN - size.y();
  switch (m_location) {
  case SceneDecorator::UPPER_LEFT:
    return {MARGIN, top};
  case SceneDecorator::LOWER_LEFT:
    return {MARGIN, MARGIN};
  case SceneDecorator::UPPER_RIGHT:
    return {right, top};
  case SceneDecorator::LOWER_RIGHT:
    return {right, MARGIN};
  case SceneDecorator::FREE:
    break;
  }
  return m_position;
}

void Logo::update() {
  osg::Vec2 const size = getSize();
  m_quad->setNodeMask(m_enable && size.x() > 0.0f ? ~0u : 0u);
  if (!m_texture)
    return;
  osg::Vec2 const low = place(size);
  osg::Vec2 const high = low + size;
  (*m_corners)[0] = {low.x(), high.y(), 0.0f};
  (*m_corners)[1] = {high.x(), high.y(), 0.0f};
  (*m_corners)[2] = {low.x(), low.y(), 0.0f};
  (*m_corners)[3] = {high.x(), low.y(), 0.0f};
  m_corners->dirty();
  m_quad->dirtyBound();
  m_quad->getOrCreateStateSet()->setTextureAttributeAndModes(0, m_texture);
}

} // namespace zorOSG
