#pragma once

#include "CollisionShapes.h"
#include "DebugLines.h"
#include "NameLabels.h"

#include <osg/Group>

#include <array>
#include <memory>

namespace zorOSG {

/**
 * Makes, and keeps, what stands for the objects of a simulation in debug rendering: one drawable a kind,
 * whose arrays are overwritten in place. Nothing is done for what is not shown.
 */
class RenderProxyFactory {
public:
  enum Kind { CONTACTS, CONSTRAINT_AXES, BOUNDING_BOXES, CENTERS_OF_MASS, COLLISION_SHAPES, KIND_COUNT };

  RenderProxyFactory();
  ~RenderProxyFactory();
  RenderProxyFactory(RenderProxyFactory const&) = delete;
  RenderProxyFactory& operator=(RenderProxyFactory const&) = delete;

  /** \return the node that holds everything; drawn in the coordinates that setTransform() leads to */
  osg::Node* node() const { return m_root.get(); }

  /** The drawables; names have a switch of their own. */
  void setEnabled(bool flag);
  bool isEnabled() const { return m_kinds->getNodeMask() != 0; }

  void setNamesEnabled(bool flag);
  bool areNamesEnabled() const { return m_names.node()->getNodeMask() != 0; }

  /** A kind is shown if its node mask is not 0; scripts may change that as well. */
  void setKindShown(Kind kind, bool flag);
  bool isKindShown(Kind kind) const { return m_lines[kind]->node()->getNodeMask() != 0; }

  void setTransform(osg::Matrixd const& simulationToDrawn) { m_toDrawn = simulationToDrawn; }

  /** Brings what is shown up to date. \param simulation null for none */
  void update(zorSDK::Simulation const* simulation);

private:
  bool contactsMayHaveChanged(zorSDK::Simulation const& simulation);
  void draw(Kind kind, zorSDK::Simulation const& simulation);

  /** The step whose contacts are drawn, and how. */
  struct Drawn {
    zorSDK::Simulation const* simulation = nullptr;
    double time = 0;
    zor::UInt steps = 0;
    osg::Matrixd toDrawn;
    bool operator==(Drawn const&) const = default;
  };

  osg::ref_ptr<osg::Group> m_root;
  osg::ref_ptr<osg::Group> m_kinds;
  std::array<std::unique_ptr<DebugLines>, KIND_COUNT> m_lines;
  CollisionShapes m_shapes;
  NameLabels m_names;
  osg::Matrixd m_toDrawn;
  Drawn m_contactsDrawn;
};

} // namespace zorOSG
