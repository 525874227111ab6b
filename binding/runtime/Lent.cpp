#include "Lent.h"

#include <zor/Referenced.h>

#include <osg/Referenced>

namespace zorBinding {

namespace {

char const* const NAME = "zorBinding.lent";

void releaseNode(PyObject* capsule) {
  static_cast<osg::Referenced*>(PyCapsule_GetPointer(capsule, NAME))->unref();
}

void releaseObject(PyObject* capsule) {
  static_cast<zor::Referenced*>(PyCapsule_GetPointer(capsule, NAME))->unreference();
}

/** Takes over a reference that was made for it. */
void attach(PyObject* proxy, void* object, PyCapsule_Destructor release) {
  PyObject* const capsule = PyCapsule_New(object, NAME, release);
  if (!capsule || PyObject_SetAttrString(proxy, "_lent", capsule) != 0)
    PyErr_Clear();
  Py_XDECREF(capsule);
}

} // namespace

void keepLent(PyObject* proxy, osg::Referenced const* object) {
  if (!proxy || !object)
    return;
  object->ref();
  attach(proxy, const_cast<osg::Referenced*>(object), releaseNode);
}

void keepLent(PyObject* proxy, zor::Referenced const* object) {
  if (!proxy || !object)
    return;
  auto* const counted = const_cast<zor::Referenced*>(object);
  counted->reference();
  attach(proxy, counted, releaseObject);
}

} // namespace zorBinding
