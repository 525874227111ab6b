#include "ErrorLog.h"

#include <zor/Notify.h>

#include <algorithm>

namespace zorPython {

namespace {
constexpr std::size_t MAX_KINDS = 256;

bool isSameKind(ScriptError const& a, ScriptError const& b) {
  bool const samePlace = a.label == b.label && a.type == b.type && a.file == b.file && a.line == b.line;
  // Without a place only the text tells two errors apart.
  return samePlace && (a.line > 0 || a.message == b.message);
}

bool isPowerOfTen(zor::UInt number) {
  while (number >= 10 && number % 10 == 0) {
    number /= 10;
  }
  return number == 1;
}

void report(ScriptError const& error, zor::UInt count) {
  zor::String text = error.type.empty() ? error.message : error.type + ": " + error.message;
  if (count > 1) {
    text = "the same error for the " + std::to_string(count) + "th time: " + text;
  } else if (!error.traceback.empty()) {
    text = "script error\n" + error.traceback;
    text.erase(text.find_last_not_of('\n') + 1);
  }
  zor::Notify::instance().send({zor::Notify::NOTIFY_ERROR, text, error.label, error.file, error.line});
}
} // namespace

void ErrorLog::add(ScriptError const& error) {
  zor::UInt const count = record(error);
  if (isPowerOfTen(count)) {
    report(error, count);
  }
}

zor::UInt ErrorLog::record(ScriptError const& error) {
  std::lock_guard const lock(m_mutex);
  ++m_count;
  auto const same = std::find_if(m_errors.begin(), m_errors.end(),
                                 [&error](ScriptError const& known) { return isSameKind(known, error); });
  m_latest = static_cast<std::size_t>(same - m_errors.begin());
  if (same != m_errors.end()) {
    return ++same->count;
  }
  if (m_errors.size() == MAX_KINDS) {
    return m_count; // no room to tell new from old: reported as rarely as a repetition
  }
  m_errors.push_back(error);
  m_errors.back().count = 1;
  return 1;
}

bool ErrorLog::isKnown(ScriptError const& error) const {
  std::lock_guard const lock(m_mutex);
  return std::any_of(m_errors.begin(), m_errors.end(),
                     [&error](ScriptError const& known) { return isSameKind(known, error); });
}

std::vector<ScriptError> ErrorLog::getErrors() const {
  std::lock_guard const lock(m_mutex);
  return m_errors;
}

std::optional<ScriptError> ErrorLog::getLatest() const {
  std::lock_guard const lock(m_mutex);
  return m_latest < m_errors.size() ? std::optional(m_errors[m_latest]) : std::nullopt;
}

zor::UInt ErrorLog::getCount() const {
  std::lock_guard const lock(m_mutex);
  return m_count;
}

void ErrorLog::clear() {
  std::lock_guard const lock(m_mutex);
  m_errors.clear();
  m_count = 0;
}

} // namespace zorPython
