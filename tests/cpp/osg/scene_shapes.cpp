// Meshes of the collision shapes: volume, bounds, normals, detail, sharing.

#include "SceneProbe.h"

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
#include <zorOSG/CreateVisual.h>
#include <zorOSG/Lookup.h>
#include <zorOSG/RenderState.h>
#include <zorOSG/SmoothNormals.h>
#include <zorRender/RenderData.h>
#include <zorSDK/Assembly.h>

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <numbers>
#include <set>
#include <vector>

using zor::AffineMatrix4x4;
using zor::ref_ptr;
using zor::Vec3;
using zorTest::boundsOf;
using zorTest::SceneProbe;

namespace {

constexpr double pi = std::numbers::pi;

struct Visual {
  explicit Visual(zorCollide::Shape* shape, float detail = 1.0f,
                  AffineMatrix4x4 const& local = AffineMatrix4x4())
      : geometry(new zorCollide::Geometry(shape, local)), root(new osg::Group),
        node(zorOSG::createVisual(geometry.get(), root.get(), detail)) {}

  SceneProbe probe() const { return SceneProbe(*root); }

  ref_ptr<zorCollide::Geometry> geometry;
  osg::ref_ptr<osg::Group> root;
  zorOSG::GeometryNode* node;
};

struct RoundCase {
  char const* name;
  zorCollide::Shape* (*make)();
  double volume;
  osg::Vec3 low, high;
};

RoundCase const roundCases[] = {
    {"sphere",
     [] { return static_cast<zorCollide::Shape*>(new zorCollide::Sphere(0.5)); },
     4.0 / 3.0 * pi * 0.125,
     {-0.5f, -0.5f, -0.5f},
     {0.5f, 0.5f, 0.5f}},
    {"capsule",
     [] { return static_cast<zorCollide::Shape*>(new zorCollide::Capsule(0.3, 0.8)); },
     pi * 0.09 * 0.8 + 4.0 / 3.0 * pi * 0.027,
     {-0.3f, -0.7f, -0.3f},
     {0.3f, 0.7f, 0.3f}},
    {"cylinder",
     [] { return static_cast<zorCollide::Shape*>(new zorCollide::Cylinder(0.4, 1.2)); },
     pi * 0.16 * 1.2,
     {-0.4f, -0.6f, -0.4f},
     {0.4f, 0.6f, 0.4f}},
    {"cone",
     [] { return static_cast<zorCollide::Shape*>(new zorCollide::Cone(0.4, 1.2)); },
     pi * 0.16 * 1.2 / 3.0,
     {-0.4f, -0.6f, -0.4f},
     {0.4f, 0.6f, 0.4f}},
};

/** A torus, wound counter-clockwise seen from outside. */
ref_ptr<zorCollide::Trimesh> makeTorus(double major, double minor, zor::UInt32 around, zor::UInt32 across) {
  zor::Vec3Vector vertices;
  zor::UInt32Vector indices;
  for (zor::UInt32 i = 0; i < around; ++i)
    for (zor::UInt32 j = 0; j < across; ++j) {
      double const a = 2.0 * pi * i / around, b = 2.0 * pi * j / across;
      double const r = major + minor * std::cos(b);
      vertices.push_back(Vec3(r * std::cos(a), r * std::sin(a), minor * std::sin(b)));
    }
  for (zor::UInt32 i = 0; i < around; ++i)
    for (zor::UInt32 j = 0; j < across; ++j) {
      zor::UInt32 const a = i * across + j, b = (i + 1) % around * across + j,
                        c = (i + 1) % around * across + (j + 1) % across, d = i * across + (j + 1) % across;
      for (zor::UInt32 const index : {a, b, c, a, c, d})
        indices.push_back(index);
    }
  return new zorCollide::Trimesh(vertices, indices);
}

} // namespace

TEST(SceneShapes, ThousandsOfEqualShapesDrawFromOneBuffer) {
  osg::ref_ptr<osg::Group> const root = new osg::Group;
  std::vector<ref_ptr<zorCollide::Geometry>> geometries;
  std::map<osg::Geometry const*, int> meshes;
  std::set<osg::Array const*> arrays;
  for (int i = 0; i < 9000; ++i) { // more than one mesh serves
    geometries.emplace_back(new zorCollide::Geometry(new zorCollide::Box(1, 2, 3)));
    osg::Geometry const* const mesh = zorOSG::createVisual(geometries.back().get(), root)->getOnlyMesh();
    ++meshes[mesh];
    arrays.insert(mesh->getVertexArray());
    ASSERT_NEAR(mesh->getBoundingBox().zMax(), 3.0, 1e-5);
  }
  EXPECT_EQ(meshes.size(), 3u);
  EXPECT_EQ(arrays.size(), 1u);
  for (auto const& [mesh, visuals] : meshes)
    EXPECT_EQ(mesh->getNumParents(), static_cast<unsigned int>(visuals));
}

