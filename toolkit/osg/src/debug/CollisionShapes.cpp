#include "CollisionShapes.h"

#include "DebugKinds.h"
#include "scene/Convert.h"

namespace zorOSG {

using ShapeChangeCallback = zorCollide::Geometry::ShapeChangeEvent::CallbackType;

CollisionShapes::Entry& CollisionShapes::entryOf(zorCollide::Geometry& geometry) {
  std::unique_ptr<Entry>& entry = m_entries[&geometry];
  if (!entry || entry->geometry.get() != &geometry) {
    entry = std::make_unique<Entry>();
    entry->geometry = &geometry;
    entry->changed = ShapeChangeCallback([stale = &entry->isStale](zorCollide::Geometry*) { *stale = true; });
    geometry.getShapeChangeEvent().add(entry->changed);
  }
  if (entry->isStale)
    entry->outline = outlineOf(geometry);
  entry->isStale = false;
  entry->isUsed = true;
  return *entry;
}

void CollisionShapes::draw(zorSDK::Simulation const& simulation, DebugLines& lines) {
  for (auto const& geometry : simulation.getGeometries()) {
    Entry const& entry = entryOf(*geometry);
    if (!geometry->getEnable())
      continue;
    osg::Matrixd const place = toOsg(geometry->getTransform());
    osg::Vec4ub const color = stateColor(*geometry);
    for (auto const& [from, to] : entry.outline)
      lines.line(from * place, to * place, color);
  }
  std::erase_if(m_entries, [](auto const& item) { return !std::exchange(item.second->isUsed, false); });
}

} // namespace zorOSG
