#include <zorOSG/RigidBodyRenderCache.h>

#include "RenderTemplates.h"
#include "ShapeMesh.h"
#include "ShapeVisual.h"

namespace zorOSG {

namespace {

/** Shapes whose mesh takes as long to compare as it has vertices. */
bool isMeshShape(zorCollide::Shape const& shape) {
  zorCollide::Shape::Type const type = shape.getType();
  return type == zorCollide::Shape::CONVEX || type == zorCollide::Shape::TRIMESH ||
         type == zorCollide::Shape::HEIGHT_FIELD;
}

} // namespace

template <class Source, class Make>
osg::ref_ptr<osg::Geometry> RigidBodyRenderCache::Templates::meshOf(MeshesOf<Source>& meshes,
                                                                    Source const& source, float detailRatio,
                                                                    Make make) {
  Made<Source>& made = meshes[&source];
  if (made.source.get() != &source || made.revision != source.getRevision() ||
      made.detailRatio != detailRatio) {
    made = {zor::observer_ptr<Source const>(&source), source.getRevision(), detailRatio, make()};
    m_held.insert(made.mesh);
  }
  return made.mesh;
}

osg::ref_ptr<osg::Geometry> RigidBodyRenderCache::Templates::mesh(zorCollide::Shape const& shape,
                                                                  float detailRatio) {
  if (isMeshShape(shape))
    return meshOf(m_ofShapes, shape, detailRatio, [&] { return shapeMesh(shape, detailRatio); });
  osg::ref_ptr<osg::Geometry> const mesh = shapeMesh(shape, detailRatio);
  m_held.insert(mesh);
  return mesh;
}

osg::ref_ptr<osg::Geometry> RigidBodyRenderCache::Templates::mesh(zorRender::RenderData const& data) {
  return meshOf(m_ofRenderData, data, 0.0f, [&] { return renderDataMesh(data); });
}

RigidBodyRenderCache::Templates::MaterialKey
RigidBodyRenderCache::Templates::keyOf(zorRender::RenderMaterial const& material) {
  MaterialKey key;
  auto at = std::get<0>(key).begin();
  for (zorRender::Color const& color : {material.getDiffuseColor(), material.getAmbientColor(),
                                        material.getSpecularColor(), material.getEmissiveColor()})
    for (unsigned int i = 0; i < 4; ++i)
      *at++ = color.asVec4f()[i];
  *at++ = material.getShininess();
  *at++ = material.getTransparency();
  *at++ = static_cast<float>(material.hasDiffuseColor() + 2 * material.hasAmbientColor() +
                             4 * material.hasSpecularColor() + 8 * material.hasEmissiveColor());
  std::get<1>(key) = material.getDiffuseTexture();
  return key;
}

void RigidBodyRenderCache::Templates::applyMaterial(osg::Node& node,
                                                    zorRender::RenderMaterial const& material) {
  osg::ref_ptr<osg::StateSet>& state = m_states[keyOf(material)];
  if (!state) {
    applyRenderMaterial(node, material);
    state = node.getStateSet();
  }
  // Attributes are shared; whoever changes one copies it before.
  node.setStateSet(new osg::StateSet(*state, osg::CopyOp::SHALLOW_COPY));
}

void RigidBodyRenderCache::Templates::clear() {
  *this = Templates();
}

RigidBodyRenderCache::RigidBodyRenderCache() : m_templates(std::make_unique<Templates>()) {}
RigidBodyRenderCache::~RigidBodyRenderCache() = default;

size_t RigidBodyRenderCache::size() const {
  return m_templates->size();
}
void RigidBodyRenderCache::clear() {
  m_templates->clear();
}

} // namespace zorOSG
