#include "Lent.h"

#include <zor/Referenced.h>

namespace zorBinding {

char const* const LENT = "zorBinding.lent";

void attachLent(PyObject* proxy, void* object, PyCapsule_Destructor release) {
  PyObject* const capsule = PyCapsule_New(object, LENT, release);
  if (!capsule || PyObject_SetAttrString(proxy, "_lent", capsule) != 0)
    PyErr_Clear();
  Py_XDECREF(capsule);
}

void keepLent(PyObject* proxy, zor::Referenced const* object) {
  if (!proxy || !object || !object->tryReference()) // one that nobody holds would die with the proxy
    return;
  attachLent(proxy, const_cast<zor::Referenced*>(object), [](PyObject* capsule) {
    static_cast<zor::Referenced*>(PyCapsule_GetPointer(capsule, LENT))->unreference();
  });
}

} // namespace zorBinding
