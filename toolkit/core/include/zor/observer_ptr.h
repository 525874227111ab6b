#pragma once

#include <zor/ObserverBlock.h>
#include <zor/Referenced.h>
#include <zor/ref_ptr.h>

#include <cstddef>
#include <utility>

namespace zor {

/**
 * Weak pointer to a zor::Referenced object: holds no reference and becomes null when the object dies.
 *
 * lock() is safe against destruction on another thread; get() only where the caller knows that the object
 * does not die meanwhile.
 */
template <class T>
class observer_ptr {
public:
  observer_ptr() noexcept = default;
  observer_ptr(std::nullptr_t) noexcept {}
  observer_ptr(T* pointer)
      : m_pointer(pointer), m_block(pointer ? pointer->getOrCreateObserverBlock() : nullptr) {
    take();
  }
  observer_ptr(ref_ptr<T> const& pointer) : observer_ptr(pointer.get()) {}
  observer_ptr(observer_ptr const& other) noexcept : m_pointer(other.m_pointer), m_block(other.m_block) {
    take();
  }
  observer_ptr(observer_ptr&& other) noexcept
      : m_pointer(std::exchange(other.m_pointer, nullptr)), m_block(std::exchange(other.m_block, nullptr)) {}
  ~observer_ptr() { reset(); }

  observer_ptr& operator=(observer_ptr other) noexcept {
    std::swap(m_pointer, other.m_pointer);
    std::swap(m_block, other.m_block);
    return *this;
  }

  /** \return the object, held; null if it has died or has no reference at all */
  ref_ptr<T> lock() const noexcept {
    ref_ptr<T> result;
    if (m_block && m_block->tryReferenceObject()) {
      result = m_pointer;
      m_pointer->unreference();
    }
    return result;
  }

  /** \return the object, or null if it has died */
  T* get() const noexcept { return m_block && m_block->isAlive() ? m_pointer : nullptr; }

  T* operator->() const noexcept { return get(); }
  T& operator*() const noexcept { return *get(); }
  explicit operator bool() const noexcept { return get() != nullptr; }

  /** \return true if the object is alive */
  bool isValid() const noexcept { return get() != nullptr; }

  /** Stops observing. */
  void reset() noexcept {
    m_pointer = nullptr;
    if (ObserverBlock* block = std::exchange(m_block, nullptr)) {
      block->unreference();
    }
  }

  /** Two observers are equal if they watch the same object, or if both objects have died. */
  bool operator==(observer_ptr const& other) const noexcept { return get() == other.get(); }
  bool operator==(T const* other) const noexcept { return get() == other; }
  bool operator==(std::nullptr_t) const noexcept { return get() == nullptr; }

private:
  void take() noexcept {
    if (m_block) {
      m_block->reference();
    }
  }

  T* m_pointer = nullptr;
  ObserverBlock* m_block = nullptr; // holds one reference of the block
};

} // namespace zor
