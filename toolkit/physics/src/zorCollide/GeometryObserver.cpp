#include <zorCollide/GeometryObserver.h>

#include <algorithm>

#include <zorCollide/Geometry.h>

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
    m_geometry->m_observers.remove(*this);
  m_geometry = geometry;
  if (m_geometry)
    m_geometry->m_observers.append(*this);
}

void GeometryObserverList::append(GeometryObserver& observer) {
  observer.m_previous = m_last;
  (m_last ? m_last->m_next : m_first) = &observer;
  m_last = &observer;
}

void GeometryObserverList::remove(GeometryObserver& observer) {
  if (m_walks)
    std::replace(m_walks->begin(), m_walks->end(), &observer, observer.m_next);
  (observer.m_previous ? observer.m_previous->m_next : m_first) = observer.m_next;
  (observer.m_next ? observer.m_next->m_previous : m_last) = observer.m_previous;
  observer.m_previous = observer.m_next = nullptr;
}

void GeometryObserverList::tellMoved() const {
  for (GeometryObserver* observer = m_first; observer; observer = observer->m_next)
    observer->geometryMoved();
}

template <class Tell>
void GeometryObserverList::tellAll(Tell tell) {
  if (!m_first)
    return;
  if (!m_walks)
    m_walks = std::make_unique<std::vector<GeometryObserver*>>();
  std::vector<GeometryObserver*>& walks = *m_walks;
  std::size_t const walk = walks.size();
  walks.push_back(m_first);
  WalkEnd const end(walks);
  while (GeometryObserver* const observer = walks[walk]) {
    walks[walk] = observer->m_next;
    tell(*observer);
  }
}

void GeometryObserverList::tellShapesChanged() {
  tellAll([](GeometryObserver& observer) { observer.geometryShapesChanged(); });
}

void GeometryObserverList::tellLeft(Space& space, Geometry& geometry) {
  tellAll([&](GeometryObserver& observer) { observer.geometryLeft(&space, &geometry); });
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
