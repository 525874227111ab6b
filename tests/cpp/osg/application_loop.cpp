#include "ApplicationFixture.h"

#include <zor/HighAccuracyTimer.h>

#include <csignal>
#include <stdexcept>

using namespace zorTest;

class ApplicationLoop : public Application {};

TEST_F(ApplicationLoop, stop_gives_the_exit_code_and_a_second_run_starts_anew) {
  ASSERT_TRUE(init());
  zor::ref_ptr<FrameHook> const hook = new FrameHook({}, [](auto* a) {
    if (a->getTimeStamp() > 4.5 * STEP)
      a->stop(3);
  });
  app->addListener(hook.get());
  EXPECT_EQ(app->run(), 3);
  EXPECT_TRUE(app->shouldStop());
  EXPECT_EQ(hook->frames, 5) << "every step off screen is drawn";
  EXPECT_NEAR(app->getTimeStamp(), 5 * STEP, 1e-9);

  EXPECT_EQ(app->run(), 3);
  EXPECT_EQ(hook->frames, 6);
}

TEST_F(ApplicationLoop, stop_can_be_cancelled_and_holds_when_asked_for_before_the_run) {
  initWithout();
  app->stop(4);
  app->cancelStop();
  EXPECT_FALSE(app->breakRequested());
  EXPECT_EQ(app->getExitCode(), 0);
  app->stop(5);
  EXPECT_EQ(app->run(), 5);
  EXPECT_EQ(app->getTimeStamp(), 0);
}

TEST_F(ApplicationLoop, stop_after_ends_the_run_at_that_time) {
  ASSERT_TRUE(init({"--zorOnly", "--stopAfter=0.5", "--timeStep", "0.01"}));
  EXPECT_EQ(app->run(), 0);
  EXPECT_NEAR(app->getTimeStamp(), 0.5, 1e-6);
  EXPECT_FALSE(app->shouldStop());
  EXPECT_TRUE(app->breakRequested());
  app->stopAfter(0.6);
  EXPECT_EQ(app->run(), 0);
  EXPECT_NEAR(app->getTimeStamp(), 0.6, 1e-6);
}

TEST_F(ApplicationLoop, calls_listeners_and_the_step_callback_in_order) {
  ASSERT_TRUE(init());
  std::string log;
  app->setStepCallback(zor::Callback([&log] { log += "s"; }));
  onFrame([&log](auto*) { log += "a"; }, [&log](auto*) { log += "A"; });
  onFrame([&log](auto*) { log += "b"; }, [&log](auto*) { log += "B"; });
  stopAtFrame(2);
  EXPECT_EQ(app->run(), 0);
  EXPECT_EQ(log, "absABabsAB");
}

TEST_F(ApplicationLoop, runs_without_graphics) {
  initWithout("-a");
  stopAtFrame(3);
  EXPECT_EQ(app->run(), 0);
  EXPECT_NEAR(app->getTimeStamp(), 3 * STEP, 1e-9);
  EXPECT_FALSE(app->hasRenderContext());
  EXPECT_FALSE(app->done());
  EXPECT_EQ(app->getViewer(), nullptr);
  EXPECT_FALSE(app->getCameraData().valid);
  EXPECT_FALSE(app->setWindowTitle("nothing to show it"));
  EXPECT_THROW(app->takeScreenShot("shot.png"), std::runtime_error);
}

TEST_F(ApplicationLoop, refuses_a_wrong_command_line_and_a_run_before_init) {
  EXPECT_THROW(app->run(), std::runtime_error);
  EXPECT_EQ(app->getSimulation(), nullptr);
  testing::internal::CaptureStderr();
  for (char const* line :
       {"--stopAfter=soon", "--window=0x4", "--window=80", "--timeStep=0", "--noSuchOption"})
    EXPECT_FALSE(init({line})) << line;
  EXPECT_FALSE(app->initialized());
  std::string const messages = testing::internal::GetCapturedStderr();
  for (char const* part : {"soon", "0x4", "--timeStep", "--noSuchOption"})
    EXPECT_NE(messages.find(part), std::string::npos) << part;
}

