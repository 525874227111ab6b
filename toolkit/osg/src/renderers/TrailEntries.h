#pragma once

#include <cstddef>
#include <unordered_map>
#include <utility>
#include <vector>

#include <zor/Vector.h>
#include <zor/observer_ptr.h>
#include <zor/ref_ptr.h>

namespace zorOSG {

/**
 * Brings entries into the order of the objects they stand for, which seldom changes but by new ones at the
 * end.
 * \param entries - with a member `object`, which observes \param make - gives the entry of a new object
 */
template <class Entry, class Object, class Make>
void followObjects(std::vector<Entry>& entries, zor::Vector<zor::ref_ptr<Object>> const& objects, Make make) {
  size_t known = 0;
  while (known < entries.size() && known < objects.size() && entries[known].object == objects[known].get())
    ++known;
  std::unordered_map<Object*, Entry> left;
  for (size_t i = known; i < entries.size(); ++i)
    if (Object* const object = entries[i].object.get())
      left.emplace(object, std::move(entries[i]));
  entries.resize(known);
  for (; known < objects.size(); ++known) {
    auto const found = left.find(objects[known].get());
    entries.push_back(found == left.end() ? make(*objects[known]) : std::move(found->second));
    if (found != left.end())
      left.erase(found); // an object is in the list once
  }
}

} // namespace zorOSG
