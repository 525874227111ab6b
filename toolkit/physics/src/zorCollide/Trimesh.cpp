#include <zorCollide/Trimesh.h>

#include <stdexcept>
#include <string>

#include "bullet/Check.h"
#include "bullet/MeshData.h"
#include "bullet/MeshImpl.h"

namespace zorCollide {
namespace {

std::shared_ptr<zorBullet::MeshData> makeData(zor::Vec3Vector const& vertices,
                                              zor::UInt32Vector const& indices) {
  zorBullet::checkVertices("Trimesh", vertices);
  zorBullet::checkTriangles("Trimesh", indices, vertices.size());
  return std::make_shared<zorBullet::MeshData>(vertices, indices);
}

} // namespace

Trimesh::Trimesh(zor::Vec3Vector const& vertices, zor::UInt32Vector const& indices, zor::String const& name)
    : Trimesh(makeData(vertices, indices), name) {}

Trimesh::Trimesh(std::shared_ptr<zorBullet::MeshData> data, zor::String const& name)
    : Shape(TRIMESH, std::make_unique<zorBullet::MeshImpl>(data, 1)), m_data(std::move(data)) {
  setName(name);
}

Trimesh::~Trimesh() = default;

zor::Vec3Vector const& Trimesh::getVertices() const {
  return m_data->vertices;
}

zor::UInt32Vector const& Trimesh::getIndices() const {
  return m_data->indices;
}

bool Trimesh::isClosed() const {
  return m_data->isClosed();
}

void Trimesh::setNumConvexParts(zor::UInt count) {
  if (count < 1 || count > 64)
    throw std::invalid_argument("Trimesh: number of convex parts is " + std::to_string(count) +
                                ", but must be between 1 and 64");
  if (count == m_numConvexParts)
    return;
  auto impl = std::make_unique<zorBullet::MeshImpl>(m_data, count);
  m_numConvexParts = count;
  replaceImpl(std::move(impl));
}

} // namespace zorCollide
