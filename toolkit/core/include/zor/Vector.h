#pragma once

#include <zor/ByteAllocator.h>
#include <zor/Types.h>

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <limits>
#include <memory>
#include <stdexcept>
#include <utility>

namespace zor {

/**
 * The toolkit's growable array. Its storage comes from zor::ByteAllocator, grows to at least 4 elements and
 * doubles from there. Iterators are pointers; growth invalidates them.
 */
template <class T>
class Vector {
public:
  typedef T value_type;
  typedef std::size_t size_type;
  typedef std::ptrdiff_t difference_type;
  typedef T& reference;
  typedef T const& const_reference;
  typedef T* pointer;
  typedef T const* const_pointer;
  typedef T* iterator;
  typedef T const* const_iterator;

  Vector() noexcept = default;
  // They delegate, so that a throwing element leaves an object whose destructor cleans up.
  explicit Vector(size_type size) : Vector() { resize(size); }
  Vector(size_type size, T const& value) : Vector() { resize(size, value); }
  Vector(std::initializer_list<T> values) : Vector(values.begin(), values.end()) {}

  template <std::input_iterator Iterator>
  Vector(Iterator first, Iterator last) : Vector() {
    for (; first != last; ++first) {
      emplace_back(*first);
    }
  }

  Vector(Vector const& other) : Vector() {
    reserve(other.m_size);
    std::uninitialized_copy(other.begin(), other.end(), m_data);
    m_size = other.m_size;
  }

  Vector(Vector&& other) noexcept { swap(other); }
  ~Vector() { release(); }

  Vector& operator=(Vector const& other) {
    if (this != &other) {
      Vector(other).swap(*this);
    }
    return *this;
  }

  Vector& operator=(Vector&& other) noexcept {
    Vector(std::move(other)).swap(*this);
    return *this;
  }

  size_type size() const noexcept { return m_size; }
  size_type capacity() const noexcept { return m_capacity; }
  bool empty() const noexcept { return m_size == 0; }

  /** \return the largest possible number of elements */
  static constexpr size_type max_size() noexcept {
    return static_cast<size_type>(std::numeric_limits<difference_type>::max()) / sizeof(T);
  }

  T* data() noexcept { return m_data; }
  T const* data() const noexcept { return m_data; }
  /** \return the first element's address; null if nothing was ever stored */
  T* ptr() noexcept { return m_data; }
  T const* ptr() const noexcept { return m_data; }

  iterator begin() noexcept { return m_data; }
  iterator end() noexcept { return m_data + m_size; }
  const_iterator begin() const noexcept { return m_data; }
  const_iterator end() const noexcept { return m_data + m_size; }

  /** Element access without a check. */
  T& operator[](size_type index) noexcept { return m_data[index]; }
  T const& operator[](size_type index) const noexcept { return m_data[index]; }

  /** \throws std::out_of_range if index is not below size() */
  T& at(size_type index) { return m_data[checked(index)]; }
  T const& at(size_type index) const { return m_data[checked(index)]; }

  /** \throws std::out_of_range if the vector is empty */
  T& front() { return m_data[checked(0)]; }
  T const& front() const { return m_data[checked(0)]; }
  /** \throws std::out_of_range if the vector is empty */
  T& back() { return m_data[checked(m_size - 1)]; }
  T const& back() const { return m_data[checked(m_size - 1)]; }

  /** \throws std::length_error if capacity is above max_size() */
  void reserve(size_type capacity) {
    if (capacity > m_capacity) {
      relocate(std::max<size_type>(capacity, 4));
    }
  }

  void resize(size_type size) {
    grow(size);
    while (m_size < size) {
      new (m_data + m_size) T();
      ++m_size;
    }
    truncate(size);
  }

  void resize(size_type size, T const& value) {
    if (size > m_size) {
      insert(end(), size - m_size, value);
    }
    truncate(size);
  }

  /** Destroys the elements and keeps the storage. */
  void clear() noexcept { truncate(0); }

  /** Gives back storage that no element uses. */
  void shrink_to_fit() {
    if (m_size == 0) {
      release();
    } else if (m_size < m_capacity) {
      relocate(m_size);
    }
  }

  void push_back(T const& value) { emplace_back(value); }
  void push_back(T&& value) { emplace_back(std::move(value)); }

  template <class... Args>
  T& emplace_back(Args&&... args) {
    if (m_size == m_capacity) {
      // Built first: the arguments may refer to an element of this vector.
      T value(std::forward<Args>(args)...);
      grow(m_size + 1);
      new (m_data + m_size) T(std::move(value));
    } else {
      new (m_data + m_size) T(std::forward<Args>(args)...);
    }
    return m_data[m_size++];
  }

  /** \throws std::out_of_range if the vector is empty */
  void pop_back() {
    checked(0);
    truncate(m_size - 1);
  }

  /**
   * Inserts before a position.
   * \return the inserted element's position
   * \throws std::out_of_range if the position is not of this vector
   */
  iterator insert(const_iterator position, T const& value) { return insert(position, size_type(1), value); }

