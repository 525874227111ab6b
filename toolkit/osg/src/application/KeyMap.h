#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace zorOSG {

/// What a help text has under one heading: keys, or what else there is to do, and what each does.
struct HelpSection {
  std::string title;
  std::vector<std::pair<std::string, std::string>> lines;
};

/// The keys of an application: one table, by which keys act and help is written.
class KeyMap {
public:
  struct Binding {
    int key;
    std::string text; ///< what the key does, for help
    std::function<void()> action;
  };

  struct Group {
    std::string title;
    std::vector<Binding> bindings;
  };

  KeyMap() = default;

  /** Throws std::logic_error for a key that has two meanings. */
  explicit KeyMap(std::vector<Group> groups);

  /** \return what a key does; null if it means nothing */
  Binding const* find(int key) const;

  /** \param isTaken true for a key that means something else for now, and is left out */
  std::vector<HelpSection> describe(std::function<bool(int key)> const& isTaken) const;

  /** \return how help writes a key */
  static std::string labelOf(int key);

private:
  std::vector<Group> m_groups;
};

} // namespace zorOSG
