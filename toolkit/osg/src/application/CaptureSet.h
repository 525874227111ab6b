#pragma once

#include <zor/ref_ptr.h>
#include <zorOSG/ImageCapture.h>
#include <zorOSG/VideoFFMPEGPipeCapture.h>

#include <osgViewer/Viewer>

#include <string>

namespace zorSDK {
class Simulation;
}

namespace zorOSG {

/// The captures of an application's main view, made when they are first asked for, and its screen shots.
class CaptureSet {
public:
  CaptureSet();
  ~CaptureSet();

  CaptureSet(CaptureSet const&) = delete;
  CaptureSet& operator=(CaptureSet const&) = delete;

  void attach(osgViewer::Viewer* viewer);
  void setSimulation(zorSDK::Simulation* simulation);

  ImageCapture* images();
  VideoFFMPEGPipeCapture* video();

  void setSync(bool sync);
  bool getSync() const { return m_sync; }

  /** \return true if a capture keeps step with the simulation, so that steps can't be skipped in drawing */
  bool needsEveryStep() const;

  /** \return true if something would be stored of a picture drawn now */
  bool isPictureDue() const;

  /**
   * Has the next frame written.
   * \param filename suffix selects the format; empty for the next free numbered name
   * Throws std::runtime_error if the folder or the format will not do.
   */
  void takeScreenShot(std::string const& filename);

  /** Ends what is running. \return false, after a message, if a file could not be finished */
  bool finish();

private:
  class ScreenShots;

  void addCallback(osg::Camera::DrawCallback* callback);
  void configure(ImageCaptureBase& capture);

  osg::ref_ptr<osgViewer::Viewer> m_viewer;
  zor::ref_ptr<zorSDK::Simulation> m_simulation;
  zor::ref_ptr<ImageCapture> m_images;
  zor::ref_ptr<VideoFFMPEGPipeCapture> m_video;
  osg::ref_ptr<ScreenShots> m_screenShots;
  bool m_sync = true;
};

} // namespace zorOSG
