// Steps a second of piles of boxes, in a Simulation and in the bare engine beside it: same boxes, same
// places, same solver settings. The two take turns step by step, so that what else the machine does meets
// both. A pile amplifies rounding: left alone, the two would soon differ in their contacts by a quarter and
// the times would compare piles, not programs. So the engine's boxes are put where the Simulation's are
// before each step, off the clock.

#include <cstdint>
#include <ctime>
#include <memory>
#include <vector>

#include <benchmark/benchmark.h>
#include <btBulletDynamicsCommon.h>

#include <zor/RigidBody.h>
#include <zorCollide/Box.h>
#include <zorCollide/Geometry.h>
#include <zorCollide/Plane.h>
#include <zorSDK/Simulation.h>

namespace {

constexpr double HALF = 0.2;     // m
constexpr double SPACING = 0.45; // m, between centres
constexpr double DENSITY = 1000;
constexpr double FRICTION_OF_ONE =
    0.70710678; // the engine multiplies: 0.5 between two, as a Simulation has it
constexpr double TIME_STEP = 1.0 / 60;
constexpr int LAYER = 20; // boxes along each side of a layer

/** Layers that are turned against each other by a shift, so that the pile is no stack of towers. */
zor::Vec3 placeOf(int index) {
  int const layer = index / (LAYER * LAYER);
  double const shift = 0.11 * (layer % 3);
  return zor::Vec3(SPACING * (index % LAYER) + shift, SPACING * (index / LAYER % LAYER) - shift,
                   HALF + 0.02 + (2 * HALF + 0.02) * layer);
}

/** The bare engine, set up as a Simulation sets it up. */
class BareWorld {
public:
  explicit BareWorld(int count) {
    m_configuration.setPlaneConvexMultipointIterations();
    m_world.setGravity(btVector3(0, 0, -9.81));
    m_world.getSolverInfo().m_numIterations = 30;
    m_world.getSolverInfo().m_solverMode |= SOLVER_USE_2_FRICTION_DIRECTIONS;
    m_groundObject.setCollisionShape(&m_ground);
    m_groundObject.setFriction(FRICTION_OF_ONE);
    m_world.addCollisionObject(&m_groundObject);
    double const mass = DENSITY * 8 * HALF * HALF * HALF;
    btVector3 inertia;
    m_box.calculateLocalInertia(mass, inertia);
    for (int i = 0; i < count; ++i) {
      btRigidBody::btRigidBodyConstructionInfo info(mass, nullptr, &m_box, inertia);
      info.m_friction = FRICTION_OF_ONE;
      zor::Vec3 const place = placeOf(i);
      info.m_startWorldTransform.setOrigin(btVector3(place.x(), place.y(), place.z()));
      m_bodies.push_back(std::make_unique<btRigidBody>(info));
      m_bodies.back()->setActivationState(DISABLE_DEACTIVATION);
      m_world.addRigidBody(m_bodies.back().get());
    }
  }

  ~BareWorld() {
    for (auto const& body : m_bodies)
      m_world.removeRigidBody(body.get());
    m_world.removeCollisionObject(&m_groundObject);
  }

  void follow(std::vector<zor::ref_ptr<zor::RigidBody>> const& bodies) {
    for (size_t i = 0; i < m_bodies.size(); ++i) {
      zor::RigidBody const& body = *bodies[i];
      zor::Vec3 const place = body.getPosition();
      zor::Quat const turn = body.getRotation();
      zor::Vec3 const velocity = body.getVelocity();
      zor::Vec3 const spin = body.getAngularVelocity();
      m_bodies[i]->setWorldTransform(btTransform(btQuaternion(turn.x(), turn.y(), turn.z(), turn.w()),
                                                 btVector3(place.x(), place.y(), place.z())));
      m_bodies[i]->setLinearVelocity(btVector3(velocity.x(), velocity.y(), velocity.z()));
      m_bodies[i]->setAngularVelocity(btVector3(spin.x(), spin.y(), spin.z()));
    }
  }

