#include "FileWatch.h"

#include <algorithm>
#include <utility>

namespace zorOSG {

namespace {

constexpr std::chrono::milliseconds INTERVAL{250};

} // namespace

void FileWatch::watch(std::vector<std::filesystem::path> files) {
  m_files = std::move(files);
  m_known = m_last = look();
  m_lookedAt = Clock::now();
}

bool FileWatch::hasChanged() {
  if (m_files.empty() || Clock::now() - m_lookedAt < INTERVAL)
    return false;
  m_lookedAt = Clock::now();
  States now = look();
  bool const settled =
      now == m_last && std::all_of(now.begin(), now.end(), [](auto const& s) { return !!s; });
  m_last = std::move(now);
  if (!settled || m_last == m_known)
    return false;
  m_known = m_last;
  return true;
}

FileWatch::States FileWatch::look() const {
  States states;
  for (std::filesystem::path const& file : m_files) {
    std::error_code error;
    State state;
    state.time = std::filesystem::last_write_time(file, error);
    if (!error)
      state.size = std::filesystem::file_size(file, error);
    states.push_back(error ? std::nullopt : std::optional(state));
  }
  return states;
}

} // namespace zorOSG
