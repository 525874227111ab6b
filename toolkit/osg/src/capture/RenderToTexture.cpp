#include <zorOSG/RenderToTexture.h>

#include "BufferSettings.h"

#include <osg/RenderInfo>
#include <osg/State>

namespace zorOSG {

RenderToTexture::RenderToTexture(zor::UInt width, zor::UInt height, BufferComponent bufferComponent,
                                 zor::UInt multiSamples, TextureFormat textureFormat)
    : RenderTarget(width, height), m_texture(new Texture2D(new osg::Texture2D)), m_component(bufferComponent),
      m_multiSamples(checkedSamples(multiSamples)), m_format(checkedFormat(bufferComponent, textureFormat)) {
  osg::Texture2D* texture = m_texture->getTexture();
  texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR);
  texture->setFilter(osg::Texture::MAG_FILTER, osg::Texture::LINEAR);
  texture->setWrap(osg::Texture::WRAP_S, osg::Texture::CLAMP_TO_EDGE);
  texture->setWrap(osg::Texture::WRAP_T, osg::Texture::CLAMP_TO_EDGE);
  texture->setResizeNonPowerOfTwoHint(false);
  attachTexture();
}

RenderToTexture::~RenderToTexture() = default;

zorOSG::Texture2D* RenderToTexture::getTexture() {
  return m_texture.get();
}

void RenderToTexture::attachBuffers() {
  attachTexture();
}

void RenderToTexture::attachTexture() {
  osg::Camera* camera = getCamera();
  osg::Texture2D* texture = m_texture->getTexture();
  zor::Vec2u const size = getSize();
  texture->setTextureSize(static_cast<int>(size[0]), static_cast<int>(size[1]));
  texture->dirtyTextureObject();
  camera->detach(osg::Camera::COLOR_BUFFER);
  camera->detach(osg::Camera::DEPTH_BUFFER);
  camera->detach(osg::Camera::PACKED_DEPTH_STENCIL_BUFFER);
  if (m_component == DEPTH_BUFFER) {
    texture->setInternalFormat(GL_DEPTH_COMPONENT24);
    texture->setSourceFormat(GL_DEPTH_COMPONENT);
    texture->setSourceType(GL_FLOAT);
    camera->attach(osg::Camera::DEPTH_BUFFER, texture);
    camera->attach(osg::Camera::COLOR_BUFFER, GL_RGBA);
  } else {
    texture->setInternalFormat(m_format);
    texture->setSourceFormat(m_format);
    texture->setSourceType(GL_UNSIGNED_BYTE);
    camera->attach(osg::Camera::COLOR_BUFFER, texture, 0, 0, false, m_multiSamples, 0);
    camera->attach(osg::Camera::PACKED_DEPTH_STENCIL_BUFFER, GL_DEPTH_STENCIL_EXT);
  }
  camera->dirtyAttachmentMap();
}

osg::Image* RenderToTexture::readFrame(osg::RenderInfo& renderInfo) {
  if (m_component != COLOR_BUFFER) {
    return nullptr;
  }
  if (!m_readback.valid()) {
    m_readback = new osg::Image;
  }
  osg::State* state = renderInfo.getState();
  state->setActiveTextureUnit(0);
  state->applyTextureAttribute(0, m_texture->getTexture());
  m_readback->readImageFromCurrentTexture(state->getContextID(), false, GL_UNSIGNED_BYTE);
  return m_readback.get();
}

} // namespace zorOSG
