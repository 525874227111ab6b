#include <Python.h>

#include <zor/Notify.h>
#include <zorPython/ScriptManager.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <thread>

#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using zorPython::ScriptManager;
using zorPython::ScriptValue;
typedef ScriptManager::PyGILGuard Guard;

// A toolkit type, as far as these tests go.
struct Scene {
  int bodies = 0;
};

// First of all tests in this file: the interpreter does not run yet.
TEST(WithoutInterpreter, NothingHappensAndNothingBreaks) {
  ASSERT_FALSE(Py_IsInitialized());
  EXPECT_EQ(ScriptManager::instance("", "", "", false), nullptr);
  Guard const guard;
  EXPECT_FALSE(guard.isHeld());
  EXPECT_THROW(ScriptValue::fromInt(1), std::runtime_error);
  ScriptValue const nothing;
  ScriptValue const copy(nothing);
  EXPECT_FALSE(copy.isValid());
  EXPECT_FALSE(copy.toBool());
  EXPECT_EQ(copy.toPointer("Scene"), nullptr);
}

class ScriptManagerTest : public testing::Test {
protected:
  ScriptManagerTest() : manager(ScriptManager::getOrCreate()) {
    fs::create_directories(folder);
    zor::Notify::instance().setEnableConsole(false);
    m_target = zor::Notify::instance().addTarget(
        [this](zor::NotifyMessage const& message) { reports.push_back(message); });
    manager.clearErrors();
  }
  ~ScriptManagerTest() override {
    zor::Notify::instance().removeTarget(m_target);
    zor::Notify::instance().setEnableConsole(true);
    fs::remove_all(folder);
  }

  std::string write(std::string const& name, std::string const& text) {
    fs::path const path = folder / name;
    std::ofstream(path, std::ios::binary) << text;
    return path.string();
  }

  // Runs a script of which the test expects that it can be run.
  zor::ref_ptr<zorPython::Script> load(std::string const& text) {
    zor::ref_ptr<zorPython::Script> script = manager.loadScript(write("scene.zorPy", text));
    EXPECT_TRUE(script.isValid()) << (reports.empty() ? "" : reports.back().text);
    return script;
  }

  zorPython::ScriptError onlyError() {
    EXPECT_EQ(manager.getErrors().size(), 1u);
    return manager.hasErrors() ? manager.getErrors().front() : zorPython::ScriptError();
  }

  ScriptManager& manager;
  std::vector<zor::NotifyMessage> reports;
  fs::path const folder =
      fs::path(testing::TempDir()) / ("zor_script_manager_test_" + std::to_string(getpid()));

private:
  int m_target = 0;
};

TEST_F(ScriptManagerTest, QueryFindsTheOneManager) {
  EXPECT_EQ(ScriptManager::instance("", "", "", false), &manager);
  EXPECT_EQ(ScriptManager::instance("other", "", "", true), &manager);
}

TEST_F(ScriptManagerTest, CallsFunctionsWithValues) {
  auto const script = load("def describe(name, count, ratio, flag):\n"
                           "    return f'{name} {count} {ratio} {flag}'\n"
                           "def nothing(): pass\n"
                           "LIMIT = 7\n");
  ScriptValue const result =
      manager.callFunction(script.get(), "describe",
                           {ScriptValue::fromString("k\xc3\xb6rper"), ScriptValue::fromInt(-3),
                            ScriptValue::fromReal(0.5), ScriptValue::fromBool(true)});
  EXPECT_EQ(result.toString(), "k\xc3\xb6rper -3 0.5 True");
  EXPECT_TRUE(manager.callFunction(script.get(), "nothing").isNone());
  EXPECT_EQ(script->getAttribute("LIMIT").toInt(), 7);
  EXPECT_EQ(script->getAttribute("LIMIT").toReal(), 7.0);
  EXPECT_FALSE(script->hasFunction("LIMIT"));
  EXPECT_TRUE(script->hasFunction("describe"));
  EXPECT_FALSE(script->getAttribute("missing").isValid());
  EXPECT_THROW(result.toReal(), std::runtime_error);
  EXPECT_THROW(result.toInt(), std::runtime_error);
  EXPECT_FALSE(manager.hasErrors());
  Guard const guard;
  EXPECT_EQ(PyErr_Occurred(), nullptr);
}

