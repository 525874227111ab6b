#include "FramePixels.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace zorOSG {

namespace {

void dropAlpha(unsigned char const* from, unsigned char* to, int count) {
  for (int i = 0; i < count; ++i, from += 4, to += 3) {
    to[0] = from[0];
    to[1] = from[1];
    to[2] = from[2];
  }
}

unsigned char toByte(float value) {
  return static_cast<unsigned char>(std::lround(std::clamp(value, 0.0f, 1.0f) * 255.0f));
}

/** Any format that the image can tell colours of. */
void convertRow(osg::Image const& source, unsigned int row, unsigned char* to) {
  for (unsigned int x = 0; x < static_cast<unsigned int>(source.s()); ++x, to += 3) {
    osg::Vec4 const color = source.getColor(x, row);
    for (unsigned int c = 0; c < 3; ++c) {
      to[c] = toByte(color[c]);
    }
  }
}

} // namespace

bool isPackedRgb(osg::Image const& image) {
  return image.getPixelFormat() == GL_RGB && image.getDataType() == GL_UNSIGNED_BYTE &&
         image.getRowStepInBytes() == static_cast<unsigned int>(image.s()) * 3u;
}

void copyAsRgb(osg::Image const& source, osg::Image& target) {
  target.allocateImage(source.s(), source.t(), 1, GL_RGB, GL_UNSIGNED_BYTE);
  bool const bytes = source.getDataType() == GL_UNSIGNED_BYTE;
  for (int row = 0; row < source.t(); ++row) {
    unsigned char* const to = target.data(0, static_cast<unsigned int>(row));
    unsigned char const* const from = source.data(0, static_cast<unsigned int>(row));
    if (bytes && source.getPixelFormat() == GL_RGB) {
      std::memcpy(to, from, static_cast<std::size_t>(source.s()) * 3);
    } else if (bytes && source.getPixelFormat() == GL_RGBA) {
      dropAlpha(from, to, source.s());
    } else {
      convertRow(source, static_cast<unsigned int>(row), to);
    }
  }
}

} // namespace zorOSG
