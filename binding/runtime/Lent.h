#pragma once

#include <Python.h>

namespace osg {
class Referenced;
}

namespace zor {
class Referenced;
}

namespace zorBinding {

/**
 * Keeps a counted object alive as long as its Python object, which does not own it: what the scene graph
 * lends may be taken out of the graph while a script still has it. Does nothing for a null pointer, for a
 * plain wrapped object, which can't hold anything, or for an object that nobody holds yet or any more.
 * \param proxy - the Python object; may be null after a failure
 * \param object - what it stands for
 */
void keepLent(PyObject* proxy, zor::Referenced const* object);
void keepLent(PyObject* proxy, osg::Referenced const* object);

/** Name of the capsules through which proxies hold objects. */
extern char const* const LENT;

/** Has a proxy hold an object. \param release - gives back a reference that was made for it */
void attachLent(PyObject* proxy, void* object, PyCapsule_Destructor release);

} // namespace zorBinding
