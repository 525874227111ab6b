#include "bench_visuals_scene.h"

#include <zorCollide/Box.h>
#include <zorCollide/Capsule.h>
#include <zorCollide/Cone.h>
#include <zorCollide/Cylinder.h>
#include <zorCollide/Sphere.h>
#include <zorOSG/CreateVisual.h>
#include <zorOSG/OffscreenContext.h>

#include <osg/LightSource>
#include <osg/Material>

#include <array>
#include <cmath>

namespace scene {

namespace {

constexpr double SPACING = 1.5;

zorCollide::Shape* makeShape(int body) {
  switch (body % KINDS) {
  case 0:
    return new zorCollide::Box(0.4, 0.3, 0.5);
  case 1:
    return new zorCollide::Sphere(0.5);
  case 2:
    return new zorCollide::Cylinder(0.4, 1.0);
  case 3:
    return new zorCollide::Capsule(0.3, 0.6);
  default:
    return new zorCollide::Cone(0.5, 1.0);
  }
}

osg::ref_ptr<osg::StateSet> makeState(zor::Vec4f const& color) {
  constexpr osg::Material::Face faces = osg::Material::FRONT_AND_BACK;
  osg::Vec4 const diffuse(color.x(), color.y(), color.z(), color.w());
  osg::ref_ptr<osg::Material> const material = new osg::Material;
  material->setDiffuse(faces, diffuse);
  material->setAmbient(faces, diffuse);
  material->setSpecular(faces, osg::Vec4(0.25f, 0.25f, 0.25f, 1.0f));
  material->setShininess(faces, 32.0f);
  osg::ref_ptr<osg::StateSet> state = new osg::StateSet;
  state->setAttributeAndModes(material);
  return state;
}

} // namespace

zor::Vec4f colorOf(int body) {
  std::array<zor::Vec4f, KINDS> const colors = {{{0.80f, 0.25f, 0.20f, 1.0f},
                                                 {0.25f, 0.55f, 0.80f, 1.0f},
                                                 {0.95f, 0.75f, 0.25f, 1.0f},
                                                 {0.40f, 0.70f, 0.35f, 1.0f},
                                                 {0.60f, 0.45f, 0.75f, 1.0f}}};
  return colors[static_cast<size_t>(body % KINDS)];
}

Bodies::Bodies(int count)
    : m_simulation(new zorSDK::Simulation), m_columns(static_cast<int>(std::ceil(std::sqrt(count)))) {
  for (int i = 0; i < count; ++i) {
    m_geometries.emplace_back(new zorCollide::Geometry(makeShape(i)));
    m_bodies.emplace_back(new zor::RigidBody(m_geometries.back().get()));
    m_bodies.back()->setPosition(zor::Vec3(SPACING * (i % m_columns - 0.5 * m_columns),
                                           SPACING * (i / m_columns - 0.5 * m_columns), 0));
    m_simulation->add(m_bodies.back().get());
  }
}

void Bodies::move(int frame) {
  for (size_t i = 0; i < m_bodies.size(); ++i) {
    zor::Vec3 place = m_bodies[i]->getPosition();
    place.z() = 0.3 * std::sin(0.1 * frame + static_cast<double>(i % 17));
    m_bodies[i]->setPosition(place);
  }
}

Meshes::Meshes() : m_visuals(new osg::Group) {
  Bodies const bodies(KINDS);
  for (auto const& geometry : bodies.geometries()) {
    zorOSG::GeometryNode* const node = zorOSG::createVisual(geometry.get(), m_visuals.get());
    node->setAutoRemove(false);
    m_meshes.push_back(node->getOnlyMesh());
  }
}

HandWritten::HandWritten(Bodies& bodies, Meshes const& meshes, bool colored, bool grouped)
    : m_bodies(bodies) {
  std::array<osg::ref_ptr<osg::StateSet>, KINDS> states;
  for (int kind = 0; colored && kind < KINDS; ++kind)
    states[static_cast<size_t>(kind)] = makeState(colorOf(kind));
  auto const count = bodies.geometries().size();
  m_transforms.reserve(count);
  m_byGeometry.reserve(count);
  auto const add = [&](zorCollide::Geometry const& geometry, osg::Group& group) {
    size_t const i = m_transforms.size();
    osg::ref_ptr<osg::MatrixTransform> const transform =
        new osg::MatrixTransform(osg::Matrixd(geometry.getTransform().ptr()));
    transform->addChild(&meshes.of(static_cast<int>(i)));
    if (colored)
      transform->setStateSet(states[i % KINDS]);
    group.addChild(transform);
    m_transforms.push_back(transform);
    m_byGeometry.emplace(&geometry, transform);
  };
  if (grouped)
    for (auto const& body : bodies.simulation().getRigidBodies()) {
      osg::ref_ptr<osg::Group> const group = new osg::Group;
      group->setName(body->getName());
      for (auto const& geometry : body->getGeometries())
        add(*geometry, *group);
      m_root->addChild(group);
    }
  else
    for (auto const& geometry : bodies.geometries())
      add(*geometry, *m_root);
}

void HandWritten::follow() {
  for (size_t i = 0; i < m_transforms.size(); ++i)
    m_transforms[i]->setMatrix(osg::Matrixd(m_bodies.geometries()[i]->getTransform().ptr()));
}

osg::MatrixTransform* HandWritten::find(zorCollide::Geometry const* geometry, osg::Group const& top) const {
  auto const place = m_byGeometry.find(geometry);
  if (place == m_byGeometry.end())
    return nullptr;
  osg::Node const* node = place->second;
  while (node != &top && node->getNumParents() > 0)
    node = node->getParent(0);
  return node == &top ? place->second : nullptr;
}

osg::ref_ptr<osg::Group> litLike(zorOSG::SceneDecorator& decorator, osg::Group& graph) {
  osg::ref_ptr<osg::Group> const top = new osg::Group;
  top->setStateSet(new osg::StateSet(*decorator.getDecoratorStateSet(), osg::CopyOp::SHALLOW_COPY));
  for (auto const light :
       {zorOSG::SceneDecorator::LIGHT0, zorOSG::SceneDecorator::LIGHT1, zorOSG::SceneDecorator::LIGHT2}) {
    osg::LightSource& original = *decorator.getOSGLight(light);
    osg::ref_ptr<osg::LightSource> const source = new osg::LightSource;
    source->setLight(new osg::Light(*static_cast<osg::Light*>(original.getLight())));
    source->setCullingActive(false);
    top->addChild(source);
  }
  top->addChild(&graph);
  return top;
}

osg::ref_ptr<osgViewer::Viewer> makeViewer(osg::Node& top, Bodies const& bodies) {
  osg::ref_ptr<osgViewer::Viewer> viewer = new osgViewer::Viewer;
  viewer->setThreadingModel(osgViewer::ViewerBase::SingleThreaded);
  viewer->setLightingMode(osg::View::NO_LIGHT);
  osg::Camera& camera = *viewer->getCamera();
  camera.setGraphicsContext(zorOSG::createOffscreenContext(WIDTH, HEIGHT));
  camera.setViewport(0, 0, WIDTH, HEIGHT);
  camera.setProjectionMatrixAsPerspective(45.0, static_cast<double>(WIDTH) / HEIGHT, 0.1, 1000.0);
  double const distance = 1.1 * SPACING * std::sqrt(bodies.geometries().size());
  camera.setViewMatrixAsLookAt(osg::Vec3d(0, -distance, 0.8 * distance), osg::Vec3d(), osg::Vec3d(0, 0, 1));
  viewer->setCameraManipulator(nullptr);
  viewer->setSceneData(&top);
  viewer->realize();
  return viewer;
}

} // namespace scene
