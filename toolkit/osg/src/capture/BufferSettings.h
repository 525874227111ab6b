#pragma once

#include <zorOSG/RenderTarget.h>

namespace zorOSG {

/**
 * \return the number of samples; the graphics driver lowers it to what it can do.
 * \throws std::invalid_argument above 64.
 */
unsigned int checkedSamples(zor::UInt multiSamples);

/**
 * \return the pixel format for a buffer of that kind.
 * \throws std::invalid_argument for an unknown component, or a depth format for a colour buffer.
 */
RenderTarget::TextureFormat checkedFormat(RenderTarget::BufferComponent component,
                                          RenderTarget::TextureFormat format);

} // namespace zorOSG
