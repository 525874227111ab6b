#pragma once

#include "PixelSource.h"

#include <osg/BufferObject>
#include <osg/ref_ptr>

#include <cstddef>

namespace zorOSG {

/** Pixels on their way from the graphics card: nobody waits between start() and finish(). */
class PixelTransfer {
public:
  bool isPending() const { return m_isPending; }

  /** Begins to read. A transfer under way is given up. */
  void start(osg::State& state, PixelSource const& source, GLenum format, GLenum type, std::size_t size);

  /**
   * Waits for the pixels.
   * \param to - memory for as many bytes as were started
   * \return false if the driver has lost them
   */
  bool finish(osg::State& state, void* to);

  /** Gives up what is under way. */
  void cancel() { m_isPending = false; }

private:
  osg::ref_ptr<osg::PixelDataBufferObject> m_buffer;
  std::size_t m_size = 0;
  bool m_isPending = false;
};

} // namespace zorOSG
