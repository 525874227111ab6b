// How visuals keep up with what moves: everything that moves does, nothing else costs anything, and the
// pictures are those of the plain scene graph.

#include "Offscreen.h"
#include "SceneProbe.h"

#include <zorCollide/Box.h>
#include <zorCollide/Cylinder.h>
#include <zorCollide/Plane.h>
#include <zorCollide/Sphere.h>
#include <zorOSG/CreateVisual.h>
#include <zorOSG/Lookup.h>
#include <zorOSG/RenderState.h>
#include <zorOSG/SmoothNormals.h>
#include <zorSDK/Simulation.h>

#include <gtest/gtest.h>
#include <osg/Material>

#include <functional>
#include <thread>

using zor::AffineMatrix4x4;
using zor::Quat;
using zor::ref_ptr;
using zor::Vec3;
using zorOSG::GeometryNode;
using zorTest::update;

namespace {

class SceneMotion : public testing::Test {
protected:
  bool isCurrent(GeometryNode const& node) const {
    AffineMatrix4x4 const place = node.getGeometry()->getTransform();
    return std::equal(place.ptr(), place.ptr() + 16, node.getMatrix().ptr());
  }

  ref_ptr<zorCollide::Geometry> geometry = new zorCollide::Geometry(new zorCollide::Box(0.5, 0.5, 0.5));
  ref_ptr<zor::RigidBody> body = new zor::RigidBody("cube");
  osg::ref_ptr<osg::Group> root = new osg::Group;
};

/** Passes on, so that the node is culled step by step. */
class PlainCull : public osg::NodeCallback {};

unsigned int maxDifference(osg::Image const& a, osg::Image const& b) {
  unsigned int difference = 0;
  for (int y = 0; y < a.t(); ++y)
    for (unsigned int i = 0; i < a.getRowSizeInBytes(); ++i)
      difference = std::max(difference,
                            static_cast<unsigned int>(std::abs(int{a.data(0, y)[i]} - int{b.data(0, y)[i]})));
  return difference;
}

} // namespace

TEST_F(SceneMotion, FollowsEveryKindOfMotion) {
  ref_ptr<zor::Frame> const carrier = new zor::Frame, base = new zor::Frame;
  ref_ptr<zor::RigidBody> const other = new zor::RigidBody;
  other->setPosition(Vec3(7, 0, 0));
  ref_ptr<zorSDK::Simulation> const simulation = new zorSDK::Simulation;
  GeometryNode* const node = zorOSG::createVisual(geometry.get(), root.get());
  GeometryNode* const second = zorOSG::createVisual(geometry.get(), root.get());
  AffineMatrix4x4 const place =
      AffineMatrix4x4::rotate(1.0, Vec3(0, 0, 1)) * AffineMatrix4x4::translate(1, 2, 3);
  carrier->setParent(base.get());

  std::vector<std::function<void()>> const motions = {
      [&] { geometry->setPosition(Vec3(1, 0, 0)); },
      [&] { geometry->setRotation(Quat(0.5, Vec3(0, 1, 0))); },
      [&] { geometry->setTransform(place); },
      [&] { geometry->setLocalTransform(AffineMatrix4x4::translate(4, 4, 4)); },
      [&] { geometry->getFrame()->setLocalTranslate(Vec3(0, 0, 9)); },
      [&] { geometry->getFrame()->setParent(carrier.get()); },
      [&] { carrier->setTranslate(Vec3(0, 5, 0)); },
      [&] { base->setTranslate(Vec3(0, 0, 5)); },
      [&] { carrier->setParent(nullptr); },
      [&] { geometry->getFrame()->setParent(nullptr); },
      [&] { body->add(geometry.get(), place); },
      [&] { body->setPosition(Vec3(0, 0, 20)); },
      [&] { body->setTransform(place); },
      [&] { simulation->add(body.get()); },
      [&] { simulation->stepForward(); },
      [&] { body->setMotionControl(zor::RigidBody::KINEMATICS); },
      [&] {
        body->setVelocity(Vec3(1, 0, 0));
        simulation->stepForward();
      },
      [&] { geometry->setLocalTransform(AffineMatrix4x4::translate(0, 1, 0)); },
  };
  for (size_t i = 0; i < motions.size(); ++i) {
    motions[i]();
    update(*root);
    EXPECT_TRUE(isCurrent(*node)) << "after motion " << i;
    EXPECT_TRUE(isCurrent(*second)) << "after motion " << i;
    EXPECT_EQ(root->getNumChildrenRequiringUpdateTraversal(), 0u) << "after motion " << i;
  }

  // Leaving the simulation would take the nodes away.
  node->setAutoRemove(false);
  second->setAutoRemove(false);
  simulation->remove(body.get());
  body->remove(geometry.get());
  other->add(geometry.get(), AffineMatrix4x4());
  update(*root);
  EXPECT_TRUE(isCurrent(*node));
}

