#include "ApplicationFixture.h"
#include "TemporaryFolder.h"

#include <zorOSG/GuiEventListener.h>

#include <osg/Camera>
#include <osgText/Text>

#include <filesystem>
#include <stdexcept>

using namespace zorTest;
using zorSDK::GuiEventListener;

namespace {

class Recorder : public zorOSG::GuiEventListener {
public:
  explicit Recorder(ActivationMask mask = ALL) : zorOSG::GuiEventListener(mask) {}

  bool keyboard(int key, unsigned int modKeyMask, float, float, bool keydown) override {
    if (key == 'x')
      throw std::runtime_error("broken handler");
    log += std::string(1, static_cast<char>(key)) + (keydown ? "+" : "-");
    modifiers |= modKeyMask;
    return consume;
  }
  bool mouse(MouseButtonMask button, MouseState state, float x, float y) override {
    buttons += std::to_string(button) + (state == DOWN ? "+" : "-");
    at = zor::Vec2(x, y);
    return consume;
  }
  bool mouseMoved(float x, float y) override {
    at = zor::Vec2(x, y);
    return consume;
  }
  void update(float, float) override { ++updates; }

  std::string log, buttons;
  unsigned modifiers = 0;
  zor::Vec2 at;
  int updates = 0;
  bool consume = false;
};

/** Finds a text below a node that is drawn. */
class TextFinder : public osg::NodeVisitor {
public:
  explicit TextFinder(osg::Node& root) : osg::NodeVisitor(TRAVERSE_ACTIVE_CHILDREN) {
    setTraversalMask(zorOSG::ExampleApplication::HUD_MASK);
    root.accept(*this);
  }
  void apply(osg::Drawable& drawable) override {
    if (auto* const found = dynamic_cast<osgText::Text*>(&drawable))
      text += found->getText().createUTF8EncodedString() + "\n";
  }
  std::string text;
};

} // namespace

class ApplicationInput : public Application {
protected:
  ApplicationInput() { std::filesystem::current_path(folder.path()); } // a key takes pictures
  ~ApplicationInput() override { std::filesystem::current_path(before); }

  void SetUp() override {
    ASSERT_TRUE(init());
    app->initSimulation();
  }

  Recorder* addRecorder(GuiEventListener::ActivationMask mask = GuiEventListener::ALL) {
    auto* const recorder = new Recorder(mask);
    app->getSimulation()->add(recorder);
    return recorder;
  }

  /** Runs frames until all events are through. */
  int runFrames(int count) {
    stopAtFrame(count);
    return app->run();
  }

private:
  std::filesystem::path const before = std::filesystem::current_path();
  TemporaryFolder const folder;
};

TEST_F(ApplicationInput, events_reach_listeners_that_want_them_until_one_uses_them_up) {
  Recorder* const first = addRecorder();
  Recorder* const keysOnly = addRecorder(GuiEventListener::KEYBOARD);
  events().keyPress('a', events().getTime());
  events().keyRelease('a');
  events().mouseMotion(0.5f, 0.5f);
  runFrames(2);
  EXPECT_EQ(first->log, "a+a-");
  EXPECT_EQ(keysOnly->log, "a+a-");
  EXPECT_EQ(first->updates, 2);
  EXPECT_EQ(keysOnly->updates, 0);

  first->consume = true;
  press('b');
  runFrames(2);
  EXPECT_EQ(first->log, "a+a-b+b-");
  EXPECT_EQ(keysOnly->log, "a+a-");

  first->setEnable(false);
  app->getSimulation()->remove(keysOnly);
  press('c');
  EXPECT_EQ(runFrames(2), 0);
  EXPECT_EQ(first->log, "a+a-b+b-");
}

TEST_F(ApplicationInput, mouse_positions_are_pixels_from_the_lower_left_corner) {
  Recorder* const recorder = addRecorder();
  auto* const state = events().getCurrentEventState();
  state->setInputRange(0, 0, 80, 60);
  state->setMouseYOrientation(osgGA::GUIEventAdapter::Y_INCREASING_DOWNWARDS);
  events().mouseButtonPress(20, 15, 1);
  runFrames(1);
  EXPECT_EQ(recorder->buttons, "1+");
  EXPECT_TRUE(recorder->at.equals(zor::Vec2(20, 45), 1e-3)) << recorder->at;
  events().mouseButtonRelease(30, 30, 1);
  runFrames(1);
  EXPECT_EQ(recorder->buttons, "1+1-");
  EXPECT_TRUE(recorder->at.equals(zor::Vec2(30, 30), 1e-3)) << recorder->at;
}

