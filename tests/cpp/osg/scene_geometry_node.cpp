// Nodes that follow geometries: motion, removal, shape changes, ownership, copies, lookup.

#include "Offscreen.h"
#include "SceneProbe.h"

#include <zorCollide/Box.h>
#include <zorCollide/Plane.h>
#include <zorCollide/Space.h>
#include <zorCollide/Sphere.h>
#include <zorOSG/CreateAxes.h>
#include <zorOSG/CreateVisual.h>
#include <zorOSG/Lookup.h>
#include <zorOSG/Transform.h>
#include <zorSDK/Simulation.h>

#include <gtest/gtest.h>

using zor::AffineMatrix4x4;
using zor::Quat;
using zor::ref_ptr;
using zor::Vec3;
using zorOSG::GeometryNode;
using zorTest::SceneProbe;
using zorTest::update;

namespace {

class SceneGeometryNode : public testing::Test {
protected:
  ref_ptr<zorCollide::Geometry> geometry = new zorCollide::Geometry(new zorCollide::Box(0.5, 0.5, 0.5));
  ref_ptr<zor::RigidBody> body = new zor::RigidBody("cube");
  osg::ref_ptr<osg::Group> root = new osg::Group;
};

} // namespace

TEST_F(SceneGeometryNode, FollowsABodyThatFalls) {
  body->add(geometry.get(), AffineMatrix4x4::translate(0, 1, 0));
  ref_ptr<zorSDK::Simulation> const simulation = new zorSDK::Simulation;
  simulation->add(body.get());
  body->setPosition(Vec3(0, 0, 10));
  body->setAngularVelocity(Vec3(0, 0, 1));
  zorOSG::createVisual(body.get(), root.get());
  GeometryNode* const node = zorOSG::findGeometryNode(geometry.get(), root.get());
  ASSERT_TRUE(node);
  for (int i = 0; i < 30; ++i) {
    simulation->stepForward();
    update(*root);
  }
  AffineMatrix4x4 const expected = geometry->getTransform();
  EXPECT_TRUE(std::equal(expected.ptr(), expected.ptr() + 16, node->getMatrix().ptr()));
  EXPECT_NEAR(node->getMatrix().getTrans().z(), 10.0 - 0.5 * 9.81 * 0.25, 0.05);
  osg::Vec3d const turned = osg::Matrixd::transform3x3(osg::Vec3d(1, 0, 0), node->getMatrix());
  EXPECT_NEAR(turned.y(), std::sin(0.5), 0.01);
}

TEST_F(SceneGeometryNode, GoesWithItsGeometry) {
  ref_ptr<zorSDK::Simulation> const simulation = new zorSDK::Simulation;
  simulation->add(geometry.get());
  GeometryNode* const node = zorOSG::createVisual(geometry.get(), root.get());
  EXPECT_TRUE(node->getAutoRemove());
  simulation->remove(geometry.get());
  EXPECT_EQ(root->getNumChildren(), 0u);

  // Destroyed without ever having been in a space; one node stays because it was told to.
  osg::ref_ptr<GeometryNode> const stays = zorOSG::createVisual(geometry.get(), root.get());
  stays->setAutoRemove(false);
  zorOSG::createVisual(geometry.get(), root.get());
  ASSERT_EQ(root->getNumChildren(), 2u);
  geometry = nullptr;
  ASSERT_EQ(root->getNumChildren(), 1u);
  EXPECT_EQ(root->getChild(0), stays.get());
  EXPECT_EQ(stays->getGeometry(), nullptr);
  update(*root);
  EXPECT_EQ(SceneProbe(*root).triangles, 12u);
}

TEST_F(SceneGeometryNode, CanDieBeforeItsGeometry) {
  zorOSG::createVisual(geometry.get(), root.get());
  root = nullptr;
  geometry->add(new zorCollide::Sphere(1.0)); // nobody listens any more
  geometry = nullptr;
}

TEST_F(SceneGeometryNode, RendersSafelyAfterTheGeometryIsGone) {
  ref_ptr<zorSDK::Simulation> simulation = new zorSDK::Simulation;
  body->add(geometry.get());
  simulation->add(body.get());
  zorOSG::createVisual(simulation.get(), root.get());
  zorTest::Offscreen offscreen;
  offscreen.lookAt({0, -5, 2}, {0, 0, 0});
  osg::ref_ptr<osg::Image> const before = offscreen.render(root.get(), 2);
  geometry = nullptr;
  body = nullptr;
  simulation = nullptr;
  osg::ref_ptr<osg::Image> const after = offscreen.render(root.get(), 2);
  EXPECT_GT(std::abs(zorTest::brightness(*before, {80, 60}) - zorTest::brightness(*after, {80, 60})), 0.05);
}

