#pragma once

#include <zor/ref_ptr.h>
#include <zorOSG/ExampleApplicationListener.h>

#include <vector>

namespace zorOSG {

/// Frame listeners in the order of addition; those that a scene has added leave with it.
class ListenerList {
public:
  /** Adds a listener; one that is there already stays where it is. */
  void add(ExampleApplicationListener* listener, bool ofScene);

  /** Removes what scenes have added. */
  void removeSceneListeners();

  void preFrame(ExampleApplication* app) { call(&ExampleApplicationListener::preFrame, app); }
  void postFrame(ExampleApplication* app) { call(&ExampleApplicationListener::postFrame, app); }

private:
  struct Entry {
    zor::ref_ptr<ExampleApplicationListener> listener; // null once removed during a round
    bool ofScene;
  };

  using Method = void (ExampleApplicationListener::*)(ExampleApplication*);
  void call(Method method, ExampleApplication* app);
  void tidy();

  std::vector<Entry> m_entries;
  int m_rounds = 0;
};

} // namespace zorOSG
