#include "ImageWriter.h"

#include <zorUtil/TaskRecorder.h>

#include <exception>

namespace zorOSG {

namespace {

constexpr std::size_t s_waitingFrames = 3; // besides those being written

} // namespace

ImageWriter::ImageWriter(Sink sink, unsigned int numThreads)
    : m_sink(std::move(sink)), m_numThreads(numThreads) {
  for (std::size_t i = 0; i < numThreads + s_waitingFrames; ++i) {
    m_free.emplace_back(new osg::Image);
  }
}

ImageWriter::~ImageWriter() {
  {
    std::lock_guard<std::mutex> const lock(m_mutex);
    m_stop = true;
  }
  m_changed.notify_all();
  for (std::thread& thread : m_threads) {
    thread.join();
  }
}

osg::ref_ptr<osg::Image> ImageWriter::acquire() {
  std::unique_lock<std::mutex> lock(m_mutex);
  m_changed.wait(lock, [this] { return !m_free.empty(); });
  osg::ref_ptr<osg::Image> frame = m_free.back();
  m_free.pop_back();
  return frame;
}

void ImageWriter::submit(osg::ref_ptr<osg::Image> frame, std::uint64_t index, std::uint64_t count) {
  {
    std::lock_guard<std::mutex> const lock(m_mutex);
    m_jobs.push_back({std::move(frame), index, count});
    bool const isBehind = m_jobs.size() + m_numBusy > m_threads.size();
    if (isBehind && m_threads.size() < m_numThreads) {
      m_threads.emplace_back([this] { run(); });
    }
  }
  m_changed.notify_all();
}

void ImageWriter::release(osg::ref_ptr<osg::Image> frame) {
  {
    std::lock_guard<std::mutex> const lock(m_mutex);
    m_free.push_back(std::move(frame));
  }
  m_changed.notify_all();
}

std::string ImageWriter::drain() {
  std::unique_lock<std::mutex> lock(m_mutex);
  m_changed.wait(lock, [this] { return m_jobs.empty() && m_numBusy == 0; });
  std::string error;
  error.swap(m_error);
  return error;
}

bool ImageWriter::failed() {
  std::lock_guard<std::mutex> const lock(m_mutex);
  return !m_error.empty();
}

void ImageWriter::run() {
  zorUtil::TaskRecorder::instance().nameThread("picture writer");
  std::unique_lock<std::mutex> lock(m_mutex);
  while (true) {
    m_changed.wait(lock, [this] { return m_stop || !m_jobs.empty(); });
    if (m_jobs.empty()) {
      return;
    }
    Job const job = std::move(m_jobs.front());
    m_jobs.pop_front();
    ++m_numBusy;
    bool const skip = !m_error.empty();
    lock.unlock();
    std::string const error = skip ? "" : write(job);
    lock.lock();
    if (m_error.empty()) {
      m_error = error;
    }
    m_free.push_back(job.frame);
    --m_numBusy;
    m_changed.notify_all();
  }
}

/** \return what went wrong, or nothing. */
std::string ImageWriter::write(Job const& job) {
  zorUtil::TaskScope const record("write picture");
  try {
    m_sink(job.frame.get(), job.index, job.count);
    return "";
  } catch (std::exception const& e) {
    return e.what();
  } catch (...) {
    return "unknown error while writing a captured frame";
  }
}

} // namespace zorOSG
