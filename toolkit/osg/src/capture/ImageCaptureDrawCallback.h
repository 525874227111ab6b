#pragma once

#include <zorOSG/ImageCaptureBase.h>

namespace zorOSG {

/**
 * Grabs the frame a camera has drawn. The callback does not keep the capture alive: the capture owns it and
 * detaches it when it dies, so that a camera may hold on to the callback.
 */
class ImageCaptureBase::DrawCallback : public osg::Camera::DrawCallback {
public:
  explicit DrawCallback(ImageCaptureBase* capture) : m_capture(capture) {}

  void operator()(osg::RenderInfo& renderInfo) const override {
    if (m_capture) {
      m_capture->apply(renderInfo);
    }
  }

  void detach() { m_capture = nullptr; }

private:
  ImageCaptureBase* m_capture;
};

} // namespace zorOSG
