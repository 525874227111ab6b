#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

namespace zorUtil {

/**
 * Records how long tasks take, on any thread: sums for a table, and each single task for a timeline.
 *
 * There is one for the process. A TaskScope costs next to nothing while nobody records.
 */
class TaskRecorder {
public:
  using Clock = std::chrono::steady_clock;

  /// What has been recorded of one task.
  struct Sum {
    std::string name;        ///< name of the task
    std::uint64_t count = 0; ///< how often it was done
    double total = 0;        ///< time of all, seconds
    double longest = 0;      ///< time of the longest, seconds
  };

  static TaskRecorder& instance();

  /** \param enable - true to sum up times; what was summed up before is forgotten */
  void setEnableProfile(bool enable);

  /** \param enable - true to keep every task; what was kept before is forgotten */
  void setEnableTimeline(bool enable);

  bool getEnableProfile() const { return m_wanted.load(std::memory_order_relaxed) & PROFILE; }
  bool getEnableTimeline() const { return m_wanted.load(std::memory_order_relaxed) & TIMELINE; }

  /** \return true if anything is recorded */
  bool isOn() const { return m_wanted.load(std::memory_order_relaxed) != 0; }

  /** \param name - what the timeline calls the thread that calls this */
  void nameThread(std::string const& name);

  /**
   * Records a task of the calling thread. Where memory is short it is lost.
   * \param name - name of the task; must live as long as the process
   * \param begin - when it began
   * \param end - when it ended
   */
  void add(char const* name, Clock::time_point begin, Clock::time_point end) noexcept;

  /** \return the sums since the profile was enabled, the task with the largest one first */
  std::vector<Sum> getSums() const;

  /** \return the sums as a table for people: calls, seconds, mean, longest and share of the time since then
   */
  std::string formatSums() const;

  /**
   * Writes the tasks since the timeline was enabled as JSON in the trace-event format, which browsers and
   * trace viewers show. Only the first million is kept.
   * \param filename - file to write
   * \throws std::runtime_error that names the file if it can't be written
   */
  void writeTimeline(std::string const& filename) const;

private:
  enum Wanted : int { PROFILE = 1, TIMELINE = 2 };

  struct Task {
    char const* name;
    int thread;
    Clock::time_point begin;
    Clock::time_point end;
  };

  TaskRecorder() = default;
  void setWanted(Wanted what, bool enable);
  void addToSum(char const* name, double seconds);

  std::atomic<int> m_wanted{0};
  mutable std::mutex m_mutex;
  std::vector<Sum> m_sums;
  std::vector<Task> m_tasks;
  std::vector<std::string> m_threadNames; // by number
  Clock::time_point m_profileStart{};
  Clock::time_point m_timelineStart{};
};

/// Records the time from here to the end of the scope as a task.
class TaskScope {
public:
  /** \param name - name of the task; must live as long as the process */
  explicit TaskScope(char const* name) noexcept : m_name(TaskRecorder::instance().isOn() ? name : nullptr) {
    if (m_name)
      m_begin = TaskRecorder::Clock::now();
  }
  ~TaskScope() {
    if (m_name)
      TaskRecorder::instance().add(m_name, m_begin, TaskRecorder::Clock::now());
  }
  TaskScope(TaskScope const&) = delete;
  TaskScope& operator=(TaskScope const&) = delete;

private:
  char const* m_name;
  TaskRecorder::Clock::time_point m_begin{};
};

} // namespace zorUtil
