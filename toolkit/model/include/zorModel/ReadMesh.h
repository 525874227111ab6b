#pragma once

#include <string>

#include <zor/Types.h>
#include <zor/Vec3.h>
#include <zorCollide/Trimesh.h>
#include <zorRender/RenderData.h>

namespace zorModel {

/**
 * Reads the triangles of a mesh file, as the file has them. Wavefront OBJ and STL (text and binary) are read
 * by this library, with normals and texture coordinates where an OBJ file has them; every other format by the
 * drawing layer, once it is loaded (`import zorOSG`), which merges all parts in their places.
 * \param filename - mesh file, looked up as given and then along the resource path (ZOR_FILE_PATH)
 * \return new triangles without a material, which belong to the caller
 * \throws std::runtime_error that names the file, and the line where one is to blame, if it is missing or
 * cannot be read
 */
zorRender::RenderData* readMesh(std::string const& filename);

/**
 * Reads a mesh file into a shape. Triangles without area are dropped.
 * \param filename - mesh file, as for readMesh()
 * \param scale - factors of the axes, none of them zero; an odd number of negative ones mirrors the mesh,
 * whose outside stays outside
 * \param weldDistance - vertices that lie no farther apart than this (m, after scaling) become one; zero
 * merges equal ones; negative leaves the vertices as they are in the file
 * \return a new triangle mesh named as the file, which belongs to the caller
 * \throws std::runtime_error as readMesh(), and if no triangle is left; std::invalid_argument if a factor is
 * zero or a number not finite
 */
zorCollide::Trimesh* readTrimesh(std::string const& filename, zor::Vec3 const& scale = zor::Vec3(1, 1, 1),
                                 zor::Real weldDistance = 0);

} // namespace zorModel
