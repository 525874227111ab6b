#pragma once

#include <zorPython/ScriptError.h>

#include <cstddef>
#include <mutex>
#include <optional>
#include <vector>

namespace zorPython {

/** The errors of scripts: records each kind once with its count, and reports without flooding the log. */
class ErrorLog {
public:
  /** Records an error and reports it if it is new or its count has reached a power of ten. */
  void add(ScriptError const& error);

  /** \return true if an error of the same kind has been recorded */
  bool isKnown(ScriptError const& error) const;

  std::vector<ScriptError> getErrors() const;
  /** \return the error that was added last */
  std::optional<ScriptError> getLatest() const;
  zor::UInt getCount() const;
  void clear();

private:
  zor::UInt record(ScriptError const& error);

  mutable std::mutex m_mutex;
  std::vector<ScriptError> m_errors;
  std::size_t m_latest = 0; // beyond the end if it is not among them
  zor::UInt m_count = 0;
};

} // namespace zorPython
