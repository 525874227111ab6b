#pragma once

#include <csignal>

namespace zorOSG {

/**
 * While alive, SIGINT and SIGTERM set a flag in place of ending the process, so that a run can finish its
 * files. A signal that already has a handler (an interpreter's) keeps it.
 */
class SignalGuard {
public:
  SignalGuard();
  ~SignalGuard();

  SignalGuard(SignalGuard const&) = delete;
  SignalGuard& operator=(SignalGuard const&) = delete;

  /** \return number of the signal that has arrived while a guard is there, 0 for none */
  static int pending();

private:
  struct Slot {
    int signal;
    struct sigaction previous;
    bool installed;
  };

  Slot m_slots[2];
};

} // namespace zorOSG
