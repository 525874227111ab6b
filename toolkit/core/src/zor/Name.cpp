#include <zor/Name.h>

#include <mutex>
#include <ostream>
#include <string_view>
#include <unordered_map>

namespace zor {

namespace {
typedef std::shared_ptr<String const> Text;

// Texts in use. Each text keeps the pool alive, so that names in static objects may die in any order.
class Pool : public std::enable_shared_from_this<Pool> {
public:
  Text intern(String const& text) {
    std::lock_guard const lock(m_mutex);
    auto const found = m_texts.find(text);
    if (found != m_texts.end()) {
      if (Text shared = found->second.lock()) {
        return shared;
      }
      m_texts.erase(found); // its last name is dying on another thread
    }
    Text shared(new String(text), [pool = shared_from_this()](String const* dying) { pool->remove(dying); });
    m_texts.emplace(std::string_view(*shared), shared);
    return shared;
  }

private:
  void remove(String const* dying) {
    std::unique_ptr<String const> const owned(dying);
    std::lock_guard const lock(m_mutex);
    auto const found = m_texts.find(*dying);
    // The entry may be that of a younger text of the same letters.
    if (found != m_texts.end() && found->first.data() == dying->data()) {
      m_texts.erase(found);
    }
  }

  std::mutex m_mutex;
  std::unordered_map<std::string_view, std::weak_ptr<String const>> m_texts;
};

Text intern(String const& text) {
  static std::shared_ptr<Pool> const pool = std::make_shared<Pool>();
  return pool->intern(text);
}
} // namespace

Name::Name() {
  static Text const empty = intern(String());
  m_text = empty;
}

Name::Name(String const& text) : m_text(intern(text)) {}

Name::Name(char const* text) : Name(text ? String(text) : String()) {}

std::ostream& operator<<(std::ostream& stream, Name const& name) {
  return stream << name.str();
}

} // namespace zor
