#include <zorOSG/LidarOutputRendererColorFunctionCallback.h>

namespace zorOSG {

LidarOutputRendererColorFunctionCallback::LidarOutputRendererColorFunctionCallback()
    : m_colorFunction([this](float intensity) { return getLidarPointColor(intensity); }) {}

LidarOutputRendererColorFunctionCallback::~LidarOutputRendererColorFunctionCallback() = default;

LidarOutputRenderer::IntensityState::ColorFunc* LidarOutputRendererColorFunctionCallback::getColorFunction() {
  return &m_colorFunction;
}

osg::Vec4 LidarOutputRendererColorFunctionCallback::getLidarPointColor(float /*intensity*/) {
  return {1, 1, 1, 1};
}

} // namespace zorOSG
