#include <zorRender/RenderData.h>

#include <stdexcept>
#include <string>

#include "bullet/Check.h"

namespace zorRender {
namespace {

void checkOneAVertex(char const* what, size_t count, size_t numVertices) {
  if (count != 0 && count != numVertices)
    throw std::invalid_argument("RenderData: " + std::to_string(count) + " " + what + " for " +
                                std::to_string(numVertices) + " vertices");
}

} // namespace

RenderData::RenderData() = default;
RenderData::~RenderData() = default;

void RenderData::setVertices(zor::Vec3Vector const& vertices) {
  zorBullet::checkVertices("RenderData", vertices);
  m_vertices = vertices;
  ++m_revision;
}

void RenderData::setNormals(zor::Vec3Vector const& normals) {
  m_normals = normals;
  ++m_revision;
}

void RenderData::setTexCoords(zor::Vec2Vector const& texCoords) {
  m_texCoords = texCoords;
  ++m_revision;
}

void RenderData::setIndices(zor::UInt32Vector const& indices) {
  if (indices.size() % 3 != 0)
    throw std::invalid_argument("RenderData: " + std::to_string(indices.size()) +
                                " indices are not three a triangle");
  m_indices = indices;
  ++m_revision;
}

void RenderData::setRenderMaterial(RenderMaterial* material) {
  m_material = material;
}

void RenderData::validate() const {
  checkOneAVertex("normals", m_normals.size(), m_vertices.size());
  checkOneAVertex("texture coordinates", m_texCoords.size(), m_vertices.size());
  if (!m_indices.empty())
    zorBullet::checkTriangles("RenderData", m_indices, m_vertices.size());
}

} // namespace zorRender
