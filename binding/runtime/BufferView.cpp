#include <Python.h>

#include "runtime/BufferView.h"
#include "runtime/VectorWatch.h"

#include <new>

namespace zorBinding {
namespace {

char nothing; // address of empty memory: a buffer must point somewhere

struct Layout {
  Py_ssize_t shape[3];
  Py_ssize_t strides[3];
};

Py_buffer describe(Memory const& memory, Layout& layout) {
  Py_ssize_t size = memory.itemSize;
  for (int i = memory.dimensions - 1; i >= 0; --i) {
    layout.shape[i] = memory.shape[i];
    layout.strides[i] = i == 0 && memory.rowStride ? memory.rowStride : size;
    size *= memory.shape[i];
  }
  Py_buffer buffer{};
  buffer.buf = memory.data ? memory.data : &nothing;
  buffer.len = size;
  buffer.itemsize = memory.itemSize;
  buffer.format = const_cast<char*>(memory.format);
  buffer.ndim = memory.dimensions;
  buffer.shape = layout.shape;
  buffer.strides = layout.strides;
  return buffer;
}

// What a memoryview of owned memory is made from: it lives as long as any view of it.
struct Exporter {
  PyObject_HEAD PyObject* owner;
  void const* vector;
  Layout layout;
  Py_buffer buffer;
};

int showBuffer(PyObject* self, Py_buffer* view, int) noexcept {
  *view = reinterpret_cast<Exporter*>(self)->buffer; // only the memoryview below asks, for everything
  view->obj = Py_NewRef(self);
  return 0;
}

void destroyExporter(PyObject* self) noexcept {
  auto* exporter = reinterpret_cast<Exporter*>(self);
  endExport(exporter->vector);
  Py_DECREF(exporter->owner);
  PyTypeObject* type = Py_TYPE(self);
  type->tp_free(self);
  Py_DECREF(type);
}

PyTypeObject* exporterType() {
  static PyType_Slot slots[] = {{Py_tp_dealloc, reinterpret_cast<void*>(&destroyExporter)},
                                {Py_bf_getbuffer, reinterpret_cast<void*>(&showBuffer)},
                                {0, nullptr}};
  static PyType_Spec spec = {"zorBinding.Memory", sizeof(Exporter), 0,
                             Py_TPFLAGS_DEFAULT | Py_TPFLAGS_DISALLOW_INSTANTIATION, slots};
  static auto* const type = reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&spec));
  return type;
}

PyObject* newOwnedView(Memory const& memory) {
  PyTypeObject* type = exporterType();
  auto* exporter = type ? reinterpret_cast<Exporter*>(type->tp_alloc(type, 0)) : nullptr;
  if (!exporter) {
    return nullptr;
  }
  exporter->owner = Py_NewRef(memory.owner);
  exporter->buffer = describe(memory, exporter->layout);
  try {
    beginExport(memory.vector);
    exporter->vector = memory.vector;
  } catch (std::bad_alloc const&) {
    Py_DECREF(exporter);
    return PyErr_NoMemory();
  }
  PyObject* view = PyMemoryView_FromObject(reinterpret_cast<PyObject*>(exporter));
  Py_DECREF(exporter);
  return view;
}

} // namespace

PyObject* newMemoryView(Memory const& memory) {
  if (memory.owner) {
    return newOwnedView(memory);
  }
  Layout layout;
  Py_buffer const buffer = describe(memory, layout); // shape and strides are copied into the view
  return PyMemoryView_FromBuffer(&buffer);
}

} // namespace zorBinding
