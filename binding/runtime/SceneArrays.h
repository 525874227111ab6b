#pragma once

#include "runtime/BufferView.h"

#include <osg/Array>
#include <osg/PrimitiveSet>

#include <cstddef>
#include <string>

namespace zorBinding {

/** The storage of an array or of indices, as it lies in memory. */
struct Storage {
  void* data = nullptr;
  char const* format = "B"; ///< struct-module code of a component
  std::size_t componentSize = 1;
  std::size_t components = 1; ///< of an element
  std::size_t size = 0;       ///< number of elements

  std::size_t elementSize() const { return componentSize * components; }
};

/** \throws std::invalid_argument for an array of a kind that Python has no number type for */
Storage storageOf(osg::Array& array);
Storage storageOf(osg::DrawElements& indices);

/** \return a memoryview: one row an element, or a flat one where elements are numbers */
PyObject* viewOf(Storage const& storage);

/**
 * \param values - an iterable of numbers or rows of numbers, or a buffer of the storage's type and shape
 * \return the elements as they lie in memory
 * Throws std::runtime_error with a Python error pending.
 */
std::string readElements(Storage const& storage, PyObject* values);

/** Puts elements, as readElements() gives them, in the place of a part of the storage. */
void spliceElements(osg::Array& array, std::size_t first, std::size_t removed, std::string const& elements);
void spliceElements(osg::DrawElements& indices, std::size_t first, std::size_t removed,
                    std::string const& elements);

} // namespace zorBinding
