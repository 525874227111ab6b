#pragma once

#include <span>

#include <osg/Geometry>
#include <osg/Plane>
#include <osg/Vec3>
#include <osg/ref_ptr>

// Triangle meshes of the collision shapes, in the shapes' own coordinates: closed ones face outwards, round
// ones have their axis along y and the origin at their centre. Texture unit 0 has coordinates.

namespace zorOSG {

/** Half the side of the square that stands for an infinite plane (m). */
constexpr float infinitePlaneHalfSize = 100.0f;

/** Segments around a full turn for a detail ratio; 1 looks round at normal distances. */
unsigned int segmentsForDetail(float detailRatio);

osg::ref_ptr<osg::Geometry> tessellateBox(osg::Vec3 const& halfExtents);
osg::ref_ptr<osg::Geometry> tessellateSphere(float radius, unsigned int segments);
/** \param height - distance between the centres of the two half spheres */
osg::ref_ptr<osg::Geometry> tessellateCapsule(float radius, float height, unsigned int segments);
osg::ref_ptr<osg::Geometry> tessellateCylinder(float radius, float height, unsigned int segments);
/** Tip at +height/2. */
osg::ref_ptr<osg::Geometry> tessellateCone(float radius, float height, unsigned int segments);
osg::ref_ptr<osg::Geometry> tessellatePlane(osg::Plane const& plane);

/**
 * A mesh from triangles. Edges sharper than the crease angle (radians) stay sharp; 0 gives flat faces.
 * Corners at equal positions are treated as one vertex; textures are projected along the main axis of each
 * face.
 */
osg::ref_ptr<osg::Geometry> tessellateTriangles(std::span<osg::Vec3 const> vertices,
                                                std::span<unsigned int const> indices, float creaseAngle);

/**
 * A grid of heights centred at the origin, z up, row after row along x.
 * \param heights - resolutionX * resolutionY samples
 */
osg::ref_ptr<osg::Geometry> tessellateHeightField(unsigned int resolutionX, unsigned int resolutionY,
                                                  float sizeX, float sizeY, std::span<float const> heights);

} // namespace zorOSG
