#pragma once

#include <osg/Matrixd>
#include <osg/Quat>
#include <osg/Vec3>
#include <osg/Vec3d>
#include <osg/Vec4>

#include <zor/AffineMatrix4x4.h>
#include <zor/Quat.h>
#include <zor/Vec3.h>
#include <zor/Vec4.h>
#include <zorRender/Color.h>

// Toolkit values as scene-graph values. Both sides use row vectors, so matrices map entry by entry.

namespace zorOSG {

inline osg::Vec3d toOsg(zor::Vec3 const& v) {
  return {v.x(), v.y(), v.z()};
}
inline osg::Vec3 toOsgFloat(zor::Vec3 const& v) {
  return {static_cast<float>(v.x()), static_cast<float>(v.y()), static_cast<float>(v.z())};
}
inline osg::Vec4 toOsg(zor::Vec4f const& v) {
  return {v.x(), v.y(), v.z(), v.w()};
}
inline osg::Vec4 toOsgFloat(zor::Vec4 const& v) {
  return {static_cast<float>(v.x()), static_cast<float>(v.y()), static_cast<float>(v.z()),
          static_cast<float>(v.w())};
}
inline osg::Quat toOsg(zor::Quat const& q) {
  return {q.x(), q.y(), q.z(), q.w()};
}
inline osg::Matrixd toOsg(zor::AffineMatrix4x4 const& m) {
  return osg::Matrixd(m.ptr());
}

} // namespace zorOSG
