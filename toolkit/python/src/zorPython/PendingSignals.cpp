#include <Python.h>

#include "PythonReference.h"

#include <zorPython/PendingSignals.h>
#include <zorPython/ScriptManager.h>

namespace zorPython {

namespace {

PyObject* keptException = nullptr; // guarded by the interpreter lock

int raiseKept(void* /*unused*/) {
  if (PyObject* const exception = keptException) {
    keptException = nullptr;
    PyErr_SetRaisedException(exception);
  } else {
    PyErr_SetNone(PyExc_KeyboardInterrupt);
  }
  return -1;
}

bool isMainThread() {
  PythonReference const threading(PyImport_ImportModule("threading"));
  PythonReference const main(threading ? PyObject_CallMethod(threading.get(), "main_thread", nullptr)
                                       : nullptr);
  PythonReference const number(main ? PyObject_GetAttrString(main.get(), "ident") : nullptr);
  bool const isMain = number && PyLong_AsUnsignedLong(number.get()) == PyThread_get_thread_ident();
  PyErr_Clear();
  return isMain;
}

} // namespace

bool PendingSignals::check() {
  ScriptManager::PyGILGuard const lock;
  if (!lock.isHeld() || PyErr_CheckSignals() == 0)
    return false;
  Py_XSETREF(keptException, PyErr_GetRaisedException());
  return true;
}

void PendingSignals::raiseAfterReturn() {
  ScriptManager::PyGILGuard const lock;
  if (!lock.isHeld())
    return;
  // The call itself cannot raise: its wrapper has a result to return. A pending call runs right after it.
  if (Py_AddPendingCall(raiseKept, nullptr) != 0)
    PyErr_SetInterrupt();
}

bool PendingSignals::raiseInCaller(PyObjectType* exception) {
  // Pending calls run on the main thread only.
  if (!PyEval_GetFrame() || !isMainThread() || Py_AddPendingCall(raiseKept, nullptr) != 0)
    return false;
  Py_XSETREF(keptException, Py_NewRef(exception));
  return true;
}

} // namespace zorPython
