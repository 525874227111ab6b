#include "TextOverlay.h"

#include <zorOSG/ExampleApplication.h>

#include <osg/Geode>

namespace zorOSG {

namespace {

constexpr float CHARACTER_SIZE = 16;
constexpr float MARGIN = 20;

osg::ref_ptr<osgText::Text> makeText() {
  osg::ref_ptr<osgText::Text> text = new osgText::Text;
  text->setDataVariance(osg::Object::DYNAMIC);
  if (auto font = osgText::readRefFontFile("DejaVu Sans Mono"))
    text->setFont(font);
  text->setCharacterSize(CHARACTER_SIZE);
  text->setColor(osg::Vec4(1, 1, 1, 1));
  text->setDrawMode(osgText::Text::TEXT | osgText::Text::FILLEDBOUNDINGBOX);
  text->setBoundingBoxColor(osg::Vec4(0.05f, 0.08f, 0.12f, 0.75f));
  text->setBoundingBoxMargin(8);
  return text;
}

} // namespace

TextOverlay::TextOverlay(Corner corner) : m_camera(new osg::Camera), m_text(makeText()), m_corner(corner) {
  m_camera->setReferenceFrame(osg::Transform::ABSOLUTE_RF);
  m_camera->setRenderOrder(osg::Camera::POST_RENDER);
  m_camera->setClearMask(GL_DEPTH_BUFFER_BIT);
  m_camera->setAllowEventFocus(false);
  m_camera->setComputeNearFarMode(osg::CullSettings::DO_NOT_COMPUTE_NEAR_FAR);
  auto* const state = m_camera->getOrCreateStateSet();
  state->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
  state->setMode(GL_DEPTH_TEST, osg::StateAttribute::OFF);
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  geode->addDrawable(m_text);
  m_camera->addChild(geode);
  setVisible(false);
}

void TextOverlay::setVisible(bool visible) {
  m_camera->setNodeMask(visible ? static_cast<osg::Node::NodeMask>(ExampleApplication::HUD_MASK) : 0u);
}

bool TextOverlay::isVisible() const {
  return m_camera->getNodeMask() != 0;
}

void TextOverlay::setText(std::string const& text) {
  m_text->setText(text, osgText::String::ENCODING_UTF8);
  place();
}

void TextOverlay::resize(int width, int height) {
  m_width = width;
  m_height = height;
  m_camera->setProjectionMatrixAsOrtho2D(0, width, 0, height);
  place();
}

void TextOverlay::place() {
  bool const left = m_corner != Corner::UPPER_RIGHT;
  bool const low = m_corner == Corner::LOWER_LEFT;
  m_text->setAlignment(low    ? osgText::Text::LEFT_BOTTOM
                       : left ? osgText::Text::LEFT_TOP
                              : osgText::Text::RIGHT_TOP);
  float const x = left ? MARGIN : static_cast<float>(m_width) - MARGIN;
  m_text->setPosition(osg::Vec3(x, low ? MARGIN : static_cast<float>(m_height) - MARGIN, 0));
}

} // namespace zorOSG
