#include <zorCollide/Space.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <unordered_map>

#include "bullet/Check.h"
#include "bullet/Conversions.h"
#include "bullet/SpaceImpl.h"

namespace zorCollide {

using zorBullet::checkNotNull;
using zorBullet::GeometryImpl;
using zorBullet::GeometryPair;

namespace {

zorBullet::Ray makeRay(zor::Vec3 const& origin, zor::Vec3 const& direction) {
  zorBullet::checkFinite("Space", "origin of the ray", origin);
  zorBullet::checkFinite("Space", "direction of the ray", direction);
  double const length = direction.length();
  if (!(length > 0.0))
    throw std::invalid_argument("Space: direction of the ray has no length");
  return zorBullet::Ray{zorBullet::toBt(origin), zorBullet::toBt(direction * (1.0 / length))};
}

double checkReach(double maxDistance) {
  if (!(maxDistance > 0.0))
    throw std::invalid_argument("Space: length of the ray is " + std::to_string(maxDistance) +
                                ", but must be positive");
  return maxDistance;
}

void checkBundle(zor::Vec3Vector const& origins, zor::Vec3Vector const& directions) {
  if (origins.size() != directions.size() && origins.size() != 1)
    throw std::invalid_argument("Space: " + std::to_string(origins.size()) + " origins for " +
                                std::to_string(directions.size()) + " rays");
}

/** 1 if the wish is for this order, -1 for the other, 0 for neither. */
template <class First, class Second>
int matchOrder(GeometryPair const& pair, First const& isFirst, Second const& isSecond) {
  if (isFirst(*pair.first) && isSecond(*pair.second))
    return 1;
  return isFirst(*pair.second) && isSecond(*pair.first) ? -1 : 0;
}

auto isGeometry(Geometry const* geometry) {
  return [geometry](GeometryImpl const& impl) { return &impl.geometry() == geometry; };
}

auto isOfBody(zor::RigidBody const* body) {
  return [body](GeometryImpl const& impl) { return body && impl.owner() && impl.owner()->getBody() == body; };
}

bool isAny(GeometryImpl const&) {
  return true;
}

} // namespace

Space::Space() : m_impl(std::make_unique<zorBullet::SpaceImpl>(*this)) {}

Space::~Space() {
  while (!m_geometries.empty()) {
    zor::ref_ptr<Geometry> const geometry = m_geometries[m_geometries.size() - 1];
    m_geometries.pop_back();
    geometry->getImpl().leaveSpace();
    try {
      geometry->getImpl().raiseRemoval(*this);
    } catch (...) { // a destructor must go on; the geometry is out
    }
  }
}

bool Space::add(Geometry* geometry) {
  GeometryImpl& impl = checkNotNull("Space", "geometry", geometry).getImpl();
  if (impl.space() == m_impl.get())
    return false;
  if (impl.space())
    throw std::invalid_argument("Space: geometry '" + geometry->getName() + "' is in another space");
  m_geometries.push_back(zor::ref_ptr<Geometry>(geometry));
  impl.enterSpace(*m_impl);
  return true;
}

bool Space::remove(Geometry* geometry) {
  if (!geometry || geometry->getImpl().space() != m_impl.get())
    return false;
  zor::ref_ptr<Geometry> const kept(geometry);
  m_geometries.erase(std::find(m_geometries.begin(), m_geometries.end(), kept));
  geometry->getImpl().leaveSpace();
  geometry->getImpl().raiseRemoval(*this);
  return true;
}

Geometry* Space::getGeometry(zor::UInt index) const {
  zorBullet::checkIndex("Space", index, m_geometries.size());
  return m_geometries[index].get();
}

void Space::add(zor::ContactMaterial* contactMaterial) {
  m_impl->addContactMaterial(checkNotNull("Space", "contact material", contactMaterial));
}

bool Space::remove(zor::ContactMaterial* contactMaterial) {
  return contactMaterial && m_impl->removeContactMaterial(*contactMaterial);
}

zor::ContactMaterial* Space::getContactMaterial(zor::Material const* material1,
                                                zor::Material const* material2) const {
  return m_impl->findContactMaterial(material1, material2);
}

void Space::setEnablePair(zor::UInt32 group1, zor::UInt32 group2, bool enable) {
  m_impl->setEnablePair(group1, group2, enable);
}

bool Space::getEnablePair(zor::UInt32 group1, zor::UInt32 group2) const {
  return m_impl->getEnablePair(group1, group2);
}

bool Space::canCollide(Geometry const* geometry1, Geometry const* geometry2) const {
  return m_impl->canCollide(checkNotNull("Space", "first geometry", geometry1).getImpl(),
                            checkNotNull("Space", "second geometry", geometry2).getImpl());
}

RayHit Space::castRay(zor::Vec3 const& origin, zor::Vec3 const& direction, zor::Real maxDistance,
                      bool includeSensors) const {
  zorBullet::Ray const ray = makeRay(origin, direction);
  zorBullet::Hit hit;
  hit.distance = checkReach(maxDistance);
  GeometryImpl* const nearest = m_impl->castRay(ray, includeSensors, hit);
  return nearest ? zorBullet::makeRayHit(nearest->geometry(), ray, hit) : RayHit();
}

RayHitVector Space::castRayAll(zor::Vec3 const& origin, zor::Vec3 const& direction, zor::Real maxDistance,
                               bool includeSensors) const {
  RayHitVector hits;
  m_impl->castRayAll(makeRay(origin, direction), checkReach(maxDistance), includeSensors, hits);
  return hits;
}

RayHitVector Space::castRays(zor::Vec3Vector const& origins, zor::Vec3Vector const& directions,
                             zor::Real maxDistance, bool includeSensors) const {
  checkBundle(origins, directions);
  RayHitVector hits;
  hits.reserve(directions.size());
  for (size_t i = 0; i < directions.size(); ++i)
    hits.push_back(castRay(origins[origins.size() == 1 ? 0 : i], directions[i], maxDistance, includeSensors));
  return hits;
}

RayTable Space::castRayTable(zor::Vec3Vector const& origins, zor::Vec3Vector const& directions,
                             zor::Real maxDistance, bool includeSensors) const {
  checkBundle(origins, directions);
  checkReach(maxDistance);
  std::unordered_map<GeometryImpl const*, zor::Int> indices;
  for (size_t i = 0; i < m_geometries.size(); ++i)
    indices[&m_geometries[i]->getImpl()] = static_cast<zor::Int>(i);
  RayTable table;
  table.reserve(directions.size());
  for (size_t i = 0; i < directions.size(); ++i) {
    zorBullet::Ray const ray = makeRay(origins[origins.size() == 1 ? 0 : i], directions[i]);
    zorBullet::Hit hit;
    hit.distance = maxDistance;
    if (GeometryImpl const* const nearest = m_impl->castRay(ray, includeSensors, hit)) {
      table.addHit(hit.distance, zorBullet::fromBt(ray.origin + ray.direction * hit.distance),
                   zorBullet::fromBt(hit.normal), indices.at(nearest));
    } else {
      zor::Vec3 const end = zorBullet::fromBt(ray.origin + ray.direction * maxDistance);
      table.addMiss(end.isFinite() ? end : zorBullet::fromBt(ray.origin));
    }
  }
  return table;
}

LocalGeometryContactVector Space::getGeometryContacts() const {
  return m_impl->collectContacts([](GeometryPair const&) { return 1; });
}

LocalGeometryContactVector Space::getGeometryContacts(Geometry const* geometry) const {
  return m_impl->collectContacts(
      [=](GeometryPair const& pair) { return matchOrder(pair, isGeometry(geometry), isAny); });
}

LocalGeometryContactVector Space::getGeometryContacts(Geometry const* geometry1,
                                                      Geometry const* geometry2) const {
  return m_impl->collectContacts([=](GeometryPair const& pair) {
    return matchOrder(pair, isGeometry(geometry1), isGeometry(geometry2));
  });
}

LocalGeometryContactVector Space::getGeometryContacts(zor::RigidBody const* body) const {
  return m_impl->collectContacts(
      [=](GeometryPair const& pair) { return matchOrder(pair, isOfBody(body), isAny); });
}

LocalGeometryContactVector Space::getGeometryContacts(zor::RigidBody const* body1,
                                                      zor::RigidBody const* body2) const {
  return m_impl->collectContacts(
      [=](GeometryPair const& pair) { return matchOrder(pair, isOfBody(body1), isOfBody(body2)); });
}

void Space::update() {
  m_impl->update();
}

} // namespace zorCollide
