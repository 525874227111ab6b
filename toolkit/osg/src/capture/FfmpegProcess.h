#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include <sys/types.h>

namespace zorOSG {

/**
 * An `ffmpeg` process that reads raw frames from a named pipe and writes a video file.
 *
 * The pipe and the encoder's log live in a private temporary folder. The video grows under a partial name
 * beside its final one, which it gets in finish().
 */
class FfmpegProcess {
public:
  struct Settings {
    unsigned int width = 0;
    unsigned int height = 0;
    double fps = 0.0;
    unsigned int crf = 0;
    bool lossless = false;
    std::string codec;
    std::filesystem::path output;
  };

  /**
   * Starts the encoder and connects the pipe.
   * \throws std::runtime_error if ffmpeg is not on PATH, the output folder can't be written to, or the
   * encoder ends before it reads.
   */
  explicit FfmpegProcess(Settings settings);

  /** Ends an encoder that was not finished and removes its partial file. */
  ~FfmpegProcess();
  FfmpegProcess(FfmpegProcess const&) = delete;
  FfmpegProcess& operator=(FfmpegProcess const&) = delete;

  Settings const& getSettings() const { return m_settings; }

  /**
   * Feeds one frame: 8-bit RGB, rows from bottom to top, without padding.
   * \throws std::runtime_error with the encoder's own words if it has ended.
   */
  void writeFrame(unsigned char const* pixels, std::size_t size);

  /**
   * Closes the pipe, waits for the encoder and gives the video its name.
   * \throws std::runtime_error if there was no frame, and with the encoder's own words if it failed; nothing
   * with the final name is then left behind.
   */
  void finish();

private:
  std::vector<std::string> arguments() const;
  void spawn(std::string const& program);
  void connect();
  bool ended();
  void closePipe();
  void abandon() noexcept;
  std::string lastWords() const;
  void removePartial() const;

  Settings m_settings;
  std::filesystem::path m_folder;
  std::filesystem::path m_partial;
  pid_t m_process = -1;
  int m_pipe = -1;
  int m_status = 0;
  bool m_hasFrames = false;
};

} // namespace zorOSG
