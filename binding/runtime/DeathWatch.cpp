#include <Python.h>

#include "runtime/DeathWatch.h"

#include <zorPython/ScriptManager.h>

#include <utility>

namespace zorBinding {

namespace {
char const* const NAME = "zorBinding.DeathWatch";
}

DeathWatch::DeathWatch(PyObject* object, std::function<void()> onDeath) : m_onDeath(std::move(onDeath)) {
  static PyMethodDef definition = {"on_death", call, METH_O, nullptr};
  PyObject* const watch = PyCapsule_New(this, NAME, nullptr);
  PyObject* const callback = watch ? PyCFunction_New(&definition, watch) : nullptr;
  m_reference = callback ? PyWeakref_NewRef(object, callback) : nullptr;
  if (!m_reference) {
    PyErr_Clear();
  }
  Py_XDECREF(callback);
  Py_XDECREF(watch);
}

DeathWatch::~DeathWatch() {
  zorPython::ScriptManager::PyGILGuard const lock;
  if (lock.isHeld()) {
    Py_XDECREF(m_reference); // a weak reference that has gone itself calls nobody
  }
}

PyObject* DeathWatch::call(PyObject* watch, PyObject* /*reference*/) {
  static_cast<DeathWatch*>(PyCapsule_GetPointer(watch, NAME))->m_onDeath();
  Py_RETURN_NONE;
}

} // namespace zorBinding
