#include "FfmpegProcess.h"

#include "AtomicFile.h"
#include "SigPipeGuard.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <thread>

namespace fs = std::filesystem;

namespace zorOSG {

namespace {

constexpr auto s_pollInterval = std::chrono::milliseconds(2);
constexpr int s_pipeSize = 1 << 20; // as much as every user may have

std::runtime_error pipeError(std::string const& where) {
  std::string const reason = std::strerror(errno);
  return std::runtime_error("cannot make the named pipe for the video encoder in '" + where + "': " + reason);
}

} // namespace

FfmpegProcess::FfmpegProcess(VideoSettings settings, std::chrono::milliseconds patience)
    : m_settings(std::move(settings)), m_patience(patience), m_program(ChildProcess::find("ffmpeg")) {
  if (m_program.empty()) {
    throw std::runtime_error("cannot make a video: the program 'ffmpeg' is not on PATH");
  }
  requireWritableDirectory(m_settings.output.parent_path());
  try {
    makePipe();
    m_process = std::make_unique<ChildProcess>(m_program, m_settings.recordingArguments(m_folder / "frames"));
    connect();
    removePipe();
  } catch (...) {
    // The destructor does not run for an object that was never complete.
    removePipe();
    m_process.reset();
    removeRecording();
    throw;
  }
}

FfmpegProcess::~FfmpegProcess() {
  closePipe();
  if (m_process) {
    m_process.reset();
    removeRecording();
  }
}

void FfmpegProcess::makePipe() {
  char const* const wanted = std::getenv("TMPDIR");
  fs::path const place = wanted && *wanted ? wanted : "/tmp";
  std::string name = (place / "zor_video_XXXXXX").string();
  if (!mkdtemp(name.data())) {
    throw pipeError(place.string());
  }
  m_folder = name;
  if (mkfifo((m_folder / "frames").c_str(), 0600) != 0) {
    throw pipeError(name);
  }
}

void FfmpegProcess::connect() {
  std::string const fifo = (m_folder / "frames").string();
  // Opening without blocking fails until the encoder reads, which lets us notice one that never will.
  while ((m_pipe = open(fifo.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC)) < 0) {
    if (errno != ENXIO && errno != EINTR) {
      throw pipeError(fifo);
    }
    if (m_process->hasEnded()) {
      throw std::runtime_error("the video encoder ended at once: " + m_process->lastWords());
    }
    if (m_process->isStuck(m_patience)) {
      throw std::runtime_error("the video encoder does not read its pipe");
    }
    std::this_thread::sleep_for(s_pollInterval);
  }
  fcntl(m_pipe, F_SETPIPE_SZ, s_pipeSize);
}

void FfmpegProcess::removePipe() noexcept {
  std::error_code ignored;
  if (!m_folder.empty()) {
    fs::remove_all(m_folder, ignored);
  }
  m_folder.clear();
}

void FfmpegProcess::closePipe() noexcept {
  if (m_pipe >= 0) {
    close(m_pipe);
    m_pipe = -1;
  }
}

void FfmpegProcess::writeFrame(unsigned char const* pixels, std::size_t size) {
  if (m_pipe < 0) {
    throw std::runtime_error("the video encoder has ended");
  }
  SigPipeGuard const guard;
  m_process->watch();
  while (size > 0) {
    ssize_t const written = write(m_pipe, pixels, size);
    if (written > 0) {
      pixels += written;
      size -= static_cast<std::size_t>(written);
    } else if (written < 0 && errno == EAGAIN) {
      waitForReader();
    } else if (written < 0 && errno != EINTR) {
      std::string const reason = std::strerror(errno);
      throw std::runtime_error(fail("the video encoder stopped (" + reason + ")"));
    }
  }
  m_hasFrames = true;
}

/** The encoder sets the pace, as long as it does something. */
void FfmpegProcess::waitForReader() {
  constexpr int interval = 100; // ms
  pollfd space{m_pipe, POLLOUT, 0};
  if (poll(&space, 1, interval) == 0 && m_process->isStuck(m_patience)) {
    throw std::runtime_error(fail("the video encoder takes no more frames"));
  }
}

void FfmpegProcess::finish() {
  if (!m_process) {
    return; // has failed, and said so
  }
  if (!m_hasFrames) {
    closePipe();
    m_process.reset(); // the encoder would store a file that no player opens
    removeRecording();
    throw std::runtime_error("no frame came for the video '" + m_settings.output.string() +
                             "', none is stored");
  }
  closePipe();
  std::string const failure = "the video encoder failed on '" + m_settings.output.string() + "'";
  if (!m_process->wait(m_patience)) {
    throw std::runtime_error(fail(failure));
  }
  if (m_settings.isAnimation()) {
    makeAnimation();
    return;
  }
  std::error_code error;
  fs::rename(m_settings.recording(), m_settings.output, error);
  if (error) {
    throw std::runtime_error(
        fail("cannot name the video '" + m_settings.output.string() + "': " + error.message()));
  }
  m_process.reset();
}

void FfmpegProcess::makeAnimation() {
  fs::path const animation = partialName(m_settings.output);
  m_process = std::make_unique<ChildProcess>(m_program, m_settings.animationArguments(animation));
  std::error_code error;
  bool const made = m_process->wait(m_patience);
  if (made) {
    fs::rename(animation, m_settings.output, error);
  }
  if (!made || error) {
    std::error_code ignored;
    fs::remove(animation, ignored);
    throw std::runtime_error(fail("the animation '" + m_settings.output.string() + "' could not be made"));
  }
  m_process.reset();
  removeRecording();
}

/** Ends the encoder for good. \return the message: what, why, and what is left */
std::string FfmpegProcess::fail(std::string const& what) {
  closePipe();
  m_process->wait(m_patience);
  std::string const words = m_process->lastWords();
  m_process.reset();
  return what + ": " + words + keepWhatCanBePlayed();
}

std::string FfmpegProcess::keepWhatCanBePlayed() {
  fs::path const recording = m_settings.recording();
  fs::path kept = m_settings.output;
  kept.replace_filename(kept.stem().string() + ".incomplete" + recording.extension().string());
  try {
    ChildProcess player(m_program, {"ffmpeg", "-v", "error", "-nostdin", "-i", "file:" + recording.string(),
                                    "-frames:v", "1", "-f", "null", "-"});
    if (player.wait(m_patience)) {
      fs::rename(recording, kept);
      return "; what was stored until then is in '" + kept.string() + "'";
    }
  } catch (
      std::exception const&) { // NOLINT(bugprone-empty-catch): there is an error under way that matters more
  }
  removeRecording();
  return "";
}

void FfmpegProcess::removeRecording() const noexcept {
  std::error_code ignored;
  fs::remove(m_settings.recording(), ignored);
}

} // namespace zorOSG
