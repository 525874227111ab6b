#pragma once

#include <zor/RigidBody.h>
#include <zor/ref_ptr.h>
#include <zorCollide/Geometry.h>

#include <utility>
#include <vector>

namespace zorCollide {
class Space;
}

namespace zorOSG {

/// Pairs of bodies and geometries, and whether any of them is in contact.
class AutoPause {
public:
  void setEnable(bool flag) { m_enabled = flag; }
  bool getEnable() const { return m_enabled; }

  /** Adds a pair; null throws std::invalid_argument, a pair that is there already is ignored. */
  void add(zor::RigidBody const* first, zor::RigidBody const* second) { insert(m_bodies, first, second); }
  void add(zorCollide::Geometry const* first, zorCollide::Geometry const* second) {
    insert(m_geometries, first, second);
  }

  /** Removes a pair, in whatever order it was added. */
  void remove(zor::RigidBody const* first, zor::RigidBody const* second) { erase(m_bodies, first, second); }
  void remove(zorCollide::Geometry const* first, zorCollide::Geometry const* second) {
    erase(m_geometries, first, second);
  }

  void clear();

  /** \return true if auto-pausing is on and a pair was in contact in the last step */
  bool isTriggered(zorCollide::Space const& space) const;

private:
  template <class T>
  using Pairs = std::vector<std::pair<zor::ref_ptr<T const>, zor::ref_ptr<T const>>>;

  template <class T>
  static void insert(Pairs<T>& pairs, T const* first, T const* second);
  template <class T>
  static void erase(Pairs<T>& pairs, T const* first, T const* second);

  bool m_enabled = false;
  Pairs<zor::RigidBody> m_bodies;
  Pairs<zorCollide::Geometry> m_geometries;
};

} // namespace zorOSG
