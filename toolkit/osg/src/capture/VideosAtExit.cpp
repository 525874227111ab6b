#include "VideosAtExit.h"

#include <zor/Notify.h>
#include <zorOSG/VideoFFMPEGPipeCapture.h>

#include <cstdlib>
#include <mutex>
#include <set>

namespace zorOSG {

namespace {

struct Running {
  std::mutex mutex;
  std::set<VideoFFMPEGPipeCapture*> videos;
};

/** Never destroyed: videos may be longer-lived than statics. */
Running& running() {
  static Running* const instance = new Running;
  return *instance;
}

VideoFFMPEGPipeCapture* takeOne() {
  std::lock_guard<std::mutex> const lock(running().mutex);
  auto const first = running().videos.begin();
  return first == running().videos.end() ? nullptr : running().videos.extract(first).value();
}

} // namespace

void VideoFFMPEGPipeCapture::finishAll() {
  while (VideoFFMPEGPipeCapture* const video = takeOne())
    video->stopProcess();
}

void VideosAtExit::add(VideoFFMPEGPipeCapture* video) {
  // The log first: what was made earlier is destroyed later.
  static bool const registered =
      (zor::notify(zor::Notify::NOTIFY_DEBUG), std::atexit(VideoFFMPEGPipeCapture::finishAll) == 0);
  (void)registered;
  std::lock_guard<std::mutex> const lock(running().mutex);
  running().videos.insert(video);
}

void VideosAtExit::remove(VideoFFMPEGPipeCapture* video) noexcept {
  std::lock_guard<std::mutex> const lock(running().mutex);
  running().videos.erase(video);
}

} // namespace zorOSG
