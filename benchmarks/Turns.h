#pragma once

#include <chrono>
#include <ctime>

// Two ways to do the same take turns, so that what else the machine does meets both alike.

/** Processor time of all threads of this program so far (s). */
inline double processorSeconds() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

inline double wallSeconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/** What one of the two has used so far. */
struct Used {
  double processor = 0;
  double wall = 0;

  template <class Work>
  void take(Work work) {
    double const processorThen = processorSeconds(), wallThen = wallSeconds();
    work();
    processor += processorSeconds() - processorThen;
    wall += wallSeconds() - wallThen;
  }
};

/** Lets both do their work once, the one that began the last time second. */
class Turns {
public:
  template <class Ours, class Theirs>
  void take(Ours ours_, Theirs theirs_) {
    if (m_oursFirst)
      ours.take(ours_);
    theirs.take(theirs_);
    if (!m_oursFirst)
      ours.take(ours_);
    m_oursFirst = !m_oursFirst;
  }

  /** How much more processor time ours takes (%). */
  double overheadPercent() const { return 100 * (ours.processor / theirs.processor - 1); }

  Used ours, theirs;

private:
  bool m_oursFirst = true;
};
