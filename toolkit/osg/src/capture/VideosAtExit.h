#pragma once

namespace zorOSG {

class VideoFFMPEGPipeCapture;

/** Finishes the videos that nobody has stopped when the program ends: an interpreter does not destroy
 * everything. */
class VideosAtExit {
public:
  static void add(VideoFFMPEGPipeCapture* video);
  static void remove(VideoFFMPEGPipeCapture* video) noexcept;
};

} // namespace zorOSG
