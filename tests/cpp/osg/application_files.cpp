#include "ApplicationFixture.h"
#include "TemporaryFolder.h"

#include <zorCollide/Sphere.h>
#include <zorOSG/SceneDecorator.h>

#include <osg/Camera>
#include <osg/NodeVisitor>
#include <osgText/Text>

#include <gmock/gmock.h>

#include <fstream>
#include <sstream>
#include <stdexcept>

using namespace zorTest;
using zorOSG::ExampleApplication;
using zorOSG::SceneDecorator;
using zorOSG::SceneDescription;

namespace {

/** Counts vertices, and collects the texts that are shown over the picture. */
class Census : public osg::NodeVisitor {
public:
  explicit Census(osg::Node& root) : osg::NodeVisitor(TRAVERSE_ACTIVE_CHILDREN) { root.accept(*this); }
  void apply(osg::Geometry& geometry) override {
    if (geometry.getVertexArray())
      vertices += geometry.getVertexArray()->getNumElements();
  }
  void apply(osg::Drawable& drawable) override {
    if (auto* const text = dynamic_cast<osgText::Text*>(&drawable))
      texts += text->getText().createUTF8EncodedString() + "\n";
  }
  unsigned vertices = 0;
  std::string texts;
};

osg::Group* ballScene(zorSDK::Simulation* simulation, ExampleApplication* app) {
  auto* const body = new zor::RigidBody(new zorCollide::Geometry(new zorCollide::Sphere(0.5)));
  body->setName("ball");
  simulation->add(body);
  app->createVisual(simulation);
  app->setCameraHome(zor::Vec3(0, -9, 0), zor::Vec3());
  app->getSceneDecorator()->setShadowMethod(SceneDecorator::SOFT_SHADOWMAP);
  simulation->setNumSubSteps(1);
  return app->getSceneRoot();
}

osg::Group* faultyScene(zorSDK::Simulation*, ExampleApplication*) {
  throw std::runtime_error("no scene today");
}

osg::Group* stoppingScene(zorSDK::Simulation*, ExampleApplication* app) {
  app->stop(5);
  return app->getSceneRoot();
}

std::string contents(std::string const& file) {
  std::stringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

} // namespace

class ApplicationFiles : public Application {
protected:
  std::string script(std::string const& name, std::string const& text) {
    std::ofstream(folder.file(name)) << text;
    return folder.file(name);
  }

  std::string shownTexts() { return Census(*app->getRoot()).texts; }

  /** \return exit code of a run of one scene with a command line */
  int runBall(std::vector<std::string> line) {
    app = new ExampleApplication;
    line.insert(line.end(), {"--offscreen", "--window=80x60"});
    if (!init(line))
      return -1;
    app->addScene(ballScene);
    if (!app->breakRequested())
      app->stopAfter(0.1);
    return app->run();
  }

