#include <zorOSG/ImageCapture.h>

#include "AtomicFile.h"

#include <algorithm>
#include <cstdio>
#include <mutex>
#include <stdexcept>
#include <thread>

namespace zorOSG {

namespace {

constexpr unsigned int s_maxWriters = 4;

unsigned int numWriters() {
  return std::clamp(std::thread::hardware_concurrency(), 1u, s_maxWriters);
}

} // namespace

/** Writers read what a script may be changing. */
struct ImageCapture::Settings {
  std::mutex mutex;
  std::string postfix = "bmp";
  std::string prefix = "image_";
  std::string directory = ".";

  std::string get(std::string const& text) {
    std::lock_guard<std::mutex> const lock(mutex);
    return text;
  }
  void set(std::string& text, std::string const& value) {
    std::lock_guard<std::mutex> const lock(mutex);
    text = value;
  }
  std::filesystem::path path(zor::Index index) {
    char number[24];
    std::snprintf(number, sizeof number, "%05llu", static_cast<unsigned long long>(index));
    std::lock_guard<std::mutex> const lock(mutex);
    return std::filesystem::path(directory) / (prefix + number + "." + postfix);
  }
};

ImageCapture::ImageCapture(zorSDK::Simulation* sim)
    : ImageCaptureBase(sim, numWriters()), m_settings(std::make_unique<Settings>()) {}

ImageCapture::~ImageCapture() {
  shutdownWriter();
}

std::string ImageCapture::getPostfix() const {
  return m_settings->get(m_settings->postfix);
}

void ImageCapture::setPostfix(std::string const& postfix) {
  m_settings->set(m_settings->postfix, postfix);
}

std::string ImageCapture::getPrefix() const {
  return m_settings->get(m_settings->prefix);
}

void ImageCapture::setPrefix(std::string const& prefix) {
  m_settings->set(m_settings->prefix, prefix);
}

std::string ImageCapture::getDirectoryPath() const {
  return m_settings->get(m_settings->directory);
}

void ImageCapture::setDirectoryPath(std::string const& path) {
  m_settings->set(m_settings->directory, path);
}

void ImageCapture::startCapture(int start) {
  if (!getCaptureStarted()) {
    requireImageWriter(m_settings->postfix);
    requireWritableDirectory(m_settings->directory);
  }
  ImageCaptureBase::startCapture(start);
}

void ImageCapture::writeImage(osg::Image* image, zor::Index index) {
  if (!image) {
    throw std::invalid_argument("writeImage: the image is null");
  }
  writeImageAtomically(*image, m_settings->path(index));
}

} // namespace zorOSG
