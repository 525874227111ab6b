#include <zor/ParticleContacts.h>

#include <stdexcept>
#include <string>

namespace zor {

zorCollide::Geometry* ParticleContacts::getGeometry(zor::UInt contact) const {
  if (contact >= geometries.size())
    throw std::out_of_range("ParticleContacts::getGeometry: contact " + std::to_string(contact) + " of " +
                            std::to_string(geometries.size()));
  return geometries[contact].get();
}

} // namespace zor
