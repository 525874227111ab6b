#include "ApplicationFixture.h"

#include <zor/HighAccuracyTimer.h>
#include <zorOSG/CameraFunctions.h>
#include <zorOSG/ClipPlane.h>
#include <zorOSG/GeometryNode.h>
#include <zorOSG/Lookup.h>
#include <zorOSG/PickHandler.h>

#include <osg/Camera>
#include <osg/MatrixTransform>

using namespace zorTest;
using zorSDK::GuiEventListener;

namespace {

constexpr int SHIFT = osgGA::GUIEventAdapter::KEY_Shift_L;
constexpr int LEFT = 1, RIGHT = 3; // as the viewer counts buttons

/// Finds a node by its name, hidden or not.
class NodeFinder : public osg::NodeVisitor {
public:
  NodeFinder(osg::Node& root, std::string name) : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN), m_name(name) {
    setNodeMaskOverride(~0u);
    root.accept(*this);
  }
  void apply(osg::Node& node) override {
    if (node.getName() == m_name)
      found = &node;
    traverse(node);
  }
  osg::Node* found = nullptr;

private:
  std::string m_name;
};

} // namespace

class ApplicationPicking : public Application {
protected:
  void SetUp() override {
    ASSERT_TRUE(init({"--offscreen", "--window=320x240"}));
    app->initSimulation();
    app->getSimulation()->setUniformGravity(zor::Vec3());
    box = addRedBox(app->getSimulation(), app->getSceneRoot());
    app->setCameraHome(zor::Vec3(0, -10, 0), zor::Vec3(0, 0, 0));
    auto* const state = events().getCurrentEventState();
    state->setInputRange(0, 0, 320, 240);
    state->setMouseYOrientation(osgGA::GUIEventAdapter::Y_INCREASING_UPWARDS);
    timer.start();
    frames(1);
    handler = app->getPickHandler();
  }

  void frames(int count) {
    for (int i = 0; i < count; ++i)
      app->executeOneStepWithGraphics(timer);
  }

  /** Presses at the box, moves the mouse to the upper right in a few frames, and keeps it there. */
  void drag(int button = LEFT) {
    events().mouseButtonPress(160, 120, static_cast<unsigned>(button));
    frames(1);
    for (int i = 1; i <= 4; ++i) {
      events().mouseMotion(160.0f + 20 * i, 120.0f + 10 * i);
      frames(1);
    }
    frames(90);
  }

  void release(int button = LEFT) {
    events().mouseButtonRelease(240, 160, static_cast<unsigned>(button));
    frames(1);
  }

  osg::Matrixd view() const { return app->getCamera()->getViewMatrix(); }

  zor::HighAccuracyTimer timer;
  zor::RigidBody* box = nullptr;
  zorOSG::PickHandler* handler = nullptr;
};

TEST_F(ApplicationPicking, a_drag_pulls_the_body_under_the_cursor_at_its_depth) {
  osg::Matrixd const before = view();
  events().keyPress(SHIFT);
  drag();
  EXPECT_EQ(handler->getPickedBody(), box);
  // What the mouse shows at the depth of the grabbed front of the box.
  zor::Vec3 near, far;
  handler->getNearFarPoints(app->getCamera(), near, far, 240, 160);
  zor::Vec3 const cursor = near + (far - near) * ((-0.5 - near.y()) / (far.y() - near.y()));
  EXPECT_GT(cursor.x(), 1);
  EXPECT_TRUE(handler->getTarget().equals(cursor, 1e-3)) << handler->getTarget() << " " << cursor;
  EXPECT_TRUE(handler->getGrabPoint().equals(cursor, 0.05)) << handler->getGrabPoint() << " " << cursor;
  EXPECT_NEAR(box->getPosition().y(), -0.5, 0.6) << "the body hangs at the point that is held";
  EXPECT_EQ(view(), before) << "the camera has to stay";

  // Without the key the drag goes on; with the button it ends, and nothing is left behind.
  events().keyRelease(SHIFT);
  frames(2);
  EXPECT_EQ(handler->getPickedBody(), box);
  release();
  EXPECT_EQ(handler->getPickedBody(), nullptr);
  EXPECT_TRUE(app->getSimulation()->getConstraints().empty());
  EXPECT_EQ(box->getAngularVelocityDamping(), 0);
}

