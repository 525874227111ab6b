#include "FfmpegProcess.h"

#include "AtomicFile.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace fs = std::filesystem;

namespace zorOSG {

namespace {

constexpr auto s_connectTimeout = std::chrono::seconds(30);
constexpr auto s_pollInterval = std::chrono::milliseconds(5);

std::runtime_error systemError(std::string const& what) {
  return std::runtime_error(what + ": " + std::strerror(errno));
}

std::string findOnPath(std::string const& program) {
  char const* variable = std::getenv("PATH");
  std::istringstream folders(variable ? variable : "");
  for (std::string folder; std::getline(folders, folder, ':');) {
    fs::path const candidate = fs::path(folder.empty() ? "." : folder) / program;
    if (access(candidate.c_str(), X_OK) == 0 && fs::is_regular_file(candidate)) {
      return candidate.string();
    }
  }
  throw std::runtime_error("cannot make a video: the program '" + program + "' is not on PATH");
}

/** Keeps SIGPIPE from this thread, so that an encoder that ends early shows as an error of write(). */
class SigPipeGuard {
public:
  SigPipeGuard() {
    sigemptyset(&m_pipe);
    sigaddset(&m_pipe, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &m_pipe, &m_old);
  }
  ~SigPipeGuard() {
    if (sigismember(&m_old, SIGPIPE) == 0) {
      timespec const now = {0, 0};
      while (sigtimedwait(&m_pipe, nullptr, &now) == SIGPIPE) {
      }
    }
    pthread_sigmask(SIG_SETMASK, &m_old, nullptr);
  }
  SigPipeGuard(SigPipeGuard const&) = delete;
  SigPipeGuard& operator=(SigPipeGuard const&) = delete;

private:
  sigset_t m_pipe;
  sigset_t m_old;
};

fs::path makePrivateFolder() {
  std::string name = (fs::temp_directory_path() / "zor_video_XXXXXX").string();
  if (!mkdtemp(name.data())) {
    throw systemError("cannot make a temporary folder '" + name + "'");
  }
  return name;
}

} // namespace

FfmpegProcess::FfmpegProcess(Settings settings) : m_settings(std::move(settings)) {
  std::string const program = findOnPath("ffmpeg");
  requireWritableDirectory(m_settings.output.parent_path());
  m_partial = partialName(m_settings.output);
  m_folder = makePrivateFolder();
  try {
    if (mkfifo((m_folder / "frames").c_str(), 0600) != 0) {
      throw systemError("cannot make the named pipe for the video encoder");
    }
    spawn(program);
    connect();
  } catch (...) {
    // The destructor does not run for an object that was never complete.
    abandon();
    throw;
  }
}

FfmpegProcess::~FfmpegProcess() {
  abandon();
}

void FfmpegProcess::abandon() noexcept {
  closePipe();
  if (m_process > 0) {
    kill(m_process, SIGKILL);
    waitpid(m_process, &m_status, 0);
    m_process = -1;
    removePartial();
  }
  std::error_code ignored;
  fs::remove_all(m_folder, ignored);
}

std::vector<std::string> FfmpegProcess::arguments() const {
  std::ostringstream rate;
  rate.precision(12);
  rate << m_settings.fps;
  bool const rgb = m_settings.codec == "libx264rgb";
  // Frames come bottom row first. Chroma is stored at half resolution, which needs an even size.
  std::string const filter = rgb ? "vflip" : "vflip,pad=ceil(iw/2)*2:ceil(ih/2)*2";
  std::vector<std::string> args = {"ffmpeg",
                                   "-hide_banner",
                                   "-loglevel",
                                   "error",
                                   "-nostdin",
                                   "-y",
                                   "-f",
                                   "rawvideo",
                                   "-pixel_format",
                                   "rgb24",
                                   "-video_size",
                                   std::to_string(m_settings.width) + "x" + std::to_string(m_settings.height),
                                   "-framerate",
                                   rate.str(),
                                   "-i",
                                   (m_folder / "frames").string()};
  auto const add = [&args](std::initializer_list<std::string> more) { args.insert(args.end(), more); };
  add({"-an", "-vf", filter, "-c:v", m_settings.codec});
  if (m_settings.codec == "libxvid") {
    // This encoder has no rate factor; its quantiser runs from 1 (best) to 31.
    unsigned int const quantiser = m_settings.lossless ? 1u : 1u + m_settings.crf * 30u / 51u;
    add({"-q:v", std::to_string(quantiser), "-pix_fmt", "yuv420p"});
  } else {
    add({"-preset", "veryfast", "-crf", std::to_string(m_settings.lossless ? 0u : m_settings.crf)});
    add({"-pix_fmt", rgb ? "rgb24" : "yuv420p"});
  }
  add({"file:" + m_partial.string()});
  return args;
}

void FfmpegProcess::spawn(std::string const& program) {
  std::vector<std::string> args = arguments();
  std::vector<char*> argv;
  argv.reserve(args.size() + 1);
  for (std::string& arg : args) {
    argv.push_back(arg.data());
  }
  argv.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  std::string const log = (m_folder / "log").string();
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, log.c_str(), O_WRONLY | O_CREAT, 0600);
  // A process group of its own: Ctrl-C is for the simulation, which then ends the video in good order.
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
  posix_spawnattr_setpgroup(&attributes, 0);
  int const error = posix_spawn(&m_process, program.c_str(), &actions, &attributes, argv.data(), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) {
    m_process = -1;
    errno = error;
    throw systemError("cannot start the video encoder '" + program + "'");
  }
}

