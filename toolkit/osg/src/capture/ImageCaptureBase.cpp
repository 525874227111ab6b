#include <zorOSG/ImageCaptureBase.h>

#include "ContextScope.h"
#include "FramePixels.h"
#include "ImageWriter.h"
#include "Limits.h"
#include "PixelTransfer.h"
#include "ViewPixels.h"

#include <zor/Notify.h>
#include <zor/observer_ptr.h>
#include <zorSDK/Simulation.h>

#include <osg/GL>
#include <osg/RenderInfo>

#include <algorithm>
#include <atomic>
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
  Impl(ImageCaptureBase* owner, unsigned int numWriters)
      : drawCallback(new DrawCallback(owner)),
        writer([owner](osg::Image* frame, std::uint64_t first,
                       std::uint64_t count) { owner->writeFrame(frame, first, count); },
               numWriters) {}

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
    return std::min(due, limit - std::min(limit, numTaken));
  }

  bool isFirstAt(double time) const { return !timing || time < lastTime; }

  /** \return how many images are due now; counts from the first frame so that no error accumulates. */
  std::uint64_t countDue() {
    double const time = now();
    if (isFirstAt(time)) {
      timing = true;
      startTime = time;
      numTimed = 0;
    }
    lastTime = time;
    return countDueAt(time);
  }

  /** Takes a frame that shows a number of images: at once, or with the next one while its pixels travel. */
  void take(osg::State& state, PixelSource const& source, std::uint64_t count) {
    Frame const frame{source.width(), source.height(), imageNum, count};
    if (hasAsynchronousReadBack(state)) {
      travelling = frame;
      transfer.start(state, source, GL_RGBA, GL_UNSIGNED_BYTE, frame.size());
    } else {
      submit(frame, [&](unsigned char* to) {
        source.read(state, GL_RGBA, GL_UNSIGNED_BYTE, to);
        return true;
      });
    }
    imageNum += count;
    numTimed += count;
    numTaken += count;
  }

  /** Takes in the frame whose pixels are on their way, if there is one. */
  void arrive(osg::State& state) {
    if (transfer.isPending()) {
      submit(travelling, [&](unsigned char* to) { return transfer.finish(state, to); });
    }
  }

  /** The same outside of drawing. */
  void arrive() {
    if (!transfer.isPending()) {
      return;
    }
    osg::ref_ptr<osg::GraphicsContext> gc;
    context.lock(gc);
    ContextScope const scope(gc);
    if (!scope.isCurrent()) {
      transfer.cancel();
      throw std::runtime_error("the graphics context was closed before the last frame was read");
    }
    arrive(*gc->getState());
  }

  bool limitReached() const { return maxImages >= 0 && numTaken >= static_cast<std::uint64_t>(maxImages); }

  osg::ref_ptr<DrawCallback> drawCallback;
  zor::observer_ptr<zorSDK::Simulation> simulation;
  osg::observer_ptr<osg::GraphicsContext> context;
  zor::Real fps = 30.0;
  int maxImages = -1;
  bool sync = false;
  bool started = false;
  bool failed = false;
  std::atomic<std::uint64_t> resolution = 0; // width and height; writers read it
  std::uint64_t imageNum = 0;
  std::uint64_t numTaken = 0;
  std::uint64_t numTimed = 0;
  bool timing = false;
  double startTime = 0.0;
  double lastTime = 0.0;

private:
  struct Frame {
    int width;
    int height;
    std::uint64_t first;
    std::uint64_t count;

    std::size_t size() const {
      return std::size_t{4} * static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    }
  };

  template <class Fill>
  void submit(Frame const& frame, Fill const& fill) {
    osg::ref_ptr<osg::Image> image = writer.acquire();
    image->allocateImage(frame.width, frame.height, 1, GL_RGBA, GL_UNSIGNED_BYTE);
    if (!image->data() || !fill(image->data())) {
      writer.release(std::move(image));
      throw std::runtime_error("a frame of " + std::to_string(frame.width) + " x " +
                               std::to_string(frame.height) + " pixels could not be read");
    }
    writer.submit(std::move(image), frame.first, frame.count);
  }

  PixelTransfer transfer;
  Frame travelling{};

public:
  // Last, so that its threads end before anything they may use.
  ImageWriter writer;
};

void ImageCaptureBase::DrawCallback::operator()(osg::RenderInfo& renderInfo) const {
  if (m_capture) {
    m_capture->apply(renderInfo);
  }
}

ImageCaptureBase::ImageCaptureBase(zorSDK::Simulation* simulation, unsigned int numWriters)
    : m_impl(std::make_unique<Impl>(this, numWriters)) {
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
    m_impl->arrive();
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
  m_impl->numTaken = 0;
  m_impl->failed = false;
  resetTime();
  m_impl->started = true;
}

bool ImageCaptureBase::stopCapture() {
  bool const wasStarted = m_impl->started;
  m_impl->started = false;
  std::string error;
  try {
    m_impl->arrive();
  } catch (std::exception const& e) {
    error = e.what();
  }
  std::string const writersError = m_impl->writer.drain();
  error = writersError.empty() ? error : writersError;
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
  zor::Vec2u const size = asFrame ? zor::Vec2u(0u, 0u) : checkedSize("image resolution", width, height);
  m_impl->resolution = std::uint64_t{size[0]} << 32 | size[1];
}

zor::Vec2u ImageCaptureBase::getImageResolution() const {
  std::uint64_t const size = m_impl->resolution;
  return zor::Vec2u(static_cast<zor::UInt32>(size >> 32), static_cast<zor::UInt32>(size));
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
  if (viewport && renderInfo.getState()) {
    captureFrame(*renderInfo.getState(), ViewPixels(*viewport));
  }
}

void ImageCaptureBase::writeFrame(osg::Image* frame, zor::Index first, zor::Index count) {
  thread_local osg::ref_ptr<osg::Image> picture; // its memory is used again
  if (!picture || picture->referenceCount() > 1) {
    picture = new osg::Image;
  }
  copyAsRgb(*frame, *picture);
  zor::Vec2u const size = getImageResolution();
  int const width = static_cast<int>(size[0]), height = static_cast<int>(size[1]);
  if (width != 0 && (picture->s() != width || picture->t() != height)) {
    picture->scaleImage(width, height, 1);
  }
  for (zor::Index i = 0; i < count; ++i) {
    writeImage(picture, first + i);
  }
}

bool ImageCaptureBase::isImageDue() const {
  double const time = m_impl->now();
  return m_impl->started && (m_impl->isFirstAt(time) || m_impl->countDueAt(time) > 0);
}

void ImageCaptureBase::captureFrame(osg::State& state, PixelSource const& source) noexcept {
  if (!m_impl->started) {
    return;
  }
  try {
    m_impl->context = state.getGraphicsContext();
    m_impl->arrive(state);
    std::uint64_t const due = m_impl->countDue();
    if (due > 0 && source.width() > 0 && source.height() > 0) {
      m_impl->take(state, source, due);
    }
    if (m_impl->limitReached()) {
      m_impl->arrive(state);
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