TEST_F(ApplicationPicking, other_buttons_keys_and_bodies_leave_the_drag_to_the_camera) {
  osg::Matrixd before = view();
  drag(); // no key
  EXPECT_EQ(box->getPosition(), zor::Vec3());
  EXPECT_NE(view(), before);
  release();

  app->setCameraHome(zor::Vec3(0, -10, 0), zor::Vec3(0, 0, 0));
  handler->setActivateMouseButton(GuiEventListener::RIGHT_BUTTON);
  handler->setActivateModKeyMask(GuiEventListener::MODKEY_SHIFT | GuiEventListener::MODKEY_RIGHT_CTRL);
  events().keyPress(SHIFT);
  drag(RIGHT); // control is missing
  release(RIGHT);
  EXPECT_EQ(box->getPosition(), zor::Vec3());
  app->setCameraHome(zor::Vec3(0, -10, 0), zor::Vec3(0, 0, 0));
  events().keyPress(osgGA::GUIEventAdapter::KEY_Control_R);
  drag(LEFT);
  release(LEFT);
  EXPECT_EQ(box->getPosition(), zor::Vec3());
  app->setCameraHome(zor::Vec3(0, -10, 0), zor::Vec3(0, 0, 0));
  frames(1);
  drag(RIGHT);
  EXPECT_GT(box->getPosition().x(), 0.5);
  release(RIGHT);

  box->setPosition(zor::Vec3());
  box->setMotionControl(zor::RigidBody::STATIC);
  app->setCameraHome(zor::Vec3(0, -10, 0), zor::Vec3(0, 0, 0));
  frames(2);
  before = view();
  drag(RIGHT);
  EXPECT_EQ(handler->getPickedBody(), nullptr);
  EXPECT_NE(view(), before);
  EXPECT_EQ(handler->pick(1, 1).getGeometry(), nullptr);

  EXPECT_THROW(handler->setActivateMouseButton(8), std::invalid_argument);
  EXPECT_THROW(handler->setActivateModKeyMask(0x40), std::invalid_argument);
  EXPECT_EQ(handler->getActivateMouseButton(), GuiEventListener::RIGHT_BUTTON);
}

TEST_F(ApplicationPicking, the_nearest_shape_is_met_and_others_are_seen_through_on_request) {
  zor::ref_ptr<zorCollide::Geometry> const wall =
      new zorCollide::Geometry(new zorCollide::Box(zor::Vec3(2, 0.1, 2)));
  wall->setPosition(zor::Vec3(0, -3, 0));
  app->getSimulation()->add(wall.get());
  zorOSG::createVisual(wall.get(), app->getSceneRoot());
  frames(1);
  zorSDK::PickResult const front = handler->intersect(160, 120, false);
  EXPECT_EQ(front.getGeometry(), wall.get());
  EXPECT_EQ(front.getRigidBody(), nullptr);
  EXPECT_FALSE(front.isDynamic());
  zorSDK::PickResult const behind = handler->intersect(160, 120, true);
  EXPECT_EQ(behind.getRigidBody(), box);
  EXPECT_TRUE(behind.getPoint().equals(zor::Vec3(0, -0.5, 0), 0.05)) << behind.getPoint();
  EXPECT_EQ(handler->intersect(zor::Vec3(0, 5, 0), zor::Vec3(0, -5, 0), false).getRigidBody(), box);
  EXPECT_FALSE(handler->intersect(zor::Vec3(0, 5, 0), zor::Vec3(0, 4, 0), false).hasHit());
  EXPECT_THROW(handler->intersect(zor::Vec3(), zor::Vec3(), false), std::invalid_argument);
  EXPECT_EQ(handler->pick(160, 120).getGeometry(), wall.get());
  EXPECT_EQ(handler->getPickedBody(), nullptr) << "what is behind the wall is not taken hold of";

  auto* const space = app->getSimulation()->getSpace();
  auto const hovered = zorOSG::getHoveredGeometryContact(app->getCamera(), space, 160, 120);
  EXPECT_EQ(hovered.getGeometry1(), wall.get());
  EXPECT_TRUE(zorOSG::getHoveredGeometryContact(app->getCamera(), space, 1, 1).isEmpty());
  EXPECT_THROW(zorOSG::getHoveredGeometryContact(nullptr, space, 1, 1), std::invalid_argument);
  EXPECT_THROW(zorOSG::getHoveredGeometryContact(app->getCamera(), nullptr, 1, 1), std::invalid_argument);
}

