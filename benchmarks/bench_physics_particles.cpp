// One step of 20,000 equal spheres that have fallen into a box and come to rest there: as a particle system,
// and as rigid bodies of the bare engine with its usual settings.

#include <cmath>
#include <cstdint>
#include <memory>
#include <vector>

#include <benchmark/benchmark.h>
#include <btBulletDynamicsCommon.h>

#include <zor/ParticleSystem.h>
#include <zorCollide/Box.h>
#include <zorSDK/Simulation.h>

namespace {

constexpr int SPHERES = 20000;
constexpr int SETTLING = 90; // steps before the clock runs
constexpr int MEASURED = 60;
constexpr double RADIUS = 0.05;
constexpr double HALF = 2.5; // of the box
constexpr double STEP = 1.0 / 60;

struct Wall {
  zor::Vec3 half, position;
};

std::vector<Wall> container() {
  std::vector<Wall> walls{{zor::Vec3(HALF + 1, HALF + 1, 0.5), zor::Vec3(0, 0, -0.5)}};
  for (int const side : {-1, 1}) {
    walls.push_back({zor::Vec3(0.5, HALF + 1, 20), zor::Vec3(side * (HALF + 0.5), 0, 19)});
    walls.push_back({zor::Vec3(HALF + 1, 0.5, 20), zor::Vec3(0, side * (HALF + 0.5), 19)});
  }
  return walls;
}

/** Layers on top of each other, a little out of line so that they don't stand as columns. */
zor::Vec3Vector positions() {
  constexpr double SPACING = 2.2 * RADIUS;
  auto const across = static_cast<int>(2 * HALF / SPACING);
  zor::Vec3Vector result;
  for (int i = 0; i < SPHERES; ++i)
    result.push_back(
        zor::Vec3(-HALF + 1.1 * RADIUS + SPACING * (i % across) + 0.05 * RADIUS * std::sin(i),
                  -HALF + 1.1 * RADIUS + SPACING * (i / across % across) + 0.05 * RADIUS * std::sin(3 * i),
                  1.2 * RADIUS + SPACING * (i / across / across)));
  return result;
}

/** How high the heap is shows whether it holds: the lower, the more the spheres overlap. */
void report(benchmark::State& state, double highest) {
  state.counters["steps_per_second"] =
      benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
  state.counters["height"] = highest;
}

void particleSystem(benchmark::State& state) {
  zor::ref_ptr<zorSDK::Simulation> const simulation = new zorSDK::Simulation;
  for (Wall const& wall : container()) {
    zor::ref_ptr<zorCollide::Geometry> const geometry =
        new zorCollide::Geometry(new zorCollide::Box(wall.half));
    geometry->setPosition(wall.position);
    simulation->add(geometry.get());
  }
  zor::ref_ptr<zor::ParticleSystem> const particles = new zor::ParticleSystem;
  particles->setNumThreads(static_cast<zor::UInt>(state.range(0)));
  particles->addParticles(positions(), RADIUS);
  simulation->add(particles.get());
  for (int i = 0; i < SETTLING; ++i)
    simulation->stepForward();
  for (auto _ : state)
    simulation->stepForward();
  zor::Vec3 lower, upper;
  particles->getBounds(lower, upper);
  report(state, upper.z());
}

void rawEngine(benchmark::State& state) {
  btDefaultCollisionConfiguration configuration;
  btCollisionDispatcher dispatcher(&configuration);
  btDbvtBroadphase broadphase;
  btSequentialImpulseConstraintSolver solver;
  btDiscreteDynamicsWorld world(&dispatcher, &broadphase, &solver, &configuration);
  world.setGravity(btVector3(0, 0, -9.81));
  std::vector<std::unique_ptr<btCollisionShape>> shapes;
  std::vector<std::unique_ptr<btRigidBody>> bodies;
  auto const add = [&](double mass, btCollisionShape* shape, zor::Vec3 const& at) {
    btVector3 inertia(0, 0, 0);
    if (mass > 0)
      shape->calculateLocalInertia(mass, inertia);
    btRigidBody::btRigidBodyConstructionInfo info(mass, nullptr, shape, inertia);
    info.m_startWorldTransform.setOrigin(btVector3(at[0], at[1], at[2]));
    bodies.push_back(std::make_unique<btRigidBody>(info));
    bodies.back()->setActivationState(DISABLE_DEACTIVATION);
    world.addRigidBody(bodies.back().get());
  };
  for (Wall const& wall : container()) {
    shapes.push_back(std::make_unique<btBoxShape>(btVector3(wall.half[0], wall.half[1], wall.half[2])));
    add(0, shapes.back().get(), wall.position);
  }
  shapes.push_back(std::make_unique<btSphereShape>(RADIUS));
  double const mass = 1000 * 4.0 / 3 * SIMD_PI * RADIUS * RADIUS * RADIUS;
  for (zor::Vec3 const& position : positions())
    add(mass, shapes.back().get(), position);
  for (int i = 0; i < SETTLING; ++i)
    world.stepSimulation(STEP, 0);
  for (auto _ : state)
    world.stepSimulation(STEP, 0);
  double highest = 0;
  for (auto const& body : bodies)
    if (body->getInvMass() > 0)
      highest = std::max<double>(highest, body->getWorldTransform().getOrigin().z() + RADIUS);
  report(state, highest);
  for (auto const& body : bodies)
    world.removeRigidBody(body.get());
}

} // namespace

BENCHMARK(particleSystem)
    ->ArgName("threads")
    ->Arg(1)
    ->Arg(2)
    ->Iterations(MEASURED)
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(rawEngine)->Iterations(MEASURED)->MeasureProcessCPUTime()->UseRealTime()->Unit(
    benchmark::kMillisecond);
