#include "mesh/Mesh.h"

#include <stdexcept>
#include <utility>
#include <vector>

#include "mesh/VertexMerger.h"

namespace zorModel {

namespace {

bool hasArea(zor::Vec3 const& a, zor::Vec3 const& b, zor::Vec3 const& c) {
  return (b - a).cross(c - a).length2() > 0;
}

zor::Vec3Vector scaled(zor::Vec3Vector const& vectors, zor::Vec3 const& factors) {
  zor::Vec3Vector result;
  result.reserve(vectors.size());
  for (zor::Vec3 const& v : vectors)
    result.push_back(zor::Vec3(v.x() * factors.x(), v.y() * factors.y(), v.z() * factors.z()));
  return result;
}

} // namespace

zor::ref_ptr<zorRender::RenderData> scaledMesh(zorRender::RenderData const& mesh, zor::Vec3 const& scale) {
  zor::ref_ptr<zorRender::RenderData> result = new zorRender::RenderData;
  result->setVertices(scaled(mesh.getVertices(), scale));
  zor::Vec3Vector normals = scaled(mesh.getNormals(), zor::Vec3(1 / scale.x(), 1 / scale.y(), 1 / scale.z()));
  for (zor::Vec3& normal : normals)
    normal.normalize();
  result->setNormals(normals);
  result->setTexCoords(mesh.getTexCoords());
  zor::UInt32Vector indices = mesh.getIndices();
  if (scale.x() * scale.y() * scale.z() < 0)
    for (std::size_t i = 0; i + 2 < indices.size(); i += 3)
      std::swap(indices[i + 1], indices[i + 2]);
  result->setIndices(indices);
  return result;
}

zor::ref_ptr<zorCollide::Trimesh> trimeshOf(zorRender::RenderData const& mesh, zor::Real weldDistance,
                                            std::string const& name) {
  VertexMerger merger(weldDistance);
  std::vector<zor::UInt32> numbers;
  for (zor::Vec3 const& vertex : mesh.getVertices())
    numbers.push_back(merger.number(vertex));
  zor::Vec3Vector const& positions = merger.positions();
  zor::UInt32Vector const& triangles = mesh.getIndices();
  zor::UInt32Vector indices;
  for (std::size_t i = 0; i + 2 < triangles.size(); i += 3) {
    zor::UInt32 const a = numbers[triangles[i]], b = numbers[triangles[i + 1]], c = numbers[triangles[i + 2]];
    if (!hasArea(positions[a], positions[b], positions[c]))
      continue;
    for (zor::UInt32 const each : {a, b, c})
      indices.push_back(each);
  }
  if (indices.empty())
    throw std::runtime_error("none of its triangles has an area");
  return new zorCollide::Trimesh(positions, indices, name);
}

} // namespace zorModel
