#include "SceneList.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

namespace zorOSG {

bool SceneList::add(SceneDescription const& description, std::optional<int> key) {
  if (!description.isValid() || (key && findKey(*key)))
    return false;
  m_entries.push_back({description, key});
  return true;
}

void SceneList::clear() {
  m_entries.clear();
  m_current.reset();
}

SceneList::Entry const& SceneList::at(std::size_t index) const {
  if (index >= m_entries.size())
    throw std::out_of_range("no scene at position " + std::to_string(index) + ": " +
                            std::to_string(m_entries.size()) + " registered");
  return m_entries[index];
}

std::optional<std::size_t> SceneList::findKey(int key) const {
  auto const found = std::find_if(m_entries.begin(), m_entries.end(),
                                  [key](Entry const& entry) { return entry.key == key; });
  if (found == m_entries.end())
    return std::nullopt;
  return static_cast<std::size_t>(found - m_entries.begin());
}

std::optional<std::size_t> SceneList::find(std::string const& name) const {
  if (name.size() == 1 && findKey(static_cast<unsigned char>(name[0])))
    return findKey(static_cast<unsigned char>(name[0]));
  auto const found = std::find_if(m_entries.begin(), m_entries.end(), [&name](Entry const& entry) {
    return !name.empty() && entry.description.scriptFunction == name;
  });
  if (found != m_entries.end())
    return static_cast<std::size_t>(found - m_entries.begin());
  std::size_t index = 0;
  char const* const end = name.data() + name.size();
  if (name.size() < 2 || name[0] != '#')
    return std::nullopt;
  auto const [last, error] = std::from_chars(name.data() + 1, end, index);
  if (error != std::errc() || last != end || index >= m_entries.size())
    return std::nullopt;
  return index;
}

std::optional<std::size_t> SceneList::neighbour(int offset) const {
  if (m_entries.empty())
    return std::nullopt;
  auto const count = static_cast<int>(m_entries.size());
  if (!m_current)
    return offset > 0 ? 0 : count - 1;
  return static_cast<std::size_t>((static_cast<int>(*m_current) + offset % count + count) % count);
}

std::string SceneList::describe(SceneDescription const& description) {
  if (description.scene)
    return "built-in scene";
  if (description.scriptFunction.empty())
    return description.fileName;
  return description.scriptFunction + " (" + description.fileName + ")";
}

} // namespace zorOSG
