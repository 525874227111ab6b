#pragma once

#include <zor/Types.h>

#include <functional>
#include <memory>

namespace zor {

/** Text that is stored once per process, so that copies are cheap and comparison is that of two pointers. */
class Name {
public:
  /** The empty name. */
  Name();
  Name(String const& text);
  Name(char const* text);

  /** \return the text */
  String const& str() const { return *m_text; }
  char const* c_str() const { return m_text->c_str(); }
  /** \return true for the empty name */
  bool empty() const { return m_text->empty(); }
  /** \return a number that equal names share, in this process */
  std::size_t hash() const noexcept { return std::hash<String const*>()(m_text.get()); }

  bool operator==(Name const& other) const noexcept { return m_text == other.m_text; }
  bool operator<(Name const& other) const { return *m_text < *other.m_text; }

private:
  std::shared_ptr<String const> m_text;
};

std::ostream& operator<<(std::ostream& stream, Name const& name);

} // namespace zor

template <>
struct std::hash<zor::Name> {
  std::size_t operator()(zor::Name const& name) const noexcept { return name.hash(); }
};
