#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace zorOSG {

/** What a video is like, and how ffmpeg is told. */
struct VideoSettings {
  unsigned int width = 0;
  unsigned int height = 0;
  double fps = 0.0;
  unsigned int crf = 0; ///< 0 best to 51
  bool lossless = false;
  std::string codec;
  std::filesystem::path output;

  /** \return true for a kind of animated picture that can only be made of all frames: they are stored first
   */
  bool isAnimation() const;

  /** \return the name under which frames are stored as they come, beside the output */
  std::filesystem::path recording() const;

  /** \return what ffmpeg needs to read raw frames from a pipe and store them in recording() */
  std::vector<std::string> recordingArguments(std::filesystem::path const& pipe) const;

  /** \return what it needs to make the animation of recording() */
  std::vector<std::string> animationArguments(std::filesystem::path const& animation) const;
};

} // namespace zorOSG
