#include <zorUtil/TaskRecorder.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <utility>

namespace zorUtil {

namespace {

using Seconds = std::chrono::duration<double>;

constexpr std::size_t MAX_TASKS = 1000000;

int threadNumber() {
  static std::atomic<int> next{0};
  thread_local int const number = next++;
  return number;
}

double microseconds(TaskRecorder::Clock::duration time) {
  return std::chrono::duration<double, std::micro>(time).count();
}

/** Names of tasks and threads are the program's own: they need no more escaping than this. */
std::string quoted(std::string text) {
  for (char& c : text) {
    if (c == '"' || c == '\\' || static_cast<unsigned char>(c) < 32) {
      c = '\'';
    }
  }
  return '"' + text + '"';
}

} // namespace

TaskRecorder& TaskRecorder::instance() {
  static TaskRecorder recorder;
  return recorder;
}

void TaskRecorder::setWanted(Wanted what, bool enable) {
  if (enable) {
    m_wanted |= what;
  } else {
    m_wanted &= ~what;
  }
}

void TaskRecorder::setEnableProfile(bool enable) {
  std::lock_guard const lock(m_mutex);
  if (enable && !getEnableProfile()) {
    m_sums.clear();
    m_profileStart = Clock::now();
  }
  setWanted(PROFILE, enable);
}

void TaskRecorder::setEnableTimeline(bool enable) {
  std::lock_guard const lock(m_mutex);
  if (enable && !getEnableTimeline()) {
    m_tasks.clear();
    m_timelineStart = Clock::now();
  }
  setWanted(TIMELINE, enable);
}

void TaskRecorder::nameThread(std::string const& name) {
  std::lock_guard const lock(m_mutex);
  auto const number = static_cast<std::size_t>(threadNumber());
  if (m_threadNames.size() <= number) {
    m_threadNames.resize(number + 1);
  }
  m_threadNames[number] = name;
}

void TaskRecorder::add(char const* name, Clock::time_point begin, Clock::time_point end) noexcept {
  try {
    std::lock_guard const lock(m_mutex);
    if (getEnableProfile()) {
      addToSum(name, Seconds(end - begin).count());
    }
    if (getEnableTimeline() && m_tasks.size() < MAX_TASKS) {
      m_tasks.push_back({name, threadNumber(), begin, end});
    }
  } catch (...) { // a record that is lost does no harm
  }
}

void TaskRecorder::addToSum(char const* name, double seconds) {
  auto found =
      std::find_if(m_sums.begin(), m_sums.end(), [name](Sum const& sum) { return sum.name == name; });
  if (found == m_sums.end()) {
    found = m_sums.insert(found, Sum{name});
  }
  ++found->count;
  found->total += seconds;
  found->longest = std::max(found->longest, seconds);
}

std::vector<TaskRecorder::Sum> TaskRecorder::getSums() const {
  std::lock_guard const lock(m_mutex);
  std::vector<Sum> sums = m_sums;
  std::sort(sums.begin(), sums.end(), [](Sum const& a, Sum const& b) { return a.total > b.total; });
  return sums;
}

std::string TaskRecorder::formatSums() const {
  double const elapsed = std::max(Seconds(Clock::now() - m_profileStart).count(), 1e-9);
  std::string table = "task                    calls    total, s   mean, ms    max, ms   share\n";
  char line[160];
  for (Sum const& sum : getSums()) {
    std::snprintf(line, sizeof line, "%-20s %8llu  %10.3f %10.3f %10.3f  %5.1f %%\n", sum.name.c_str(),
                  static_cast<unsigned long long>(sum.count), sum.total,
                  1e3 * sum.total / static_cast<double>(sum.count), 1e3 * sum.longest,
                  100 * sum.total / elapsed);
    table += line;
  }
  return table;
}

void TaskRecorder::writeTimeline(std::string const& filename) const {
  std::lock_guard const lock(m_mutex);
  std::ofstream file(filename);
  file << "{\"traceEvents\":[\n";
  for (std::size_t i = 0; i < m_threadNames.size(); ++i) {
    if (!m_threadNames[i].empty()) {
      file << "{\"name\":\"thread_name\",\"ph\":\"M\",\"pid\":1,\"tid\":" << i
           << ",\"args\":{\"name\":" << quoted(m_threadNames[i]) << "}},\n";
    }
  }
  char times[80];
  for (Task const& task : m_tasks) {
    std::snprintf(times, sizeof times, "\"ts\":%.1f,\"dur\":%.1f", microseconds(task.begin - m_timelineStart),
                  microseconds(task.end - task.begin));
    file << "{\"name\":" << quoted(task.name) << ",\"ph\":\"X\",\"pid\":1,\"tid\":" << task.thread << ","
         << times << "},\n";
  }
  file << "{\"name\":\"process_name\",\"ph\":\"M\",\"pid\":1,\"args\":{\"name\":\"zorOSG\"}}]}\n";
  file.close();
  if (!file) {
    throw std::runtime_error("the timeline can't be written to \"" + filename + "\"");
  }
}

} // namespace zorUtil
