#pragma once

#include <memory>
#include <vector>

namespace zorCollide {

class Geometry;
class Space;

/**
 * What is told when a geometry moves, changes its shapes, leaves its space or is destroyed. For C++ only,
 * where there are many of them: observing takes no memory beside the observer, and a move costs one call. An
 * observer may come and go at any time.
 */
class GeometryObserver {
public:
  GeometryObserver(GeometryObserver const&) = delete;
  GeometryObserver& operator=(GeometryObserver const&) = delete;

  /** \param geometry - the geometry to observe from now on, not held; null for none */
  void observe(zorCollide::Geometry* geometry);

  /** \return the observed geometry, or null when there is none or it has been destroyed */
  zorCollide::Geometry* getObserved() const { return m_geometry; }

  /** \return the geometry's next observer, in the order in which they began; null after the last */
  GeometryObserver* getNext() const { return m_next; }

  /** \return what the observer's class gave to tell its observers from others */
  void const* getKind() const { return m_kind; }

protected:
  /** \param kind - the address of something that is the class's own */
  explicit GeometryObserver(void const* kind = nullptr) : m_kind(kind) {}
  virtual ~GeometryObserver();

  /**
   * The geometry is elsewhere in the world, or was enabled or disabled. Called in the middle of the change,
   * maybe many times before anything is drawn and in any thread: note it, and look at the geometry later.
   */
  virtual void geometryMoved() = 0;

  /** The geometry's shapes, or one of them, changed; those who listen to its event are told later. */
  virtual void geometryShapesChanged() = 0;

  /** \param space - the space that the geometry has left; null if it is being destroyed and no longer
   * observed */
  virtual void geometryLeft(zorCollide::Space* space, zorCollide::Geometry* geometry) = 0;

private:
  friend class GeometryObserverList;

  void const* m_kind;
  zorCollide::Geometry* m_geometry = nullptr;
  GeometryObserver* m_previous = nullptr;
  GeometryObserver* m_next = nullptr;
};

/** The observers of one geometry. They may leave, and others come, while they are told something. */
class GeometryObserverList {
public:
  GeometryObserverList() = default;
  GeometryObserverList(GeometryObserverList const&) = delete;
  GeometryObserverList& operator=(GeometryObserverList const&) = delete;

  GeometryObserver* first() const { return m_first; }

  void tellMoved() const;
  void tellShapesChanged();
  void tellLeft(zorCollide::Space& space, zorCollide::Geometry& geometry);
  /** Lets every observer go and tells it. */
  void tellDestroyed(zorCollide::Geometry& geometry) noexcept;

private:
  friend class GeometryObserver;

  void append(GeometryObserver& observer);
  void remove(GeometryObserver& observer);
  template <class Tell>
  void tellAll(Tell tell);

  GeometryObserver* m_first = nullptr;
  GeometryObserver* m_last = nullptr;
  std::unique_ptr<std::vector<GeometryObserver*>> m_walks; // who is next in each walk that is under way
};

} // namespace zorCollide
