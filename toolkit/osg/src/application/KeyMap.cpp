#include "KeyMap.h"

#include <osgGA/GUIEventAdapter>

#include <cstdio>
#include <set>
#include <stdexcept>

namespace zorOSG {

namespace {

using Keys = osgGA::GUIEventAdapter;

} // namespace

KeyMap::KeyMap(std::vector<Group> groups) : m_groups(std::move(groups)) {
  std::set<int> seen;
  for (Group const& group : m_groups)
    for (Binding const& binding : group.bindings)
      if (!seen.insert(binding.key).second)
        throw std::logic_error("the key " + labelOf(binding.key) + " has two meanings");
}

KeyMap::Binding const* KeyMap::find(int key) const {
  for (Group const& group : m_groups)
    for (Binding const& binding : group.bindings)
      if (binding.key == key)
        return &binding;
  return nullptr;
}

std::vector<HelpSection> KeyMap::describe(std::function<bool(int key)> const& isTaken) const {
  std::vector<HelpSection> sections;
  for (Group const& group : m_groups) {
    HelpSection section{group.title, {}};
    for (Binding const& binding : group.bindings)
      if (!isTaken(binding.key))
        section.lines.emplace_back(labelOf(binding.key), binding.text);
    if (!section.lines.empty())
      sections.push_back(std::move(section));
  }
  return sections;
}

std::string KeyMap::labelOf(int key) {
  if (key >= 'A' && key <= 'Z')
    return std::string("Shift+") + static_cast<char>(key - 'A' + 'a');
  if (key > 32 && key < 127)
    return std::string(1, static_cast<char>(key));
  if (key == Keys::KEY_Space)
    return "Space";
  if (key == Keys::KEY_Escape)
    return "Esc";
  char label[16];
  if (key >= Keys::KEY_F1 && key <= Keys::KEY_F12)
    std::snprintf(label, sizeof label, "F%d", key - Keys::KEY_F1 + 1);
  else
    std::snprintf(label, sizeof label, "key %d", key);
  return label;
}

} // namespace zorOSG
