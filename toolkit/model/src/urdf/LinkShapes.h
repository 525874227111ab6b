#pragma once

#include <vector>

#include <urdf_model/link.h>

#include <zor/AffineMatrix4x4.h>
#include <zor/Material.h>
#include <zor/RigidBody.h>
#include <zor/ref_ptr.h>
#include <zorCollide/Geometry.h>
#include <zorRender/RenderData.h>
#include <zorRender/RenderMaterial.h>

#include "urdf/FileFinder.h"

namespace zorModel {

/** Makes geometries of the collision and visual elements of links. */
class LinkShapes {
public:
  using Geometries = std::vector<zor::ref_ptr<zorCollide::Geometry>>;

  /** \param material - of all geometries; null for the default one */
  LinkShapes(FileFinder const& files, zor::Material* material, zor::UInt numConvexParts)
      : m_files(files), m_material(material), m_numConvexParts(numConvexParts) {}

  /** Adds what collides to a body. \param place - the link's frame in the body's \return one geometry for
   * each collision element */
  Geometries addCollisions(urdf::Link const& link, zor::RigidBody& body,
                           zor::AffineMatrix4x4 const& place) const;

  /** Adds what is seen, once the body's mass does not follow from its shapes any more.
   * \param collisions - what addCollisions() gave for the link */
  void addVisuals(urdf::Link const& link, zor::RigidBody& body, zor::AffineMatrix4x4 const& place,
                  Geometries const& collisions) const;

private:
  zor::ref_ptr<zorCollide::Geometry> geometry(urdf::Geometry const& form) const;
  zor::ref_ptr<zorCollide::Shape> mesh(urdf::Mesh const& form) const;
  zor::ref_ptr<zorRender::RenderMaterial> look(urdf::Material const& source) const;

  FileFinder const& m_files;
  zor::ref_ptr<zor::Material> m_material;
  zor::UInt m_numConvexParts;
};

} // namespace zorModel
