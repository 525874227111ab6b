#pragma once

#include <zor/Vector.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <unordered_map>

#include <osg/observer_ptr>

namespace zorBinding {

/**
 * \param index - position, from the start only
 * \param size - first position that is too large
 * \return index as a position
 * Throws std::out_of_range "index".
 */
std::size_t checkedPosition(int index, std::size_t size);

/** \return count as a size \throws std::out_of_range with the given name of the parameter if it is negative
 */
std::size_t checkedCount(int count, char const* name = "count");

/** Throws as checkedPosition() and checkedCount(), std::invalid_argument "invalid range" if the range ends
 * beyond size. */
void checkRange(int index, int count, std::size_t size);

/** Operations of a list that counts positions from the start, for vectors of plain pointers. */
template <class T>
struct ListOperations {
  typedef zor::Vector<T> Vector;

  static Vector* create(int capacity) {
    std::size_t const size = checkedCount(capacity, "capacity");
    auto result = std::make_unique<Vector>();
    result->reserve(size);
    return result.release();
  }

  static void insertRange(Vector& vector, int index, Vector const& values) {
    std::size_t const at = checkedPosition(index, vector.size() + 1);
    Vector const copy(values); // may be the vector itself
    vector.insert(vector.begin() + at, copy.begin(), copy.end());
  }

  static void removeRange(Vector& vector, int index, int count) {
    checkRange(index, count, vector.size());
    vector.erase(vector.begin() + index, vector.begin() + index + count);
  }

  static Vector* getRange(Vector const& vector, int index, int count) {
    checkRange(index, count, vector.size());
    return new Vector(vector.begin() + index, vector.begin() + index + count);
  }

  static void setRange(Vector& vector, int index, Vector const& values) {
    if (index < 0 || static_cast<std::size_t>(index) + values.size() > vector.size()) {
      checkedPosition(-1, 0);
    }
    std::copy(values.begin(), values.end(), vector.begin() + index);
  }

  static void reverse(Vector& vector, int index, int count) {
    checkRange(index, count, vector.size());
    std::reverse(vector.begin() + index, vector.begin() + index + count);
  }

  static int indexOf(Vector const& vector, T value) {
    auto const found = std::find(vector.begin(), vector.end(), value);
    return found == vector.end() ? -1 : static_cast<int>(found - vector.begin());
  }

  static int lastIndexOf(Vector const& vector, T value) {
    for (std::size_t i = vector.size(); i > 0; --i) {
      if (vector[i - 1] == value) {
        return static_cast<int>(i - 1);
      }
    }
    return -1;
  }

  static bool removeValue(Vector& vector, T value) {
    auto const found = vector.find(value);
    if (found == vector.end()) {
      return false;
    }
    vector.erase(found);
    return true;
  }
};

/**
 * Tells which of the nodes that came into vectors are alive: vectors do not own them, and hand them out again. Used
 * with the interpreter lock held.
 */
template <class Node>
class WatchedNodes {
public:
  static WatchedNodes& instance() {
    static WatchedNodes& nodes = *new WatchedNodes; // never destroyed: scripts may outlive static objects
    return nodes;
  }

  /** \param node - alive, or null \return the same */
  Node* watch(Node* node) {
    if (!node)
      return node;
    osg::observer_ptr<Node>& observer = m_observers[node];
    if (!observer.valid())
      observer = node;
    if (m_observers.size() >= m_sizeToCleanAt)
      forgetDead();
    return node;
  }

  /** \param node - that was watched, or null \return the node; null if it has died */
  Node* alive(Node* node) const {
    auto const place = m_observers.find(node);
    return place != m_observers.end() && place->second.valid() ? node : nullptr;
  }

private:
  static constexpr std::size_t SMALL = 1024;

  void forgetDead() {
    std::erase_if(m_observers, [](auto const& entry) { return !entry.second.valid(); });
    m_sizeToCleanAt = std::max(SMALL, 2 * m_observers.size());
  }

  std::unordered_map<Node*, osg::observer_ptr<Node>> m_observers;
  std::size_t m_sizeToCleanAt = SMALL;
};

} // namespace zorBinding
