#pragma once

#include <osg/Vec4f>

#include <functional>

namespace zorOSG {

/// Home of the types by which the points of a lidar are coloured.
class LidarOutputRenderer {
public:
  /// How the intensity of a return becomes a colour.
  struct IntensityState {
    /** \return the colour, RGBA, of a scaled intensity */
    typedef std::function<osg::Vec4f(float)> ColorFunc;
  };

  LidarOutputRenderer() = delete;
};

} // namespace zorOSG
