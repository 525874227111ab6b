#include <cmath>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include <zorSDK/ContactEventListener.h>
#include <zorSDK/GuiEventListener.h>
#include <zorSDK/PickHandler.h>
#include <zorSDK/StepEventListener.h>

#include "PhysicsFixture.h"

using testing::ElementsAre;
using zor::Vec3;
using zorSDK::ContactEventListener;
using zorSDK::StepEventListener;

namespace {

typedef std::vector<std::string> Log;

class Recorder : public StepEventListener {
public:
  Recorder(Log& log, std::string const& label, int mask = STEP_ALL)
      : StepEventListener(mask), m_log(log), m_label(label) {}

  void preCollide(zor::TimeStamp) override { record("collide"); }
  void pre(zor::TimeStamp) override { record("pre"); }
  void post(zor::TimeStamp) override { record("post"); }
  void last(zor::TimeStamp) override { record("last"); }
  void addNotification() override { m_log.push_back(m_label + " added"); }
  void removeNotification() override { m_log.push_back(m_label + (getSimulation() ? " removed" : " lost")); }

  std::function<void(std::string const&)> action; // what else to do

private:
  void record(std::string const& phase) {
    m_log.push_back(m_label + " " + phase);
    if (action)
      action(phase);
  }
  Log& m_log;
  std::string m_label;
};

class Touching : public ContactEventListener {
public:
  explicit Touching(Log& log, int mask = ALL) : ContactEventListener(mask), m_log(log) {}

  KeepContactPolicy impact(zor::TimeStamp, zorCollide::GeometryContact& contact) override {
    m_log.push_back("impact");
    return act(contact);
  }
  KeepContactPolicy contact(zor::TimeStamp, zorCollide::GeometryContact& contact) override {
    if (m_log.empty() || m_log.back() != "contact")
      m_log.push_back("contact");
    return act(contact);
  }
  void separation(zor::TimeStamp, zorCollide::Geometry* a, zorCollide::Geometry* b) override {
    m_log.push_back(a && b ? "separation" : "separation of nothing");
  }

  KeepContactPolicy policy = KEEP_CONTACT;
  std::function<void()> action;

private:
  KeepContactPolicy act(zorCollide::GeometryContact& contact) {
    EXPECT_FALSE(contact.isEmpty());
    if (action)
      action();
    return policy;
  }
  Log& m_log;
};

class Listeners : public PhysicsFixture {
protected:
  void TearDown() override { simulation->cleanup(); } // listeners write into the log to the end

