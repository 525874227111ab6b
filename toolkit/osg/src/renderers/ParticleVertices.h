#pragma once

#include <osg/BoundingBox>
#include <osg/Geometry>
#include <osg/State>
#include <osg/ref_ptr>

#include <zor/ParticleSystem.h>

namespace zorOSG {

/** \param mode - ParticleSystemDrawable::ParticleRenderingMode \return empty vertex buffers for it */
osg::ref_ptr<osg::Geometry> makeParticleGeometry(int mode);

/** Fills the buffers from the enabled particles. They keep their memory while the number stays. \return the
 * box around the particles */
osg::BoundingBox fillParticleGeometry(osg::Geometry& geometry, int mode,
                                      zor::ParticleSystem const& particles);

/** Tells the program that is in use how many pixels a point of size one at distance one has. */
void setPointScale(osg::State& state);

} // namespace zorOSG
