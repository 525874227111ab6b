#pragma once

namespace zor {

class Referenced;

/**
 * Decides when objects without references are destroyed. Derive to delay destruction, for instance until no
 * renderer uses the object any more, and install with Referenced::setDeleteHandler().
 */
class DeleteHandler {
public:
  virtual ~DeleteHandler() = default;

  /**
   * Called, on any thread, with an object whose last reference is gone. The handler owns the object from here
   * on and ends its life with destroy(). Must not throw.
   * \param object - the object to destroy now or later
   */
  virtual void requestDelete(Referenced const* object) = 0;

protected:
  /** Destroys an object that requestDelete() received. */
  static void destroy(Referenced const* object) noexcept;
};

} // namespace zor