TEST_F(ApplicationLoop, an_exception_of_a_listener_leaves_the_run_and_the_application_stays_usable) {
  ASSERT_TRUE(init());
  bool faulty = true;
  onFrame([&faulty](auto*) {
    if (faulty)
      throw std::runtime_error("broken listener");
  });
  EXPECT_THROW(app->run(), std::runtime_error);
  faulty = false;
  stopAtFrame(2, 7);
  EXPECT_EQ(app->run(), 7);
}

TEST_F(ApplicationLoop, a_signal_ends_the_run_cleanly) {
  initWithout();
  onFrame([](auto* a) {
    if (a->getTimeStamp() > 1.5 * STEP)
      std::raise(SIGINT);
  });
  EXPECT_EQ(app->run(), 128 + SIGINT);
  EXPECT_NEAR(app->getTimeStamp(), 3 * STEP, 1e-9) << "the frame is completed";
}

TEST_F(ApplicationLoop, a_script_may_drive_the_steps_and_the_target_rate_limits_drawing) {
  ASSERT_TRUE(init());
  app->initSimulation();
  zor::HighAccuracyTimer timer;
  EXPECT_FALSE(app->executeOneStepWithGraphics(timer)) << "a timer that stands draws nothing";
  timer.start();
  app->setTargetFPS(0);
  EXPECT_TRUE(app->executeOneStepWithGraphics(timer));
  app->setTargetFPS(-1);
  EXPECT_TRUE(app->executeOneStepWithGraphics(timer));
  app->setTargetFPS(0.01);
  EXPECT_FALSE(app->executeOneStepWithGraphics(timer));
  EXPECT_TRUE(app->executeOneStepWithoutGraphics());
  EXPECT_NEAR(app->getTimeStamp(), 5 * STEP, 1e-9);
  EXPECT_FALSE(app->breakRequested());
}

TEST_F(ApplicationLoop, pausing_stops_the_steps_but_not_the_frames) {
  ASSERT_TRUE(init());
  std::vector<bool> changes;
  auto const listening = app->autoStepEvent.add([&changes](bool play) { changes.push_back(play); });
  int frame = 0;
  onFrame([&frame](auto* a) {
    a->setAutoStepping(++frame <= 2);
    if (frame == 5)
      a->stop();
  });
  EXPECT_EQ(app->run(), 0);
  EXPECT_NEAR(app->getTimeStamp(), 2 * STEP, 1e-9);
  EXPECT_EQ(changes, std::vector<bool>{false});
}

TEST_F(ApplicationLoop, real_time_sync_holds_the_simulation_to_the_clock) {
  initWithout();
  app->setRealTimeSync(true);
  app->stopAfter(0.25);
  zor::HighAccuracyTimer timer(true);
  EXPECT_EQ(app->run(), 0);
  EXPECT_GE(timer.getTime(), 250.0 - 1);
}

TEST_F(ApplicationLoop, auto_pausing_stops_at_the_contact_of_a_pair) {
  initWithout();
  app->initSimulation();
  zorSDK::Simulation* const simulation = app->getSimulation();
  auto const box = [&](double z, zor::RigidBody::MotionControl control) {
    auto* const body =
        new zor::RigidBody(new zorCollide::Geometry(new zorCollide::Box(zor::Vec3(0.5, 0.5, 0.5))));
    body->setPosition(zor::Vec3(0, 0, z));
    body->setMotionControl(control);
    simulation->add(body);
    return body;
  };
  app->addAutoPausePair(box(0, zor::RigidBody::STATIC), box(1.5, zor::RigidBody::DYNAMICS));
  app->setEnableAutoPausing(true);
  for (int i = 0; i < 60 && app->getAutoStepping(); ++i)
    app->executeOneStepWithoutGraphics();
  EXPECT_FALSE(app->getAutoStepping());
  EXPECT_NEAR(app->getTimeStamp(), 0.32, 0.06) << "half a metre of free fall takes 0.319 s";
  EXPECT_THROW(app->addAutoPausePair(static_cast<zor::RigidBody*>(nullptr), nullptr), std::invalid_argument);
}
