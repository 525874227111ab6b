#include "BufferSettings.h"

#include <stdexcept>
#include <string>

namespace zorOSG {

unsigned int checkedSamples(zor::UInt multiSamples) {
  if (multiSamples > 64) {
    throw std::invalid_argument("a render target takes at most 64 samples per pixel, not " +
                                std::to_string(multiSamples));
  }
  return static_cast<unsigned int>(multiSamples);
}

RenderTarget::TextureFormat checkedFormat(RenderTarget::BufferComponent component,
                                          RenderTarget::TextureFormat format) {
  if (component == RenderTarget::DEPTH_BUFFER) {
    return RenderTarget::DEPTH_COMPONENT;
  }
  if (component != RenderTarget::COLOR_BUFFER) {
    throw std::invalid_argument("a render target renders DEPTH_BUFFER (0) or COLOR_BUFFER (3), not " +
                                std::to_string(static_cast<int>(component)));
  }
  if (format != RenderTarget::RGB && format != RenderTarget::RGBA) {
    throw std::invalid_argument("a colour buffer has the format RGB or RGBA, not " +
                                std::to_string(static_cast<int>(format)));
  }
  return format;
}

} // namespace zorOSG
