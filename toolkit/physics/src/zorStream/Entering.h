#pragma once

#include "zorStream/SimulationFile.h"

namespace zorStream {

/** Adds what a file has made to a simulation, or nothing. */
class StateAccess::Entering {
public:
  Entering(zorSDK::Simulation& simulation, zorSDK::Assembly* parent, SimulationFile& file)
      : m_simulation(simulation), m_parent(parent), m_file(file) {}

  /** \throws ArchiveError when the contents contradict each other; the simulation is then as it was */
  void enter(zor::UInt selection);

private:
  void addObjects();
  void addToParent();
  void removeObjects();
  void removeFromParent();
  void addMaterials();
  void applyMotions();

  zorSDK::Simulation& m_simulation;
  zorSDK::Assembly* m_parent;
  SimulationFile& m_file;
};

} // namespace zorStream
