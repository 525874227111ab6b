#include <zorSDK/ContactEventListener.h>

#include <algorithm>

#include "zor/Checks.h"

namespace zorSDK {

ContactEventListener::ContactEventListener(int mask) : EventListener(mask) {}

ContactEventListener::~ContactEventListener() = default;

ContactEventListener::KeepContactPolicy ContactEventListener::impact(zor::TimeStamp,
                                                                     zorCollide::GeometryContact&) {
  return KEEP_CONTACT;
}

ContactEventListener::KeepContactPolicy ContactEventListener::contact(zor::TimeStamp,
                                                                      zorCollide::GeometryContact&) {
  return KEEP_CONTACT;
}

void ContactEventListener::separation(zor::TimeStamp, zorCollide::Geometry*, zorCollide::Geometry*) {}

void ContactEventListener::addFilter(zor::RigidBody* body) {
  zor::checkNotNull(body, "ContactEventListener::addFilter");
  m_filters.push_back({body, nullptr, nullptr});
}

void ContactEventListener::addFilter(zor::RigidBody* body1, zor::RigidBody* body2) {
  zor::checkNotNull(body1, "ContactEventListener::addFilter");
  zor::checkNotNull(body2, "ContactEventListener::addFilter");
  m_filters.push_back({body1, body2, nullptr});
}

void ContactEventListener::addFilter(zorCollide::Geometry* geometry) {
  zor::checkNotNull(geometry, "ContactEventListener::addFilter");
  m_filters.push_back({nullptr, nullptr, geometry});
}

void ContactEventListener::clearFilters() {
  m_filters.clear();
}

bool ContactEventListener::match(zorCollide::Geometry const* geometry1,
                                 zorCollide::Geometry const* geometry2) const {
  if (m_filters.empty())
    return true;
  zor::RigidBody const* a = geometry1 ? geometry1->getRigidBody() : nullptr;
  zor::RigidBody const* b = geometry2 ? geometry2->getRigidBody() : nullptr;
  return std::any_of(m_filters.begin(), m_filters.end(), [&](Filter const& filter) {
    if (filter.geometry)
      return filter.geometry.get() == geometry1 || filter.geometry.get() == geometry2;
    zor::RigidBody const* one = filter.body1.get();
    zor::RigidBody const* other = filter.body2.get();
    return other ? (a == one && b == other) || (a == other && b == one) : a == one || b == one;
  });
}

} // namespace zorSDK
