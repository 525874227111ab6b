#include <zorSDK/PickResult.h>

namespace zorSDK {

zor::RigidBody* PickResult::getRigidBody() const {
  return getGeometry() ? getGeometry()->getRigidBody() : nullptr;
}

bool PickResult::isDynamic() const {
  zor::RigidBody const* const body = getRigidBody();
  return body && body->getMotionControl() == zor::RigidBody::DYNAMICS;
}

} // namespace zorSDK
