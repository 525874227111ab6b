#include "PixelTransfer.h"

#include <osg/GLExtensions>

#include <cstring>

namespace zorOSG {

void PixelTransfer::start(osg::State& state, PixelSource const& source, GLenum format, GLenum type,
                          std::size_t size) {
  if (!m_buffer || m_size != size) {
    m_buffer = new osg::PixelDataBufferObject;
    m_buffer->setTarget(GL_PIXEL_PACK_BUFFER_ARB);
    m_buffer->setUsage(GL_STREAM_READ_ARB);
    m_buffer->setDataSize(static_cast<unsigned int>(size));
    m_size = size;
  }
  m_buffer->bindBufferInWriteMode(state);
  source.read(state, format, type, nullptr);
  m_buffer->unbindBuffer(state.getContextID());
  m_isPending = true;
}

bool PixelTransfer::finish(osg::State& state, void* to) {
  m_isPending = false;
  osg::GLExtensions const& gl = *state.get<osg::GLExtensions>();
  // Not by bindBufferInWriteMode(), which gives the buffer new memory each time.
  osg::GLBufferObject const& buffer = *m_buffer->getGLBufferObject(state.getContextID());
  gl.glBindBuffer(GL_PIXEL_PACK_BUFFER_ARB, buffer.getGLObjectID());
  void const* const pixels = gl.glMapBuffer(GL_PIXEL_PACK_BUFFER_ARB, GL_READ_ONLY_ARB);
  if (pixels)
    std::memcpy(to, pixels, m_size);
  bool const kept = pixels && gl.glUnmapBuffer(GL_PIXEL_PACK_BUFFER_ARB);
  gl.glBindBuffer(GL_PIXEL_PACK_BUFFER_ARB, 0);
  return kept;
}

} // namespace zorOSG
