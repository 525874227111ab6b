#pragma once

#include <string>

struct _object;
typedef _object PyObject;

namespace zorBinding {

/**
 * Reads a Python string up to its first NUL as UTF-8; lone surrogates become the bytes they stand for.
 * \param object - the Python object
 * \param text - receives the text
 * \return false, with no Python error set, if the object is not a str or has no such form
 */
bool readText(PyObject* object, std::string& text);

} // namespace zorBinding
