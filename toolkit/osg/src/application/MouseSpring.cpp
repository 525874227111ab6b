#include "MouseSpring.h"

#include <zorOSG/ExampleApplication.h>

#include <osg/Camera>
#include <osg/Geode>
#include <osg/Shape>
#include <osg/ShapeDrawable>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zorOSG {

namespace {

constexpr double BALL = 0.011;    // radius in heights of the view
constexpr double COIL = 0.8;      // radii of coil and wire in radii of the balls
constexpr double WIRE = 0.24;     //
constexpr int TURNS = 9;          //
constexpr int RINGS = TURNS * 20; // along the wire
constexpr int SIDES = 6;          // around it
constexpr double LEAD = 0.12;     // part of the length over which the coil opens at each end
constexpr double SHORTEST = 2.5;  // distance in radii of the balls below which there is no coil

/** \return height of the camera's view at a point. */
double viewHeight(osg::Camera const& camera, osg::Vec3d const& point) {
  osg::Matrixd const& projection = camera.getProjectionMatrix();
  double const depth = -(point * camera.getViewMatrix()).z();
  bool const parallel = projection(3, 3) != 0;
  return 2 / std::abs(projection(1, 1)) * (parallel ? 1 : std::max(depth, 0.0));
}

osg::ref_ptr<osg::Geometry> makeCoil() {
  osg::ref_ptr<osg::Geometry> coil = new osg::Geometry;
  coil->setDataVariance(osg::Object::DYNAMIC);
  coil->setUseDisplayList(false);
  coil->setUseVertexBufferObjects(true);
  coil->setVertexArray(new osg::Vec3Array((RINGS + 1) * SIDES));
  coil->setNormalArray(new osg::Vec3Array((RINGS + 1) * SIDES), osg::Array::BIND_PER_VERTEX);
  osg::ref_ptr<osg::DrawElementsUShort> faces = new osg::DrawElementsUShort(GL_TRIANGLES);
  for (int ring = 0; ring < RINGS; ++ring)
    for (int side = 0; side < SIDES; ++side) {
      int const a = ring * SIDES + side, b = ring * SIDES + (side + 1) % SIDES;
      for (int const corner : {a, b, a + SIDES, b, b + SIDES, a + SIDES})
        faces->push_back(static_cast<GLushort>(corner));
    }
  coil->addPrimitiveSet(faces);
  return coil;
}

osg::ref_ptr<osg::Geode> makeBall() {
  osg::ref_ptr<osg::TessellationHints> const hints = new osg::TessellationHints;
  hints->setDetailRatio(0.7f);
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  geode->addDrawable(new osg::ShapeDrawable(new osg::Sphere(osg::Vec3(), 1), hints));
  return geode;
}

/** The spring's line from end to end, and two directions across it that don't jump as it turns. */
struct Axes {
  explicit Axes(osg::Vec3d const& axis) : along(axis) {
    osg::Vec3d const reference =
        std::abs(axis.z()) < 0.9 * axis.length() ? osg::Vec3d(0, 0, 1) : osg::Vec3d(1, 0, 0);
    first = axis ^ reference;
    first.normalize();
    second = axis ^ first;
    second.normalize();
  }
  osg::Vec3d along, first, second;
};

/** The middle of the wire; the coil opens and closes smoothly, so that it begins and ends in the balls. */
osg::Vec3d wireAt(Axes const& axes, double t, double radius) {
  double const angle = 2 * std::numbers::pi * TURNS * t;
  double const open = std::clamp(std::min(t, 1 - t) / LEAD, 0.0, 1.0);
  double const across = radius * open * open * (3 - 2 * open);
  return axes.along * t + axes.first * (across * std::cos(angle)) + axes.second * (across * std::sin(angle));
}

} // namespace

