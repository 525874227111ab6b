#pragma once

#include "bullet/Ray.h"

namespace zorBullet {

/** Meets a triangle from either side; takes distance and normal over if nearer. \return true if taken */
bool hitTriangle(Ray const& ray, btVector3 const& a, btVector3 const& b, btVector3 const& c, Hit& hit);

} // namespace zorBullet
