#include <zorOSG/CreateVisual.h>

#include <algorithm>
#include <atomic>
#include <stdexcept>
#include <string>

#include <osg/NodeVisitor>

#include <zor/observer_ptr.h>
#include <zorCollide/GeometryPrefetch.h>
#include <zorOSG/CreateAxes.h>
#include <zorOSG/RenderState.h>

#include "FollowCallback.h"
#include "RenderTemplates.h"
#include "VisualDetail.h"
#include "VisualState.h"

namespace zorOSG {

namespace {

constexpr float sensorAlpha = 0.35f;

std::atomic<float> detailFactor{1.0f};

struct VisualOptions {
  float detailRatio;
  bool axes;
  bool defaultLook; // false where the surroundings say how things look
  RigidBodyRenderCache::Templates* templates = nullptr;
};

VisualOptions checked(float detailRatio, bool axes, osg::Group const* root) {
  if (!(detailRatio >= 0.0f)) // NaN as well
    throw std::invalid_argument("createVisual: detailRatio must not be negative, but is " +
                                std::to_string(detailRatio));
  return {std::clamp(detailRatio * detailFactor, 0.05f, 8.0f), axes, root && !hasLook(*root)};
}

/** Axes that stick out of what they belong to; bodies of any size show theirs. */
osg::ref_ptr<osg::Node> axesFor(GeometryNode const& node) {
  float const radius = node.getBound().valid() ? node.getBound().radius() : 0.0f;
  return createAxes(radius > 0.0f ? 1.2f * radius : 1.0f);
}

bool isGround(zorCollide::Geometry const& geometry) {
  if (geometry.getNumShapes() == 0)
    return false;
  zorCollide::Shape::Type const type = geometry.getShape(0)->getType();
  return type == zorCollide::Shape::PLANE || type == zorCollide::Shape::HEIGHT_FIELD;
}

osg::ref_ptr<GeometryNode> makeVisual(zorCollide::Geometry const& geometry, VisualOptions const& options) {
  // The node listens to the geometry and reads it, no more.
  osg::ref_ptr<GeometryNode> node = new GeometryNode(const_cast<zorCollide::Geometry*>(&geometry));
  node->setName(geometry.getName());
  node->buildVisual(options.detailRatio, options.templates);
  if (std::as_const(*node).getRenderChild(GeometryNode::RENDER_DATA))
    node->selectRenderChild(GeometryNode::RENDER_DATA);
  if (options.defaultLook)
    node->setDefaultLook(isGround(geometry) ? GeometryNode::DefaultLook::GROUND
                                            : GeometryNode::DefaultLook::THING);
  if (options.axes)
    node->addChild(axesFor(*node));
  if (geometry.isSensor())
    setAlpha(node.get(), sensorAlpha); // what lies inside stays visible
  return node;
}

/** Only what is whole comes into the scene: a failure leaves nothing behind. */
template <class NodeType>
NodeType* addToScene(osg::ref_ptr<NodeType> const& node, osg::Group& root) {
  root.addChild(node);
  return node.get();
}

osg::ref_ptr<osg::Group> makeGroup(zorCollide::GeometryRefVector const& geometries, std::string const& name,
                                   VisualOptions const& options) {
  osg::ref_ptr<osg::Group> group = new osg::Group;
  group->setName(name);
  zorCollide::GeometryPrefetch const prefetch(geometries);
  for (size_t i = 0; i < geometries.size(); ++i) {
    prefetch.before(i);
    group->addChild(makeVisual(*geometries[i], options));
  }
  return group;
}

osg::ref_ptr<osg::Group> makeGroup(zorSDK::Assembly const& assembly, VisualOptions const& options) {
  osg::ref_ptr<osg::Group> group = makeGroup(assembly.getGeometries(), assembly.getName(), options);
  for (auto const& body : assembly.getRigidBodies())
    group->addChild(makeGroup(body->getGeometries(), body->getName(), options));
  for (auto const& nested : assembly.getAssemblies())
    group->addChild(makeGroup(*nested, options));
  return group;
}

osg::ref_ptr<osg::Geode> makeParticleVisual(zor::ParticleSystem& particles,
                                            ParticleSystemDrawable::ParticleRenderingMode renderMode,
                                            ParticleSystemDrawable::ParticleShaderMode shaderMode) {
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  geode->setName(particles.getName());
  geode->addDrawable(new ParticleSystemDrawable(&particles, renderMode, shaderMode));
  return geode;
}

osg::ref_ptr<osg::Group> makeEmitterVisual(zor::EmitterBase const& emitter, VisualOptions const& options) {
  osg::ref_ptr<osg::Group> group = new osg::Group;
  group->setName(emitter.getName());
  osg::ref_ptr<GeometryNode> const volume = makeVisual(*emitter.getGeometry(), options);
  setAlpha(volume.get(), sensorAlpha);
  group->addChild(volume);
  return group;
}

/** Draws the bodies that an emitter has emitted since the last frame. */
class EmittedBodies : public osg::NodeCallback {
public:
  explicit EmittedBodies(zor::RigidBodyEmitter& emitter) : m_emitter(&emitter) {}

  void operator()(osg::Node* node, osg::NodeVisitor* visitor) override {
    zor::RigidBodyEmitter const* const emitter = m_emitter.get();
    osg::Group* const group = node->asGroup();
    if (emitter && group)
      for (; m_drawn < emitter->getBodies().size(); ++m_drawn)
        draw(*emitter->getBodies()[m_drawn], *group);
    traverse(node, visitor);
  }

private:
  // Without a group for each body, which would stay when the body goes.
  static void draw(zor::RigidBody const& body, osg::Group& group) {
    VisualOptions const options = checked(1.0f, false, &group);
    for (auto const& geometry : body.getGeometries())
      group.addChild(makeVisual(*geometry, options));
  }

