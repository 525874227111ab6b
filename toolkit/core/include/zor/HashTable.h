#pragma once

#include <zor/Types.h>

#include <functional>
#include <initializer_list>
#include <stdexcept>
#include <unordered_map>
#include <utility>

namespace zor {

/** Map from unique keys to values with access in constant time; its order is unspecified. */
template <class K, class V, class Hash = std::hash<K>>
class HashTable {
  typedef std::unordered_map<K, V, Hash> Table;

public:
  typedef K key_type;
  typedef V mapped_type;
  typedef typename Table::value_type value_type;
  typedef typename Table::iterator iterator;
  typedef typename Table::const_iterator const_iterator;

  HashTable() = default;
  HashTable(std::initializer_list<value_type> values) : m_table(values) {}

  std::size_t size() const { return m_table.size(); }
  bool empty() const { return m_table.empty(); }
  void clear() { m_table.clear(); }

  /** Makes room for a number of entries, so that adding them does not rehash. */
  void reserve(std::size_t count) { m_table.reserve(count); }

  iterator begin() { return m_table.begin(); }
  iterator end() { return m_table.end(); }
  const_iterator begin() const { return m_table.begin(); }
  const_iterator end() const { return m_table.end(); }

  bool contains(K const& key) const { return m_table.find(key) != m_table.end(); }
  iterator find(K const& key) { return m_table.find(key); }
  const_iterator find(K const& key) const { return m_table.find(key); }

  /** \return the value of a key \throws std::out_of_range if there is none */
  V& at(K const& key) { return const_cast<V&>(std::as_const(*this).at(key)); }
  V const& at(K const& key) const {
    auto const found = m_table.find(key);
    if (found == m_table.end()) {
      throw std::out_of_range("HashTable: no such key");
    }
    return found->second;
  }

  /** \return the value of a key, or the given one if there is none */
  V get(K const& key, V const& fallback = V()) const {
    auto const found = m_table.find(key);
    return found == m_table.end() ? fallback : found->second;
  }

  /** \return the value of a key; a default one is added if there is none */
  V& operator[](K const& key) { return m_table[key]; }

  /** Adds an entry unless there is one with its key. \return true if it was added */
  // NOLINTNEXTLINE(performance-unnecessary-value-param): it is moved from
  bool insert(K const& key, V value) { return m_table.try_emplace(key, std::move(value)).second; }
  bool insert(value_type const& entry) { return m_table.insert(entry).second; }

  /** Adds an entry or replaces its value. */
  void set(K const& key, V value) { m_table.insert_or_assign(key, std::move(value)); }

  /** Removes an entry. \return true if there was one */
  bool erase(K const& key) { return m_table.erase(key) > 0; }
  iterator erase(const_iterator position) { return m_table.erase(position); }

private:
  Table m_table;
};

} // namespace zor
