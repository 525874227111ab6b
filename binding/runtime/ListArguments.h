#pragma once

#include <zor/Vec2.h>
#include <zor/Vector.h>

struct _object;
typedef _object PyObject;

namespace zorBinding {

/**
 * Reads a value from a Python list of numbers. Sets a Python error if it can't: an item that is no number is
 * a TypeError, NaN a ValueError, a number outside the range of the element type an OverflowError, each with
 * the message of the argument.
 * \param list - a list; reading an item may run Python code, which may change it
 * \param value - receives the value; for Vec2i two numbers, cut to whole ones
 * \param argument - the message of the argument
 * \return false if a Python error was set
 */
bool readList(PyObject* list, zor::Vec2i& value, char const* argument);
bool readList(PyObject* list, zor::RealVector& value, char const* argument);

} // namespace zorBinding
