#include <zor/ParticleDistribution.h>

#include <cmath>
#include <numbers>
#include <stdexcept>

#include "bullet/Check.h"
#include "zor/Checks.h"

namespace zor {

ParticleModel::ParticleModel(RandomReal const& radius, Material* material, Vec4f const& color,
                             RandomReal const& lifetime)
    : m_radius(radius), m_material(material), m_color(color), m_lifetime(lifetime) {
  if (!(radius.getLower() > 0))
    throw std::invalid_argument(
        "ParticleModel: the radius may come out as zero or less; give it a lower limit");
  if (!(lifetime.getLower() > 0))
    throw std::invalid_argument(
        "ParticleModel: the lifetime may come out as zero or less; give it a lower limit");
  for (size_t i = 0; i < 4; ++i)
    checkFinite(static_cast<Real>(color[i]), "ParticleModel");
}

ParticleDistribution::ParticleDistribution(ParticleModel* model) {
  add(model);
}

void ParticleDistribution::add(ParticleModel* model, Real weight) {
  ref_ptr<ParticleModel> const held = &checkNotNull(model, "ParticleDistribution::add");
  addWeight(weight);
  m_entries.push_back({held, 4.0 / 3.0 * std::numbers::pi * model->getRadius().getMoment(3)});
}

ParticleModel* ParticleDistribution::getModel(UInt index) const {
  zorBullet::checkIndex("ParticleDistribution::getModel", index, m_entries.size());
  return m_entries[index].model.get();
}

Real ParticleDistribution::getMeanSize(UInt index, Quantity quantity) const {
  Entry const& entry = m_entries[index];
  if (quantity == COUNT)
    return 1;
  Material const* const material = entry.model->getMaterial();
  constexpr Real USUAL_DENSITY = 1000; // of those whose material the system gives
  return quantity == VOLUME ? entry.volume
                            : entry.volume * (material ? material->getDensity() : USUAL_DENSITY);
}

} // namespace zor