TEST_F(SceneMotion, OnlyWhatMovesAsksForUpdates) {
  ref_ptr<zorSDK::Simulation> const simulation = new zorSDK::Simulation;
  for (int i = 0; i < 3; ++i) {
    ref_ptr<zor::RigidBody> const each =
        new zor::RigidBody(new zorCollide::Geometry(new zorCollide::Sphere(0.3)));
    each->setPosition(Vec3(2 * i, 0, 0));
    if (i < 2)
      each->setMotionControl(zor::RigidBody::STATIC);
    simulation->add(each.get());
  }
  osg::Group* const group = zorOSG::createVisual(simulation.get(), root.get());
  EXPECT_EQ(root->getNumChildrenRequiringUpdateTraversal(), 0u);
  simulation->stepForward();
  EXPECT_EQ(group->getNumChildrenRequiringUpdateTraversal(), 1u); // the one that falls
  simulation->stepForward();
  EXPECT_EQ(group->getNumChildrenRequiringUpdateTraversal(), 1u);
  update(*root);
  EXPECT_EQ(group->getNumChildrenRequiringUpdateTraversal(), 0u);

  // A node that goes while it waits leaves nothing behind.
  simulation->stepForward();
  group->removeChildren(0, group->getNumChildren());
  EXPECT_EQ(root->getNumChildrenRequiringUpdateTraversal(), 0u);
}

TEST_F(SceneMotion, NodesOfOtherScenesWaitForTheirs) {
  osg::ref_ptr<osg::Group> const other = new osg::Group;
  GeometryNode* const here = zorOSG::createVisual(geometry.get(), root.get());
  GeometryNode* const there = zorOSG::createVisual(geometry.get(), other.get());
  osg::ref_ptr<GeometryNode> const loose = new GeometryNode(geometry.get());
  osg::ref_ptr<osg::Object> const copy = here->clone(osg::CopyOp::DEEP_COPY_ALL);
  geometry->setPosition(Vec3(3, 0, 0));
  update(*root);
  EXPECT_TRUE(isCurrent(*here));
  EXPECT_FALSE(isCurrent(*there)); // another thread may be drawing it
  update(*other);
  EXPECT_TRUE(isCurrent(*there));
  EXPECT_FALSE(isCurrent(*loose));
  root->addChild(loose);
  osg::ref_ptr<osg::Group> const holder = new osg::Group;
  root->addChild(holder);
  holder->addChild(static_cast<GeometryNode*>(copy.get()));
  update(*root);
  EXPECT_TRUE(isCurrent(*loose));
  EXPECT_TRUE(isCurrent(static_cast<GeometryNode&>(*copy)));

  geometry->setPosition(Vec3(4, 0, 0));
  update(*loose); // a traversal that begins at the node itself
  EXPECT_TRUE(isCurrent(*loose));
  geometry->setPosition(Vec3(5, 0, 0));
  loose->updateTransform();
  EXPECT_TRUE(isCurrent(*loose));
}

