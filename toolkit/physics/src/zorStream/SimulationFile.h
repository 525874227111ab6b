#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <zorSDK/Simulation.h>

#include "zorStream/StateAccess.h"

namespace zorStream {

/** Version of the format that is written. All older ones are read. */
constexpr std::uint32_t FORMAT_VERSION = 2;

/** A whole simulation between memory and bytes: objects made aside, which no simulation knows yet. */
class SimulationFile {
public:
  /** \return the bytes of a simulation, as JSON or binary */
  static std::string write(zorSDK::Simulation& simulation, bool json);

  /**
   * Reads bytes of either kind, and makes everything that they describe.
   * \throws ArchiveError with the place of what is wrong
   */
  explicit SimulationFile(std::string_view bytes);

  /**
   * Adds what was read to a simulation, once.
   * \param parent - gets all that is in no assembly of its own, or null
   * \param selection - of Simulation::ReadSelection
   * \throws ArchiveError when the contents contradict each other; the simulation is then as it was
   */
  void addTo(zorSDK::Simulation& simulation, zorSDK::Assembly* parent, zor::UInt selection);

private:
  friend struct StateAccess;
  SimulationFile() = default;
  void describe(Archive& archive);
  void describeBodies(Archive& archive);
  void describeParticles(Archive& archive);

  void checkContents() const;

  ObjectTables m_tables;
  std::vector<zorBullet::MotionState> m_motions; // of the bodies in the table
  StateAccess::Settings m_settings;
  StateAccess::Clock m_clock;
  StateAccess::Contents m_contents;
  bool m_hasHistory = false;
  StateAccess::History m_history;
};

} // namespace zorStream
