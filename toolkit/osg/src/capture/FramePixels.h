#pragma once

#include <osg/Image>

namespace zorOSG {

/** \return true if rows of 8-bit RGBA follow each other without padding */
bool isPackedRgba(osg::Image const& image);

/**
 * Copies pixels of any format as packed 8-bit RGB.
 * \param source - an image with data
 * \param target - takes the size of the source; its storage is used again where it is large enough
 */
void copyAsRgb(osg::Image const& source, osg::Image& target);

/** The same as packed 8-bit RGBA; the alpha of pictures that have none is 255. */
void copyAsRgba(osg::Image const& source, osg::Image& target);

} // namespace zorOSG
