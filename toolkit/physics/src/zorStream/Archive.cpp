#include "zorStream/Archive.h"

namespace zorStream {

void Archive::enter(char const* name, bool list) {
  m_path.push_back({name, list, 0});
}

// One more element of the list that the archive is in.
void Archive::count() {
  if (!m_path.empty() && m_path.back().list)
    ++m_path.back().next;
}

void Archive::beginObject(char const* name) {
  openObject(name);
  enter(name, false);
}

void Archive::endObject() {
  closeObject();
  m_path.pop_back();
  count();
}

void Archive::beginList(char const* name, std::size_t& count) {
  openList(name, count, false);
  enter(name, true);
}

void Archive::beginTuple(char const* name, std::size_t count) {
  std::size_t found = count;
  openList(name, found, true);
  if (found != count)
    fail(name, "has " + std::to_string(found) + " elements, but must have " + std::to_string(count));
  enter(name, true);
}

bool Archive::beginNumbers(char const* name, std::size_t& count, std::size_t size) {
  bool const packed = openNumbers(name, count, size);
  enter(name, true);
  return packed;
}

void Archive::endList() {
  closeList();
  m_path.pop_back();
  count();
}

bool Archive::optional(char const* name, bool present) {
  return testPresence(name, present);
}

void Archive::value(char const* name, bool& value) {
  takeNext(name, value);
}

void Archive::value(char const* name, std::int64_t& value) {
  takeNext(name, value);
}

void Archive::value(char const* name, std::uint64_t& value) {
  takeNext(name, value);
}

void Archive::value(char const* name, double& value) {
  takeNext(name, value);
}

void Archive::value(char const* name, std::string& value) {
  takeNext(name, value);
}

std::string Archive::placeOf(char const* name) const {
  std::string place;
  for (std::size_t i = 0; i < m_path.size(); ++i) {
    if (m_path[i].name)
      place += (place.empty() ? "" : ".") + std::string(m_path[i].name);
    bool const innermost = i + 1 == m_path.size();
    if (m_path[i].list && (!innermost || !name)) // an element of the list
      place += "[" + std::to_string(m_path[i].next) + "]";
  }
  if (name)
    place += (place.empty() ? "" : ".") + std::string(name);
  return place;
}

void Archive::fail(char const* name, std::string const& what) const {
  std::string const place = placeOf(name);
  std::string const at = position();
  throw ArchiveError((place.empty() ? "" : place + ": ") + what + (at.empty() ? "" : " (" + at + ")"));
}

} // namespace zorStream
