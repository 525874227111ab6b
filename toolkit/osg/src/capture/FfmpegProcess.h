#pragma once

#include "ChildProcess.h"
#include "VideoSettings.h"

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>

namespace zorOSG {

/**
 * An `ffmpeg` process that reads raw frames from a named pipe and writes a video file.
 *
 * The pipe is taken away as soon as both ends are open. The video grows under a partial name beside its final
 * one, which it gets in finish(). What was stored when the encoder failed is kept, if it can be played, as
 * "name.incomplete.suffix".
 */
class FfmpegProcess {
public:
  /**
   * Starts the encoder and connects the pipe.
   * \param patience - how long the encoder may do nothing at all before it is given up
   * \throws std::runtime_error if ffmpeg is not on PATH, the output folder can't be written to, the pipe
   * can't be made, or the encoder ends before it reads.
   */
  explicit FfmpegProcess(VideoSettings settings,
                         std::chrono::milliseconds patience = std::chrono::seconds(30));

  /** Ends an encoder that was not finished and removes its partial file. */
  ~FfmpegProcess();
  FfmpegProcess(FfmpegProcess const&) = delete;
  FfmpegProcess& operator=(FfmpegProcess const&) = delete;

  /**
   * Feeds one frame: 8-bit RGBA, rows from bottom to top, without padding.
   * \throws std::runtime_error with the encoder's own words if it has ended or does nothing.
   */
  void writeFrame(unsigned char const* pixels, std::size_t size);

  /** \return true if it has failed, and said so */
  bool hasFailed() const { return !m_process; }

  /**
   * Closes the pipe, waits for the encoder and gives the video its name.
   * \throws std::runtime_error if there was no frame, and with the encoder's own words if it failed; nothing
   * with the final name is then left behind.
   */
  void finish();

private:
  void makePipe();
  void connect();
  void removePipe() noexcept;
  void closePipe() noexcept;
  void waitForReader();
  void makeAnimation();
  std::string fail(std::string const& what);
  std::string keepWhatCanBePlayed();
  void removeRecording() const noexcept;

  VideoSettings m_settings;
  std::chrono::milliseconds m_patience;
  std::string m_program;
  std::filesystem::path m_folder;
  std::unique_ptr<ChildProcess> m_process;
  int m_pipe = -1;
  bool m_hasFrames = false;
};

} // namespace zorOSG
