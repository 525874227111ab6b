#pragma once

#include <zor/Types.h>
#include <zorSDK/EventListener.h>

namespace zorSDK {

/** Called at fixed places of every time step.
 *
 * Listeners are called in the order in which they were added; each phase runs through all of them before the
 * next begins. Objects may be added to and removed from the simulation inside a call.
 */
class StepEventListener : public EventListener {
public:
  /** Places in a step (bit mask), in the order in which they come. */
  enum ActivationMask : int {
    PRE_COLLIDE = 1, /**< Before collision detection. */
    PRE_STEP = 2,    /**< After collision detection and the contact listeners, before motion is computed. */
    POST_STEP = 4,   /**< After bodies have moved. */
    LAST_STEP = 8,   /**< After all POST_STEP calls. */
    STEP_ALL = 15    /**< All of them. */
  };

  /** \param mask Combination of the places where the listener is called. */
  explicit StepEventListener(int mask = PRE_STEP | POST_STEP);

  /** Called before collision detection.
   * \param time Time at the start of the step, in s. */
  virtual void preCollide(zor::TimeStamp time);
  /** Called before motion is computed.
   * \param time Time at the start of the step, in s. */
  virtual void pre(zor::TimeStamp time);
  /** Called after bodies have moved.
   * \param time Time at the end of the step, in s. */
  virtual void post(zor::TimeStamp time);
  /** Called last in the step.
   * \param time Time at the end of the step, in s. */
  virtual void last(zor::TimeStamp time);

protected:
  ~StepEventListener() override;
};

} // namespace zorSDK
