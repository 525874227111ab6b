#include <zor/Notify.h>
#include <zorPython/CallSignature.h>
#include <zorPython/PendingSignals.h>
#include <zorPython/ScriptManager.h>

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>

#include <unistd.h>

namespace {

using zorPython::PendingSignals;
using zorPython::ScriptManager;

class Signals : public testing::Test {
protected:
  void SetUp() override {
    zor::Notify::instance().setEnableConsole(false);
    manager.clearErrors();
    std::ofstream(path) << R"(
import signal

class Alarm(Exception):
    pass

def handler(number, frame):
    raise Alarm("after the call")

signal.signal(signal.SIGUSR1, handler)

def spin():
    for _ in range(10000):
        pass

def none(): pass
def two(simulation, app): pass
def defaults(simulation, scale=1.0, *rest, name, **options): pass
class Callable:
    def __call__(self, simulation): pass
instance = Callable()
)";
    script = manager.loadScript(path);
    ASSERT_TRUE(script);
  }
  void TearDown() override {
    zor::Notify::instance().setEnableConsole(true);
    manager.clearErrors();
    std::filesystem::remove(path);
  }

  int required(char const* name) { return zorPython::countRequiredParameters(script->getAttribute(name)); }

  std::string const path =
      (std::filesystem::temp_directory_path() / ("zor_signals_" + std::to_string(getpid()) + ".py")).string();
  ScriptManager& manager = ScriptManager::getOrCreate();
  zor::ref_ptr<zorPython::Script> script;
};

TEST_F(Signals, what_a_handler_raises_waits_until_python_code_runs_again) {
  EXPECT_FALSE(PendingSignals::check());
  std::raise(SIGUSR1);
  EXPECT_TRUE(PendingSignals::check());
  EXPECT_FALSE(PendingSignals::check()) << "each signal counts once";
  EXPECT_FALSE(manager.hasErrors());

  PendingSignals::raiseAfterReturn();
  EXPECT_FALSE(manager.callFunction(script.get(), "spin").isValid());
  ASSERT_EQ(manager.getErrors().size(), 1u);
  EXPECT_EQ(manager.getErrors()[0].type, "Alarm");
  EXPECT_EQ(manager.getErrors()[0].message, "after the call");

  manager.clearErrors();
  EXPECT_TRUE(manager.callFunction(script.get(), "spin").isValid()) << "raised once";
}

TEST_F(Signals, an_interrupt_that_was_taken_elsewhere_is_raised_anew) {
  PendingSignals::raiseAfterReturn();
  EXPECT_FALSE(manager.callFunction(script.get(), "spin").isValid());
  EXPECT_EQ(manager.takeStopRequest(), 130);
  EXPECT_FALSE(manager.hasErrors());
}

TEST_F(Signals, only_parameters_without_a_default_are_required) {
  EXPECT_EQ(required("none"), 0);
  EXPECT_EQ(required("two"), 2);
  EXPECT_EQ(required("defaults"), 1);
  EXPECT_EQ(required("instance"), 1);
  EXPECT_EQ(required("missing"), 0);
  EXPECT_EQ(zorPython::countRequiredParameters(zorPython::ScriptValue::fromInt(3)), 0);
}

} // namespace
