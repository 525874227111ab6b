#include "urdf/LinkShapes.h"

#include <stdexcept>
#include <string>

#include <zor/Notify.h>
#include <zorCollide/Box.h>
#include <zorCollide/Capsule.h>
#include <zorCollide/Cylinder.h>
#include <zorCollide/Sphere.h>
#include <zorModel/ReadMesh.h>

#include "mesh/Mesh.h"
#include "urdf/Description.h"

namespace zorModel {

namespace {

/** URDF's round shapes stand along z, ours along y. */
zor::AffineMatrix4x4 uprightRoundShape() {
  return zor::AffineMatrix4x4(zor::Quat(zor::PI / 2, zor::Vec3(1, 0, 0)), zor::Vec3());
}

template <class Form>
Form const& as(urdf::Geometry const& geometry) {
  return static_cast<Form const&>(geometry);
}

/** Do two elements have the same form at the same place? */
bool sameForm(urdf::Geometry const& a, urdf::Geometry const& b) {
  if (a.type != b.type)
    return false;
  auto const same = [](urdf::Vector3 const& u, urdf::Vector3 const& v) { return toZor(u) == toZor(v); };
  switch (a.type) {
  case urdf::Geometry::BOX:
    return same(as<urdf::Box>(a).dim, as<urdf::Box>(b).dim);
  case urdf::Geometry::SPHERE:
    return as<urdf::Sphere>(a).radius == as<urdf::Sphere>(b).radius;
  case urdf::Geometry::CYLINDER:
    return as<urdf::Cylinder>(a).radius == as<urdf::Cylinder>(b).radius &&
           as<urdf::Cylinder>(a).length == as<urdf::Cylinder>(b).length;
  case urdf::Geometry::CAPSULE:
    return as<urdf::Capsule>(a).radius == as<urdf::Capsule>(b).radius &&
           as<urdf::Capsule>(a).length == as<urdf::Capsule>(b).length;
  case urdf::Geometry::MESH:
    return as<urdf::Mesh>(a).filename == as<urdf::Mesh>(b).filename &&
           same(as<urdf::Mesh>(a).scale, as<urdf::Mesh>(b).scale);
  }
  return false;
}

/** Adds the element's name to what goes wrong with it. */
template <class Function>
void naming(urdf::Link const& link, std::string const& kind, std::string const& name, Function function) {
  try {
    function();
  } catch (std::exception const& error) {
    throw std::runtime_error(quoted("link", link.name) + ", " + (name.empty() ? kind : quoted(kind, name)) +
                             ": " + error.what());
  }
}

/** What is drawn in place of a geometry's shape, made where there is none. */
zorRender::RenderData& renderData(zorCollide::Geometry const& geometry) {
  zorCollide::Shape& shape = *geometry.getShape(0);
  if (!shape.getRenderData())
    shape.setRenderData(new zorRender::RenderData);
  return *shape.getRenderData();
}

/** The collision geometry, not used by another visual, that looks the same as a visual; null for none. */
zorCollide::Geometry* twinOf(urdf::Visual const& visual, urdf::Link const& link,
                             LinkShapes::Geometries const& collisions) {
  for (std::size_t i = 0; i < collisions.size(); ++i) {
    urdf::Collision const& collision = *link.collision_array[i];
    if (!renderData(*collisions[i]).getShouldRender() && sameForm(*collision.geometry, *visual.geometry) &&
        toZor(collision.origin).equals(toZor(visual.origin), 1e-12))
      return collisions[i].get();
  }
  return nullptr;
}

} // namespace

zor::ref_ptr<zorCollide::Shape> LinkShapes::mesh(urdf::Mesh const& form) const {
  zor::Vec3 const scale = toZor(form.scale);
  if (scale.x() * scale.y() * scale.z() == 0)
    throw std::runtime_error("the mesh's scale is zero");
  std::string const path = m_files.find(form.filename);
  zor::ref_ptr<zorRender::RenderData> const file = readMesh(path);
  zor::ref_ptr<zorRender::RenderData> const data = scaledMesh(*file, scale);
  zor::ref_ptr<zorCollide::Trimesh> const shape = trimeshOf(*data, 0, path);
  shape->setNumConvexParts(m_numConvexParts);
  if (!data->getNormals().empty() || !data->getTexCoords().empty())
    shape->setRenderData(data.get()); // else the shape draws itself
  return shape;
}

zor::ref_ptr<zorCollide::Geometry> LinkShapes::geometry(urdf::Geometry const& form) const {
  switch (form.type) {
  case urdf::Geometry::BOX:
    return new zorCollide::Geometry(new zorCollide::Box(toZor(as<urdf::Box>(form).dim) * 0.5));
  case urdf::Geometry::SPHERE:
    return new zorCollide::Geometry(new zorCollide::Sphere(as<urdf::Sphere>(form).radius));
  case urdf::Geometry::CYLINDER:
    return new zorCollide::Geometry(
        new zorCollide::Cylinder(as<urdf::Cylinder>(form).radius, as<urdf::Cylinder>(form).length),
        uprightRoundShape());
  case urdf::Geometry::CAPSULE:
    return new zorCollide::Geometry(
        new zorCollide::Capsule(as<urdf::Capsule>(form).radius, as<urdf::Capsule>(form).length),
        uprightRoundShape());
  case urdf::Geometry::MESH:
    return new zorCollide::Geometry(mesh(as<urdf::Mesh>(form)).get());
  }
  throw std::runtime_error("a form that is not known");
}

LinkShapes::Geometries LinkShapes::addCollisions(urdf::Link const& link, zor::RigidBody& body,
                                                 zor::AffineMatrix4x4 const& place) const {
  Geometries result;
  for (urdf::CollisionSharedPtr const& collision : link.collision_array)
    naming(link, "collision", collision->name, [&] {
      zor::ref_ptr<zorCollide::Geometry> const added = geometry(*collision->geometry);
      added->setName(collision->name.empty() ? link.name : collision->name);
      if (m_material)
        added->setMaterial(m_material.get());
      body.add(added.get(), toZor(collision->origin) * place);
      result.push_back(added);
    });
  return result;
}

void LinkShapes::addVisuals(urdf::Link const& link, zor::RigidBody& body, zor::AffineMatrix4x4 const& place,
                            Geometries const& collisions) const {
  if (link.visual_array.empty())
    return; // drawn as it collides
  for (auto const& each : collisions)
    renderData(*each).setShouldRender(false);
  for (urdf::VisualSharedPtr const& visual : link.visual_array)
    naming(link, "visual", visual->name, [&] {
      zor::ref_ptr<zorCollide::Geometry> seen = twinOf(*visual, link, collisions);
      if (!seen) {
        seen = geometry(*visual->geometry);
        seen->setName(visual->name.empty() ? link.name : visual->name);
        seen->setEnableCollisions(false);
        body.add(seen.get(), toZor(visual->origin) * place);
      }
      renderData(*seen).setShouldRender(true);
      if (visual->material)
        renderData(*seen).setRenderMaterial(look(*visual->material).get());
    });
}

zor::ref_ptr<zorRender::RenderMaterial> LinkShapes::look(urdf::Material const& source) const {
  zor::ref_ptr<zorRender::RenderMaterial> result = new zorRender::RenderMaterial;
  result->setName(source.name);
  zorRender::Color color(source.color.r, source.color.g, source.color.b, source.color.a);
  if (!source.texture_filename.empty()) {
    result->setDiffuseTexture(m_files.find(source.texture_filename));
    if (color == zorRender::Color()) // black is what is given where the file tells no colour
      color = zorRender::Color(1, 1, 1, 1);
  }
  result->setDiffuseColor(color);
  return result;
}

} // namespace zorModel
