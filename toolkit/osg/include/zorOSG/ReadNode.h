#pragma once

#include <string>

#include <osg/Node>
#include <osgDB/ReaderWriter>

#include <zorCollide/Trimesh.h>

namespace zorOSG {

/**
 * Extracts all triangle data below a node and merges it into one triangle mesh in world coordinates. Equal
 * vertices are merged and triangles without area dropped.
 * \param node - the node to read; its own parents count for the world coordinates only when it has exactly
 * one path to a root
 * \return a new triangle mesh, which belongs to the caller
 * Throws std::runtime_error when the node is null or has no triangles below it.
 */
zorCollide::Trimesh* createTrimesh(osg::Node* node);

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
