#include "ApplicationFixture.h"
#include "TemporaryFolder.h"

#include <zorOSG/CurrentApplication.h>
#include <zorOSG/SceneDecorator.h>
#include <zorSDK/StepEventListener.h>

#include <fstream>
#include <stdexcept>

using namespace zorTest;
using zorOSG::ExampleApplication;
using zorOSG::SceneDescription;

namespace {

osg::Group* boxScene(zorSDK::Simulation* simulation, ExampleApplication* app) {
  EXPECT_TRUE(app->m_isLoadingScene);
  EXPECT_EQ(zorOSG::getCurrentApplication(), app);
  auto* const body = new zor::RigidBody("box");
  simulation->add(body);
  simulation->setUniformGravity(zor::Vec3(0, 0, -1));
  app->addListener(
      new FrameHook([simulation](auto*) { ASSERT_EQ(simulation->getRigidBodies().size(), 1u); }));
  return new osg::Group;
}

osg::Group* emptyScene(zorSDK::Simulation*, ExampleApplication* app) {
  return app->getSceneRoot();
}

osg::Group* nullScene(zorSDK::Simulation* simulation, ExampleApplication*) {
  simulation->add(new zor::RigidBody);
  return nullptr;
}

osg::Group* throwingScene(zorSDK::Simulation* simulation, ExampleApplication*) {
  simulation->add(new zor::RigidBody);
  throw std::runtime_error("the recipe is wrong");
}

} // namespace

class ApplicationScenes : public Application {
protected:
  std::string script(std::string const& name, std::string const& text) {
    std::ofstream(folder.file(name)) << text;
    return folder.file(name);
  }

  TemporaryFolder folder;
};

TEST_F(ApplicationScenes, descriptions_know_what_can_be_built) {
  EXPECT_FALSE(SceneDescription().isValid());
  EXPECT_EQ(SceneDescription().stopAfter, -1);
  EXPECT_FALSE(SceneDescription(zorOSG::BuildScenePtr(nullptr)).isValid());
  EXPECT_TRUE(SceneDescription(boxScene).isValid());
  SceneDescription const script("file.py", "make", false, 5, true);
  EXPECT_TRUE(script.isValid());
  EXPECT_EQ(script.fileName + script.scriptFunction, "file.pymake");
  EXPECT_FALSE(script.unittest);
  EXPECT_TRUE(script.slowUnittest);
  EXPECT_EQ(script.stopAfter, 5);
}

TEST_F(ApplicationScenes, are_listed_in_order_and_found_by_key) {
  EXPECT_TRUE(app->addScene(boxScene, '1'));
  EXPECT_FALSE(app->addScene(emptyScene, '1')) << "the key is taken";
  EXPECT_TRUE(app->addScene("file.py", std::string("make"), 'm', false));
  EXPECT_TRUE(app->addScene(emptyScene));
  EXPECT_FALSE(app->addScene(SceneDescription()));
  EXPECT_EQ(app->getNumScenes(), 3u);
  EXPECT_EQ(app->getCallback('1').scene, boxScene);
  EXPECT_EQ(app->getCallbackIdx(1).scriptFunction, "make");
  EXPECT_FALSE(app->getCallback('x').isValid());
  EXPECT_THROW(app->getCallbackIdx(3), std::out_of_range);
  app->clearAddedScenes();
  EXPECT_EQ(app->getNumScenes(), 0u);
}

TEST_F(ApplicationScenes, switching_leaves_nothing_of_the_scene_before) {
  initWithout();
  int loaded = 0;
  auto const listening = app->m_sceneLoadEvent.add([&loaded] { ++loaded; });
  zor::ref_ptr<FrameHook> const own = new FrameHook({});
  app->addListener(own.get());
  app->addScene(boxScene, '1');
  app->addScene(emptyScene, '2');

  ASSERT_TRUE(app->createSceneFromKey('1'));
  zorSDK::Simulation* const simulation = app->getSimulation();
  EXPECT_FALSE(app->m_isLoadingScene);
  EXPECT_EQ(app->getScene()->getNumParents(), 1u);
  app->executeOneStepWithoutGraphics();
  for (int i = 0; i < 2; ++i) {
    app->reloadScene();
    EXPECT_EQ(simulation->getRigidBodies().size(), 1u);
    EXPECT_EQ(app->getTimeStamp(), 0);
    EXPECT_EQ(app->getSceneRoot()->getNumChildren(), 1u);
  }
  app->getSceneDecorator()->setText(0, "of scene 1");

  ASSERT_TRUE(app->createSceneFromIndex(1));
  EXPECT_EQ(app->getSimulation(), simulation);
  EXPECT_TRUE(simulation->getRigidBodies().empty());
  EXPECT_TRUE(app->getGravity().equals(zor::Vec3(0, 0, -9.81), 1e-3));
  EXPECT_EQ(app->getSceneRoot()->getNumChildren(), 0u);
  app->executeOneStepWithoutGraphics(); // the listener of scene 1 would complain about the missing body
  EXPECT_EQ(own->frames, 2);

  app->createNextScene();
  EXPECT_EQ(simulation->getRigidBodies().size(), 1u) << "the first follows the last";
  app->createPreviousScene();
  EXPECT_TRUE(simulation->getRigidBodies().empty());
  EXPECT_EQ(loaded, 6);
}

