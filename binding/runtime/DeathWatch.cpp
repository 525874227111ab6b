#include <Python.h>

#include "runtime/DeathWatch.h"

#include <zorPython/ScriptManager.h>

#include <utility>

namespace zorBinding {

namespace {
char const* const NAME = "zorBinding.DeathWatch";
}

DeathWatch::DeathWatch(PyObject* object, std::function<void()> onDeath)
    : m_onDeath(std::move(onDeath)), m_link(std::make_shared<std::atomic<DeathWatch*>>(this)) {
  PyObject* const callback = makeCallback(m_link);
  m_reference = callback ? PyWeakref_NewRef(object, callback) : nullptr;
  if (!m_reference) {
    PyErr_Clear();
  }
  Py_XDECREF(callback);
}

DeathWatch::~DeathWatch() {
  *m_link = nullptr; // the reference may outlive us where the lock can't be had any more
  zorPython::ScriptManager::PyGILGuard const lock;
  if (lock.isHeld()) {
    Py_XDECREF(m_reference);
  }
}

PyObject* DeathWatch::makeCallback(Link const& link) {
  static PyMethodDef definition = {"on_death", call, METH_O, nullptr};
  auto kept = std::make_unique<Link>(link);
  PyObject* const capsule = PyCapsule_New(kept.get(), NAME, [](PyObject* dying) {
    delete static_cast<Link*>(PyCapsule_GetPointer(dying, NAME));
  });
  if (!capsule) {
    return nullptr;
  }
  static_cast<void>(kept.release()); // the capsule's now
  PyObject* const callback = PyCFunction_New(&definition, capsule);
  Py_DECREF(capsule);
  return callback;
}

PyObject* DeathWatch::call(PyObject* capsule, PyObject* /*reference*/) {
  Link const link = *static_cast<Link*>(PyCapsule_GetPointer(capsule, NAME));
  if (DeathWatch* const watch = *link) {
    watch->m_onDeath();
  }
  Py_RETURN_NONE;
}

} // namespace zorBinding