TEST_F(SceneMotion, GeometriesMayMoveInSeveralThreads) {
  constexpr int count = 200;
  std::vector<ref_ptr<zorCollide::Geometry>> geometries;
  for (int i = 0; i < count; ++i) {
    geometries.emplace_back(new zorCollide::Geometry(new zorCollide::Box(0.5, 0.5, 0.5)));
    zorOSG::createVisual(geometries.back().get(), root.get());
  }
  auto const move = [&](int first) {
    for (int round = 1; round <= 50; ++round)
      for (int i = first; i < count; i += 2)
        geometries[static_cast<size_t>(i)]->setPosition(Vec3(round, i, 0));
  };
  std::thread first(move, 0), second(move, 1);
  first.join();
  second.join();
  update(*root);
  for (unsigned int i = 0; i < root->getNumChildren(); ++i)
    EXPECT_TRUE(isCurrent(*zorOSG::asGeometryNode(root->getChild(i))));
  EXPECT_EQ(root->getNumChildrenRequiringUpdateTraversal(), 0u);
}

TEST_F(SceneMotion, BoundsMoveAlong) {
  geometry->add(new zorCollide::Box(0.1, 0.1, 2), AffineMatrix4x4::translate(1, 0, 0));
  GeometryNode* const node = zorOSG::createVisual(geometry.get(), root.get());
  auto const expectExact = [&](char const* when) {
    osg::BoundingSphere const kept = node->getBound();
    osg::BoundingSphere const above = root->getBound();
    node->dirtyBound();
    EXPECT_LT((kept.center() - node->getBound().center()).length(), 1e-5) << when;
    EXPECT_NEAR(kept.radius(), node->getBound().radius(), 1e-5) << when;
    EXPECT_LT((above.center() - root->getBound().center()).length(), 1e-5) << when;
  };
  expectExact("at first");
  geometry->setTransform(AffineMatrix4x4::rotate(1.0, Vec3(0, 1, 0)) * AffineMatrix4x4::translate(5, 0, 0));
  update(*root);
  expectExact("moved");
  EXPECT_NEAR(node->getBound().center().x(), 5.0, 1.5);
  node->addChild(new osg::MatrixTransform);
  node->setMatrix(osg::Matrixd::scale(2, 2, 2));
  expectExact("scaled by somebody");
  geometry->setPosition(Vec3(-5, 0, 0));
  update(*root);
  expectExact("moved again");
  geometry->add(new zorCollide::Sphere(3), AffineMatrix4x4());
  update(*root);
  expectExact("of another form");
}

TEST_F(SceneMotion, LooksAsTheSceneGraphWouldDrawIt) {
  ref_ptr<zorSDK::Simulation> const simulation = new zorSDK::Simulation;
  auto const add = [&](zorCollide::Shape* shape, Vec3 const& position) {
    ref_ptr<zor::RigidBody> const each = new zor::RigidBody(new zorCollide::Geometry(shape));
    each->setTransform(AffineMatrix4x4::rotate(0.4, Vec3(1, 1, 0)) * AffineMatrix4x4::translate(position));
    simulation->add(each.get());
    return each->getGeometries()[0].get();
  };
  add(new zorCollide::Box(0.5, 0.3, 0.7), Vec3(-1, 0, 0));
  zorCollide::Geometry* const red = add(new zorCollide::Box(0.5, 0.3, 0.7), Vec3(1, 0, 0));
  zorCollide::Geometry* const glass = add(new zorCollide::Cylinder(0.5, 1.0), Vec3(0, -1, 0));
  add(new zorCollide::Cylinder(1.0, 30.0), Vec3(3, 20, 0)); // reaches into the picture and far away
  add(new zorCollide::Sphere(1.0), Vec3(0, -30, 0));        // behind the eye
  osg::Group* const group = zorOSG::createVisual(simulation.get(), root.get());
  zorOSG::setDiffuseColor(red, zor::Vec4f(0.9f, 0.1f, 0.1f, 1.0f), root.get());
  zorOSG::setDiffuseColor(glass, zor::Vec4f(0.1f, 0.9f, 0.1f, 0.5f), root.get());

  zorTest::Offscreen offscreen;
  offscreen.lookAt({0, -6, 2}, {0, 0, 0});
  osg::ref_ptr<osg::Image> const ours = offscreen.render(root.get(), 2);
  for (unsigned int i = 0; i < group->getNumChildren(); ++i)
    group->getChild(i)->setCullCallback(new PlainCull);
  osg::ref_ptr<osg::Image> const plain = offscreen.render(root.get(), 2);
  EXPECT_LE(maxDifference(*ours, *plain), 2u); // depths are cut at a slightly other place
  EXPECT_GT(maxDifference(*ours, *offscreen.render(new osg::Group, 2)), 100u);
}

