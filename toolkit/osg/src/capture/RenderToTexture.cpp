#include <zorOSG/RenderToTexture.h>

namespace zorOSG {

RenderToTexture::RenderToTexture(zor::UInt width, zor::UInt height, BufferComponent bufferComponent,
                                 zor::UInt multiSamples, TextureFormat textureFormat)
    : RenderTarget(width, height, bufferComponent, multiSamples, textureFormat),
      m_texture(new Texture2D(getBuffer())) {}

RenderToTexture::~RenderToTexture() = default;

zorOSG::Texture2D* RenderToTexture::getTexture() {
  return m_texture.get();
}

} // namespace zorOSG