TEST_F(SceneGeometryNode, RebuildsWhenAShapeChanges) {
  ref_ptr<zorCollide::Box> const box = new zorCollide::Box(1, 1, 1);
  geometry = new zorCollide::Geometry(box.get());
  GeometryNode* const node = zorOSG::createVisual(geometry.get(), root.get());
  osg::ref_ptr<osg::Group> const label = new osg::Group;
  node->addChild(label);
  box->setHalfExtents(Vec3(1, 1, 2));
  EXPECT_NEAR(SceneProbe(*root).volume, 16.0, 1e-4);
  geometry->add(new zorCollide::Box(0.5, 0.5, 0.5), AffineMatrix4x4::translate(10, 0, 0));
  EXPECT_NEAR(SceneProbe(*root).volume, 17.0, 1e-4);
  EXPECT_TRUE(node->containsNode(label.get())); // what others hung below the node stays

  int calls = 0;
  node->shapeCallback =
      zorCollide::Geometry::ShapeChangeEvent::CallbackType([&](zorCollide::Geometry*) { ++calls; });
  node->setGeometry(geometry.get());
  box->setHalfExtents(Vec3(1, 1, 1));
  EXPECT_EQ(calls, 1);
  EXPECT_NEAR(SceneProbe(*root).volume, 17.0, 1e-4); // the assigned callback did something else
}

TEST_F(SceneGeometryNode, DisabledGeometriesAreNotDrawn) {
  zorOSG::createVisual(geometry.get(), root.get());
  geometry->setEnable(false);
  update(*root);
  EXPECT_EQ(SceneProbe(*root).triangles, 0u);
  geometry->setEnable(true);
  update(*root);
  EXPECT_EQ(SceneProbe(*root).triangles, 12u);
}

TEST_F(SceneGeometryNode, KeepsTheIdentityOfItsBase) {
  osg::ref_ptr<GeometryNode> const node = new GeometryNode(geometry.get());
  osg::ref_ptr<osg::MatrixTransform> const other = new osg::MatrixTransform;
  EXPECT_STREQ(node->className(), "MatrixTransform");
  EXPECT_STREQ(node->libraryName(), "osg");
  EXPECT_TRUE(node->isSameKindAs(osg::ref_ptr<osg::Object>(node->cloneType()).get()));
  EXPECT_FALSE(node->isSameKindAs(other.get()));
  EXPECT_EQ(node->getRenderChild(GeometryNode::GEOMETRY_DATA), nullptr);
  EXPECT_THROW(node->selectRenderChild(static_cast<GeometryNode::RenderFlag>(4)), std::invalid_argument);
}

TEST_F(SceneGeometryNode, ACopyFollowsTheSameGeometry) {
  GeometryNode* const node = zorOSG::createVisual(geometry.get(), root.get());
  for (auto const flags : {osg::CopyOp::SHALLOW_COPY, osg::CopyOp::DEEP_COPY_ALL}) {
    osg::ref_ptr<GeometryNode> const copy =
        static_cast<GeometryNode*>(node->clone(osg::CopyOp(static_cast<osg::CopyOp::CopyFlags>(flags))));
    EXPECT_EQ(copy->getGeometry(), geometry.get());
    geometry->setPosition(Vec3(flags == osg::CopyOp::SHALLOW_COPY ? 3 : 4, 0, 0));
    osg::ref_ptr<osg::Group> const holder = new osg::Group;
    holder->addChild(copy);
    update(*holder);
    EXPECT_EQ(copy->getMatrix().getTrans().x(), geometry->getPosition().x());
    osg::Node* const child = copy->getRenderChild(GeometryNode::GEOMETRY_DATA);
    ASSERT_TRUE(child);
    EXPECT_TRUE(copy->containsNode(child));
    EXPECT_NE(child, node->getRenderChild(GeometryNode::GEOMETRY_DATA)); // each may be changed
    EXPECT_EQ(SceneProbe(*copy).meshes == SceneProbe(*node).meshes, flags == osg::CopyOp::SHALLOW_COPY);
  }
}

TEST_F(SceneGeometryNode, AreFoundByGeometry) {
  ref_ptr<zorCollide::Geometry> const unseen = new zorCollide::Geometry(new zorCollide::Sphere(1));
  osg::ref_ptr<osg::Group> const nested = new osg::Group;
  root->addChild(nested);
  GeometryNode* const deep = zorOSG::createVisual(geometry.get(), nested.get());
  GeometryNode* const flat = zorOSG::createVisual(geometry.get(), root.get());
  root->addChild(deep); // reached on two ways
  EXPECT_EQ(zorOSG::findGeometryNode(geometry.get(), root.get()), deep);
  auto const all = zorOSG::findGeometryNodes(geometry.get(), root.get());
  ASSERT_EQ(all.size(), 2u);
  EXPECT_EQ(all[1], flat);
  EXPECT_EQ(zorOSG::findGeometryNode(unseen.get(), root.get()), nullptr);
  EXPECT_TRUE(zorOSG::findGeometryNodes(unseen.get(), root.get()).empty());
  EXPECT_EQ(zorOSG::findGeometryNode(nullptr, root.get()), nullptr);
  EXPECT_EQ(zorOSG::asGeometryNode(root.get()), nullptr);
  EXPECT_EQ(zorOSG::asGeometryNode(flat), flat);
}

