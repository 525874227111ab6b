#include <zorOSG/VideoFFMPEGPipeCapture.h>

#include "FfmpegProcess.h"
#include "FramePixels.h"
#include "Limits.h"
#include "VideosAtExit.h"

#include <zor/Notify.h>

#include <filesystem>
#include <stdexcept>
#include <string>

namespace zorOSG {

namespace {

constexpr zor::UInt s_minSize = 2;

VideoFFMPEGPipeCapture::CodecStringConversionMap makeCodecStrings() {
  VideoFFMPEGPipeCapture::CodecStringConversionMap map;
  map.insert(VideoFFMPEGPipeCapture::OutputCodec_H264, "libx264");
  map.insert(VideoFFMPEGPipeCapture::OutputCodec_H264RGB, "libx264rgb");
  map.insert(VideoFFMPEGPipeCapture::OutputCodec_XVID, "libxvid");
  return map;
}

} // namespace

VideoFFMPEGPipeCapture::CodecStringConversionMap VideoFFMPEGPipeCapture::OutputCodecStrings =
    makeCodecStrings();

VideoFFMPEGPipeCapture::VideoFFMPEGPipeCapture(zor::UInt width, zor::UInt height, zor::Real fps,
                                               zorSDK::Simulation* sim)
    : ImageCaptureBase(sim), m_size(checkedSize("a video", width, height, s_minSize)),
      m_videoFps(checkedRate("video rate", fps)) {
  setImageResolution(width, height);
  setFps(fps);
}

VideoFFMPEGPipeCapture::~VideoFFMPEGPipeCapture() {
  VideosAtExit::remove(this);
  shutdownWriter();
  if (m_encoder) {
    try {
      m_encoder->finish();
    } catch (std::exception const& e) {
      zor::notify(zor::Notify::NOTIFY_ERROR) << e.what() << zor::endMessage;
    }
  }
}

void VideoFFMPEGPipeCapture::init() {
  if (m_encoder) {
    return;
  }
  if (!OutputCodecStrings.contains(m_codec)) {
    throw std::runtime_error("no encoder is known for video codec " +
                             std::to_string(static_cast<int>(m_codec)));
  }
  VideoSettings settings;
  settings.width = m_size[0];
  settings.height = m_size[1];
  settings.fps = m_videoFps;
  settings.crf = static_cast<unsigned int>(m_crf);
  settings.lossless = m_lossless;
  settings.codec = OutputCodecStrings[m_codec];
  settings.output = m_filename;
  auto encoder = std::make_unique<FfmpegProcess>(std::move(settings));
  std::lock_guard<std::mutex> const lock(m_encoderMutex);
  m_encoder = std::move(encoder);
  VideosAtExit::add(this);
}

void VideoFFMPEGPipeCapture::setFilename(zor::String filename) {
  std::filesystem::path const path(filename);
  if (!path.has_filename() || !path.has_extension()) {
    throw std::invalid_argument("a video file needs a name with an extension, such as 'video.mp4', not '" +
                                filename + "'");
  }
  m_filename = std::move(filename);
}

zor::String VideoFFMPEGPipeCapture::getFilename() const {
  return m_filename;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature scripts see
void VideoFFMPEGPipeCapture::setFilenameExtension(zor::String extension) {
  if (extension.empty() || extension.find('/') != std::string::npos) {
    throw std::invalid_argument("'" + extension + "' is no file name extension");
  }
  m_filename = std::filesystem::path(m_filename).replace_extension(extension).string();
}

zor::String VideoFFMPEGPipeCapture::getFilenameExtension() const {
  std::string const extension = std::filesystem::path(m_filename).extension().string();
  return extension.empty() ? extension : extension.substr(1);
}

void VideoFFMPEGPipeCapture::setVideoFPS(zor::Real fps) {
  m_videoFps = checkedRate("video rate", fps);
}

zor::Real VideoFFMPEGPipeCapture::getVideoFPS() const {
  return m_videoFps;
}

void VideoFFMPEGPipeCapture::setVideoCRF(zor::UInt crf) {
  if (crf > 51) {
    throw std::invalid_argument("the constant rate factor is 0 to 51, not " + std::to_string(crf));
  }
  m_crf = crf;
}

zor::UInt VideoFFMPEGPipeCapture::getVideoCRF() const {
  return m_crf;
}

void VideoFFMPEGPipeCapture::setImageCaptureFPS(zor::Real fps) {
  setFps(fps);
}

zor::Real VideoFFMPEGPipeCapture::getImageCaptureFPS() const {
  return getFps();
}

void VideoFFMPEGPipeCapture::setEnableLossless(bool lossless) {
  m_lossless = lossless;
}

bool VideoFFMPEGPipeCapture::getEnableLossless() const {
  return m_lossless;
}

void VideoFFMPEGPipeCapture::setOutputVideoCodec(OutputCodec codec) {
  m_codec = codec;
}

VideoFFMPEGPipeCapture::OutputCodec VideoFFMPEGPipeCapture::getOutputCodec() const {
  return m_codec;
}

bool VideoFFMPEGPipeCapture::hasActiveVideo() const {
  return m_encoder != nullptr;
}

bool VideoFFMPEGPipeCapture::stopProcess() {
  stopCapture();
  VideosAtExit::remove(this);
  std::unique_ptr<FfmpegProcess> encoder;
  {
    std::lock_guard<std::mutex> const lock(m_encoderMutex);
    encoder = std::move(m_encoder);
  }
  if (!encoder || encoder->hasFailed()) {
    return false;
  }
  // A capture that stopped by itself at its image limit is no failure; a frame that was lost is.
  try {
    encoder->finish();
  } catch (std::exception const& e) {
    zor::notify(zor::Notify::NOTIFY_ERROR) << e.what() << zor::endMessage;
    return false;
  }
  return !hasCaptureFailed();
}

void VideoFFMPEGPipeCapture::startCapture(int start) {
  if (!getCaptureStarted() && m_encoder && hasCaptureFailed()) {
    stopProcess(); // what is left of an encoder that has failed
  }
  init();
  ImageCaptureBase::startCapture(start);
}

void VideoFFMPEGPipeCapture::writeFrame(osg::Image* frame, zor::Index first, zor::Index count) {
  for (zor::Index i = 0; i < count; ++i) {
    writeImage(frame, first + i);
  }
}

void VideoFFMPEGPipeCapture::writeImage(osg::Image* image, zor::Index) {
  if (!image || !image->valid()) {
    throw std::invalid_argument("writeImage: the image is null or empty");
  }
  std::lock_guard<std::mutex> const lock(m_encoderMutex);
  if (!m_encoder) {
    throw std::runtime_error("writeImage: no video is active; call init() or startCapture() first");
  }
  m_encoder->writeFrame(fittedFrame(image)->data(), std::size_t{4} * m_size[0] * m_size[1]);
}

/** \return the image as packed 8-bit RGBA of the video's size: itself where it is so already. */
osg::Image* VideoFFMPEGPipeCapture::fittedFrame(osg::Image* image) {
  int const width = static_cast<int>(m_size[0]), height = static_cast<int>(m_size[1]);
  bool const hasSize = image->s() == width && image->t() == height;
  if (hasSize && isPackedRgba(*image)) {
    return image;
  }
  if (!m_frame) {
    m_frame = new osg::Image;
  }
  copyAsRgba(*image, *m_frame);
  if (!hasSize) {
    m_frame->scaleImage(width, height, 1);
  }
  return m_frame;
}

} // namespace zorOSG
