#pragma once

#include <string>

#include <osg/Node>
#include <osgDB/ReaderWriter>

namespace zorOSG {

/**
 * Reads a model file into a node, with the reader option "noRotation", so that models keep the axes they were
 * made with. The file is looked up as given and then along the resource path (ZOR_FILE_PATH).
 * \param filename - name or path of the file
 * \param searchForIve - true to read [path]/[filename].ive in its place where that file exists
 * \return the node, or null when the file is missing or cannot be read; the log then says which and where it
 * was sought
 */
osg::Node* readNodeFile(std::string const& filename, bool searchForIve = false);

/**
 * Reads a model file into a node with the caller's reader options.
 * \param filename - name or path of the file
 * \param options - options for the reader, used as they are; null means none
 * \param searchForIve - true to read [path]/[filename].ive in its place where that file exists
 * \return the node, or null when the file is missing or cannot be read; the log then says which and where it
 * was sought
 */
osg::Node* readNodeFile(std::string const& filename, osgDB::ReaderWriter::Options const* options,
                        bool searchForIve = false);

} // namespace zorOSG
