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

void addAlpha(unsigned char const* from, unsigned char* to, int count) {
  for (int i = 0; i < count; ++i, from += 3, to += 4) {
    to[0] = from[0];
    to[1] = from[1];
    to[2] = from[2];
    to[3] = 255;
  }
}

unsigned char toByte(float value) {
  return static_cast<unsigned char>(std::lround(std::clamp(value, 0.0f, 1.0f) * 255.0f));
}

/** Any format that the image can tell colours of. */
void convertRow(osg::Image const& source, unsigned int row, unsigned char* to, unsigned int channels) {
  for (unsigned int x = 0; x < static_cast<unsigned int>(source.s()); ++x, to += channels) {
    osg::Vec4 const color = source.getColor(x, row);
    for (unsigned int c = 0; c < channels; ++c) {
      to[c] = toByte(color[c]);
    }
  }
}

void copyAs(osg::Image const& source, osg::Image& target, GLenum format) {
  target.allocateImage(source.s(), source.t(), 1, format, GL_UNSIGNED_BYTE);
  unsigned int const channels = format == GL_RGBA ? 4 : 3;
  bool const bytes = source.getDataType() == GL_UNSIGNED_BYTE;
  GLenum const given = source.getPixelFormat();
  for (int row = 0; row < source.t(); ++row) {
    unsigned char* const to = target.data(0, static_cast<unsigned int>(row));
    unsigned char const* const from = source.data(0, static_cast<unsigned int>(row));
    if (bytes && given == format) {
      std::memcpy(to, from, static_cast<std::size_t>(source.s()) * channels);
    } else if (bytes && given == GL_RGBA) {
      dropAlpha(from, to, source.s());
    } else if (bytes && given == GL_RGB) {
      addAlpha(from, to, source.s());
    } else {
      convertRow(source, static_cast<unsigned int>(row), to, channels);
    }
  }
}

} // namespace

bool isPackedRgba(osg::Image const& image) {
  return image.getPixelFormat() == GL_RGBA && image.getDataType() == GL_UNSIGNED_BYTE &&
         image.getRowStepInBytes() == static_cast<unsigned int>(image.s()) * 4u;
}

void copyAsRgb(osg::Image const& source, osg::Image& target) {
  copyAs(source, target, GL_RGB);
}

void copyAsRgba(osg::Image const& source, osg::Image& target) {
  copyAs(source, target, GL_RGBA);
}

} // namespace zorOSG
