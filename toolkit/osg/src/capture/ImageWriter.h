#pragma once

#include <osg/Image>

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace zorOSG {

/**
 * A thread that writes frames in order. Frames come from a small pool: acquire() waits while all of them are
 * under way, which bounds memory and slows drawing down to the speed of the writer.
 */
class ImageWriter {
public:
  using Sink = std::function<void(osg::Image*, std::uint64_t index)>;

  explicit ImageWriter(Sink sink);
  ~ImageWriter();
  ImageWriter(ImageWriter const&) = delete;
  ImageWriter& operator=(ImageWriter const&) = delete;

  /** \return a frame to fill; its storage is that of an earlier one where possible. */
  osg::ref_ptr<osg::Image> acquire();

  /** Queues a frame to be written under `count` numbers starting at `index`. */
  void submit(osg::ref_ptr<osg::Image> frame, std::uint64_t index, unsigned int count);

  /** Gives an acquired frame back unwritten. */
  void release(osg::ref_ptr<osg::Image> frame);

  /** Waits until every queued frame is written. \return the first error since the last call, else empty. */
  std::string drain();

  /** \return true if a frame could not be written; later frames are then dropped until drain(). */
  bool failed();

private:
  struct Job {
    osg::ref_ptr<osg::Image> frame;
    std::uint64_t index;
    unsigned int count;
  };

  void run();
  void write(Job const& job);

  static constexpr std::size_t s_poolSize = 4;

  Sink m_sink;
  std::mutex m_mutex;
  std::condition_variable m_changed;
  std::vector<osg::ref_ptr<osg::Image>> m_free;
  std::deque<Job> m_jobs;
  bool m_busy = false;
  bool m_stop = false;
  std::string m_error;
  std::thread m_thread;
};

} // namespace zorOSG
