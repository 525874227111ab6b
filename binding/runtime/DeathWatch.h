#pragma once

#include <atomic>
#include <functional>
#include <memory>

struct _object;
typedef _object PyObject;

namespace zorBinding {

/** Tells when a Python object dies, without keeping it alive. */
class DeathWatch {
public:
  /**
   * Begins to watch. Call with the interpreter locked.
   * \param object - the object
   * \param onDeath - called with the interpreter locked just before the object goes, attributes and all
   */
  DeathWatch(PyObject* object, std::function<void()> onDeath);
  DeathWatch(DeathWatch const&) = delete;
  DeathWatch& operator=(DeathWatch const&) = delete;

  /** Stops watching; on any thread. */
  ~DeathWatch();

  /** \return false if the object is of a kind that can't be watched */
  bool isWatching() const { return m_reference != nullptr; }

private:
  typedef std::shared_ptr<std::atomic<DeathWatch*>> Link; // shared with the callback; null once we have gone

  static PyObject* makeCallback(Link const& link);
  static PyObject* call(PyObject* capsule, PyObject* reference);

  std::function<void()> m_onDeath;
  Link m_link;
  PyObject* m_reference = nullptr;
};

} // namespace zorBinding
