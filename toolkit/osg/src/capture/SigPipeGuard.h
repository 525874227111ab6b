#pragma once

#include <signal.h>

#include <ctime>

namespace zorOSG {

/** Keeps SIGPIPE from this thread, so that a reader that ends early shows as an error of write(). */
class SigPipeGuard {
public:
  SigPipeGuard() {
    sigemptyset(&m_pipe);
    sigaddset(&m_pipe, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &m_pipe, &m_old);
  }
  ~SigPipeGuard() {
    if (sigismember(&m_old, SIGPIPE) == 0) {
      timespec const now = {0, 0};
      while (sigtimedwait(&m_pipe, nullptr, &now) == SIGPIPE) {
      }
    }
    pthread_sigmask(SIG_SETMASK, &m_old, nullptr);
  }
  SigPipeGuard(SigPipeGuard const&) = delete;
  SigPipeGuard& operator=(SigPipeGuard const&) = delete;

private:
  sigset_t m_pipe;
  sigset_t m_old;
};

} // namespace zorOSG