TEST_F(ApplicationPicking, what_a_clip_plane_cuts_away_is_not_met) {
  osg::Group* const root = app->getSceneRoot();
  osg::ref_ptr<zorOSG::GeometryNode> const visual =
      zorOSG::findGeometryNode(box->getGeometries()[0].get(), root);
  osg::ref_ptr<osg::Group> const above = visual->getParent(0);
  osg::ref_ptr<zorOSG::ClipPlane> const cut = new zorOSG::ClipPlane(zor::Vec3(0, 0.2, 0), zor::Vec3(0, 1, 0));
  osg::ref_ptr<osg::MatrixTransform> const shifted = new osg::MatrixTransform,
                                           back = new osg::MatrixTransform;
  shifted->addChild(cut);
  cut->addChild(back);
  back->addChild(visual);
  above->replaceChild(visual, shifted);
  frames(1);

  // The front is gone: what is seen is the inside of the back.
  zorSDK::PickResult const inside = handler->intersect(160, 120, false);
  EXPECT_EQ(inside.getRigidBody(), box);
  EXPECT_TRUE(inside.getPoint().equals(zor::Vec3(0, 0.5, 0), 0.05)) << inside.getPoint();
  EXPECT_TRUE(inside.getNormal().equals(zor::Vec3(0, -1, 0), 1e-6)) << inside.getNormal();
  auto* const space = app->getSimulation()->getSpace();
  auto const hovered = zorOSG::getHoveredGeometryContact(app->getCamera(), space, 160, 120);
  EXPECT_EQ(hovered.getGeometry1(), visual->getGeometry());
  EXPECT_EQ(handler->pick(160, 120).getRigidBody(), box);
  EXPECT_TRUE(handler->getGrabPoint().equals(inside.getPoint(), 1e-6));
  handler->reset();
  zor::Vec3 const behind(0, 5, 0), ahead(0, -5, 0), within(0, 0, 0);
  EXPECT_TRUE(handler->intersect(behind, ahead, true).getPoint().equals(zor::Vec3(0, 0.5, 0), 1e-6));
  EXPECT_TRUE(handler->intersect(within, behind, false).getPoint().equals(zor::Vec3(0, 0.5, 0), 1e-6))
      << "also if the camera is inside";
  EXPECT_EQ(space->castRay(ahead, zor::Vec3(0, 1, 0), 10).getPoint(), zor::Vec3(0, -0.5, 0))
      << "the simulation knows of no planes";

  // What is beside or behind is met through the hole, and planes move with the nodes above them.
  zor::ref_ptr<zorCollide::Geometry> const wall =
      new zorCollide::Geometry(new zorCollide::Box(zor::Vec3(2, 0.1, 2)));
  wall->setPosition(zor::Vec3(0, 3, 0));
  app->getSimulation()->add(wall.get());
  zorOSG::createVisual(wall.get(), root);
  frames(1);
  shifted->setMatrix(osg::Matrixd::translate(0, 0.5, 0));
  back->setMatrix(osg::Matrixd::translate(0, -0.5, 0));
  EXPECT_EQ(handler->intersect(160, 120, false).getGeometry(), wall.get());
  EXPECT_FALSE(handler->intersect(160, 120, true).hasHit());
  cut->setNormal(zor::Vec3(0, -1, 0));
  EXPECT_TRUE(handler->intersect(160, 120, false).getPoint().equals(zor::Vec3(0, -0.5, 0), 0.05));

  // Another, whole visual counts in the scene of its camera.
  cut->setNormal(zor::Vec3(0, 1, 0));
  osg::ref_ptr<osg::Group> const elsewhere = new osg::Group;
  zorOSG::createVisual(box, elsewhere.get());
  EXPECT_EQ(handler->intersect(160, 120, false).getGeometry(), wall.get());
  root->addChild(elsewhere);
  EXPECT_EQ(handler->intersect(160, 120, false).getRigidBody(), box);
  root->removeChild(elsewhere);
  cut->setEnable(false);
  EXPECT_EQ(handler->intersect(160, 120, false).getRigidBody(), box);
}

