#pragma once

#include <vector>

#include <zor/ParticleSystem.h>
#include <zor/Plane.h>
#include <zorOSG/ClipPlane.h>

namespace zorOSG {

/** Has a plane hide particles of a system until it is removed. Adding it twice is as adding it once. */
void addParticleClip(zor::ParticleSystem const& particles, ClipPlane const& plane);
void removeParticleClip(ClipPlane const& plane);

/** \return the enabled planes on whose negative sides particles of a system are not drawn */
std::vector<zor::Plane> particleClips(zor::ParticleSystem const& particles);

} // namespace zorOSG
