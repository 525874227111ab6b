#include <zorIO/Environment.h>

#include <cstdlib>

namespace zorIO {

Environment::Environment() {
  m_filePath.addList(getVariable("ZOR_FILE_PATH"));
}

Environment& Environment::instance() {
  static Environment environment;
  return environment;
}

zor::String Environment::getVariable(zor::String const& name, zor::String const& fallback) {
  char const* const value =
      std::getenv(name.c_str()); // NOLINT(concurrency-mt-unsafe): nobody here sets variables
  return value ? zor::String(value) : fallback;
}

} // namespace zorIO
