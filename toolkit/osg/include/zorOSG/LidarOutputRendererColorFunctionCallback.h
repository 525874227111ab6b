#pragma once

#include <zorOSG/LidarOutputRenderer.h>

#include <osg/Vec4>

#include <atomic>
#include <memory>

namespace zorOSG {

/**
 * Colours the points of a lidar. Derive, override getLidarPointColor(), and keep the object as long as a
 * renderer may draw with it: the renderer has only a function that refers to it. Without the object the
 * points are white.
 */
class LidarOutputRendererColorFunctionCallback {
public:
  LidarOutputRendererColorFunctionCallback();
#ifndef SWIG
  LidarOutputRendererColorFunctionCallback(LidarOutputRendererColorFunctionCallback const&) = delete;
  LidarOutputRendererColorFunctionCallback&
  operator=(LidarOutputRendererColorFunctionCallback const&) = delete;
#endif

  /** \return the function that calls getLidarPointColor() of this object, which owns it */
  zorOSG::LidarOutputRenderer::IntensityState::ColorFunc* getColorFunction();

  /**
   * Called for each point that is coloured, on the thread that draws.
   * \param intensity scaled intensity of the return, 0 to 1 as a rule
   * \return the colour, RGBA, components 0 to 1; opaque white unless overridden
   */
  virtual osg::Vec4 getLidarPointColor(float intensity);

  virtual ~LidarOutputRendererColorFunctionCallback();

private:
  std::shared_ptr<std::atomic<LidarOutputRendererColorFunctionCallback*>>
      m_self; // what copies of the function see
  LidarOutputRenderer::IntensityState::ColorFunc m_colorFunction;
};

} // namespace zorOSG
