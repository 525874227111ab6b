#include <limits>
#include <random>

#include <gtest/gtest.h>

#include <zorCollide/HeightField.h>
#include <zorCollide/Plane.h>
#include <zorCollide/Space.h>

#include "CollideSamples.h"

namespace {

using namespace zorCollide;
using samples::Vec3;
using zor::AffineMatrix4x4;
using zor::ref_ptr;

ref_ptr<Space> spaceWith(Geometry* geometry) {
  ref_ptr<Space> space(new Space);
  space->add(geometry);
  return space;
}

/** First point of a ray inside a form, by small steps and halving; -1 if there is none. */
double firstInside(std::function<bool(Vec3 const&)> const& holds, Vec3 const& origin, Vec3 const& direction,
                   double length) {
  constexpr int steps = 4000;
  for (int i = 1; i <= steps; ++i) {
    double inside = length * i / steps, outside = length * (i - 1) / steps;
    if (!holds(origin + direction * inside))
      continue;
    for (int k = 0; k < 60; ++k) {
      double const middle = 0.5 * (inside + outside);
      (holds(origin + direction * middle) ? inside : outside) = middle;
    }
    return inside;
  }
  return -1.0;
}

TEST(CollideRays, EachSolidIsMetWhereItBegins) {
  std::mt19937 random(7);
  for (samples::Solid const& solid : samples::solids()) {
    SCOPED_TRACE(solid.name);
    ref_ptr<Geometry> geometry(new Geometry(solid.shape.get()));
    geometry->setTransform(samples::tilted());
    auto const space = spaceWith(geometry.get());
    AffineMatrix4x4 const toLocal = samples::tilted().inverse();
    auto const holds = [&](Vec3 const& p) { return solid.holds(toLocal.transformPoint(p)); };
    int hits = 0;
    for (int i = 0; i < 150; ++i) {
      Vec3 const aim = samples::tilted().getTranslate() + samples::randomDirection(random) * 0.6;
      Vec3 const origin = aim + samples::randomDirection(random) * 4.0;
      Vec3 const direction = (aim - origin).normal();
      double const expected = firstInside(holds, origin, direction, 8.0);
      RayHit const hit = space->castRay(origin, direction * 3.0, 8.0); // any length of direction
      if (expected < 0.0) {
        EXPECT_TRUE(!hit.hasHit() || // a chord shorter than a step of the search
                    !holds(hit.getPoint() + direction * 3e-3));
        continue;
      }
      ++hits;
      ASSERT_TRUE(hit.hasHit());
      EXPECT_NEAR(hit.getDistance(), expected, 1e-9);
      EXPECT_TRUE(hit.getPoint().equals(origin + direction * expected, 1e-9));
      EXPECT_NEAR(hit.getNormal().length(), 1.0, 1e-12);
      EXPECT_LE(hit.getNormal().dot(direction), 0.0);
      EXPECT_FALSE(holds(hit.getPoint() + hit.getNormal() * 1e-6));
      EXPECT_EQ(hit.getGeometry(), geometry.get());
    }
    EXPECT_GT(hits, 40);
  }
}

TEST(CollideRays, NormalsAndPartsAreNamed) {
  struct Case {
    Shape* shape;
    Vec3 origin, direction, normal;
    double distance;
  };
  double const slope = std::sqrt(0.5);
  Case const cases[] = {
      {new Box(1, 2, 3), Vec3(0.2, 9, 0.1), Vec3(0, -1, 0), Vec3(0, 1, 0), 7.0},
      {new Sphere(2), Vec3(5, 0, 0), Vec3(-1, 0, 0), Vec3(1, 0, 0), 3.0},
      {new Capsule(1, 4), Vec3(0, 8, 0), Vec3(0, -1, 0), Vec3(0, 1, 0), 5.0},
      {new Cylinder(1, 4), Vec3(0, 1.9, 5), Vec3(0, 0, -1), Vec3(0, 0, 1), 4.0},
      {new Cone(1, 1), Vec3(5, 0, 0), Vec3(-1, 0, 0), Vec3(slope, slope, 0), 4.5},
      {new Cone(1, 1), Vec3(0.5, -3, 0), Vec3(0, 1, 0), Vec3(0, -1, 0), 2.5},
  };
  for (Case const& test : cases) {
    SCOPED_TRACE(test.shape->getTypeName());
    ref_ptr<Geometry> geometry(new Geometry(test.shape));
    RayHit const hit = spaceWith(geometry.get())->castRay(test.origin, test.direction);
    ASSERT_TRUE(hit.hasHit());
    EXPECT_NEAR(hit.getDistance(), test.distance, 1e-12);
    EXPECT_TRUE(hit.getNormal().equals(test.normal, 1e-12)) << hit.getNormal();
    EXPECT_EQ(hit.getShape(), test.shape);
    EXPECT_EQ(hit.getTriangleIndex(), -1);
  }
}

TEST(CollideRays, SurfacesAreMetFromBothSidesAndSolidsNotFromInside) {
  ref_ptr<Geometry> plane(new Geometry(new Plane(Vec3(0, 0, 2), Vec3(7, 7, 1))));
  auto const ground = spaceWith(plane.get());
  RayHit const above = ground->castRay(Vec3(0, 0, 3), Vec3(0, 0, -1));
  EXPECT_NEAR(above.getDistance(), 2.0, 1e-12);
  EXPECT_TRUE(above.getNormal().equals(Vec3(0, 0, 1), 1e-12));
  EXPECT_TRUE(ground->castRay(Vec3(0, 0, -3), Vec3(0, 0, 1)).getNormal().equals(Vec3(0, 0, -1), 1e-12));
  EXPECT_FALSE(ground->castRay(Vec3(0, 0, 3), Vec3(1, 0, 0)).hasHit());
  EXPECT_FALSE(ground->castRay(Vec3(0, 0, 3), Vec3(0, 0, -1), 1.9).hasHit());

  for (samples::Solid const& solid : samples::solids()) {
    if (solid.name == "trimesh" || solid.name == "compound" || solid.name == "convex")
      continue; // a surface; the others do not hold their origin
    ref_ptr<Geometry> geometry(new Geometry(solid.shape.get()));
    EXPECT_FALSE(spaceWith(geometry.get())->castRay(Vec3(0.01, 0, 0), Vec3(1, 1, 1)).hasHit()) << solid.name;
  }
  ref_ptr<Geometry> mesh(
      new Geometry(new Trimesh(samples::boxVertices(Vec3(1, 1, 1)), samples::boxIndices())));
  RayHit const inside = spaceWith(mesh.get())->castRay(Vec3(0.3, 0.1, 0), Vec3(0, 0, 1));
  EXPECT_NEAR(inside.getDistance(), 1.0, 1e-12);
  EXPECT_TRUE(inside.getNormal().equals(Vec3(0, 0, -1), 1e-12));
}

TEST(CollideRays, HeightFieldFollowsItsTriangles) {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> uniform(0.0, 1.0);
  constexpr size_t numX = 9, numY = 6;
  zor::RealVector heights;
  for (size_t i = 0; i < numX * numY; ++i)
    heights.push_back(uniform(random));
  ref_ptr<HeightField> const field(new HeightField(numX, numY, 8.0, 10.0, heights));
  ref_ptr<Geometry> const geometry(new Geometry(field.get()));
  ref_ptr<Geometry> const mesh(new Geometry(new Trimesh(field->getVertices(), field->getIndices())));
  auto const onField = spaceWith(geometry.get());
  auto const onMesh = spaceWith(mesh.get());

  RayHit const corner = onField->castRay(Vec3(-4, -5, 9), Vec3(0, 0, -1));
  EXPECT_NEAR(corner.getPoint().z(), heights[0], 1e-9);
  int hits = 0;
  for (int i = 0; i < 300; ++i) {
    Vec3 const origin(10 * uniform(random) - 5, 12 * uniform(random) - 6, 3 * uniform(random) - 1);
    Vec3 const direction = samples::randomDirection(random);
    RayHit const a = onField->castRay(origin, direction), b = onMesh->castRay(origin, direction);
    ASSERT_EQ(a.hasHit(), b.hasHit());
    hits += a.hasHit();
    EXPECT_NEAR(a.getDistance(), b.getDistance(), 1e-9);
    EXPECT_EQ(a.getTriangleIndex(), b.getTriangleIndex());
  }
  EXPECT_GT(hits, 50);

  field->setHeight(4, 3, 5.0);
  EXPECT_NEAR(onField->castRay(Vec3(0, 1, 9), Vec3(0, 0, -1)).getPoint().z(), 5.0, 1e-9);
  ref_ptr<Geometry> const flat(new Geometry(new HeightField(2, 2, 4, 4)));
  RayHit const onFlat = spaceWith(flat.get())->castRay(Vec3(1, 0.5, 2), Vec3(0, 0, -1));
  EXPECT_NEAR(onFlat.getDistance(), 2.0, 1e-12);
  EXPECT_EQ(onFlat.getTriangleIndex(), 0);
}

TEST(CollideRays, AllHitsComeFromNearToFarAndManyRaysAsOne) {
  ref_ptr<Space> const space(new Space);
  std::vector<ref_ptr<Geometry>> boxes;
  for (int i = 0; i < 4; ++i) {
    boxes.emplace_back(new Geometry(new Box(0.5, 0.5, 0.5)));
    boxes.back()->setPosition(Vec3(2.0 * (3 - i), 0, 0));
    space->add(boxes.back().get());
  }
  boxes[1]->setSensor(true);
  boxes[2]->setEnable(false);
  Vec3 const origin(-5, 0, 0), along(1, 0, 0);
  RayHitVector const hits = space->castRayAll(origin, along);
  ASSERT_EQ(hits.size(), 2u);
  EXPECT_EQ(hits[0].getGeometry(), boxes[3].get());
  EXPECT_EQ(hits[1].getGeometry(), boxes[0].get());
  EXPECT_EQ(space->castRayAll(origin, along, 1e6, true).size(), 3u);
  EXPECT_EQ(space->castRayAll(origin, along, 5.0).size(), 1u);

  zor::Vec3Vector const directions{along, Vec3(0, 1, 0), Vec3(1, 0.01, 0)};
  RayHitVector const bulk = space->castRays(zor::Vec3Vector{origin}, directions);
  ASSERT_EQ(bulk.size(), 3u);
  for (size_t i = 0; i < 3; ++i)
    EXPECT_EQ(bulk[i].getDistance(), space->castRay(origin, directions[i]).getDistance());
  EXPECT_FALSE(bulk[1].hasHit());
  EXPECT_THROW(space->castRays(zor::Vec3Vector{origin, origin}, directions), std::invalid_argument);
  EXPECT_THROW(space->castRay(origin, Vec3()), std::invalid_argument);
  EXPECT_THROW(space->castRay(origin, along, -1.0), std::invalid_argument);
}

TEST(CollideRays, TablesSayWhatSingleRaysSay) {
  ref_ptr<Space> const space(new Space);
  std::vector<samples::Solid> const solids = samples::solids();
  for (size_t i = 0; i < solids.size(); ++i) {
    ref_ptr<Geometry> const geometry(new Geometry(solids[i].shape.get()));
    geometry->setPosition(Vec3(3.0 * static_cast<double>(i), 0, 0));
    geometry->setSensor(i % 3 == 2);
    space->add(geometry.get());
  }
  std::mt19937 random(11);
  std::uniform_real_distribution<double> any(-1.0, 1.0);
  zor::Vec3Vector origins, directions;
  for (int i = 0; i < 600; ++i) {
    origins.push_back(Vec3(3.0 * (i % 9), 0, 0) + Vec3(any(random), any(random), 5.0));
    directions.push_back(Vec3(0.2 * any(random), 0.2 * any(random), -2.0));
  }
  for (bool const sensors : {false, true}) {
    RayTable const table = space->castRayTable(origins, directions, 6.0, sensors);
    ASSERT_EQ(table.getNumRays(), 600u);
    size_t hits = 0;
    for (size_t i = 0; i < 600; ++i) {
      RayHit const one = space->castRay(origins[i], directions[i], 6.0, sensors);
      zor::Int const index = table.getGeometryIndices()[i];
      ASSERT_EQ(index < 0, !one.hasHit()) << "ray " << i;
      if (one.hasHit()) {
        ++hits;
        EXPECT_EQ(space->getGeometries()[static_cast<size_t>(index)], one.getGeometry());
        EXPECT_EQ(table.getDistances()[i], one.getDistance());
        EXPECT_EQ(table.getPoints()[i], one.getPoint());
        EXPECT_EQ(table.getNormals()[i], one.getNormal());
      } else {
        EXPECT_EQ(table.getDistances()[i], -1.0);
        EXPECT_EQ(table.getNormals()[i], Vec3());
        EXPECT_LT((table.getPoints()[i] - origins[i] - directions[i].normal() * 6.0).length(), 1e-12);
      }
    }
    EXPECT_EQ(table.getNumHits(), hits);
    EXPECT_GT(hits, sensors ? 150u : 100u);
    EXPECT_LT(hits, 500u);
  }

  RayTable const fan = space->castRayTable(zor::Vec3Vector{Vec3(0, 0, 5)}, directions,
                                           std::numeric_limits<double>::infinity());
  EXPECT_EQ(fan.getNumRays(), 600u);
  for (size_t i = 0; i < 600; ++i)
    ASSERT_TRUE(fan.getPoints()[i].isFinite());
  EXPECT_EQ(space->castRayTable(zor::Vec3Vector{Vec3()}, zor::Vec3Vector()).getNumRays(), 0u);
  EXPECT_THROW(space->castRayTable(zor::Vec3Vector{Vec3(), Vec3()}, directions), std::invalid_argument);
  EXPECT_THROW(space->castRayTable(origins, zor::Vec3Vector(600, Vec3())), std::invalid_argument);
  EXPECT_THROW(space->castRayTable(origins, directions, 0.0), std::invalid_argument);
}

} // namespace
