#include <zorOSG/ImageCapture.h>

#include "AtomicFile.h"

#include <cstdio>

namespace zorOSG {

ImageCapture::ImageCapture(zorSDK::Simulation* sim) : ImageCaptureBase(sim) {}

ImageCapture::~ImageCapture() {
  shutdownWriter();
}

std::string ImageCapture::getPostfix() const {
  return m_postfix;
}

void ImageCapture::setPostfix(std::string const& postfix) {
  m_postfix = postfix;
}

std::string ImageCapture::getPrefix() const {
  return m_prefix;
}

void ImageCapture::setPrefix(std::string const& prefix) {
  m_prefix = prefix;
}

std::string ImageCapture::getDirectoryPath() const {
  return m_directory;
}

void ImageCapture::setDirectoryPath(std::string const& path) {
  m_directory = path;
}

void ImageCapture::startCapture(int start) {
  requireImageWriter(m_postfix);
  requireWritableDirectory(m_directory);
  ImageCaptureBase::startCapture(start);
}

void ImageCapture::writeImage(osg::Image* image, zor::Index index) {
  if (!image) {
    throw std::invalid_argument("writeImage: the image is null");
  }
  char number[24];
  std::snprintf(number, sizeof number, "%05llu", static_cast<unsigned long long>(index));
  writeImageAtomically(*image, std::filesystem::path(m_directory) / (m_prefix + number + "." + m_postfix));
}

} // namespace zorOSG
