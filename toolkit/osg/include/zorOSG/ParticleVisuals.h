#pragma once

#include <osg/Geode>
#include <osg/Group>

#include <zor/ParticleSystem.h>
#include <zor/Types.h>

namespace zorOSG {

/**
 * Creates a visual of the forces between particles: a line for each contact of the last step, from centre to
 * centre or to the point where a geometry is touched, coloured by the force along the normal from blue over
 * green and yellow to red. Solid particles hide what is inside them: draw them see-through, or switch their
 * drawable off.
 * \param particleSystem - the particle system, which the visual holds; null gives null
 * \param root - the group that gets and owns the node; null gives null
 * \param minForce - force drawn blue (N); contacts with less are left out. Not negative
 * \param maxForce - force from which on a contact is red (N); larger than minForce. Both finite, else
 * std::invalid_argument
 * \return the node, owned by root
 */
osg::Geode* createParticleContactGraph(zor::ParticleSystem* particleSystem, osg::Group* root,
                                       zor::Real minForce, zor::Real maxForce);

/**
 * Creates a visual of the paths of some particles: lines in the particles' colours, which fade towards their
 * older ends. A position is added in every frame before which the simulation has made a step. Paths have gaps
 * where particles were put somewhere else, as those of createRigidBodyTrajectoriesVisual.
 * \param particleSystem - the particle system, which the visual holds; null gives null
 * \param root - the group that gets and owns the node; null gives null
 * \param sampling - part of the particles that leave a path, 0 for none to 1 for all; outside throws
 * std::invalid_argument. Which ones is decided once for each particle
 * \param numPositions - positions that a path has at most; a line needs two
 * \return the node, owned by root
 */
osg::Geode* createParticleTrajectoriesVisual(zor::ParticleSystem* particleSystem, osg::Group* root,
                                             zor::Real sampling, zor::UInt numPositions);

} // namespace zorOSG
