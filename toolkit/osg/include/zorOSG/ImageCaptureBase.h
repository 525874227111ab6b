#pragma once

#include <zor/Referenced.h>
#include <zor/Types.h>
#include <zor/Vec2.h>

#include <osg/Camera>
#include <osg/Image>

#include <memory>

namespace zorSDK {
class Simulation;
}

namespace zorOSG {

class PixelSource;

/**
 * Drives the capture of rendered frames: decides which frames are due, reads their pixels after the frame is
 * drawn and hands them to a writer thread that calls writeImage() for each, in order.
 *
 * The draw callback goes on a camera (as final draw callback) or the capture on a RenderTarget. Frames are
 * due at the capture rate, measured in simulation time when synchronised with a simulation, in wall-clock
 * time otherwise. When several frame times pass between two drawn frames, the newest frame is written for
 * each, so that the sequence keeps its time scale. The writer keeps at most a few frames; drawing waits for a
 * slow one, and no frame is lost. Where the graphics driver can do that, the pixels of a frame travel while
 * the next one is drawn.
 *
 * A frame that cannot be stored stops the capture with an error in the log; the application goes on.
 */
class ImageCaptureBase : public zor::Referenced {
public:
#ifdef SWIG
  class DrawCallback;
#else
  /**
   * Grabs the frame a camera has drawn. It does not keep the capture alive: the capture owns it and detaches
   * it when it dies, so that a camera may hold on to it.
   */
  class DrawCallback : public osg::Camera::DrawCallback {
  public:
    explicit DrawCallback(ImageCaptureBase* capture) : m_capture(capture) {}

    void operator()(osg::RenderInfo& renderInfo) const override;

  private:
    friend class ImageCaptureBase;
    ImageCaptureBase* m_capture;
  };
#endif

  /**
   * \param fps - desired capture rate (images per second), more than 0 and at most 10000.
   * \throws std::invalid_argument outside that range.
   */
  void setFps(zor::Real fps);

  /** \return the capture rate in images per second. */
  zor::Real getFps() const;

  /** \param maxImages - capturing stops after that many images; -1 for no limit. */
  void setMaxImages(int maxImages);

  /**
   * Starts capturing with the next frame; does nothing if it is already started.
   * \param start - number of the first image.
   */
  virtual void startCapture(int start = 0);

  /**
   * Stops capturing and waits until all captured frames are written.
   * \return false if the capture was already stopped or a frame could not be written.
   */
  virtual bool stopCapture();

  /** \return true while capturing is enabled. */
  bool getCaptureStarted() const;

  /** \return the simulation whose time is used, borrowed; null if there is none. */
  zorSDK::Simulation* getSimulation();

  /** \param simulation - the simulation whose time is used; observed, not kept alive. May be null. */
  void setSimulation(zorSDK::Simulation* simulation);

  /**
   * Sets the size of the written images; frames of another size are scaled.
   * \param width - width in pixels, at most 16384; 0 with a height of 0 takes the size of each frame.
   * \param height - height in pixels, at most 16384.
   */
  void setImageResolution(zor::UInt width, zor::UInt height);

  /** \return size of the written images in pixels; (0, 0) if it is that of each frame. */
  zor::Vec2u getImageResolution() const;

  /** \return number of the next image. */
  int getImageNum() const;

  /** \return the callback that grabs frames, borrowed; install it as final draw callback of a camera. */
  zorOSG::ImageCaptureBase::DrawCallback* getDrawCallback();

  /** \param enableSync - true to measure the capture rate in simulation time (needs a simulation). */
  void setEnableSyncWithSimulation(bool enableSync);

  /** \return true if the capture rate is measured in simulation time. */
  bool getEnableSyncWithSimulation() const;

  /** Forgets the time of the last image: the next drawn frame is due. */
  void resetTime();

  /**
   * Grabs the current frame if it is due. Must be called with the graphics context current; errors are logged
   * and stop the capture, they never leave the draw traversal.
   */
  virtual void apply(osg::RenderInfo& renderInfo);

  /**
   * Writes one frame.
   * Captured frames are packed 8-bit RGB of the resolution asked for, rows from bottom to top; scripts may
   * pass others.
   * \param image - the picture; must not be null.
   * \param index - number of the image.
   * \throws std::runtime_error saying what could not be written.
   */
  virtual void writeImage(osg::Image* image, zor::Index index) = 0;

protected:
  /**
   * \param simulation - the simulation whose time is used; may be null
   * \param numWriters - threads that write frames; with more than one, frames are not written in order
   */
  explicit ImageCaptureBase(zorSDK::Simulation* simulation, unsigned int numWriters = 1);
  ~ImageCaptureBase() override;

  /**
   * Writes a captured frame; called on a writer thread.
   * \param frame - packed 8-bit RGBA whose alpha has no meaning, of the size it was drawn in; rows from
   * bottom to top
   * \param first - number of the first image that shows it
   * \param count - number of images that show it
   */
  virtual void writeFrame(osg::Image* frame, zor::Index first, zor::Index count);

  /** \return true if a frame could not be read or written since capturing started. */
  bool hasCaptureFailed() const;

  /**
   * Takes in the last frame and stops the writer threads. Derived classes call it first in their destructors,
   * while writeImage is theirs.
   */
  void shutdownWriter() noexcept;

private:
  friend class CaptureSet;
  friend class RenderTarget;

  /** \return true if capturing and the next frame drawn would be stored. */
  bool isImageDue() const;

  /** Takes a frame that is on the graphics card, if it is due; logs errors and then stops the capture. */
  void captureFrame(osg::State& state, PixelSource const& source) noexcept;

  class Impl;
  std::unique_ptr<Impl> m_impl;
};

} // namespace zorOSG
