#pragma once

#include <zor/Object.h>
#include <zor/Vec2.h>
#include <zor/Vec3.h>
#include <zor/Vector.h>
#include <zor/ref_ptr.h>
#include <zorRender/RenderMaterial.h>

namespace zorRender {

/**
 * The triangles with which a shape is drawn in place of its collision form, in the shape's own frame.
 *
 * Normals and texture coordinates are optional; when present there is one a vertex. Render data without
 * vertices draw the shape itself, with their material.
 */
class RenderData : public zor::Object {
public:
  RenderData();

  /** \param vertices - vertices (m); a vertex that is not finite throws std::invalid_argument */
  void setVertices(zor::Vec3Vector const& vertices);
  /** \return the vertices (m) */
  zor::Vec3Vector const& getVertices() const { return m_vertices; }

  /** \param normals - one unit normal a vertex, or none */
  void setNormals(zor::Vec3Vector const& normals);
  /** \return the normals; empty if there are none */
  zor::Vec3Vector const& getNormals() const { return m_normals; }

  /** \param texCoords - one pair of texture coordinates a vertex, or none */
  void setTexCoords(zor::Vec2Vector const& texCoords);
  /** \return the texture coordinates; empty if there are none */
  zor::Vec2Vector const& getTexCoords() const { return m_texCoords; }

  /** \param indices - three vertex indices a triangle; another count throws std::invalid_argument */
  void setIndices(zor::UInt32Vector const& indices);
  /** \return three vertex indices a triangle */
  zor::UInt32Vector const& getIndices() const { return m_indices; }

  /** \param material - the material; null leaves the look to the renderer */
  void setRenderMaterial(zorRender::RenderMaterial* material);
  /** \return the material, or null */
  zorRender::RenderMaterial* getRenderMaterial() const { return m_material.get(); }

  /** \param shouldRender - false to draw nothing */
  void setShouldRender(bool shouldRender) { m_shouldRender = shouldRender; }
  /** \return false if nothing is drawn */
  bool getShouldRender() const { return m_shouldRender; }

  /**
   * Throws std::invalid_argument, saying which, when an index is beyond the vertices or normals or texture
   * coordinates are not one a vertex. Each setter checks its own part only, because the parts come one by
   * one.
   */
  void validate() const;

#ifndef SWIG
  /** \return a number that is another one after each change of vertices, normals, texture coordinates or
   * indices */
  unsigned int getRevision() const { return m_revision; }
#endif

protected:
  ~RenderData() override;

private:
  unsigned int m_revision = 0;
  zor::Vec3Vector m_vertices;
  zor::Vec3Vector m_normals;
  zor::Vec2Vector m_texCoords;
  zor::UInt32Vector m_indices;
  zor::ref_ptr<RenderMaterial> m_material;
  bool m_shouldRender = true;
};

} // namespace zorRender
