#include "ScreenShots.h"

#include "capture/AtomicFile.h"

#include <zor/Notify.h>

#include <cstdio>

namespace zorOSG {

std::filesystem::path CaptureSet::ScreenShots::nextFreeName() {
  char name[32];
  do
    std::snprintf(name, sizeof name, "zor_screen_%05d.png", m_number++);
  while (std::filesystem::exists(name));
  return name;
}

void CaptureSet::ScreenShots::operator()(osg::RenderInfo& renderInfo) const {
  osg::Camera const* const camera = renderInfo.getCurrentCamera();
  osg::Viewport const* const viewport = camera ? camera->getViewport() : nullptr;
  if (!viewport || m_files.empty())
    return;
  osg::ref_ptr<osg::Image> image = new osg::Image;
  image->readPixels(static_cast<int>(viewport->x()), static_cast<int>(viewport->y()),
                    static_cast<int>(viewport->width()), static_cast<int>(viewport->height()), GL_RGB,
                    GL_UNSIGNED_BYTE);
  for (auto const& file : std::exchange(m_files, {})) {
    try {
      writeImageAtomically(*image, file);
    } catch (std::exception const& error) {
      m_failed = true;
      zor::notify(zor::Notify::NOTIFY_ERROR) << "screen shot: " << error.what() << zor::endMessage;
    }
  }
}

bool CaptureSet::ScreenShots::finish() {
  for (auto const& file : std::exchange(m_files, {})) {
    m_failed = true;
    zor::notify(zor::Notify::NOTIFY_ERROR)
        << "screen shot: no frame was drawn any more for " << file << zor::endMessage;
  }
  return !std::exchange(m_failed, false);
}

} // namespace zorOSG
