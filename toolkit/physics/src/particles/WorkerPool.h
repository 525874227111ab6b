#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace zorParticles {

/**
 * Threads that help the calling one with numbered tasks. Who does which task is left to chance, so tasks of
 * one run must not depend on each other; then the result is the same for any number of threads.
 *
 * The caller does tasks itself and waits only for those that others have begun, so that a run ends also
 * where the threads don't exist any more (after a fork).
 */
class WorkerPool {
public:
  WorkerPool() = default;
  ~WorkerPool();
  WorkerPool(WorkerPool const&) = delete;
  WorkerPool& operator=(WorkerPool const&) = delete;

  /** The pool of the library. */
  static WorkerPool& shared();

  /**
   * Calls task(0) ... task(count - 1) and returns when all are done. Throws the exception of the task with
   * the lowest number among those that failed.
   * \param threads - how many to use at most, the caller included
   */
  template <class Task>
  void run(uint32_t count, uint32_t threads, Task const& task) {
    runErased(count, threads, &callTask<Task>, &task);
  }

private:
  typedef void (*Call)(void const* task, uint32_t index);

  template <class Task>
  static void callTask(void const* task, uint32_t index) {
    (*static_cast<Task const*>(task))(index);
  }

  void runErased(uint32_t count, uint32_t threads, Call call, void const* task);
  void startThreads(uint32_t count);
  void work(uint32_t worker);
  bool doOne(uint64_t& seen, bool isCaller);
  void keepError(uint32_t index) noexcept;

  // The run's number in the upper half, the next task in the lower.
  alignas(64) std::atomic<uint64_t> m_next{0};
  std::atomic<uint32_t> m_count{0};
  std::atomic<uint32_t> m_helpers{0}; // workers below this number take part
  std::atomic<Call> m_call{nullptr};
  std::atomic<void const*> m_task{nullptr};
  alignas(64) std::atomic<uint32_t> m_done{0};
  std::atomic<bool> m_ending{false};

  std::mutex m_running; // one run at a time
  std::mutex m_errorGuard;
  std::exception_ptr m_error;
  uint32_t m_errorIndex = 0;
  std::vector<std::thread> m_threads;
};

} // namespace zorParticles
