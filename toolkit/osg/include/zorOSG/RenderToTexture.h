#pragma once

#include <zorOSG/RenderTarget.h>
#include <zorOSG/Texture2D.h>

namespace zorOSG {

/** Renders into a texture that other nodes can show. */
class RenderToTexture : public RenderTarget {
public:
  /**
   * \param width - width in pixels.
   * \param height - height in pixels.
   * \param bufferComponent - colour or depth.
   * \param multiSamples - samples per pixel; 0 turns anti-aliasing off. Depth is never multisampled.
   * \param textureFormat - pixel format of a colour texture.
   */
  RenderToTexture(zor::UInt width, zor::UInt height, BufferComponent bufferComponent = COLOR_BUFFER,
                  zor::UInt multiSamples = 8, TextureFormat textureFormat = RGBA);

  /** \return the target texture, borrowed. */
  zorOSG::Texture2D* getTexture();

protected:
  ~RenderToTexture() override;
  void attachBuffers() override;
  osg::Image* readFrame(osg::RenderInfo& renderInfo) override;

private:
  void attachTexture();

  zor::ref_ptr<Texture2D> m_texture;
  osg::ref_ptr<osg::Image> m_readback;
  BufferComponent m_component;
  unsigned int m_multiSamples;
  TextureFormat m_format;
};

} // namespace zorOSG
