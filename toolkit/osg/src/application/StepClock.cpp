#include "StepClock.h"

#include <algorithm>

namespace zorOSG {

double StepClock::timeLeft() const {
  return std::max(0.0, Seconds(m_next - Clock::now()).count());
}

void StepClock::advance(double timeStep, double maxLag) {
  m_next = std::max(m_next + toDuration(timeStep), Clock::now() - toDuration(maxLag));
}

} // namespace zorOSG
