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

/** A bundle of rays from above onto the pile, as a lidar casts them; three ways to cast them. */
struct Bundle {
  Bundle() {
    simulation->stepTo(2);
    for (int row = 0; row < 64; ++row)
      for (int column = 0; column < 64; ++column)
        directions.push_back(zor::Vec3(0.02 * (column - 32), 0.02 * (row - 32), -1));
  }

  template <class Cast>
  void run(benchmark::State& state, Cast const& cast) const {
    zorCollide::Space const& space = *simulation->getSpace();
    for (auto _ : state) {
      auto answers = cast(space);
      benchmark::DoNotOptimize(answers);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(directions.size()));
  }

  zor::ref_ptr<zorSDK::Simulation> simulation = makeScene(0.45);
  zor::Vec3Vector origins{zor::Vec3(1, 1, 5)};
  zor::Vec3Vector directions;
};

void castRay(benchmark::State& state) {
  Bundle const bundle;
  bundle.run(state, [&](zorCollide::Space const& space) {
    double sum = 0;
    for (zor::Vec3 const& direction : bundle.directions)
      sum += space.castRay(bundle.origins[0], direction, 20).getDistance();
    return sum;
  });
}
BENCHMARK(castRay)->Unit(benchmark::kMillisecond);

void castRays(benchmark::State& state) {
  Bundle const bundle;
  bundle.run(state, [&](zorCollide::Space const& space) {
    return space.castRays(bundle.origins, bundle.directions, 20);
  });
}
BENCHMARK(castRays)->Unit(benchmark::kMillisecond);

void castRayTable(benchmark::State& state) {
  Bundle const bundle;
  bundle.run(state, [&](zorCollide::Space const& space) {
    return space.castRayTable(bundle.origins, bundle.directions, 20);
  });
}
BENCHMARK(castRayTable)->Unit(benchmark::kMillisecond);

} // namespace
