#include "bullet/RayClip.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zorBullet {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

/** Roots of a t^2 + 2 b t + c in ascending order; false without real roots. Avoids cancellation. */
bool solve(double a, double b, double c, double& low, double& high) {
  double const discriminant = b * b - a * c;
  if (discriminant < 0.0)
    return false;
  double const q = -(b + std::copysign(std::sqrt(discriminant), b));
  low = q / a;
  high = q != 0.0 ? c / q : low;
  if (low > high)
    std::swap(low, high);
  return true;
}

} // namespace

bool RayClip::keep(double from, double to, btVector3 const& normalAtFrom, long face) {
  if (from > m_enter) {
    m_enter = from;
    m_normal = normalAtFrom;
    m_face = face;
  }
  m_exit = std::min(m_exit, to);
  return !isEmpty();
}

bool RayClip::halfSpace(btVector3 const& normal, double constant, long face) {
  double const height = normal.dot(m_ray.origin) - constant;
  double const speed = normal.dot(m_ray.direction);
  if (speed == 0.0)
    return height <= 0.0 ? !isEmpty() : false;
  double const t = -height / speed;
  return speed < 0.0 ? keep(t, infinity, normal, face) : keep(-infinity, t, normal, face);
}

bool RayClip::slab(int axis, double half) {
  btVector3 normal(0, 0, 0);
  normal[axis] = 1.0;
  return halfSpace(normal, half) && halfSpace(-normal, half);
}

bool RayClip::cylinderY(double radius) {
  btVector3 const o(m_ray.origin.x(), 0, m_ray.origin.z());
  btVector3 const d(m_ray.direction.x(), 0, m_ray.direction.z());
  double const c = o.length2() - radius * radius;
  double low = 0.0, high = 0.0;
  if (d.length2() == 0.0)
    return c <= 0.0 && !isEmpty();
  return solve(d.length2(), o.dot(d), c, low, high) && keep(low, high, (o + d * low) / radius);
}

bool RayClip::sphere(btVector3 const& center, double radius) {
  btVector3 const o = m_ray.origin - center;
  double low = 0.0, high = 0.0;
  return solve(m_ray.direction.length2(), o.dot(m_ray.direction), o.length2() - radius * radius, low, high) &&
         keep(low, high, (o + m_ray.direction * low) / radius);
}

bool RayClip::coneY(double tip, double slope) {
  btVector3 const& d = m_ray.direction;
  btVector3 const o(m_ray.origin.x(), tip - m_ray.origin.y(), m_ray.origin.z()); // y: depth below the tip
  double const k = slope * slope;
  double const a = d.x() * d.x() + d.z() * d.z() - k * d.y() * d.y();
  double const b = o.x() * d.x() + o.z() * d.z() + k * o.y() * d.y();
  double const c = o.x() * o.x() + o.z() * o.z() - k * o.y() * o.y();
  auto const normalAt = [&](double t) {
    btVector3 const n(o.x() + t * d.x(), k * (o.y() - t * d.y()), o.z() + t * d.z());
    return n.fuzzyZero() ? btVector3(0, 1, 0) : n.normalized();
  };
  double low = 0.0, high = 0.0;
  if (std::abs(a) < 1e-14) { // along the surface: one crossing
    if (b == 0.0)
      return c <= 0.0 && !isEmpty();
    double const t = -c / (2.0 * b);
    return b < 0.0 ? keep(t, infinity, normalAt(t)) : keep(-infinity, t, normalAt(t));
  }
  if (!solve(a, b, c, low, high))
    return a < 0.0 && !isEmpty();
  if (a > 0.0)
    return keep(low, high, normalAt(low));
  // Steeper than the surface: inside both below the one root and above the other; the lower nappe counts.
  return d.y() < 0.0 ? keep(high, infinity, normalAt(high)) : keep(-infinity, low, normalAt(low));
}

bool RayClip::takeEntry(Hit& hit) const {
  if (isEmpty() || m_enter < 0.0 || m_enter >= hit.distance)
    return false;
  hit.distance = m_enter;
  hit.normal = m_normal;
  hit.triangle = m_face;
  return true;
}

} // namespace zorBullet
