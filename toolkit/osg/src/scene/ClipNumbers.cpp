#include "ClipNumbers.h"

#include <stdexcept>
#include <string>

namespace zorOSG {

ClipNumbers& ClipNumbers::instance() {
  static ClipNumbers& numbers = *new ClipNumbers; // never destroyed: planes in static storage may go later
  return numbers;
}

unsigned int ClipNumbers::take() {
  std::scoped_lock const lock(m_mutex);
  for (unsigned int number = 0; number < COUNT; ++number) {
    if (m_taken[number])
      continue;
    m_taken.set(number);
    return number;
  }
  throw std::runtime_error("ClipPlane: only " + std::to_string(COUNT) +
                           " planes can be enabled at a time; disable another one first");
}

void ClipNumbers::giveBack(unsigned int number) {
  std::scoped_lock const lock(m_mutex);
  m_taken.reset(number);
}

bool ClipNumbers::areAnyTaken() const {
  std::scoped_lock const lock(m_mutex);
  return m_taken.any();
}

} // namespace zorOSG
