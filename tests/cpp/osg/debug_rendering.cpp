#include "ApplicationFixture.h"
#include "EdgeScene.h"
#include "TemporaryFolder.h"

#include <zor/Hinge.h>
#include <zorCollide/Plane.h>
#include <zorCollide/Sphere.h>
#include <zorOSG/SceneDecorator.h>

#include <osg/Geometry>
#include <osgDB/ReadFile>
#include <osgText/Text>

#include <cmath>

using namespace zorTest;

namespace {

osg::Node* findByName(osg::Node& root, std::string const& name) {
  struct Finder : osg::NodeVisitor {
    explicit Finder(std::string const& wanted) : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN), name(wanted) {
      setNodeMaskOverride(~0u);
    }
    void apply(osg::Node& node) override {
      if (node.getName() == name)
        found = &node;
      traverse(node);
    }
    std::string name;
    osg::Node* found = nullptr;
  } finder(name);
  root.accept(finder);
  return finder.found;
}

char const* const KINDS[] = {"Contacts", "ConstraintAxes", "BoundingBoxes", "CentersOfMass",
                             "CollisionShapes"};

} // namespace

/// Two boxes on a ground, one of them on a hinge, seen from the front on black.
class DebugRendering : public Application {
protected:
  void SetUp() override {
    ASSERT_TRUE(init({"--offscreen", "--window=160x120"}));
    app->initSimulation();
    app->getSimulation()->add(
        new zorCollide::Geometry(new zorCollide::Plane(zor::Vec3(0, 0, 1), zor::Vec3())));
    resting = addBox(zor::Vec3(-1.5, 0, 0.5), "resting");
    hung = addBox(zor::Vec3(1.5, 0, 2), "hung");
    app->getSimulation()->add(new zor::Hinge(zor::Vec3(1.5, 0, 3), zor::Vec3(0, 1, 0), hung, nullptr));
    app->getSceneDecorator()->setBackgroundColor(zor::Vec3(0, 0, 0));
    app->setCameraHome(zor::Vec3(0, -9, 2), zor::Vec3(0, 0, 1.5));
    runFrames(30);
  }

  zor::RigidBody* addBox(zor::Vec3 const& at, char const* name) {
    auto* const body =
        new zor::RigidBody(new zorCollide::Geometry(new zorCollide::Box(zor::Vec3(0.5, 0.5, 0.5))), name);
    body->setPosition(at);
    app->getSimulation()->add(body);
    return body;
  }

  void runFrames(int count) {
    stopAtFrame(count);
    EXPECT_EQ(app->run(), 0);
  }

  void showOnly(std::string const& wanted) {
    app->setEnableDebugRenderer(true);
    for (char const* const kind : KINDS)
      kindNode(kind)->setNodeMask(wanted == kind ? ~0u : 0u);
  }

  osg::Node* kindNode(char const* kind) { return findByName(*app->getSceneZorOSGRoot(), kind); }

  osg::Geometry* drawable(char const* kind) { return kindNode(kind)->asDrawable()->asGeometry(); }

  osg::Vec3Array& points(char const* kind) {
    return static_cast<osg::Vec3Array&>(*drawable(kind)->getVertexArray());
  }

  /** \return number of pixels that are not black */
  int drawn(char const* name) {
    app->takeScreenShot(folder.file(std::string(name) + ".png"));
    runFrames(2);
    auto const image = osgDB::readRefImageFile(folder.file(std::string(name) + ".png"));
    if (char const* const keep = std::getenv("ZOR_TEST_IMAGES"))
      osgDB::writeImageFile(*image, std::string(keep) + "/debug_" + name + ".png");
    return countShades(*image, 0.2);
  }

  TemporaryFolder folder;
  zor::RigidBody* resting = nullptr;
  zor::RigidBody* hung = nullptr;
};

TEST_F(DebugRendering, draws_each_kind_and_only_where_it_is_asked_for) {
  EXPECT_FALSE(app->getEnableDebugRenderer());
  EXPECT_EQ(drawn("nothing"), 0) << "there are no visuals";
  for (char const* const kind : KINDS) {
    showOnly(kind);
    EXPECT_GT(drawn(kind), 20) << kind;
  }
  app->setEnableDebugRenderer(false);
  EXPECT_EQ(drawn("off"), 0);
  app->setEnableTextDebugRendering(true);
  EXPECT_TRUE(app->getEnableTextDebugRendering());
  EXPECT_GT(drawn("names"), 20);
}

