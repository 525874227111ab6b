#include <zorOSG/ReadFile.h>

#include <filesystem>
#include <stdexcept>

#include <zor/Notify.h>
#include <zorOSG/CreateVisual.h>

#include "ResourceFile.h"

namespace zorOSG {

namespace {

/** What a simulation has beyond what it had, as an assembly that is only used to draw it. */
class NewObjects {
public:
  explicit NewObjects(zorSDK::Simulation const& simulation)
      : m_simulation(simulation), m_numBodies(simulation.getRigidBodies().size()),
        m_numGeometries(simulation.getGeometries().size()),
        m_numParticleSystems(simulation.getParticleSystems().size()) {}

  zor::ref_ptr<zorSDK::Assembly> collect(std::string const& name) const {
    zor::ref_ptr<zorSDK::Assembly> assembly = new zorSDK::Assembly(name);
    auto const& bodies = m_simulation.getRigidBodies();
    for (size_t i = m_numBodies; i < bodies.size(); ++i)
      assembly->add(bodies[i].get());
    auto const& geometries = m_simulation.getGeometries();
    for (size_t i = m_numGeometries; i < geometries.size(); ++i)
      if (!geometries[i]->getRigidBody())
        assembly->add(geometries[i].get());
    return assembly;
  }

  void drawParticles(osg::Group* root) const {
    auto const& systems = m_simulation.getParticleSystems();
    for (size_t i = m_numParticleSystems; i < systems.size(); ++i)
      createVisual(systems[i].get(), root);
  }

private:
  zorSDK::Simulation const& m_simulation;
  size_t m_numBodies;
  size_t m_numGeometries;
  size_t m_numParticleSystems;
};

} // namespace

bool readFile(std::string const& filename, zorSDK::Simulation* simulation, osg::Group* root,
              zorSDK::Assembly* parent, zor::Real detailRatio, bool createAxis, zor::UInt selection,
              zorOSG::RigidBodyRenderCache* renderCache) {
  if (!simulation)
    throw std::invalid_argument("readFile: the simulation is null");
  if (!(detailRatio >= 0)) // before anything is read
    throw std::invalid_argument("readFile: detailRatio must not be negative, but is " +
                                std::to_string(detailRatio));
  std::string const path = findResourceFile(filename);
  if (path.empty()) {
    logMissingFile("Simulation file", filename);
    return false;
  }
  bool const newParent = parent && !parent->getSimulation();
  if (newParent) // what it has already is not what is read
    simulation->add(parent);
  NewObjects const added(*simulation);
  try {
    simulation->read(path, parent, selection);
  } catch (std::runtime_error const& error) {
    zor::notify(zor::Notify::NOTIFY_ERROR) << "readFile: " << error.what() << zor::endMessage;
    if (newParent)
      simulation->remove(parent);
    return false;
  }
  zor::ref_ptr<zorSDK::Assembly> const seen =
      added.collect(std::filesystem::path(filename).filename().string());
  if (!seen->getRigidBodies().empty() || !seen->getGeometries().empty())
    createVisualTemplateCaching(seen.get(), root, renderCache, static_cast<float>(detailRatio), createAxis);
  added.drawParticles(root);
  return true;
}

} // namespace zorOSG
