#pragma once

#include <atomic>

namespace zor {

class DeleteHandler;
class ObserverBlock;

/**
 * Base of all objects that are shared through a reference count.
 *
 * An object starts with a count of zero and dies when its last reference is given back. The count may be
 * changed from any thread. Hold objects in zor::ref_ptr, watch them with zor::observer_ptr.
 */
class Referenced {
public:
  Referenced() = default;

  /** A copy has a count of its own that starts at zero. */
  Referenced(Referenced const&) {}

  /** Assignment leaves both counts alone. */
  Referenced& operator=(Referenced const&) { return *this; }

  /** Takes one reference. */
  void reference() const noexcept { m_count.fetch_add(1, std::memory_order_relaxed); }

  /** Gives one reference back; the last one destroys the object, through the delete handler if there is one.
   */
  void unreference() const noexcept {
    if (m_count.fetch_sub(1, std::memory_order_acq_rel) == 1) {
      destroy();
    }
  }

  /** Gives one reference back but never destroys the object: hands an object over with a count of zero. */
  void unreferenceNoDelete() const noexcept { m_count.fetch_sub(1, std::memory_order_acq_rel); }

  /** Takes one reference unless the count is zero. \return true if it was taken */
  bool tryReference() const noexcept;

  /** \return the number of references held right now */
  int getReferenceCount() const noexcept { return m_count.load(std::memory_order_acquire); }

  /**
   * Installs the object that destroys objects whose last reference is gone.
   * \param handler - the handler, which must live until it is replaced; null destroys at once
   */
  static void setDeleteHandler(DeleteHandler* handler) noexcept;

  /** \return the installed delete handler, or null */
  static DeleteHandler* getDeleteHandler() noexcept;

  /** Hands this object, whose count is zero, to the installed delete handler; destroys it if there is none.
   */
  void deleteUsingDeleteHandler() const noexcept;

  /** \return the block through which observers watch this object; made at the first call */
  ObserverBlock* getOrCreateObserverBlock() const;

protected:
  virtual ~Referenced();

private:
  friend class DeleteHandler;

  void destroy() const noexcept;
  void tellObservers() const noexcept;

  mutable std::atomic<int> m_count{0};
  mutable std::atomic<ObserverBlock*> m_observers{nullptr};
};

} // namespace zor
