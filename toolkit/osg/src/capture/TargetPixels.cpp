#include "TargetPixels.h"

#include <osg/GLExtensions>

namespace zorOSG {

TargetPixels::TargetPixels(osg::Texture2D* texture, osg::Camera::BufferComponent component)
    : m_texture(texture), m_buffer(new osg::FrameBufferObject),
      m_hasColors(component == osg::Camera::COLOR_BUFFER) {
  m_buffer->setAttachment(component, osg::FrameBufferAttachment(texture));
}

void TargetPixels::read(osg::State& state, GLenum format, GLenum type, void* to) const {
  osg::GLExtensions const& gl = *state.get<osg::GLExtensions>();
  GLint before = 0;
  glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING_EXT, &before);
  m_buffer->apply(state, osg::FrameBufferObject::READ_FRAMEBUFFER);
  glReadBuffer(m_hasColors ? GL_COLOR_ATTACHMENT0_EXT : GL_NONE);
  packRows();
  glReadPixels(0, 0, width(), height(), format, type, to);
  gl.glBindFramebuffer(GL_READ_FRAMEBUFFER_EXT, static_cast<GLuint>(before));
}

} // namespace zorOSG