  iterator insert(const_iterator position, size_type count, T const& value) {
    size_type const index = checkedPosition(position);
    T const copy(value); // value may be an element that moves
    growBy(count);
    for (size_type i = 0; i < count; ++i) {
      emplace_back(copy);
    }
    std::rotate(m_data + index, m_data + (m_size - count), m_data + m_size);
    return m_data + index;
  }

  template <std::input_iterator Iterator>
  iterator insert(const_iterator position, Iterator first, Iterator last) {
    size_type const index = checkedPosition(position);
    Vector added(first, last); // the range may lie in this vector
    growBy(added.size());
    for (T& value : added) {
      emplace_back(std::move(value));
    }
    std::rotate(m_data + index, m_data + (m_size - added.size()), m_data + m_size);
    return m_data + index;
  }

  /**
   * Removes one element.
   * \return the position after it
   * \throws std::out_of_range if there is no such element in this vector
   */
  iterator erase(const_iterator position) {
    size_type const index = checked(checkedPosition(position));
    return erase(m_data + index, m_data + index + 1);
  }

  /** \throws std::out_of_range if the range is not one of this vector */
  iterator erase(const_iterator first, const_iterator last) {
    size_type const from = checkedPosition(first);
    size_type const to = checkedPosition(last);
    if (from > to) {
      throw std::out_of_range("Vector: range ends before it starts");
    }
    if (from != to) { // an element must not be moved onto itself
      std::move(m_data + to, m_data + m_size, m_data + from);
      truncate(m_size - (to - from));
    }
    return m_data + from;
  }

  /** \return position of the first element equal to value, end() if there is none */
  const_iterator find(T const& value) const { return std::find(begin(), end(), value); }
  iterator find(T const& value) { return std::find(begin(), end(), value); }
  bool contains(T const& value) const { return find(value) != end(); }

  void assign(size_type count, T const& value) { Vector(count, value).swap(*this); }

  void swap(Vector& other) noexcept {
    std::swap(m_size, other.m_size);
    std::swap(m_capacity, other.m_capacity);
    std::swap(m_data, other.m_data);
    std::swap(m_allocator, other.m_allocator);
  }

  bool operator==(Vector const& other) const {
    return m_size == other.m_size && std::equal(begin(), end(), other.begin());
  }

private:
  size_type checked(size_type index) const {
    if (index >= m_size) {
      throw std::out_of_range("Vector: index " + std::to_string(static_cast<difference_type>(index)) +
                              " out of range, size is " + std::to_string(m_size));
    }
    return index;
  }

  size_type checkedPosition(const_iterator position) const {
    std::less<T const*> const before;
    if (before(position, begin()) || before(end(), position)) {
      throw std::out_of_range("Vector: position is not of this vector");
    }
    return static_cast<size_type>(position - begin());
  }

  void grow(size_type needed) {
    if (needed > m_capacity) {
      relocate(std::max({needed, std::min(2 * m_capacity, max_size()), size_type(4)}));
    }
  }

  void growBy(size_type count) {
    if (count > max_size() - m_size) {
      throw std::length_error("Vector: more elements asked for than memory can hold");
    }
    grow(m_size + count);
  }

  void relocate(size_type capacity) {
    if (capacity > max_size()) {
      throw std::length_error("Vector: more elements asked for than memory can hold");
    }
    T* data = static_cast<T*>(m_allocator->allocate(capacity * sizeof(T), alignof(T)));
    try {
      moveOrCopyTo(data);
    } catch (...) {
      m_allocator->deallocate(data, capacity * sizeof(T), alignof(T));
      throw;
    }
    size_type const size = m_size;
    release();
    m_data = data;
    m_size = size;
    m_capacity = capacity;
  }

  void moveOrCopyTo(T* data) {
    if constexpr (std::is_nothrow_move_constructible_v<T> || !std::is_copy_constructible_v<T>) {
      std::uninitialized_move(begin(), end(), data);
    } else {
      std::uninitialized_copy(begin(), end(), data);
    }
  }

  void truncate(size_type size) noexcept {
    if (size < m_size) {
      std::destroy(m_data + size, m_data + m_size);
      m_size = size;
    }
  }

  void release() noexcept {
    clear();
    if (m_data) {
      m_allocator->deallocate(m_data, m_capacity * sizeof(T), alignof(T));
    }
    m_data = nullptr;
    m_capacity = 0;
  }

  size_type m_size = 0;
  size_type m_capacity = 0;
  T* m_data = nullptr;
  ByteAllocator* m_allocator = &ByteAllocator::getDefault();
};

typedef Vector<Real> RealVector;
typedef Vector<float> FloatVector;
typedef Vector<Int> IntVector;
typedef Vector<UInt> UIntVector;
typedef Vector<UInt32> UInt32Vector;
typedef Vector<String> StringVector;

} // namespace zor
