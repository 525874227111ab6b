#include <zorPython/ScriptManager.h>

#include <map>
#include <mutex>

namespace zorPython {

namespace {
template <class Function>
class Registry {
public:
  void set(zor::String const& typeName, Function function) {
    std::lock_guard const lock(m_mutex);
    if (function) {
      m_functions[typeName] = std::move(function);
    } else {
      m_functions.erase(typeName);
    }
  }

  // The empty name serves the types that have no converter of their own.
  Function get(zor::String const& typeName) const {
    std::lock_guard const lock(m_mutex);
    auto found = m_functions.find(typeName);
    if (found == m_functions.end()) {
      found = m_functions.find(zor::String());
    }
    return found == m_functions.end() ? Function() : found->second;
  }

private:
  mutable std::mutex m_mutex;
  std::map<zor::String, Function> m_functions;
};

Registry<ScriptManager::ToPython>& toPython() {
  static Registry<ScriptManager::ToPython> registry;
  return registry;
}

Registry<ScriptManager::FromPython>& fromPython() {
  static Registry<ScriptManager::FromPython> registry;
  return registry;
}
} // namespace

void ScriptManager::registerToPython(zor::String const& typeName, ToPython function) {
  toPython().set(typeName, std::move(function));
}

void ScriptManager::registerFromPython(zor::String const& typeName, FromPython function) {
  fromPython().set(typeName, std::move(function));
}

ScriptManager::ToPython ScriptManager::getToPython(zor::String const& typeName) {
  return toPython().get(typeName);
}

ScriptManager::FromPython ScriptManager::getFromPython(zor::String const& typeName) {
  return fromPython().get(typeName);
}

} // namespace zorPython
