#include <zor/HighAccuracyTimer.h>

namespace zor {

HighAccuracyTimer::HighAccuracyTimer(bool startNow) {
  reset(startNow);
}

void HighAccuracyTimer::start() {
  if (!m_running) {
    m_start = Clock::now();
    m_running = true;
  }
}

void HighAccuracyTimer::stop() {
  if (m_running) {
    m_elapsed += Clock::now() - m_start;
    m_running = false;
  }
}

void HighAccuracyTimer::reset(bool startNow) {
  m_elapsed = Clock::duration::zero();
  m_running = false;
  if (startNow) {
    start();
  }
}

Real HighAccuracyTimer::getTime() const {
  Clock::duration const elapsed = m_running ? m_elapsed + (Clock::now() - m_start) : m_elapsed;
  return std::chrono::duration<Real, std::milli>(elapsed).count();
}

} // namespace zor
