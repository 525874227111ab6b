#include "ListenerList.h"

#include <algorithm>

namespace zorOSG {

void ListenerList::add(ExampleApplicationListener* listener, bool ofScene) {
  auto const same = [listener](Entry const& entry) { return entry.listener == listener; };
  if (std::none_of(m_entries.begin(), m_entries.end(), same))
    m_entries.push_back({listener, ofScene});
}

void ListenerList::removeSceneListeners() {
  for (Entry& entry : m_entries)
    if (entry.ofScene)
      entry.listener = nullptr;
  tidy();
}

void ListenerList::tidy() {
  if (m_rounds == 0)
    std::erase_if(m_entries, [](Entry const& entry) { return !entry.listener; });
}

void ListenerList::call(Method method, ExampleApplication* app) {
  struct Round {
    ListenerList& list;
    explicit Round(ListenerList& l) : list(l) { ++list.m_rounds; }
    ~Round() {
      --list.m_rounds;
      list.tidy();
    }
  } const round(*this);
  // By position and up to the present end: a listener may add others, which are called from the next round
  // on.
  std::size_t const count = m_entries.size();
  for (std::size_t i = 0; i < count; ++i) {
    zor::ref_ptr<ExampleApplicationListener> const listener = m_entries[i].listener;
    if (listener)
      (listener.get()->*method)(app);
  }
}

} // namespace zorOSG
