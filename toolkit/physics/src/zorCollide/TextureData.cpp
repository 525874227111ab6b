#include <zorCollide/TextureData.h>

#include <stdexcept>

namespace zorCollide {

TextureData::TextureData(std::string const& filename) : m_filename(filename) {
  if (filename.empty())
    throw std::invalid_argument("TextureData: the file name is empty");
}

TextureData::TextureData(zor::UInt32 width, zor::UInt32 height, Format format,
                         zor::Vector<zor::UInt8> const& pixels)
    : m_width(width), m_height(height), m_format(format), m_pixels(pixels) {
  if (width == 0 || height == 0)
    throw std::invalid_argument("TextureData: width or height is 0");
  if (format < LUMINANCE || format > RGBA)
    throw std::invalid_argument("TextureData: unknown format " + std::to_string(format));
  size_t const needed = size_t(width) * height * static_cast<size_t>(format);
  if (pixels.size() != needed)
    throw std::invalid_argument("TextureData: " + std::to_string(pixels.size()) + " bytes of pixels, but " +
                                std::to_string(needed) + " are needed");
}

TextureData::~TextureData() = default;

} // namespace zorCollide
