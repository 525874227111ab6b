#pragma once

#include <osg/GL>
#include <osg/State>

#include <cstddef>

namespace zorOSG {

/** Pixels of a frame that can be read from the graphics card; a context is current when they are. */
class PixelSource {
public:
  PixelSource() = default;
  PixelSource(PixelSource const&) = delete;
  PixelSource& operator=(PixelSource const&) = delete;
  virtual ~PixelSource() = default;

  virtual int width() const = 0;
  virtual int height() const = 0;

  /**
   * Reads the pixels, rows from bottom to top without padding.
   * \param format - of the pixels, as OpenGL has it
   * \param type - of a component, as OpenGL has it
   * \param to - memory, or the offset in the pixel buffer that is bound
   */
  virtual void read(osg::State& state, GLenum format, GLenum type, void* to) const = 0;
};

/** \return true if pixels reach memory faster by way of a buffer that the graphics card fills meanwhile */
bool hasAsynchronousReadBack(osg::State& state);

/** Tells OpenGL that rows follow each other without padding in memory. */
void packRows();

} // namespace zorOSG
