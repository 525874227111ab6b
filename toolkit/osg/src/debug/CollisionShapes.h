#pragma once

#include "DebugLines.h"
#include "ShapeOutline.h"

#include <zor/observer_ptr.h>
#include <zorSDK/Simulation.h>

#include <memory>
#include <unordered_map>

namespace zorOSG {

/** Wire frames of the collision shapes. An outline is made when its geometry is first seen, or has changed.
 */
class CollisionShapes {
public:
  void draw(zorSDK::Simulation const& simulation, DebugLines& lines);

private:
  /** What was made of a geometry. */
  struct Entry {
    zor::observer_ptr<zorCollide::Geometry> geometry; // another may come to lie at the address of a dead one
    Outline outline;
    zorCollide::Geometry::ShapeChangeEvent::CallbackType changed;
    bool isStale = true;
    bool isUsed = true;
  };

  Entry& entryOf(zorCollide::Geometry& geometry);

  // By address; an entry that no geometry of a round has used goes.
  std::unordered_map<zorCollide::Geometry const*, std::unique_ptr<Entry>> m_entries;
};

} // namespace zorOSG
