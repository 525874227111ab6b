#pragma once

#include <zor/Types.h>

#include <chrono>

namespace zor {

/** Stop watch on the steady clock of the system. */
class HighAccuracyTimer {
public:
  /** \param startNow - true starts the watch */
  explicit HighAccuracyTimer(bool startNow = false);

  /** Goes on from the time that the watch shows; a running watch is left alone. */
  void start();

  /** Stops the watch, which keeps its time. */
  void stop();

  /** Sets the time to 0. \param startNow - true: the watch runs afterwards, false: it stands */
  void reset(bool startNow = false);

  /** \return true if the watch is running */
  bool isRunning() const { return m_running; }

  /** \return the time that the watch has run, in milliseconds */
  Real getTime() const;

private:
  typedef std::chrono::steady_clock Clock;

  Clock::time_point m_start;
  Clock::duration m_elapsed{};
  bool m_running = false;
};

} // namespace zor