TEST(SceneShapes, RoundShapesAreClosedAndConvergeWithDetail) {
  for (RoundCase const& round : roundCases) {
    SCOPED_TRACE(round.name);
    double previousError = 1.0;
    for (float const detail : {0.25f, 1.0f, 4.0f}) {
      SceneProbe const probe = Visual(round.make(), detail).probe();
      double const error = 1.0 - probe.volume / round.volume;
      EXPECT_GT(error, 0.0); // inscribed
      EXPECT_LT(error, 0.35 * previousError);
      EXPECT_GT(probe.leastAgreement, 0.5);
      previousError = error;
    }
    EXPECT_LT(previousError, 2e-3);
    Visual const visual(round.make());
    osg::BoundingBox const box = boundsOf(*visual.root);
    EXPECT_LT((box._min - round.low).length(), 1e-5f);
    EXPECT_LT((box._max - round.high).length(), 1e-5f);
  }
}

TEST(SceneShapes, BoxesAndConvexesAreExactAndFlat) {
  Visual const box(new zorCollide::Box(0.5, 1.0, 1.5));
  EXPECT_NEAR(box.probe().volume, 6.0, 1e-5);
  EXPECT_NEAR(box.probe().leastAgreement, 1.0, 1e-6);
  EXPECT_EQ(box.probe().triangles, 12u);

  zor::Vec3Vector const corners{Vec3(1, 0, 0),  Vec3(-1, 0, 0), Vec3(0, 1, 0),
                                Vec3(0, -1, 0), Vec3(0, 0, 1),  Vec3(0, 0, -1)};
  Visual const octahedron(new zorCollide::Convex(corners));
  EXPECT_NEAR(octahedron.probe().volume, 4.0 / 3.0, 1e-5);
  EXPECT_NEAR(octahedron.probe().leastAgreement, 1.0, 1e-5);
}

TEST(SceneShapes, MeshesAreSmoothUpToTheCreaseAngle) {
  ref_ptr<zorCollide::Trimesh> const torus = makeTorus(1.0, 0.3, 64, 32);
  SceneProbe const probe = Visual(torus.get()).probe();
  EXPECT_NEAR(probe.volume, torus->getVolume(), 1e-4);
  EXPECT_NEAR(probe.volume, 2.0 * pi * pi * 0.09, 0.02);
  EXPECT_LT(probe.leastAgreement, 0.9999); // shared between facets
  EXPECT_GT(probe.leastAgreement, 0.97);

  // The edges of a cube given as a mesh are sharper than the crease angle.
  zor::Vec3Vector vertices;
  for (int i = 0; i < 8; ++i)
    vertices.push_back(Vec3(i & 1 ? 1 : -1, i & 2 ? 1 : -1, i & 4 ? 1 : -1));
  zor::UInt32Vector const indices{0, 2, 3, 0, 3, 1, 4, 5, 7, 4, 7, 6, 0, 1, 5, 0, 5, 4,
                                  2, 6, 7, 2, 7, 3, 0, 4, 6, 0, 6, 2, 1, 3, 7, 1, 7, 5};
  SceneProbe const cube = Visual(new zorCollide::Trimesh(vertices, indices)).probe();
  EXPECT_NEAR(cube.volume, 8.0, 1e-5);
  EXPECT_NEAR(cube.leastAgreement, 1.0, 1e-6);
  EXPECT_EQ(cube.meshes.at(0)->getVertexArray()->getNumElements(), 24u);
}

