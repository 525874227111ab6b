#include "ColorTables.h"

#include <zorOSG/ScalarColorMap.h>

// Colours as 0xRRGGBB at even distances.
//
// VIRIDIS, INFERNO, PLASMA: by N. Smith, S. van der Walt and E. Firing, in the public domain (CC0); every
// eighth of the 256 colours. CIVIDIS: by J. Nunez, C. Anderton and R. Renslow, "Optimizing colormaps with
// consideration for color vision deficiency" (2018), likewise. COOLWARM: K. Moreland, "Diverging Color Maps
// for Scientific Visualization" (2009). BONE, COPPER and AFMHOT are the well-known piecewise linear ramps,
// here by their formulas.

namespace zorOSG {

namespace {

constexpr unsigned int COOLWARM[] = {0x3b4cc0, 0x445acc, 0x4d68d7, 0x5775e1, 0x6282ea, 0x6c8ef1, 0x779af7,
                                     0x82a5fb, 0x8db0fe, 0x98b9ff, 0xa3c2fe, 0xaec9fc, 0xb8d0f9, 0xc2d5f4,
                                     0xccd9ee, 0xd5dbe6, 0xdddddd, 0xe5d8d1, 0xecd3c5, 0xf1ccb9, 0xf4c4ad,
                                     0xf7bba0, 0xf7b194, 0xf7a687, 0xf49a7b, 0xf18d6f, 0xec7f63, 0xe57058,
                                     0xde604d, 0xd55042, 0xcb3e38, 0xc0282f, 0xb40426};
constexpr unsigned int VIRIDIS[] = {0x440154, 0x470d60, 0x48186a, 0x482374, 0x472d7b, 0x453681, 0x424086,
                                    0x3f4989, 0x3b528b, 0x375a8d, 0x33638d, 0x2f6a8e, 0x2c728e, 0x297a8e,
                                    0x26818e, 0x23898e, 0x21908c, 0x1f988b, 0x1f9f88, 0x21a685, 0x28ae80,
                                    0x31b57b, 0x3ebc74, 0x4cc26c, 0x5dc963, 0x6ece58, 0x82d34c, 0x96d83f,
                                    0xabdc32, 0xc0df24, 0xd5e21a, 0xeae51a, 0xfde725};
constexpr unsigned int INFERNO[] = {0x000004, 0x040312, 0x0b0724, 0x150b37, 0x210c4a, 0x2e0a5a, 0x3c0965,
                                    0x4a0c6b, 0x57106d, 0x63146e, 0x70196e, 0x7d1e6d, 0x89226a, 0x962766,
                                    0xa32b61, 0xaf315c, 0xbb3755, 0xc63e4d, 0xd14644, 0xdb4f3b, 0xe35932,
                                    0xeb6528, 0xf1711e, 0xf67f14, 0xf98d0a, 0xfb9c06, 0xfcab0f, 0xfbba1f,
                                    0xf9ca32, 0xf5d949, 0xf2e865, 0xf3f586, 0xfcffa4};
constexpr unsigned int PLASMA[] = {0x0d0887, 0x220690, 0x310596, 0x3f049c, 0x4c02a1, 0x5901a5, 0x6600a7,
                                   0x7201a8, 0x7e03a8, 0x8909a6, 0x9511a2, 0x9f1a9c, 0xa92396, 0xb22c8e,
                                   0xbb3587, 0xc33e80, 0xcb4778, 0xd25071, 0xd9596a, 0xe06263, 0xe66c5c,
                                   0xeb7555, 0xf07f4f, 0xf48a48, 0xf89441, 0xfb9f3a, 0xfdab33, 0xfeb72d,
                                   0xfdc328, 0xfcd025, 0xf9dd25, 0xf5eb27, 0xf0f921};
constexpr unsigned int CIVIDIS[] = {0x00224e, 0x00285b, 0x002e6a, 0x043371, 0x1a386f, 0x273e6e, 0x32436d,
                                    0x3b496c, 0x434e6c, 0x4b546c, 0x52596d, 0x5a5f6e, 0x61656f, 0x686a71,
                                    0x6f7073, 0x757676, 0x7c7b78, 0x848179, 0x8b8778, 0x938d78, 0x9b9376,
                                    0xa39a75, 0xaba072, 0xb3a670, 0xbbad6c, 0xc3b469, 0xccba64, 0xd4c15f,
                                    0xddc958, 0xe6d051, 0xefd748, 0xf8df3c, 0xfee838};
constexpr unsigned int RAINBOW[] = {0x0000ff, 0x00ffff, 0x00ff00, 0xffff00, 0xff0000};
constexpr unsigned int GRAYSCALE[] = {0x000000, 0xffffff};
constexpr unsigned int BLUE_WHITE_RED[] = {0x0000ff, 0xffffff, 0xff0000};

template <class Numbers>
std::vector<osg::Vec4> unpacked(Numbers const& numbers) {
  std::vector<osg::Vec4> colors;
  for (unsigned int const number : numbers) {
    auto const part = [number](unsigned int shift) {
      return static_cast<float>((number >> shift) & 0xffu) / 255.0f;
    };
    colors.emplace_back(part(16), part(8), part(0), 1.0f);
  }
  return colors;
}

/** \param count - colours, so that every bend of the ramps is at one */
template <class Ramp>
std::vector<osg::Vec4> sampled(int count, Ramp ramp) {
  std::vector<osg::Vec4> colors;
  colors.reserve(static_cast<size_t>(count));
  for (int i = 0; i < count; ++i)
    colors.push_back(ramp(static_cast<float>(i) / static_cast<float>(count - 1)));
  return colors;
}

float clamped(float value) {
  return value < 0 ? 0.0f : (value > 1 ? 1.0f : value);
}

/** Seven parts of grey, and one of what first turns blue, then green, then red. */
osg::Vec4 bone(float x) {
  constexpr float first = 23.0f / 63, second = 47.0f / 63;
  float const red = clamped((x - second) / (1 - second)), green = clamped((x - first) / (second - first)),
              blue = clamped(x / first);
  return {(7 * x + red) / 8, (7 * x + green) / 8, (7 * x + blue) / 8, 1};
}

osg::Vec4 copper(float x) {
  return {clamped(1.25f * x), 0.7812f * x, 0.4975f * x, 1};
}

osg::Vec4 afmhot(float x) {
  return {clamped(2 * x), clamped(2 * x - 0.5f), clamped(2 * x - 1), 1};
}

} // namespace

std::vector<osg::Vec4> colorTable(int preset) {
  switch (preset) {
  case ScalarColorMap::RAINBOW:
    return unpacked(RAINBOW);
  case ScalarColorMap::COOLWARM:
    return unpacked(COOLWARM);
  case ScalarColorMap::VIRIDIS:
    return unpacked(VIRIDIS);
  case ScalarColorMap::INFERNO:
    return unpacked(INFERNO);
  case ScalarColorMap::PLASMA:
    return unpacked(PLASMA);
  case ScalarColorMap::GRAYSCALE:
    return unpacked(GRAYSCALE);
  case ScalarColorMap::BLUE_WHITE_RED:
    return unpacked(BLUE_WHITE_RED);
  case ScalarColorMap::CIVIDIS:
    return unpacked(CIVIDIS);
  case ScalarColorMap::BONE:
    return sampled(64, bone);
  case ScalarColorMap::COPPER:
    return sampled(6, copper);
  case ScalarColorMap::AFMHOT:
    return sampled(5, afmhot);
  default:
    return {};
  }
}

} // namespace zorOSG