TEST_F(ApplicationPicking, what_goes_while_it_is_dragged_is_let_go_of) {
  events().keyPress(SHIFT);
  zor::ref_ptr<zor::RigidBody> const kept = box;
  drag();
  app->getSimulation()->remove(box);
  frames(2);
  EXPECT_EQ(handler->getPickedBody(), nullptr);
  EXPECT_TRUE(app->getSimulation()->getConstraints().empty());
  EXPECT_EQ(kept->getAngularVelocityDamping(), 0);
  release();

  app->getSimulation()->add(kept.get());
  kept->setPosition(zor::Vec3());
  frames(2);
  drag();
  ASSERT_EQ(handler->getPickedBody(), kept.get());
  app->clearScene();
  frames(2);
  EXPECT_EQ(handler->getPickedBody(), nullptr);

  app->getSimulation()->add(kept.get());
  handler->pick(160, 120);
  zor::ref_ptr<zorSDK::Simulation> const other = new zorSDK::Simulation;
  app->initSimulation(other.get());
  frames(2);
  EXPECT_EQ(handler->getPickedBody(), nullptr);
  EXPECT_FALSE(handler->grab(kept.get(), zor::Vec3())) << "the body is in another simulation";

  // Another handler, with the same view, that goes while it holds a body.
  zor::ref_ptr<zorOSG::PickHandler> own = new zorOSG::PickHandler(app->getViewer(), app->getSceneRoot());
  EXPECT_THROW(own->pick(1, 1), std::runtime_error) << "it is in no simulation";
  zor::ref_ptr<zor::RigidBody> const another = addRedBox(other.get(), app->getSceneRoot());
  other->add(own.get());
  frames(1);
  EXPECT_EQ(own->pick(160, 120).getRigidBody(), another.get());
  EXPECT_EQ(other->getConstraints().size(), 1u);
  other->remove(own.get());
  EXPECT_TRUE(other->getConstraints().empty());
  own->setSimulation(other.get());
  own->pick(160, 120);
  EXPECT_EQ(other->getConstraints().size(), 1u);
  unsigned const drawn = app->getSceneRoot()->getNumChildren();
  own = nullptr;
  EXPECT_TRUE(other->getConstraints().empty());
  EXPECT_EQ(app->getSceneRoot()->getNumChildren(), drawn - 1) << "the spring has to go with its handler";
}

