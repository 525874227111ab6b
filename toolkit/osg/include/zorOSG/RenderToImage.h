#pragma once

#include <zorOSG/RenderTarget.h>

#include <osg/Image>

namespace zorOSG {

/** Renders into an image in main memory, which holds the latest frame after every frame. */
class RenderToImage : public RenderTarget {
public:
  /**
   * \param width - width in pixels.
   * \param height - height in pixels.
   * \param bufferComponent - colour or depth. Depth gives one 32-bit float per pixel, 0 near to 1 far.
   * \param multiSamples - samples per pixel; 0 turns anti-aliasing off. Depth is never multisampled.
   * \param textureFormat - pixel format of a colour image.
   */
  RenderToImage(zor::UInt width, zor::UInt height, BufferComponent bufferComponent = COLOR_BUFFER,
                zor::UInt multiSamples = 8, TextureFormat textureFormat = RGBA);

  /** \return the image that holds the buffer, borrowed. Rows run from bottom to top. */
  osg::Image* getImage();

  /**
   * Copies the image data.
   * \param img - destination of at least size bytes.
   * \param size - number of bytes; must be the exact size of the image data.
   * \return true if copied; false if img is null or size is not the actual size.
   */
  bool extractImageData(unsigned char* img, int size) const;

  /** \return the raw image data, borrowed; valid until the next resize. */
  unsigned char* getImageData();

  /**
   * Writes the colour image to a file whose suffix selects the format. The file appears whole or not at all.
   * \param filename - path of the file.
   * \return false if the target holds depth, no writer knows the suffix or the file can't be written.
   */
  bool saveImage(zor::String filename) const;

protected:
  ~RenderToImage() override;
  void attachBuffers() override;
  osg::Image* readFrame(osg::RenderInfo& renderInfo) override;

private:
  void attachImage();

  osg::ref_ptr<osg::Image> m_image;
  BufferComponent m_component;
  unsigned int m_multiSamples;
  TextureFormat m_format;
};

} // namespace zorOSG
