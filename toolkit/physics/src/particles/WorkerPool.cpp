#include "particles/WorkerPool.h"

#include <algorithm>
#include <utility>

namespace zorParticles {

namespace {

constexpr int SPINS = 4000; // some ten microseconds: the pause between two runs of one step
constexpr uint64_t TASK_MASK = 0xffffffffu;
constexpr uint32_t MOST_THREADS = 64;

void relax() {
#if defined(__x86_64__)
  __builtin_ia32_pause();
#endif
}

} // namespace

WorkerPool::~WorkerPool() {
  m_ending.store(true);
  m_next.fetch_add(TASK_MASK + 1);
  m_next.notify_all();
  for (std::thread& thread : m_threads)
    thread.join();
}

WorkerPool& WorkerPool::shared() {
  // Never destroyed: at the end of the process its threads may be gone already, and nobody could wait for
  // them.
  static WorkerPool* const pool = new WorkerPool;
  return *pool;
}

void WorkerPool::startThreads(uint32_t count) {
  while (m_threads.size() < count) {
    auto const number = static_cast<uint32_t>(m_threads.size());
    m_threads.emplace_back([this, number] { work(number); });
  }
}

void WorkerPool::runErased(uint32_t count, uint32_t threads, Call call, void const* task) {
  std::unique_lock const lock(m_running, std::try_to_lock);
  if (!lock || threads <= 1 || count <= 1) { // another simulation steps, or not worth it
    for (uint32_t i = 0; i < count; ++i)
      call(task, i);
    return;
  }
  uint32_t const helpers = std::min({threads, count, MOST_THREADS}) - 1;
  startThreads(helpers);
  m_error = nullptr;
  m_done.store(0, std::memory_order_relaxed);
  // Closed while the task is exchanged: whoever reads parts of the new one can't take it with the old number.
  uint64_t const closed = m_next.load(std::memory_order_relaxed) | TASK_MASK;
  m_next.store(closed, std::memory_order_relaxed);
  m_count.store(count, std::memory_order_release);
  m_helpers.store(helpers, std::memory_order_release);
  m_call.store(call, std::memory_order_release);
  m_task.store(task, std::memory_order_release);
  uint64_t const run = closed + 1;
  m_next.store(run, std::memory_order_release);
  m_next.notify_all();
  uint64_t seen = run;
  while (doOne(seen, true)) {
  }
  for (int spin = 0; m_done.load(std::memory_order_acquire) != count; ++spin) {
    if (spin < SPINS)
      relax();
    else if (uint32_t const done = m_done.load(std::memory_order_acquire); done != count)
      m_done.wait(done);
  }
  if (m_error)
    std::rethrow_exception(std::exchange(m_error, nullptr));
}

/** Takes one task of the current run; false when none is left, with what was seen then. */
bool WorkerPool::doOne(uint64_t& seen, bool isCaller) {
  uint64_t next = m_next.load(std::memory_order_acquire);
  for (;;) {
    seen = next;
    auto const index = static_cast<uint32_t>(next & TASK_MASK);
    uint32_t const count = m_count.load(std::memory_order_acquire);
    Call const call = m_call.load(std::memory_order_acquire);
    void const* const task = m_task.load(std::memory_order_acquire);
    if (index >= count)
      return false;
    // When it succeeds, the run is still the one whose task was read.
    if (!m_next.compare_exchange_weak(next, next + 1, std::memory_order_acq_rel, std::memory_order_acquire))
      continue;
    try {
      call(task, index);
    } catch (...) {
      keepError(index);
    }
    if (m_done.fetch_add(1, std::memory_order_acq_rel) + 1 == count && !isCaller)
      m_done.notify_one();
    return true;
  }
}

void WorkerPool::keepError(uint32_t index) noexcept {
  std::scoped_lock const lock(m_errorGuard);
  if (!m_error || index < m_errorIndex) {
    m_error = std::current_exception();
    m_errorIndex = index;
  }
}

void WorkerPool::work(uint32_t worker) {
  uint64_t seen = 0;
  int spin = 0;
  while (!m_ending.load(std::memory_order_relaxed)) {
    if (worker < m_helpers.load(std::memory_order_relaxed) && doOne(seen, false)) {
      spin = 0;
      continue;
    }
    if (worker >= m_helpers.load(std::memory_order_relaxed))
      seen = m_next.load(std::memory_order_acquire);
    if (spin++ < SPINS)
      relax();
    else if (m_next.load(std::memory_order_acquire) == seen)
      m_next.wait(seen);
  }
}

} // namespace zorParticles
