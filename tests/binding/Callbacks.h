#pragma once

#include <zor/Notify.h>
#include <zorOSG/ExampleApplication.h>
#include <zorOSG/ExampleApplicationListener.h>
#include <zorOSG/GuiEventListener.h>
#include <zorOSG/LidarOutputRendererColorFunctionCallback.h>

#include <Python.h>

#include <exception>
#include <iostream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <thread>
#include <vector>

/** Calls callbacks as the toolkit does, from anywhere, for the tests. */
namespace callbacks {

/** From where a callback is called. */
enum Where {
  HERE,     ///< with the interpreter lock, like everything that a wrapper calls
  UNLOCKED, ///< without it, on the interpreter's own thread
  ELSEWHERE ///< without it, on a thread that the interpreter does not know
};

inline std::string& lastText() {
  static std::string text;
  return text;
}

/** \return text of the C++ exception that the last call of run() has let through, or an empty one */
inline std::string getLastText() {
  return lastText();
}

/** Calls a function and lets its exceptions through. */
template <class Function>
void run(Where where, Function function) {
  std::exception_ptr error;
  auto const guarded = [&] {
    try {
      function();
    } catch (...) {
      error = std::current_exception();
    }
  };
  if (where == HERE) {
    guarded();
  } else {
    PyThreadState* const state = PyEval_SaveThread();
    if (where == UNLOCKED)
      guarded();
    else
      std::thread(guarded).join();
    PyEval_RestoreThread(state);
  }
  lastText().clear();
  try {
    if (error)
      std::rethrow_exception(error);
  } catch (std::exception const& caught) {
    lastText() = caught.what();
    throw;
  }
}

typedef zorSDK::GuiEventListener Gui;

inline bool keyboard(Gui* to, int key, unsigned int modKeyMask, float x, float y, bool keydown, Where where) {
  bool result = false;
  run(where, [&] { result = to->keyboard(key, modKeyMask, x, y, keydown); });
  return result;
}
inline bool mouse(Gui* to, int buttons, int state, float x, float y, Where where) {
  bool result = false;
  run(where, [&] {
    result = to->mouse(static_cast<Gui::MouseButtonMask>(buttons), static_cast<Gui::MouseState>(state), x, y);
  });
  return result;
}
inline bool mouseMoved(Gui* to, float x, float y, Where where) {
  bool result = false;
  run(where, [&] { result = to->mouseMoved(x, y); });
  return result;
}
inline bool mouseDragged(Gui* to, int buttons, float x, float y, Where where) {
  bool result = false;
  run(where, [&] { result = to->mouseDragged(static_cast<Gui::MouseButtonMask>(buttons), x, y); });
  return result;
}
inline void update(Gui* to, float x, float y, Where where) {
  run(where, [&] { to->update(x, y); });
}
inline void addNotification(Gui* to, Where where) {
  run(where, [&] { to->addNotification(); });
}
inline void removeNotification(Gui* to, Where where) {
  run(where, [&] { to->removeNotification(); });
}
inline void printSubtree(Gui* to, Where where) {
  run(where, [&] { to->printSubtree(); });
}
inline void setContext(Gui* to, zor::Object* context, Where where) {
  run(where, [&] { to->setContext(context); });
}
inline void rebind(Gui* to, Where where) {
  run(where, [&] { to->rebind(); });
}
inline void addObject(Gui* to, zor::Object* object, bool bindNow, Where where) {
  run(where, [&] { to->addObject(object, bindNow); });
}
inline void removeObject(Gui* to, zor::Object* object, Where where) {
  run(where, [&] { to->removeObject(object); });
}
inline void setMask(Gui* to, int mask, Where where) {
  run(where, [&] { to->setMask(mask); });
}
inline void setInverseTransform(Gui* to, zor::AffineMatrix4x4 const& matrix, Where where) {
  run(where, [&] { to->setInverseTransform(matrix); });
}

inline void preFrame(zorOSG::ExampleApplicationListener* to, zorOSG::ExampleApplication* app, Where where) {
  run(where, [&] { to->preFrame(app); });
}
inline void postFrame(zorOSG::ExampleApplicationListener* to, zorOSG::ExampleApplication* app, Where where) {
  run(where, [&] { to->postFrame(app); });
}

/** Has a copy of a colour function, as a renderer does. */
class Painter {
public:
  explicit Painter(zorOSG::LidarOutputRendererColorFunctionCallback* callback)
      : m_function(*callback->getColorFunction()) {}
  explicit Painter(zorOSG::LidarOutputRenderer::IntensityState::ColorFunc* function)
      : m_function(*function) {}

  osg::Vec4 color(float intensity, Where where) const {
    osg::Vec4 result;
    run(where, [&] { result = m_function(intensity); });
    return result;
  }

private:
  zorOSG::LidarOutputRenderer::IntensityState::ColorFunc m_function;
};

/** Fails in C++ code, before and after a callback of a listener has failed. */
inline void failTwice(Gui* to) {
  try {
    to->setMask(1);
  } catch (std::exception const&) {
    to->addNotification(); // as one who cleans up
    to->rebind();
    throw std::runtime_error("C++ gave up");
  }
}

/** Has the log fail once where it writes to the console, and collects what it tells after that. */
class BrokenConsole {
public:
  BrokenConsole()
      : m_target(zor::Notify::instance().addTarget(
            [this](zor::NotifyMessage const& message) { m_text += message.format() + "\n"; })),
        m_before(std::cerr.rdbuf(&m_buffer)) {
    std::cerr.exceptions(std::ios::badbit);
  }
  BrokenConsole(BrokenConsole const&) = delete;
  ~BrokenConsole() {
    mend();
    std::cerr.rdbuf(m_before);
    zor::Notify::instance().removeTarget(m_target);
  }

  std::string getText() const { return m_text; }

private:
  static void mend() {
    std::cerr.exceptions(std::ios::goodbit);
    std::cerr.clear();
  }

  /** Whoever reads it can write again. */
  class Gone : public std::exception {
  public:
    char const* what() const noexcept override {
      mend();
      return "the console is gone";
    }
  };

  class Failing : public std::streambuf {
    std::streamsize xsputn(char const* /*text*/, std::streamsize /*size*/) override { throw Gone(); }
  };

  std::string m_text;
  int m_target;
  Failing m_buffer;
  std::streambuf* m_before;
};

/** Holds a reference as the toolkit does. */
class Keeper {
public:
  explicit Keeper(zor::Referenced* object) : m_object(object) {}

  /** Gives the reference back. */
  void release(Where where) {
    run(where, [&] { m_object = nullptr; });
  }

private:
  zor::ref_ptr<zor::Referenced> m_object;
};

/** Holds a reference until the process ends, which is after the interpreter's end. */
inline void keepUntilExit(zor::Referenced* object) {
  static std::vector<zor::ref_ptr<zor::Referenced>> kept;
  kept.emplace_back(object);
}

/** A listener of the toolkit's own whose frames fail. */
class FailingListener : public zorOSG::ExampleApplicationListener {
public:
  FailingListener() = default;

  void preFrame(zorOSG::ExampleApplication* /*app*/) override { throw std::runtime_error("no frame, sorry"); }
  void postFrame(zorOSG::ExampleApplication* /*app*/) override { throw 5; }

protected:
  ~FailingListener() override = default;
};

} // namespace callbacks
