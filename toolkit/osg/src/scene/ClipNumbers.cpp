#include "ClipNumbers.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace zorOSG {

ClipNumbers& ClipNumbers::instance() {
  static ClipNumbers& numbers = *new ClipNumbers; // never destroyed: planes in static storage may go later
  return numbers;
}

unsigned int ClipNumbers::take(ClipPlane const& plane) {
  std::scoped_lock const lock(m_mutex);
  auto const place = std::find(m_owners.begin(), m_owners.end(), nullptr);
  if (place == m_owners.end())
    throw std::runtime_error("ClipPlane: only " + std::to_string(COUNT) +
                             " planes can be enabled at a time; disable another one first");
  *place = &plane;
  return static_cast<unsigned int>(place - m_owners.begin());
}

unsigned int ClipNumbers::giveBack(ClipPlane const& plane) {
  std::scoped_lock const lock(m_mutex);
  auto const place = std::find(m_owners.begin(), m_owners.end(), &plane);
  *place = nullptr;
  return static_cast<unsigned int>(place - m_owners.begin());
}

bool ClipNumbers::areAnyTaken() const {
  std::scoped_lock const lock(m_mutex);
  return std::any_of(m_owners.begin(), m_owners.end(), [](auto const* owner) { return owner != nullptr; });
}

} // namespace zorOSG
