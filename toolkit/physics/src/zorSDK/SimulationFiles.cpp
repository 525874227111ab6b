#include <stdexcept>

#include <zor/Notify.h>
#include <zorSDK/Simulation.h>

#include "zorSDK/SimulationImpl.h"
#include "zorStream/FileAccess.h"
#include "zorStream/SimulationFile.h"

// A simulation in files.

namespace zorSDK {

namespace {

bool isJson(std::string const& filename) {
  bool const json = filename.ends_with(".azor");
  if (!json && !filename.ends_with(".zor"))
    throw std::invalid_argument("Simulation::write: the name of file '" + filename +
                                "' must end with .zor (binary) or .azor (JSON)");
  return json;
}

void warnOfLoss(std::size_t count, std::string const& noun) {
  if (count > 0)
    zor::notify(zor::Notify::NOTIFY_WARNING)
        << "Simulation::write: " << count << " " << noun << (count == 1 ? " is" : "s are") << " not stored"
        << zor::endMessage;
}

} // namespace

void Simulation::write(zor::String const& filename) const {
  bool const json = isJson(filename);
  zorStream::writeBytes(filename, toBytes(json));
}

std::string Simulation::toBytes(bool json) const {
  warnOfLoss(m_impl->listeners.size(), "listener");
  return zorStream::SimulationFile::write(const_cast<Simulation&>(*this), json);
}

void Simulation::read(zor::String const& filename, Assembly* parent, zor::UInt selection) {
  readBytes(zorStream::readBytes(filename), parent, selection, "file '" + filename + "'");
}

void Simulation::fromBytes(std::string_view bytes, Assembly* parent, zor::UInt selection) {
  readBytes(bytes, parent, selection, "the bytes");
}

void Simulation::readBytes(std::string_view bytes, Assembly* parent, zor::UInt selection,
                           std::string const& source) {
  if (selection & ~zor::UInt(READ_ALL))
    throw std::invalid_argument("Simulation::read: the selection " + std::to_string(selection) +
                                " has unknown bits");
  if (parent && parent->getSimulation() && parent->getSimulation() != this)
    throw std::invalid_argument("Simulation::read: the assembly '" + parent->getName() +
                                "' is in another simulation");
  if (m_impl->stepping())
    throw std::runtime_error("Simulation::read: called inside a step");
  try {
    zorStream::SimulationFile(bytes).addTo(*this, parent, selection);
  } catch (zorStream::ArchiveError const& error) {
    throw std::runtime_error("cannot read " + source + ": " + error.what());
  }
}

} // namespace zorSDK
