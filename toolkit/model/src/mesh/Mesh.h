#pragma once

#include <string>

#include <zor/Vec3.h>
#include <zor/ref_ptr.h>
#include <zorCollide/Trimesh.h>
#include <zorRender/RenderData.h>

namespace zorModel {

/** The same triangles, larger by three factors of which none is zero; their outside stays outside. */
zor::ref_ptr<zorRender::RenderData> scaledMesh(zorRender::RenderData const& mesh, zor::Vec3 const& scale);

/** A shape of the triangles that have an area; see readTrimesh() for the weld distance.
 * \throws std::runtime_error if there are none */
zor::ref_ptr<zorCollide::Trimesh> trimeshOf(zorRender::RenderData const& mesh, zor::Real weldDistance,
                                            std::string const& name);

} // namespace zorModel
