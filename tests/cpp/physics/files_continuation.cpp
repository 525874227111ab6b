#include <cstring>

#include "FileScenes.h"

using scenes::advance;
using zor::ref_ptr;
using zorSDK::Simulation;

// A simulation that is stored goes on bit for bit where it is read, and does not notice that it was stored.

namespace {

struct Scene {
  char const* name;
  void (*build)(Simulation&);
};

void everything(Simulation& simulation) {
  scenes::pile(simulation, 3, 1);
  scenes::machine(simulation);
  scenes::odds(simulation);
}

class Continuation : public testing::TestWithParam<Scene> {
protected:
  static ref_ptr<Simulation> make() {
    ref_ptr<Simulation> simulation = new Simulation;
    GetParam().build(*simulation);
    return simulation;
  }

  static ref_ptr<Simulation> copy(Simulation const& simulation, bool json) {
    ref_ptr<Simulation> other = new Simulation;
    other->fromBytes(simulation.toBytes(json));
    return other;
  }

  static bool sameBits(Simulation const& a, Simulation const& b) {
    zor::RealVector const first = scenes::state(a), second = scenes::state(b);
    return first.size() == second.size() &&
           std::memcmp(first.data(), second.data(), first.size() * sizeof(double)) == 0;
  }

  static void expectSame(Simulation& a, Simulation& b, int from, int to) {
    for (int step = from; step < to; ++step) {
      advance(a, step, step + 1);
      advance(b, step, step + 1);
      ASSERT_TRUE(sameBits(a, b)) << GetParam().name << " differs after step " << step;
    }
  }
};

TEST_P(Continuation, IsTheSameBitForBit) {
  ref_ptr<Simulation> const undisturbed = make();
  ref_ptr<Simulation> const original = make();
  int at = 0;
  for (int const saved : {0, 1, 7, 64, 133, 260}) {
    advance(*undisturbed, at, saved);
    advance(*original, at, saved);
    at = saved;
    std::string const bytes = original->toBytes();
    ref_ptr<Simulation> const restored = copy(*original, saved % 2 == 0);
    ASSERT_TRUE(sameBits(*original, *restored)) << "at step " << saved;
    EXPECT_TRUE(restored->toBytes() == bytes) << "what is read is what was written, at step " << saved;
    EXPECT_TRUE(original->toBytes() == bytes) << "writing changes nothing";
    expectSame(*undisturbed, *restored, at, at + 60);
    at += 60;
    advance(*original, saved, at);
    ASSERT_TRUE(sameBits(*undisturbed, *original)) << "the original goes on as if it had not been stored";
  }
  // Second generation, for long.
  ref_ptr<Simulation> const second = copy(*original, false);
  advance(*second, at, at + 20);
  advance(*original, at, at + 20);
  at += 20;
  ref_ptr<Simulation> const third = copy(*second, true);
  expectSame(*original, *third, at, at + 500);
  advance(*second, at, at + 500);
  EXPECT_TRUE(sameBits(*original, *second));
  EXPECT_TRUE(original->toBytes() == third->toBytes()) << "also in what the engine remembers";
}

INSTANTIATE_TEST_SUITE_P(Files, Continuation,
                         testing::Values(Scene{"pile", [](Simulation& s) { scenes::pile(s); }},
                                         Scene{"machine", scenes::machine}, Scene{"odds", scenes::odds},
                                         Scene{"everything", everything}),
                         [](auto const& each) { return std::string(each.param.name); });

} // namespace
