#include "RenderProxyFactory.h"

#include "DebugKinds.h"

namespace zorOSG {

namespace {

using Layer = DebugLines::Layer;

} // namespace

RenderProxyFactory::RenderProxyFactory()
    : m_root(new osg::Group), m_kinds(new osg::Group),
      m_lines{std::make_unique<DebugLines>("Contacts", Layer::ON_TOP, 2.0f, 7.0f),
              std::make_unique<DebugLines>("ConstraintAxes", Layer::ON_TOP, 2.5f, 8.0f),
              std::make_unique<DebugLines>("BoundingBoxes", Layer::IN_SCENE, 1.0f),
              std::make_unique<DebugLines>("CentersOfMass", Layer::ON_TOP, 1.5f, 6.0f),
              std::make_unique<DebugLines>("CollisionShapes", Layer::IN_SCENE, 1.5f)} {
  m_root->setName("DebugRenderer");
  m_kinds->setName("DebugKinds");
  m_root->addChild(m_kinds);
  m_root->addChild(m_names.node());
  for (auto const& lines : m_lines)
    m_kinds->addChild(lines->node());
  setKindShown(BOUNDING_BOXES, false);
  setEnabled(false);
  setNamesEnabled(false);
}

RenderProxyFactory::~RenderProxyFactory() = default;

void RenderProxyFactory::setEnabled(bool flag) {
  m_kinds->setNodeMask(flag ? ~0u : 0u);
}

void RenderProxyFactory::setNamesEnabled(bool flag) {
  m_names.node()->setNodeMask(flag ? ~0u : 0u);
}

void RenderProxyFactory::setKindShown(Kind kind, bool flag) {
  m_lines[kind]->node()->setNodeMask(flag ? ~0u : 0u);
}

void RenderProxyFactory::update(zorSDK::Simulation const* simulation) {
  if (!simulation) {
    setEnabled(false);
    setNamesEnabled(false);
    return;
  }
  if (isEnabled())
    for (int kind = 0; kind < KIND_COUNT; ++kind)
      if (isKindShown(static_cast<Kind>(kind)))
        draw(static_cast<Kind>(kind), *simulation);
  if (areNamesEnabled())
    m_names.update(*simulation, m_toDrawn);
}

/** Asking for contacts copies them. */
bool RenderProxyFactory::contactsMayHaveChanged(zorSDK::Simulation const& simulation) {
  Drawn const now{&simulation, simulation.getTimeStamp(), simulation.getStatistics().steps, m_toDrawn};
  bool const changed = !(now == m_contactsDrawn);
  m_contactsDrawn = now;
  return changed;
}

void RenderProxyFactory::draw(Kind kind, zorSDK::Simulation const& simulation) {
  if (kind == CONTACTS && !contactsMayHaveChanged(simulation))
    return;
  DebugLines& lines = *m_lines[kind];
  lines.begin(m_toDrawn);
  switch (kind) {
  case CONTACTS:
    drawContacts(simulation, lines);
    break;
  case CONSTRAINT_AXES:
    drawConstraintAxes(simulation, lines);
    break;
  case BOUNDING_BOXES:
    drawBoundingBoxes(simulation, lines);
    break;
  case CENTERS_OF_MASS:
    drawCentersOfMass(simulation, lines);
    break;
  case COLLISION_SHAPES:
    m_shapes.draw(simulation, lines);
    break;
  case KIND_COUNT:
    break;
  }
  lines.end();
}

} // namespace zorOSG
