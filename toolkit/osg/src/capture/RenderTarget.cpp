#include <zorOSG/RenderTarget.h>

#include "BufferSettings.h"
#include "FollowingCamera.h"
#include "FrameHooks.h"
#include "Limits.h"
#include "TargetPixels.h"

#include <osg/Viewport>

#include <cmath>
#include <initializer_list>
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

void requireFinite(char const* method, std::initializer_list<double> numbers) {
  for (double const number : numbers)
    if (!std::isfinite(number))
      throw std::invalid_argument(std::string(method) + ": the numbers must be finite");
}

} // namespace

RenderTarget::RenderTarget(zor::UInt width, zor::UInt height)
    : RenderTarget(width, height, COLOR_BUFFER, 0, RGBA) {}

RenderTarget::RenderTarget(zor::UInt width, zor::UInt height, BufferComponent bufferComponent,
                           zor::UInt multiSamples, TextureFormat textureFormat)
    : m_camera(new FollowingCamera), m_hooks(new FrameHooks(this)), m_buffer(new osg::Texture2D),
      m_size(checkedSize("a render target", width, height)), m_component(bufferComponent),
      m_multiSamples(checkedSamples(multiSamples)), m_format(checkedFormat(bufferComponent, textureFormat)) {
  m_camera->setRenderTargetImplementation(osg::Camera::FRAME_BUFFER_OBJECT, osg::Camera::FRAME_BUFFER);
  m_camera->setRenderOrder(osg::Camera::PRE_RENDER);
  m_camera->setReferenceFrame(osg::Transform::ABSOLUTE_RF);
  // Depth and stencil share a buffer, of which clearing a part takes longer than clearing all.
  m_camera->setClearMask(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
  m_camera->setClearColor(osg::Vec4(0.0f, 0.0f, 0.0f, 1.0f));
  m_camera->setViewport(0, 0, static_cast<int>(m_size[0]), static_cast<int>(m_size[1]));
  m_camera->setProjectionMatrixAsPerspective(45.0, double(width) / double(height), 0.1, 1000.0);
  // The main view may cull with other masks; a target shows all until told otherwise.
  m_camera->setInheritanceMask(m_camera->getInheritanceMask() & ~osg::CullSettings::CULL_MASK);
  m_hooks->install(*m_camera);
  for (auto const filter : {osg::Texture::MIN_FILTER, osg::Texture::MAG_FILTER})
    m_buffer->setFilter(filter, osg::Texture::LINEAR);
  for (auto const direction : {osg::Texture::WRAP_S, osg::Texture::WRAP_T})
    m_buffer->setWrap(direction, osg::Texture::CLAMP_TO_EDGE);
  m_buffer->setResizeNonPowerOfTwoHint(false);
  bool const isDepth = m_component == DEPTH_BUFFER;
  m_buffer->setInternalFormat(isDepth ? GL_DEPTH_COMPONENT32F : static_cast<int>(m_format));
  m_buffer->setSourceFormat(static_cast<GLenum>(m_format));
  m_buffer->setSourceType(isDepth ? GL_FLOAT : GL_UNSIGNED_BYTE);
  attachBuffers();
}

RenderTarget::~RenderTarget() {
  m_hooks->target = nullptr;
}

/** A texture's size is fixed when it is made, so that all that refers to it is made anew. */
void RenderTarget::attachBuffers() {
  m_buffer->setTextureSize(static_cast<int>(m_size[0]), static_cast<int>(m_size[1]));
  m_buffer->dirtyTextureObject();
  for (auto const part :
       {osg::Camera::COLOR_BUFFER, osg::Camera::DEPTH_BUFFER, osg::Camera::PACKED_DEPTH_STENCIL_BUFFER})
    m_camera->detach(part);
  bool const isDepth = m_component == DEPTH_BUFFER;
  if (isDepth) {
    m_camera->attach(osg::Camera::DEPTH_BUFFER, m_buffer);
    m_camera->attach(osg::Camera::COLOR_BUFFER, GL_RGBA);
  } else {
    m_camera->attach(osg::Camera::COLOR_BUFFER, m_buffer, 0, 0, false, m_multiSamples, 0);
    m_camera->attach(osg::Camera::PACKED_DEPTH_STENCIL_BUFFER, GL_DEPTH_STENCIL_EXT);
  }
  m_camera->dirtyAttachmentMap();
  m_pixels = std::make_unique<TargetPixels>(m_buffer,
                                            isDepth ? osg::Camera::DEPTH_BUFFER : osg::Camera::COLOR_BUFFER);
}

void RenderTarget::setReferenceCamera(osg::Camera const* referenceCamera) {
  if (referenceCamera == m_camera) {
    throw std::invalid_argument("setReferenceCamera: a render target cannot follow its own camera");
  }
  m_camera->setReference(referenceCamera);
}

void RenderTarget::setImageCapture(zorOSG::ImageCaptureBase* imageCapture) {
  if (imageCapture && m_component == DEPTH_BUFFER) {
    throw std::invalid_argument("setImageCapture: a render target of depth has no colours to capture");
  }
  m_imageCapture = imageCapture;
}

zorOSG::ImageCaptureBase* RenderTarget::getImageCapture() {
  return m_imageCapture.get();
}

void RenderTarget::setSize(zor::UInt width, zor::UInt height) {
  m_size = checkedSize("a render target", width, height);
  m_camera->setViewport(0, 0, static_cast<int>(width), static_cast<int>(height));
  attachBuffers();
  resized();
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
  m_hooks->addPreRender(*m_camera, callback);
}

void RenderTarget::setViewMatrixAsLookAt(zor::Vec3 const& eye, zor::Vec3 const& center, zor::Vec3 const& up) {
  zor::Vec3 const aside = (center - eye) ^ up;
  requireFinite("setViewMatrixAsLookAt", {eye[0], eye[1], eye[2], aside[0], aside[1], aside[2]});
  if (aside.length2() == 0.0) {
    throw std::invalid_argument(
        "setViewMatrixAsLookAt: eye and center must differ, and up must lead aside from the "
        "line between them");
  }
  m_camera->setViewMatrixAsLookAt(toOsg(eye), toOsg(center), toOsg(up));
}

void RenderTarget::setViewMatrixFromOtherCamera(osg::Camera const* camera) {
  m_camera->setViewMatrix(checkedCamera(camera, "setViewMatrixFromOtherCamera").getViewMatrix());
}

void RenderTarget::setProjectionMatrixAsPerspective(double fovy, double aspectRatio, double zNear,
                                                    double zFar) {
  bool const valid = fovy > 0.0 && fovy < 180.0 && aspectRatio > 0.0 && zNear > 0.0 && zFar > zNear &&
                     std::isfinite(aspectRatio) && std::isfinite(zFar);
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
  requireFinite("setProjectionMatrixAsOrtho", {left, right, bottom, top, zNear, zFar});
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

osg::Matrixd const& RenderTarget::getDrawnProjection() const {
  return m_camera->drawnProjection;
}

void RenderTarget::resized() {}

void RenderTarget::targetDrawn(osg::State& state) {
  if (m_imageCapture.isValid()) {
    m_imageCapture->captureFrame(state, *m_pixels);
  }
}

void RenderTarget::frameDrawn(osg::State&) {}

} // namespace zorOSG
