#pragma once

#include <zor/Notify.h>
#include <zorCollide/Box.h>
#include <zorIO/ArgumentParser.h>
#include <zorOSG/CreateVisual.h>
#include <zorOSG/ExampleApplication.h>
#include <zorOSG/RenderState.h>
#include <zorSDK/Simulation.h>

#include <gtest/gtest.h>
#include <osgGA/EventQueue>
#include <osgViewer/Viewer>

#include <functional>
#include <string>
#include <vector>

namespace zorTest {

constexpr double STEP = 1.0 / 60;

/// A frame listener made of functions.
class FrameHook : public zorOSG::ExampleApplicationListener {
public:
  using Function = std::function<void(zorOSG::ExampleApplication*)>;

  explicit FrameHook(Function pre, Function post = {}) : m_pre(std::move(pre)), m_post(std::move(post)) {}

  void preFrame(zorOSG::ExampleApplication* app) override {
    ++frames;
    if (m_pre)
      m_pre(app);
  }
  void postFrame(zorOSG::ExampleApplication* app) override {
    if (m_post)
      m_post(app);
  }

  int frames = 0;

private:
  Function m_pre;
  Function m_post;
};

/// Collects what the log says.
class LogRecorder {
public:
  LogRecorder()
      : m_id(zor::Notify::instance().addTarget(
            [this](auto const& message) { text += message.format() + "\n"; })) {}
  ~LogRecorder() { zor::Notify::instance().removeTarget(m_id); }
  LogRecorder(LogRecorder const&) = delete;
  LogRecorder& operator=(LogRecorder const&) = delete;

  bool has(std::string const& part) const { return text.find(part) != std::string::npos; }

  std::string text;

private:
  int m_id;
};

/// An application that draws off screen.
class Application : public testing::Test {
protected:
  /** \return whether init() accepts the line */
  bool init(std::vector<std::string> line = {"--offscreen", "--window=80x60"}) {
    line.insert(line.begin(), "test");
    return app->init(new zorIO::ArgumentParser(line));
  }

  void initWithout(std::string const& option = "--zorOnly") { ASSERT_TRUE(init({option})); }

  void stopAtFrame(int frame, int code = 0) {
    onFrame([frame, code, count = 0](zorOSG::ExampleApplication* a) mutable {
      if (++count == frame)
        a->stop(code);
    });
  }

  void onFrame(FrameHook::Function pre, FrameHook::Function post = {}) {
    app->addListener(new FrameHook(std::move(pre), std::move(post)));
  }

  osgGA::EventQueue& events() { return *app->getViewer()->getEventQueue(); }

  void press(int key) {
    events().keyPress(key);
    events().keyRelease(key);
  }

  /** \return a body with a red visual in the middle of the view */
  static zor::RigidBody* addRedBox(zorSDK::Simulation* simulation, osg::Group* root) {
    zor::RigidBody* const body =
        new zor::RigidBody(new zorCollide::Geometry(new zorCollide::Box(zor::Vec3(0.5, 0.5, 0.5))));
    simulation->add(body);
    zorOSG::setDiffuseColor(zorOSG::createVisual(body, root), zor::Vec4f(1, 0, 0, 1));
    return body;
  }

  zor::ref_ptr<zorOSG::ExampleApplication> app = new zorOSG::ExampleApplication;
};

} // namespace zorTest
