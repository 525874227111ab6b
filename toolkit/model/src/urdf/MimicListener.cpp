#include "urdf/MimicListener.h"

namespace zorModel {

MimicListener::MimicListener(zor::Constraint1DOF* leader, zor::Constraint1DOF* follower, zor::Real multiplier,
                             zor::Real offset)
    : StepEventListener(PRE_COLLIDE), m_leader(leader), m_follower(follower), m_multiplier(multiplier),
      m_offset(offset) {
  setName(follower->getName() + " mimics " + leader->getName());
  m_follower->getLock1D()->setEnable(true);
}

void MimicListener::preCollide(zor::TimeStamp) {
  zor::Real const wanted = m_multiplier * m_leader->getAngle() + m_offset;
  if (wanted != m_follower->getLock1D()->getPosition()) // a change wakes the bodies
    m_follower->getLock1D()->setPosition(wanted);
}

} // namespace zorModel
