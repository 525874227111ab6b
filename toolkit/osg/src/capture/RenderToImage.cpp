#include <zorOSG/RenderToImage.h>

#include "AtomicFile.h"
#include "BufferSettings.h"

#include <zor/Notify.h>

#include <cstring>

namespace zorOSG {

RenderToImage::RenderToImage(zor::UInt width, zor::UInt height, BufferComponent bufferComponent,
                             zor::UInt multiSamples, TextureFormat textureFormat)
    : RenderTarget(width, height), m_image(new osg::Image), m_component(bufferComponent),
      m_multiSamples(checkedSamples(multiSamples)), m_format(checkedFormat(bufferComponent, textureFormat)) {
  attachImage();
}

RenderToImage::~RenderToImage() = default;

osg::Image* RenderToImage::getImage() {
  return m_image.get();
}

bool RenderToImage::extractImageData(unsigned char* img, int size) const {
  if (!img || size < 0 || static_cast<unsigned int>(size) != m_image->getTotalSizeInBytes()) {
    return false;
  }
  std::memcpy(img, m_image->data(), static_cast<std::size_t>(size));
  return true;
}

unsigned char* RenderToImage::getImageData() {
  return m_image->data();
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature scripts see
bool RenderToImage::saveImage(zor::String filename) const {
  try {
    if (m_component == DEPTH_BUFFER) {
      throw std::runtime_error("cannot save '" + filename + "': the render target holds depth, not colour");
    }
    writeImageAtomically(*m_image, filename);
    return true;
  } catch (std::exception const& e) {
    zor::notify(zor::Notify::NOTIFY_ERROR) << e.what() << zor::endMessage;
    return false;
  }
}

void RenderToImage::attachBuffers() {
  attachImage();
}

void RenderToImage::attachImage() {
  osg::Camera* camera = getCamera();
  zor::Vec2u const size = getSize();
  int const width = static_cast<int>(size[0]);
  int const height = static_cast<int>(size[1]);
  camera->detach(osg::Camera::COLOR_BUFFER);
  camera->detach(osg::Camera::DEPTH_BUFFER);
  camera->detach(osg::Camera::PACKED_DEPTH_STENCIL_BUFFER);
  if (m_component == DEPTH_BUFFER) {
    m_image->allocateImage(width, height, 1, GL_DEPTH_COMPONENT, GL_FLOAT);
    camera->attach(osg::Camera::DEPTH_BUFFER, m_image.get());
    camera->attach(osg::Camera::COLOR_BUFFER, GL_RGBA);
  } else {
    m_image->allocateImage(width, height, 1, m_format, GL_UNSIGNED_BYTE);
    camera->attach(osg::Camera::COLOR_BUFFER, m_image.get(), m_multiSamples, 0);
    camera->attach(osg::Camera::PACKED_DEPTH_STENCIL_BUFFER, GL_DEPTH_STENCIL_EXT);
  }
  std::memset(m_image->data(), 0, m_image->getTotalSizeInBytes());
  camera->dirtyAttachmentMap();
}

osg::Image* RenderToImage::readFrame(osg::RenderInfo&) {
  return m_component == COLOR_BUFFER ? m_image.get() : nullptr;
}

} // namespace zorOSG