  void step() { m_world.stepSimulation(TIME_STEP, 0); }

  int contactPoints() {
    int points = 0;
    for (int i = 0; i < m_dispatcher.getNumManifolds(); ++i)
      points += m_dispatcher.getManifoldByIndexInternal(i)->getNumContacts();
    return points;
  }

private:
  btDefaultCollisionConfiguration m_configuration;
  btCollisionDispatcher m_dispatcher{&m_configuration};
  btDbvtBroadphase m_broadphase;
  btSequentialImpulseConstraintSolver m_solver;
  btDiscreteDynamicsWorld m_world{&m_dispatcher, &m_broadphase, &m_solver, &m_configuration};
  btStaticPlaneShape m_ground{btVector3(0, 0, 1), 0};
  btBoxShape m_box{btVector3(HALF, HALF, HALF)};
  btCollisionObject m_groundObject;
  std::vector<std::unique_ptr<btRigidBody>> m_bodies;
};

/** A Simulation of the boxes. \param bodies - gets them, in the order of their places */
zor::ref_ptr<zorSDK::Simulation> makeSimulation(int count,
                                                std::vector<zor::ref_ptr<zor::RigidBody>>& bodies) {
  zor::ref_ptr<zorSDK::Simulation> simulation = new zorSDK::Simulation();
  simulation->setTimeStep(TIME_STEP);
  simulation->add(new zorCollide::Geometry(new zorCollide::Plane(zor::Vec3(0, 0, 1), zor::Vec3())));
  zor::ref_ptr<zorCollide::Box> const box = new zorCollide::Box(zor::Vec3(HALF, HALF, HALF));
  for (int i = 0; i < count; ++i) {
    zor::ref_ptr<zor::RigidBody> const body = new zor::RigidBody(new zorCollide::Geometry(box.get()));
    body->setPosition(placeOf(i));
    simulation->add(body.get());
    bodies.push_back(body);
  }
  return simulation;
}

/** Processor time of this thread in s: others on the machine don't count. */
double processorTime() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

template <class Call>
double timeOf(Call call) {
  double const start = processorTime();
  call();
  return processorTime() - start;
}

/** Arguments: number of boxes, steps before the measurement. */
void boxes(benchmark::State& state) {
  auto const count = static_cast<int>(state.range(0));
  BareWorld bare(count);
  std::vector<zor::ref_ptr<zor::RigidBody>> bodies;
  auto const simulation = makeSimulation(count, bodies);
  for (int i = 0; i < state.range(1); ++i) { // both: contacts last, so that they depend on the past
    bare.follow(bodies);
    bare.step();
    simulation->stepForward();
  }
  double bareTime = 0, ownTime = 0, barePoints = 0, ownPoints = 0;
  std::int64_t steps = 0;
  for (auto _ : state) {
    bare.follow(bodies);
    bareTime += timeOf([&] { bare.step(); });
    double const own = timeOf([&] { simulation->stepForward(); });
    ownTime += own;
    state.SetIterationTime(own);
    barePoints += bare.contactPoints();
    ownPoints += static_cast<double>(simulation->getStatistics().contactPoints);
    ++steps;
  }
  auto const done = static_cast<double>(steps);
  state.counters["steps_per_s"] = done / ownTime;
  state.counters["engine_steps_per_s"] = done / bareTime;
  state.counters["overhead_percent"] = 100 * (ownTime / bareTime - 1);
  state.counters["points"] = ownPoints / done;
  state.counters["engine_points"] = barePoints / done;
}
BENCHMARK(boxes)
    ->ArgNames({"boxes", "after"})
    ->Args({1000, 0})
    ->Args({1000, 300})
    ->Iterations(300)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(boxes)
    ->ArgNames({"boxes", "after"})
    ->Args({10000, 0})
    ->Args({10000, 120})
    ->Iterations(60)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace
