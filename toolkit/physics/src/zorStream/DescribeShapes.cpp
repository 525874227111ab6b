#include <zorCollide/Box.h>
#include <zorCollide/Capsule.h>
#include <zorCollide/Compound.h>
#include <zorCollide/Cone.h>
#include <zorCollide/Convex.h>
#include <zorCollide/Cylinder.h>
#include <zorCollide/HeightField.h>
#include <zorCollide/Plane.h>
#include <zorCollide/Sphere.h>
#include <zorCollide/Trimesh.h>

#include "bullet/Check.h"
#include "zorStream/Fields.h"
#include "zorStream/StateAccess.h"

// Materials, shapes and how they are drawn.

namespace zorStream {

using namespace zorCollide;

void StateAccess::renderMaterial(Archive& archive, Ref<zorRender::RenderMaterial>& material) {
  using zorRender::RenderMaterial;
  if (archive.reading())
    material = new RenderMaterial;
  auto const color = [&](char const* name, bool has, auto get, auto set) {
    if (archive.optional(name, has))
      property(archive, name, *material, get, set);
  };
  property(archive, "name", static_cast<zor::Object&>(*material), &zor::Object::getName,
           &zor::Object::setName);
  color("diffuse", material->hasDiffuseColor(), &RenderMaterial::getDiffuseColor,
        &RenderMaterial::setDiffuseColor);
  color("ambient", material->hasAmbientColor(), &RenderMaterial::getAmbientColor,
        &RenderMaterial::setAmbientColor);
  color("specular", material->hasSpecularColor(), &RenderMaterial::getSpecularColor,
        &RenderMaterial::setSpecularColor);
  color("emissive", material->hasEmissiveColor(), &RenderMaterial::getEmissiveColor,
        &RenderMaterial::setEmissiveColor);
  property(archive, "shininess", *material, &RenderMaterial::getShininess, &RenderMaterial::setShininess);
  property(archive, "transparency", *material, &RenderMaterial::getTransparency,
           &RenderMaterial::setTransparency);
  if (archive.version() >= 2)
    property(archive, "diffuseTexture", *material, &RenderMaterial::getDiffuseTexture,
             &RenderMaterial::setDiffuseTexture);
}

void StateAccess::renderData(Archive& archive, ObjectTables& tables, Ref<zorRender::RenderData>& data) {
  using zorRender::RenderData;
  if (archive.reading())
    data = new RenderData;
  auto const list = [&](char const* name, auto values, auto set) {
    listField(archive, name, values);
    if (archive.reading())
      checked(archive, name, [&] { (data.get()->*set)(values); });
  };
  property(archive, "name", static_cast<zor::Object&>(*data), &zor::Object::getName, &zor::Object::setName);
  list("vertices", zor::Vec3Vector(data->getVertices()), &RenderData::setVertices);
  list("normals", zor::Vec3Vector(data->getNormals()), &RenderData::setNormals);
  list("texCoords", zor::Vec2Vector(data->getTexCoords()), &RenderData::setTexCoords);
  list("indices", zor::UInt32Vector(data->getIndices()), &RenderData::setIndices);
  zorRender::RenderMaterial* material = data->getRenderMaterial();
  reference(archive, "material", tables.renderMaterials, material, true);
  if (archive.reading())
    data->setRenderMaterial(material);
  property(archive, "shouldRender", *data, &RenderData::getShouldRender, &RenderData::setShouldRender);
  if (archive.reading())
    checked(archive, nullptr, [&] { data->validate(); });
}

namespace {

template <class Round>
void roundShape(Archive& archive, zor::ref_ptr<Shape>& shape) {
  auto const* const old = dynamic_cast<Round const*>(shape.get());
  double radius = old ? old->getRadius() : 0, height = old ? old->getHeight() : 0;
  field(archive, "radius", radius);
  field(archive, "height", height);
  if (archive.reading())
    checked(archive, nullptr, [&] { shape = new Round(radius, height); });
}

void box(Archive& archive, zor::ref_ptr<Shape>& shape) {
  auto const* const old = dynamic_cast<Box const*>(shape.get());
  zor::Vec3 half = old ? old->getHalfExtents() : zor::Vec3();
  field(archive, "halfExtents", half);
  if (archive.reading())
    checked(archive, "halfExtents", [&] { shape = new Box(half); });
}

void sphere(Archive& archive, zor::ref_ptr<Shape>& shape) {
  auto const* const old = dynamic_cast<Sphere const*>(shape.get());
  double radius = old ? old->getRadius() : 0;
  field(archive, "radius", radius);
  if (archive.reading())
    checked(archive, "radius", [&] { shape = new Sphere(radius); });
}

void trimesh(Archive& archive, zor::ref_ptr<Shape>& shape) {
  auto const* const old = dynamic_cast<Trimesh const*>(shape.get());
  zor::Vec3Vector vertices = old ? old->getVertices() : zor::Vec3Vector();
  zor::UInt32Vector indices = old ? old->getIndices() : zor::UInt32Vector();
  std::uint64_t parts = old ? old->getNumConvexParts() : 1;
  listField(archive, "vertices", vertices);
  listField(archive, "indices", indices);
  field(archive, "convexParts", parts);
  if (archive.reading())
    checked(archive, nullptr, [&] {
      zor::ref_ptr<Trimesh> const made = new Trimesh(vertices, indices);
      made->setNumConvexParts(parts);
      shape = made.get();
    });
}

void heightField(Archive& archive, zor::ref_ptr<Shape>& shape) {
  auto const* const old = dynamic_cast<HeightField const*>(shape.get());
  std::uint64_t numX = old ? old->getResolutionX() : 0, numY = old ? old->getResolutionY() : 0;
  double sizeX = old ? old->getSizeX() : 0, sizeY = old ? old->getSizeY() : 0;
  zor::RealVector heights = old ? old->getHeights() : zor::RealVector();
  field(archive, "resolutionX", numX);
  field(archive, "resolutionY", numY);
  field(archive, "sizeX", sizeX);
  field(archive, "sizeY", sizeY);
  listField(archive, "heights", heights);
  if (archive.reading() && heights.empty())
    archive.fail("heights", "is empty");
  if (archive.reading())
    checked(archive, nullptr, [&] { shape = new HeightField(numX, numY, sizeX, sizeY, heights); });
}

struct Part {
  Shape* shape = nullptr;
  zor::AffineMatrix4x4 transform;
};

void partField(Archive& archive, ObjectTables& tables, Part& part) {
  reference(archive, "shape", tables.shapes, part.shape);
  field(archive, "transform", part.transform);
}

void compound(Archive& archive, ObjectTables& tables, zor::ref_ptr<Shape>& shape) {
  auto const* const old = dynamic_cast<Compound const*>(shape.get());
  std::vector<Part> parts;
  for (zor::UInt i = 0; old && i < old->getNumShapes(); ++i)
    parts.push_back({old->getShape(i), old->getLocalTransform(i)});
  listOfObjects(archive, "shapes", parts, [&](Part& part) { partField(archive, tables, part); });
  if (!archive.reading())
    return;
  zor::ref_ptr<Compound> const made = new Compound;
  for (Part const& part : parts)
    checked(archive, "shapes", [&] { made->add(part.shape, part.transform); });
  shape = made.get();
}

void plane(Archive& archive, zor::ref_ptr<Shape>& shape) {
  auto const* const old = dynamic_cast<Plane const*>(shape.get());
  zor::Vec3 normal = old ? old->getNormal() : zor::Vec3(), point = old ? old->getPoint() : zor::Vec3();
  field(archive, "normal", normal);
  field(archive, "point", point);
  if (archive.reading())
    checked(archive, nullptr, [&] { shape = new Plane(normal, point); });
}

} // namespace

void StateAccess::convex(Archive& archive, Ref<Shape>& shape) {
  auto const* const old = dynamic_cast<Convex const*>(shape.get());
  bool ofPoints = old && !old->m_points.empty();
  zor::Vec3Vector vertices = !old ? zor::Vec3Vector() : ofPoints ? old->m_points : old->getVertices();
  zor::UInt32Vector indices = old && !ofPoints ? old->getIndices() : zor::UInt32Vector();
  listField(archive, "vertices", vertices);
  listField(archive, "indices", indices); // none: the hull of the vertices
  if (archive.reading())
    checked(archive, nullptr,
            [&] { shape = indices.empty() ? new Convex(vertices) : new Convex(vertices, indices); });
}

void StateAccess::shape(Archive& archive, ObjectTables& tables, Ref<Shape>& shape) {
  auto type = shape ? shape->getType() : Shape::BOX;
  choice<Shape::Type>(archive, "type", type,
                      {{"Box", Shape::BOX},
                       {"Sphere", Shape::SPHERE},
                       {"Capsule", Shape::CAPSULE},
                       {"Cylinder", Shape::CYLINDER},
                       {"Cone", Shape::CONE},
                       {"Plane", Shape::PLANE},
                       {"Convex", Shape::CONVEX},
                       {"Trimesh", Shape::TRIMESH},
                       {"HeightField", Shape::HEIGHT_FIELD},
                       {"Compound", Shape::COMPOUND}});
  std::string name = shape ? shape->getName() : "";
  field(archive, "name", name);
  zorRender::RenderData* drawn = shape ? shape->getRenderData() : nullptr;
  reference(archive, "renderData", tables.renderData, drawn, true);
  switch (type) {
  case Shape::BOX:
    box(archive, shape);
    break;
  case Shape::SPHERE:
    sphere(archive, shape);
    break;
  case Shape::CAPSULE:
    roundShape<Capsule>(archive, shape);
    break;
  case Shape::CYLINDER:
    roundShape<Cylinder>(archive, shape);
    break;
  case Shape::CONE:
    roundShape<Cone>(archive, shape);
    break;
  case Shape::PLANE:
    plane(archive, shape);
    break;
  case Shape::CONVEX:
    convex(archive, shape);
    break;
  case Shape::TRIMESH:
    trimesh(archive, shape);
    break;
  case Shape::HEIGHT_FIELD:
    heightField(archive, shape);
    break;
  case Shape::COMPOUND:
    compound(archive, tables, shape);
    break;
  }
  if (!archive.reading())
    return;
  shape->setName(name);
  checked(archive, "renderData", [&] { shape->setRenderData(drawn); });
}

} // namespace zorStream
