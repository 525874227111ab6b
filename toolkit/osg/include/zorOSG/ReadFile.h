#pragma once

#include <string>

#include <osg/Group>

#include <zor/Types.h>
#include <zorOSG/RigidBodyRenderCache.h>
#include <zorSDK/Assembly.h>
#include <zorSDK/Simulation.h>

namespace zorOSG {

/**
 * Reads a stored simulation (".zor" or ".azor", see zorSDK::Simulation::write) into a simulation and creates
 * the visuals of what came in: geometries and particles; an emitter gets its own by createVisual. The file is
 * looked up as given and then along the resource path (ZOR_FILE_PATH).
 * \param filename - name or path of the file
 * \param simulation - gets the objects; null throws std::invalid_argument
 * \param root - the group that gets and owns the visuals; null for none
 * \param parent - assembly that gets what is in no assembly of its own, or null; one that is in another
 * simulation throws std::invalid_argument
 * \param detailRatio - tessellation, see createVisual
 * \param createAxis - true to add xyz axes to each geometry
 * \param selection - what to take from the file, a combination of zorSDK::Simulation::ReadSelection; the
 * default is all but the time
 * \param renderCache - shares shapes' meshes with other visuals, or null
 * \return true on success; else the log says what is wrong with the file and where, or where it was sought,
 * and the simulation is as it was
 */
bool readFile(std::string const& filename, zorSDK::Simulation* simulation, osg::Group* root,
              zorSDK::Assembly* parent = nullptr, zor::Real detailRatio = 0.35, bool createAxis = false,
              zor::UInt selection = 13, zorOSG::RigidBodyRenderCache* renderCache = nullptr);

} // namespace zorOSG