TEST_F(ApplicationPicking, the_spring_is_seen_while_it_pulls_and_never_pulls_harder_than_allowed) {
  NodeFinder const finder(*app->getRoot(), "MouseSpring");
  ASSERT_NE(finder.found, nullptr);
  EXPECT_EQ(finder.found->getNodeMask(), 0u);
  handler->setForceLimit(20);
  double const limit = 20 * box->getMassProperties()->getMass();
  handler->pick(160, 120);
  EXPECT_NE(finder.found->getNodeMask(), 0u);
  handler->moveTo(zor::Vec3(8, -0.5, 0));
  double strongest = 0;
  for (int i = 0; i < 100; ++i) {
    app->getSimulation()->stepForward();
    zor::Vec3 const force = handler->getForce();
    strongest = std::max({strongest, std::abs(force.x()), std::abs(force.y()), std::abs(force.z())});
  }
  EXPECT_NEAR(strongest, limit, 1e-3 * limit);
  handler->reset();
  EXPECT_EQ(finder.found->getNodeMask(), 0u);
  EXPECT_THROW(handler->setForceLimit(0), std::invalid_argument);
  EXPECT_THROW(handler->createMouseSpringRendering(-1), std::invalid_argument);

  app->setDebugRenderInverseMatrix(zor::AffineMatrix4x4(zor::Vec3(-1e6, 0, 0)));
  box->setPosition(zor::Vec3(1e6, 0, 0)); // drawn at the origin by a script that moves the visuals
  box->setVelocity(zor::Vec3());
  box->setRotation(zor::Quat());
  box->setAngularVelocity(zor::Vec3());
  EXPECT_TRUE(handler->pick(160, 120).getPoint().equals(zor::Vec3(1e6, -0.5, 0), 0.05));
  EXPECT_LT((finder.found->getBound().center() - osg::Vec3(0, -0.5f, 0)).length(), 0.1);
  EXPECT_THROW(
      app->setDebugRenderInverseMatrix(zor::AffineMatrix4x4() * zor::AffineMatrix4x4(zor::Vec3(NAN, 0, 0))),
      std::invalid_argument);
}

TEST_F(ApplicationPicking, orbit_cameras_follow_their_node) {
  osg::ref_ptr<osg::Group> const node =
      zorOSG::findGeometryNode(box->getGeometries()[0].get(), app->getSceneRoot());
  ASSERT_TRUE(node.valid());
  zor::Vec3 const eye(3, -4, 2), up(0, 0, 1);
  EXPECT_TRUE(zorOSG::setOrbitCamera(app->getViewer(), node, eye, zor::Vec3(), up));
  frames(2);
  box->setPosition(zor::Vec3(5, 0, 0));
  frames(3);
  osg::Vec3d at, center, above;
  view().getLookAt(at, center, above);
  EXPECT_LT((at - osg::Vec3d(8, -4, 2)).length(), 0.1) << at.x() << " " << at.y() << " " << at.z();
  EXPECT_FALSE(zorOSG::setOrbitCamera(nullptr, node, eye, zor::Vec3(), up));
  EXPECT_FALSE(zorOSG::setOrbitCamera(app->getViewer(), nullptr, eye, zor::Vec3(), up));
  EXPECT_THROW(zorOSG::setOrbitCamera(app->getViewer(), node, eye, eye, up), std::invalid_argument);
  EXPECT_THROW(zorOSG::setOrbitCamera(app->getViewer(), node, eye, zor::Vec3(), up, 3),
               std::invalid_argument);
}

TEST_F(ApplicationPicking, solver_types_and_texture_cameras) {
  using App = zorOSG::ExampleApplication;
  EXPECT_EQ(app->getSolverType(), App::ITERATIVE);
  app->setSolverType(App::MULTI);
  EXPECT_GT(app->getSimulation()->getNumSubSteps(), 1u);
  app->changeSolver();
  EXPECT_EQ(app->getSolverType(), App::ITERATIVE);
  EXPECT_EQ(app->getSimulation()->getNumSubSteps(), 1u);
  EXPECT_THROW(app->setSolverType(App::NUM_SOLVERS), std::invalid_argument);
  app->changeSolver();
  zor::ref_ptr<zorSDK::Simulation> const next = new zorSDK::Simulation;
  app->initSimulation(next.get());
  EXPECT_EQ(app->getSolverType(), App::MULTI) << "the choice holds for the next simulation";

  EXPECT_EQ(app->getTextureCamera(), nullptr);
}