  zor::observer_ptr<zor::RigidBodyEmitter> m_emitter;
  size_t m_drawn = 0;
};

} // namespace

void setVisualDetail(float factor) {
  detailFactor = factor;
}

float getVisualDetail() {
  return detailFactor;
}

zorOSG::GeometryNode* createVisual(zorCollide::Geometry const* geometry, osg::Group* root, float detailRatio,
                                   bool createAxes, bool evenIfSensor) {
  VisualOptions const options = checked(detailRatio, createAxes, root);
  if (!geometry || !root || (geometry->isSensor() && !evenIfSensor))
    return nullptr;
  return addToScene(makeVisual(*geometry, options), *root);
}

osg::Geode* createVisual(zor::ParticleSystem* particleSystem, osg::Group* root,
                         ParticleSystemDrawable::ParticleRenderingMode renderMode,
                         ParticleSystemDrawable::ParticleShaderMode shaderMode) {
  if (!particleSystem || !root)
    return nullptr;
  return addToScene(makeParticleVisual(*particleSystem, renderMode, shaderMode), *root);
}

osg::Group* createVisual(zor::RigidBodyEmitter* emitter, osg::Group* root) {
  if (!emitter || !root)
    return nullptr;
  osg::ref_ptr<osg::Group> const group = makeEmitterVisual(*emitter, checked(1.0f, false, root));
  group->setUpdateCallback(new EmittedBodies(*emitter));
  return addToScene(group, *root);
}

osg::Group* createVisual(zor::Emitter* emitter, osg::Group* root) {
  return emitter && root ? addToScene(makeEmitterVisual(*emitter, checked(1.0f, false, root)), *root)
                         : nullptr;
}

zorOSG::TerrainVoxelRenderer* createVisual(zorSDK::TerrainInstance* terrainInstance, osg::Group* root) {
  if (!terrainInstance || !root)
    return nullptr;
  throw std::runtime_error("createVisual: terrains have no renderer in this version");
}

osg::MatrixTransform* createVisual(zor::ObserverFrame* frame, osg::Group* root, float scale) {
  osg::ref_ptr<osg::MatrixTransform> const axes = createAxes(scale);
  if (!frame || !root)
    return nullptr;
  axes->setName(frame->getName());
  letFollow(*axes, [observed = zor::observer_ptr<zor::ObserverFrame>(frame)](zor::AffineMatrix4x4& place) {
    zor::ObserverFrame const* const alive = observed.get();
    if (alive)
      place = alive->getTransform();
    return alive != nullptr;
  });
  root->addChild(axes);
  return axes.get();
}

osg::Group* createVisual(zor::RigidBody* body, osg::Group* root, float detailRatio, bool createAxes) {
  VisualOptions const options = checked(detailRatio, createAxes, root);
  if (!body || !root)
    return nullptr;
  return addToScene(makeGroup(body->getGeometries(), body->getName(), options), *root);
}

osg::Group* createVisual(zorSDK::Assembly* assembly, osg::Group* root, float detailRatio, bool createAxes) {
  VisualOptions const options = checked(detailRatio, createAxes, root);
  return assembly && root ? addToScene(makeGroup(*assembly, options), *root) : nullptr;
}

osg::Group* createVisual(zorSDK::Simulation* simulation, osg::Group* root, float detailRatio,
                         bool createAxes) {
  VisualOptions const options = checked(detailRatio, createAxes, root);
  if (!simulation || !root)
    return nullptr;
  osg::ref_ptr<osg::Group> const group =
      makeGroup(simulation->getGeometries(), simulation->getName(), options);
  for (auto const& particles : simulation->getParticleSystems())
    group->addChild(makeParticleVisual(*particles, ParticleSystemDrawable::QUAD_SPRITES,
                                       ParticleSystemDrawable::ROTATION_SPRITES));
  return addToScene(group, *root);
}

zorOSG::DeformableRenderer* createVisual(zorModel::DeformableObject const* deformable, osg::Group* root,
                                         zorRender::Color const& /*color*/, bool /*colorSurfaceStress*/,
                                         zorRender::Color const& /*maxStressColor*/,
                                         zor::Real /*maxStressLimit*/) {
  if (!deformable || !root)
    return nullptr;
  throw std::runtime_error("createVisual: deformable objects have no renderer in this version");
}

osg::Group* createVisualTemplateCaching(zorSDK::Assembly* assembly, osg::Group* root,
                                        zorOSG::RigidBodyRenderCache* renderCache, float detailRatio,
                                        bool createAxes) {
  RigidBodyRenderCache::Templates ofThisCall;
  VisualOptions options = checked(detailRatio, createAxes, root);
  options.templates = renderCache ? &renderCache->templates() : &ofThisCall;
  return assembly && root ? addToScene(makeGroup(*assembly, options), *root) : nullptr;
}

std::tuple<osg::Group*, std::vector<size_t>>
createVisualWithGeometryConnection(zor::RigidBody* rb, osg::Group* root, float detailRatio, bool createAxes) {
  osg::Group* const group = createVisual(rb, root, detailRatio, createAxes);
  std::vector<size_t> indices(group ? group->getNumChildren() : 0);
  for (size_t i = 0; i < indices.size(); ++i)
    indices[i] = i; // every geometry has a child, in the same order
  return {group, indices};
}

} // namespace zorOSG
