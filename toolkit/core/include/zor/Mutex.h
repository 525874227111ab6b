#pragma once

#include <mutex>

namespace zor {

/** Lock of one thread at a time; the thread that holds it may take it again. */
class Mutex {
public:
  Mutex() = default;
  Mutex(Mutex const&) = delete;
  Mutex& operator=(Mutex const&) = delete;

  /** Waits until the lock is free and takes it. */
  void lock() { m_mutex.lock(); }

  /** Takes the lock if it is free. \return true if it was taken */
  bool tryLock() { return m_mutex.try_lock(); }

  /** Gives the lock back, once for every time it was taken; only by the thread that holds it. */
  void unlock() { m_mutex.unlock(); }

private:
  std::recursive_mutex m_mutex;
};

/** Holds a mutex until the end of a scope. */
class ScopedLock {
public:
  explicit ScopedLock(Mutex& mutex) : m_mutex(mutex) { m_mutex.lock(); }
  ScopedLock(ScopedLock const&) = delete;
  ScopedLock& operator=(ScopedLock const&) = delete;
  ~ScopedLock() { m_mutex.unlock(); }

private:
  Mutex& m_mutex;
};

} // namespace zor
