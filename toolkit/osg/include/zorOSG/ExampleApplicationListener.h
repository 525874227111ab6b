#pragma once

#include <zor/Referenced.h>

namespace zorOSG {

class ExampleApplication;

/// Called around every frame of an application's loop. Derive, override, and register with addListener().
class ExampleApplicationListener : public zor::Referenced {
public:
  ExampleApplicationListener() = default;

  /**
   * Called before a frame: before the simulation steps of this frame are taken and before it is drawn.
   * \param app the application whose loop calls
   */
  virtual void preFrame(zorOSG::ExampleApplication* app);

  /**
   * Called after a frame has been drawn (or, without graphics, after its simulation steps).
   * \param app the application whose loop calls
   */
  virtual void postFrame(zorOSG::ExampleApplication* app);

protected:
  ~ExampleApplicationListener() override = default;
};

} // namespace zorOSG
