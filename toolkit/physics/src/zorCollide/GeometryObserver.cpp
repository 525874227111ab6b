#include <zorCollide/GeometryObserver.h>

#include <algorithm>

#include <zorCollide/Geometry.h>

#include "bullet/GeometryImpl.h"

namespace zorCollide {

namespace {

/** Ends a walk in any case. */
struct WalkEnd {
  explicit WalkEnd(std::vector<GeometryObserver*>& open) : walks(open) {}
  ~WalkEnd() { walks.pop_back(); }
  WalkEnd(WalkEnd const&) = delete;
  WalkEnd& operator=(WalkEnd const&) = delete;
  std::vector<GeometryObserver*>& walks;
};

} // namespace

GeometryObserver::~GeometryObserver() {
  observe(nullptr);
}

void GeometryObserver::observe(Geometry* geometry) {
  if (geometry == m_geometry)
    return;
  if (m_geometry)
    m_geometry->getImpl().observers.remove(*this);
  m_geometry = geometry;
  if (m_geometry)
    m_geometry->getImpl().observers.append(*this);
}

void GeometryObserverList::append(GeometryObserver& observer) {
  observer.m_previous = m_last;
  (m_last ? m_last->m_next : m_first) = &observer;
  m_last = &observer;
}

void GeometryObserverList::remove(GeometryObserver& observer) {
  std::replace(m_walks.begin(), m_walks.end(), &observer, observer.m_next);
  (observer.m_previous ? observer.m_previous->m_next : m_first) = observer.m_next;
  (observer.m_next ? observer.m_next->m_previous : m_last) = observer.m_previous;
  observer.m_previous = observer.m_next = nullptr;
}

void GeometryObserverList::tellMoved() const {
  for (GeometryObserver* observer = m_first; observer; observer = observer->m_next)
    observer->geometryMoved();
}

void GeometryObserverList::tellLeft(Space& space, Geometry& geometry) {
  std::size_t const walk = m_walks.size();
  m_walks.push_back(m_first);
  WalkEnd const end(m_walks);
  while (GeometryObserver* const observer = m_walks[walk]) {
    m_walks[walk] = observer->m_next;
    observer->geometryLeft(&space, &geometry);
  }
}

void GeometryObserverList::tellDestroyed(Geometry& geometry) noexcept {
  while (GeometryObserver* const observer = m_first) {
    observer->observe(nullptr);
    try {
      observer->geometryLeft(nullptr, &geometry);
    } catch (...) { // there is nobody left to tell
    }
  }
}

} // namespace zorCollide