TEST_F(ApplicationScenes, missing_ones_are_reported_and_change_nothing) {
  initWithout();
  app->addScene(boxScene, '1');
  ASSERT_TRUE(app->createSceneFromKey('1'));
  LogRecorder log;
  EXPECT_FALSE(app->createSceneFromKey('x'));
  EXPECT_FALSE(app->createSceneFromIndex(-1));
  EXPECT_FALSE(app->createSceneFromIndex(1));
  EXPECT_TRUE(log.has("no scene has the key 120")) << log.text;
  EXPECT_EQ(app->getSimulation()->getRigidBodies().size(), 1u);
}

TEST_F(ApplicationScenes, failing_ones_leave_nothing_half_built_and_end_a_run_at_its_start) {
  initWithout();
  app->addScene(throwingScene);
  app->addScene(nullScene);
  LogRecorder log;
  EXPECT_FALSE(app->createSceneFromIndex(1));
  EXPECT_TRUE(app->getSimulation()->getRigidBodies().empty());
  EXPECT_FALSE(app->createSceneFromIndex(0));
  EXPECT_TRUE(log.has("the recipe is wrong")) << log.text;
  EXPECT_TRUE(app->getSimulation()->getRigidBodies().empty());
  EXPECT_EQ(app->run(), 1);
}

TEST_F(ApplicationScenes, cannot_be_switched_inside_a_step_but_inside_a_frame_listener) {
  class Switcher : public zorSDK::StepEventListener {
  public:
    explicit Switcher(ExampleApplication* a) : application(a) {}
    void post(zor::TimeStamp) override { switched = application->createSceneFromIndex(1); }
    ExampleApplication* application;
    bool switched = true;
  };
  initWithout();
  app->addScene(boxScene);
  app->addScene(emptyScene);
  app->createSceneFromIndex(0);
  zor::ref_ptr<Switcher> const switcher = new Switcher(app.get());
  app->getSimulation()->add(switcher.get());
  app->executeOneStepWithoutGraphics();
  EXPECT_FALSE(switcher->switched);
  EXPECT_EQ(app->getSimulation()->getRigidBodies().size(), 1u);
  onFrame([](auto* a) { EXPECT_TRUE(a->createSceneFromIndex(1)); });
  app->executeOneStepWithoutGraphics();
  EXPECT_TRUE(app->getSimulation()->getRigidBodies().empty());
}

TEST_F(ApplicationScenes, the_command_line_chooses_the_first) {
  for (std::string const name : {"2", "#1"}) {
    app = new ExampleApplication;
    ASSERT_TRUE(init({"--zorOnly", "--stopAfter=0.01", "--scene", name}));
    app->addScene(emptyScene, '1');
    app->addScene(boxScene, '2');
    EXPECT_EQ(app->run(), 0);
    EXPECT_EQ(app->getSimulation()->getRigidBodies().size(), 1u) << name;
  }
  app = new ExampleApplication;
  ASSERT_TRUE(init({"--zorOnly", "--scene=other"}));
  app->addScene(emptyScene, '1');
  EXPECT_EQ(app->run(), 1);
}

TEST_F(ApplicationScenes, keys_switch_them_between_frames) {
  ASSERT_TRUE(init());
  app->addScene(boxScene, '1');
  app->addScene(emptyScene, '2');
  int frame = 0;
  onFrame([&](auto* a) {
    if (++frame == 2)
      this->press('2');
    if (frame == 3) {
      EXPECT_TRUE(a->getSimulation()->getRigidBodies().empty());
      a->stop();
    }
  });
  EXPECT_EQ(app->run(), 0);
  EXPECT_EQ(frame, 3);
}

TEST_F(ApplicationScenes, scripts_are_run_and_their_errors_name_file_and_line) {
  initWithout();
  app->initSimulation();
  bool success = false;
  std::string const good = script("good.py", "calls = 0\ndef build():\n    global calls\n    calls += 1\n");
  EXPECT_EQ(app->executePythonScript(good, "build", success), app->getSceneRoot());
  EXPECT_TRUE(success);

  struct Case {
    std::string file;
    char const* function;
    char const* message;
    char const* place;
  };
  for (Case const& wrong :
       {Case{script("syntax.py", "def build():\n    pass\nx = = 2\n"), "build", "SyntaxError", "line 3"},
        Case{script("raises.py", "def build():\n    x = 1\n    raise ValueError('too steep')\n"), "build",
             "too steep", "line 3"},
        Case{good, "paint", "paint", "good.py"},
        Case{folder.file("none.py"), "build", "none.py", "none.py"}}) {
    LogRecorder log;
    EXPECT_EQ(app->executePythonScript(wrong.file, wrong.function, success), nullptr) << wrong.file;
    EXPECT_FALSE(success);
    EXPECT_TRUE(log.has(wrong.message) && log.has(wrong.place)) << wrong.file << ": " << log.text;
  }
  app->handleReactiveScriptErrors(false);
  EXPECT_FALSE(app->shouldStop());
}

TEST_F(ApplicationScenes, a_script_that_cannot_be_built_ends_the_run) {
  initWithout();
  app->addScene(script("raises.py", "def build():\n    raise ValueError('too steep')\n"),
                std::string("build"));
  EXPECT_EQ(app->run(), 1);
  app->handleReactiveScriptErrors(false);

  app = new ExampleApplication;
  initWithout();
  std::string const good = script("good.py", "def buildScene():\n    pass\n");
  app->addScene(SceneDescription(good));
  app->stopAfter(0.1);
  EXPECT_EQ(app->run(), 0);
  EXPECT_EQ(app->getScriptFile(), good);
}
