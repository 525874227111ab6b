#pragma once

namespace zorOSG {

class ExampleApplication;

/// Makes an application the current one of this thread until the end of a scope.
class CurrentApplicationScope {
public:
  explicit CurrentApplicationScope(ExampleApplication* app);
  ~CurrentApplicationScope();

  CurrentApplicationScope(CurrentApplicationScope const&) = delete;
  CurrentApplicationScope& operator=(CurrentApplicationScope const&) = delete;

  /** The application has been initialised: it is the current one wherever no scope says otherwise. */
  static void setLatest(ExampleApplication* app);

  /** The application dies. */
  static void forget(ExampleApplication* app);

private:
  ExampleApplication* m_previous;
};

} // namespace zorOSG
