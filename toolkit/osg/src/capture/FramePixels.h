#pragma once

#include <osg/Image>

namespace zorOSG {

/** \return true if rows of 8-bit RGB follow each other without padding */
bool isPackedRgb(osg::Image const& image);

/**
 * Copies pixels of any format as packed 8-bit RGB.
 * \param source - an image with data
 * \param target - takes the size of the source; its storage is used again where it is large enough
 */
void copyAsRgb(osg::Image const& source, osg::Image& target);

} // namespace zorOSG
