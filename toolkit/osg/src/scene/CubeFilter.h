#pragma once

#include <array>

#include <osg/Image>
#include <osg/ref_ptr>

namespace zorOSG {

/**
 * A side of a cube map with what surfaces of all kinds see of it as its smaller images: those of about 128,
 * 64, 32 and 16 pixels a side for roughness 0.25, 0.5, 0.75 and 1, larger ones for less, and that of 8 pixels
 * for dull surfaces.
 */
class FilteredSide : public osg::Image {
protected:
  ~FilteredSide() override = default;
};

using CubeSides = std::array<osg::ref_ptr<osg::Image>, 6>;

/**
 * Makes what rough surfaces reflect of a cube map: the mean over the small mirrors that they consist of. It
 * takes about half a second of processor time for sides of 512 pixels, once for the same pixels as long as a
 * texture uses them.
 * \param sides - six square images of one size in the order of cube maps, upper row first
 * \return images with all their smaller ones, at least 256 pixels wide; the sides themselves if they are
 * compressed
 */
CubeSides filterCube(CubeSides const& sides);

} // namespace zorOSG
