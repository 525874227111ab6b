#pragma once

#include <chrono>

namespace zorOSG {

/// Says when simulation steps are due on the wall clock, for runs that are held to real time.
class StepClock {
public:
  using Clock = std::chrono::steady_clock;
  using Seconds = std::chrono::duration<double>;

  /** Schedules the next step one step from now. */
  void restart(double timeStep) { m_next = Clock::now() + toDuration(timeStep); }

  /** Stops the clock, keeping the time that was left to the next step. */
  void pause() { m_left = m_next - Clock::now(); }

  /** Goes on with the time that was left when the clock was stopped. */
  void resume() { m_next = Clock::now() + m_left; }

  /** \return true if a step is due */
  bool isDue() const { return Clock::now() >= m_next; }

  /** \return seconds until the next step is due, at least zero */
  double timeLeft() const;

  /** Moves on by one step. A clock that lags by more than `maxLag` seconds gives up catching up. */
  void advance(double timeStep, double maxLag = 0.1);

private:
  static Clock::duration toDuration(double seconds) {
    return std::chrono::duration_cast<Clock::duration>(Seconds(seconds));
  }

  Clock::time_point m_next = Clock::now();
  Clock::duration m_left{};
};

} // namespace zorOSG
