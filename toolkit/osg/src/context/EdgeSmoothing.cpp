#include "EdgeSmoothing.h"

#include "Extensions.h"

#include "scene/ClipNumbers.h"
#include "shaders/EdgeProgram.h"

#include <osg/ColorMask>
#include <osg/Depth>
#include <osg/GLExtensions>
#include <osg/Geometry>
#include <osg/PolygonMode>
#include <osg/RenderInfo>
#include <osg/State>
#include <osg/Texture2D>
#include <osg/Uniform>
#include <osg/Viewport>

namespace zorOSG {

namespace {

constexpr GLenum DEPTH_AND_STENCIL = 0x88F0; // GL_DEPTH24_STENCIL8

/** A texture to draw into and the filter that takes it to the surface; for one context. */
class SmoothedBuffer : public osg::Referenced {
public:
  SmoothedBuffer() : m_texture(new osg::Texture2D), m_pixelSize(new osg::Uniform("pixelSize", osg::Vec2f())) {
    m_texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR);
    m_texture->setFilter(osg::Texture::MAG_FILTER, osg::Texture::LINEAR);
    m_texture->setWrap(osg::Texture::WRAP_S, osg::Texture::CLAMP_TO_EDGE);
    m_texture->setWrap(osg::Texture::WRAP_T, osg::Texture::CLAMP_TO_EDGE);
    m_texture->setInternalFormat(GL_RGBA8);
    m_texture->setResizeNonPowerOfTwoHint(false);

    m_quad = osg::createTexturedQuadGeometry({-1.0f, -1.0f, 0.0f}, {2.0f, 0.0f, 0.0f}, {0.0f, 2.0f, 0.0f});
    m_quad->setUseDisplayList(false);
    m_quad->setUseVertexBufferObjects(true);

    // What was drawn last may have left its state on the stack, with values that win.
    constexpr auto forced = osg::StateAttribute::ON | osg::StateAttribute::PROTECTED;
    m_filter = new osg::StateSet;
    m_filter->setAttributeAndModes(edgeProgram(), forced);
    m_filter->setTextureAttributeAndModes(0, m_texture, forced);
    m_filter->setAttribute(new osg::ColorMask, forced);
    m_filter->setAttributeAndModes(new osg::PolygonMode, forced);
    m_filter->addUniform(m_pixelSize);
    m_filter->addUniform(new osg::Uniform("picture", 0));
    m_filter->setAttributeAndModes(new osg::Depth(osg::Depth::ALWAYS, 0.0, 1.0, false), forced);
    for (GLenum const mode : {GL_BLEND, GL_CULL_FACE, GL_STENCIL_TEST, GL_SCISSOR_TEST})
      m_filter->setMode(mode, osg::StateAttribute::OFF | osg::StateAttribute::PROTECTED);
    for (GLenum plane = 0; plane < ClipNumbers::COUNT; ++plane)
      m_filter->setMode(GL_CLIP_PLANE0 + plane, osg::StateAttribute::OFF | osg::StateAttribute::PROTECTED);
  }

  void begin(osg::RenderInfo& renderInfo) {
    osg::Viewport const* const viewport = renderInfo.getCurrentCamera()->getViewport();
    osg::GLExtensions* const gl = supportedExtensions(renderInfo);
    if (m_failed || !viewport || !gl->isFrameBufferObjectSupported || !gl->isGlslSupported)
      return;
    auto const width = static_cast<int>(viewport->x() + viewport->width());
    auto const height = static_cast<int>(viewport->y() + viewport->height());
    if (width != m_width || height != m_height)
      allocate(*renderInfo.getState(), *gl, width, height);
    if (m_failed)
      return;
    gl->glBindFramebuffer(GL_FRAMEBUFFER_EXT, m_frameBuffer);
    m_drawing = true;
  }

  void end(osg::RenderInfo& renderInfo) {
    if (!m_drawing)
      return;
    m_drawing = false;
    osg::State& state = *renderInfo.getState();
    state.get<osg::GLExtensions>()->glBindFramebuffer(GL_FRAMEBUFFER_EXT, 0);
    state.pushStateSet(m_filter);
    state.apply();
    m_quad->drawImplementation(renderInfo);
    state.popStateSet();
    state.apply();
  }

private:
  void allocate(osg::State& state, osg::GLExtensions& gl, int width, int height) {
    if (m_frameBuffer == 0) {
      gl.glGenFramebuffers(1, &m_frameBuffer);
      gl.glGenRenderbuffers(1, &m_depth);
    }
    m_width = width;
    m_height = height;
    m_pixelSize->set(osg::Vec2f(1.0f / static_cast<float>(width), 1.0f / static_cast<float>(height)));
    m_texture->setTextureSize(width, height);
    m_texture->dirtyTextureObject();
    state.setActiveTextureUnit(0);
    state.applyTextureAttribute(0, m_texture);
    GLuint const texture = m_texture->getTextureObject(state.getContextID())->id();

    gl.glBindFramebuffer(GL_FRAMEBUFFER_EXT, m_frameBuffer);
    gl.glFramebufferTexture2D(GL_FRAMEBUFFER_EXT, GL_COLOR_ATTACHMENT0_EXT, GL_TEXTURE_2D, texture, 0);
    gl.glBindRenderbuffer(GL_RENDERBUFFER_EXT, m_depth);
    gl.glRenderbufferStorage(GL_RENDERBUFFER_EXT, DEPTH_AND_STENCIL, width, height);
    for (GLenum const attachment : {GL_DEPTH_ATTACHMENT_EXT, GL_STENCIL_ATTACHMENT_EXT})
      gl.glFramebufferRenderbuffer(GL_FRAMEBUFFER_EXT, attachment, GL_RENDERBUFFER_EXT, m_depth);
    m_failed = gl.glCheckFramebufferStatus(GL_FRAMEBUFFER_EXT) != GL_FRAMEBUFFER_COMPLETE_EXT;
    gl.glBindFramebuffer(GL_FRAMEBUFFER_EXT, 0);
  }

  osg::ref_ptr<osg::Texture2D> m_texture;
  osg::ref_ptr<osg::Uniform> m_pixelSize;
  osg::ref_ptr<osg::Geometry> m_quad;
  osg::ref_ptr<osg::StateSet> m_filter;
  int m_width = 0;
  int m_height = 0;
  GLuint m_frameBuffer = 0;
  GLuint m_depth = 0;
  bool m_failed = false;
  bool m_drawing = false;
};

class Begin : public osg::Camera::DrawCallback {
public:
  explicit Begin(SmoothedBuffer* buffer) : m_buffer(buffer) {}
  void operator()(osg::RenderInfo& renderInfo) const override { m_buffer->begin(renderInfo); }

private:
  osg::ref_ptr<SmoothedBuffer> m_buffer;
};

class End : public osg::Camera::DrawCallback {
public:
  explicit End(SmoothedBuffer* buffer) : m_buffer(buffer) {}
  void operator()(osg::RenderInfo& renderInfo) const override { m_buffer->end(renderInfo); }

private:
  osg::ref_ptr<SmoothedBuffer> m_buffer;
};

} // namespace

void smoothEdges(osg::Camera& camera) {
  osg::ref_ptr<SmoothedBuffer> const buffer = new SmoothedBuffer;
  camera.addPreDrawCallback(new Begin(buffer));
  camera.addPostDrawCallback(new End(buffer));
}

} // namespace zorOSG