TEST(SceneShapes, HeightFieldAndPlane) {
  zor::RealVector heights;
  for (int y = 0; y < 11; ++y)
    for (int x = 0; x < 21; ++x)
      heights.push_back(0.1 * x);
  Visual const field(new zorCollide::HeightField(21, 11, 4.0, 2.0, heights));
  osg::BoundingBox const box = boundsOf(*field.root);
  EXPECT_LT((box._min - osg::Vec3(-2, -1, 0)).length(), 1e-5f);
  EXPECT_LT((box._max - osg::Vec3(2, 1, 2)).length(), 1e-5f);
  EXPECT_EQ(field.probe().triangles, 2u * 20u * 10u);
  EXPECT_NEAR(field.probe().leastAgreement, 1.0, 1e-5); // a plane slope, up

  Visual const plane(new zorCollide::Plane(Vec3(0, 0, 1), Vec3(0, 0, -0.5)));
  osg::BoundingBox const square = boundsOf(*plane.root);
  EXPECT_NEAR(square.zMin(), -0.5f, 1e-6f);
  EXPECT_NEAR(square.zMax(), -0.5f, 1e-6f);
  EXPECT_GT(square.xMax() - square.xMin(), 100.0f);
  EXPECT_NEAR(plane.probe().leastAgreement, 1.0, 1e-6);
  EXPECT_FALSE(plane.root->getBound().valid()); // an endless floor must not push the camera away
}

TEST(SceneShapes, CompoundsAndLocalTransforms) {
  ref_ptr<zorCollide::Compound> const dumbbell = new zorCollide::Compound;
  ref_ptr<zorCollide::Box> const weight = new zorCollide::Box(0.5, 0.5, 0.5);
  dumbbell->add(weight.get(), AffineMatrix4x4::translate(2, 0, 0));
  dumbbell->add(weight.get(), AffineMatrix4x4::translate(-2, 0, 0));
  Visual const visual(dumbbell.get(), 1.0f, AffineMatrix4x4::translate(0, 0, 3));
  EXPECT_NEAR(visual.probe().volume, 2.0, 1e-5);
  EXPECT_EQ(visual.probe().distinctMeshes().size(), 1u);
  osg::BoundingBox const box = boundsOf(*visual.root);
  EXPECT_LT((box._min - osg::Vec3(-2.5f, -0.5f, 2.5f)).length(), 1e-5f);
  EXPECT_LT((box._max - osg::Vec3(2.5f, 0.5f, 3.5f)).length(), 1e-5f);
}

TEST(SceneShapes, EqualShapesShareOneMeshAsLongAsItIsDrawn) {
  osg::ref_ptr<osg::Group> const root = new osg::Group;
  zor::Vector<ref_ptr<zorCollide::Geometry>> geometries;
  for (int i = 0; i < 300; ++i) {
    geometries.push_back(new zorCollide::Geometry(new zorCollide::Box(0.1, 0.2, 0.3)));
    zorOSG::createVisual(geometries.back().get(), root.get(), i % 2 ? 1.0f : 0.5f); // no matter for a box
  }
  ref_ptr<zorCollide::Geometry> const other = new zorCollide::Geometry(new zorCollide::Box(0.1, 0.2, 0.31));
  zorOSG::createVisual(other.get(), root.get());
  osg::observer_ptr<osg::Geometry> watched;
  {
    SceneProbe const probe(*root);
    EXPECT_EQ(probe.meshes.size(), 301u);
    EXPECT_EQ(probe.distinctMeshes().size(), 2u);
    EXPECT_TRUE(probe.meshes[0]->getUseVertexBufferObjects());
    EXPECT_FALSE(probe.meshes[0]->getUseDisplayList());
    watched = probe.meshes[0];
  }
  root->removeChildren(0, root->getNumChildren());
  EXPECT_FALSE(watched.valid());
}

TEST(SceneShapes, ARenderCacheKeepsMeshesForBodiesThatComeLater) {
  osg::ref_ptr<osg::Group> const root = new osg::Group;
  ref_ptr<zorOSG::RigidBodyRenderCache> const cache = new zorOSG::RigidBodyRenderCache;
  auto const drawAssembly = [&] {
    ref_ptr<zorSDK::Assembly> const assembly = new zorSDK::Assembly;
    ref_ptr<zor::RigidBody> const body = new zor::RigidBody;
    body->add(new zorCollide::Geometry(new zorCollide::Sphere(0.7)));
    body->add(new zorCollide::Geometry(new zorCollide::Box(0.7, 0.7, 0.7)));
    assembly->add(body.get());
    osg::Group* const visual = zorOSG::createVisualTemplateCaching(assembly.get(), root.get(), cache.get());
    return osg::observer_ptr<osg::Geometry>(SceneProbe(*visual).meshes.at(0));
  };
  auto const first = drawAssembly(); // the visuals go with the bodies
  EXPECT_EQ(SceneProbe(*root).triangles, 0u);
  EXPECT_EQ(cache->size(), 2u);
  ASSERT_TRUE(first.valid());
  EXPECT_EQ(drawAssembly(), first);
  EXPECT_EQ(cache->size(), 2u);
  cache->clear();
  EXPECT_FALSE(first.valid());
}

