#include <zorOSG/RenderTarget.h>

#include "FollowingCamera.h"
#include "Limits.h"
#include "context/Extensions.h"

#include <osg/Viewport>

#include <limits>
#include <stdexcept>
#include <string>

namespace zorOSG {

namespace {

osg::Camera const& checkedCamera(osg::Camera const* camera, char const* method) {
  if (!camera) {
    throw std::invalid_argument(std::string(method) + ": the camera is null");
  }
  return *camera;
}

osg::Vec3d toOsg(zor::Vec3 const& v) {
  return osg::Vec3d(v[0], v[1], v[2]);
}

/** Runs before the buffers are set up. */
class ExtensionCheck : public osg::Camera::DrawCallback {
public:
  void operator()(osg::RenderInfo& renderInfo) const override { supportedExtensions(renderInfo); }
};

} // namespace

/** Hands the frame to the capture. Does not keep the target alive: the target owns it through its camera. */
class RenderTarget::CaptureCallback : public osg::Camera::DrawCallback {
public:
  explicit CaptureCallback(RenderTarget* target) : m_target(target) {}

  void operator()(osg::RenderInfo& renderInfo) const override {
    if (m_target && m_target->m_imageCapture.isValid() && m_target->m_imageCapture->getCaptureStarted()) {
      m_target->m_imageCapture->applyImage(m_target->readFrame(renderInfo));
    }
  }