MouseSpring::MouseSpring(osg::Group& scene, double scale)
    : m_scene(&scene), m_root(new osg::MatrixTransform), m_bodyBall(new osg::MatrixTransform),
      m_mouseBall(new osg::MatrixTransform), m_coil(makeCoil()), m_material(new osg::Material),
      m_scale(scale) {
  m_root->setName("MouseSpring");
  osg::ref_ptr<osg::Geode> const ball = makeBall();
  for (auto* const end : {m_bodyBall.get(), m_mouseBall.get()}) {
    end->addChild(ball);
    m_root->addChild(end);
  }
  osg::ref_ptr<osg::Geode> const coil = new osg::Geode;
  coil->addDrawable(m_coil);
  m_root->addChild(coil);
  m_material->setDataVariance(osg::Object::DYNAMIC);
  m_material->setSpecular(osg::Material::FRONT_AND_BACK, osg::Vec4(0.4f, 0.4f, 0.4f, 1));
  m_material->setShininess(osg::Material::FRONT_AND_BACK, 40);
  osg::StateSet* const state = m_root->getOrCreateStateSet();
  state->setAttributeAndModes(m_material);
  state->setMode(GL_NORMALIZE, osg::StateAttribute::ON); // the balls are scaled
  hide();
  scene.addChild(m_root);
}

MouseSpring::~MouseSpring() {
  osg::ref_ptr<osg::Group> scene;
  if (m_scene.lock(scene))
    scene->removeChild(m_root);
}

void MouseSpring::hide() {
  m_root->setNodeMask(0);
}

void MouseSpring::show(osg::Vec3d const& from, osg::Vec3d const& to, osg::Camera const& camera, double load) {
  double const ball = BALL * m_scale * viewHeight(camera, from);
  if (!(ball > 0)) { // behind the camera
    hide();
    return;
  }
  m_root->setNodeMask(ExampleApplication::DEBUG_RENDER_MASK);
  m_root->setMatrix(osg::Matrixd::translate(from));
  osg::Matrixd const size = osg::Matrixd::scale(ball, ball, ball);
  m_bodyBall->setMatrix(size);
  m_mouseBall->setMatrix(size * osg::Matrixd::translate(to - from));
  shapeCoil(to - from, ball);
  setColor(load);
}

void MouseSpring::shapeCoil(osg::Vec3d const& axis, double ball) {
  bool const shown = axis.length() > SHORTEST * ball;
  m_coil->getParent(0)->setNodeMask(shown ? ~0u : 0u);
  if (!shown)
    return;
  Axes const axes(axis);
  auto& vertices = static_cast<osg::Vec3Array&>(*m_coil->getVertexArray());
  auto& normals = static_cast<osg::Vec3Array&>(*m_coil->getNormalArray());
  double const step = 0.1 / RINGS;
  for (int ring = 0; ring <= RINGS; ++ring) {
    double const t = static_cast<double>(ring) / RINGS;
    osg::Vec3d const middle = wireAt(axes, t, COIL * ball);
    osg::Vec3d forward = wireAt(axes, t + step, COIL * ball) - wireAt(axes, t - step, COIL * ball);
    forward.normalize();
    osg::Vec3d out = forward ^ axes.along;
    if (out.normalize() < 1e-9 * axis.length()) // where the wire runs along the axis
      out = axes.first;
    osg::Vec3d const side = forward ^ out;
    for (int i = 0; i < SIDES; ++i) {
      double const angle = 2 * std::numbers::pi * i / SIDES;
      osg::Vec3d const normal = out * std::cos(angle) + side * std::sin(angle);
      auto const index = static_cast<std::size_t>(ring * SIDES + i);
      normals[index] = normal;
      vertices[index] = middle + normal * (WIRE * ball);
    }
  }
  vertices.dirty();
  normals.dirty();
  m_coil->dirtyBound();
}

void MouseSpring::setColor(double load) {
  static osg::Vec4 const calm(0.30f, 0.80f, 0.40f, 1), busy(0.98f, 0.78f, 0.20f, 1),
      full(0.92f, 0.20f, 0.14f, 1);
  float const at = static_cast<float>(std::clamp(load, 0.0, 1.0)) * 2;
  osg::Vec4 const color = at < 1 ? calm * (1 - at) + busy * at : busy * (2 - at) + full * (at - 1);
  m_material->setDiffuse(osg::Material::FRONT_AND_BACK, color);
  m_material->setAmbient(osg::Material::FRONT_AND_BACK, color);
}

} // namespace zorOSG
