#include "ChildProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace fs = std::filesystem;

namespace zorOSG {

namespace {

constexpr std::size_t s_maxWords = 2000;
constexpr auto s_pollInterval = std::chrono::milliseconds(5);

/** How the program is started: what it reads and says, its group and its signals. */
class SpawnSettings {
public:
  explicit SpawnSettings(int log) {
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, log, STDERR_FILENO);
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes,
                             POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    posix_spawnattr_setpgroup(&attributes, 0);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes, &signals);
    for (int const signal : {SIGINT, SIGTERM, SIGPIPE})
      sigaddset(&signals, signal);
    posix_spawnattr_setsigdefault(&attributes, &signals);
  }
  ~SpawnSettings() {
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
  }
  SpawnSettings(SpawnSettings const&) = delete;
  SpawnSettings& operator=(SpawnSettings const&) = delete;

  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
};

} // namespace

ChildProcess::ChildProcess(std::string const& path, std::vector<std::string> arguments)
    : m_log(memfd_create("log", MFD_CLOEXEC)) {
  std::vector<char*> argv;
  argv.reserve(arguments.size() + 1);
  for (std::string& argument : arguments)
    argv.push_back(argument.data());
  argv.push_back(nullptr);
  SpawnSettings const settings(m_log);
  int const error =
      posix_spawn(&m_process, path.c_str(), &settings.actions, &settings.attributes, argv.data(), environ);
  if (error != 0) {
    m_process = -1;
    if (m_log >= 0)
      close(m_log);
    throw std::runtime_error("cannot start '" + path + "': " + std::strerror(error));
  }
}

ChildProcess::~ChildProcess() {
  end();
  close(m_log);
}

std::string ChildProcess::find(std::string const& program) {
  char const* variable = std::getenv("PATH");
  std::istringstream folders(variable ? variable : "");
  for (std::string folder; std::getline(folders, folder, ':');) {
    fs::path const candidate = fs::path(folder.empty() ? "." : folder) / program;
    std::error_code ignored;
    if (access(candidate.c_str(), X_OK) == 0 && fs::is_regular_file(candidate, ignored))
      return candidate.string();
  }
  return "";
}

bool ChildProcess::hasEnded() {
  if (m_process < 0)
    return true;
  pid_t const ended = waitpid(m_process, &m_status, WNOHANG);
  // Somebody else in this program may have waited for it.
  if (ended == m_process || (ended < 0 && errno == ECHILD))
    m_process = -1;
  return m_process < 0;
}

/** User and system time in ticks, from the fields behind the name, which may have any characters. */
unsigned long long ChildProcess::processorTime() const {
  std::ifstream file("/proc/" + std::to_string(m_process) + "/stat");
  std::string text;
  std::getline(file, text);
  std::istringstream fields(text.substr(std::min(text.size(), text.rfind(')') + 1)));
  std::string skipped;
  for (int i = 0; i < 11; ++i)
    fields >> skipped;
  unsigned long long user = 0, system = 0;
  fields >> user >> system;
  return user + system;
}

bool ChildProcess::isStuck(std::chrono::milliseconds patience) {
  unsigned long long const used = processorTime();
  if (used != m_processorTime) {
    m_processorTime = used;
    m_progress = Clock::now();
  }
  return Clock::now() - m_progress > patience;
}

bool ChildProcess::waitFor(std::chrono::milliseconds patience) {
  watch();
  while (!hasEnded()) {
    if (isStuck(patience))
      return false;
    std::this_thread::sleep_for(s_pollInterval);
  }
  return true;
}

bool ChildProcess::wait(std::chrono::milliseconds patience) {
  if (!waitFor(patience)) {
    m_wasStuck = true;
    kill(-m_process, SIGCONT);
    kill(-m_process, SIGINT);
    waitFor(patience);
    end();
  }
  return !m_wasStuck && WIFEXITED(m_status) && WEXITSTATUS(m_status) == 0;
}

void ChildProcess::end() noexcept {
  if (m_process < 0)
    return;
  kill(-m_process, SIGKILL);
  while (waitpid(m_process, &m_status, 0) < 0 && errno == EINTR) {
  }
  m_process = -1;
}

std::string ChildProcess::lastWords() const {
  std::string words;
  off_t const size = lseek(m_log, 0, SEEK_END);
  if (size > 0) {
    words.resize(std::min(static_cast<std::size_t>(size), s_maxWords));
    ssize_t const got = pread(m_log, words.data(), words.size(), size - static_cast<off_t>(words.size()));
    words.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
  }
  words.erase(words.find_last_not_of('\n') + 1);
  if (m_wasStuck)
    words.insert(0, words.empty() ? "it no longer did anything" : "it no longer did anything; ");
  else if (WIFSIGNALED(m_status))
    words.insert(0, std::string("it was ended by the signal '") + strsignal(WTERMSIG(m_status)) +
                        (words.empty() ? "'" : "'; "));
  return words.empty() ? "it left no message" : words;
}

} // namespace zorOSG
