#include <Python.h>

#include "runtime/BufferView.h"

namespace zorBinding {
namespace {

char nothing; // address of empty memory: a buffer must point somewhere

} // namespace

PyObject* newMemoryView(Memory const& memory) {
  Py_ssize_t shape[3];
  Py_ssize_t strides[3];
  Py_ssize_t size = memory.itemSize;
  for (int i = memory.dimensions - 1; i >= 0; --i) {
    shape[i] = memory.shape[i];
    strides[i] = i == 0 && memory.rowStride ? memory.rowStride : size;
    size *= memory.shape[i];
  }
  Py_buffer buffer{};
  buffer.buf = memory.data ? memory.data : &nothing;
  buffer.len = size;
  buffer.itemsize = memory.itemSize;
  buffer.format = const_cast<char*>(memory.format);
  buffer.ndim = memory.dimensions;
  buffer.shape = shape; // both are copied into the view
  buffer.strides = strides;
  return PyMemoryView_FromBuffer(&buffer);
}

} // namespace zorBinding
