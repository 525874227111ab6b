#include <gtest/gtest.h>

#include <BulletCollision/btBulletCollisionCommon.h>

#include <zor/RigidBody.h>
#include <zorCollide/HeightField.h>
#include <zorCollide/Plane.h>
#include <zorCollide/Space.h>

#include "CollideSamples.h"

namespace {

using namespace zorCollide;
using samples::Vec3;
using zor::AffineMatrix4x4;
using zor::ref_ptr;

/** Bounds from the engine's own idea of the outermost points. */
void engineBounds(btConvexShape const& shape, AffineMatrix4x4 const& frame, Vec3& lower, Vec3& upper) {
  for (size_t axis = 0; axis < 3; ++axis) {
    btVector3 const direction(frame(0, axis), frame(1, axis), frame(2, axis));
    btVector3 const high = shape.localGetSupportingVertex(direction);
    btVector3 const low = shape.localGetSupportingVertex(-direction);
    upper[axis] = frame.transformPoint(Vec3(high.x(), high.y(), high.z()))[axis];
    lower[axis] = frame.transformPoint(Vec3(low.x(), low.y(), low.z()))[axis];
  }
}

TEST(CollideShapes, BoundsAreTheEngines) {
  btConeShape cone(0.7, 1.6);
  cone.setMargin(0.0);
  btVector3 const corners[] = {btVector3(0, 0, 0), btVector3(1.5, 0, 0), btVector3(0, 1.2, 0),
                               btVector3(0, 0, 0.9)};
  btConvexHullShape hull(corners[0], 4, sizeof(btVector3));
  hull.setMargin(0.0);
  btBoxShape const box(btVector3(0.5, 0.8, 1.2));
  btSphereShape const sphere(0.9);
  btCapsuleShape const capsule(0.4, 1.3);
  btCylinderShape cylinder(btVector3(0.6, 0.75, 0.6));
  cylinder.setMargin(0.0); // which rounds the edges
  btConvexShape const* const engine[] = {&box, &sphere, &capsule, &cylinder, &cone, &hull, &hull};
  auto const solids = samples::solids();
  for (size_t i = 0; i < std::size(engine); ++i) {
    Vec3 lower, upper, engineLower, engineUpper;
    solids[i].shape->getBounds(samples::tilted(), lower, upper);
    engineBounds(*engine[i], samples::tilted(), engineLower, engineUpper);
    EXPECT_TRUE(lower.equals(engineLower, 1e-9)) << solids[i].name << ": " << lower << " / " << engineLower;
    EXPECT_TRUE(upper.equals(engineUpper, 1e-9)) << solids[i].name << ": " << upper << " / " << engineUpper;
  }
}

TEST(CollideShapes, BoundsOfTheRest) {
  Vec3 lower, upper;
  auto const solids = samples::solids();
  solids.back().shape->getBounds(AffineMatrix4x4::translate(1, 0, 0), lower, upper);
  EXPECT_TRUE(lower.equals(Vec3(0.5, -0.5, -0.9), 1e-12)) << lower;
  EXPECT_TRUE(upper.equals(Vec3(1.5, 0.5, 1.3), 1e-12)) << upper;
  ref_ptr<HeightField> const field(new HeightField(2, 3, 2, 4, {0, 1, -2, 0.5, 0, 3}));
  field->getBounds(AffineMatrix4x4(), lower, upper);
  EXPECT_TRUE(lower.equals(Vec3(-1, -2, -2), 1e-12) && upper.equals(Vec3(1, 2, 3), 1e-12));
  ref_ptr<Plane> const plane(new Plane(Vec3(0, 0, 1), Vec3()));
  plane->getBounds(AffineMatrix4x4(), lower, upper);
  EXPECT_GE(upper.x(), 1e17);
}

struct Mass {
  double mass;
  Vec3 center;
  zor::Matrix3x3 inertia;
};

Mass massOf(Shape* shape, double density = 1000.0, AffineMatrix4x4 const& local = AffineMatrix4x4()) {
  ref_ptr<Geometry> const geometry(new Geometry(shape, local));
  geometry->setMaterial(new zor::Material("m", density));
  ref_ptr<zor::RigidBody> const body(new zor::RigidBody(geometry.get()));
  zor::MassProperties const& properties = *body->getMassProperties();
  return Mass{properties.getMass(), properties.getCmLocalTranslate(), properties.getInertiaTensor()};
}

void expectSame(Mass const& a, Mass const& b, double tolerance) {
  EXPECT_NEAR(a.mass, b.mass, tolerance * b.mass);
  EXPECT_TRUE(a.center.equals(b.center, tolerance)) << a.center << " / " << b.center;
  for (size_t row = 0; row < 3; ++row)
    for (size_t column = 0; column < 3; ++column)
      EXPECT_NEAR(a.inertia(row, column), b.inertia(row, column), tolerance * b.mass)
          << row << ", " << column;
}

TEST(CollideShapes, MassIsTheEnginesWhereTheEngineIsExact) {
  btBoxShape const box(btVector3(0.5, 0.8, 1.2));
  btSphereShape const sphere(0.9);
  btCylinderShape const cylinder(btVector3(0.6, 0.75, 0.6));
  btCollisionShape const* const engine[] = {&box, &sphere, nullptr, &cylinder};
  double const volumes[] = {8 * 0.5 * 0.8 * 1.2, 4.0 / 3.0 * M_PI * 0.729, 0, M_PI * 0.36 * 1.5};
  auto const solids = samples::solids();
  for (size_t i : {0u, 1u, 3u}) {
    SCOPED_TRACE(solids[i].name);
    Mass const mass = massOf(solids[i].shape.get(), 2500.0);
    btVector3 inertia;
    engine[i]->calculateLocalInertia(2500.0 * volumes[i], inertia);
    EXPECT_NEAR(solids[i].shape->getVolume(), volumes[i], 1e-12);
    EXPECT_NEAR(mass.mass, 2500.0 * volumes[i], 1e-9);
    for (int axis = 0; axis < 3; ++axis)
      EXPECT_NEAR(mass.inertia(size_t(axis), size_t(axis)), inertia[axis], 1e-9 * mass.mass);
  }
}

TEST(CollideShapes, MassOfRoundShapesIsThatOfFinePolyhedra) {
  // Rings of points on the surface, whose hull comes close to the shape.
  constexpr int around = 400;
  auto const ring = [](zor::Vec3Vector& points, double y, double radius) {
    for (int i = 0; i < around; ++i)
      points.push_back(
          Vec3(radius * std::cos(2 * M_PI * i / around), y, radius * std::sin(2 * M_PI * i / around)));
  };
  zor::Vec3Vector cone, capsule;
  ring(cone, -0.8, 0.7);
  cone.push_back(Vec3(0, 0.8, 0));
  for (int i = 0; i <= 60; ++i) {
    double const angle = 0.5 * M_PI * i / 60;
    ring(capsule, 0.65 + 0.4 * std::sin(angle), 0.4 * std::cos(angle));
    ring(capsule, -0.65 - 0.4 * std::sin(angle), 0.4 * std::cos(angle));
  }
  auto const solids = samples::solids();
  expectSame(massOf(solids[2].shape.get()), massOf(new Convex(capsule)), 1e-3);
  expectSame(massOf(solids[4].shape.get()), massOf(new Convex(cone)), 1e-3);
}

TEST(CollideShapes, MassMovesWithFramesAndAddsUp) {
  AffineMatrix4x4 const frame = samples::tilted();
  Vec3 const half(0.5, 0.8, 1.2);
  Mass const asMesh = massOf(new Trimesh(samples::boxVertices(half), samples::boxIndices()), 1000.0, frame);
  expectSame(massOf(new Box(half), 1000.0, frame), asMesh, 1e-9);
  expectSame(massOf(new Convex(samples::boxVertices(half)), 1000.0, frame), asMesh, 1e-9);
  ref_ptr<Compound> const halves(new Compound);
  halves->add(new Box(0.25, 0.8, 1.2), AffineMatrix4x4::translate(0.25, 0, 0));
  halves->add(new Box(0.25, 0.8, 1.2), AffineMatrix4x4::translate(-0.25, 0, 0));
  expectSame(massOf(halves.get(), 1000.0, frame), asMesh, 1e-9);
}

TEST(CollideShapes, MeshKnowsWhetherItIsClosed) {
  zor::Vec3Vector const corners = samples::boxVertices(Vec3(1, 1, 1));
  zor::UInt32Vector open = samples::boxIndices();
  ref_ptr<Trimesh> const closed(new Trimesh(corners, open));
  EXPECT_TRUE(closed->isClosed());
  EXPECT_NEAR(closed->getVolume(), 8.0, 1e-12);
  zor::Vec3Vector repeated; // every triangle with vertices of its own, as from a model file
  zor::UInt32Vector ascending;
  for (zor::UInt32 const index : open) {
    ascending.push_back(static_cast<zor::UInt32>(repeated.size()));
    repeated.push_back(corners[index]);
  }
  EXPECT_TRUE(ref_ptr<Trimesh>(new Trimesh(repeated, ascending))->isClosed());
  open.resize(open.size() - 3);
  ref_ptr<Trimesh> const holed(new Trimesh(corners, open));
  EXPECT_FALSE(holed->isClosed());
  EXPECT_NEAR(holed->getVolume(), 8.0, 1e-9); // of the hull
}

TEST(CollideShapes, HullKeepsOnlyItsCorners) {
  zor::Vec3Vector points = samples::boxVertices(Vec3(1, 2, 3));
  std::mt19937 random(3);
  for (int i = 0; i < 500; ++i)
    points.push_back(samples::randomDirection(random) * 0.9);
  ref_ptr<Convex> const convex(new Convex(points));
  EXPECT_EQ(convex->getVertices().size(), 8u);
  EXPECT_EQ(convex->getNumTriangles(), 12u);
  EXPECT_NEAR(convex->getVolume(), 48.0, 1e-6);
  for (zor::UInt t = 0; t < 12; ++t) { // outward
    auto const& v = convex->getVertices();
    auto const& i = convex->getIndices();
    Vec3 const a = v[i[3 * t]], b = v[i[3 * t + 1]], c = v[i[3 * t + 2]];
    EXPECT_GT((b - a).cross(c - a).dot(a), 0.0);
  }
  ref_ptr<Convex> const given(new Convex(samples::boxVertices(Vec3(1, 1, 1)), samples::boxIndices()));
  EXPECT_EQ(given->getIndices().size(), 36u);
  ref_ptr<Geometry> const geometry(new Geometry(given.get()));
  ref_ptr<Space> const space(new Space);
  space->add(geometry.get());
  EXPECT_EQ(space->castRay(Vec3(-0.5, -0.6, 5), Vec3(0, 0, -1)).getTriangleIndex(), 2);
}

TEST(CollideShapes, ChangesReachEveryHolder) {
  ref_ptr<Sphere> const sphere(new Sphere(1.0));
  ref_ptr<Compound> const compound(new Compound);
  compound->add(sphere.get());
  ref_ptr<Geometry> const direct(new Geometry(sphere.get())), nested(new Geometry(compound.get()));
  ref_ptr<Space> const space(new Space);
  space->add(nested.get());
  int directChanges = 0, nestedChanges = 0;
  Geometry::ShapeChangeEvent::CallbackType const onDirect([&](Geometry*) { ++directChanges; });
  Geometry::ShapeChangeEvent::CallbackType const onNested(
      [&](Geometry* g) { nestedChanges += g == nested.get(); });
  direct->getShapeChangeEvent().add(onDirect);
  nested->getShapeChangeEvent().add(onNested);
  sphere->setRadius(2.0);
  EXPECT_EQ(directChanges, 1);
  EXPECT_EQ(nestedChanges, 1);
  EXPECT_NEAR(space->castRay(Vec3(5, 0, 0), Vec3(-1, 0, 0)).getDistance(), 3.0, 1e-12);
  EXPECT_TRUE(direct->remove(sphere.get()));
  EXPECT_FALSE(direct->remove(sphere.get()));
  sphere->setRadius(3.0);
  EXPECT_EQ(directChanges, 2); // the removal, not the radius
  EXPECT_EQ(nestedChanges, 2);
  EXPECT_TRUE(compound->remove(sphere.get()));
  EXPECT_FALSE(space->castRay(Vec3(5, 0, 0), Vec3(-1, 0, 0)).hasHit());
}

} // namespace
