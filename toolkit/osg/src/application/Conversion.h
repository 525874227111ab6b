#pragma once

#include "scene/Convert.h"

namespace zorOSG {

inline zor::Vec3 fromOsg(osg::Vec3d const& v) {
  return {v.x(), v.y(), v.z()};
}

} // namespace zorOSG
