#include <Python.h>

#include "runtime/SceneArrays.h"
#include "runtime/VectorRuntime.h"

#include <osg/GL>

#include <cstring>
#include <stdexcept>

namespace zorBinding {
namespace {

struct Kind {
  GLenum type;
  char const* format;
  std::size_t size;
};

Kind const KINDS[] = {{GL_BYTE, "b", 1},           {GL_UNSIGNED_BYTE, "B", 1}, {GL_SHORT, "h", 2},
                      {GL_UNSIGNED_SHORT, "H", 2}, {GL_INT, "i", 4},           {GL_UNSIGNED_INT, "I", 4},
                      {GL_FLOAT, "f", 4},          {GL_DOUBLE, "d", 8}};

Storage storageOfKind(GLenum type, std::size_t components, std::size_t size, void const* data) {
  for (Kind const& kind : KINDS) {
    if (kind.type == type)
      return {const_cast<void*>(data), kind.format, kind.size, components, size};
  }
  throw std::invalid_argument("the elements of this array are of no kind that Python knows");
}

// Grows by one element for each row that is read.
class BytesSink : public NumberSink {
public:
  explicit BytesSink(std::size_t elementSize) : m_elementSize(elementSize) {}
  void* addRow() override {
    bytes.resize(bytes.size() + m_elementSize);
    return bytes.data() + bytes.size() - m_elementSize;
  }

  std::string bytes;

private:
  std::size_t const m_elementSize;
};

void resize(osg::Array& array, std::size_t size) {
  array.resizeArray(static_cast<unsigned int>(size));
}

void resize(osg::DrawElements& indices, std::size_t size) {
  indices.resizeElements(static_cast<unsigned int>(size));
}

template <class Container>
void splice(Container& container, std::size_t first, std::size_t removed, std::string const& elements) {
  Storage storage = storageOf(container);
  std::size_t const width = storage.elementSize();
  std::size_t const added = elements.size() / width;
  std::size_t const tail = storage.size - first - removed;
  if (storage.size - removed + added > 0xffffffffu)
    throw std::length_error("an array has at most 2^32 - 1 elements");
  auto const moveTail = [&] {
    char* const begin = static_cast<char*>(storage.data) + first * width;
    if (tail)
      std::memmove(begin + added * width, begin + removed * width, tail * width);
  };
  if (added > removed) {
    resize(container, storage.size - removed + added);
    storage.data = storageOf(container).data;
    moveTail();
  } else if (added < removed) {
    moveTail();
    resize(container, storage.size - removed + added);
    storage.data = storageOf(container).data;
  }
  if (added)
    std::memcpy(static_cast<char*>(storage.data) + first * width, elements.data(), elements.size());
  container.dirty();
}

} // namespace

Storage storageOf(osg::Array& array) {
  return storageOfKind(array.getDataType(), static_cast<std::size_t>(array.getDataSize()),
                       array.getNumElements(), array.getNumElements() ? array.getDataPointer() : nullptr);
}

Storage storageOf(osg::DrawElements& indices) {
  return storageOfKind(indices.getDataType(), 1, indices.getNumIndices(), indices.getDataPointer());
}

PyObject* viewOf(Storage const& storage) {
  Memory memory;
  memory.data = storage.data;
  memory.format = storage.format;
  memory.itemSize = static_cast<long>(storage.componentSize);
  memory.dimensions = storage.components > 1 ? 2 : 1;
  memory.shape[0] = static_cast<long>(storage.size);
  memory.shape[1] = static_cast<long>(storage.components);
  return newMemoryView(memory);
}

std::string readElements(Storage const& storage, PyObject* values) {
  BytesSink sink(storage.elementSize());
  readNumbers(values, storage.components > 1 ? static_cast<int>(storage.components) : 0, storage.format[0],
              sink);
  return std::move(sink.bytes);
}

void spliceElements(osg::Array& array, std::size_t first, std::size_t removed, std::string const& elements) {
  splice(array, first, removed, elements);
}

void spliceElements(osg::DrawElements& indices, std::size_t first, std::size_t removed,
                    std::string const& elements) {
  splice(indices, first, removed, elements);
}

} // namespace zorBinding
