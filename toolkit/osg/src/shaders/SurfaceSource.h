#pragma once

// Parts of the scene's fragment shader: what a surface is like at a place.

namespace zorOSG {

/** Gamma, texture roles, normal and height maps. */
extern char const* const SURFACE_SOURCE;

/** Surroundings and the physics of metallic and rough surfaces. */
extern char const* const REFLECTION_SOURCE;

} // namespace zorOSG
