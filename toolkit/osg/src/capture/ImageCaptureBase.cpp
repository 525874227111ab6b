#include <zorOSG/ImageCaptureBase.h>

#include "FramePixels.h"
#include "ImageWriter.h"
#include "Limits.h"

#include <zor/Notify.h>
#include <zor/observer_ptr.h>
#include <zorSDK/Simulation.h>

#include <osg/GL>
#include <osg/RenderInfo>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <stdexcept>
#include <string>

namespace zorOSG {

namespace {

double wallClock() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace

class ImageCaptureBase::Impl {
public:
  explicit Impl(ImageCaptureBase* owner)
      : drawCallback(new DrawCallback(owner)),
        writer([owner](osg::Image* image, std::uint64_t index) { owner->writeImage(image, index); }) {}

  double now() const {
    bool const simulated = sync && simulation.isValid();
    return simulated ? simulation->getTimeStamp() : wallClock();
  }

  /** \return how many images would be due at a time, of the sequence that is being taken. */
  std::uint64_t countDueAt(double time) const {
    // The tolerance takes up the rounding of a sum of time steps.
    auto const slots = static_cast<std::uint64_t>(std::floor((time - startTime) * fps + 1e-6)) + 1;
    std::uint64_t const due = slots - std::min(slots, numTimed);
    if (maxImages < 0) {
      return due;
    }
    auto const limit = static_cast<std::uint64_t>(maxImages);
    return std::min(due, limit - std::min(limit, numWritten));
  }

  bool isFirstAt(double time) const { return !timing || time < lastTime; }

  /** \return how many images are due now; counts from the first frame so that no error accumulates. */
  unsigned int countDue() {
    double const time = now();
    if (isFirstAt(time)) {
      timing = true;
      startTime = time;
      numTimed = 0;
    }
    lastTime = time;
    return static_cast<unsigned int>(countDueAt(time));
  }

  void submit(osg::ref_ptr<osg::Image> frame, unsigned int due) {
    zor::Vec2u const size = resolution;
    bool const scale =
        size[0] != 0 && (frame->s() != static_cast<int>(size[0]) || frame->t() != static_cast<int>(size[1]));
    if (scale) {
      frame->scaleImage(static_cast<int>(size[0]), static_cast<int>(size[1]), 1);
    }
    writer.submit(std::move(frame), imageNum, due);
    imageNum += due;
    numTimed += due;
    numWritten += due;
  }

  bool limitReached() const { return maxImages >= 0 && numWritten >= static_cast<std::uint64_t>(maxImages); }

