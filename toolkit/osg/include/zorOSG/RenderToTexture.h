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
   * \param multiSamples - samples per pixel, at most 64 and what the graphics driver offers; 0 turns
   * anti-aliasing off. Depth is never multisampled.
   * \param textureFormat - pixel format of a colour texture.
   */
  RenderToTexture(zor::UInt width, zor::UInt height, BufferComponent bufferComponent = COLOR_BUFFER,
                  zor::UInt multiSamples = 8, TextureFormat textureFormat = RGBA);

  /** \return the target texture, borrowed. */
  zorOSG::Texture2D* getTexture();

protected:
  ~RenderToTexture() override;

private:
  zor::ref_ptr<Texture2D> m_texture;
};

} // namespace zorOSG
