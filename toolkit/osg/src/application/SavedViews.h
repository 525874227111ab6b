#pragma once

#include "CameraControl.h"

#include <cstddef>
#include <vector>

namespace zorOSG {

/// Poses of the camera that were kept, to be gone through one after the other.
class SavedViews {
public:
  void save(CameraControl::Pose const& pose) {
    m_poses.push_back(pose);
    m_next = 0;
  }

  std::size_t size() const { return m_poses.size(); }

  /** \return the next view, from the oldest to the newest and over again; null if there are none */
  CameraControl::Pose const* next() {
    if (m_poses.empty())
      return nullptr;
    m_next %= m_poses.size();
    return &m_poses[m_next++];
  }

private:
  std::vector<CameraControl::Pose> m_poses;
  std::size_t m_next = 0;
};

} // namespace zorOSG
