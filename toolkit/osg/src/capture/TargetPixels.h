#pragma once

#include "PixelSource.h"

#include <osg/FrameBufferObject>
#include <osg/Texture2D>

namespace zorOSG {

/** The pixels of the texture that a render target draws into. They stay there until the next frame. */
class TargetPixels : public PixelSource {
public:
  /**
   * \param texture - what is drawn into
   * \param component - colour or depth
   */
  TargetPixels(osg::Texture2D* texture, osg::Camera::BufferComponent component);

  int width() const override { return m_texture->getTextureWidth(); }
  int height() const override { return m_texture->getTextureHeight(); }
  void read(osg::State& state, GLenum format, GLenum type, void* to) const override;

private:
  osg::ref_ptr<osg::Texture2D> m_texture;
  osg::ref_ptr<osg::FrameBufferObject> m_buffer;
  bool m_hasColors;
};

} // namespace zorOSG
