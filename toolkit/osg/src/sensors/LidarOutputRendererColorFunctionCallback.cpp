#include <zorOSG/LidarOutputRendererColorFunctionCallback.h>

namespace zorOSG {

namespace {
osg::Vec4 const WHITE(1, 1, 1, 1);
}

LidarOutputRendererColorFunctionCallback::LidarOutputRendererColorFunctionCallback()
    : m_self(std::make_shared<std::atomic<LidarOutputRendererColorFunctionCallback*>>(this)),
      m_colorFunction([link = m_self](float intensity) {
        LidarOutputRendererColorFunctionCallback* const callback = *link;
        return callback ? callback->getLidarPointColor(intensity) : WHITE;
      }) {}

LidarOutputRendererColorFunctionCallback::~LidarOutputRendererColorFunctionCallback() {
  *m_self = nullptr;
}

LidarOutputRenderer::IntensityState::ColorFunc* LidarOutputRendererColorFunctionCallback::getColorFunction() {
  return &m_colorFunction;
}

osg::Vec4 LidarOutputRendererColorFunctionCallback::getLidarPointColor(float /*intensity*/) {
  return WHITE;
}

} // namespace zorOSG
