#include "MultisampledDrawing.h"

#include "Extensions.h"

#include <osg/GLExtensions>
#include <osg/Notify>
#include <osg/RenderInfo>
#include <osg/Viewport>

#include <algorithm>

namespace zorOSG {

namespace {

/** The multisampled buffer of one context; dies with the context. */
class SampledBuffer : public osg::Referenced {
public:
  explicit SampledBuffer(int samples) : m_samples(samples) {}

  void begin(osg::RenderInfo& renderInfo) {
    osg::Viewport const* const viewport = renderInfo.getCurrentCamera()->getViewport();
    osg::GLExtensions* const gl = supportedExtensions(renderInfo);
    if (m_failed || !viewport || !gl->isRenderbufferMultisampleSupported())
      return;
    auto const width = static_cast<int>(viewport->x() + viewport->width());
    auto const height = static_cast<int>(viewport->y() + viewport->height());
    if (width != m_width || height != m_height)
      allocate(*gl, width, height);
    if (m_failed)
      return;
    gl->glBindFramebuffer(GL_FRAMEBUFFER_EXT, m_frameBuffer);
    m_drawing = true;
  }

  void end(osg::RenderInfo& renderInfo) {
    if (!m_drawing)
      return;
    m_drawing = false;
    osg::GLExtensions* const gl = renderInfo.getState()->get<osg::GLExtensions>();
    gl->glBindFramebuffer(GL_READ_FRAMEBUFFER_EXT, m_frameBuffer);
    gl->glBindFramebuffer(GL_DRAW_FRAMEBUFFER_EXT, 0);
    gl->glBlitFramebuffer(0, 0, m_width, m_height, 0, 0, m_width, m_height, GL_COLOR_BUFFER_BIT, GL_NEAREST);
    gl->glBindFramebuffer(GL_FRAMEBUFFER_EXT, 0);
  }

private:
  void allocate(osg::GLExtensions& gl, int width, int height) {
    if (m_frameBuffer == 0) {
      gl.glGenFramebuffers(1, &m_frameBuffer);
      gl.glGenRenderbuffers(2, m_buffers);
      GLint most = 0;
      glGetIntegerv(GL_MAX_SAMPLES_EXT, &most);
      m_samples = std::min(m_samples, most);
    }
    gl.glBindFramebuffer(GL_FRAMEBUFFER_EXT, m_frameBuffer);
    attach(gl, m_buffers[0], GL_RGBA8, GL_COLOR_ATTACHMENT0_EXT, width, height);
    attach(gl, m_buffers[1], GL_DEPTH_COMPONENT24, GL_DEPTH_ATTACHMENT_EXT, width, height);
    m_failed = gl.glCheckFramebufferStatus(GL_FRAMEBUFFER_EXT) != GL_FRAMEBUFFER_COMPLETE_EXT;
    if (m_failed) {
      OSG_INFO << "no multisampled buffer of " << m_samples << " samples per pixel" << std::endl;
      gl.glBindFramebuffer(GL_FRAMEBUFFER_EXT, 0);
    }
    m_width = width;
    m_height = height;
  }

  void attach(osg::GLExtensions& gl, GLuint buffer, GLenum format, GLenum attachment, int width, int height) {
    gl.glBindRenderbuffer(GL_RENDERBUFFER_EXT, buffer);
    gl.glRenderbufferStorageMultisample(GL_RENDERBUFFER_EXT, m_samples, format, width, height);
    gl.glFramebufferRenderbuffer(GL_FRAMEBUFFER_EXT, attachment, GL_RENDERBUFFER_EXT, buffer);
  }

  int m_samples;
  int m_width = 0;
  int m_height = 0;
  GLuint m_frameBuffer = 0;
  GLuint m_buffers[2] = {0, 0};
  bool m_failed = false;
  bool m_drawing = false;
};

class Begin : public osg::Camera::DrawCallback {
public:
  explicit Begin(SampledBuffer* buffer) : m_buffer(buffer) {}
  void operator()(osg::RenderInfo& renderInfo) const override { m_buffer->begin(renderInfo); }

private:
  osg::ref_ptr<SampledBuffer> m_buffer;
};

class End : public osg::Camera::DrawCallback {
public:
  explicit End(SampledBuffer* buffer) : m_buffer(buffer) {}
  void operator()(osg::RenderInfo& renderInfo) const override { m_buffer->end(renderInfo); }

private:
  osg::ref_ptr<SampledBuffer> m_buffer;
};

} // namespace

void drawMultisampled(osg::Camera& camera, int samples) {
  osg::ref_ptr<SampledBuffer> const buffer = new SampledBuffer(samples);
  camera.addPreDrawCallback(new Begin(buffer));
  camera.addPostDrawCallback(new End(buffer));
}

} // namespace zorOSG