  osg::ref_ptr<DrawCallback> drawCallback;
  zor::observer_ptr<zorSDK::Simulation> simulation;
  zor::Real fps = 30.0;
  int maxImages = -1;
  bool sync = false;
  bool started = false;
  bool failed = false;
  zor::Vec2u resolution{0u, 0u};
  std::uint64_t imageNum = 0;
  std::uint64_t numWritten = 0;
  std::uint64_t numTimed = 0;
  bool timing = false;
  double startTime = 0.0;
  double lastTime = 0.0;
  // Last, so that its thread ends before anything it may use.
  ImageWriter writer;
};

void ImageCaptureBase::DrawCallback::operator()(osg::RenderInfo& renderInfo) const {
  if (m_capture) {
    m_capture->apply(renderInfo);
  }
}

ImageCaptureBase::ImageCaptureBase(zorSDK::Simulation* simulation) : m_impl(std::make_unique<Impl>(this)) {
  setSimulation(simulation);
  m_impl->sync = simulation != nullptr;
}

ImageCaptureBase::~ImageCaptureBase() {
  m_impl->drawCallback->m_capture = nullptr;
}

void ImageCaptureBase::shutdownWriter() noexcept {
  m_impl->drawCallback->m_capture = nullptr;
  m_impl->started = false;
  try {
    m_impl->writer.drain();
  } catch (...) { // NOLINT(bugprone-empty-catch): a destructor has nobody to tell
  }
}

void ImageCaptureBase::setFps(zor::Real fps) {
  m_impl->fps = checkedRate("capture rate", fps);
  resetTime();
}

zor::Real ImageCaptureBase::getFps() const {
  return m_impl->fps;
}

void ImageCaptureBase::setMaxImages(int maxImages) {
  m_impl->maxImages = maxImages;
}

void ImageCaptureBase::startCapture(int start) {
  if (m_impl->started) {
    return;
  }
  if (start < 0) {
    throw std::invalid_argument("the number of the first image must not be negative, got " +
                                std::to_string(start));
  }
  m_impl->imageNum = static_cast<std::uint64_t>(start);
  m_impl->numWritten = 0;
  m_impl->failed = false;
  resetTime();
  m_impl->started = true;
}

bool ImageCaptureBase::stopCapture() {
  bool const wasStarted = m_impl->started;
  m_impl->started = false;
  std::string const error = m_impl->writer.drain();
  if (!error.empty()) {
    m_impl->failed = true;
    zor::notify(zor::Notify::NOTIFY_ERROR) << "Capture failed: " << error << zor::endMessage;
  }
  return wasStarted && !m_impl->failed;
}

bool ImageCaptureBase::hasCaptureFailed() const {
  return m_impl->failed;
}

bool ImageCaptureBase::getCaptureStarted() const {
  return m_impl->started;
}

zorSDK::Simulation* ImageCaptureBase::getSimulation() {
  return m_impl->simulation.get();
}

void ImageCaptureBase::setSimulation(zorSDK::Simulation* simulation) {
  m_impl->simulation = simulation;
  resetTime();
}

void ImageCaptureBase::setImageResolution(zor::UInt width, zor::UInt height) {
  bool const asFrame = width == 0 && height == 0;
  m_impl->resolution = asFrame ? zor::Vec2u(0u, 0u) : checkedSize("image resolution", width, height);
}

zor::Vec2u ImageCaptureBase::getImageResolution() const {
  return m_impl->resolution;
}

int ImageCaptureBase::getImageNum() const {
  return static_cast<int>(m_impl->imageNum);
}

zorOSG::ImageCaptureBase::DrawCallback* ImageCaptureBase::getDrawCallback() {
  return m_impl->drawCallback.get();
}

void ImageCaptureBase::setEnableSyncWithSimulation(bool enableSync) {
  m_impl->sync = enableSync;
  resetTime();
}

bool ImageCaptureBase::getEnableSyncWithSimulation() const {
  return m_impl->sync;
}

void ImageCaptureBase::resetTime() {
  m_impl->timing = false;
}

void ImageCaptureBase::apply(osg::RenderInfo& renderInfo) {
  osg::Camera const* camera = renderInfo.getCurrentCamera();
  osg::Viewport const* viewport = camera ? camera->getViewport() : nullptr;
  if (!viewport) {
    return;
  }
  captureFrame([viewport](osg::Image& image) {
    image.readPixels(static_cast<int>(viewport->x()), static_cast<int>(viewport->y()),
                     static_cast<int>(viewport->width()), static_cast<int>(viewport->height()), GL_RGB,
                     GL_UNSIGNED_BYTE);
  });
}

bool ImageCaptureBase::isImageDue() const {
  double const time = m_impl->now();
  return m_impl->started && (m_impl->isFirstAt(time) || m_impl->countDueAt(time) > 0);
}

void ImageCaptureBase::applyImage(osg::Image const* frame) noexcept {
  if (frame && frame->valid()) {
    captureFrame([frame](osg::Image& image) { copyAsRgb(*frame, image); });
  }
}

void ImageCaptureBase::captureFrame(std::function<void(osg::Image&)> const& fill) noexcept {
  if (!m_impl->started) {
    return;
  }
  try {
    unsigned int const due = m_impl->countDue();
    if (due > 0) {
      osg::ref_ptr<osg::Image> frame = m_impl->writer.acquire();
      try {
        fill(*frame);
      } catch (...) {
        m_impl->writer.release(std::move(frame));
        throw;
      }
      m_impl->submit(std::move(frame), due);
    }
    if (m_impl->limitReached()) {
      m_impl->started = false;
    }
    if (m_impl->writer.failed()) {
      throw std::runtime_error(m_impl->writer.drain());
    }
  } catch (std::exception const& e) {
    m_impl->started = false;
    m_impl->failed = true;
    zor::notify(zor::Notify::NOTIFY_ERROR) << "Capture stopped: " << e.what() << zor::endMessage;
  }
}

} // namespace zorOSG
