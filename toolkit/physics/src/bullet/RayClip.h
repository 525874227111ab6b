#pragma once

#include <limits>

#include "bullet/Ray.h"

namespace zorBullet {

/**
 * The part of a ray inside a convex form, found by cutting the ray with one simple convex set after the
 * other. The form is met where the ray enters the last of them, which must be in front of the origin.
 */
class RayClip {
public:
  explicit RayClip(Ray const& ray) : m_ray(ray) {}

  /** Keeps the part behind a plane; \return false when nothing is left. */
  bool halfSpace(btVector3 const& normal, double constant, long face = -1);
  /** Keeps |axis coordinate| <= half. */
  bool slab(int axis, double half);
  /** Keeps the part inside an infinite cylinder about local y. */
  bool cylinderY(double radius);
  /** Keeps the part inside a cone that opens downwards from its tip on local y; needs y <= tip. */
  bool coneY(double tip, double slope);
  /** Keeps the part inside a sphere. */
  bool sphere(btVector3 const& center, double radius);

  double enter() const { return m_enter; }

  /** Takes the entry over as hit if it is in front of the origin and nearer. */
  bool takeEntry(Hit& hit) const;

private:
  bool keep(double from, double to, btVector3 const& normalAtFrom, long face = -1);
  bool isEmpty() const { return m_enter > m_exit; }

  Ray const& m_ray;
  double m_enter = -std::numeric_limits<double>::infinity();
  double m_exit = std::numeric_limits<double>::infinity();
  btVector3 m_normal{0, 0, 1};
  long m_face = -1;
};

} // namespace zorBullet
