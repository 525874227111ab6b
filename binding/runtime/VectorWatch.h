#pragma once

#include <cstddef>
#include <memory>
#include <vector>

struct _object;
typedef _object PyObject;

namespace zorBinding {

/** Where a vector keeps its elements at the moment. */
struct VectorStorage {
  char* data = nullptr;
  std::size_t size = 0;     ///< number of elements
  std::size_t itemSize = 1; ///< bytes of an element
};

template <class T>
VectorStorage storageOf(std::vector<T>& vector) {
  return {reinterpret_cast<char*>(vector.data()), vector.size(), sizeof(T)};
}

/** A wrapped object that points to an element: the object, and where it keeps its pointer and its ownership
 * flag. */
struct ElementHandle {
  PyObject* object = nullptr;
  void** pointer = nullptr;
  int* own = nullptr;
};

/**
 * Notes that a wrapped object points to an element of a vector. From then on it stands for that position:
 * StorageChange follows the storage, and an object whose position is gone becomes the owner of a copy.
 * \param vector - the vector
 * \param element - the wrapped object, which is kept alive for a while
 */
void watchElement(void const* vector, ElementHandle const& element);

/** \return the vector that a watched object points into, or null */
void const* vectorOfElement(PyObject const* object);

/** Marks the storage of a vector as shown to Python, until endExport(). Null does nothing. */
void beginExport(void const* vector);
void endExport(void const* vector);

/** Throws std::runtime_error, with a Python BufferError pending, while the storage is shown to Python. */
void refuseIfShown(void const* vector);

/**
 * Before a vector goes: objects that still point to its elements become owners of copies.
 * Throws std::runtime_error, with a Python BufferError pending, while the storage is shown to Python.
 */
void releaseElements(void const* vector, VectorStorage const& storage);

/** A step that may move, grow or shrink the storage of a vector. Use Resizing. */
class StorageChange {
public:
  /** Throws std::runtime_error, with a Python BufferError pending, while the storage is shown to Python. */
  StorageChange(void const* vector, VectorStorage const& before);
  StorageChange(StorageChange const&) = delete;
  StorageChange& operator=(StorageChange const&) = delete;
  ~StorageChange();

  /** Lets the watched objects follow the storage; to be called once. */
  void finish(VectorStorage const& after) noexcept;

private:
  struct Position;
  void const* m_vector;
  std::vector<Position> m_positions;
};

/** Scope of an operation that may move, grow or shrink the storage of a vector. Throws as StorageChange. */
template <class T>
class Resizing {
public:
  explicit Resizing(std::vector<T>& vector) : m_vector(vector), m_change(&vector, storageOf(vector)) {}
  Resizing(Resizing const&) = delete;
  Resizing& operator=(Resizing const&) = delete;
  ~Resizing() { m_change.finish(storageOf(m_vector)); }

private:
  std::vector<T>& m_vector;
  StorageChange m_change;
};

} // namespace zorBinding
