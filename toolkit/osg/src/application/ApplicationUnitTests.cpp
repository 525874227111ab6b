#include "ExampleApplicationImpl.h"

#include "SignalGuard.h"

#include <zorPython/ScriptManager.h>

#include <chrono>
#include <cstdio>

// The automatic run of all scenes.

namespace zorOSG {

namespace {

constexpr double DEFAULT_TIME = 3; // simulated seconds of a scene that says nothing

zor::UInt countScriptErrors() {
  auto const* const scripts = zorPython::ScriptManager::instance("", "", "", false);
  return scripts ? scripts->getNumErrors() : 0;
}

} // namespace

int ExampleApplication::Impl::runUnitTests() {
  int count = 0, failures = 0;
  for (std::size_t i = 0; i < scenes.size() && !app.done() && !interrupted && !SignalGuard::pending(); ++i) {
    SceneDescription const scene = scenes.at(i).description;
    if (!scene.unittest || (scene.slowUnittest && !options.slowUnitTests))
      continue;
    auto const start = StepClock::Clock::now();
    bool const isGood = runUnitTest(i);
    double const seconds = StepClock::Seconds(StepClock::Clock::now() - start).count();
    std::printf("%s  %s, %.2f s simulated in %.2f s\n", isGood ? "ok    " : "FAILED",
                SceneList::describe(scene).c_str(), app.getTimeStamp(), seconds);
    std::fflush(stdout);
    ++count;
    failures += isGood ? 0 : 1;
  }
  std::printf("%d scenes run, %d failed\n", count, failures);
  std::fflush(stdout);
  return failures ? 1 : 0;
}

/** A scene is good that can be built, runs to its time without an error in a script, and does not stop with
 * an exit code of its own. */
bool ExampleApplication::Impl::runUnitTest(std::size_t index) {
  zor::UInt const errorsBefore = countScriptErrors();
  stopped = false;
  exitCode = 0;
  if (!build(index, true))
    return false;
  float const own = scenes.at(index).description.stopAfter;
  stopTime = own >= 0 ? own : options.stopAfter.value_or(DEFAULT_TIME);
  app.setAutoStepping(true);
  while (!app.breakRequested())
    frame();
  return exitCode == 0 && countScriptErrors() == errorsBefore;
}

} // namespace zorOSG
