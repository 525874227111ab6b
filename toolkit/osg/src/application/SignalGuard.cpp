#include "SignalGuard.h"

#include <atomic>

namespace zorOSG {

namespace {

std::atomic<int> pendingSignal{0};
static_assert(std::atomic<int>::is_always_lock_free, "the flag is written by a signal handler");

void recordSignal(int signal) {
  pendingSignal.store(signal);
}

} // namespace

SignalGuard::SignalGuard() : m_slots{{SIGINT, {}, false}, {SIGTERM, {}, false}} {
  struct sigaction action{};
  action.sa_handler = recordSignal;
  action.sa_flags = SA_RESETHAND; // a second signal ends a run that does not react to the first
  sigemptyset(&action.sa_mask);
  for (Slot& slot : m_slots) {
    bool const isDefault = sigaction(slot.signal, nullptr, &slot.previous) == 0 &&
                           !(slot.previous.sa_flags & SA_SIGINFO) && slot.previous.sa_handler == SIG_DFL;
    if (!isDefault)
      continue;
    slot.installed = sigaction(slot.signal, &action, nullptr) == 0;
  }
}

SignalGuard::~SignalGuard() {
  bool any = false;
  for (Slot const& slot : m_slots)
    if (slot.installed)
      any |= sigaction(slot.signal, &slot.previous, nullptr) == 0;
  if (any)
    pendingSignal.store(0);
}

int SignalGuard::pending() {
  return pendingSignal.load();
}

} // namespace zorOSG