TEST(SceneShapes, TemplatesLookAsWhatTheyWereMadeFrom) {
  osg::ref_ptr<osg::Group> const root = new osg::Group;
  ref_ptr<zorOSG::RigidBodyRenderCache> const cache = new zorOSG::RigidBodyRenderCache;
  zor::Vec3Vector const corners = {Vec3(0, 0, 0), Vec3(1, 0, 0), Vec3(0, 1, 0), Vec3(0, 0, 1)};
  zor::UInt32Vector const faces = {0, 2, 1, 0, 1, 3, 0, 3, 2, 1, 2, 3};
  ref_ptr<zorCollide::Trimesh> const shape = new zorCollide::Trimesh(corners, faces);
  ref_ptr<zorSDK::Assembly> const assembly = new zorSDK::Assembly;
  for (int i = 0; i < 2; ++i)
    assembly->add(new zor::RigidBody(new zorCollide::Geometry(shape.get())));
  auto const probe = [&](bool cached) {
    osg::Group* const visual =
        cached ? zorOSG::createVisualTemplateCaching(assembly.get(), root.get(), cache.get())
               : zorOSG::createVisual(assembly.get(), root.get());
    SceneProbe const seen(*visual);
    root->removeChild(visual);
    return seen;
  };
  auto const material = [&](bool cached) {
    osg::Group* const visual =
        cached ? zorOSG::createVisualTemplateCaching(assembly.get(), root.get(), cache.get())
               : zorOSG::createVisual(assembly.get(), root.get());
    std::vector<osg::Vec4> colors;
    for (unsigned int i = 0; i < 2; ++i) {
      auto* const node = zorOSG::asGeometryNode(visual->getChild(i)->asGroup()->getChild(0));
      osg::Node* const child = node->getRenderChild(zorOSG::GeometryNode::RENDER_DATA);
      colors.push_back(zorTest::ownDiffuse(*child));
      zorOSG::setDiffuseColor(
          child, zor::Vec4f(0, 0, 1, 1)); // of this one, neither of its twin nor of those to come
    }
    return colors;
  };
  EXPECT_NEAR(probe(true).volume, 2.0 / 6.0, 1e-6);
  EXPECT_EQ(probe(true).distinctMeshes(), probe(false).distinctMeshes());
  EXPECT_EQ(cache->size(), 1u);

  ref_ptr<zorRender::RenderData> const data = new zorRender::RenderData;
  data->setVertices(corners);
  data->setIndices({0, 2, 1});
  ref_ptr<zorRender::RenderMaterial> const green = new zorRender::RenderMaterial;
  green->setDiffuseColor(zorRender::Color(0.1f, 0.8f, 0.2f));
  data->setRenderMaterial(green.get());
  shape->setRenderData(data.get());
  EXPECT_EQ(probe(true).triangles, 2u);
  EXPECT_EQ(material(true), material(false));
  EXPECT_EQ(material(true), material(false)); // those before were coloured
  data->setIndices(faces);                    // changed in place, without a word to the shape
  green->setDiffuseColor(zorRender::Color(0.9f, 0.1f, 0.2f));
  EXPECT_EQ(probe(true).triangles, 8u);
  EXPECT_EQ(material(true), material(false));
  EXPECT_FLOAT_EQ(material(true)[1].r(), 0.9f);
}

TEST(SceneShapes, SmoothingOneVisualLeavesItsTwinsAlone) {
  osg::ref_ptr<osg::Group> const root = new osg::Group;
  ref_ptr<zorCollide::Geometry> const first = new zorCollide::Geometry(new zorCollide::Box(1, 1, 1));
  ref_ptr<zorCollide::Geometry> const second = new zorCollide::Geometry(new zorCollide::Box(1, 1, 1));
  osg::Node* const smooth = zorOSG::createVisual(first.get(), root.get());
  osg::Node* const flat = zorOSG::createVisual(second.get(), root.get());
  osg::ref_ptr<osg::Geometry> const mesh = SceneProbe(*flat).meshes.at(0);
  osg::ref_ptr<osg::Array> const normals = mesh->getNormalArray();
  EXPECT_EQ(zorOSG::smoothNormals(smooth), 1);
  EXPECT_NE(SceneProbe(*smooth).meshes.at(0), mesh);
  EXPECT_NEAR(SceneProbe(*smooth).leastAgreement, 1.0, 1e-5); // edges sharper than the crease angle stay
  EXPECT_EQ(zorOSG::smoothNormals(smooth, 3.0f), 1);
  EXPECT_NEAR(SceneProbe(*smooth).leastAgreement, 1.0 / std::sqrt(3.0), 1e-4); // towards the corners now
  EXPECT_EQ(SceneProbe(*flat).meshes.at(0), mesh);
  EXPECT_EQ(mesh->getNormalArray(), normals);
  osg::ref_ptr<osg::Group> const empty = new osg::Group;
  EXPECT_EQ(zorOSG::smoothNormals(empty.get()), 0);
}

