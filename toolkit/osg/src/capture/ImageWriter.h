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
 * Threads that write frames; a single one writes them in order. Frames come from a small pool: acquire()
 * waits while all of them are under way, which bounds memory and slows drawing down to the speed of the
 * writers.
 */
class ImageWriter {
public:
  using Sink = std::function<void(osg::Image*, std::uint64_t index, std::uint64_t count)>;

  ImageWriter(Sink sink, unsigned int numThreads);
  ~ImageWriter();
  ImageWriter(ImageWriter const&) = delete;
  ImageWriter& operator=(ImageWriter const&) = delete;

  /** \return a frame to fill; its storage is that of an earlier one where possible. */
  osg::ref_ptr<osg::Image> acquire();

  /** Queues a frame to be written under `count` numbers starting at `index`. */
  void submit(osg::ref_ptr<osg::Image> frame, std::uint64_t index, std::uint64_t count);

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
    std::uint64_t count;
  };

  void run();
  std::string write(Job const& job);

  Sink m_sink;
  std::size_t const m_numThreads;
  std::mutex m_mutex;
  std::condition_variable m_changed;
  std::vector<osg::ref_ptr<osg::Image>> m_free;
  std::deque<Job> m_jobs;
  std::size_t m_numBusy = 0;
  bool m_stop = false;
  std::string m_error;
  std::vector<std::thread> m_threads;
};

} // namespace zorOSG
