#include "Boxes.h"

#include <algorithm>
#include <cmath>

namespace zorOSG {

osg::BoundingBoxd transformed(osg::BoundingBox const& box, osg::Matrixd const& matrix) {
  osg::Vec3d const center = osg::Vec3d(box.center()) * matrix;
  osg::Vec3d const half(0.5 * (box.xMax() - box.xMin()), 0.5 * (box.yMax() - box.yMin()),
                        0.5 * (box.zMax() - box.zMin()));
  osg::Vec3d reach;
  for (int column = 0; column < 3; ++column)
    for (int row = 0; row < 3; ++row)
      reach[column] += std::abs(matrix(row, column)) * half[row];
  return {center - reach, center + reach};
}

bool isGround(osg::BoundingBoxd const& box, osg::BoundingBoxd const& scene) {
  double const width = std::max(box.xMax() - box.xMin(), box.yMax() - box.yMin());
  double const height = box.zMax() - box.zMin();
  double const sceneHeight = scene.zMax() - scene.zMin();
  return height <= 0.1 * width && box.zMin() - scene.zMin() <= 0.02 * sceneHeight;
}

} // namespace zorOSG