  template <class T>
  zor::ref_ptr<T> listen(T* listener) {
    EXPECT_TRUE(simulation->add(listener));
    return listener;
  }
  Log log;
};

TEST_F(Listeners, AreCalledInOrderPhaseByPhase) {
  auto const first = listen(new Recorder(log, "a"));
  auto const second =
      listen(new Recorder(log, "b", StepEventListener::PRE_STEP | StepEventListener::LAST_STEP));
  EXPECT_FALSE(simulation->add(first.get()));
  log.clear();
  simulation->stepForward();
  EXPECT_THAT(log, ElementsAre("a collide", "a pre", "b pre", "a post", "a last", "b last"));
  first->setEnable(false);
  second->setMask(StepEventListener::POST_STEP);
  log.clear();
  simulation->stepForward();
  EXPECT_THAT(log, ElementsAre("b post"));
  log.clear();
  EXPECT_TRUE(simulation->remove(first.get()));
  EXPECT_FALSE(simulation->remove(first.get()));
  EXPECT_THAT(log, ElementsAre("a removed"));
  EXPECT_EQ(first->getSimulation(), nullptr);
}

TEST_F(Listeners, AreToldWhenTheSimulationDies) {
  auto const recorder = listen(new Recorder(log, "a"));
  simulation = nullptr;
  EXPECT_THAT(log, ElementsAre("a added", "a lost")) << "a dying simulation is not handed out";
  simulation = new zorSDK::Simulation;
  EXPECT_TRUE(simulation->add(recorder.get()));
}

TEST_F(Listeners, SeeTheTimeAndPlaceOfTheirPhase) {
  auto const body = addSphere(0.5, Vec3(0, 0, 10));
  auto const recorder = listen(new Recorder(log, "a"));
  double const dt = simulation->getTimeStep();
  recorder->action = [&](std::string const& phase) {
    bool const before = phase == "collide" || phase == "pre";
    EXPECT_DOUBLE_EQ(simulation->getTimeStamp(), before ? 0 : dt) << phase;
    EXPECT_EQ(body->getPosition().z() == 10.0, before) << phase;
    if (phase == "pre")
      body->addForce(Vec3(body->getMassProperties()->getMass() / dt, 0, 0));
  };
  simulation->stepForward();
  EXPECT_NEAR(body->getVelocity().x(), 1, 1e-9) << "forces of PRE_STEP act in the same step";
}

TEST_F(Listeners, MayAddAndRemoveAnythingInsideACall) {
  addGround();
  auto const body = addBox(Vec3(0.5, 0.5, 0.5), Vec3(0, 0, 0.5), "box");
  auto const rest = addBox(Vec3(0.5, 0.5, 0.5), Vec3(0, 0, 1.5), "rest");
  auto const killer = listen(new Recorder(log, "killer"));
  auto victim = listen(new Recorder(log, "victim"));
  run(0.5);
  killer->action = [&](std::string const& phase) {
    if (phase != "pre")
      return;
    simulation->remove(body.get());
    simulation->remove(victim.get());
    victim = nullptr; // nobody else holds it
    simulation->remove(killer.get());
    addSphere(0.2, Vec3(5, 0, 5));
  };
  log.clear();
  simulation->stepForward();
  EXPECT_THAT(
      log, ElementsAre("killer collide", "victim collide", "killer pre", "victim removed", "killer removed"));
  EXPECT_EQ(simulation->getRigidBodies().size(), 2u);
  run(0.5);
  EXPECT_LT(rest->getPosition().z(), 1.2);
}

TEST_F(Listeners, ExceptionEndsTheStepButNotTheSimulation) {
  auto const body = addSphere(0.5, Vec3(0, 0, 10));
  auto const recorder = listen(new Recorder(log, "a"));
  recorder->action = [](std::string const& phase) {
    if (phase == "pre")
      throw std::runtime_error("from the listener");
  };
  EXPECT_THROW(simulation->stepForward(), std::runtime_error);
  EXPECT_EQ(simulation->getTimeStamp(), 0);
  EXPECT_EQ(body->getPosition().z(), 10);
  recorder->action = nullptr;
  simulation->stepForward();
  EXPECT_LT(body->getPosition().z(), 10);
  recorder->action = [&](std::string const&) { simulation->stepForward(); };
  EXPECT_THROW(simulation->stepForward(), std::runtime_error) << "no step inside a step";
}

TEST_F(Listeners, ContactsAreToldFromImpactToSeparation) {
  addGround();
  auto const ball = addSphere(0.5, Vec3(0, 0, 1));
  auto const far = addSphere(0.5, Vec3(5, 0, 0.5));
  auto const touching = listen(new Touching(log));
  touching->addFilter(ball.get());
  run(1.0);
  EXPECT_THAT(log, ElementsAre("impact", "contact")) << "the other ball lies on the ground all the time";
  ball->setVelocity(Vec3(0, 0, 3));
  run(0.1);
  EXPECT_THAT(log, ElementsAre("impact", "contact", "separation"));
  run(1.0);
  simulation->remove(ball.get());
  simulation->stepForward();
  EXPECT_THAT(log, ElementsAre("impact", "contact", "separation", "impact", "contact", "separation"));
}

TEST_F(Listeners, ContactFiltersChooseByBodyAndGeometry) {
  auto const ground = addGround();
  auto const a = addSphere(0.5, Vec3(0, 0, 0.5));
  auto const b = addSphere(0.5, Vec3(0.9, 0, 0.5));
  zor::ref_ptr<ContactEventListener> const listener = new ContactEventListener;
  auto const ga = a->getGeometries()[0].get(), gb = b->getGeometries()[0].get();
  EXPECT_TRUE(listener->match(ga, ground.get()));
  listener->addFilter(a.get(), b.get());
  EXPECT_TRUE(listener->match(ga, gb) && listener->match(gb, ga));
  EXPECT_FALSE(listener->match(ga, ground.get()));
  listener->addFilter(ground.get());
  EXPECT_TRUE(listener->match(ga, ground.get()));
  listener->clearFilters();
  listener->addFilter(b.get());
  EXPECT_FALSE(listener->match(ga, ground.get()));
  EXPECT_THROW(listener->addFilter(static_cast<zor::RigidBody*>(nullptr)), std::invalid_argument);
}

TEST_F(Listeners, RemovedContactsLetThrough) {
  addGround();
  auto const ball = addSphere(0.5, Vec3(0, 0, 0.6));
  auto const touching = listen(new Touching(log));
  touching->policy = ContactEventListener::REMOVE_CONTACT;
  simulation->setNumSubSteps(2);
  run(1.0);
  EXPECT_LT(ball->getPosition().z(), -1.0);
}

TEST_F(Listeners, BodiesMayBeRemovedInsideContactCalls) {
  addGround();
  auto const a = addSphere(0.5, Vec3(0, 0, 0.6));
  auto const b = addSphere(0.5, Vec3(2, 0, 0.6));
  auto const touching = listen(new Touching(log));
  touching->action = [&] { // both balls touch in the same step
    simulation->remove(a.get());
    simulation->remove(b.get());
  };
  run(1.0);
  EXPECT_THAT(log, ElementsAre("impact", "separation", "separation"));
  EXPECT_TRUE(simulation->getRigidBodies().empty());
}

TEST_F(Listeners, SimulationMayBeCleanedInsideACall) {
  addGround();
  addSphere(0.5, Vec3(0, 0, 0.6));
  auto const touching = listen(new Touching(log));
  touching->action = [&] { simulation->cleanup(); };
  run(1.0);
  EXPECT_TRUE(simulation->getRigidBodies().empty());
  EXPECT_TRUE(simulation->getListeners().empty());
}

TEST_F(Listeners, GuiListenersHaveTheirMaskAndDefaults) {
  zor::ref_ptr<zorSDK::GuiEventListener> const gui = new zorSDK::GuiEventListener;
  EXPECT_EQ(gui->getMask(), 25);
  EXPECT_EQ(zorSDK::GuiEventListener::KEYBOARD | zorSDK::GuiEventListener::MOUSE |
                zorSDK::GuiEventListener::UPDATE,
            25);
  EXPECT_FALSE(gui->keyboard('a', 0, 0, 0, true));
  EXPECT_TRUE(simulation->add(gui.get()));
  simulation->stepForward();
}

TEST_F(Listeners, PickHandlerDragsABody) {
  auto const body = addBox(Vec3(0.2, 0.2, 0.2), Vec3());
  body->getMassProperties()->setMass(500);
  auto const handler = listen(new zorSDK::PickHandler);
  ASSERT_TRUE(handler->grab(body.get(), Vec3(0, 0, 0.2)));
  handler->moveTo(Vec3(1, 0, 1.2));
  run(4.0);
  double const sag = 9.81 / std::pow(2 * zor::PI * handler->getFrequency(), 2);
  EXPECT_TRUE(handler->getGrabPoint().equals(Vec3(1, 0, 1.2 - sag), 0.02)) << handler->getGrabPoint();
  simulation->remove(handler.get());
  EXPECT_EQ(handler->getPickedBody(), nullptr);
  EXPECT_TRUE(simulation->getConstraints().empty());
  EXPECT_FALSE(handler->grab(body.get(), Vec3()));
}

} // namespace
