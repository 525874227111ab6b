#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>

namespace zorParticles {

/**
 * Numbers in a row whose storage lives as long as anyone holds it, so that a view of it stays valid memory
 * when the array grows or is gone.
 */
template <class T>
class SharedArray {
public:
  size_t size() const { return m_size; }
  T* data() { return m_data.get(); }
  T const* data() const { return m_data.get(); }
  T& operator[](size_t index) { return m_data[static_cast<ptrdiff_t>(index)]; }
  T const& operator[](size_t index) const { return m_data[static_cast<ptrdiff_t>(index)]; }
  std::shared_ptr<T[]> const& storage() const { return m_data; }

  void reserve(size_t capacity) {
    if (capacity <= m_capacity)
      return;
    size_t const room = std::max(capacity, 2 * m_capacity);
    std::shared_ptr<T[]> larger(new T[room]());
    std::copy_n(m_data.get(), m_size, larger.get());
    m_data = std::move(larger);
    m_capacity = room;
  }
  /** Needs room for it. */
  void push(T const& value) { (*this)[m_size++] = value; }
  void shrink(size_t size) { m_size = size; }
  /** New elements are zero in an array that was empty, else any. */
  void resize(size_t size) {
    reserve(size);
    m_size = size;
  }

private:
  std::shared_ptr<T[]> m_data;
  size_t m_size = 0;
  size_t m_capacity = 0;
};

} // namespace zorParticles