TEST_F(ScriptManagerTest, RunsTheFileAnewEachTime) {
  auto const first = load("names = ['old']\nold = 1\ndef value(): return names[0]\n");
  auto const second = load("names = ['new']\ndef value(): return names[0]\nmain = __name__ == '__main__'\n");
  EXPECT_EQ(manager.callFunction(first.get(), "value").toString(), "old");
  EXPECT_EQ(manager.callFunction(second.get(), "value").toString(), "new");
  EXPECT_FALSE(second->getAttribute("old").isValid());
  EXPECT_FALSE(second->getAttribute("main").toBool());
  EXPECT_EQ(second->getAttribute("__file__").toString(), (folder / "scene.zorPy").string());
}

TEST_F(ScriptManagerTest, ScriptImportsItsNeighboursAndKnowsItsModule) {
  write("zor_test_neighbour.py", "ANSWER = 42\n");
  auto const script = load("import dataclasses\n"
                           "import zor_test_neighbour\n"
                           "@dataclasses.dataclass\n"
                           "class Part:\n"
                           "    mass: 'float' = 2.0\n"
                           "def answer(): return zor_test_neighbour.ANSWER * Part().mass\n");
  EXPECT_EQ(manager.callFunction(script.get(), "answer").toReal(), 84);
}

TEST_F(ScriptManagerTest, SyntaxErrorTellsFileAndLine) {
  std::string const path = write("broken.zorPy", "x = 1\n\ndef f(:\n    pass\n");
  EXPECT_EQ(manager.loadScript(path), nullptr);
  zorPython::ScriptError const error = onlyError();
  EXPECT_EQ(error.type, "SyntaxError");
  EXPECT_EQ(error.file, path);
  EXPECT_EQ(error.line, 3);
  ASSERT_EQ(reports.size(), 1u);
  EXPECT_EQ(reports[0].level, zor::Notify::NOTIFY_ERROR);
  EXPECT_THAT(reports[0].text, HasSubstr("def f(:"));
  EXPECT_THAT(reports[0].format(), HasSubstr("broken.zorPy:3"));
}

TEST_F(ScriptManagerTest, WhatIsNoScriptIsReported) {
  EXPECT_EQ(manager.loadScript("no_such_scene.zorPy"), nullptr);
  EXPECT_THAT(onlyError().message, HasSubstr("no_such_scene.zorPy"));
  EXPECT_EQ(manager.loadScript(folder.string()), nullptr);
  EXPECT_THAT(reports.back().text, HasSubstr("folder"));
  EXPECT_EQ(manager.loadScript(write("null.zorPy", std::string("x = 1\0y", 7))), nullptr);
  EXPECT_EQ(manager.loadScript(write("latin.zorPy", "x = '\xe4'\n")), nullptr);
  EXPECT_EQ(manager.getErrors().size(), 4u);
  EXPECT_EQ(manager.callFunction(nullptr, "f").isValid(), false);
  auto const script = load("x = 1\n");
  EXPECT_FALSE(manager.callFunction(script.get(), "buildScene").isValid());
  EXPECT_THAT(reports.back().text, HasSubstr("no function \"buildScene\""));
}

TEST_F(ScriptManagerTest, EncodingDeclarationHolds) {
  auto const script = load("# -*- coding: latin-1 -*-\nname = '\xe4'\n");
  EXPECT_EQ(script->getAttribute("name").toString(), "\xc3\xa4");
}

