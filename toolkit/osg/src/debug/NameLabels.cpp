#include "NameLabels.h"

#include "scene/Convert.h"
#include "scene/TextFont.h"
#include "scene/VisualState.h"

#include <osg/Depth>

namespace zorOSG {

namespace {

constexpr float PIXELS = 15;
constexpr int ABOVE_LINES = 910;

/** More could not be read, and each costs a drawable. */
constexpr std::size_t MOST_LABELS = 1000;

osg::Vec4 const BODY(1, 1, 1, 1), CONSTRAINT(1.0f, 0.8f, 0.3f, 1);

osg::ref_ptr<osgText::Text> makeText() {
  osg::ref_ptr<osgText::Text> text = new osgText::Text;
  text->setDataVariance(osg::Object::DYNAMIC);
  if (defaultTextFont())
    text->setFont(defaultTextFont());
  text->setFontResolution(32, 32);
  text->setCharacterSize(PIXELS);
  text->setCharacterSizeMode(osgText::Text::SCREEN_COORDS);
  text->setAxisAlignment(osgText::Text::SCREEN);
  text->setAlignment(osgText::Text::CENTER_BOTTOM);
  text->setBackdropType(osgText::Text::OUTLINE);
  text->setBackdropColor({0, 0, 0, 0.7f});
  text->setUseDisplayList(false);
  return text;
}

} // namespace

NameLabels::NameLabels() : m_geode(new osg::Geode) {
  m_geode->setName("NameLabels");
  drawWithoutLight(*m_geode);
  osg::StateSet& state = *m_geode->getOrCreateStateSet();
  state.setAttributeAndModes(new osg::Depth(osg::Depth::ALWAYS, 0, 1, false));
  state.setRenderBinDetails(ABOVE_LINES, "RenderBin");
}

void NameLabels::update(zorSDK::Simulation const& simulation, osg::Matrixd const& toDrawn) {
  m_used = 0;
  for (auto const& body : simulation.getRigidBodies())
    if (!body->getName().empty() && body->getEnable())
      write(body->getName(), toOsg(body->getCmPosition()) * toDrawn, true);
  for (auto const& constraint : simulation.getConstraints())
    if (!constraint->getName().empty())
      write(constraint->getName(), toOsg(constraint->getAttachmentTransform(0)).getTrans() * toDrawn, false);
  for (std::size_t i = m_used; i < m_labels.size(); ++i)
    m_labels[i].drawable->setNodeMask(0);
}

void NameLabels::write(std::string const& text, osg::Vec3d const& at, bool ofBody) {
  if (m_used == MOST_LABELS)
    return;
  if (m_used == m_labels.size()) {
    m_labels.push_back({makeText(), {}});
    paint(m_labels.back(), ofBody);
    m_geode->addDrawable(m_labels.back().drawable);
  }
  Label& label = m_labels[m_used++];
  if (label.text != text) {
    label.text = text;
    label.drawable->setText(text, osgText::String::ENCODING_UTF8);
  }
  if (label.ofBody != ofBody)
    paint(label, ofBody);
  if (label.drawable->getPosition() != osg::Vec3(at))
    label.drawable->setPosition(at);
  label.drawable->setNodeMask(~0u);
}

void NameLabels::paint(Label& label, bool ofBody) {
  label.ofBody = ofBody;
  label.drawable->setColor(ofBody ? BODY : CONSTRAINT);
}

} // namespace zorOSG
