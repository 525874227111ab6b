#pragma once

#include <zor/RigidBody.h>
#include <zor/Types.h>
#include <zor/Vector.h>
#include <zor/observer_ptr.h>
#include <zorCollide/Geometry.h>
#include <zorCollide/GeometryContact.h>
#include <zorSDK/EventListener.h>

namespace zorSDK {

/** Called when geometries begin to touch, touch, and part.
 *
 * Calls come between collision detection and the computation of motion, so the forces of a contact are not
 * known yet; read those from the space's contacts after the step.
 */
class ContactEventListener : public EventListener {
public:
  /** Events (bit mask). */
  enum ActivationMask : int {
    IMPACT = 1,     /**< Two geometries touch that did not in the step before. */
    CONTACT = 2,    /**< Two geometries still touch. */
    SEPARATION = 4, /**< Two geometries touch no more. */
    ALL = 7         /**< All of them. */
  };

  /** What becomes of a contact after the call. */
  enum KeepContactPolicy : int {
    KEEP_CONTACT = 0,  /**< The contact acts. */
    REMOVE_CONTACT = 1 /**< The contact has no effect in this step. */
  };

  /** \param mask Combination of events. */
  explicit ContactEventListener(int mask = ALL);

  /** Called in the first step in which two geometries touch.
   * \param time Time at the start of the step, in s.
   * \param contact The contact; valid during the call.
   * \return Whether the contact acts in this step; one REMOVE_CONTACT of any listener removes it.
   */
  virtual zorSDK::ContactEventListener::KeepContactPolicy impact(zor::TimeStamp time,
                                                                 zorCollide::GeometryContact& contact);
  /** Called in every later step in which the two geometries touch; parameters and result as for impact. */
  virtual zorSDK::ContactEventListener::KeepContactPolicy contact(zor::TimeStamp time,
                                                                  zorCollide::GeometryContact& contact);
  /** Called in the first step in which the two geometries touch no more, also when one has left the space.
   * \param time Time at the start of the step, in s.
   * \param geometry1 First geometry.
   * \param geometry2 Second geometry.
   */
  virtual void separation(zor::TimeStamp time, zorCollide::Geometry* geometry1,
                          zorCollide::Geometry* geometry2);

  /** Calls only for contacts of the given body (with anything). With several filters, one match is enough.
   * \throws std::invalid_argument When the body is null. */
  void addFilter(zor::RigidBody* body);
  /** Calls only for contacts between the two given bodies.
   * \throws std::invalid_argument When a body is null. */
  void addFilter(zor::RigidBody* body1, zor::RigidBody* body2);
  /** Calls only for contacts of the given geometry (with anything).
   * \throws std::invalid_argument When the geometry is null. */
  void addFilter(zorCollide::Geometry* geometry);
  /** Calls for all contacts again. */
  void clearFilters();
  /** \return Whether the filters let contacts of the two geometries through. */
  bool match(zorCollide::Geometry const* geometry1, zorCollide::Geometry const* geometry2) const;

protected:
  ~ContactEventListener() override;

private:
  struct Filter {
    zor::ref_ptr<zor::RigidBody> body1;
    zor::ref_ptr<zor::RigidBody> body2;
    zor::ref_ptr<zorCollide::Geometry> geometry;
  };
  zor::Vector<Filter> m_filters;
};

} // namespace zorSDK