TEST_F(ScriptManagerTest, RaisedErrorComesWithItsTraceback) {
  auto const script = load("def inner(value):\n"
                           "    return 1 / value\n"
                           "def buildScene():\n"
                           "    inner(0)\n");
  EXPECT_FALSE(manager.callFunction(script.get(), "buildScene").isValid());
  zorPython::ScriptError const error = onlyError();
  EXPECT_EQ(error.type, "ZeroDivisionError");
  EXPECT_EQ(error.line, 2);
  EXPECT_THAT(error.traceback, HasSubstr("line 4, in buildScene"));
  EXPECT_THAT(error.traceback, HasSubstr("return 1 / value"));
  Guard const guard;
  EXPECT_EQ(PyErr_Occurred(), nullptr);
}

TEST_F(ScriptManagerTest, BurstOfErrorsIsCountedNotRepeated) {
  auto const script = load("calls = 0\n"
                           "def frame():\n"
                           "    global calls\n"
                           "    calls += 1\n"
                           "    raise ValueError(f'frame {calls}')\n");
  for (int i = 0; i < 1234; ++i) {
    manager.callFunction(script.get(), "frame");
  }
  EXPECT_EQ(reports.size(), 4u) << "the 1st, 10th, 100th and 1000th time";
  EXPECT_THAT(reports.back().text, HasSubstr("1000th time"));
  EXPECT_EQ(onlyError().count, 1234u);
  EXPECT_EQ(manager.getNumErrors(), 1234u);
  manager.clearErrors();
  manager.callFunction(script.get(), "frame");
  EXPECT_EQ(reports.size(), 5u);
}

TEST_F(ScriptManagerTest, KindsOfErrorsAreLimited) {
  for (int i = 0; i < 2000; ++i) {
    zorPython::ScriptError error;
    error.label = "label";
    error.message = "number " + std::to_string(i);
    manager.registerError(error);
  }
  EXPECT_EQ(manager.getErrors().size(), 256u);
  EXPECT_EQ(manager.getNumErrors(), 2000u);
  EXPECT_LE(reports.size(), 258u);
}

TEST_F(ScriptManagerTest, RegistersThePendingErrorOfAListener) {
  Guard const guard;
  manager.registerError("nothing is pending");
  EXPECT_FALSE(manager.hasErrors());
  PyErr_SetString(PyExc_RuntimeError, "from a listener \xf0\x9f\x9a\x80");
  manager.registerError("zorOSG::GuiEventListener::keyboard");
  EXPECT_EQ(PyErr_Occurred(), nullptr);
  EXPECT_EQ(onlyError().label, "zorOSG::GuiEventListener::keyboard");
  EXPECT_EQ(onlyError().message, "from a listener \xf0\x9f\x9a\x80");
}

TEST_F(ScriptManagerTest, ErrorsThatCannotBeShownDoNotBreakTheReport) {
  auto const script = load("class Odd(Exception):\n"
                           "    def __str__(self): raise RuntimeError('no text')\n"
                           "def odd(): raise Odd()\n"
                           "def surrogate(): raise ValueError('\\udcff')\n");
  manager.callFunction(script.get(), "odd");
  manager.callFunction(script.get(), "surrogate");
  ASSERT_EQ(manager.getErrors().size(), 2u);
  EXPECT_EQ(manager.getErrors()[0].type, "Odd");
  EXPECT_EQ(manager.getErrors()[1].message, "\\udcff");
}

TEST_F(ScriptManagerTest, WishToStopIsNoError) {
  auto const script = load("import sys\n"
                           "def leave(code): sys.exit(code)\n"
                           "def interrupt(): raise KeyboardInterrupt\n");
  EXPECT_EQ(manager.takeStopRequest(), std::nullopt);
  manager.callFunction(script.get(), "leave", {ScriptValue::fromInt(3)});
  EXPECT_EQ(manager.takeStopRequest(), 3);
  EXPECT_EQ(manager.takeStopRequest(), std::nullopt);
  manager.callFunction(script.get(), "leave", {ScriptValue::fromString("text")});
  EXPECT_EQ(manager.takeStopRequest(), 1);
  manager.callFunction(script.get(), "interrupt");
  EXPECT_EQ(manager.takeStopRequest(), 130);
  EXPECT_FALSE(manager.hasErrors());
}