void FfmpegProcess::connect() {
  std::string const fifo = (m_folder / "frames").string();
  auto const deadline = std::chrono::steady_clock::now() + s_connectTimeout;
  // Opening without blocking fails until the encoder reads, which lets us notice one that never will.
  while ((m_pipe = open(fifo.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC)) < 0) {
    if (errno != ENXIO && errno != EINTR) {
      throw systemError("cannot open the pipe to the video encoder");
    }
    if (ended()) {
      throw std::runtime_error("the video encoder ended at once: " + lastWords());
    }
    if (std::chrono::steady_clock::now() > deadline) {
      throw std::runtime_error("the video encoder does not read its pipe");
    }
    std::this_thread::sleep_for(s_pollInterval);
  }
  int const flags = fcntl(m_pipe, F_GETFL);
  fcntl(m_pipe, F_SETFL, flags & ~O_NONBLOCK);
}

bool FfmpegProcess::ended() {
  if (m_process > 0 && waitpid(m_process, &m_status, WNOHANG) == m_process) {
    m_process = -1;
  }
  return m_process < 0;
}

void FfmpegProcess::writeFrame(unsigned char const* pixels, std::size_t size) {
  if (m_pipe < 0) {
    throw std::runtime_error("the video encoder has ended");
  }
  SigPipeGuard const guard;
  while (size > 0) {
    ssize_t const written = write(m_pipe, pixels, size);
    if (written < 0 && errno == EINTR) {
      continue;
    }
    if (written < 0) {
      std::string const reason = std::strerror(errno);
      closePipe();
      waitpid(m_process, &m_status, 0);
      m_process = -1;
      removePartial();
      throw std::runtime_error("the video encoder stopped (" + reason + "): " + lastWords());
    }
    pixels += written;
    size -= static_cast<std::size_t>(written);
  }
  m_hasFrames = true;
}

void FfmpegProcess::finish() {
  if (!m_hasFrames && m_process > 0) {
    abandon(); // the encoder would store a file that no player opens
    throw std::runtime_error("no frame came for the video '" + m_settings.output.string() +
                             "', none is stored");
  }
  closePipe();
  if (m_process > 0) {
    while (waitpid(m_process, &m_status, 0) < 0 && errno == EINTR) {
    }
    m_process = -1;
  }
  bool const ok = WIFEXITED(m_status) && WEXITSTATUS(m_status) == 0;
  if (!ok) {
    removePartial();
    throw std::runtime_error("the video encoder failed on '" + m_settings.output.string() +
                             "': " + lastWords());
  }
  std::error_code error;
  fs::rename(m_partial, m_settings.output, error);
  if (error) {
    removePartial();
    throw std::runtime_error("cannot name the video '" + m_settings.output.string() +
                             "': " + error.message());
  }
}

void FfmpegProcess::closePipe() {
  if (m_pipe >= 0) {
    close(m_pipe);
    m_pipe = -1;
  }
}

std::string FfmpegProcess::lastWords() const {
  std::ifstream log(m_folder / "log");
  std::string const text((std::istreambuf_iterator<char>(log)), std::istreambuf_iterator<char>());
  constexpr std::size_t maxLength = 2000;
  std::string words = text.size() > maxLength ? text.substr(text.size() - maxLength) : text;
  while (!words.empty() && words.back() == '\n') {
    words.pop_back();
  }
  return words.empty() ? "it left no message" : words;
}

void FfmpegProcess::removePartial() const {
  std::error_code ignored;
  fs::remove(m_partial, ignored);
}

} // namespace zorOSG
