#include "runtime/PixelBuffer.h"

#include "runtime/VectorWatch.h"

#include <memory>

namespace zorBinding {

namespace {

/** What a buffer needs until its release. */
struct Export {
  void const* vector = nullptr;
  Py_ssize_t shape[2] = {0, 0};
  Py_ssize_t strides[2] = {0, 0};
};

PixelReader readPixels = nullptr;
char nothing; // address of an empty vector: a buffer must point somewhere

void fillView(Py_buffer& view, Export& shown, PixelMemory const& memory, int flags) {
  Py_ssize_t const pixelSize = memory.channels * memory.itemSize;
  int const dimensions = memory.isRow ? 2 : 1;
  Py_ssize_t const shape[] = {memory.count, memory.channels};
  Py_ssize_t const strides[] = {pixelSize, memory.itemSize};
  for (int i = 0; i < dimensions; ++i) {
    shown.shape[i] = shape[2 - dimensions + i];
    shown.strides[i] = strides[2 - dimensions + i];
  }
  bool const hasShape = (flags & PyBUF_ND) == PyBUF_ND;
  view.buf = memory.data ? memory.data : &nothing;
  view.len = memory.count * pixelSize;
  view.itemsize = memory.itemSize;
  view.readonly = 0;
  view.ndim = hasShape ? dimensions : 1;
  view.format = (flags & PyBUF_FORMAT) ? const_cast<char*>(memory.format) : nullptr;
  view.shape = hasShape ? shown.shape : nullptr;
  view.strides = (flags & PyBUF_STRIDES) == PyBUF_STRIDES ? shown.strides : nullptr;
  view.suboffsets = nullptr;
  view.internal = &shown;
}

// Rows of several channels lie in C's order only.
bool isOrderRefused(PixelMemory const& memory, int flags) {
  return (flags & PyBUF_F_CONTIGUOUS) == PyBUF_F_CONTIGUOUS && memory.isRow && memory.channels > 1 &&
         memory.count > 1;
}

int getBuffer(PyObject* self, Py_buffer* view, int flags) noexcept {
  view->obj = nullptr;
  PixelMemory memory;
  if (!readPixels(self, memory)) {
    return -1;
  }
  if (isOrderRefused(memory, flags)) {
    PyErr_SetString(PyExc_BufferError, "the pixels are not in Fortran's order");
    return -1;
  }
  try {
    auto shown = std::make_unique<Export>();
    beginExport(memory.owner);
    shown->vector = memory.owner;
    fillView(*view, *shown.release(), memory, flags);
  } catch (std::bad_alloc const&) {
    PyErr_NoMemory();
    return -1;
  }
  view->obj = Py_NewRef(self);
  return 0;
}

void releaseBuffer(PyObject*, Py_buffer* view) noexcept {
  std::unique_ptr<Export> const shown(static_cast<Export*>(view->internal));
  endExport(shown->vector);
}

// Adds a slot to a class that exists already. The descriptor of a built-in class tells the interpreter which
// slot a function belongs to; it then fills the slot, here and in subclasses.
bool addSlot(PyTypeObject* type, char const* name, void* function) {
  PyObject* const model = PyObject_GetAttrString(reinterpret_cast<PyObject*>(&PyByteArray_Type), name);
  if (!model) {
    return false;
  }
  PyObject* const slot =
      PyDescr_NewWrapper(type, reinterpret_cast<PyWrapperDescrObject*>(model)->d_base, function);
  bool const isAdded = slot && PyObject_SetAttrString(reinterpret_cast<PyObject*>(type), name, slot) == 0;
  Py_XDECREF(slot);
  Py_DECREF(model);
  return isAdded;
}

} // namespace

bool offerPixelBuffer(PyTypeObject* type, PixelReader reader) {
  readPixels = reader;
  return addSlot(type, "__buffer__", reinterpret_cast<void*>(&getBuffer)) &&
         addSlot(type, "__release_buffer__", reinterpret_cast<void*>(&releaseBuffer));
}

} // namespace zorBinding