  void detach() { m_target = nullptr; }

private:
  RenderTarget* m_target;
};

RenderTarget::RenderTarget(zor::UInt width, zor::UInt height)
    : m_camera(new FollowingCamera), m_size(checkedSize("a render target", width, height)) {
  m_camera->setRenderTargetImplementation(osg::Camera::FRAME_BUFFER_OBJECT, osg::Camera::FRAME_BUFFER);
  m_camera->setRenderOrder(osg::Camera::PRE_RENDER);
  m_camera->setReferenceFrame(osg::Transform::ABSOLUTE_RF);
  m_camera->setClearMask(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  m_camera->setClearColor(osg::Vec4(0.0f, 0.0f, 0.0f, 1.0f));
  m_camera->setViewport(0, 0, static_cast<int>(m_size[0]), static_cast<int>(m_size[1]));
  m_camera->setProjectionMatrixAsPerspective(45.0, double(width) / double(height), 0.1, 1000.0);
  // The main view may cull with other masks; a target shows all until told otherwise.
  m_camera->setInheritanceMask(m_camera->getInheritanceMask() & ~osg::CullSettings::CULL_MASK);
  m_camera->setInitialDrawCallback(new ExtensionCheck);
  m_camera->setFinalDrawCallback(new CaptureCallback(this));
  m_camera->attach(osg::Camera::PACKED_DEPTH_STENCIL_BUFFER, GL_DEPTH_STENCIL_EXT);
  attachColorBuffer();
}

RenderTarget::~RenderTarget() {
  static_cast<CaptureCallback*>(m_camera->getFinalDrawCallback())->detach();
}

void RenderTarget::setReferenceCamera(osg::Camera const* referenceCamera) {
  if (referenceCamera == m_camera) {
    throw std::invalid_argument("setReferenceCamera: a render target cannot follow its own camera");
  }
  m_camera->setReference(referenceCamera);
}

void RenderTarget::setImageCapture(zorOSG::ImageCaptureBase* imageCapture) {
  m_imageCapture = imageCapture;
  attachBuffers();
}

zorOSG::ImageCaptureBase* RenderTarget::getImageCapture() {
  return m_imageCapture.get();
}

void RenderTarget::setSize(zor::UInt width, zor::UInt height) {
  m_size = checkedSize("a render target", width, height);
  m_camera->setViewport(0, 0, static_cast<int>(width), static_cast<int>(height));
  attachBuffers();
}

void RenderTarget::setSize(zor::Vec2u size) {
  setSize(zor::UInt{size[0]}, zor::UInt{size[1]});
}

zor::Vec2u RenderTarget::getSize() const {
  return m_size;
}

osg::Camera* RenderTarget::getCamera() {
  return m_camera.get();
}

void RenderTarget::addPreRenderCallback(osg::Camera::DrawCallback* callback) {
  if (!callback) {
    throw std::invalid_argument("addPreRenderCallback: the callback is null");
  }
  m_camera->addPreDrawCallback(callback);
}

void RenderTarget::setViewMatrixAsLookAt(zor::Vec3 const& eye, zor::Vec3 const& center, zor::Vec3 const& up) {
  m_camera->setViewMatrixAsLookAt(toOsg(eye), toOsg(center), toOsg(up));
}

void RenderTarget::setViewMatrixFromOtherCamera(osg::Camera const* camera) {
  m_camera->setViewMatrix(checkedCamera(camera, "setViewMatrixFromOtherCamera").getViewMatrix());
}

void RenderTarget::setProjectionMatrixAsPerspective(double fovy, double aspectRatio, double zNear,
                                                    double zFar) {
  bool const valid = fovy > 0.0 && fovy < 180.0 && aspectRatio > 0.0 && zNear > 0.0 && zFar > zNear;
  if (!valid) {
    throw std::invalid_argument("a perspective needs 0 < fovy < 180, aspectRatio > 0 and 0 < zNear < zFar");
  }
  m_camera->setProjectionMatrixAsPerspective(fovy, aspectRatio, zNear, zFar);
}

void RenderTarget::setProjectionMatrixFromOtherCamera(osg::Camera const* camera) {
  m_camera->setProjectionMatrix(
      checkedCamera(camera, "setProjectionMatrixFromOtherCamera").getProjectionMatrix());
}

void RenderTarget::setProjectionMatrixAsOrtho(double left, double right, double bottom, double top,
                                              double zNear, double zFar) {
  if (!(left != right && bottom != top && zNear != zFar)) {
    throw std::invalid_argument("an orthographic projection needs a box with a volume");
  }
  m_camera->setProjectionMatrixAsOrtho(left, right, bottom, top, zNear, zFar);
}

void RenderTarget::setComputeNearFarMode(ComputeNearFarMode mode) {
  m_camera->setComputeNearFarMode(static_cast<osg::CullSettings::ComputeNearFarMode>(mode));
}

zor::Vec2 RenderTarget::calculateScreenCoords(zor::Vec3& worldPos) {
  m_camera->follow();
  osg::Matrixd const toClip = m_camera->getViewMatrix() * m_camera->getProjectionMatrix();
  osg::Vec4d const clip = osg::Vec4d(toOsg(worldPos), 1.0) * toClip;
  if (clip.w() <= 0.0) {
    double const none = std::numeric_limits<double>::quiet_NaN();
    return zor::Vec2(none, none);
  }
  return zor::Vec2((clip.x() / clip.w() * 0.5 + 0.5) * m_size[0],
                   (clip.y() / clip.w() * 0.5 + 0.5) * m_size[1]);
}

void RenderTarget::setCameraCullMask(int mask) {
  m_camera->setCullMask(static_cast<unsigned int>(mask));
}

int RenderTarget::getCameraCullMask() const {
  return static_cast<int>(m_camera->getCullMask());
}

void RenderTarget::attachBuffers() {
  attachColorBuffer();
}

void RenderTarget::attachColorBuffer() {
  m_camera->detach(osg::Camera::COLOR_BUFFER);
  if (m_imageCapture.isValid()) {
    // Reading pixels back costs, so it is done only for a capture.
    if (!m_readback.valid()) {
      m_readback = new osg::Image;
    }
    m_readback->allocateImage(static_cast<int>(m_size[0]), static_cast<int>(m_size[1]), 1, GL_RGB,
                              GL_UNSIGNED_BYTE);
    m_camera->attach(osg::Camera::COLOR_BUFFER, m_readback.get());
  } else {
    m_camera->attach(osg::Camera::COLOR_BUFFER, GL_RGBA);
  }
  m_camera->dirtyAttachmentMap();
}

osg::Image* RenderTarget::readFrame(osg::RenderInfo&) {
  return m_readback.get();
}

} // namespace zorOSG
