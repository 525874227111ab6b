#include <zorOSG/CreateTrimesh.h>

#include <stdexcept>

#include "TriangleCollector.h"

namespace zorOSG {

zorCollide::Trimesh* createTrimesh(osg::Node* node) {
  if (!node)
    throw std::runtime_error("createTrimesh: the node is null");
  Triangles const triangles = collectTriangles(*node);
  if (triangles.indices.empty())
    throw std::runtime_error("createTrimesh: no triangles below node \"" + node->getName() + "\"");
  return new zorCollide::Trimesh(triangles.vertices, triangles.indices, node->getName());
}

} // namespace zorOSG
