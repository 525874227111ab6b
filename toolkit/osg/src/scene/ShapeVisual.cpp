#include "ShapeVisual.h"

#include <algorithm>

#include <osg/Geode>
#include <osg/MatrixTransform>

#include <zorCollide/Compound.h>
#include <zorOSG/RenderState.h>
#include <zorRender/RenderMaterial.h>

#include "Convert.h"
#include "RenderTemplates.h"
#include "ShapeMesh.h"
#include "VisualState.h"

namespace zorOSG {

namespace {

/** Keeps an infinite plane out of the bounds of the scene, which cameras and shadows are fitted to. */
class NoBound : public osg::Node::ComputeBoundingSphereCallback {
public:
  osg::BoundingSphere computeBound(osg::Node const&) const override { return {}; }
};

bool hasRenderData(zorCollide::Shape const& shape) {
  if (shape.getRenderData())
    return true;
  if (shape.getType() != zorCollide::Shape::COMPOUND)
    return false;
  auto const& compound = static_cast<zorCollide::Compound const&>(shape);
  for (zor::UInt i = 0; i < compound.getNumShapes(); ++i)
    if (hasRenderData(*compound.getShape(i)))
      return true;
  return false;
}

osg::Vec4 asVec4(zorRender::Color const& color) {
  return toOsg(color.asVec4f());
}

osg::ref_ptr<osg::Geode> geodeOf(osg::Geometry* mesh) {
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  geode->addDrawable(mesh);
  return geode;
}

osg::ref_ptr<osg::Node> planeNode(osg::Geometry* mesh) {
  osg::ref_ptr<osg::Geode> geode = geodeOf(mesh);
  geode->setComputeBoundingSphereCallback(new NoBound);
  geode->setCullingActive(
      false); // without a bound it would be culled; its drawable still is when out of view
  geode->setNodeMask(geode->getNodeMask() & ~castsShadowsMask);
  return geode;
}

osg::ref_ptr<osg::Node> shapeNode(zorCollide::Shape const& shape, ShapeVisualOptions const& options,
                                  bool useRenderData);

/** A node placed by a transform; none is put in between where it would change nothing. */
osg::ref_ptr<osg::Node> placed(osg::Node* node, zor::AffineMatrix4x4 const& transform) {
  if (transform.isIdentity())
    return node;
  osg::ref_ptr<osg::MatrixTransform> parent = new osg::MatrixTransform(toOsg(transform));
  parent->setDataVariance(osg::Object::STATIC);
  parent->addChild(node);
  return parent;
}

osg::ref_ptr<osg::Node> compoundNode(zorCollide::Compound const& compound, ShapeVisualOptions const& options,
                                     bool useRenderData) {
  osg::ref_ptr<osg::Group> group = new osg::Group;
  for (zor::UInt i = 0; i < compound.getNumShapes(); ++i)
    group->addChild(
        placed(shapeNode(*compound.getShape(i), options, useRenderData), compound.getLocalTransform(i)));
  return group;
}

osg::ref_ptr<osg::Node> renderDataNode(zorCollide::Shape const& shape, ShapeVisualOptions const& options) {
  zorRender::RenderData const& data = *shape.getRenderData();
  if (!data.getShouldRender())
    return new osg::Group;
  osg::ref_ptr<osg::Node> node;
  if (data.getVertices().empty())
    node = shapeNode(shape, options, false);
  else
    node = options.templates ? options.templates->mesh(data) : renderDataMesh(data);
  if (!data.getRenderMaterial())
    return node;
  if (osg::Geometry* const mesh = node->asGeometry()) // other visuals draw it as well
    node = geodeOf(mesh);
  if (options.templates && !node->getStateSet())
    options.templates->applyMaterial(*node, *data.getRenderMaterial());
  else
    applyRenderMaterial(*node, *data.getRenderMaterial());
  return node;
}

osg::ref_ptr<osg::Node> shapeNode(zorCollide::Shape const& shape, ShapeVisualOptions const& options,
                                  bool useRenderData) {
  if (useRenderData && shape.getRenderData())
    return renderDataNode(shape, options);
  if (shape.getType() == zorCollide::Shape::COMPOUND)
    return compoundNode(static_cast<zorCollide::Compound const&>(shape), options, useRenderData);
  osg::ref_ptr<osg::Geometry> const mesh = options.templates
                                               ? options.templates->mesh(shape, options.detailRatio)
                                               : shapeMesh(shape, options.detailRatio);
  return shape.getType() == zorCollide::Shape::PLANE ? planeNode(mesh) : osg::ref_ptr<osg::Node>(mesh);
}

osg::ref_ptr<osg::Node> visualOf(zorCollide::Geometry const& geometry, ShapeVisualOptions const& options,
                                 bool useRenderData) {
  bool const isPlaced = geometry.hasShapeTransforms();
  if (geometry.getNumShapes() == 1) {
    osg::ref_ptr<osg::Node> const node = shapeNode(*geometry.getShape(0), options, useRenderData);
    return isPlaced ? placed(node, geometry.getShapeTransform(0)) : node;
  }
  osg::ref_ptr<osg::Group> group = new osg::Group;
  for (zor::UInt i = 0; i < geometry.getNumShapes(); ++i)
    group->addChild(
        placed(shapeNode(*geometry.getShape(i), options, useRenderData), geometry.getShapeTransform(i)));
  return group;
}

} // namespace

void applyRenderMaterial(osg::Node& node, zorRender::RenderMaterial const& source) {
  constexpr osg::Material::Face faces = osg::Material::FRONT_AND_BACK;
  osg::Material& material = ownMaterial(node, false);
  if (source.hasDiffuseColor()) {
    material.setDiffuse(faces, asVec4(source.getDiffuseColor()));
    material.setAmbient(faces, asVec4(source.getDiffuseColor()));
  }
  if (source.hasAmbientColor())
    material.setAmbient(faces, asVec4(source.getAmbientColor()));
  if (source.hasSpecularColor()) {
    material.setSpecular(faces, asVec4(source.getSpecularColor()));
    material.setShininess(faces, source.getShininess());
  }
  if (source.hasEmissiveColor())
    material.setEmission(faces, asVec4(source.getEmissiveColor()));
  float const alpha = material.getDiffuse(faces).a() * (1.0f - source.getTransparency());
  material.setAlpha(faces, alpha);
  setTransparency(*node.getStateSet(), alpha, false);
  if (!source.getDiffuseTexture().empty())
    setTexture(&node, source.getDiffuseTexture(), true);
}

osg::ref_ptr<osg::Node> makeShapeVisual(zorCollide::Geometry const& geometry,
                                        ShapeVisualOptions const& options) {
  return visualOf(geometry, options, false);
}

osg::ref_ptr<osg::Node> makeRenderDataVisual(zorCollide::Geometry const& geometry,
                                             ShapeVisualOptions const& options) {
  zorCollide::ShapeRefVector const& shapes = geometry.getShapes();
  bool const any =
      std::any_of(shapes.begin(), shapes.end(), [](auto const& shape) { return hasRenderData(*shape); });
  return any ? visualOf(geometry, options, true) : nullptr;
}

} // namespace zorOSG
