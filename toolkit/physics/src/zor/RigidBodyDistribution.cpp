#include <zor/RigidBodyDistribution.h>

#include <stdexcept>

#include "bullet/Check.h"
#include "zor/Checks.h"

namespace zor {

RigidBodyDistribution::RigidBodyDistribution(RigidBody* model) {
  add(model);
}

void RigidBodyDistribution::add(RigidBody* model, Real weight) {
  ref_ptr<RigidBody> const held = &checkNotNull(model, "RigidBodyDistribution::add");
  Real volume = 0;
  for (auto const& geometry : model->getGeometries())
    for (auto const& shape : geometry->getShapes())
      volume += shape->getVolume();
  if (!(volume > 0) || model->getMotionControl() != RigidBody::DYNAMICS)
    throw std::invalid_argument("RigidBodyDistribution::add: body '" + model->getName() +
                                "' has no volume or doesn't move by forces");
  addWeight(weight);
  m_models.push_back(held);
}

RigidBody* RigidBodyDistribution::getModel(UInt index) const {
  zorBullet::checkIndex("RigidBodyDistribution::getModel", index, m_models.size());
  return m_models[index].get();
}

Real RigidBodyDistribution::getMeanSize(UInt index, Quantity quantity) const {
  if (quantity == COUNT)
    return 1;
  RigidBody const& body = *m_models[index];
  if (quantity == MASS)
    return body.getMassProperties()->getMass();
  Real volume = 0;
  for (auto const& geometry : body.getGeometries())
    for (auto const& shape : geometry->getShapes())
      volume += shape->getVolume();
  return volume;
}

} // namespace zor
