// Value types: what a scene's update does thousands of times a frame.

#include <vector>

#include <benchmark/benchmark.h>

#include <zor/AffineMatrix4x4.h>
#include <zor/Quat.h>
#include <zor/Vec3.h>

namespace {

constexpr std::size_t COUNT = 1024;

std::vector<zor::Vec3> points() {
  std::vector<zor::Vec3> result;
  for (std::size_t i = 0; i < COUNT; ++i) {
    auto const t = static_cast<zor::Real>(i);
    result.emplace_back(0.5 * t, 1 - t, 2 + 0.25 * t);
  }
  return result;
}

std::vector<zor::AffineMatrix4x4> transforms() {
  std::vector<zor::AffineMatrix4x4> result;
  for (zor::Vec3 const& point : points()) {
    result.emplace_back(zor::Quat(0.01 * point.x(), zor::Vec3(0, 0, 1)), point);
  }
  return result;
}

void crossAndNormalize(benchmark::State& state) {
  auto const values = points();
  for (auto _ : state) {
    zor::Vec3 sum;
    for (std::size_t i = 1; i < COUNT; ++i) {
      sum += (values[i] ^ values[i - 1]).normal();
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(COUNT - 1));
}
BENCHMARK(crossAndNormalize);

void transformPoints(benchmark::State& state) {
  auto const values = points();
  zor::AffineMatrix4x4 const matrix(zor::Quat(0.3, zor::Vec3(0, 1, 0)), zor::Vec3(1, 2, 3));
  for (auto _ : state) {
    zor::Vec3 sum;
    for (zor::Vec3 const& value : values) {
      sum += value * matrix;
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(COUNT));
}
BENCHMARK(transformPoints);

void chainMatrices(benchmark::State& state) {
  auto const values = transforms();
  for (auto _ : state) {
    zor::AffineMatrix4x4 product;
    for (zor::AffineMatrix4x4 const& value : values) {
      product = value * product;
    }
    benchmark::DoNotOptimize(product);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(COUNT));
}
BENCHMARK(chainMatrices);

void invertMatrices(benchmark::State& state) {
  auto const values = transforms();
  for (auto _ : state) {
    for (zor::AffineMatrix4x4 const& value : values) {
      auto inverse = value.inverse();
      benchmark::DoNotOptimize(inverse);
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(COUNT));
}
BENCHMARK(invertMatrices);

void rotateByQuaternion(benchmark::State& state) {
  auto const values = points();
  zor::Quat const rotation(0.3, zor::Vec3(0, 1, 0));
  for (auto _ : state) {
    zor::Vec3 sum;
    for (zor::Vec3 const& value : values) {
      sum += rotation * value;
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(COUNT));
}
BENCHMARK(rotateByQuaternion);

} // namespace
