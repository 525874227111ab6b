#include "CaptureSet.h"

#include "ScreenShots.h"
#include "capture/AtomicFile.h"

#include <zor/Notify.h>
#include <zorSDK/Simulation.h>

#include <stdexcept>

namespace zorOSG {

namespace {

constexpr double DEFAULT_FPS = 30;

bool isRunning(ImageCaptureBase const* capture) {
  return capture && capture->getCaptureStarted();
}

} // namespace

CaptureSet::CaptureSet() = default;

CaptureSet::~CaptureSet() {
  if (!m_viewer)
    return;
  // The camera may outlive the captures, whose callbacks then must not run.
  auto* const camera = m_viewer->getCamera();
  if (m_images)
    camera->removeFinalDrawCallback(m_images->getDrawCallback());
  if (m_video)
    camera->removeFinalDrawCallback(m_video->getDrawCallback());
  if (m_screenShots)
    camera->removeFinalDrawCallback(m_screenShots.get());
}

void CaptureSet::attach(osgViewer::Viewer* viewer) {
  m_viewer = viewer;
}

void CaptureSet::setSimulation(zorSDK::Simulation* simulation) {
  m_simulation = simulation;
  if (m_images)
    m_images->setSimulation(simulation);
  if (m_video)
    m_video->setSimulation(simulation);
}

void CaptureSet::addCallback(osg::Camera::DrawCallback* callback) {
  m_viewer->getCamera()->addFinalDrawCallback(callback);
}

void CaptureSet::configure(ImageCaptureBase& capture) {
  capture.setEnableSyncWithSimulation(m_sync);
  addCallback(capture.getDrawCallback());
}

ImageCapture* CaptureSet::images() {
  if (!m_images && m_viewer) {
    m_images = new ImageCapture(m_simulation.get());
    m_images->setFps(DEFAULT_FPS);
    configure(*m_images);
  }
  return m_images.get();
}

VideoFFMPEGPipeCapture* CaptureSet::video() {
  if (!m_video && m_viewer) {
    osg::Viewport const* const viewport = m_viewer->getCamera()->getViewport();
    m_video = new VideoFFMPEGPipeCapture(static_cast<zor::UInt>(viewport->width()),
                                         static_cast<zor::UInt>(viewport->height()), DEFAULT_FPS,
                                         m_simulation.get());
    configure(*m_video);
  }
  return m_video.get();
}

void CaptureSet::setSync(bool sync) {
  m_sync = sync;
  if (m_images)
    m_images->setEnableSyncWithSimulation(sync);
  if (m_video)
    m_video->setEnableSyncWithSimulation(sync);
}

bool CaptureSet::needsEveryStep() const {
  auto const synced = [](ImageCaptureBase const* capture) {
    return isRunning(capture) && capture->getEnableSyncWithSimulation();
  };
  return synced(m_images.get()) || synced(m_video.get());
}

bool CaptureSet::isPictureDue() const {
  auto const due = [](ImageCaptureBase const* capture) { return capture && capture->isImageDue(); };
  return due(m_images.get()) || due(m_video.get()) || (m_screenShots && m_screenShots->isPending());
}

void CaptureSet::takeScreenShot(std::string const& filename) {
  if (!m_viewer)
    throw std::runtime_error("takeScreenShot: the application has no graphics");
  if (!m_screenShots) {
    m_screenShots = new ScreenShots;
    addCallback(m_screenShots.get());
  }
  std::filesystem::path const file =
      filename.empty() ? m_screenShots->nextFreeName() : std::filesystem::path(filename);
  std::string const suffix = file.extension().string();
  requireImageWriter(suffix.empty() ? suffix : suffix.substr(1));
  requireWritableDirectory(file.parent_path());
  m_screenShots->request(file);
}

bool CaptureSet::finish() {
  bool ok = !m_screenShots || m_screenShots->finish();
  if (m_images && (m_images->getCaptureStarted() || m_images->hasCaptureFailed()))
    ok = m_images->stopCapture() && ok;
  if (m_video && m_video->hasActiveVideo())
    ok = m_video->stopProcess() && ok;
  if (m_video && m_video->hasCaptureFailed())
    ok = false;
  return ok;
}

} // namespace zorOSG
