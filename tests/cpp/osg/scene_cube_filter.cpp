// What rough and dull surfaces see of a cube map.

#include "scene/CubeFilter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

using zorOSG::CubeSides;

namespace {

/** A dark room with one bright side, the fifth. */
CubeSides room(int side, unsigned char dark, unsigned char bright) {
  CubeSides sides;
  for (size_t i = 0; i < sides.size(); ++i) {
    sides[i] = new osg::Image;
    sides[i]->allocateImage(side, side, 1, GL_RGB, GL_UNSIGNED_BYTE);
    std::fill_n(sides[i]->data(), sides[i]->getTotalSizeInBytes(), i == 4 ? bright : dark);
  }
  return sides;
}

/** Brightness in the middle of a side, in the image of a number of pixels. */
double middle(osg::Image const& image, int size) {
  int const level = static_cast<int>(std::log2(image.s() / size));
  return image.getMipmapData(static_cast<unsigned int>(level))[3 * (size / 2 * size + size / 2)] / 255.0;
}

TEST(CubeFilterTest, BlursAsRoughSurfacesDo) {
  CubeSides const sides = zorOSG::filterCube(room(512, 0, 255));
  EXPECT_EQ(sides[4]->s(), 512);
  EXPECT_EQ(sides[4]->getNumMipmapLevels(), 10u);
  EXPECT_EQ(middle(*sides[4], 512), 1.0) << "mirrors see it as it is";
  EXPECT_EQ(middle(*sides[0], 512), 0.0);
  double ahead = 1.0, behind = 0.0;
  for (int const size : {128, 64, 32, 16}) { // 0.25, 0.5, 0.75 and 1 rough
    EXPECT_LE(middle(*sides[4], size), ahead);
    EXPECT_GE(middle(*sides[0], size), behind);
    ahead = middle(*sides[4], size);
    behind = middle(*sides[0], size);
  }
  EXPECT_GT(ahead, 0.5);
  EXPECT_GT(behind, 0.05);
  EXPECT_EQ(middle(*sides[5], 128), 0.0);
  // The part of what a dull surface sees that a square as far away as half its side takes up.
  double const part = 4.0 / std::numbers::pi * std::sqrt(0.5) * std::atan(std::sqrt(0.5));
  EXPECT_NEAR(middle(*sides[4], 8), part, 0.02);
  EXPECT_EQ(middle(*sides[5], 8), 0.0);
}

TEST(CubeFilterTest, KeepsWhatIsTheSameEverywhereInAllSizes) {
  for (int const side : {4, 256, 300}) {
    CubeSides const sides = zorOSG::filterCube(room(side, 90, 90));
    EXPECT_EQ(sides[2]->s(), std::max(side, 256));
    for (osg::ref_ptr<osg::Image> const& image : sides)
      for (unsigned int i = 0; i < image->getTotalSizeInBytesIncludingMipmaps(); ++i)
        ASSERT_NEAR(image->data()[i], 90, 1) << side;
  }
}

TEST(CubeFilterTest, IsDoneOnceForTheSamePixels) {
  CubeSides first = zorOSG::filterCube(room(8, 10, 200));
  EXPECT_EQ(zorOSG::filterCube(room(8, 10, 200))[3], first[3]);
  EXPECT_NE(zorOSG::filterCube(room(8, 10, 201))[3], first[3]);
  EXPECT_NE(zorOSG::filterCube(room(16, 10, 200))[3], first[3]);
}

} // namespace
