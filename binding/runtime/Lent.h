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
 * lends may be taken out of the graph while a script still has it. Does nothing for a null pointer, or for a
 * plain wrapped object, which can't hold anything.
 * \param proxy - the Python object; may be null after a failure
 * \param object - what it stands for
 */
void keepLent(PyObject* proxy, osg::Referenced const* object);
void keepLent(PyObject* proxy, zor::Referenced const* object);

} // namespace zorBinding