TEST_F(ScriptManagerTest, AnErrorPendingOutsideIsKept) {
  auto const script = load("def fine(): return 5\n");
  Guard const guard;
  PyErr_SetString(PyExc_KeyError, "outside");
  EXPECT_EQ(manager.callFunction(script.get(), "fine").toInt(), 5);
  EXPECT_TRUE(PyErr_ExceptionMatches(PyExc_KeyError));
  PyErr_Clear();
}

TEST_F(ScriptManagerTest, ConvertersCarryToolkitObjects) {
  EXPECT_THROW(ScriptValue::fromPointer("Scene", &manager), std::runtime_error);
  ScriptManager::registerToPython(
      "Scene", [](zor::String const&, void* pointer) { return PyCapsule_New(pointer, "Scene", nullptr); });
  ScriptManager::registerFromPython("", [](zor::String const& name, PyObject* object) {
    return PyCapsule_GetPointer(object, name.c_str()); // sets an error for what is no capsule
  });
  auto const script = load("def same(x): return x\ndef other(x): return 3\n");
  Scene scene;
  ScriptValue const argument = ScriptValue::fromPointer("Scene", &scene);
  EXPECT_EQ(manager.callFunction(script.get(), "same", {argument}).toPointer("Scene"), &scene);
  EXPECT_EQ(manager.callFunction(script.get(), "other", {argument}).toPointer("Scene"), nullptr);
  EXPECT_TRUE(ScriptValue::fromPointer("Scene", nullptr).isNone());
  ScriptManager::registerToPython("Scene", nullptr);
  ScriptManager::registerFromPython("", nullptr);
  EXPECT_THROW(argument.toPointer("Scene"), std::runtime_error);
  EXPECT_FALSE(manager.hasErrors());
}

TEST_F(ScriptManagerTest, ValuesKeepTheirReferences) {
  Guard const guard;
  PyObject* const list = PyList_New(0);
  Py_ssize_t const before = Py_REFCNT(list);
  {
    ScriptValue const a = ScriptValue::fromBorrowed(list);
    ScriptValue b = a;
    ScriptValue c = std::move(b);
    b = c;
    EXPECT_EQ(Py_REFCNT(list), before + 3);
  }
  EXPECT_EQ(Py_REFCNT(list), before);
  Py_DECREF(list);
}

TEST_F(ScriptManagerTest, ThreadsTakeTheLockThemselves) {
  auto const script = load("def add(a): return a + 1\ndef bad(): raise ValueError('x')\n");
  std::vector<std::thread> threads;
  for (int t = 0; t < 3; ++t) {
    threads.emplace_back([&] {
      for (int i = 0; i < 100; ++i) {
        Guard const outer;
        Guard const inner;
        EXPECT_EQ(manager.callFunction(script.get(), "add", {ScriptValue::fromInt(i)}).toInt(), i + 1);
        manager.callFunction(script.get(), "bad");
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(onlyError().count, 300u);
}

// Last: ends the interpreter.
TEST_F(ScriptManagerTest, ZZ_ValuesMayOutliveTheInterpreter) {
  auto const script = load("def f(): return [1]\n");
  ScriptValue const value = manager.callFunction(script.get(), "f");
  zor::Singleton::shutdownAll();
  EXPECT_FALSE(Py_IsInitialized());
  EXPECT_FALSE(ScriptValue(value).isValid());
  EXPECT_FALSE(manager.callFunction(script.get(), "f").isValid());
  EXPECT_EQ(manager.loadScript("anything"), nullptr);
  EXPECT_THAT(reports.back().text, HasSubstr("no Python interpreter"));
}

} // namespace