TEST_F(DebugRendering, tells_what_the_simulation_computes_with) {
  showOnly("Contacts");
  runFrames(1);
  osg::Vec3Array const& contacts = points("Contacts");
  ASSERT_EQ(contacts.size() % 3, 0u) << "two ends of a normal and a point each";
  EXPECT_GE(contacts.size(), 9u);
  for (osg::Vec3 const& point : contacts) {
    EXPECT_NEAR(std::abs(point.x() + 1.5f), 0.5f, 0.02f) << "at the corners of the resting box";
    EXPECT_LT(std::abs(point.z()), 0.5f);
  }

  showOnly("BoundingBoxes");
  runFrames(1);
  EXPECT_EQ(points("BoundingBoxes").size(), 2u * 24) << "the plane has no box";
  zor::Vec3 lower, upper;
  hung->getGeometries()[0]->getBounds(lower, upper);
  float highest = 0;
  for (osg::Vec3 const& point : points("BoundingBoxes"))
    highest = std::max(highest, point.z());
  EXPECT_NEAR(highest, upper.z(), 1e-4);

  showOnly("CollisionShapes");
  runFrames(1);
  int ofBodies = 0;
  for (osg::Vec3 const& point : points("CollisionShapes"))
    ofBodies += point.length() < 10 ? 1 : 0;
  EXPECT_EQ(ofBodies, 2 * 24) << "twelve edges a box, without diagonals";

  showOnly("CentersOfMass");
  runFrames(1);
  EXPECT_NEAR((points("CentersOfMass")[0] - osg::Vec3(-1.5f, 0, 0.5f)).length(), 0, 0.02);
}

TEST_F(DebugRendering, at_rest_writes_and_uploads_nothing) {
  app->setEnableDebugRenderer(true);
  for (char const* const kind : KINDS)
    kindNode(kind)->setNodeMask(~0u);
  app->setAutoStepping(false);
  runFrames(2);
  std::vector<std::pair<void const*, unsigned int>> before;
  for (char const* const kind : KINDS)
    before.emplace_back(points(kind).getDataPointer(), points(kind).getModifiedCount());
  runFrames(5);
  for (std::size_t i = 0; i < before.size(); ++i) {
    EXPECT_EQ(points(KINDS[i]).getDataPointer(), before[i].first) << KINDS[i];
    EXPECT_EQ(points(KINDS[i]).getModifiedCount(), before[i].second) << KINDS[i];
  }
  hung->setPosition(hung->getPosition() + zor::Vec3(0.1, 0, 0));
  runFrames(2);
  EXPECT_NE(points("CollisionShapes").getModifiedCount(), before[4].second)
      << "moved by hand while it is paused";
  EXPECT_EQ(points("CollisionShapes").getDataPointer(), before[4].first) << "in the same memory";
}

TEST_F(DebugRendering, follows_shapes_and_bodies_that_come_and_go) {
  showOnly("CollisionShapes");
  runFrames(1);
  std::size_t const edges = points("CollisionShapes").size();
  app->getSimulation()->remove(resting);
  runFrames(1);
  EXPECT_EQ(points("CollisionShapes").size(), edges - 24);
  static_cast<zorCollide::Box&>(*hung->getGeometries()[0]->getShape(0))
      .setHalfExtents(zor::Vec3(3, 0.5, 0.5));
  runFrames(1);
  float widest = 0;
  for (osg::Vec3 const& point : points("CollisionShapes"))
    widest = point.length() < 10 ? std::max(widest, point.x()) : widest;
  EXPECT_GT(widest, 3);
  hung->getGeometries()[0]->setEnable(false);
  runFrames(1);
  EXPECT_EQ(points("CollisionShapes").size(), edges - 48);
}

/** Single precision alone would be a metre off. */
TEST_F(DebugRendering, stays_exact_far_away_when_it_is_told_where_the_origin_is) {
  zor::Vec3 const far(2e7, 3e7, 0);
  resting->setMotionControl(zor::RigidBody::STATIC);
  resting->setPosition(far + zor::Vec3(0.25, 0, 1));
  app->setDebugRenderInverseMatrix(zor::AffineMatrix4x4::translate(far * -1));
  app->getSimulation()->remove(hung);
  showOnly("BoundingBoxes");
  runFrames(1);
  for (osg::Vec3 const& point : points("BoundingBoxes"))
    EXPECT_NEAR(std::abs(point.x() - 0.25f), 0.5f, 1e-4f);
  EXPECT_GT(drawn("far"), 20);
  EXPECT_THROW(app->setDebugRenderInverseMatrix(zor::AffineMatrix4x4::translate(zor::Vec3(NAN, 0, 0))),
               std::invalid_argument);
}

TEST_F(DebugRendering, is_switched_by_keys) {
  press('d');
  runFrames(2);
  EXPECT_TRUE(app->getEnableDebugRenderer());
  press(osgGA::GUIEventAdapter::KEY_F5);
  press(osgGA::GUIEventAdapter::KEY_F7);
  press(osgGA::GUIEventAdapter::KEY_F10);
  runFrames(2);
  EXPECT_EQ(kindNode("Contacts")->getNodeMask(), 0u);
  EXPECT_NE(kindNode("BoundingBoxes")->getNodeMask(), 0u);
  EXPECT_TRUE(app->getEnableTextDebugRendering());
  press('d');
  runFrames(2);
  EXPECT_FALSE(app->getEnableDebugRenderer());
  EXPECT_NE(app->getRenderProxyFactory(), nullptr);
}

TEST_F(DebugRendering, needs_graphics_and_a_simulation) {
  app = new zorOSG::ExampleApplication;
  app->setEnableDebugRenderer(true);
  EXPECT_FALSE(app->getEnableDebugRenderer());
  initWithout();
  app->initSimulation();
  app->setEnableDebugRenderer(true);
  app->setEnableTextDebugRendering(true);
  EXPECT_FALSE(app->getEnableDebugRenderer());
  EXPECT_FALSE(app->getEnableTextDebugRendering());
}
