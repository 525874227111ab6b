#include <zor/Notify.h>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <iostream>
#include <map>
#include <mutex>
#include <new>
#include <sstream>
#include <stdexcept>

namespace zor {

namespace {
// What a thread is writing: its text so far, and where it comes from.
struct ThreadMessage {
  std::ostringstream stream;
  NotifyMessage message{Notify::NOTIFY_INFO, {}, {}, {}, 0};
};

// A stream without a buffer fails at once and so formats nothing: the cheap way to swallow a message.
struct SwallowingStream {
  std::ostream stream{nullptr};
};

// The calling thread's T. The main thread's dies before static objects do, which may still log: they share
// one that is never destroyed.
template <class T>
T& perThread() {
  thread_local bool gone = false; // trivial, so it may be read to the very end
  struct Slot {
    T value;
    ~Slot() { gone = true; }
  };
  if (gone) {
    alignas(T) static unsigned char storage[sizeof(T)];
    static T* const last = new (storage) T;
    return *last;
  }
  thread_local Slot slot;
  return slot.value;
}

ThreadMessage& threadMessage() {
  return perThread<ThreadMessage>();
}

std::ostream& swallowingStream() {
  return perThread<SwallowingStream>().stream;
}

thread_local bool t_sending = false; // a target that writes to the log must not be sent its own message

String withoutLineEnd(String text) {
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) {
    text.pop_back();
  }
  return text;
}
} // namespace

struct Notify::Impl {
  std::atomic<int> level{NOTIFY_WARNING};
  std::atomic<bool> console{true};
  mutable std::mutex mutex;
  std::ofstream file;
  String filename;
  std::map<int, Target> targets;
  int nextTarget = 1;

  void writeLine(String const& line) {
    std::lock_guard const lock(mutex);
    if (console) {
      std::cerr << line << '\n' << std::flush;
    }
    if (file.is_open()) {
      file << line << '\n' << std::flush;
    }
  }

  std::map<int, Target> getTargets() const {
    std::lock_guard const lock(mutex);
    return targets;
  }
};

String NotifyMessage::format() const {
  String result = Notify::getLevelName(level);
  if (!file.empty()) {
    result += " at " + file + (line > 0 ? ":" + std::to_string(line) : String());
  }
  if (!function.empty()) {
    result += " in " + function;
  }
  return result + ": " + text;
}

Notify::Notify() : m_impl(std::make_unique<Impl>()) {}

Notify::~Notify() = default;

Notify& Notify::instance() {
  // Never destroyed: static objects log from their destructors.
  alignas(Notify) static unsigned char storage[sizeof(Notify)];
  static Notify* const log = new (storage) Notify;
  return *log;
}

void Notify::setDebugStrings(String const& function, String const& file, int line, int level) {
  NotifyMessage& message = threadMessage().message;
  message.function = function;
  message.file = file;
  message.line = line;
  message.level = std::clamp<int>(level, NOTIFY_DEBUG, NOTIFY_ERROR);
}

std::ostream& Notify::stream() {
  return threadMessage().stream;
}

std::ostream& Notify::stream(NotifyLevel level) {
  if (level < getNotifyLevel()) {
    return swallowingStream();
  }
  threadMessage().message.level = level;
  return stream();
}

void Notify::endMessage() {
  ThreadMessage& thread = threadMessage();
  NotifyMessage message{NOTIFY_INFO, {}, {}, {}, 0};
  std::swap(message, thread.message);
  message.text = withoutLineEnd(std::move(thread.stream).str());
  thread.stream = std::ostringstream(); // forgets format flags and errors as well
  if (!message.text.empty()) {
    send(message);
  }
}

void Notify::send(NotifyMessage const& message) {
  if (message.level < getNotifyLevel()) {
    return;
  }
  m_impl->writeLine(message.format());
  if (t_sending) {
    return;
  }
  t_sending = true;
  for (auto const& [id, target] : m_impl->getTargets()) {
    try {
      target(message);
    } catch (...) { // NOLINT(bugprone-empty-catch): whoever logs must not fail because somebody listens
    }
  }
  t_sending = false;
}

void Notify::setNotifyLevel(int level) {
  m_impl->level = level;
}

int Notify::getNotifyLevel() const {
  return m_impl->level.load(std::memory_order_relaxed);
}

void Notify::setEnableConsole(bool enable) {
  m_impl->console = enable;
}

bool Notify::getEnableConsole() const {
  return m_impl->console;
}

void Notify::setLogFile(String const& filename, bool append) {
  std::ofstream file;
  if (!filename.empty()) {
    file.open(filename, append ? std::ios::app : std::ios::trunc);
    if (!file) {
      throw std::runtime_error("can't open the log file \"" + filename + "\" for writing");
    }
  }
  std::lock_guard const lock(m_impl->mutex);
  m_impl->file = std::move(file);
  m_impl->filename = filename;
}

String Notify::getLogFile() const {
  std::lock_guard const lock(m_impl->mutex);
  return m_impl->filename;
}

int Notify::addTarget(Target target) {
  if (!target) {
    throw std::invalid_argument("a target of the notification log must be a function");
  }
  std::lock_guard const lock(m_impl->mutex);
  m_impl->targets.emplace(m_impl->nextTarget, std::move(target));
  return m_impl->nextTarget++;
}

void Notify::removeTarget(int id) {
  std::lock_guard const lock(m_impl->mutex);
  m_impl->targets.erase(id);
}

char const* Notify::getLevelName(int level) {
  switch (level) {
  case NOTIFY_DEBUG:
    return "Debug";
  case NOTIFY_LOW:
    return "Low";
  case NOTIFY_INFO:
    return "Info";
  case NOTIFY_WARNING:
    return "Warning";
  default:
    return "Error";
  }
}

std::ostream& notify(Notify::NotifyLevel level) {
  return Notify::instance().stream(level);
}

std::ostream& endMessage(std::ostream& stream) {
  if (&stream == &threadMessage().stream) {
    Notify::instance().endMessage();
  } else if (&stream != &swallowingStream()) {
    stream << '\n' << std::flush;
  }
  return stream;
}

} // namespace zor
