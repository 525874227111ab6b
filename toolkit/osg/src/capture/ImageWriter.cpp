#include "ImageWriter.h"

#include <zorUtil/TaskRecorder.h>

#include <exception>

namespace zorOSG {

ImageWriter::ImageWriter(Sink sink) : m_sink(std::move(sink)) {
  for (std::size_t i = 0; i < s_poolSize; ++i) {
    m_free.emplace_back(new osg::Image);
  }
}

ImageWriter::~ImageWriter() {
  {
    std::lock_guard<std::mutex> const lock(m_mutex);
    m_stop = true;
  }
  m_changed.notify_all();
  if (m_thread.joinable()) {
    m_thread.join();
  }
}

osg::ref_ptr<osg::Image> ImageWriter::acquire() {
  std::unique_lock<std::mutex> lock(m_mutex);
  m_changed.wait(lock, [this] { return !m_free.empty(); });
  osg::ref_ptr<osg::Image> frame = m_free.back();
  m_free.pop_back();
  return frame;
}

void ImageWriter::submit(osg::ref_ptr<osg::Image> frame, std::uint64_t index, unsigned int count) {
  {
    std::lock_guard<std::mutex> const lock(m_mutex);
    m_jobs.push_back({std::move(frame), index, count});
    if (!m_thread.joinable()) {
      m_thread = std::thread([this] { run(); });
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
  m_changed.wait(lock, [this] { return m_jobs.empty() && !m_busy; });
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
    m_busy = true;
    bool const skip = !m_error.empty();
    lock.unlock();
    std::string error;
    if (!skip) {
      try {
        write(job);
      } catch (std::exception const& e) {
        error = e.what();
      } catch (...) {
        error = "unknown error while writing a captured frame";
      }
    }
    lock.lock();
    if (!error.empty()) {
      m_error = error;
    }
    m_free.push_back(job.frame);
    m_busy = false;
    m_changed.notify_all();
  }
}

void ImageWriter::write(Job const& job) {
  zorUtil::TaskScope const record("write picture");
  for (unsigned int i = 0; i < job.count; ++i) {
    m_sink(job.frame.get(), job.index + i);
  }
}

} // namespace zorOSG
