#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace zorOSG {

/// Tells when one of some files has been written anew.
class FileWatch {
public:
  /** \param files - the files to watch from now on, whether they exist or not */
  void watch(std::vector<std::filesystem::path> files);

  /** Watches nothing any more. */
  void clear() { m_files.clear(); }

  /**
   * Looks at the files, at most four times a second. A change counts when the files have stayed the same from
   * one look to the next: programs write large files in pieces, or take them away before they put new ones
   * there.
   * \return true once for each change
   */
  bool hasChanged();

private:
  using Clock = std::chrono::steady_clock;

  struct State {
    std::filesystem::file_time_type time;
    std::uintmax_t size = 0;
    bool operator==(State const&) const = default;
  };
  using States = std::vector<std::optional<State>>;

  States look() const;

  std::vector<std::filesystem::path> m_files;
  States m_known;
  States m_last;
  Clock::time_point m_lookedAt{};
};

} // namespace zorOSG
