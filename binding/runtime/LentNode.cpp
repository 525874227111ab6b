// Apart from Lent.cpp, so that modules without the scene graph do not need its library.

#include "Lent.h"

#include <osg/Referenced>

namespace zorBinding {

void keepLent(PyObject* proxy, osg::Referenced const* object) {
  if (!proxy || !object)
    return;
  object->ref();
  attachLent(proxy, const_cast<osg::Referenced*>(object), [](PyObject* capsule) {
    static_cast<osg::Referenced*>(PyCapsule_GetPointer(capsule, LENT))->unref();
  });
}

} // namespace zorBinding