TEST_F(SceneMotion, SharedMeshesStayAsTheyAre) {
  ref_ptr<zorCollide::Geometry> const equal = new zorCollide::Geometry(new zorCollide::Box(0.5, 0.5, 0.5));
  GeometryNode* const first = zorOSG::createVisual(geometry.get(), root.get());
  GeometryNode* const second = zorOSG::createVisual(equal.get(), root.get());
  osg::Node* const shared = first->getChild(0);
  ASSERT_EQ(shared, second->getChild(0));
  EXPECT_THROW(zorOSG::setDiffuseColor(shared, zor::Vec4f(1, 0, 0, 1)), std::invalid_argument);
  osg::Node* const own = first->getRenderChild(GeometryNode::GEOMETRY_DATA);
  zorOSG::setDiffuseColor(own, zor::Vec4f(1, 0, 0, 1));
  EXPECT_EQ(first->getNumChildren(), 1u);
  EXPECT_EQ(first->getChild(0), own);
  EXPECT_EQ(second->getChild(0), shared);
  EXPECT_FALSE(shared->getStateSet());

  zorOSG::smoothNormals(second, 0.5f); // edits a mesh of the node's own, which is still its render child
  EXPECT_NE(second->getChild(0), shared);
  EXPECT_EQ(second->getRenderChild(GeometryNode::GEOMETRY_DATA), second->getChild(0));
}

TEST_F(SceneMotion, DrawablesAreFoundWhereverTheyStand) {
  ref_ptr<zor::ParticleSystem> const particles = new zor::ParticleSystem;
  osg::ref_ptr<osg::Group> const left = new osg::Group, right = new osg::Group, deep = new osg::Group;
  root->addChild(left);
  root->addChild(right);
  left->addChild(deep);
  right->addChild(deep); // two ways lead there
  EXPECT_EQ(zorOSG::findParticleSystemDrawable(root.get()), nullptr);
  osg::Geode* const first = zorOSG::createVisual(particles.get(), deep.get());
  osg::Geode* const second = zorOSG::createVisual(particles.get(), right.get());
  EXPECT_EQ(zorOSG::findParticleSystemDrawable(root.get()), first->getDrawable(0));
  EXPECT_EQ(zorOSG::findParticleSystemDrawable(left.get()), first->getDrawable(0));
  left->removeChild(deep);
  EXPECT_EQ(zorOSG::findParticleSystemDrawable(left.get()), nullptr);
  right->removeChild(deep);
  EXPECT_EQ(zorOSG::findParticleSystemDrawable(root.get()), second->getDrawable(0));
  osg::ref_ptr<osg::Object> const copy = second->getDrawable(0)->clone(osg::CopyOp::SHALLOW_COPY);
  left->addChild(static_cast<osg::Drawable*>(copy.get()));
  EXPECT_EQ(zorOSG::findParticleSystemDrawable(left.get()), copy.get());
  right->removeChild(second);
  EXPECT_EQ(zorOSG::findParticleSystemDrawable(root.get()), copy.get());
  EXPECT_EQ(zorOSG::findParticleSystemDrawable(nullptr), nullptr);
}