  TemporaryFolder folder;
};

TEST_F(ApplicationFiles, the_command_line_goes_before_what_a_scene_chooses) {
  ASSERT_EQ(runBall({}), 0);
  unsigned const vertices = Census(*app->getSceneRoot()).vertices;
  EXPECT_EQ(app->getSceneDecorator()->getShadowMethod(), SceneDecorator::SOFT_SHADOWMAP);
  EXPECT_EQ(app->getSolverType(), ExampleApplication::ITERATIVE);

  ASSERT_EQ(runBall({"--shadows=none", "--solver=Multi", "--detail=3", "--camera=4,0,0,0,0,1"}), 0);
  EXPECT_EQ(app->getSceneDecorator()->getShadowMethod(), SceneDecorator::NO_SHADOWS);
  EXPECT_EQ(app->getSolverType(), ExampleApplication::MULTI);
  EXPECT_GT(Census(*app->getSceneRoot()).vertices, 2 * vertices);
  EXPECT_TRUE(app->getCameraData().eye.equals(zor::Vec3(4, 0, 0), 1e-6)) << app->getCameraData().eye;
  ASSERT_EQ(runBall({"--shadows=sharp", "--camera", "0,-3,0,0,0,0,1,0,0", "--noVsync"}), 0);
  EXPECT_EQ(app->getSceneDecorator()->getShadowMethod(), SceneDecorator::SHADOWMAP);
  EXPECT_TRUE(app->getCameraData().up.equals(zor::Vec3(1, 0, 0), 1e-6)) << app->getCameraData().up;
  EXPECT_EQ(Census(*app->getSceneRoot()).vertices, vertices)
      << "the detail of one run is not that of the next";
  EXPECT_FALSE(app->getEnableVSync());
}

TEST_F(ApplicationFiles, a_command_line_that_is_wrong_is_told_with_what_was_expected) {
  struct Case {
    std::string line;
    char const* message;
  };
  for (Case const& wrong :
       {Case{"--window=80x60+1", "+X+Y"}, Case{"--window=80x60+1+-2", "+X+Y"},
        Case{"--window=80x60 ", "80x60"}, Case{"--camera=1,2,3", "6 numbers"},
        Case{"--camera=1,2,3,4,5,6,", "6 numbers"}, Case{"--camera=1,2,3,4,5,x", "6 numbers"},
        Case{"--camera=0,0,5,0,0,0", "up direction"}, Case{"--shadows=long", "perspective"},
        Case{"--solver=fast", "iterative"}, Case{"--detail=0", "0.05"}, Case{"--detail=nan", "0.05"},
        Case{"--saveScene=scene.txt", ".azor"}, Case{"--ofscreen", "did you mean --offscreen?"},
        Case{"--capturevideo=a", "did you mean --captureVideo?"}}) {
    testing::internal::CaptureStderr();
    bool const accepted = init({wrong.line});
    std::string const message = testing::internal::GetCapturedStderr();
    EXPECT_FALSE(accepted) << wrong.line;
    EXPECT_NE(message.find(wrong.message), std::string::npos) << wrong.line << ": " << message;
    EXPECT_EQ(app->getExitCode(), 2);
  }
  testing::internal::CaptureStderr();
  EXPECT_FALSE(init({"--vsync", "--noVsync"}));
  EXPECT_NE(testing::internal::GetCapturedStderr().find("exclude"), std::string::npos);
}

TEST_F(ApplicationFiles, what_a_run_saves_can_be_restored_and_built_as_a_scene) {
  std::string const file = folder.file("end.azor");
  ASSERT_EQ(runBall({"--saveScene", file, "--timeStep=0.02"}), 0);
  EXPECT_EQ(app->getSaveSceneFilename(), file);
  EXPECT_TRUE(app->getEnableSimulationDump());
  double const height = app->getSimulation()->getRigidBody("ball")->getPosition().z();

  app = new ExampleApplication;
  ASSERT_TRUE(init());
  EXPECT_EQ(app->getSaveSceneFilename(), "zor_scene.zor");
  EXPECT_FALSE(app->getEnableSimulationDump());
  app->addScene(faultyScene);
  std::string const broken = script("broken.zor", "nothing of the kind");
  ASSERT_TRUE(app->restoreFromFile(file));
  for (std::string const& wrong : {broken, folder.file("none.zor"), folder.file("scene.txt")})
    EXPECT_FALSE(app->restoreFromFile(wrong)) << wrong;
  EXPECT_TRUE(app->m_loadedSceneFile);
  EXPECT_NEAR(app->getTimeStamp(), 0.1, 1e-9) << "restored with its time, and kept where others fail";
  EXPECT_NEAR(app->getTimeStep(), 0.02, 1e-12);
  EXPECT_NEAR(app->getSimulation()->getRigidBody("ball")->getPosition().z(), height, 1e-12);
  EXPECT_GT(Census(*app->getSceneRoot()).vertices, 0u);
  app->stopAfter(0.2);
  EXPECT_EQ(app->run(), 0) << "the restored scene runs, not the first of the list";
  EXPECT_NEAR(app->getTimeStamp(), 0.2, 1e-9);

  app->addScene(SceneDescription(file));
  ASSERT_TRUE(app->createSceneFromIndex(1));
  EXPECT_EQ(app->getTimeStamp(), 0) << "a scene begins at its beginning";
  EXPECT_NEAR(app->getSimulation()->getRigidBody("ball")->getPosition().z(), height, 1e-12);
  EXPECT_FALSE(app->createSceneFromIndex(0));
  EXPECT_FALSE(app->m_loadedSceneFile);
  EXPECT_NEAR(app->getTimeStep(), STEP, 1e-12) << "no scene inherits the settings of a file";
}

TEST_F(ApplicationFiles, files_of_models_and_robots_are_scenes) {
  ASSERT_TRUE(init());
  app->addScene(SceneDescription(script("plate.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n")));
  app->addScene(SceneDescription(script(
      "arm.urdf",
      R"(<robot name="arm"><link name="base"><inertial><mass value="1"/><inertia ixx="1" iyy="1" izz="1"
      ixy="0" ixz="0" iyz="0"/></inertial><collision><geometry><box size="1 1 1"/></geometry></collision></link></robot>)")));
  app->addScene(SceneDescription(script("broken.urdf", "<robot>")));
  ASSERT_TRUE(app->createSceneFromIndex(0));
  EXPECT_TRUE(app->m_loadedSceneFile);
  EXPECT_EQ(Census(*app->getSceneRoot()).vertices, 3u);
  ASSERT_TRUE(app->createSceneFromIndex(1));
  ASSERT_EQ(app->getSimulation()->getRigidBodies().size(), 1u);
  app->executeOneStepWithoutGraphics();
  EXPECT_EQ(app->getSimulation()->getRigidBodies()[0]->getPosition().z(), 0)
      << "the base stands in the world";
  EXPECT_FALSE(app->createSceneFromIndex(2));
  EXPECT_TRUE(app->getSimulation()->getRigidBodies().empty());
}

TEST_F(ApplicationFiles, unit_tests_run_each_marked_scene_to_its_time) {
  struct Case {
    char const* option;
    bool withFaulty;
    int exitCode;
    std::vector<std::string> lines;
  };
  for (Case const& test :
       {Case{"--unitTests", false, 0, {"ok .*0\\.50 s simulated", "ok .*0\\.20 s", "2 scenes run, 0 failed"}},
        Case{"--slowUnitTests", false, 0, {"0\\.30 s simulated", "3 scenes run, 0 failed"}},
        Case{"--unitTests", true, 1, {"FAILED", "4 scenes run, 2 failed"}}}) {
    app = new ExampleApplication;
    ASSERT_TRUE(init({test.option, "--zorOnly", "--stopAfter=0.2"}));
    app->addScene(ballScene, true, 0.5f);
    app->addScene(faultyScene, false);
    app->addScene(ballScene, true, 0.3f, true);
    if (test.withFaulty) {
      app->addScene(faultyScene);
      app->addScene(stoppingScene);
    }
    app->addScene(ballScene);
    testing::internal::CaptureStdout();
    EXPECT_EQ(app->run(), test.exitCode);
    std::string const told = testing::internal::GetCapturedStdout();
    for (std::string const& line : test.lines)
      EXPECT_THAT(told, testing::ContainsRegex(line));
  }
}

TEST_F(ApplicationFiles, a_watched_scene_that_fails_shows_why_and_is_built_when_its_file_is_mended) {
  std::string const file = script("scene.py", "def buildScene():\n    raise ValueError('too steep')\n");
  ASSERT_TRUE(init({"--watch", "--offscreen", "--window=640x480"}));
  app->addScene(SceneDescription(file));
  int const deadline = 20 * 60; // frames; each waits in this test
  int frame = 0, builds = 0;
  auto const listening = app->m_sceneLoadEvent.add([&builds] { ++builds; });
  app->setRealTimeSync(true);
  std::string shown;
  onFrame([&](auto* a) {
    ++frame;
    if (frame == 2) {
      shown = shownTexts();
      script("scene.py", "import helper\ndef buildScene():\n    helper.build()\n");
      script("helper.py", "def build():\n    pass\n");
    }
    if (builds == 1 && frame % 60 == 0)
      script("helper.py", "def build():\n    return 'something else'\n");
    if (builds == 2 || frame > deadline)
      a->stop(builds == 2 ? 4 : 9);
  });
  EXPECT_EQ(app->run(), 4);
  EXPECT_NE(shown.find("ValueError: too steep"), std::string::npos) << shown;
  EXPECT_NE(shown.find("line 2"), std::string::npos) << shown;
  EXPECT_EQ(shownTexts().find("too steep"), std::string::npos) << "what is mended is not shown any more";
  EXPECT_EQ(app->getScriptFile(), file);
}

TEST_F(ApplicationFiles, where_the_time_went_is_told_and_written) {
  std::string const file = folder.file("timeline.json");
  testing::internal::CaptureStderr();
  ASSERT_EQ(runBall({"--profile", "--timeline", file}), 0);
  std::string const table = testing::internal::GetCapturedStderr();
  std::string const events = contents(file);
  for (std::string const task :
       {"frame", "step", "step: collision", "step: motion", "cull and draw", "events"}) {
    EXPECT_THAT(table, testing::ContainsRegex("\n" + task + " +[0-9]+ "));
    EXPECT_NE(events.find("{\"name\":\"" + task + "\",\"ph\":\"X\""), std::string::npos) << task;
  }
  EXPECT_THAT(table, testing::ContainsRegex("\nstep +6 "));
  app->setEnableThreadTimeline(false);
  EXPECT_EQ(contents(file), events) << "one that is off writes nothing";
}
