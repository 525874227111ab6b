#pragma once

#include <string>

#include <osg/Image>
#include <osg/ref_ptr>

namespace zorOSG {

/**
 * Reads an image from the resource path.
 * \param what - what the file is, for the log
 * \return null if it cannot be read; the log says why
 */
osg::ref_ptr<osg::Image> readImage(std::string const& what, std::string const& filename);

} // namespace zorOSG