TEST_F(ApplicationInput, the_applications_keys_act_unless_a_listener_uses_them) {
  Recorder* const recorder = addRecorder();
  press('e');
  runFrames(3);
  EXPECT_FALSE(app->getAutoStepping());
  double const paused = app->getTimeStamp();
  press('s');
  runFrames(3);
  EXPECT_NEAR(app->getTimeStamp(), paused + STEP, 1e-9);
  recorder->consume = true;
  press('e');
  runFrames(3);
  EXPECT_FALSE(app->getAutoStepping());
  press('g');
  recorder->consume = false;
  runFrames(1);
  EXPECT_TRUE(app->getEnableGrid());
}

TEST_F(ApplicationInput, escape_quits_even_past_a_listener_unless_the_application_refuses) {
  addRecorder()->consume = true;
  app->setQuitEventSetsDone(false);
  press(osgGA::GUIEventAdapter::KEY_Escape);
  EXPECT_EQ(runFrames(3), 0);
  EXPECT_FALSE(app->done());
  app->setQuitEventSetsDone(true);
  press(osgGA::GUIEventAdapter::KEY_Escape);
  EXPECT_EQ(app->run(), 0);
  EXPECT_TRUE(app->done());
  EXPECT_TRUE(app->breakRequested());
  EXPECT_FALSE(app->shouldStop());
}

TEST_F(ApplicationInput, help_lists_keys_scenes_and_what_listeners_say) {
  app->addScene([](zorSDK::Simulation*, zorOSG::ExampleApplication* a) { return a->getSceneRoot(); }, '7');
  ASSERT_TRUE(app->createSceneFromKey('7'));
  addRecorder()->setName("q: raise the arm");
  EXPECT_EQ(TextFinder(*app->getRoot()).text.find("raise the arm"), std::string::npos);
  press('h');
  runFrames(2);
  std::string const help = TextFinder(*app->getRoot()).text;
  for (char const* part : {"pause or play", "quit", "7\nbuilt-in scene", "q: raise the arm"})
    EXPECT_NE(help.find(part), std::string::npos) << part << " in " << help;
}

TEST_F(ApplicationInput, what_a_handler_throws_leaves_the_run) {
  addRecorder();
  press('x');
  EXPECT_THROW(runFrames(3), std::runtime_error);
  EXPECT_EQ(runFrames(2), 0);
}

TEST_F(ApplicationInput, a_ray_through_a_pixel_meets_what_is_drawn_there) {
  addRedBox(app->getSimulation(), app->getSceneRoot())->setMotionControl(zor::RigidBody::STATIC);
  app->setCameraHome(zor::Vec3(0, -10, 0), zor::Vec3(0, 0, 0));
  Recorder* const recorder = addRecorder();
  runFrames(1);
  auto const hit = recorder->intersect(40, 30, app->getCamera());
  ASSERT_FALSE(hit.isEmpty());
  EXPECT_TRUE(hit.getPoints()[0].getPoint().equals(zor::Vec3(0, -0.5, 0), 0.05))
      << hit.getPoints()[0].getPoint();
  EXPECT_TRUE(recorder->intersect(1, 1, app->getCamera()).isEmpty());
  EXPECT_TRUE(recorder->intersect(40, 30, app->getCamera(), true).isEmpty()) << "the box is not dynamic";
  zorCollide::LocalGeometryContactVector contacts;
  EXPECT_EQ(recorder->findIntersectGeometryIndex(contacts), 0u);
  contacts.push_back(recorder->intersect(1, 1, app->getCamera()));
  contacts.push_back(hit);
  EXPECT_EQ(recorder->findIntersectGeometryIndex(contacts), 1u);
  EXPECT_THROW(recorder->intersect(1, 1, nullptr), std::invalid_argument);
}
