#include "bullet/RayTriangle.h"

namespace zorBullet {

bool hitTriangle(Ray const& ray, btVector3 const& a, btVector3 const& b, btVector3 const& c, Hit& hit) {
  constexpr double edge = -1e-12; // so that no ray slips between two neighbours
  btVector3 const ab = b - a, ac = c - a;
  btVector3 const across = ray.direction.cross(ac);
  double const determinant = ab.dot(across);
  if (determinant == 0.0)
    return false;
  double const inverse = 1.0 / determinant;
  btVector3 const toOrigin = ray.origin - a;
  double const u = toOrigin.dot(across) * inverse;
  btVector3 const up = toOrigin.cross(ab);
  double const v = ray.direction.dot(up) * inverse;
  if (!(u >= edge && v >= edge && u + v <= 1.0 - edge))
    return false;
  double const distance = ac.dot(up) * inverse;
  if (!(distance >= 0.0 && distance < hit.distance))
    return false;
  btVector3 const normal = ab.cross(ac);
  hit.distance = distance;
  hit.normal = (determinant > 0.0 ? normal : -normal).normalized(); // towards the ray's origin
  return true;
}

} // namespace zorBullet
