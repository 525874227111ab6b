#pragma once

#include <string>

#include <osg/Node>
#include <osg/ref_ptr>
#include <osgDB/Options>

namespace zorOSG {

/**
 * Reads an existing model file, with vertex buffers switched on.
 * \param options - the reader's options, or null
 * \throws std::runtime_error that says why it cannot be read, without the file's name
 */
osg::ref_ptr<osg::Node> readModelFile(std::string const& path, osgDB::Options const* options);

} // namespace zorOSG
