#pragma once

#include <Python.h>

namespace zorBinding {

/** The memory of a pixel, or of pixels in a row. */
struct PixelMemory {
  void* data = nullptr;
  bool isRow = false;          ///< several pixels: shape (count, channels) instead of (channels,)
  Py_ssize_t count = 1;        ///< number of pixels
  Py_ssize_t channels = 1;     ///< elements of a pixel
  Py_ssize_t itemSize = 1;     ///< bytes of an element
  char const* format = "B";    ///< struct-module code of an element
  void const* owner = nullptr; ///< the vector whose storage it is, or null for a pixel of its own
};

/** Finds the memory of a Python object; false with a Python error set if it has none. */
typedef bool (*PixelReader)(PyObject* object, PixelMemory& memory);

/**
 * Gives a class that wraps pixels Python's buffer protocol, which its subclasses inherit: writable, without a
 * copy, keeping the object alive. While a buffer is in use, the storage of its vector can't change (see
 * VectorWatch).
 * \param type - the class
 * \param reader - finds the memory of its instances, the same for all classes
 * \return false with a Python error set on failure
 */
bool offerPixelBuffer(PyTypeObject* type, PixelReader reader);

} // namespace zorBinding
