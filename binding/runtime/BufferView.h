#pragma once

#include <cstdint>
#include <initializer_list>

struct _object;
typedef _object PyObject;

namespace zorBinding {

/** Struct-module code of an element type; only the instances below exist. */
template <class T>
constexpr char const* formatOf();
// clang-format off
template <> constexpr char const* formatOf<double>() { return "d"; }
template <> constexpr char const* formatOf<float>() { return "f"; }
template <> constexpr char const* formatOf<std::int8_t>() { return "b"; }
template <> constexpr char const* formatOf<std::uint8_t>() { return "B"; }
template <> constexpr char const* formatOf<std::int16_t>() { return "h"; }
template <> constexpr char const* formatOf<std::uint16_t>() { return "H"; }
template <> constexpr char const* formatOf<std::int32_t>() { return "i"; }
template <> constexpr char const* formatOf<std::uint32_t>() { return "I"; }
template <> constexpr char const* formatOf<std::int64_t>() { return "l"; }
template <> constexpr char const* formatOf<std::uint64_t>() { return "L"; }
// clang-format on

/** Memory to show to Python: rows lie rowStride bytes apart, everything inside a row is packed. */
struct Memory {
  void* data = nullptr;
  char const* format = "B"; ///< struct-module code of an element; must live forever
  long itemSize = 1;
  long shape[3] = {0, 0, 0};
  int dimensions = 1;
  long rowStride = 0;           ///< bytes from one row to the next; 0 when packed
  PyObject* owner = nullptr;    ///< kept alive by the view and its copies, if there is one; borrowed here
  void const* vector = nullptr; ///< marked as shown (VectorWatch.h) while there is a view with an owner
};

/** \return a new memoryview over the memory, or null with an error set. Without an owner it does not keep the
 * memory alive: only hand it out through __buffer__, whose caller holds the object. */
PyObject* newMemoryView(Memory const& memory);

/** \return packed elements with the given shape */
template <class T>
Memory packedMemory(T* data, std::initializer_list<long> shape) {
  Memory memory;
  memory.data = data;
  memory.format = formatOf<T>();
  memory.itemSize = sizeof(T);
  memory.dimensions = 0;
  for (long const size : shape) {
    memory.shape[memory.dimensions++] = size;
  }
  return memory;
}

/** \return a new memoryview of packed elements with the given shape; it keeps an owner alive, if there is one
 */
template <class T>
PyObject* memoryOf(T* data, std::initializer_list<long> shape, PyObject* owner = nullptr) {
  Memory memory = packedMemory(data, shape);
  memory.owner = owner;
  return newMemoryView(memory);
}

} // namespace zorBinding
