#include <zor/Distribution.h>

#include <stdexcept>
#include <string>

#include "bullet/Check.h"
#include "zor/Checks.h"

namespace zor {

Real Distribution::getWeight(UInt index) const {
  zorBullet::checkIndex("Distribution::getWeight", index, m_weights.size());
  return m_weights[index];
}

void Distribution::setWeight(UInt index, Real weight) {
  zorBullet::checkIndex("Distribution::setWeight", index, m_weights.size());
  checkNotNegative(weight, "Distribution::setWeight");
  m_weights[index] = weight;
}

void Distribution::setQuantity(Quantity quantity) {
  if (quantity != COUNT && quantity != MASS && quantity != VOLUME)
    throw std::invalid_argument("Distribution::setQuantity: " + std::to_string(static_cast<int>(quantity)) +
                                " is no quantity");
  m_quantity = quantity;
}

void Distribution::addWeight(Real weight) {
  checkNotNegative(weight, "Distribution::add");
  m_weights.push_back(weight);
}

UInt Distribution::draw(RandomGenerator& generator) const {
  // Pieces are drawn: a share of mass is one of pieces by their mean mass.
  auto const chance = [this](UInt i) {
    return m_weights[i] > 0 ? m_weights[i] / (m_quantity == COUNT ? 1 : getMeanSize(i, m_quantity)) : 0;
  };
  Real sum = 0;
  for (UInt i = 0; i < getNumModels(); ++i)
    sum += chance(i);
  if (!(sum > 0))
    throw std::runtime_error("Distribution '" + getName() + "': no model has a weight");
  Real left = generator.uniform() * sum;
  UInt last = 0;
  for (UInt i = 0; i < getNumModels(); ++i) {
    Real const own = chance(i);
    if (own <= 0)
      continue;
    last = i;
    if (left < own)
      break;
    left -= own;
  }
  return last;
}

} // namespace zor
