// One step of 300 bodies of mixed shapes: in free fall, piled up, and piled with auto-sleep. Rays into the
// pile.

#include <string>

#include <benchmark/benchmark.h>

#include <zor/RigidBody.h>
#include <zorCollide/Box.h>
#include <zorCollide/Capsule.h>
#include <zorCollide/Cylinder.h>
#include <zorCollide/Geometry.h>
#include <zorCollide/Plane.h>
#include <zorCollide/Space.h>
#include <zorCollide/Sphere.h>
#include <zorSDK/Simulation.h>

namespace {

constexpr int BODIES = 300;

zor::ref_ptr<zorCollide::Shape> shapeOf(int index) {
  switch (index % 4) {
  case 0:
    return new zorCollide::Box(zor::Vec3(0.2, 0.2, 0.2));
  case 1:
    return new zorCollide::Sphere(0.2);
  case 2:
    return new zorCollide::Capsule(0.15, 0.2);
  default:
    return new zorCollide::Cylinder(0.2, 0.3);
  }
}

/** Bodies in layers of 6 by 6 over the ground. */
zor::ref_ptr<zorSDK::Simulation> makeScene(zor::Real spacing) {
  zor::ref_ptr<zorSDK::Simulation> simulation = new zorSDK::Simulation();
  simulation->add(new zorCollide::Geometry(new zorCollide::Plane(zor::Vec3(0, 0, 1), zor::Vec3())));
  for (int i = 0; i < BODIES; ++i) {
    zor::ref_ptr<zor::RigidBody> body = new zor::RigidBody("body" + std::to_string(i));
    body->add(new zorCollide::Geometry(shapeOf(i).get()));
    body->setPosition(zor::Vec3(spacing * (i % 6), spacing * (i / 6 % 6), 0.5 + spacing * (i / 36)));
    simulation->add(body.get());
  }
  return simulation;
}

void report(benchmark::State& state, zorSDK::Simulation const& simulation) {
  state.counters["real_time_factor"] = benchmark::Counter(
      simulation.getTimeStep() * static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

void freeFall(benchmark::State& state) {
  auto simulation = makeScene(2);
  simulation->setUniformGravity(zor::Vec3());
  for (auto _ : state) {
    simulation->stepForward();
  }
  report(state, *simulation);
}
BENCHMARK(freeFall)->Unit(benchmark::kMillisecond);

void pile(benchmark::State& state) {
  auto simulation = makeScene(0.45);
  simulation->stepTo(2);
  for (auto _ : state) {
    simulation->stepForward();
  }
  report(state, *simulation);
}
BENCHMARK(pile)->Unit(benchmark::kMillisecond);

void pileThatMaySleep(benchmark::State& state) {
  auto simulation = makeScene(0.45);
  simulation->setEnableAutoSleep(true);
  simulation->stepTo(6);
  for (auto _ : state) {
    simulation->stepForward();
  }
  report(state, *simulation);
}
BENCHMARK(pileThatMaySleep)->Unit(benchmark::kMillisecond);

/** A bundle of rays from above, as a lidar casts them. */
void castRays(benchmark::State& state) {
  auto simulation = makeScene(0.45);
  simulation->stepTo(2);
  zor::Vec3Vector origins;
  origins.push_back(zor::Vec3(1, 1, 5));
  zor::Vec3Vector directions;
  for (int row = 0; row < 64; ++row) {
    for (int column = 0; column < 64; ++column) {
      directions.push_back(zor::Vec3(0.02 * (column - 32), 0.02 * (row - 32), -1));
    }
  }
  for (auto _ : state) {
    auto hits = simulation->getSpace()->castRays(origins, directions, 20);
    benchmark::DoNotOptimize(hits);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(directions.size()));
}
BENCHMARK(castRays)->Unit(benchmark::kMillisecond);

} // namespace
