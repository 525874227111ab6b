#pragma once

#include <string>

#include <zor/Component.h>
#include <zor/Vector.h>
#include <zor/ref_ptr.h>
#include <zorStream/Serializable.h>

namespace zorSDK {

class Simulation;
class SimulationImpl;

/** Something that a simulation calls: base of step, contact and input listeners.
 *
 * A listener can be in one simulation at a time; the simulation holds a reference to it.
 */
class EventListener : public zor::Component, public zorStream::Serializable {
public:
  /** Chooses the events that the listener is called for.
   * \param mask Combination of the bits of the listener's kind.
   */
  virtual void setMask(int mask);
  /** \return Combination of the bits of the listener's kind. */
  int getMask() const;

  /** Turns the listener on or off; one that is off is not called. */
  void setEnable(bool enable);
  /** \return Whether the listener is called. */
  bool getEnable() const;

  /** Called when the listener has been added to a simulation; getSimulation tells which. */
  virtual void addNotification();
  /** Called when the listener is about to leave its simulation; getSimulation still tells which,
   * or null when the simulation is being destroyed. */
  virtual void removeNotification();

  /** \return The simulation that the listener is in, or null. */
  zorSDK::Simulation* getSimulation() const;

protected:
  /** \param mask Bits of the listener's kind.
   * \param name Name, used for look-up. */
  explicit EventListener(int mask, std::string const& name = "");
  ~EventListener() override;

private:
  friend class SimulationImpl;
  Simulation* m_simulation = nullptr;
  int m_mask;
  bool m_enabled = true;
};

using EventListenerRefVector = zor::Vector<zor::ref_ptr<EventListener>>;

} // namespace zorSDK
