#pragma once

#include "CaptureSet.h"

#include <filesystem>
#include <vector>

namespace zorOSG {

/// Draw callback that writes the frame just drawn to the files that were asked for.
class CaptureSet::ScreenShots : public osg::Camera::DrawCallback {
public:
  void request(std::filesystem::path file) { m_files.push_back(std::move(file)); }

  bool isPending() const { return !m_files.empty(); }

  /** \return the first file zor_screen_%05d.png that neither exists nor is asked for already */
  std::filesystem::path nextFreeName();

  /** Gives up what no frame has come for. \return false if a file was not written since the last call */
  bool finish();

  void operator()(osg::RenderInfo& renderInfo) const override;

protected:
  ~ScreenShots() override = default;

private:
  // The scene-graph library calls callbacks as const.
  mutable std::vector<std::filesystem::path> m_files;
  mutable bool m_failed = false;
  int m_number = 0;
};

} // namespace zorOSG
