#pragma once

#include <zor/AffineMatrix4x4.h>
#include <zor/Vec2.h>

#include <osg/MatrixTransform>

namespace zorOSG {

/// The visual grid and the visual coordinate system; both are made when they are first shown.
class VisualAids {
public:
  VisualAids();

  /** \return the node that holds both */
  osg::Node* node() const { return m_root.get(); }

  void setGridEnabled(bool flag);
  bool isGridEnabled() const { return m_gridEnabled; }

  /** Throws std::invalid_argument unless both are above zero. */
  void setGridSize(zor::Vec2 const& size);
  zor::Vec2 gridSize() const { return m_size; }

  /** Throws std::invalid_argument unless both are 1 to 10000. */
  void setGridResolution(zor::Vec2u const& resolution);
  zor::Vec2u gridResolution() const { return m_resolution; }

  void setAxesEnabled(bool flag);
  bool areAxesEnabled() const { return m_axesEnabled; }

  void setTransform(zor::AffineMatrix4x4 const& transform);
  zor::AffineMatrix4x4 transform() const { return m_transform; }

private:
  void rebuildGrid();

  osg::ref_ptr<osg::MatrixTransform> m_root;
  osg::ref_ptr<osg::Node> m_grid;
  osg::ref_ptr<osg::Node> m_axes;
  zor::AffineMatrix4x4 m_transform;
  zor::Vec2 m_size{20, 20};
  zor::Vec2u m_resolution{20u, 20u};
  bool m_gridEnabled = false;
  bool m_axesEnabled = false;
};

} // namespace zorOSG