TEST_F(SceneGeometryNode, ScenesOfAssembliesAndSimulationsHoldEveryGeometryOnce) {
  ref_ptr<zorSDK::Simulation> const simulation = new zorSDK::Simulation;
  ref_ptr<zorSDK::Assembly> const outer = new zorSDK::Assembly("outer"),
                                  inner = new zorSDK::Assembly("inner");
  ref_ptr<zorCollide::Geometry> const floor =
      new zorCollide::Geometry(new zorCollide::Plane(Vec3(0, 0, 1), Vec3(0, 0, 0)));
  ref_ptr<zorCollide::Geometry> const loose = new zorCollide::Geometry(new zorCollide::Sphere(1));
  loose->setSensor(true);
  body->add(geometry.get());
  inner->add(body.get());
  outer->add(inner.get());
  outer->add(loose.get());
  simulation->add(outer.get());
  simulation->add(floor.get());

  zorOSG::createVisual(outer.get(), root.get());
  EXPECT_TRUE(zorOSG::findGeometryNode(geometry.get(), root.get()));
  EXPECT_TRUE(zorOSG::findGeometryNode(loose.get(), root.get()));
  EXPECT_FALSE(zorOSG::findGeometryNode(floor.get(), root.get()));

  osg::ref_ptr<osg::Group> const whole = new osg::Group;
  zorOSG::createVisual(simulation.get(), whole.get());
  for (zorCollide::Geometry* const each : {geometry.get(), loose.get(), floor.get()})
    EXPECT_EQ(zorOSG::findGeometryNodes(each, whole.get()).size(), 1u);
  EXPECT_EQ(zorOSG::createVisual(loose.get(), whole.get(), 1.0f, false, false), nullptr); // a sensor

  auto const [group, indices] = zorOSG::createVisualWithGeometryConnection(body.get(), root.get());
  ASSERT_EQ(indices.size(), 1u);
  EXPECT_EQ(zorOSG::asGeometryNode(group->getChild(0))->getGeometry(),
            body->getGeometries()[indices[0]].get());
}

TEST_F(SceneGeometryNode, AxesFollowAndOutliveNothing) {
  body->add(geometry.get());
  body->setPosition(Vec3(1, 2, 3));
  osg::MatrixTransform* const axes =
      zorOSG::createAxes(body.get(), AffineMatrix4x4::translate(0, 0, 1), root.get(), 2.0f);
  ref_ptr<zor::ObserverFrame> frame = new zor::ObserverFrame(body.get(), AffineMatrix4x4::translate(5, 0, 0));
  osg::MatrixTransform* const frameAxes = zorOSG::createVisual(frame.get(), root.get());
  body->setPosition(Vec3(10, 0, 0));
  update(*root);
  EXPECT_LT((axes->getMatrix().getTrans() - osg::Vec3d(10, 0, 1)).length(), 1e-9);
  EXPECT_LT((frameAxes->getMatrix().getTrans() - osg::Vec3d(15, 0, 0)).length(), 1e-9);
  frame = nullptr;
  body = nullptr;
  update(*root);
  EXPECT_EQ(axes->getNodeMask(), 0u);
  EXPECT_EQ(frameAxes->getNodeMask(), 0u);
  EXPECT_EQ(zorOSG::createAxes(geometry.get(), AffineMatrix4x4(), root.get()),
            nullptr); // no visual to follow
  EXPECT_THROW(zorOSG::createAxes(-1.0f), std::invalid_argument);
}

TEST(SceneTransform, ComposesScaleRotationAndTranslation) {
  osg::ref_ptr<zorOSG::Transform> const transform = new zorOSG::Transform;
  transform->setTranslate(Vec3(1, 2, 3));
  transform->setScale(Vec3(2, 0, -1)); // neither zero nor mirroring loses the rotation
  transform->setRotate(Quat(std::acos(-1.0) / 2.0, Vec3(0, 0, 1)));
  transform->setScale(Vec3(2, 3, 4));
  osg::Vec3d const point = osg::Vec3d(1, 1, 1) * transform->getMatrix();
  EXPECT_LT((point - osg::Vec3d(1 - 3, 2 + 2, 3 + 4)).length(), 1e-9);
  transform->setMatrix(AffineMatrix4x4::rotate(1.0, Vec3(1, 0, 0)) * AffineMatrix4x4::translate(7, 0, 0));
  transform->setScale(Vec3(2, 2, 2));
  EXPECT_LT((osg::Vec3d(1, 0, 0) * transform->getMatrix() - osg::Vec3d(9, 0, 0)).length(), 1e-9);
  EXPECT_FALSE(transform->addChild(static_cast<osg::Node*>(nullptr)));
}
