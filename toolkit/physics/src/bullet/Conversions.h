#pragma once

#include <LinearMath/btTransform.h>

#include <zor/AffineMatrix4x4.h>
#include <zor/Quat.h>
#include <zor/Vec3.h>

/** The engine behind zorCollide and the bodies; nothing of it is seen outside this library. */
namespace zorBullet {

inline btVector3 toBt(zor::Vec3 const& v) {
  return btVector3(v[0], v[1], v[2]);
}
inline zor::Vec3 fromBt(btVector3 const& v) {
  return zor::Vec3(v.x(), v.y(), v.z());
}

inline btQuaternion toBt(zor::Quat const& q) {
  return btQuaternion(q[0], q[1], q[2], q[3]);
}
inline zor::Quat fromBt(btQuaternion const& q) {
  return zor::Quat(q.x(), q.y(), q.z(), q.w());
}

// The toolkit multiplies row vectors from the left (p' = p M), the engine column vectors from the right, so
// that the rotation is transposed on the way.
inline btTransform toBt(zor::AffineMatrix4x4 const& m) {
  return btTransform(
      btMatrix3x3(m(0, 0), m(1, 0), m(2, 0), m(0, 1), m(1, 1), m(2, 1), m(0, 2), m(1, 2), m(2, 2)),
      btVector3(m(3, 0), m(3, 1), m(3, 2)));
}

inline zor::AffineMatrix4x4 fromBt(btTransform const& t) {
  zor::AffineMatrix4x4 m;
  for (int row = 0; row < 3; ++row)
    for (int column = 0; column < 3; ++column)
      m(row, column) = t.getBasis()[column][row];
  for (int column = 0; column < 3; ++column)
    m(3, column) = t.getOrigin()[column];
  return m;
}

} // namespace zorBullet
