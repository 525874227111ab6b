#pragma once

#include <cstddef>
#include <functional>
#include <utility>

namespace zor {

/** Pointer that holds one reference of a zor::Referenced object. */
template <class T>
class ref_ptr {
public:
  typedef T element_type;

  ref_ptr() noexcept = default;
  ref_ptr(std::nullptr_t) noexcept {}
  ref_ptr(T* pointer) noexcept : m_pointer(pointer) { take(); }
  ref_ptr(ref_ptr const& other) noexcept : m_pointer(other.m_pointer) { take(); }
  ref_ptr(ref_ptr&& other) noexcept : m_pointer(std::exchange(other.m_pointer, nullptr)) {}

  template <class Other>
  ref_ptr(ref_ptr<Other> const& other) noexcept : m_pointer(other.get()) {
    take();
  }

  ~ref_ptr() { reset(); }

  ref_ptr& operator=(ref_ptr const& other) noexcept {
    ref_ptr(other).swap(*this);
    return *this;
  }

  ref_ptr& operator=(ref_ptr&& other) noexcept {
    ref_ptr(std::move(other)).swap(*this);
    return *this;
  }

  ref_ptr& operator=(T* pointer) noexcept {
    ref_ptr(pointer).swap(*this);
    return *this;
  }

  /** \return the object; the pointer keeps its reference */
  T* get() const noexcept { return m_pointer; }

  T* operator->() const noexcept { return m_pointer; }
  T& operator*() const noexcept { return *m_pointer; }
  explicit operator bool() const noexcept { return m_pointer != nullptr; }

  /** \return true if there is an object */
  bool isValid() const noexcept { return m_pointer != nullptr; }

  /** Gives the reference back and becomes null. */
  void reset() noexcept {
    // Null first: the destructor that this may run can lead back here.
    if (T* old = std::exchange(m_pointer, nullptr)) {
      old->unreference();
    }
  }

  /** Becomes null without destroying the object. \return the object, whose count may be zero */
  T* release() noexcept {
    T* old = std::exchange(m_pointer, nullptr);
    if (old) {
      old->unreferenceNoDelete();
    }
    return old;
  }

  void swap(ref_ptr& other) noexcept { std::swap(m_pointer, other.m_pointer); }

private:
  void take() noexcept {
    if (m_pointer) {
      m_pointer->reference();
    }
  }

  T* m_pointer = nullptr;
};

template <class T, class U>
bool operator==(ref_ptr<T> const& a, ref_ptr<U> const& b) noexcept {
  return a.get() == b.get();
}
template <class T, class U>
bool operator==(ref_ptr<T> const& a, U* b) noexcept {
  return a.get() == b;
}
template <class T>
bool operator==(ref_ptr<T> const& a, std::nullptr_t) noexcept {
  return a.get() == nullptr;
}
template <class T>
bool operator<(ref_ptr<T> const& a, ref_ptr<T> const& b) noexcept {
  return std::less<T*>()(a.get(), b.get());
}

/** \return a new object, already held */
template <class T, class... Args>
ref_ptr<T> make_ref(Args&&... args) {
  return ref_ptr<T>(new T(std::forward<Args>(args)...));
}

} // namespace zor

template <class T>
struct std::hash<zor::ref_ptr<T>> {
  std::size_t operator()(zor::ref_ptr<T> const& pointer) const noexcept {
    return std::hash<T*>()(pointer.get());
  }
};
