#include "bullet/Ray.h"

#include <zorCollide/RayHit.h>

#include "bullet/Conversions.h"

namespace zorBullet {

zorCollide::RayHit makeRayHit(zorCollide::Geometry& geometry, Ray const& ray, Hit const& hit) {
  return zorCollide::RayHit(&geometry, const_cast<zorCollide::Shape*>(hit.shape), hit.triangle,
                            fromBt(ray.origin + ray.direction * hit.distance), fromBt(hit.normal),
                            hit.distance);
}

} // namespace zorBullet
