#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include <zor/ContactMaterial.h>
#include <zor/RigidBody.h>
#include <zorCollide/HeightField.h>
#include <zorCollide/Plane.h>
#include <zorCollide/Space.h>
#include <zorCollide/TextureData.h>
#include <zorRender/ColorVector.h>

#include "CollideSamples.h"

namespace {

using namespace zorCollide;
using zor::ref_ptr;
using zor::Vec3;

double const nan = std::numeric_limits<double>::quiet_NaN();
double const infinity = std::numeric_limits<double>::infinity();

/** The message of the std::invalid_argument that a call throws, or what happened instead. */
template <class Call>
std::string refusal(Call const& call) {
  try {
    call();
  } catch (std::invalid_argument const& error) {
    return error.what();
  } catch (std::exception const& error) {
    return std::string("another error: ") + error.what();
  }
  return "no error";
}

TEST(CollideInput, SizesAreNamed) {
  for (double const bad : {0.0, -1.0, nan, infinity}) {
    EXPECT_THROW(ref_ptr<Shape>(new Box(1, bad, 1)), std::invalid_argument);
    EXPECT_THROW(ref_ptr<Shape>(new Sphere(bad)), std::invalid_argument);
    EXPECT_THROW(ref_ptr<Shape>(new Capsule(1, bad)), std::invalid_argument);
    EXPECT_THROW(ref_ptr<Shape>(new Cylinder(bad, 1)), std::invalid_argument);
    EXPECT_THROW(ref_ptr<Shape>(new Cone(1, bad)), std::invalid_argument);
    EXPECT_THROW(ref_ptr<Shape>(new HeightField(3, 3, bad, 1)), std::invalid_argument);
    EXPECT_THROW(ref_ptr<zor::Material>(new zor::Material("m", bad)), std::invalid_argument);
  }
  EXPECT_EQ(refusal([] { ref_ptr<Shape>(new Box(1, -2, 1)); }),
            "Box: half extent along y is -2, but must be positive and finite");
  EXPECT_THROW(ref_ptr<Shape>(new Plane(Vec3(), Vec3())), std::invalid_argument);
  EXPECT_THROW(ref_ptr<Shape>(new Plane(Vec3(0, 0, 1), Vec3(nan, 0, 0))), std::invalid_argument);
  ref_ptr<Sphere> const sphere(new Sphere(1));
  EXPECT_THROW(sphere->setRadius(-1), std::invalid_argument);
  EXPECT_EQ(sphere->getRadius(), 1.0); // as it was
}

TEST(CollideInput, MeshesAreChecked) {
  zor::Vec3Vector const corners = samples::boxVertices(Vec3(1, 1, 1));
  EXPECT_EQ(refusal([&] { ref_ptr<Shape>(new Trimesh(corners, {})); }), "Trimesh: there are no triangles");
  EXPECT_EQ(refusal([&] { ref_ptr<Shape>(new Trimesh(corners, {0, 1, 2, 3})); }),
            "Trimesh: 4 indices are not three a triangle");
  EXPECT_EQ(refusal([&] { ref_ptr<Shape>(new Trimesh(corners, {0, 1, 2, 3, 4, 8})); }),
            "Trimesh: index 8 of triangle 1 is beyond the 8 vertices");
  zor::Vec3Vector broken = corners;
  broken[5].y() = nan;
  EXPECT_EQ(refusal([&] { ref_ptr<Shape>(new Trimesh(broken, {0, 1, 2})); }),
            "Trimesh: vertex 5 is not finite");
  EXPECT_EQ(refusal([&] { ref_ptr<Shape>(new Convex(broken)); }), "Convex: vertex 5 is not finite");
  EXPECT_EQ(refusal([&] { ref_ptr<Shape>(new Convex({Vec3(), Vec3(1, 0, 0), Vec3(0, 1, 0)})); }),
            "Convex: 3 vertices, but at least 4 are needed");
  zor::Vec3Vector const flat{Vec3(), Vec3(1, 0, 0), Vec3(0, 1, 0), Vec3(1, 1, 0), Vec3(0.3, 0.2, 0)};
  EXPECT_EQ(refusal([&] { ref_ptr<Shape>(new Convex(flat)); }), "Convex: the vertices lie in one plane");
  EXPECT_EQ(refusal([&] { ref_ptr<Shape>(new Convex({Vec3(), Vec3(), Vec3(), Vec3()})); }),
            "Convex: the vertices lie in one plane");
  EXPECT_EQ(refusal([] { ref_ptr<Shape>(new HeightField(2, 2, 1, 1, {0, 0, 0})); }),
            "HeightField: 3 heights, but 4 are needed");
  EXPECT_THROW(ref_ptr<Shape>(new HeightField(1, 2, 1, 1)), std::invalid_argument);
  EXPECT_THROW(ref_ptr<Shape>(new HeightField(2, 2, 1, 1, {0, 0, infinity, 0})), std::invalid_argument);
  ref_ptr<HeightField> const field(new HeightField(2, 2, 1, 1));
  EXPECT_THROW(field->getHeight(2, 0), std::out_of_range);
  EXPECT_THROW(field->setHeight(0, 0, nan), std::invalid_argument);
}

TEST(CollideInput, DegenerateMeshesDoNoHarm) {
  // Triangles without area, a flat mesh, and one so far away that nothing is near.
  zor::Vec3Vector const points{Vec3(), Vec3(1, 0, 0), Vec3(2, 0, 0), Vec3(0, 1, 0)};
  for (zor::UInt32Vector const& indices :
       {zor::UInt32Vector{0, 0, 0}, zor::UInt32Vector{0, 1, 2}, zor::UInt32Vector{0, 1, 3, 1, 1, 2}}) {
    ref_ptr<Geometry> const geometry(new Geometry(new Trimesh(points, indices)));
    EXPECT_EQ(geometry->getShape(0)->getVolume(), 0.0);
    ref_ptr<Space> const space(new Space);
    space->add(geometry.get());
    ref_ptr<Geometry> const ball(new Geometry(new Sphere(0.5)));
    space->add(ball.get());
    space->update();
    space->castRay(Vec3(0.2, 0.2, 3), Vec3(0, 0, -1));
    ref_ptr<Geometry> const moving(new Geometry(new Trimesh(points, indices)));
    ref_ptr<zor::RigidBody> const body(new zor::RigidBody(moving.get()));
    EXPECT_GT(body->getMassProperties()->getMass(), 0.0);
  }
}

TEST(CollideInput, GeometriesAndHoldersAreChecked) {
  ref_ptr<Geometry> const geometry(new Geometry(new Sphere(1)));
  EXPECT_THROW(geometry->add(nullptr), std::invalid_argument);
  EXPECT_THROW(geometry->setTransform(zor::AffineMatrix4x4::scale(Vec3(2, 2, 2))), std::invalid_argument);
  EXPECT_THROW(geometry->setTransform(zor::AffineMatrix4x4::scale(Vec3(1, 1, -1))), std::invalid_argument);
  EXPECT_THROW(geometry->setPosition(Vec3(nan, 0, 0)), std::invalid_argument);
  EXPECT_THROW(geometry->getShape(1), std::out_of_range);
  ref_ptr<Compound> const outer(new Compound), inner(new Compound);
  outer->add(inner.get());
  EXPECT_EQ(refusal([&] { inner->add(outer.get()); }), "Compound: the shape holds this compound itself");
  EXPECT_THROW(outer->add(outer.get()), std::invalid_argument);
  ref_ptr<Space> const space(new Space);
  EXPECT_THROW(space->add(static_cast<Geometry*>(nullptr)), std::invalid_argument);
  EXPECT_THROW(space->add(static_cast<zor::ContactMaterial*>(nullptr)), std::invalid_argument);
  EXPECT_FALSE(space->remove(static_cast<Geometry*>(nullptr)));
  EXPECT_THROW(ref_ptr<zor::ContactMaterial>(new zor::ContactMaterial(nullptr, nullptr)),
               std::invalid_argument);
}

TEST(CollideInput, DynamicBodyRefusesSurfacesAndStaysAsItWas) {
  ref_ptr<Geometry> const ground(new Geometry(new Plane(Vec3(0, 0, 1), Vec3())));
  ref_ptr<zor::RigidBody> const body(new zor::RigidBody);
  EXPECT_THROW(body->add(ground.get()), std::invalid_argument);
  EXPECT_EQ(ground->getRigidBody(), nullptr);
  ref_ptr<Compound> const compound(new Compound);
  compound->add(new Sphere(1));
  ref_ptr<Geometry> const geometry(new Geometry(compound.get()));
  body->add(geometry.get());
  double const mass = body->getMassProperties()->getMass();
  EXPECT_THROW(geometry->add(new HeightField(2, 2, 1, 1)), std::invalid_argument);
  EXPECT_EQ(geometry->getNumShapes(), 1u);
  EXPECT_THROW(compound->add(new Plane(Vec3(0, 0, 1), Vec3())), std::invalid_argument);
  EXPECT_EQ(compound->getNumShapes(), 1u);
  EXPECT_EQ(body->getMassProperties()->getMass(), mass);
}

TEST(CollideInput, RenderAndTextureDataAreChecked) {
  ref_ptr<zorRender::RenderData> const data(new zorRender::RenderData);
  ref_ptr<Sphere> const sphere(new Sphere(1));
  data->setVertices({Vec3(), Vec3(1, 0, 0), Vec3(0, 1, 0)});
  data->setIndices({0, 1, 3});
  EXPECT_EQ(refusal([&] { sphere->setRenderData(data.get()); }),
            "RenderData: index 3 of triangle 0 is beyond the 3 vertices");
  EXPECT_EQ(sphere->getRenderData(), nullptr);
  data->setIndices({0, 1, 2});
  data->setNormals({Vec3(0, 0, 1)});
  EXPECT_EQ(refusal([&] { sphere->setRenderData(data.get()); }), "RenderData: 1 normals for 3 vertices");
  EXPECT_THROW(TextureDataRef(new TextureData(2, 2, TextureData::RGB, zor::Vector<zor::UInt8>(11))),
               std::invalid_argument);
  EXPECT_THROW(TextureDataRef(new TextureData("")), std::invalid_argument);
  zorRender::ColorVector colors{zorRender::Color(1, 0, 0), zorRender::Color()};
  EXPECT_EQ(colors[0], zorRender::Color(zor::Vec4f(1, 0, 0, 1)));
  EXPECT_THROW(colors[1].set(4, 0.0f), std::out_of_range);
}

} // namespace