TEST(SceneShapes, RenderDataIsDrawnInPlaceOfTheShape) {
  ref_ptr<zorRender::RenderData> const data = new zorRender::RenderData;
  data->setVertices({Vec3(0, 0, 0), Vec3(1, 0, 0), Vec3(0, 1, 0), Vec3(0, 0, 1)});
  data->setIndices({0, 2, 1, 0, 1, 3, 0, 3, 2, 1, 2, 3});
  ref_ptr<zorRender::RenderMaterial> const green = new zorRender::RenderMaterial;
  green->setDiffuseColor(zorRender::Color(0.1f, 0.8f, 0.2f));
  data->setRenderMaterial(green.get());
  ref_ptr<zorCollide::Box> const box = new zorCollide::Box(1, 1, 1);
  box->setRenderData(data.get());

  Visual const visual(box.get());
  EXPECT_NEAR(visual.probe().volume, 1.0 / 6.0, 1e-6);
  EXPECT_EQ(visual.node->getSelectedRenderChild(), zorOSG::GeometryNode::RENDER_DATA);
  osg::Node* const child = visual.node->getRenderChild(zorOSG::GeometryNode::RENDER_DATA);
  ASSERT_TRUE(child);
  EXPECT_FLOAT_EQ(zorTest::ownDiffuse(*child).g(), 0.8f);
  visual.node->selectRenderChild(zorOSG::GeometryNode::GEOMETRY_DATA);
  EXPECT_NEAR(visual.probe().volume, 8.0, 1e-5);

  // Data that do not fit together leave nothing half-made in the scene.
  data->setIndices({0, 2, 7});
  osg::ref_ptr<osg::Group> const root = new osg::Group;
  EXPECT_THROW(zorOSG::createVisual(visual.geometry.get(), root.get()), std::invalid_argument);
  EXPECT_EQ(root->getNumChildren(), 0u);
}

TEST(SceneShapes, RenderDataWithoutVerticesColourTheShape) {
  ref_ptr<zorRender::RenderData> const data = new zorRender::RenderData;
  ref_ptr<zorRender::RenderMaterial> const green = new zorRender::RenderMaterial;
  green->setDiffuseColor(zorRender::Color(0.1f, 0.8f, 0.2f, 0.5f));
  data->setRenderMaterial(green.get());
  ref_ptr<zorCollide::Box> const box = new zorCollide::Box(1, 1, 1), plain = new zorCollide::Box(1, 1, 1);
  box->setRenderData(data.get());
  Visual const visual(box.get()), other(plain.get());
  EXPECT_NEAR(visual.probe().volume, 8.0, 1e-5);
  osg::Node* const child = visual.node->getRenderChild(zorOSG::GeometryNode::RENDER_DATA);
  ASSERT_TRUE(child);
  EXPECT_EQ(zorTest::ownDiffuse(*child), osg::Vec4(0.1f, 0.8f, 0.2f, 0.5f));
  EXPECT_EQ(other.probe().meshes, visual.probe().meshes); // drawn by the same buffers

  data->setShouldRender(false);
  Visual const hidden(box.get());
  EXPECT_EQ(hidden.probe().triangles, 0u);
}

TEST(SceneShapes, DetailMustBeANumberThatIsNotNegative) {
  osg::ref_ptr<osg::Group> const root = new osg::Group;
  ref_ptr<zorCollide::Geometry> const ball = new zorCollide::Geometry(new zorCollide::Sphere(1));
  EXPECT_THROW(zorOSG::createVisual(ball.get(), root.get(), -1.0f), std::invalid_argument);
  EXPECT_THROW(zorOSG::createVisual(ball.get(), root.get(), NAN), std::invalid_argument);
  EXPECT_TRUE(zorOSG::createVisual(ball.get(), root.get(), 1e9f)); // limited, not run out of memory
  EXPECT_LT(SceneProbe(*root).triangles, 200000u);
  EXPECT_EQ(zorOSG::createVisual(ball.get(), nullptr), nullptr);
}
