#pragma once

#include <functional>
#include <string>

struct _object;
typedef _object PyObject;

namespace zorBinding {

/**
 * \param callable - a Python callable without parameters; kept alive by the function and its copies
 * \param label - under which the script manager registers what it raises
 * \return a function that calls it from any thread; an error is registered, never thrown
 * Throws std::invalid_argument if the object can't be called.
 */
std::function<void()> functionOf(PyObject* callable, std::string label);

/** As functionOf(), for a callable that takes a bool. */
std::function<void(bool)> boolFunctionOf(PyObject* callable, std::string label);

/** As functionOf(), for a callable that takes an object. \param wrap - makes its Python object, a new
 * reference */
std::function<void(void*)> objectFunctionOf(PyObject* callable, PyObject* (*wrap)(void*), std::string label);

} // namespace zorBinding
