#pragma once

#include <atomic>
#include <mutex>

namespace zor {

class Referenced;

/**
 * What an object and its observers share: outlives the object and knows when it has died. Used by
 * zor::observer_ptr only.
 */
class ObserverBlock {
public:
  explicit ObserverBlock(Referenced const* object) noexcept : m_object(object) {}
  ObserverBlock(ObserverBlock const&) = delete;
  ObserverBlock& operator=(ObserverBlock const&) = delete;

  /** Takes one reference of the block itself. */
  void reference() noexcept { m_count.fetch_add(1, std::memory_order_relaxed); }

  /** Gives one reference of the block itself back. */
  void unreference() noexcept;

  /** \return true until the observed object's destruction begins */
  bool isAlive() const noexcept;

  /** Takes one reference of the observed object. \return true if it was alive and the reference was taken */
  bool tryReferenceObject() noexcept;

  /** Called once by the object when its destruction begins. */
  void objectDied() noexcept;

private:
  mutable std::mutex m_mutex;
  Referenced const* m_object;
  std::atomic<int> m_count{1};
};

} // namespace zor
