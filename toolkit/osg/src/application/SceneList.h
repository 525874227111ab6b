#pragma once

#include <zorOSG/SceneDescription.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace zorOSG {

/// The registered scenes in order, each optionally bound to a key, and the position of the current one.
class SceneList {
public:
  struct Entry {
    SceneDescription description;
    std::optional<int> key;
  };

  /** \return false if the description is not valid or another scene has the key */
  bool add(SceneDescription const& description, std::optional<int> key);

  void clear();

  std::size_t size() const { return m_entries.size(); }

  /** Throws std::out_of_range beyond the end. */
  Entry const& at(std::size_t index) const;

  /** \return position of the scene bound to the key */
  std::optional<std::size_t> findKey(int key) const;

  /** \return position of the scene named by a key character, a script function, or "#" and a position */
  std::optional<std::size_t> find(std::string const& name) const;

  std::optional<std::size_t> getCurrent() const { return m_current; }
  void setCurrent(std::optional<std::size_t> index) { m_current = index; }

  /** \return the position `offset` places from the current one, wrapping around; none in an empty list */
  std::optional<std::size_t> neighbour(int offset) const;

  /** \return one line of text for the help overlay: what the scene is */
  static std::string describe(SceneDescription const& description);

private:
  std::vector<Entry> m_entries;
  std::optional<std::size_t> m_current;
};

} // namespace zorOSG
