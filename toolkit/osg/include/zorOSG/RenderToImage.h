#pragma once

#include <zorOSG/RenderTarget.h>

#include <osg/Image>

#include <memory>

namespace zorOSG {

class PixelTransfer;

/**
 * Renders into an image in main memory.
 *
 * The pixels stay on the graphics card until somebody wants them: getImage(), getImageData(),
 * extractImageData() and saveImage() give those of the last frame that was drawn, and a target that nobody
 * asks costs no more than its drawing. While somebody holds the image (or has asked for its data), every
 * frame brings its pixels by itself; they travel while the rest of the frame is drawn where the graphics
 * driver can do that.
 *
 * A depth image has the projection that it was drawn with as user value "projection" (osg::Matrixd).
 */
class RenderToImage : public RenderTarget {
public:
  /**
   * \param width - width in pixels.
   * \param height - height in pixels.
   * \param bufferComponent - colour or depth. Depth gives one 32-bit float per pixel, 0 near to 1 far.
   * \param multiSamples - samples per pixel, at most 64 and what the graphics driver offers; 0 turns
   * anti-aliasing off. Depth is never multisampled.
   * \param textureFormat - pixel format of a colour image.
   */
  RenderToImage(zor::UInt width, zor::UInt height, BufferComponent bufferComponent = COLOR_BUFFER,
                zor::UInt multiSamples = 8, TextureFormat textureFormat = RGBA);

  /**
   * \return the image that holds the buffer, borrowed. Rows run from bottom to top. The next frames are put
   * into the same memory; a change of size makes another image.
   */
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
  void resized() override;
  void targetDrawn(osg::State& state) override;
  void frameDrawn(osg::State& state) override;

private:
  void makeImage();
  bool isWatched() const;
  void fetch() const;
  void read(osg::State& state) const;
  void dated() const;

  osg::ref_ptr<osg::Image> m_image;
  std::unique_ptr<PixelTransfer> m_transfer;
  osg::observer_ptr<osg::GraphicsContext> m_context;
  bool m_isDataKnown = false;
  mutable bool m_isStale = false;
  mutable bool m_wasAsked = false;
};

} // namespace zorOSG
